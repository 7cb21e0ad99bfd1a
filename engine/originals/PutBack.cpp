// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/PutBack.h"

#include "engine/Stop.h"
#include "engine/originals/OriginalRecord.h"
#include "engine/originals/OriginalSlot.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PrivateFolder.h"
#include "files/RawBytes.h"

#include <QFile>

#include <cstdio>
#include <functional>
#include <utility>

#include <sys/stat.h>

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

bool isSameFile(const struct stat &a, const struct stat &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// Whether the file is younger than the record, so that it can only have got the inode of a deleted one.
bool isYounger(const QString &path, const OriginalRecord &original)
{
    struct statx status {};
    const bool isKnown =
        ::statx(AT_FDCWD, QFile::encodeName(path).constData(), 0, STATX_BTIME, &status) == 0 &&
        (status.stx_mask & STATX_BTIME) != 0;
    return isKnown && std::pair<qint64, qint64>(status.stx_btime.tv_sec, status.stx_btime.tv_nsec) >
                          std::pair<qint64, qint64>(original.changed.tv_sec, original.changed.tv_nsec);
}

bool isOf(const OriginalRecord &original, const QString &source)
{
    const QStringList marks = FileMarks::all(source);
    return original.path == QFile::encodeName(source) ||
           marks.contains(FileMarks::ofPlace(RawBytes::decoded(original.file))) ||
           (marks.contains(FileMarks::ofFile(original.device, original.inode)) &&
            !isYounger(source, original));
}

} // namespace

PutBackResult putBack(const OriginalRecord &original, OriginalSlot &copy, int held, bool replaces)
{
    struct stat there {};
    struct stat before {};
    const bool isThere = ::lstat(original.file.constData(), &there) == 0;
    const bool hasOtherNames = held >= 0 && ::fstat(held, &before) == 0 && before.st_nlink > 0 &&
                               (!isThere || !isSameFile(there, before));
    if (hasOtherNames) {
        PutBackResult result = overwriteAt(pathOfOpen(held), 0, original, copy);
        if (!result.error.isEmpty() || (isThere && !replaces) || linkAgain(held, original.file, replaces))
            return result;
    }
    if (isThere)
        return overwriteAt(original.file, O_NOFOLLOW, original, copy);
    return makeAnew(original, false, [&](int file) { return copy.copyTo(file, original.size); });
}

QString restoreAttributes(const OriginalRecord &original)
{
    Descriptor file = openFile(original.path, O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen() && errno == ELOOP)
        file = openFile(original.file, O_RDONLY | O_NOFOLLOW);
    return file.isOpen() ? original.restoreOn(file.number(), false) : qt_error_string(errno);
}

