// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/SafetyCopy.h"

#include "engine/EntryResult.h"
#include "engine/originals/PutBack.h"

#include <QFile>

#include <chrono>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant {

namespace {

using Outcome = EntryResult::Outcome;

bool isRegular(const QByteArray &path)
{
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

Descriptor openToRead(const QByteArray &path)
{
    return Descriptor(
        uninterrupted([&] { return ::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
}

/// Waits until the content of a file is on the disk; whether it is then. Without it a power cut after the
/// copy is dropped could leave neither.
bool isOnDisk(const QByteArray &path)
{
    const Descriptor file = openToRead(path);
    return !file.isOpen() || uninterrupted([&] { return ::fdatasync(file.number()); }) == 0;
}

const QString inTurn = QStringLiteral("another run is at work on it");
const QString stillLost = QStringLiteral("it was lost when a run was cut short, and cannot be put back now");

/// The whole reason; empty if there is none.
QString noCopy(const QString &reason)
{
    return reason.isEmpty() ? reason : QStringLiteral("no safety copy of it could be made: %1").arg(reason);
}

} // namespace

SafetyCopy::SafetyCopy(const QStringList &folders, const std::atomic<Stop> &stop)
    : m_folders(folders), m_stop(stop)
{
}

SafetyCopy::~SafetyCopy()
{
    if (m_slot)
        m_slot->remove();
}

QString SafetyCopy::make(const QString &file, Danger danger)
{
    end();
    m_danger = danger;
    m_path = QFile::encodeName(file);
    if (danger == Danger::None || m_folders.isEmpty())
        return waitForOthers();
    const bool isThere = isRegular(m_path);
    QString error;
    while (openFolder(isThere, error)) {
        if (!takeTurn(*m_folder))
            return inTurn;
        if (!putBackLeftOf(m_path, m_folders, m_stop, m_notes))
            return stillLost;
        QString noAccess;
        if (!hold(noAccess))
            return noCopy(noAccess);
        if (fill()) {
            if (!error.isEmpty())
                m_notes.append(QStringLiteral("The safety copies of this run are in %1: %2 takes none (%3).")
                                   .arg(QFile::decodeName(m_folder->path()), m_folders.first(), error));
            return {};
        }
        leaveFolder(error);
    }
    m_folderIndex = 0;
    return isThere ? noCopy(error) : QString();
}

/// Opens the first folder that there is, making it if there is something to copy.
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

/// The folder takes no copy; the next one may.
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

/// For a file that is read only: no run may have it half written when its compressor starts.
QString SafetyCopy::waitForOthers()
{
    for (const QString &path : m_folders) {
        QString error;
        if (std::optional<PrivateFolder> folder = PrivateFolder::open(path, error)) {
            const bool isInTurn = takeTurn(*folder);
            m_turn.clear(); // it ends with this folder
            if (!isInTurn)
                return inTurn;
        }
    }
    return putBackLeftOf(m_path, m_folders, m_stop, m_notes) ? QString() : stillLost;
}

bool SafetyCopy::takeTurn(PrivateFolder &folder)
{
    constexpr std::chrono::milliseconds pause(20);
    for (;;) {
        const QByteArrayList marks = marksOf(m_path);
        PrivateFolder::Lock lock = PrivateFolder::Lock::Held;
        for (auto mark = marks.begin(); mark != marks.end() && lock == PrivateFolder::Lock::Held; ++mark)
            lock = folder.tryLock(*mark);
        if (lock == PrivateFolder::Lock::Held && marks == marksOf(m_path)) {
            m_turn = marks;
            return true;
        }
        const int error = errno;
        for (const QByteArray &mark : marks)
            folder.unlock(mark);
        errno = error;
        if (lock == PrivateFolder::Lock::Refused)
            break;
        if (m_stop != Stop::No)
            return false;
        // None is held meanwhile, so that two runs never wait for each other.
        std::this_thread::sleep_for(pause);
    }
    if (m_danger != Danger::None && !std::exchange(m_saidNoLocks, true))
        m_notes.append(
            QStringLiteral("No file can be locked in %1, so two runs at once over one source are not "
                           "kept apart (%2).")
                .arg(QFile::decodeName(folder.path()), qt_error_string(errno)));
    return true;
}

/// Opens what is in danger; false if there is nothing to copy, with the reason in `error` if that is a fault.
bool SafetyCopy::hold(QString &error)
{
    m_held = openToRead(m_path);
    if (!m_held.isOpen()) {
        if (errno != ENOENT && errno != ENOTDIR)
            error = qt_error_string(errno);
        return false;
    }
    if (!isRegular(m_path))
        return false;
    m_record = OriginalRecord::of(m_path, m_held.number());
    if (!m_record)
        error = qt_error_string(errno);
    const QByteArray gzipCopy = m_path + ".gz";
    if (m_record && isOutput() && isRegular(gzipCopy)) {
        m_gzipHeld = openToRead(gzipCopy);
        m_gzipRecord = m_gzipHeld.isOpen() ? OriginalRecord::of(gzipCopy, m_gzipHeld.number()) : std::nullopt;
    }
    return m_record.has_value();
}

bool SafetyCopy::fill()
{
    if (!m_slot)
        m_slot = OriginalSlot::makeIn(*m_folder);
    return m_slot && m_slot->fill(m_held.number(), *m_record);
}

/// Forgets the entry, and lets others have their turn.
void SafetyCopy::end()
{
    for (const QByteArray &mark : std::exchange(m_turn, {}))
        m_folder->unlock(mark);
    m_record.reset();
    m_held = Descriptor();
    m_gzipRecord.reset();
    m_gzipHeld = Descriptor();
}

void SafetyCopy::setInherited(bool inherited) const
{
    if (m_folder)
        m_folder->setInherited(inherited && (m_record || !m_turn.isEmpty()));
}

bool SafetyCopy::isLost(const EntryResult &result, bool gzipWanted) const
{
    // Where the compressor did its work, other content is the output, or somebody else's doing.
    if (result.outcome == Outcome::Done)
        return glanceAtSource(*m_record) == SourceState::Missing;
    switch (m_slot->stateOf(*m_record)) {
    case SourceState::Missing:
    case SourceState::Empty:
    case SourceState::Beginning:
    case SourceState::Changed:
        return true;
    case SourceState::Replaced:
        // Compressors write to the file that is there; only the gzip copy puts another into its place.
        return isOutput() && gzipWanted;
    case SourceState::Same:
    case SourceState::Unknown:
        break;
    }
    return false;
}

/// A compressor that failed may have written to the source, but so may somebody who edited it meanwhile.
bool SafetyCopy::mayBeNewer(const EntryResult &result) const
{
    if (!isOutput() ||
        (result.outcome != Outcome::CompressorFailed && result.outcome != Outcome::CompressorKilled))
        return false;
    const SourceState state = m_slot->stateOf(*m_record);
    return state == SourceState::Changed || state == SourceState::Replaced;
}

void SafetyCopy::finish(EntryResult &result, bool gzipWanted)
{
    result.notes += std::exchange(m_notes, {});
    if (m_record) {
        if (isOutput() && result.outcome == Outcome::Done && !isOnDisk(m_record->file))
            result.outcome = Outcome::NotWritten;
        if (isLost(result, gzipWanted))
            putBackFile(result, gzipWanted);
        else if (isOutput() && result.outcome == Outcome::Done)
            finishReplaced(result, gzipWanted);
        else if (isOutput() && gzipWanted)
            undoGzipSteps(result);
        if (isOutput() && gzipWanted && result.outcome != Outcome::Done)
            putBackGzipCopy(result);
        if (m_slot)
            m_slot->clear();
    }
    end();
}

/// The file has been written over, and is to stay so.
void SafetyCopy::finishReplaced(EntryResult &result, bool gzipWanted)
{
    if (gzipWanted) {
        if (const QString lacks = restoreAttributes(*m_record); !lacks.isEmpty())
            result.notes.append(QStringLiteral("%1 has another %2.").arg(QFile::decodeName(m_path), lacks));
    }
    if (m_danger == Danger::Replaced || m_slot->stateOf(*m_record) == SourceState::Same)
        return;
    const QString why =
        m_danger == Danger::AnotherEntry
            ? QStringLiteral("%1, which is in the list too, was replaced by the output of %2")
                  .arg(QFile::decodeName(m_path), result.source)
            : QStringLiteral("%1 was replaced by its output, as the settings were changed during the run")
                  .arg(QFile::decodeName(m_path));
    if (const std::optional<QByteArray> kept = m_slot->keep(*m_record)) {
        result.notes.append(
            QStringLiteral("%1; what it was before is kept as %2.").arg(why, QFile::decodeName(*kept)));
        return;
    }
    result.notes.append(QStringLiteral("%1; what it was before is in %2 (%3).")
                            .arg(why, QFile::decodeName(m_slot->path()), qt_error_string(errno)));
    leaveSlot();
}

/// The content is as it was, but it may be in another file, or where a link was.
void SafetyCopy::undoGzipSteps(EntryResult &result)
{
    if (m_slot->stateOf(*m_record) == SourceState::Same)
        tellOf(putBack(*m_record, *m_slot, m_held.number(), true), result);
    static_cast<void>(putBackLink(*m_record, true));
}

void SafetyCopy::tellOf(const PutBackResult &done, EntryResult &result) const
{
    if (!done.lacks.isEmpty())
        result.notes.append(
            QStringLiteral("%1 was put back, but not its %2.").arg(QFile::decodeName(m_path), done.lacks));
}

void SafetyCopy::putBackFile(EntryResult &result, bool gzipWanted)
{
    if (mayBeNewer(result)) {
        if (const std::optional<QByteArray> kept = keepContent(*m_record, *m_folder))
            result.kept = QFile::decodeName(*kept);
    }
    const PutBackResult done = putBack(*m_record, *m_slot, m_held.number(), isOutput() && gzipWanted);
    QString error = done.error;
    if (error.isEmpty())
        error = putBackLink(*m_record, isOutput() && gzipWanted);
    if (isOutput() && result.outcome == Outcome::Done)
        result.outcome = Outcome::NoOutput; // it was there, and was lost again
    tellOf(done, result);
    if (m_danger == Danger::AnotherEntry) {
        result.notes.append(
            error.isEmpty()
                ? QStringLiteral("%1, which is in the list too, was put back.").arg(QFile::decodeName(m_path))
                : QStringLiteral("%1, which is in the list too, could not be put back (%2); the next "
                                 "start tries again.")
                      .arg(QFile::decodeName(m_path), error));
        if (!error.isEmpty())
            leaveSlot();
        return;
    }
    result.sourceState = error.isEmpty() ? EntryResult::Source::PutBack : EntryResult::Source::Lost;
    if (error.isEmpty()) {
        if (isOutput())
            result.sizeAfter = m_record->size;
        return;
    }
    result.detail = error;
    leaveSlot();
}

/// The slot stays in the folder, for the next start.
void SafetyCopy::leaveSlot()
{
    m_slot->unlock();
    m_slot.reset();
}

/// As it was before, or none.
void SafetyCopy::putBackGzipCopy(EntryResult &result)
{
    result.gzipSize.reset();
    const QByteArray path = m_path + ".gz";
    const QString error = m_gzipRecord ? putFileBack(*m_gzipRecord, m_gzipHeld.number()) : QString();
    if (!error.isEmpty())
        result.notes.append(
            QStringLiteral("%1 could not be put back: %2.").arg(QFile::decodeName(path), error));
    else if (!m_gzipRecord && isRegular(path))
        ::unlink(path.constData());
}

} // namespace brevant
