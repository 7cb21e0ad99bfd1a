// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"

#include "engine/FileBytes.h"
#include "engine/PrivateFolder.h"
#include "engine/originals/OriginalRecord.h"
#include "engine/originals/OriginalSlot.h"
#include "settings/Descriptor.h"
#include "settings/DurableFile.h"

#include <QStringList>

#include <array>
#include <cstdio>
#include <functional>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace brevant {

namespace {

constexpr mode_t allBits = 07777;

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    return slash == 0 ? QByteArrayLiteral("/") : path.first(slash);
}

/// A name beside `path` that nothing has.
QByteArray freeNameBeside(const QByteArray &path)
{
    return folderOf(path) + "/.brevant-" + randomName() + ".tmp";
}

Descriptor openSource(const QByteArray &path, int flags)
{
    return Descriptor(
        uninterrupted([&] { return ::open(path.constData(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC); }));
}

/// The path of an open file that has other names, or none.
QByteArray pathOfOpen(int file)
{
    return "/proc/self/fd/" + QByteArray::number(file);
}

bool hasSameContent(int file, const OriginalRecord &original)
{
    struct stat status {};
    return ::fstat(file, &status) == 0 && status.st_size == original.size &&
           FileBytes::hash(file, 0, original.size) == original.hash;
}

/// What could not be made as it was, and why.
class Lacks final {
public:
    void add(const QString &what, bool done)
    {
        if (done)
            return;
        if (m_what.isEmpty())
            m_reason = qt_error_string(errno);
        m_what.append(what);
    }
    [[nodiscard]] QString text() const
    {
        return m_what.isEmpty()
                   ? QString()
                   : QStringLiteral("%1 (%2)").arg(m_what.join(QLatin1StringView(", ")), m_reason);
    }

private:
    QStringList m_what;
    QString m_reason;
};

void restoreExtended(int file, const OriginalRecord &original, Lacks &lacks)
{
    const std::map<QByteArray, QByteArray> now = attributesOf(file);
    for (const auto &[name, value] : now) {
        if (!original.attributes.contains(name))
            ::fremovexattr(file, name.constData());
    }
    for (const auto &[name, value] : original.attributes) {
        const auto found = now.find(name);
        const bool isSame = found != now.end() && found->second == value;
        lacks.add(QString::fromUtf8(name),
                  isSame || ::fsetxattr(file, name.constData(), value.constData(),
                                        static_cast<std::size_t>(value.size()), 0) == 0);
    }
}

/// Everything but the content; `times` too where the content is that of before. Only what differs is set, as
/// who may write a file need not be allowed to set any of it.
QString restoreBesides(int file, const OriginalRecord &original, bool times)
{
    Lacks lacks;
    struct stat now {};
    if (::fstat(file, &now) != 0)
        return qt_error_string(errno);
    if (now.st_uid != original.owner || now.st_gid != original.group)
        lacks.add(QStringLiteral("owner"), ::fchown(file, original.owner, original.group) == 0);
    // After the owner: a new one takes special bits from the mode.
    if (::fstat(file, &now) != 0 || (now.st_mode & allBits) != original.mode)
        lacks.add(QStringLiteral("mode"), ::fchmod(file, original.mode) == 0);
    restoreExtended(file, original, lacks);
    const std::array<timespec, 2> before{original.accessed, original.modified};
    if (times)
        lacks.add(QStringLiteral("times"), ::futimens(file, before.data()) == 0);
    return lacks.text();
}

/// Whether the disk surely has no room for the source; not every file system can tell.
bool isRoomLacking(int file, const OriginalRecord &original)
{
    return original.size > 0 &&
           uninterrupted([&] { return ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, original.size); }) != 0 &&
           (errno == ENOSPC || errno == EDQUOT || errno == EFBIG);
}

bool flush(int file)
{
    return uninterrupted([&] { return ::fsync(file); }) == 0;
}

/// Whether there is room is asked while there is still something to lose.
bool overwrite(int file, const OriginalRecord &original, OriginalSlot &copy)
{
    if (isRoomLacking(file, original))
        return false;
    // A slot that could only be opened for reading takes no mark.
    if (!copy.markPuttingBack() && errno != EBADF)
        return false;
    return uninterrupted([&] { return ::ftruncate(file, 0); }) == 0 && copy.copyTo(file, original.size);
}

/// Renames a file to a name that nothing has.
bool renameToFree(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EEXIST)
        return false;
    // Network file systems refuse that, and some have no second names either.
    if (::link(from.constData(), to.constData()) == 0) {
        ::unlink(from.constData());
        return true;
    }
    struct stat there {};
    return errno != EEXIST && ::lstat(to.constData(), &there) != 0 && errno == ENOENT &&
           ::rename(from.constData(), to.constData()) == 0;
}

