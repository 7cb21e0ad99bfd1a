// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"

#include "engine/Stop.h"
#include "engine/originals/OriginalSlot.h"
#include "files/RawBytes.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

bool hasSameContent(int file, const OriginalRecord &original)
{
    struct stat status {};
    return ::fstat(file, &status) == 0 && status.st_size == original.size &&
           FileBytes::hash(file, 0, original.size) == original.hash;
}

/// Whether the disk certainly lacks the room for the source; not every file system can tell.
bool isRoomLacking(int file, const OriginalRecord &original)
{
    return original.size > 0 &&
           uninterrupted([&] { return ::fallocate(file, FALLOC_FL_KEEP_SIZE, 0, original.size); }) != 0 &&
           (errno == ENOSPC || errno == EDQUOT || errno == EFBIG);
}

/// Writes the content back in place, if there is room for it.
bool overwrite(int file, const OriginalRecord &original, OriginalSlot &copy)
{
    if (isRoomLacking(file, original))
        return false;
    // A slot on a read-only disk cannot be marked.
    if (!copy.markPuttingBack() && errno != EBADF)
        return false;
    return uninterrupted([&] { return ::ftruncate(file, 0); }) == 0 && copy.copyTo(file, original.size);
}

PutBackResult overwriteAt(const QByteArray &path, int flags, const OriginalRecord &original,
                          OriginalSlot &copy)
{
    Descriptor file = openFile(path, O_RDWR | flags);
    if (!file.isOpen())
        file = openFile(path, O_WRONLY | flags); // it may be writable only
    if (!file.isOpen() ||
        !(hasSameContent(file.number(), original) || overwrite(file.number(), original, copy)))
        return {qt_error_string(errno), {}};
    const QString lacks = original.restoreOn(file.number(), true);
    return {flushFile(file.number()) ? QString() : qt_error_string(errno), lacks};
}

/// Makes the file anew under its name, with the content that `write` gives it. A file that has appeared there
/// meanwhile is newer and stays, unless `replaces`.
PutBackResult makeAnew(const OriginalRecord &original, bool replaces, const std::function<bool(int)> &write)
{
    Descriptor file;
    const QByteArray made = makeBeside(original.file, [&](const QByteArray &name) {
        file = openFile(name, O_WRONLY | O_CREAT | O_EXCL);
        return file.isOpen();
    });
    if (!file.isOpen())
        return {qt_error_string(errno), {}};
    if (write(file.number())) {
        const QString lacks = original.restoreOn(file.number(), true);
        if (flushFile(file.number()) &&
            (replaces ? ::rename(made.constData(), original.file.constData()) == 0
                      : renameToFree(made, original.file)) &&
            flushFolder(folderOf(original.file)))
            return {{}, lacks};
    }
    const QString error = qt_error_string(errno);
    ::unlink(made.constData());
    return {error, {}};
}

/// Gives an open file that still has another name `path` as well; false, with errno set, on failure.
bool linkAgain(int held, const QByteArray &path, bool replaces)
{
    const auto link = [held](const QByteArray &name) { return linkOpenFile(held, name); };
    return replaces ? makeInPlaceOf(path, link) && flushFolder(folderOf(path)) : link(path);
}

/// Whether the file is younger than the record, so that it can only have got the inode of a deleted one.
bool isYounger(const QString &path, const OriginalRecord &original)
{
    const QDateTime birth = QFileInfo(path).birthTime();
    return birth.isValid() && birth > QDateTime::fromMSecsSinceEpoch(original.changed.tv_sec * 1000 +
                                                                     original.changed.tv_nsec / 1'000'000);
}

bool isOf(const OriginalRecord &original, const QString &source)
{
    const QStringList marks = FileMarks::all(source);
    return original.path == QFile::encodeName(source) ||
           marks.contains(FileMarks::ofPlace(RawBytes::decoded(original.file))) ||
           (marks.contains(FileMarks::ofFile(original.device, original.inode)) &&
            !isYounger(source, original));
}

using NewsKind = StartNews::Kind;

/// Writes a lost source back.
StartNews putBackSource(OriginalSlot &slot, const OriginalRecord &original, bool &isLost)
{
    const QString source = QFile::decodeName(original.path);
    const PutBackResult done = putBack(original, slot);
    const QString error = done.error.isEmpty() ? putBackLink(original, false) : done.error;
    isLost = !error.isEmpty();
    if (isLost)
        return {NewsKind::Failed, source,
                u"%1 was lost when a run was cut short, and cannot be put back now: %2. The next start tries "
                "again, with the copy %3."_s.arg(source, error, slot.path())};
    slot.remove();
    const QString lacks = done.lacks.isEmpty() ? QString() : u", but not its "_s + done.lacks;
    return {NewsKind::PutBack, source,
            u"%1 was lost when a run was cut short, and has been put back%2."_s.arg(source, lacks)};
}

/// Keeps the copy of a source that has other content now.
StartNews keepAsFile(const OriginalSlot &slot, const OriginalRecord &original)
{
    const QString source = QFile::decodeName(original.path);
    if (const std::optional<QString> path = slot.keep(original)) {
        slot.remove();
        return {NewsKind::Kept, source,
                u"A run over %1 was cut short; what it was before is kept as %2."_s.arg(source, *path)};
    }
    return {NewsKind::Failed, source,
            u"A run over %1 was cut short; what it was before is in %2 and cannot be taken out: %3."_s.arg(
                source, slot.path(), qt_error_string(errno))};
}