QString putFileBack(const OriginalRecord &original, int held)
{
    struct stat there {};
    struct stat before {};
    if (::fstat(held, &before) != 0)
        return qt_error_string(errno);
    const bool isInPlace = ::lstat(original.file.constData(), &there) == 0 && isSameFile(there, before);
    if (isInPlace || (before.st_nlink > 0 && linkAgain(held, original.file, true)))
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

std::optional<QString> keepContent(const OriginalRecord &original, const PrivateFolder &folder)
{
    const Descriptor source = openFile(original.file, O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
        return std::nullopt;
    return folder.keep(source.number(), 0, status.st_size, original.path);
}

namespace {

/// Deals with the slots that programs have left, and tells what became of them.
class LeftSlots final {
public:
    /// Deals with those of `source` alone, if given, and waits for one in use until `stop` says otherwise.
    explicit LeftSlots(QString source = {}, const std::atomic<Stop> *stop = nullptr)
        : m_source(std::move(source)), m_stop(stop)
    {
    }

    void takeUpIn(const QString &path);

    [[nodiscard]] const QStringList &sentences() const { return m_sentences; }
    [[nodiscard]] bool isLost() const { return m_isLost; }

private:
    void takeUp(OriginalSlot &slot);
    void takeUpSource(OriginalSlot &slot, const OriginalRecord &original);
    void putBackSource(OriginalSlot &slot, const OriginalRecord &original);
    void keepAsFile(const OriginalSlot &slot, const OriginalRecord &original);

    const QString m_source;
    const std::atomic<Stop> *const m_stop;
    QStringList m_sentences;
    bool m_isLost = false; ///< whether a source is lost, and cannot be put back now
};

void LeftSlots::takeUpIn(const QString &path)
{
    QString error;
    std::optional<PrivateFolder> folder = PrivateFolder::open(path, error);
    if (!folder) {
        if (m_source.isEmpty() && !error.isEmpty())
            m_sentences.append(u"The safety copies in %1 are not looked at: %2."_s.arg(path, error));
        return;
    }
    const auto waitsFor = [this](const OriginalRecord &original) {
        return m_stop != nullptr && *m_stop == Stop::No && isOf(original, m_source);
    };
    QStringList refused;
    for (OriginalSlot &slot : OriginalSlot::leftIn(*folder, refused, waitsFor))
        takeUp(slot);
    for (const QString &file : m_source.isEmpty() ? refused : QStringList())
        m_sentences.append(u"The safety copy %1 is not used, as it may be somebody else's."_s.arg(file));
}

void LeftSlots::takeUp(OriginalSlot &slot)
{
    const auto [content, original] = slot.read();
    if (!m_source.isEmpty() && (!original || !isOf(*original, m_source)))
        return;
    switch (content) {
    case OriginalSlot::Content::Nothing:
        slot.remove();
        break;
    case OriginalSlot::Content::Source:
        takeUpSource(slot, *original);
        break;
    case OriginalSlot::Content::Damaged:
        // Either it was never completed, and no compressor was started, or the disk has a fault.
        if (slot.stateOf(*original) == SourceState::Same)
            slot.remove();
        else
            m_sentences.append(u"A safety copy of %1 is damaged and of no use; it is kept as %2."_s.arg(
                QFile::decodeName(original->path), slot.setAside()));
        break;
    case OriginalSlot::Content::Unknown:
        m_sentences.append(
            u"A safety copy is damaged and of no use; it is kept as %1."_s.arg(slot.setAside()));
        break;
    case OriginalSlot::Content::Unreadable:
        m_sentences.append(
            u"The safety copy %1 cannot be read now; the next start tries again."_s.arg(slot.path()));
        break;
    }
}

void LeftSlots::takeUpSource(OriginalSlot &slot, const OriginalRecord &original)
{
    switch (slot.stateOf(original)) {
    case SourceState::Same:
        slot.remove();
        return;
    case SourceState::Missing:
    case SourceState::Empty:
        putBackSource(slot, original);
        return;
    case SourceState::Beginning:
        if (slot.isPuttingBack())
            putBackSource(slot, original);
        else
            keepAsFile(slot, original);
        return;
    case SourceState::Changed:
    case SourceState::Replaced:
        keepAsFile(slot, original);
        return;
    case SourceState::Unknown:
        m_sentences.append(
            u"A run over %1 was cut short, and it cannot be read now; what it was before is in %2."_s.arg(
                QFile::decodeName(original.path), slot.path()));
    }
}

void LeftSlots::putBackSource(OriginalSlot &slot, const OriginalRecord &original)
{
    const QString source = QFile::decodeName(original.path);
    const PutBackResult done = putBack(original, slot);
    const QString error = done.error.isEmpty() ? putBackLink(original, false) : done.error;
    m_isLost = !error.isEmpty();
    if (m_isLost) {
        m_sentences.append(u"%1 was lost when a run was cut short, and cannot be put back now: %2. The next "
                           "start tries again, with the copy %3."_s.arg(source, error, slot.path()));
        return;
    }
    slot.remove();
    const QString lacks = done.lacks.isEmpty() ? QString() : u", but not its "_s + done.lacks;
    m_sentences.append(
        u"%1 was lost when a run was cut short, and has been put back%2."_s.arg(source, lacks));
}

void LeftSlots::keepAsFile(const OriginalSlot &slot, const OriginalRecord &original)
{
    const QString source = QFile::decodeName(original.path);
    if (const std::optional<QString> path = slot.keep(original)) {
        slot.remove();
        m_sentences.append(
            u"A run over %1 was cut short; what it was before is kept as %2."_s.arg(source, *path));
        return;
    }
    m_sentences.append(
        u"A run over %1 was cut short; what it was before is in %2 and cannot be taken out: %3."_s.arg(
            source, slot.path(), qt_error_string(errno)));
}

} // namespace

QStringList putBackAfterInterruption(const QStringList &originals)
{
    LeftSlots left;
    for (const QString &folder : originals)
        left.takeUpIn(folder);
    return left.sentences();
}

bool putBackLeftOf(const QString &source, const QStringList &originals, const std::atomic<Stop> &stop,
                   QStringList &sentences)
{
    LeftSlots left(source, &stop);
    for (const QString &folder : originals)
        left.takeUpIn(folder);
    sentences += left.sentences();
    return !left.isLost();
}

} // namespace brevant
