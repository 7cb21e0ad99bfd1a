// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/SafetyCopy.h"

#include "engine/EntryResult.h"
#include "engine/originals/PutBack.h"
#include "files/Folders.h"

#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <thread>
#include <utility>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Outcome = EntryResult::Outcome;

/// Flushes the content of a file to the disk, as otherwise a power cut after the copy is dropped could leave
/// neither; false if the disk refuses it.
bool isOnDisk(const QByteArray &path)
{
    const Descriptor file = openFile(path, O_RDONLY);
    return !file.isOpen() || uninterrupted([&] { return ::fdatasync(file.number()); }) == 0;
}

/// Restores owner, mode and extended attributes on the file that is there now, even if gzip has put it into
/// the place of a link. Returns what could not be restored, or an empty text.
QString restoreAttributes(const OriginalRecord &original)
{
    Descriptor file = openFile(original.path, O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen() && errno == ELOOP)
        file = openFile(original.file, O_RDONLY | O_NOFOLLOW);
    return file.isOpen() ? original.restoreOn(file.number(), false) : qt_error_string(errno);
}

/// Copies the present content of the source to a file for the user. Its path, or an empty text on failure.
QString keepContent(const OriginalRecord &original, const PrivateFolder &folder)
{
    const Descriptor source = openFile(original.file, O_RDONLY | O_NOFOLLOW);
    struct stat status {};
    if (!source.isOpen() || ::fstat(source.number(), &status) != 0)
        return {};
    return folder.keep(source.number(), 0, status.st_size, original.path).value_or(QString());
}

/// Whether a file may be there that could be lost.
bool mayBeFile(const QString &path)
{
    if (const auto status = statusOf(QFile::encodeName(path)))
        return S_ISREG(status->st_mode);
    return errno != ENOENT && errno != ENOTDIR;
}

const QString inTurn = u"another run is at work on it"_s;
const QString stillLost = u"it was lost when a run was cut short, and cannot be put back now"_s;

QString noCopy(const QString &reason)
{
    return u"no safety copy of it could be made: %1"_s.arg(reason);
}

} // namespace

QString SafetyCopy::make(const QString &file, Danger danger)
{
    end();
    m_danger = danger;
    m_file = file;
    if (danger == Danger::None || m_folders.isEmpty())
        return waitForOthers();
    const bool isThere = mayBeFile(file);
    QString error;
    while (openFolder(isThere, error)) {
        if (!takeTurn(*m_folder))
            return inTurn;
        if (!putBackLeftOf(m_file, m_folders, m_stop, m_notes))
            return stillLost;
        if (danger == Danger::Exchanged)
            return {};
        m_source = held(m_file);
        if (!m_source.record)
            return whyNotHeld(errno);
        if (isOutput())
            m_gzipCopy = held(m_file + ".gz"_L1);
        if (!m_slot)
            m_slot = OriginalSlot::makeIn(*m_folder);
        if (m_slot && m_slot->fill(m_source.file.number(), *m_source.record)) {
            if (!error.isEmpty())
                m_notes.append(u"The safety copies of this run are in %1: %2 takes none (%3)."_s.arg(
                    m_folder->path(), m_folders.first(), error));
            return {};
        }
        leaveFolder(error);
    }
    m_folderIndex = 0;
    return isThere && danger != Danger::Exchanged ? noCopy(error) : QString();
}

/// Why the source is not held; empty if there is no file that could be lost.
QString SafetyCopy::whyNotHeld(int error) const
{
    const bool isNoFile = error == ENOENT || error == ENOTDIR || (error == EINVAL && !mayBeFile(m_file));
    return isNoFile && !m_source.file.isOpen() ? QString() : noCopy(qt_error_string(error));
}

/// Opens and records a file; without a record, and with errno set, on failure.
SafetyCopy::Held SafetyCopy::held(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    Held held{openRegularFile(name), std::nullopt};
    if (held.file.isOpen())
        held.record = OriginalRecord::of(name, held.file.number());
    return held;
}

