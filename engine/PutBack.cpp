// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/PutBack.h"

#include "engine/FileBytes.h"
#include "engine/OriginalRecord.h"
#include "engine/OriginalSlot.h"
#include "engine/OriginalsFolder.h"
#include "settings/Descriptor.h"
#include "settings/DurableFile.h"

#include <QRandomGenerator>

#include <array>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant {

namespace {

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash == 0 ? QByteArrayLiteral("/") : path.first(slash);
}

/// A name beside `path` that nothing has.
QByteArray freeNameBeside(const QByteArray &path)
{
    return folderOf(path) + "/.brevant-" + QByteArray::number(QRandomGenerator::global()->generate64(), 36) +
           ".tmp";
}

bool writeContent(int file, const OriginalRecord &original, const OriginalSlot &copy)
{
    if (!copy.copyTo(file, original.size))
        return false;
    // Only root may give a file away. The mode comes after: a new owner takes special bits from it.
    [[maybe_unused]] const int owned = ::fchown(file, original.owner, original.group);
    const std::array<timespec, 2> times{original.accessed, original.modified};
    return ::fchmod(file, original.mode) == 0 && ::futimens(file, times.data()) == 0 &&
           uninterrupted([&] { return ::fsync(file); }) == 0;
}

bool overwrite(int file, const OriginalRecord &original, OriginalSlot &copy)
{
    // Whether there is room is asked while there is still something to lose. Not every file system can tell.
    if (original.size > 0 && ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, original.size) != 0 &&
        errno != EOPNOTSUPP)
        return false;
    return copy.markPuttingBack() && ::ftruncate(file, 0) == 0 && writeContent(file, original, copy);
}

bool makeAnew(const OriginalRecord &original, const OriginalSlot &copy)
{
    const QByteArray temporary = freeNameBeside(original.file);
    const Descriptor file(uninterrupted(
        [&] { return ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!file.isOpen())
        return false;
    // What has come into the source's place meanwhile is newer, and stays.
    if (writeContent(file.number(), original, copy) &&
        ::renameat2(AT_FDCWD, temporary.constData(), AT_FDCWD, original.file.constData(), RENAME_NOREPLACE) ==
            0)
        return flushFolder(folderOf(original.file));
    const int error = errno;
    ::unlink(temporary.constData());
    errno = error;
    return false;
}

} // namespace

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

SourceState stateOfSource(const OriginalRecord &original, const OriginalSlot &copy)
{
    const SourceState glance = glanceAtSource(original);
    if (glance != SourceState::Changed && glance != SourceState::Replaced)
        return glance;
    const Descriptor file(uninterrupted(
        [&] { return ::open(original.file.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return SourceState::Unknown;
    const std::optional<QByteArray> hash = FileBytes::hash(file.number(), 0, status.st_size);
    if (!hash)
        return SourceState::Unknown;
    if (status.st_size == original.size && hash == original.hash)
        return SourceState::Same;
    if (status.st_size < original.size && hash == copy.contentHash(status.st_size))
        return SourceState::Beginning;
    return glance;
}

QString putBack(const OriginalRecord &original, OriginalSlot &copy)
{
    const Descriptor file(uninterrupted(
        [&] { return ::open(original.file.constData(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
    const bool done = file.isOpen() ? overwrite(file.number(), original, copy)
                                    : errno == ENOENT && makeAnew(original, copy);
    return done ? QString() : qt_error_string(errno);
}

std::optional<QByteArray> keepContent(const OriginalRecord &original, const QByteArray &folder)
{
    const Descriptor source(uninterrupted(
        [&] { return ::open(original.file.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
        return std::nullopt;
    const QByteArray path =
        OriginalsFolder::keptPath(folder, QByteArray::number(QRandomGenerator::global()->generate64(), 36),
                                  original.path.sliced(original.path.lastIndexOf('/') + 1));
    const Descriptor kept(uninterrupted(
        [&] { return ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!kept.isOpen())
        return std::nullopt;
    if (FileBytes::copy(source.number(), 0, kept.number(), 0, status.st_size) == status.st_size &&
        uninterrupted([&] { return ::fsync(kept.number()); }) == 0 && flushFolder(folder))
        return path;
    const int error = errno;
    ::unlink(path.constData());
    errno = error;
    return std::nullopt;
}

QString putBackLink(const OriginalRecord &original, bool replacesFile)
{
    if (original.linkText.isEmpty())
        return {};
    struct stat status {};
    const bool isThere = ::lstat(original.path.constData(), &status) == 0;
    if (isThere && !(replacesFile && S_ISREG(status.st_mode)))
        return {};
    const QByteArray temporary = freeNameBeside(original.path);
    if (::symlink(original.linkText.constData(), temporary.constData()) == 0) {
        if (::rename(temporary.constData(), original.path.constData()) == 0)
            return {};
        const int error = errno;
        ::unlink(temporary.constData());
        errno = error;
    }
    return qt_error_string(errno);
}

} // namespace brevant
