// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryResult.h"

#include "engine/BlankSource.h"
#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/PathString.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevant {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

QString gzipPath(const QString &output)
{
    return PathString::withExtension(output, u"gz");
}

/// Why this process may not do that with a file; empty if it may.
QString accessError(const QString &path, int mode)
{
    const bool isAllowed = ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
    return isAllowed ? QString() : qt_error_string(errno);
}

/// What keeps a compressor from its work; empty if nothing is seen.
QString findObstacle(const QString &source, const std::optional<QString> &output)
{
    if (!output)
        return QStringLiteral("the settings give no output path");
    if (const QString error = accessError(source, R_OK); !error.isEmpty())
        return QStringLiteral("the source cannot be read: %1").arg(error);
    if (QFileInfo(source).isDir())
        return QStringLiteral("the source is a folder");
    const QFileInfo file(*output);
    if (file.isDir())
        return QStringLiteral("the output is a folder");
    if (file.exists()) {
        const QString error = accessError(*output, W_OK);
        return error.isEmpty() ? error : QStringLiteral("the output cannot be written: %1").arg(error);
    }
    const QString folder = PathString::folder(*output).toString();
    if (const QString error = accessError(folder + u'/', F_OK); !error.isEmpty())
        return QStringLiteral("the folder of the output: %1").arg(error);
    const QString error = accessError(folder, W_OK | X_OK);
    return error.isEmpty() ? error
                           : QStringLiteral("the folder of the output cannot be written: %1").arg(error);
}

/// Whether the disk that the output is on takes no more. A compressor whose output did not fit can end well.
bool isDiskFull(const QString &output)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(output).canonicalPath());
    const Descriptor probe(
        uninterrupted([&] { return ::open(folder.constData(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600); }));
    constexpr qsizetype oneBlock = 4096;
    const bool takesMore =
        probe.isOpen() && FileBytes::writeAll(probe.number(), QByteArray(oneBlock, '\0'), 0);
    return !takesMore && (errno == ENOSPC || errno == EDQUOT);
}

} // namespace

EntryWatch::EntryWatch(const QString &source, const std::optional<QString> &output)
{
    m_result.source = source;
    m_result.output = output;
    m_result.obstacle = findObstacle(source, output);
    m_result.mayBeEmpty = isBlankSource(source);
    if (const std::optional<State> state = stateOf(source))
        m_result.sizeBefore = state->size;
    if (output) {
        m_outputBefore = stateOf(*output);
        m_gzipBefore = stateOf(gzipPath(*output));
    }
}

std::optional<EntryWatch::State> EntryWatch::stateOf(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return State{status.st_ino, status.st_size,
                 status.st_ctim.tv_sec * nanosecondsPerSecond + status.st_ctim.tv_nsec};
}

EntryResult::Outcome EntryWatch::judge(const ChildExit &exit)
{
    if (exit.crashed)
        return EntryResult::Outcome::CompressorKilled;
    if (!exit.isSuccess())
        return EntryResult::Outcome::CompressorFailed;
    const std::optional<State> written = m_result.output ? stateOf(*m_result.output) : std::nullopt;
    if (!written || written == m_outputBefore)
        return EntryResult::Outcome::NoOutput;
    m_writtenSize = written->size;
    if (isDiskFull(*m_result.output))
        return EntryResult::Outcome::DiskFull;
    const bool isWhole = written->size > 0 || m_result.mayBeEmpty;
    return isWhole ? EntryResult::Outcome::Done : EntryResult::Outcome::EmptyOutput;
}

void EntryWatch::compressorEnded(const ChildExit &exit)
{
    m_result.status = exit.code;
    m_result.outcome = judge(exit);
}

EntryResult EntryWatch::notSafe(const QString &reason)
{
    m_result.outcome = EntryResult::Outcome::NotSafe;
    m_result.detail = reason;
    return m_result;
}

EntryResult EntryWatch::refused(const QString &reason)
{
    m_result.outcome = EntryResult::Outcome::Refused;
    m_result.detail = reason;
    return m_result;
}

EntryResult EntryWatch::finish(bool gzipWanted, double seconds)
{
    m_result.seconds = seconds;
    if (!m_result.output)
        return m_result;
    if (const std::optional<State> state = stateOf(*m_result.output))
        m_result.sizeAfter = state->size;
    if (m_result.outcome == EntryResult::Outcome::Done && m_result.sizeAfter == 0 && m_writtenSize > 0)
        m_result.outcome = EntryResult::Outcome::EmptyOutput; // by the gzip copy
    if (gzipWanted) {
        const std::optional<State> copy = stateOf(gzipPath(*m_result.output));
        if (copy && copy != m_gzipBefore)
            m_result.gzipSize = copy->size;
        if (m_result.outcome == EntryResult::Outcome::Done && (!m_result.gzipSize || !m_result.sizeAfter))
            m_result.outcome = EntryResult::Outcome::NoGzipCopy;
    }
    return m_result;
}

namespace {

QString wordsFor(const EntryResult &result)
{
    using Outcome = EntryResult::Outcome;
    const bool isObstacleTheReason =
        result.outcome == Outcome::CompressorFailed || result.outcome == Outcome::NoOutput;
    if (isObstacleTheReason && !result.obstacle.isEmpty())
        return result.obstacle;
    switch (result.outcome) {
    case Outcome::Done:
        return {};
    case Outcome::CompressorFailed:
        return QStringLiteral("the compressor ended with status %1").arg(result.status);
    case Outcome::CompressorKilled:
        return QStringLiteral("the compressor was ended by signal %1").arg(result.status);
    case Outcome::NoOutput:
        return QStringLiteral("the compressor wrote no output");
    case Outcome::EmptyOutput:
        return QStringLiteral("the compressor left an empty output");
    case Outcome::NoGzipCopy:
        return QStringLiteral("the gzip copy could not be made");
    case Outcome::DiskFull:
        return QStringLiteral("the disk is full");
    case Outcome::NotWritten:
        return QStringLiteral("the output could not be written to the disk");
    case Outcome::NotSafe:
        return QStringLiteral("not minified, as %1").arg(result.detail);
    case Outcome::Refused:
        return QStringLiteral("not minified: %1").arg(result.detail);
    }
    return {};
}

} // namespace

QString EntryResult::reason() const
{
    if (outcome == Outcome::Done)
        return {};
    switch (sourceState) {
    case Source::Safe:
        break;
    case Source::PutBack:
        return wordsFor(*this) + QStringLiteral("; the source was put back") +
               (kept.isEmpty() ? QString() : QStringLiteral(", and what was in it is kept as ") + kept);
    case Source::Lost:
        return wordsFor(*this) +
               QStringLiteral("; the source could not be put back (%1), the next start tries again")
                   .arg(detail);
    }
    return wordsFor(*this);
}

} // namespace brevant