/// Makes the file anew under its name: `write` gives it its content. What has come there meanwhile is newer,
/// and stays, unless `replaces`.
QString makeAnew(const OriginalRecord &original, bool replaces, const std::function<bool(int)> &write,
                 QString &lacks)
{
    const QByteArray temporary = freeNameBeside(original.file);
    const Descriptor file(uninterrupted(
        [&] { return ::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600); }));
    if (!file.isOpen())
        return qt_error_string(errno);
    if (write(file.number())) {
        lacks = restoreBesides(file.number(), original, true);
        if (flush(file.number()) &&
            (replaces ? ::rename(temporary.constData(), original.file.constData()) == 0
                      : renameToFree(temporary, original.file)) &&
            flushFolder(folderOf(original.file)))
            return {};
    }
    const QString error = qt_error_string(errno);
    ::unlink(temporary.constData());
    return error;
}

/// Gives an open file that still has another name this one too; false, with errno set, on failure.
bool linkAgain(int held, const QByteArray &path, bool replaces)
{
    const QByteArray file = pathOfOpen(held);
    if (!replaces)
        return ::linkat(AT_FDCWD, file.constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW) == 0;
    const QByteArray temporary = freeNameBeside(path);
    if (::linkat(AT_FDCWD, file.constData(), AT_FDCWD, temporary.constData(), AT_SYMLINK_FOLLOW) != 0)
        return false;
    if (::rename(temporary.constData(), path.constData()) == 0)
        return flushFolder(folderOf(path));
    const int error = errno;
    ::unlink(temporary.constData());
    errno = error;
    return false;
}

PutBackResult overwriteAt(const QByteArray &path, int flags, const OriginalRecord &original,
                          OriginalSlot &copy)
{
    const auto openFor = [&](int access) {
        return Descriptor(
            uninterrupted([&] { return ::open(path.constData(), access | flags | O_NONBLOCK | O_CLOEXEC); }));
    };
    Descriptor file = openFor(O_RDWR);
    if (!file.isOpen())
        file = openFor(O_WRONLY); // who may not read a file may still write it
    PutBackResult result;
    const bool isDone = file.isOpen() &&
                        (hasSameContent(file.number(), original) || overwrite(file.number(), original, copy));
    if (isDone)
        result.lacks = restoreBesides(file.number(), original, true);
    if (!isDone || !flush(file.number()))
        result.error = qt_error_string(errno);
    return result;
}

bool isSameFile(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
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
    const Descriptor file = openSource(original.file, O_RDONLY);
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

PutBackResult putBack(const OriginalRecord &original, OriginalSlot &copy, int held, bool replaces)
{
    struct stat there {};
    struct stat before {};
    const bool isThere = ::lstat(original.file.constData(), &there) == 0;
    const bool hasOtherNames = held >= 0 && ::fstat(held, &before) == 0 && before.st_nlink > 0 &&
                               (!isThere || !isSameFile(there, before));
    PutBackResult result;
    if (hasOtherNames) {
        result = overwriteAt(pathOfOpen(held), 0, original, copy);
        if (!result.error.isEmpty() || (isThere && !replaces))
            return result;
        if (linkAgain(held, original.file, replaces))
            return result;
    }
    if (isThere)
        return overwriteAt(original.file, O_NOFOLLOW, original, copy);
    result.error = makeAnew(
        original, false, [&](int file) { return copy.copyTo(file, original.size); }, result.lacks);
    return result;
}

QString restoreAttributes(const QByteArray &path, const OriginalRecord &original)
{
    const Descriptor file = openSource(path, O_RDONLY);
    if (!file.isOpen())
        return qt_error_string(errno);
    return restoreBesides(file.number(), original, false);
}

QString putFileBack(const OriginalRecord &original, int held)
{
    struct stat there {};
    struct stat before {};
    if (::fstat(held, &before) != 0)
        return qt_error_string(errno);
    if (::lstat(original.file.constData(), &there) == 0 && isSameFile(there, before))
        return {};
    if (before.st_nlink > 0 && linkAgain(held, original.file, true))
        return {};
    QString lacks;
    return makeAnew(
        original, true,
        [&](int file) { return FileBytes::copy(held, 0, file, 0, original.size) == original.size; }, lacks);
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

std::optional<QByteArray> keepContent(const OriginalRecord &original, const PrivateFolder &folder)
{
    const Descriptor source = openSource(original.file, O_RDONLY);
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
        return std::nullopt;
    return folder.keep(source.number(), 0, status.st_size,
                       original.path.sliced(original.path.lastIndexOf('/') + 1));
}

} // namespace brevant
