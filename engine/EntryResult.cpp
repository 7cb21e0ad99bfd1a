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

using Outcome = EntryResult::Outcome;

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

QString gzipPath(const QString &output)
{
    return PathString::withExtension(output, u"gz");
}

/// Why this process may not access a file in that way; empty if it may.
QString accessError(const QString &path, int mode)
{
    const bool isAllowed = ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
    return isAllowed ? QString() : qt_error_string(errno);
}

/// What will keep a compressor from its work; empty if nothing is in sight.
QString findObstacle(const QString &source, const std::optional<QString> &output)
{
    if (!output)
        return QStringLiteral("the settings give no output path");
    if (const QString error = accessError(source, R_OK); !error.isEmpty())
        return QStringLiteral("the source cannot be read: %1").arg(error);
    if (QFileInfo(source).isDir())
        return QStringLiteral("the source is a folder");
    if (QFileInfo(*output).isDir())
        return QStringLiteral("the output is a folder");
    if (QFileInfo::exists(*output)) {
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

/// Whether the disk of the output is full. A compressor may exit with 0 though its output did not fit.
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
    : m_mayBeEmpty(isBlankSource(source))
{
    m_result.source = source;
    m_result.output = output;
    m_result.obstacle = findObstacle(source, output);
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

void EntryWatch::compressorEnded(const ChildExit &exit)
{
    m_result.status = exit.code;
    if (!exit.isSuccess()) {
        m_result.outcome = exit.crashed ? Outcome::CompressorKilled : Outcome::CompressorFailed;
        return;
    }
    const std::optional<State> written = m_result.output ? stateOf(*m_result.output) : std::nullopt;
    if (!written || written == m_outputBefore)
        return; // no output, which the result says from the start
    m_writtenSize = written->size;
    if (isDiskFull(*m_result.output))
        m_result.outcome = Outcome::DiskFull;
    else
        m_result.outcome = m_writtenSize > 0 || m_mayBeEmpty ? Outcome::Done : Outcome::EmptyOutput;
}

EntryResult EntryWatch::notRun(Outcome outcome, const QString &reason)
{
    m_result.outcome = outcome;
    m_result.detail = reason;
    return m_result;
}

EntryResult EntryWatch::finish(bool gzipWanted, double seconds)
{
    m_result.seconds = seconds;
    if (!m_result.output)
        return m_result;
    const bool isDone = m_result.outcome == Outcome::Done;
    if (const std::optional<State> state = stateOf(*m_result.output))
        m_result.sizeAfter = state->size;
    if (gzipWanted) {
        const std::optional<State> copy = stateOf(gzipPath(*m_result.output));
        if (copy && copy != m_gzipBefore)
            m_result.gzipSize = copy->size;
    }
    if (isDone && m_result.sizeAfter == 0 && m_writtenSize > 0)
        m_result.outcome = Outcome::EmptyOutput; // by the gzip copy
    else if (isDone && gzipWanted && (!m_result.gzipSize || !m_result.sizeAfter))
        m_result.outcome = Outcome::NoGzipCopy;
    return m_result;
}

namespace {

QString wordsFor(const EntryResult &result)
{
    using enum EntryResult::Outcome;
    switch (result.outcome) {
    case Done:
        return {};
    case CompressorFailed:
        return result.obstacle.isEmpty()
                   ? QStringLiteral("the compressor ended with status %1").arg(result.status)
                   : result.obstacle;
    case CompressorKilled:
        return QStringLiteral("the compressor was ended by signal %1").arg(result.status);
    case NoOutput:
        return result.obstacle.isEmpty() ? QStringLiteral("the compressor wrote no output") : result.obstacle;
    case EmptyOutput:
        return QStringLiteral("the compressor left an empty output");
    case NoGzipCopy:
        return QStringLiteral("the gzip copy could not be made");
    case DiskFull:
        return QStringLiteral("the disk is full");
    case NotWritten:
        return QStringLiteral("the output could not be written to the disk");
    case NotSafe:
        return QStringLiteral("not minified, as %1").arg(result.detail);
    case Refused:
        return QStringLiteral("not minified: %1").arg(result.detail);
    }
    return {};
}

} // namespace

QString EntryResult::reason() const
{
    QString text = wordsFor(*this);
    if (text.isEmpty() || sourceState == Source::Safe)
        return text;
    if (sourceState == Source::Lost)
        return text + QStringLiteral("; the source could not be put back (%1), the next start tries again")
                          .arg(detail);
    text += QStringLiteral("; the source was put back");
    return kept.isEmpty() ? text : text + QStringLiteral(", and what was in it is kept as ") + kept;
}

} // namespace brevant