/// Opens the first folder that can be used; with `make`, missing ones are made.
bool SafetyCopy::openFolder(bool make, QString &error)
{
    for (; !m_folder && m_folderIndex < m_folders.size(); ++m_folderIndex) {
        QString reason;
        m_folder = PrivateFolder::open(m_folders.at(m_folderIndex), reason, make);
        if (m_folder)
            break;
        if (error.isEmpty())
            error = reason;
    }
    return m_folder.has_value();
}

/// Gives the folder up, as it takes no copy; the next one may.
void SafetyCopy::leaveFolder(QString &error)
{
    if (error.isEmpty())
        error = qt_error_string(errno);
    if (m_slot)
        m_slot->remove(); // it may have grown as far as the disk allowed
    end();
    m_slot.reset();
    m_folder.reset();
    ++m_folderIndex;
}

/// Makes sure that no other run has the file half written when its compressor reads it.
QString SafetyCopy::waitForOthers()
{
    for (const QString &path : m_folders) {
        QString error;
        if (std::optional<PrivateFolder> folder = PrivateFolder::open(path, error)) {
            const bool isInTurn = takeTurn(*folder);
            m_turn.clear(); // released with this folder
            if (!isInTurn)
                return inTurn;
        }
    }
    return putBackLeftOf(m_file, m_folders, m_stop, m_notes) ? QString() : stillLost;
}

bool SafetyCopy::takeTurn(PrivateFolder &folder)
{
    constexpr std::chrono::milliseconds pause(20);
    for (;;) {
        const QStringList marks = FileMarks::all(m_file);
        PrivateFolder::Lock lock = PrivateFolder::Lock::Held;
        for (auto mark = marks.begin(); mark != marks.end() && lock == PrivateFolder::Lock::Held; ++mark)
            lock = folder.tryLock(mark->toUtf8());
        if (lock == PrivateFolder::Lock::Held && marks == FileMarks::all(m_file)) {
            m_turn = marks;
            return true;
        }
        const auto keeper = keepErrno();
        for (const QString &mark : marks)
            folder.unlock(mark.toUtf8());
        if (lock == PrivateFolder::Lock::Refused)
            break;
        if (m_stop != Stop::No)
            return false;
        // No mark is held meanwhile, so that two runs never wait for each other.
        std::this_thread::sleep_for(pause);
    }
    if (m_danger != Danger::None && !std::exchange(m_saidNoLocks, true))
        m_notes.append(u"No file can be locked in %1, so two runs at once over one source are not kept apart "
                       "(%2)."_s.arg(folder.path(), qt_error_string(errno)));
    return true;
}

/// Forgets the entry and releases its turn.
void SafetyCopy::end()
{
    for (const QString &mark : std::exchange(m_turn, {}))
        m_folder->unlock(mark.toUtf8());
    m_source = Held();
    m_gzipCopy = Held();
}

/// Whether a source in that state is lost. If the compressor succeeded, other content is its output, or
/// somebody else's work.
bool SafetyCopy::isLost(SourceState state, bool isDone) const
{
    const bool isOther = state == SourceState::Empty || state == SourceState::Beginning ||
                         state == SourceState::Changed ||
                         (state == SourceState::Replaced && m_isGzipped); // compressors write in place
    return state == SourceState::Missing || (isOther && !isDone);
}

void SafetyCopy::finish(EntryResult &result, bool gzipWanted, KeptOriginals::Use *kept)
{
    result.notes += std::exchange(m_notes, {});
    m_isGzipped = gzipWanted && isOutput();
    // Otherwise what is in the file is somebody's newer work.
    if (m_source.record && !result.isUntouched) {
        if (isOutput() && result.outcome == Outcome::Done && !isOnDisk(m_source.record->file))
            result.outcome = Outcome::NotWritten;
        const bool isDone = result.outcome == Outcome::Done;
        const SourceState state =
            isDone ? glanceAtSource(*m_source.record) : m_slot->stateOf(*m_source.record);
        if (isLost(state, isDone))
            putBackFile(result, state);
        else if (isOutput() && isDone)
            finishReplaced(result);
        else if (m_isGzipped)
            undoGzipSteps(result, state);
        if (m_isGzipped && result.outcome != Outcome::Done)
            putBackGzipCopy(result);
    }
    if (kept && m_danger == Danger::Replaced && result.outcome == Outcome::Done) {
        if (m_source.record && m_slot)
            kept->keep(*m_slot, *m_source.record, result);
        else
            result.notKept = u"its original could not be kept: there was no safety copy of it"_s;
    }
    if (m_source.record && m_slot)
        m_slot->clear();
    end();
}

