// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"

#include "engine/Stop.h"
#include "engine/originals/OriginalRecord.h"
#include "engine/originals/OriginalSlot.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PrivateFolder.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant {

namespace {

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
        lacks = original.restoreOn(file.number(), true);
        if (flush(file.number()) &&
            (replaces ? ::rename(temporary.constData(), original.file.constData()) == 0
                      : renameToFree(temporary, original.file)) &&
            flushFolder(folderOf(original.file)))
            return {};
    }
    QString error = qt_error_string(errno);
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
        result.lacks = original.restoreOn(file.number(), true);
    if (!isDone || !flush(file.number()))
        result.error = qt_error_string(errno);
    return result;
}

bool isSameFile(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// The path without links in its folder's.
QByteArray placeOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    const std::unique_ptr<char, decltype(&std::free)> folder(
        ::realpath(path.first(slash + 1).constData(), nullptr), &std::free);
    return folder ? QByteArray(folder.get()) + path.sliced(slash) : path;
}

QByteArray markOfFile(quint64 device, quint64 inode)
{
    return QByteArray::number(device) + ' ' + QByteArray::number(inode);
}

bool isOf(const OriginalRecord &original, const QByteArray &source)
{
    const QByteArrayList marks = marksOf(source);
    return original.path == source || marks.contains(placeOf(original.file)) ||
           marks.contains(markOfFile(original.device, original.inode));
}

} // namespace

QByteArrayList marksOf(const QByteArray &path)
{
    QByteArrayList marks{placeOf(path)};
    if (const QByteArray end = placeOf(linkTarget(path)); end != marks.first())
        marks.append(end);
    struct stat status {};
    if (::stat(path.constData(), &status) == 0)
        marks.append(markOfFile(status.st_dev, status.st_ino));
    return marks;
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

QString restoreAttributes(const OriginalRecord &original)
{
    Descriptor file = openSource(original.path, O_RDONLY);
    if (!file.isOpen() && errno == ELOOP)
        file = openSource(original.file, O_RDONLY);
    if (!file.isOpen())
        return qt_error_string(errno);
    return original.restoreOn(file.number(), false);
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

namespace {

/// Renames a slot whose content cannot be trusted, so that it is said once.
QString keepUnreadable(const OriginalSlot &copy, const QString &what)
{
    return QStringLiteral("%1 is damaged and of no use; it is kept as %2.")
        .arg(what, QFile::decodeName(copy.setAside()));
}

/// Makes a plain file of the content of a slot and drops the slot; the sentence about it.
QString keepLeft(const OriginalSlot &copy, const OriginalRecord &original)
{
    if (const std::optional<QByteArray> path = copy.keep(original)) {
        copy.remove();
        return QStringLiteral("A run over %1 was cut short; what it was before is kept as %2.")
            .arg(QFile::decodeName(original.path), QFile::decodeName(*path));
    }
    return QStringLiteral(
               "A run over %1 was cut short; what it was before is in %2 and cannot be taken out: %3.")
        .arg(QFile::decodeName(original.path), QFile::decodeName(copy.path()), qt_error_string(errno));
}

QString putBackLeft(OriginalSlot &copy, const OriginalRecord &original, bool &isLost)
{
    const PutBackResult done = putBack(original, copy);
    const QString error = done.error.isEmpty() ? putBackLink(original, false) : done.error;
    isLost = !error.isEmpty();
    if (isLost)
        return QStringLiteral(
                   "%1 was lost when a run was cut short, and cannot be put back now: %2. The next start "
                   "tries again, with the copy %3.")
            .arg(QFile::decodeName(original.path), error, QFile::decodeName(copy.path()));
    copy.remove();
    QString sentence = QStringLiteral("%1 was lost when a run was cut short, and has been put back")
                           .arg(QFile::decodeName(original.path));
    if (!done.lacks.isEmpty())
        sentence += QStringLiteral(", but not its %1").arg(done.lacks);
    return sentence + u'.';
}

QString takeUpSource(OriginalSlot &copy, const OriginalRecord &original, bool &isLost)
{
    switch (copy.stateOf(original)) {
    case SourceState::Same:
        copy.remove();
        return {};
    case SourceState::Missing:
    case SourceState::Empty:
        return putBackLeft(copy, original, isLost);
    case SourceState::Beginning:
        if (copy.isPuttingBack())
            return putBackLeft(copy, original, isLost);
        break;
    case SourceState::Changed:
    case SourceState::Replaced:
        break;
    case SourceState::Unknown:
        return QStringLiteral(
                   "A run over %1 was cut short, and it cannot be read now; what it was before is in %2.")
            .arg(QFile::decodeName(original.path), QFile::decodeName(copy.path()));
    }
    return keepLeft(copy, original);
}

/// The copy was not written to the end: the compressor had not started, or the disk has a fault.
QString takeUpDamaged(const OriginalSlot &copy, const OriginalRecord &original)
{
    if (copy.stateOf(original) == SourceState::Same) {
        copy.remove();
        return {};
    }
    return keepUnreadable(copy, QStringLiteral("A safety copy of %1").arg(QFile::decodeName(original.path)));
}

/// What is to be said of it; empty for nothing.
QString takeUp(OriginalSlot &copy, const QByteArray &source, bool &isLost)
{
    const auto [content, original] = copy.read();
    if (!source.isEmpty() && (!original || !isOf(*original, source)))
        return {};
    switch (content) {
    case OriginalSlot::Content::Nothing:
        copy.remove();
        break;
    case OriginalSlot::Content::Source:
        return takeUpSource(copy, *original, isLost);
    case OriginalSlot::Content::Damaged:
        return takeUpDamaged(copy, *original);
    case OriginalSlot::Content::Unknown:
        return keepUnreadable(copy, QStringLiteral("A safety copy"));
    case OriginalSlot::Content::Unreadable:
        return QStringLiteral("The safety copy %1 cannot be read now; the next start tries again.")
            .arg(QFile::decodeName(copy.path()));
    }
    return {};
}

/// Of all sources with an empty `source`.
QStringList takeUpLeft(const QStringList &originals, const QByteArray &source, const std::atomic<Stop> *stop,
                       bool &isLost)
{
    const auto waitsFor = [&](const OriginalRecord &original) {
        return stop != nullptr && *stop == Stop::No && isOf(original, source);
    };
    QStringList sentences;
    for (const QString &path : originals) {
        QString error;
        std::optional<PrivateFolder> folder = PrivateFolder::open(path, error);
        if (!folder) {
            if (source.isEmpty() && !error.isEmpty())
                sentences.append(
                    QStringLiteral("The safety copies in %1 are not looked at: %2.").arg(path, error));
            continue;
        }
        QStringList refused;
        for (OriginalSlot &copy : OriginalSlot::leftIn(*folder, refused, waitsFor)) {
            if (const QString sentence = takeUp(copy, source, isLost); !sentence.isEmpty())
                sentences.append(sentence);
        }
        for (const QString &file : source.isEmpty() ? refused : QStringList())
            sentences.append(
                QStringLiteral("The safety copy %1 is not used, as it may be somebody else's.").arg(file));
    }
    return sentences;
}

} // namespace

QStringList putBackAfterInterruption(const QStringList &originals)
{
    bool isLost = false;
    return takeUpLeft(originals, {}, nullptr, isLost);
}

bool putBackLeftOf(const QByteArray &source, const QStringList &originals, const std::atomic<Stop> &stop,
                   QStringList &sentences)
{
    bool isLost = false;
    sentences += takeUpLeft(originals, source, &stop, isLost);
    return !isLost;
}

} // namespace brevant
