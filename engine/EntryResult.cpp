// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryResult.h"

#include "files/Descriptor.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "queue/FileKind.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Outcome = EntryResult::Outcome;

QString gzipPath(const QString &output)
{
    return PathString::withExtension(output, u"gz");
}

/// `what` and why, if this process may not access the file in that way; else empty.
QString accessError(const QString &what, const QString &path, int mode)
{
    const bool isAllowed = ::faccessat(AT_FDCWD, QFile::encodeName(path).constData(), mode, AT_EACCESS) == 0;
    return isAllowed ? QString() : u"%1: %2"_s.arg(what, qt_error_string(errno));
}

/// What will keep a compressor from its work; empty if nothing is in sight.
QString findObstacle(const QString &source, const std::optional<QString> &output)
{
    if (!output)
        return u"the settings give no output path"_s;
    if (QString error = accessError(u"the source cannot be read"_s, source, R_OK); !error.isEmpty())
        return error;
    if (QFileInfo(source).isDir())
        return u"the source is a folder"_s;
    if (QFileInfo(*output).isDir())
        return u"the output is a folder"_s;
    if (QFileInfo::exists(*output))
        return accessError(u"the output cannot be written"_s, *output, W_OK);
    const QString folder = PathString::folder(*output).toString();
    if (QString error = accessError(u"the folder of the output"_s, folder + u'/', F_OK); !error.isEmpty())
        return error;
    return accessError(u"the folder of the output cannot be written"_s, folder, W_OK | X_OK);
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

/// How a comment begins and ends; empty for a language whose compressor never leaves an empty output.
std::pair<QByteArrayView, QByteArrayView> commentOf(KindFamily family)
{
    switch (family) {
    case KindFamily::StyleSheet:
        return {"/*", "*/"};
    case KindFamily::Script:
        return {};
    case KindFamily::Markup:
        return {"<!--", "-->"};
    }
    Q_UNREACHABLE();
}

QString wordsFor(const EntryResult &result)
{
    using enum EntryResult::Outcome;
    switch (result.outcome) {
    case Done:
        return {};
    case CompressorFailed:
        return result.obstacle.isEmpty() ? u"the compressor ended with status %1"_s.arg(result.status)
                                         : result.obstacle;
    case CompressorKilled:
        if (result.secondsAllowed > 0)
            return u"the compressor took longer than %1 s and was ended"_s.arg(result.secondsAllowed);
        return u"the compressor was ended by signal %1"_s.arg(result.status);
    case NoOutput:
        return result.obstacle.isEmpty() ? u"the compressor wrote no output"_s : result.obstacle;
    case EmptyOutput:
        return u"the compressor left an empty output"_s;
    case NoGzipCopy:
        return u"the gzip copy could not be made"_s;
    case NoBrotliCopy:
        return u"the Brotli copy could not be made"_s;
    case NotMinified:
        return result.obstacle;
    case DiskFull:
        return u"the disk is full"_s;
    case NotWritten:
        return u"the output could not be written to the disk"_s;
    case NotSafe:
        return u"not minified, as "_s + result.detail;
    case Refused:
        return u"not minified: "_s + result.detail;
    }
    Q_UNREACHABLE();
}

} // namespace

EntryResult resultWithoutRun(const QString &source, const std::optional<QString> &output, Outcome outcome,
                             const QString &reason)
{
    EntryResult result;
    result.source = source;
    result.output = output;
    result.outcome = outcome;
    result.detail = reason;
    result.obstacle = findObstacle(source, output);
    if (const auto status = statusOf(QFile::encodeName(source)))
        result.sizeBefore = status->st_size;
    return result;
}

EntryWatch::EntryWatch(const QString &source, const std::optional<QString> &output)
    : m_result(resultWithoutRun(source, output, Outcome::NoOutput, {})), m_mayBeEmpty(isBlankSource(source)),
      m_sourceBefore(FileState::of(source))
{
    if (output) {
        m_outputBefore = FileState::of(*output);
        m_gzipBefore = FileState::of(gzipPath(*output));
    }
}

void EntryWatch::compressorEnded(const QProcess &compressor)
{
    const bool isKilled = compressor.exitStatus() == QProcess::CrashExit;
    m_result.status = compressor.exitCode();
    if (isKilled || m_result.status != 0) {
        m_result.outcome = isKilled ? Outcome::CompressorKilled : Outcome::CompressorFailed;
        return;
    }
    const std::optional<FileState> written = m_result.output ? FileState::of(*m_result.output) : std::nullopt;
    if (!written || written == m_outputBefore)
        return; // no output, which the result says from the start
    m_writtenSize = written->size;
    if (isDiskFull(*m_result.output))
        m_result.outcome = Outcome::DiskFull;
    else
        m_result.outcome = m_writtenSize > 0 || m_mayBeEmpty ? Outcome::Done : Outcome::EmptyOutput;
}

EntryResult EntryWatch::finish(bool gzipWanted, double seconds)
{
    m_result.seconds = seconds;
    if (!m_result.output)
        return m_result;
    const bool isDone = m_result.outcome == Outcome::Done;
    if (const std::optional<FileState> state = FileState::of(*m_result.output))
        m_result.sizeAfter = state->size;
    if (gzipWanted) {
        const std::optional<FileState> copy = FileState::of(gzipPath(*m_result.output));
        if (copy && copy != m_gzipBefore)
            m_result.gzipSize = copy->size;
    }
    if (isDone && m_result.sizeAfter == 0 && m_writtenSize > 0)
        m_result.outcome = Outcome::EmptyOutput; // by the gzip copy
    else if (isDone && gzipWanted && (!m_result.gzipSize || !m_result.sizeAfter))
        m_result.outcome = Outcome::NoGzipCopy;
    return m_result;
}

std::optional<CheckBasis> EntryWatch::basisOfCheck(TextEncoding encoding, const QString &original) const
{
    const std::optional<FileState> source = FileState::of(original.isEmpty() ? m_result.source : original);
    const std::optional<FileState> output = m_result.output ? FileState::of(*m_result.output) : std::nullopt;
    if (!source || (original.isEmpty() && source != m_sourceBefore) || !output)
        return std::nullopt;
    return CheckBasis{encoding, *source, *output, original};
}

QString EntryResult::reason() const
{
    QString text = wordsFor(*this);
    if (text.isEmpty() || sourceState == Source::Safe)
        return text;
    if (sourceState == Source::Lost)
        return text + u"; the source could not be put back (%1), the next start tries again"_s.arg(detail);
    text += "; the source was put back"_L1;
    return kept.isEmpty() ? text : text + ", and what was in it is kept as "_L1 + kept;
}

bool isBlankSource(const QString &source)
{
    constexpr QByteArrayView htmlCondition("<!--["); // no comment to the compressor, which keeps it
    const FileKind *const kind = kindOf(source);
    const auto [opening, closing] =
        kind ? commentOf(kind->family) : std::pair<QByteArrayView, QByteArrayView>();
    const auto text = opening.isEmpty() ? std::nullopt : FileBytes::readAll(QFile::encodeName(source));
    if (!text)
        return false;
    QByteArrayView rest = QByteArrayView(*text).trimmed();
    while (rest.startsWith(opening) && !rest.startsWith(htmlCondition)) {
        const qsizetype end = rest.indexOf(closing, opening.size());
        rest = end < 0 ? QByteArrayView() : rest.sliced(end + closing.size()).trimmed();
    }
    return rest.isEmpty();
}

} // namespace brevant