/// The output is in place and stays; a file that nobody meant to replace is kept.
void SafetyCopy::finishReplaced(EntryResult &result)
{
    const OriginalRecord &original = *m_source.record;
    if (const QString lacks = m_isGzipped ? restoreAttributes(original) : QString(); !lacks.isEmpty())
        result.notes.append(u"%1 has another %2."_s.arg(m_file, lacks));
    if (m_danger == Danger::Replaced || m_danger == Danger::Output ||
        m_slot->stateOf(original) == SourceState::Same)
        return;
    const std::optional<QString> kept = m_slot->keep(original);
    const QString where =
        kept ? u"kept as "_s + *kept : u"in %1 (%2)"_s.arg(m_slot->path(), qt_error_string(errno));
    const QString why =
        m_danger == Danger::AnotherEntry
            ? u"%1, which is in the list too, was replaced by the output of %2"_s.arg(m_file, result.source)
            : u"%1 was replaced by its output, as the settings were changed during the run"_s.arg(m_file);
    result.notes.append(u"%1; what it was before is %2."_s.arg(why, where));
    if (!kept)
        leaveSlot();
}

/// The content is as before, but gzip may have moved it into another file, or into the place of a link.
void SafetyCopy::undoGzipSteps(EntryResult &result, SourceState state)
{
    const OriginalRecord &original = *m_source.record;
    if (state == SourceState::Same)
        tellOf(putBack(original, *m_slot, m_source.file.number(), true), result);
    static_cast<void>(putBackLink(original, true));
}

void SafetyCopy::tellOf(const PutBackResult &done, EntryResult &result) const
{
    if (!done.lacks.isEmpty())
        result.notes.append(u"%1 was put back, but not its %2."_s.arg(m_file, done.lacks));
}

void SafetyCopy::putBackFile(EntryResult &result, SourceState state)
{
    const OriginalRecord &original = *m_source.record;
    const bool hasFailed =
        result.outcome == Outcome::CompressorFailed || result.outcome == Outcome::CompressorKilled;
    // Somebody may have edited the source while the compressor failed.
    if (isOutput() && hasFailed && (state == SourceState::Changed || state == SourceState::Replaced))
        result.kept = keepContent(original, *m_folder);
    const PutBackResult done = putBack(original, *m_slot, m_source.file.number(), m_isGzipped);
    const QString error = done.error.isEmpty() ? putBackLink(original, m_isGzipped) : done.error;
    if (isOutput() && result.outcome == Outcome::Done)
        result.outcome = Outcome::NoOutput; // it was written, and is lost again
    tellOf(done, result);
    if (m_danger == Danger::AnotherEntry) {
        const QString whatBecame =
            error.isEmpty() ? u"was put back"_s
                            : u"could not be put back (%1); the next start tries again"_s.arg(error);
        result.notes.append(u"%1, which is in the list too, %2."_s.arg(m_file, whatBecame));
    } else if (m_danger == Danger::Output) {
        result.sizeAfter = original.size;
        if (!error.isEmpty())
            result.notes.append(
                u"%1 could not be put back (%2); the next start tries again."_s.arg(m_file, error));
    } else if (error.isEmpty()) {
        result.sourceState = EntryResult::Source::PutBack;
        if (isOutput())
            result.sizeAfter = original.size;
    } else {
        result.sourceState = EntryResult::Source::Lost;
        result.detail = error;
    }
    if (!error.isEmpty())
        leaveSlot();
}

/// Restores the gzip copy of before, or removes the new one if there was none.
void SafetyCopy::putBackGzipCopy(EntryResult &result)
{
    result.gzipSize.reset();
    const QString path = m_file + ".gz"_L1;
    if (!m_gzipCopy.record) {
        if (QFileInfo(path).isFile())
            QFile::remove(path);
        return;
    }
    if (const QString error = putFileBack(*m_gzipCopy.record, m_gzipCopy.file.number()); !error.isEmpty())
        result.notes.append(u"%1 could not be put back: %2."_s.arg(path, error));
}

} // namespace brevant
