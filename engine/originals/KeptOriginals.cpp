// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/KeptOriginals.h"

#include "engine/EntryResult.h"
#include "engine/originals/OriginalSlot.h"
#include "files/FileBytes.h"
#include "files/PathString.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <csignal>
#include <ctime>
#include <functional>
#include <map>
#include <utility>

#include <sys/stat.h>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

const QByteArray keptSuffix(".kept"); // no start looks at such names
const QByteArray ofContent(".source.kept");
const QByteArray ofRecord(".record.kept");

/// "4711-x-y.source.kept" gives "4711-x"; empty for a name that is none of ours.
QByteArray ownerOf(const QByteArray &name)
{
    const bool isOurs = name.endsWith(ofContent) || name.endsWith(ofRecord);
    const QByteArray owner = name.left(std::max<qsizetype>(name.lastIndexOf('-'), 0));
    return isOurs && owner.contains('-') ? owner : QByteArray();
}

/// Whether the program of that name has ended.
bool hasEnded(PrivateFolder &folder, const QByteArray &owner)
{
    switch (folder.tryLock(owner)) {
    case PrivateFolder::Lock::Held:
        folder.unlock(owner);
        return true;
    case PrivateFolder::Lock::InUse:
        return false;
    case PrivateFolder::Lock::Refused:
        break;
    }
    const int program = owner.left(owner.indexOf('-')).toInt();
    return program <= 0 || (::kill(program, 0) != 0 && errno == ESRCH);
}

bool writeWhole(PrivateFolder &folder, const QByteArray &name,
                const std::function<bool(const Descriptor &)> &write)
{
    const Descriptor file = folder.makeFile(name);
    return file.isOpen() && write(file) && flushFile(file.number());
}

/// The SHA-256 of a regular file; nothing on failure.
std::optional<QByteArray> hashOf(const QByteArray &path)
{
    const Descriptor file = openFile(path, O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return FileBytes::hash(file.number(), 0, status.st_size);
}

} // namespace

KeptOriginals::KeptOriginals(const Tools &tools, qint64 room)
    : m_tools(tools), m_room(room), m_owner(QByteArray::number(::getpid()) + '-' + randomName())
{
}

KeptOriginals::Use::Use(KeptOriginals &originals, const QStringList &paths)
    : m_originals(originals), m_paths(paths.begin(), paths.end())
{
    const std::lock_guard lock(originals.m_mutex);
    originals.m_used |= m_paths;
}

KeptOriginals::Use::~Use()
{
    const std::lock_guard lock(m_originals.m_mutex);
    m_originals.m_used -= m_paths;
}

void KeptOriginals::Use::keep(const OriginalSlot &slot, OriginalRecord record, EntryResult &result)
{
    // An output that cannot be read is not replaced later on, as no content has this hash.
    const QByteArray unknown(record.hash.size(), '\0');
    record.written = result.written.isEmpty() ? hashOf(record.file).value_or(unknown) : result.written;
    if (record.written == record.hash)
        return;
    const std::lock_guard lock(m_originals.m_mutex);
    const std::optional<QString> kept = m_originals.keep(slot, record, result.notKept);
    if (!kept)
        return;
    result.original = *kept;
    m_paths.insert(*kept);
    m_originals.m_used.insert(*kept);
}

/// Copies the content of the slot and writes its record. The path of the content, or nothing, with the reason
/// in `why`.
std::optional<QString> KeptOriginals::keep(const OriginalSlot &slot, const OriginalRecord &record,
                                           QString &why)
{
    const QByteArray bytes = record.toBytes();
    const qint64 size = record.size + bytes.size();
    if (m_size + size > m_room) {
        why = u"its original was not kept, as all originals together would take more than %1 MB"_s.arg(
            m_room / 1'000'000);
        return std::nullopt;
    }
    const QByteArray name = m_owner + '-' + randomName();
    PrivateFolder *const folder = folderAt(PathString::folder(slot.path()).toString(), why);
    const auto writeContent = [&](const Descriptor &file) {
        const std::array<timespec, 2> times{record.accessed, record.modified};
        return slot.copyTo(file.number(), record.size) && ::futimens(file.number(), times.data()) == 0;
    };
    const auto writeRecord = [&](const Descriptor &file) {
        return FileBytes::writeAll(file.number(), bytes, 0);
    };
    if (folder && writeWhole(*folder, name + ofContent, writeContent) &&
        writeWhole(*folder, name + ofRecord, writeRecord) && folder->flush()) {
        m_size += size;
        return folder->pathOf(name + ofContent);
    }
    why = u"its original could not be kept: %1"_s.arg(folder ? qt_error_string(errno) : why);
    for (const QByteArray &part : {name + ofContent, name + ofRecord}) {
        if (folder)
            static_cast<void>(folder->removeFile(part));
    }
    return std::nullopt;
}

