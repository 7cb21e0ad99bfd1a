// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/RestoreSource.h"

#include "engine/modern/ModernEntry.h"
#include "engine/originals/KeptOriginals.h"
#include "engine/originals/OriginalSlot.h"
#include "engine/originals/PutBack.h"
#include "files/DurableFile.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"

#include <QFile>

#include <climits>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

using RestoreOutcome = RestoredSource::Outcome;

RestoredSource restoringFailed(const QString &error)
{
    return {RestoreOutcome::Failed, error, {}, {}};
}

/// A path by way of its folder, held open, so that nothing done there can be led elsewhere.
struct HeldPlace {
    Descriptor folder;
    QByteArray path;
};

/// Nothing, with errno set, if a link leads there, or on another failure.
std::optional<HeldPlace> holdPlace(const QByteArray &file)
{
    if (!file.isValidUtf8()) {
        errno = EILSEQ; // as a text it would stand for another file
        return std::nullopt;
    }
    const QByteArray folder = folderOf(file);
    Descriptor open = openFile(folder, O_RDONLY | O_DIRECTORY);
    if (!open.isOpen())
        return std::nullopt;
    QByteArray found(PATH_MAX, Qt::Uninitialized);
    const ssize_t length = ::readlink(pathOfOpen(open.number()).constData(), found.data(),
                                      static_cast<std::size_t>(found.size()));
    if (length < 0)
        return std::nullopt;
    if (found.first(length) != folder) {
        errno = ELOOP;
        return std::nullopt;
    }
    QByteArray path = pathOfOpen(open.number()) + file.sliced(file.lastIndexOf('/'));
    return HeldPlace{std::move(open), std::move(path)};
}

/// Locks all marks of a source, as runs do; false if one is at work on it.
bool takeTurnAtOnce(PrivateFolder &folder, const QString &source)
{
    for (const QString &mark : FileMarks::all(source)) {
        if (folder.tryLock(mark.toUtf8()) == PrivateFolder::Lock::InUse)
            return false;
    }
    return true;
}

/// The state of the file if it still holds what the run has written, or the original again; nothing, with
/// errno set to 0 for another content, otherwise.
std::optional<struct stat> stateOfOutput(const QByteArray &path, const OriginalRecord &record)
{
    const Descriptor file = openFile(path, O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return std::nullopt;
    const std::optional<QByteArray> hash =
        S_ISREG(status.st_mode) ? FileBytes::hash(file.number(), 0, status.st_size) : QByteArray();
    if (!hash)
        return std::nullopt;
    errno = 0;
    const bool isOurs = hash == record.written || hash == record.hash;
    return isOurs ? std::optional(status) : std::nullopt;
}

bool isAsBefore(const QByteArray &path, const struct stat &before)
{
    struct stat now {};
    return ::lstat(path.constData(), &now) == 0 && now.st_dev == before.st_dev &&
           now.st_ino == before.st_ino && now.st_size == before.st_size &&
           now.st_mtim.tv_sec == before.st_mtim.tv_sec && now.st_mtim.tv_nsec == before.st_mtim.tv_nsec &&
           now.st_ctim.tv_sec == before.st_ctim.tv_sec && now.st_ctim.tv_nsec == before.st_ctim.tv_nsec;
}

/// Appends the whole content.
bool copyTo(DurableFile &file, const KeptCopy &copy, QString &error)
{
    constexpr qint64 chunk = 1 << 20;
    qint64 done = 0;
    do {
        const std::optional<QByteArray> bytes = FileBytes::read(copy.content.number(), chunk, done);
        if (!bytes || (bytes->isEmpty() && done < copy.record.size)) {
            error = bytes ? u"the copy is too short"_s : qt_error_string(errno);
            return false;
        }
        if (!file.write(*bytes)) {
            error = file.errorText();
            return false;
        }
        done += bytes->size();
    } while (done < copy.record.size);
    return true;
}

/// Puts another file into the place of the output.
RestoredSource replaceOutput(const HeldPlace &place, const KeptCopy &copy, const struct stat &output)
{
    QString error;
    DurableFile file(QFile::decodeName(place.path));
    if (!copyTo(file, copy, error))
        return restoringFailed(error);
    const QString lacks = copy.record.restoreOn(file.number(), true);
    if (!file.flush())
        return restoringFailed(file.errorText());
    if (!isAsBefore(place.path, output))
        return {RestoreOutcome::Changed, {}, {}, {}};
    if (!file.commit())
        return restoringFailed(file.errorText());
    return {RestoreOutcome::Restored, {}, lacks, {}};
}

/// Writes into the output, with a safety copy from which a start completes that if it is cut short.
RestoredSource overwriteOutput(const HeldPlace &place, KeptCopy &copy, const struct stat &output)
{
    OriginalRecord record = copy.record;
    std::optional<OriginalSlot> slot = OriginalSlot::makeIn(copy.folder);
    if (!slot || !slot->fill(copy.content.number(), record)) {
        const QString error = qt_error_string(errno);
        if (slot)
            slot->remove();
        return restoringFailed(error);
    }
    if (record.hash != copy.record.hash || !isAsBefore(place.path, output)) {
        slot->remove();
        return {RestoreOutcome::Changed, {}, {}, {}};
    }
    record.file = place.path;
    const PutBackResult done = putBack(record, *slot);
    const SourceState state = slot->stateOf(record);
    if (done.error.isEmpty() || (state != SourceState::Empty && state != SourceState::Beginning)) {
        slot->remove();
        return {done.error.isEmpty() ? RestoreOutcome::Restored : RestoreOutcome::Failed,
                done.error,
                done.lacks,
                {}};
    }
    return restoringFailed(u"%1; the next start tries again"_s.arg(done.error));
}

} // namespace

