// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/OriginalSlot.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>

#include <sys/file.h>

namespace brevant {

namespace {

constexpr qint64 flagAt = 65535; // just before the content

// Written in advance: flushing newly allocated blocks takes several times as long.
constexpr qint64 firstCapacity = 65536;

const QByteArray suffix(".original");
constexpr char puttingBack = 1;

/// Whether the program that made the slot is alive, by the number in the name.
bool isProgramAlive(const QByteArray &name)
{
    const int program = name.left(name.indexOf('-')).toInt();
    return program > 0 && (::kill(program, 0) == 0 || errno == EPERM);
}

std::optional<OriginalRecord> recordIn(const Descriptor &file)
{
    const std::optional<QByteArray> bytes = FileBytes::read(file.number(), flagAt, 0);
    return bytes ? OriginalRecord::fromBytes(*bytes) : std::nullopt;
}

} // namespace

std::optional<OriginalSlot> OriginalSlot::makeIn(PrivateFolder &folder)
{
    const QByteArray name = QByteArray::number(::getpid()) + '-' + randomName() + suffix;
    // Locked before it exists, so that a program that starts just now cannot take it for a leftover.
    static_cast<void>(folder.tryLock(name));
    OriginalSlot slot(folder, name, folder.makeFile(name));
    slot.m_isNew = true;
    if (!slot.m_file.isOpen())
        return std::nullopt;
    if (FileBytes::writeAll(slot.m_file.number(), QByteArray(contentAt + firstCapacity, '\0'), 0))
        return slot;
    const auto keeper = keepErrno();
    slot.remove();
    return std::nullopt;
}

std::vector<OriginalSlot> OriginalSlot::leftIn(PrivateFolder &folder, QStringList &refused,
                                               const std::function<bool(const OriginalRecord &)> &waitsFor)
{
    constexpr std::chrono::milliseconds pause(20);
    std::vector<OriginalSlot> slots;
    for (const QByteArray &name : folder.namesEndingIn(suffix)) {
        PrivateFolder::Lock lock = folder.tryLock(name);
        for (; lock == PrivateFolder::Lock::InUse && waitsFor; lock = folder.tryLock(name)) {
            const std::optional<OriginalRecord> record = recordIn(folder.openFile(name));
            if (!record || !waitsFor(*record))
                break;
            std::this_thread::sleep_for(pause);
        }
        if (lock == PrivateFolder::Lock::InUse ||
            (lock == PrivateFolder::Lock::Refused && isProgramAlive(name)))
            continue;
        Descriptor file = folder.openFile(name);
        if (!file.isOpen() && (errno == EPERM || errno == EACCES))
            refused.append(folder.pathOf(name));
        // Version 1.0.0 locks the slots it uses like this.
        if (file.isOpen() && (::flock(file.number(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK))
            slots.push_back(OriginalSlot(folder, name, std::move(file)));
        else
            folder.unlock(name);
    }
    return slots;
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
    QByteArray bytes = record.toBytes();
    if (bytes.size() > flagAt) {
        record.attributes.clear();
        bytes = record.toBytes();
    }
    if (bytes.size() > flagAt) {
        errno = ENAMETOOLONG;
        return false;
    }
    // Last, so that no record is ever without its content.
    if (!FileBytes::writeAll(file, QByteArray(1, '\0'), flagAt) || !FileBytes::writeAll(file, bytes, 0) ||
        uninterrupted([&] { return ::fdatasync(file); }) != 0)
        return false;
    return !std::exchange(m_isNew, false) || m_folder->flush();
}

void OriginalSlot::clear()
{
    // Overwriting existing bytes cannot fail for lack of room.
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

bool OriginalSlot::markPuttingBack()
{
    return FileBytes::writeAll(m_file.number(), QByteArray(1, puttingBack), flagAt) &&
           uninterrupted([&] { return ::fdatasync(m_file.number()); }) == 0;
}

bool OriginalSlot::isPuttingBack() const
{
    return FileBytes::read(m_file.number(), 1, flagAt) == QByteArray(1, puttingBack);
}

QString OriginalSlot::setAside() const
{
    const QByteArray kept = "kept-" + m_name.chopped(suffix.size()) + "-damaged";
    return m_folder->renameFile(m_name, kept) ? m_folder->pathOf(kept) : path();
}

SourceState glanceAtSource(const OriginalRecord &original)
{
    struct stat status {};
    if (::lstat(original.file.constData(), &status) != 0)
        return errno == ENOENT || errno == ENOTDIR ? SourceState::Missing : SourceState::Unknown;
    if (!S_ISREG(status.st_mode))
        return SourceState::Unknown;
    if (original.isUntouched(status))
        return SourceState::Same;
    if (status.st_size == 0 && original.size > 0)
        return SourceState::Empty;
    return original.isSameFile(status) ? SourceState::Changed : SourceState::Replaced;
}

SourceState OriginalSlot::stateOf(const OriginalRecord &original) const
{
    const SourceState glance = glanceAtSource(original);
    if (glance != SourceState::Changed && glance != SourceState::Replaced)
        return glance;
    const Descriptor file = openFile(original.file, O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return SourceState::Unknown;
    const std::optional<QByteArray> hash = FileBytes::hash(file.number(), 0, status.st_size);
    if (!hash)
        return SourceState::Unknown;
    if (status.st_size == original.size && hash == original.hash)
        return SourceState::Same;
    if (status.st_size < original.size && hash == contentHash(status.st_size))
        return SourceState::Beginning;
    return glance;
}

} // namespace brevant
