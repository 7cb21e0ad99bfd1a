// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/OriginalSlot.h"

#include "engine/FileBytes.h"
#include "settings/DurableFile.h"

#include <QRandomGenerator>

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace brevant {

namespace {

// The record, then a flag, then the content. A multiple of every usual block size, so that a file system can
// share the blocks of the source.
constexpr qint64 contentAt = 65536;
constexpr qint64 flagAt = contentAt - 1;

// Written at once, so that filling it later needs no new blocks, whose flush takes several times as long.
constexpr qint64 firstCapacity = 65536;

const QByteArray suffix(".original");
constexpr char puttingBack = 1;

/// Whether this process now has the file to itself; false with EWOULDBLOCK where another one has it, or has
/// taken its name away meanwhile.
bool lock(int file)
{
    struct stat status {};
    if (uninterrupted([&] { return ::flock(file, LOCK_EX | LOCK_NB); }) != 0 || ::fstat(file, &status) != 0)
        return false;
    if (status.st_nlink == 0)
        errno = EWOULDBLOCK;
    return status.st_nlink > 0;
}

} // namespace

OriginalSlot::OriginalSlot(QByteArray path, Descriptor file)
    : m_path(std::move(path)), m_file(std::move(file))
{
}

bool OriginalSlot::isName(const QByteArray &name)
{
    return name.endsWith(suffix);
}

std::optional<OriginalSlot> OriginalSlot::makeIn(const QByteArray &folder)
{
    // A name may be taken, and a program that starts just now may take the new file for a leftover.
    while (true) {
        const QByteArray path =
            folder + '/' + QByteArray::number(QRandomGenerator::global()->generate64(), 36) + suffix;
        Descriptor file(uninterrupted(
            [&] { return ::open(path.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
        if (!file.isOpen()) {
            if (errno == EEXIST)
                continue;
            return std::nullopt;
        }
        OriginalSlot slot(path, std::move(file));
        slot.m_isNew = true;
        if (!lock(slot.m_file.number())) {
            if (errno == EWOULDBLOCK)
                continue;
        } else if (FileBytes::writeAll(slot.m_file.number(), QByteArray(contentAt + firstCapacity, '\0'),
                                       0)) {
            return slot;
        }
        const int error = errno;
        slot.remove();
        errno = error;
        return std::nullopt;
    }
}

std::optional<OriginalSlot> OriginalSlot::openLeft(const QByteArray &path)
{
    Descriptor file(uninterrupted(
        [&] { return ::open(path.constData(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode) ||
        !lock(file.number()))
        return std::nullopt;
    return OriginalSlot(path, std::move(file));
}

bool OriginalSlot::fill(int source, OriginalRecord &record)
{
    const int file = m_file.number();
    clear();
    const std::optional<qint64> copied = FileBytes::copy(source, 0, file, contentAt, record.size);
    if (!copied)
        return false;
    record.size = *copied;
    const std::optional<QByteArray> hash = contentHash(record.size);
    if (!hash)
        return false;
    record.hash = *hash;
    // Last, so that a record is never there without its content.
    const QByteArray bytes = record.toBytes();
    if (bytes.size() > flagAt) {
        errno = ENAMETOOLONG;
        return false;
    }
    if (!FileBytes::writeAll(file, QByteArray(1, '\0'), flagAt) || !FileBytes::writeAll(file, bytes, 0) ||
        uninterrupted([&] { return ::fdatasync(file); }) != 0)
        return false;
    if (std::exchange(m_isNew, false))
        return flushFolder(m_path.first(m_path.lastIndexOf('/')));
    return true;
}

void OriginalSlot::clear()
{
    // The bytes are there already: writing them again cannot want for room.
    static_cast<void>(FileBytes::writeAll(m_file.number(), QByteArray(sizeof(quint64), '\0'), 0));
}

std::pair<OriginalSlot::Content, std::optional<OriginalRecord>> OriginalSlot::read() const
{
    const std::optional<QByteArray> bytes = FileBytes::read(m_file.number(), flagAt, 0);
    if (!bytes)
        return {Content::Unreadable, std::nullopt};
    const QByteArrayView beginning =
        QByteArrayView(*bytes).first(std::min<qint64>(sizeof(quint64), bytes->size()));
    if (std::ranges::all_of(beginning, [](char byte) { return byte == '\0'; }))
        return {Content::Nothing, std::nullopt};
    std::optional<OriginalRecord> record = OriginalRecord::fromBytes(*bytes);
    if (!record)
        return {Content::Unknown, std::nullopt};
    const std::optional<QByteArray> hash = contentHash(record->size);
    if (!hash)
        return {Content::Unreadable, std::move(record)};
    const bool isWhole = hash == record->hash;
    return {isWhole ? Content::Source : Content::Damaged, std::move(record)};
}

bool OriginalSlot::copyTo(int target, qint64 size) const
{
    const std::optional<qint64> copied = FileBytes::copy(m_file.number(), contentAt, target, 0, size);
    if (copied && *copied != size)
        errno = EIO;
    return copied == size;
}

std::optional<QByteArray> OriginalSlot::contentHash(qint64 size) const
{
    return FileBytes::hash(m_file.number(), contentAt, size);
}

bool OriginalSlot::markPuttingBack()
{
    return FileBytes::writeAll(m_file.number(), QByteArray(1, puttingBack), flagAt) &&
           uninterrupted([&] { return ::fdatasync(m_file.number()); }) == 0;
}

bool OriginalSlot::isPuttingBack() const
{
    return FileBytes::read(m_file.number(), 1, flagAt) == QByteArray(1, puttingBack);
}

void OriginalSlot::remove()
{
    ::unlink(m_path.constData());
}

void OriginalSlot::setInherited(bool inherited)
{
    ::fcntl(m_file.number(), F_SETFD, inherited ? 0 : FD_CLOEXEC);
}

} // namespace brevant