StartNews takeUpSource(OriginalSlot &slot, const OriginalRecord &original, bool &isLost)
{
    switch (slot.stateOf(original)) {
    case SourceState::Same:
        slot.remove();
        return {};
    case SourceState::Missing:
    case SourceState::Empty:
        return putBackSource(slot, original, isLost);
    case SourceState::Beginning:
        return slot.isPuttingBack() ? putBackSource(slot, original, isLost) : keepAsFile(slot, original);
    case SourceState::Changed:
    case SourceState::Replaced:
        return keepAsFile(slot, original);
    case SourceState::Unknown:
        break;
    }
    const QString source = QFile::decodeName(original.path);
    return {NewsKind::Failed, source,
            u"A run over %1 was cut short, and it cannot be read now; what it was before is in %2."_s.arg(
                source, slot.path())};
}

/// Deals with a slot that a program has left, if it may be of `source` or that is empty. Returns what is to
/// be said of it, with an empty sentence if that is nothing. `isLost` tells of a source that cannot be put
/// back now.
StartNews takeUp(OriginalSlot &slot, const QString &source, bool &isLost)
{
    const auto [content, original] = slot.read();
    if (!source.isEmpty() && (!original || !isOf(*original, source)))
        return {};
    switch (content) {
    case OriginalSlot::Content::Nothing:
        slot.remove();
        return {};
    case OriginalSlot::Content::Source:
        return takeUpSource(slot, *original, isLost);
    case OriginalSlot::Content::Damaged:
        // Either it was never completed, and no compressor was started, or the disk has a fault.
        if (slot.stateOf(*original) != SourceState::Same)
            return {NewsKind::Failed, QFile::decodeName(original->path),
                    u"A safety copy of %1 is damaged and of no use; it is kept as %2."_s.arg(
                        QFile::decodeName(original->path), slot.setAside())};
        slot.remove();
        return {};
    case OriginalSlot::Content::Unknown:
        return {NewsKind::Failed,
                {},
                u"A safety copy is damaged and of no use; it is kept as %1."_s.arg(slot.setAside())};
    case OriginalSlot::Content::Unreadable:
        break;
    }
    return {NewsKind::Failed,
            {},
            u"The safety copy %1 cannot be read now; the next start tries again."_s.arg(slot.path())};
}

/// As putBackLeftOf().
bool takeUpAll(const QString &source, const QStringList &originals, const std::atomic<Stop> &stop,
               std::vector<StartNews> &news)
{
    const auto waitsFor = [&](const OriginalRecord &original) {
        return stop == Stop::No && isOf(original, source);
    };
    bool isLost = false;
    for (const QString &path : originals) {
        QString error;
        QStringList refused;
        if (std::optional<PrivateFolder> folder = PrivateFolder::open(path, error)) {
            for (OriginalSlot &slot : OriginalSlot::leftIn(*folder, refused, waitsFor))
                news.push_back(takeUp(slot, source, isLost));
        }
        if (!source.isEmpty())
            continue;
        if (!error.isEmpty())
            news.push_back(
                {NewsKind::Failed, {}, u"The safety copies in %1 are not looked at: %2."_s.arg(path, error)});
        for (const QString &file : refused)
            news.push_back({NewsKind::Failed,
                            {},
                            u"The safety copy %1 is not used, as it may be somebody else's."_s.arg(file)});
    }
    std::erase_if(news, [](const StartNews &one) { return one.sentence.isEmpty(); });
    return !isLost;
}

} // namespace

PutBackResult putBack(const OriginalRecord &original, OriginalSlot &copy, int held, bool replaces)
{
    struct stat there {};
    struct stat before {};
    const bool isThere = ::lstat(original.file.constData(), &there) == 0;
    const bool hasOtherNames = held >= 0 && ::fstat(held, &before) == 0 && before.st_nlink > 0 &&
                               !(isThere && original.isSameFile(there));
    if (hasOtherNames) {
        PutBackResult result = overwriteAt(pathOfOpen(held), 0, original, copy);
        if (!result.error.isEmpty() || (isThere && !replaces) || linkAgain(held, original.file, replaces))
            return result;
    }
    if (isThere)
        return overwriteAt(original.file, O_NOFOLLOW, original, copy);
    return makeAnew(original, false, [&](int file) { return copy.copyTo(file, original.size); });
}

QString putFileBack(const OriginalRecord &original, int held)
{
    struct stat status {};
    if (::lstat(original.file.constData(), &status) == 0 && original.isSameFile(status))
        return {};
    if (::fstat(held, &status) == 0 && status.st_nlink > 0 && linkAgain(held, original.file, true))
        return {};
    return makeAnew(original, true,
                    [&](int file) { return FileBytes::copyAll(held, 0, file, 0, original.size); })
        .error;
}

QString putBackLink(const OriginalRecord &original, bool replacesFile)
{
    struct stat status {};
    const bool isThere = ::lstat(original.path.constData(), &status) == 0;
    if (original.linkText.isEmpty() || (isThere && !(replacesFile && S_ISREG(status.st_mode))))
        return {};
    const bool isMade = makeInPlaceOf(original.path, [&](const QByteArray &name) {
        return ::symlink(original.linkText.constData(), name.constData()) == 0;
    });
    return isMade ? QString() : qt_error_string(errno);
}

std::vector<StartNews> putBackAtStart(const QStringList &originals)
{
    std::vector<StartNews> news;
    static_cast<void>(takeUpAll({}, originals, Stop::AtOnce, news));
    return news;
}

QStringList putBackAfterInterruption(const QStringList &originals)
{
    QStringList sentences;
    for (const StartNews &news : putBackAtStart(originals))
        sentences.append(news.sentence);
    return sentences;
}

bool putBackLeftOf(const QString &source, const QStringList &originals, const std::atomic<Stop> &stop,
                   QStringList &sentences)
{
    std::vector<StartNews> found;
    const bool isThere = takeUpAll(source, originals, stop, found);
    for (const StartNews &news : found)
        sentences.append(news.sentence);
    return isThere;
}

} // namespace brevant