QString secondName(const QString &source, int number)
{
    const QString extension = PathString::extension(source).toString();
    const QString word = number == 1 ? u".original"_s : u".original-%1"_s.arg(number);
    const QString end = extension.isEmpty() ? word : PathString::withExtension(word, extension);
    QString stem = extension.isEmpty() ? source : PathString::stem(source).toString();
    const qsizetype name = stem.size() - PathString::lastComponent(stem).size();
    while (stem.size() > name && (stem.sliced(name) + end).toUtf8().size() > NAME_MAX)
        stem.chop(stem.back().isLowSurrogate() ? 2 : 1);
    return stem + end;
}

RestoredSource restoreSource(const QString &source, const QString &kept)
{
    QString error;
    std::optional<KeptCopy> copy = KeptCopy::open(source, kept, error);
    if (!copy)
        return restoringFailed(error);
    if (!takeTurnAtOnce(copy->folder, source))
        return restoringFailed(u"a run is at work on the source"_s);
    const OriginalRecord &record = copy->record;
    if (realPath(record.path) != record.file)
        return {RestoreOutcome::Changed, {}, {}, {}};
    const std::optional<HeldPlace> place = holdPlace(record.file);
    if (!place)
        return restoringFailed(qt_error_string(errno));
    const std::optional<struct stat> output = stateOfOutput(place->path, record);
    if (!output)
        return errno == 0 || errno == ENOENT || errno == ELOOP
                   ? RestoredSource{RestoreOutcome::Changed, {}, {}, {}}
                   : restoringFailed(qt_error_string(errno));
    RestoredSource restored = isWrittenInto(QFile::decodeName(place->path))
                                  ? overwriteOutput(*place, *copy, *output)
                                  : replaceOutput(*place, *copy, *output);
    if (restored.outcome == RestoreOutcome::Restored) {
        restored.path = source;
        copy->remove();
    }
    return restored;
}

RestoredSource restoreBeside(const QString &source, const QString &kept)
{
    QString error;
    const std::optional<KeptCopy> copy = KeptCopy::open(source, kept, error);
    if (!copy)
        return restoringFailed(error);
    Descriptor file;
    const QByteArray made = makeBeside(copy->record.path, [&](const QByteArray &name) {
        file = openFile(name, O_WRONLY | O_CREAT | O_EXCL);
        return file.isOpen();
    });
    if (!file.isOpen())
        return restoringFailed(qt_error_string(errno));
    RestoredSource restored{RestoreOutcome::Beside, {}, {}, {}};
    bool isDone = FileBytes::copyAll(copy->content.number(), 0, file.number(), 0, copy->record.size);
    if (isDone)
        restored.lacks = copy->record.restoreOn(file.number(), true);
    isDone = isDone && flushFile(file.number());
    for (int number = 1; isDone && restored.path.isEmpty(); ++number) {
        const QString name = secondName(source, number);
        if (renameToFree(made, QFile::encodeName(name)))
            restored.path = name;
        isDone = !restored.path.isEmpty() || errno == EEXIST;
    }
    if (isDone && flushFolder(folderOf(copy->record.path)))
        return restored;
    const QString reason = qt_error_string(errno);
    ::unlink(made.constData());
    return restoringFailed(reason);
}

} // namespace brevant
