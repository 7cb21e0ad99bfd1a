// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/SafetyCopy.h"

#include "engine/EntryResult.h"
#include "engine/OriginalsFolder.h"
#include "engine/PutBack.h"
#include "settings/Descriptor.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant {

namespace {

/// Waits until the content of a file is on the disk; whether it is then. Without it a power cut after the
/// copy is dropped could leave neither.
bool isOnDisk(const QByteArray &file)
{
    const Descriptor output(
        uninterrupted([&] { return ::open(file.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    return !output.isOpen() || uninterrupted([&] { return ::fdatasync(output.number()); }) == 0;
}

bool isSameFile(const QString &path, const struct stat &file)
{
    struct stat there {};
    return ::stat(QFile::encodeName(path).constData(), &there) == 0 && there.st_dev == file.st_dev &&
           there.st_ino == file.st_ino;
}

/// Waits until no other run, of this program or another, has its turn with the file of that name; ours lasts
/// for as long as what is returned is open. What is locked is a byte of a file of our own: a source may be
/// missing for a moment, and some file systems let nobody write to what is locked. Where nothing can be
/// locked, nobody waits.
Descriptor takeTurn(const QString &turns, const QString &source)
{
    Descriptor file(uninterrupted([&] {
        return ::open(QFile::encodeName(turns).constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    }));
    const QByteArray hash = QCryptographicHash::hash(QFile::encodeName(QFileInfo(source).absoluteFilePath()),
                                                     QCryptographicHash::Sha256);
    struct flock turn {};
    turn.l_type = F_WRLCK;
    turn.l_start = qFromBigEndian<qint64>(hash.constData()) & 0x3fff'ffff'ffff'ffff;
    turn.l_len = 1;
    if (file.isOpen())
        uninterrupted([&] { return ::fcntl(file.number(), F_OFD_SETLKW, &turn); });
    return file;
}

} // namespace

SafetyCopy::~SafetyCopy()
{
    if (m_slot)
        m_slot->remove();
}

QString SafetyCopy::make(const QString &source, const std::optional<QString> &output)
{
    m_record.reset();
    m_turn = Descriptor();
    if (m_folder.isEmpty() || !output)
        return {};
    const QByteArray path = QFile::encodeName(source);
    struct stat before {};
    const bool isThere = ::stat(path.constData(), &before) == 0;
    const bool isOutput = source == *output || (isThere && isSameFile(*output, before));
    if (!isOutput && !output->contains(u':'))
        return {};

    if (isThere && S_ISREG(before.st_mode) && !m_slot) {
        if (QString error = OriginalsFolder::make(m_folder); !error.isEmpty())
            return error;
    }
    Descriptor turn = takeTurn(m_folder + QLatin1StringView(".turns"), source);
    if (::stat(path.constData(), &before) != 0 || !S_ISREG(before.st_mode))
        return {}; // nothing to lose
    const Descriptor file(uninterrupted([&] { return ::open(path.constData(), O_RDONLY | O_CLOEXEC); }));
    if (!file.isOpen() || ::fstat(file.number(), &before) != 0)
        return qt_error_string(errno);
    m_isOutput = isSameFile(*output, before);
    m_record = OriginalRecord::of(path, before);
    if (!m_record)
        return qt_error_string(errno);
    if (fill(file.number())) {
        m_turn = std::move(turn);
        return {};
    }
    QString error = qt_error_string(errno);
    m_record.reset();
    if (m_slot)
        m_slot->remove(); // it may have grown as far as the disk allowed
    m_slot.reset();
    return error;
}

bool SafetyCopy::fill(int source)
{
    if (!m_slot)
        m_slot = OriginalSlot::makeIn(QFile::encodeName(m_folder));
    return m_slot && m_slot->fill(source, *m_record);
}

void SafetyCopy::setInherited(bool inherited)
{
    if (m_record)
        m_slot->setInherited(inherited);
}

bool SafetyCopy::isLost(const EntryResult &result, bool gzipWanted) const
{
    // Where the compressor did its work, other content is the output, or somebody else's doing.
    if (result.outcome == EntryResult::Outcome::Done || result.outcome == EntryResult::Outcome::NoGzipCopy) {
        const SourceState state = glanceAtSource(*m_record);
        return state == SourceState::Missing || (state == SourceState::Empty && !result.mayBeEmpty);
    }
    switch (stateOfSource(*m_record, *m_slot)) {
    case SourceState::Missing:
    case SourceState::Empty:
    case SourceState::Beginning:
    case SourceState::Changed:
        return true;
    case SourceState::Replaced:
        // Compressors write to the file that is there; only the gzip copy puts another into its place.
        return m_isOutput && gzipWanted;
    case SourceState::Same:
    case SourceState::Unknown:
        break;
    }
    return false;
}

/// A compressor that failed may have written to the source, but so may somebody who edited it meanwhile.
bool SafetyCopy::mayBeNewer(const EntryResult &result) const
{
    if (!m_isOutput || (result.outcome != EntryResult::Outcome::CompressorFailed &&
                        result.outcome != EntryResult::Outcome::CompressorKilled))
        return false;
    const SourceState state = stateOfSource(*m_record, *m_slot);
    return state == SourceState::Changed || state == SourceState::Replaced;
}

void SafetyCopy::finish(EntryResult &result, bool gzipWanted)
{
    if (!m_record)
        return;
    const Descriptor turn = std::move(m_turn);
    if (m_isOutput && result.outcome == EntryResult::Outcome::Done && !isOnDisk(m_record->file))
        result.outcome = EntryResult::Outcome::NotWritten;
    if (isLost(result, gzipWanted))
        putBackSource(result, gzipWanted);
    else if (m_isOutput && gzipWanted && result.outcome != EntryResult::Outcome::Done)
        static_cast<void>(putBackLink(*m_record, true)); // an older gzip copy took the link's place
    if (m_slot)
        m_slot->clear();
    m_record.reset();
}

void SafetyCopy::putBackSource(EntryResult &result, bool gzipWanted)
{
    if (mayBeNewer(result)) {
        if (const std::optional<QByteArray> kept = keepContent(*m_record, QFile::encodeName(m_folder)))
            result.kept = QFile::decodeName(*kept);
    }
    QString error = putBack(*m_record, *m_slot);
    if (error.isEmpty())
        error = putBackLink(*m_record, m_isOutput && gzipWanted);
    if (m_isOutput && result.outcome == EntryResult::Outcome::Done)
        result.outcome = EntryResult::Outcome::NoOutput; // it was there, and was lost again
    result.sourceState = error.isEmpty() ? EntryResult::Source::PutBack : EntryResult::Source::Lost;
    if (error.isEmpty()) {
        if (m_isOutput)
            result.sizeAfter = m_record->size;
        return;
    }
    result.detail = error;
    m_slot.reset(); // stays in the folder, for the next start
}

} // namespace brevant
