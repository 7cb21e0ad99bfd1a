// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/FileBytes.h"
#include "files/Descriptor.h"

#include <QCryptographicHash>

#include <algorithm>

#include <sys/stat.h>

namespace brevant::FileBytes {

namespace {

constexpr qint64 chunkSize = 1 << 18;

/// Hands on up to `size` bytes from `offset` in chunks, while `take` succeeds. Returns how many there were,
/// or nothing on failure.
template <typename Take>
std::optional<qint64> readChunks(int file, off_t offset, qint64 size, Take take)
{
    qint64 done = 0;
    while (done < size) {
        const std::optional<QByteArray> chunk = read(file, std::min(chunkSize, size - done), offset + done);
        if (!chunk || !take(*chunk, done))
            return std::nullopt;
        if (chunk->isEmpty())
            break;
        done += chunk->size();
    }
    return done;
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
    if (status.st_size > longestText) {
        errno = EFBIG;
        return std::nullopt;
    }
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

std::optional<QByteArray> readStream(int file, qint64 most)
{
    QByteArray bytes;
    QByteArray chunk(chunkSize, Qt::Uninitialized);
    for (;;) {
        const ssize_t got =
            uninterrupted([&] { return ::read(file, chunk.data(), static_cast<std::size_t>(chunkSize)); });
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            return bytes;
        bytes.append(chunk.constData(), got);
        if (bytes.size() > most) {
            errno = EFBIG;
            return std::nullopt;
        }
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
    const auto add = [&hash](const QByteArray &chunk, qint64) {
        hash.addData(chunk);
        return true;
    };
    return readChunks(file, offset, size, add) ? std::optional(hash.result()) : std::nullopt;
}

std::optional<qint64> copy(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size)
{
    const off_t end = sourceOffset + size;
    ssize_t step = 1;
    while (step > 0 && sourceOffset < end) // each step moves both offsets
        step = ::copy_file_range(source, &sourceOffset, target, &targetOffset,
                                 static_cast<std::size_t>(end - sourceOffset), 0);
    // Not every file system can do that, and some report success and copy nothing or too little.
    const std::optional<qint64> rest =
        readChunks(source, sourceOffset, end - sourceOffset, [&](const QByteArray &chunk, qint64 at) {
            return writeAll(target, chunk, targetOffset + at);
        });
    return rest ? std::optional(size - (end - sourceOffset) + *rest) : std::nullopt;
}

bool copyAll(int source, off_t sourceOffset, int target, off_t targetOffset, qint64 size)
{
    const std::optional<qint64> copied = copy(source, sourceOffset, target, targetOffset, size);
    if (copied && *copied != size)
        errno = EIO;
    return copied == size;
}

} // namespace brevant::FileBytes