/// The folder, with our name locked in it for as long as we live; null on failure.
PrivateFolder *KeptOriginals::folderAt(const QString &path, QString &error)
{
    for (PrivateFolder &folder : m_folders) {
        if (folder.path() == path)
            return &folder;
    }
    std::optional<PrivateFolder> folder = PrivateFolder::open(path, error, true);
    if (!folder)
        return nullptr;
    static_cast<void>(folder->tryLock(m_owner));
    return &m_folders.emplace_back(std::move(*folder));
}

void KeptOriginals::dropForRun()
{
    drop(false);
}

void KeptOriginals::dropOld()
{
    drop(true);
}

void KeptOriginals::drop(bool onlyOld)
{
    const std::lock_guard lock(m_mutex);
    m_size = 0;
    for (const QString &path : m_tools.originals) {
        QString error;
        if (std::optional<PrivateFolder> folder = PrivateFolder::open(path, error))
            dropIn(*folder, onlyOld);
    }
}

void KeptOriginals::dropIn(PrivateFolder &folder, bool onlyOld)
{
    const auto statusOf = [&folder](const QByteArray &name, struct stat &status) {
        return ::lstat(QFile::encodeName(folder.pathOf(name)).constData(), &status) == 0;
    };
    const std::time_t oldest = std::time(nullptr) - std::chrono::seconds(longest).count();
    std::map<QByteArray, bool> isFreeByOwner{{m_owner, true}};
    for (const QByteArray &name : folder.namesEndingIn(keptSuffix)) {
        const QByteArray owner = ownerOf(name);
        struct stat status {};
        struct stat record {};
        if (owner.isEmpty() || !statusOf(name, status))
            continue;
        if (!isFreeByOwner.contains(owner))
            isFreeByOwner[owner] = hasEnded(folder, owner);
        const QByteArray stem = name.chopped(ofRecord.size()); // which is as long as that of the content
        const bool isYoung = statusOf(stem + ofRecord, record) && record.st_mtime > oldest;
        const bool stays =
            !isFreeByOwner[owner] || m_used.contains(folder.pathOf(stem + ofContent)) || (onlyOld && isYoung);
        if (stays || !folder.removeFile(name))
            m_size += status.st_size;
    }
}

bool KeptOriginals::isThere(const QString &path)
{
    struct stat status {};
    return !path.isEmpty() && ::lstat(QFile::encodeName(path).constData(), &status) == 0 &&
           S_ISREG(status.st_mode);
}

std::optional<KeptCopy> KeptCopy::open(const QString &source, const QString &path, QString &error)
{
    const QString gone = u"it is not kept any more"_s;
    std::optional<PrivateFolder> folder = PrivateFolder::open(PathString::folder(path).toString(), error);
    if (!folder) {
        error = error.isEmpty() ? gone : error;
        return std::nullopt;
    }
    const QByteArray name =
        QFile::encodeName(PathString::lastComponent(path).toString()).chopped(ofContent.size());
    Descriptor content = folder->openFile(name + ofContent);
    const Descriptor file = content.isOpen() ? folder->openFile(name + ofRecord) : Descriptor();
    if (!file.isOpen()) {
        error = errno == ENOENT ? gone : u"the copy of it cannot be used: %1"_s.arg(qt_error_string(errno));
        return std::nullopt;
    }
    constexpr qint64 longestRecord = 131072; // in a slot they are shorter
    const std::optional<QByteArray> bytes = FileBytes::read(file.number(), longestRecord, 0);
    std::optional<OriginalRecord> record = bytes ? OriginalRecord::fromBytes(*bytes) : std::nullopt;
    struct stat status {};
    if (!record || record->path != QFile::encodeName(source) || record->written.isEmpty() ||
        ::fstat(content.number(), &status) != 0 || status.st_size != record->size ||
        FileBytes::hash(content.number(), 0, record->size) != record->hash) {
        error = u"the copy of it is damaged"_s;
        return std::nullopt;
    }
    return KeptCopy{std::move(*folder), name, std::move(content), std::move(*record)};
}

void KeptCopy::remove() const
{
    static_cast<void>(folder.removeFile(name + ofContent));
    static_cast<void>(folder.removeFile(name + ofRecord));
}

} // namespace brevant
