// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileBytes.h"
#include "files/Descriptor.h"

#include <QCryptographicHash>

#include <algorithm>

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

namespace brevant::FileBytes {

namespace {

constexpr qint64 chunkSize = 1 << 18;

bool share(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size)
{
    file_clone_range range{};
    range.src_fd = source;
    range.src_offset = static_cast<__u64>(sourceOffset);
    range.src_length = static_cast<__u64>(size);
    range.dest_offset = static_cast<__u64>(targetOffset);
    if (size == 0)
        return false;
    if (::ioctl(target, FICLONERANGE, &range) == 0)
        return true;
    // A partial last block can only be shared if it becomes the end of the target.
    return errno == EINVAL && ::ftruncate(target, targetOffset) == 0 &&
           ::ioctl(target, FICLONERANGE, &range) == 0;
}

/// Copies inside the kernel as far as that works; returns the number of bytes copied.
qint64 copyInKernel(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size)
{
    qint64 copied = 0;
    while (copied < size) {
        const ssize_t step = ::copy_file_range(source, &sourceOffset, target, &targetOffset,
                                               static_cast<std::size_t>(size - copied), 0);
        if (step <= 0)
            break;
        copied += step;
    }
    return copied;
}

} // namespace

bool writeAll(int file, QByteArrayView bytes, off_t offset)
{
    while (!bytes.isEmpty()) {
        const ssize_t written = uninterrupted(
            [&] { return ::pwrite(file, bytes.data(), static_cast<std::size_t>(bytes.size()), offset); });
        if (written < 0)
            return false;
        bytes = bytes.sliced(written);
        offset += written;
    }
    return true;
}

std::optional<QByteArray> read(int file, qint64 size, off_t offset)
{
    QByteArray bytes(size, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < size) {
        const ssize_t got = uninterrupted([&] {
            return ::pread(file, bytes.data() + filled, static_cast<std::size_t>(size - filled),
                           offset + filled);
        });
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += got;
    }
    bytes.truncate(filled);
    return bytes;
}

std::optional<QByteArray> readAll(int file)
{
    struct stat status {};
    if (::fstat(file, &status) != 0)
        return std::nullopt;
    QByteArray bytes;
    for (qint64 wanted = status.st_size + 1;; wanted = chunkSize) { // it may grow meanwhile
        const std::optional<QByteArray> more = read(file, wanted, bytes.size());
        if (!more)
            return std::nullopt;
        bytes += *more;
        if (more->size() < wanted)
            return bytes;
    }
}

std::optional<QByteArray> readAll(const QByteArray &path)
{
    const Descriptor file = openRegularFile(path);
    return file.isOpen() ? readAll(file.number()) : std::nullopt;
}

std::optional<QByteArray> hash(int file, off_t offset, qint64 size)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (qint64 done = 0; done < size;) {
        const std::optional<QByteArray> chunk = read(file, std::min(chunkSize, size - done), offset + done);
        if (!chunk)
            return std::nullopt;
        if (chunk->isEmpty())
            break;
        hash.addData(*chunk);
        done += chunk->size();
    }
    return hash.result();
}

std::optional<qint64> copy(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size)
{
    if (share(source, sourceOffset, target, targetOffset, size))
        return size;
    // Some file systems report success and copy nothing or too little; the loop below notices.
    qint64 copied = copyInKernel(source, sourceOffset, target, targetOffset, size);
    while (copied < size) {
        const std::optional<QByteArray> chunk =
            read(source, std::min(chunkSize, size - copied), sourceOffset + copied);
        if (!chunk || !writeAll(target, *chunk, targetOffset + copied))
            return std::nullopt;
        if (chunk->isEmpty())
            break;
        copied += chunk->size();
    }
    return copied;
}

bool copyAll(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size)
{
    const std::optional<qint64> copied = copy(source, sourceOffset, target, targetOffset, size);
    if (copied && *copied != size)
        errno = EIO;
    return copied == size;
}

} // namespace brevant::FileBytes
