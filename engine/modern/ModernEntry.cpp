// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/ModernEntry.h"

#include "engine/Tools.h"
#include "engine/modern/SourceMap.h"
#include "files/DurableFile.h"
#include "files/FileBytes.h"
#include "files/PathString.h"

#include <QFile>

#include <utility>

#include <sys/stat.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Outcome = EntryResult::Outcome;

std::optional<struct stat> statusOf(const QString &path)
{
    struct stat status {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return std::nullopt;
    return status;
}

/// Writes over the content of an existing file. The reason of a failure, or an empty text.
QString writeInto(const QString &path, const QByteArray &bytes)
{
    const Descriptor file = openFile(QFile::encodeName(path), O_WRONLY);
    const bool isWritten = file.isOpen() && FileBytes::writeAll(file.number(), bytes, 0) &&
                           ::ftruncate(file.number(), bytes.size()) == 0 && flushFile(file.number());
    return isWritten ? QString() : qt_error_string(errno);
}

/// Replaces a file, or makes one with the mode of `source`. The reason of a failure, or an empty text.
QString replace(const QString &path, const QByteArray &bytes, const struct stat &source)
{
    DurableFile file(path);
    file.setModeOfNew(source.st_mode & 0777);
    return file.write(bytes) && file.commit() ? QString() : file.errorText();
}

void fail(EntryResult &result, const QString &why)
{
    result.outcome = Outcome::NotMinified;
    result.obstacle = why;
}

void write(const ModernResult &minified, const struct stat &source, bool isInto, EntryResult &result)
{
    const QString &output = *result.output;
    const std::optional<struct stat> old = statusOf(output);
    const bool isSourceItself = old && old->st_dev == source.st_dev && old->st_ino == source.st_ino;
    QString error;
    if (!minified.sourceMap.isEmpty())
        error = replace(sourceMapPath(output), minified.sourceMap, source);
    if (error.isEmpty() && !(minified.isSource && isSourceItself))
        error = isInto ? writeInto(output, minified.output) : replace(output, minified.output, source);
    if (!error.isEmpty())
        return fail(result, u"the output could not be written: %1"_s.arg(error));
    result.outcome = Outcome::Done;
    result.sizeAfter = minified.output.size();
}

/// The size of the copy; nothing on failure.
std::optional<qint64> makeCopy(const QString &output, const QString &extension, const Filter &filter,
                               const std::atomic<Stop> &stop)
{
    const std::optional<struct stat> status = statusOf(output);
    const std::optional<QByteArray> bytes = FileBytes::readAll(QFile::encodeName(output));
    if (!status || !bytes)
        return std::nullopt;
    const FilterRun run = runFilter(filter, *bytes, stop, timeFor(bytes->size()));
    DurableFile copy(PathString::withExtension(output, extension), *status);
    if (!run.isSuccess() || !copy.write(run.output) || !copy.commit())
        return std::nullopt;
    return run.output.size();
}

} // namespace

bool isWrittenInto(const QString &output)
{
    const std::optional<struct stat> status = statusOf(output);
    const QByteArray folder = QFile::encodeName(PathString::folder(output).toString());
    return status && (status->st_nlink > 1 || status->st_uid != ::geteuid() ||
                      ::faccessat(AT_FDCWD, folder.constData(), W_OK | X_OK, AT_EACCESS) != 0);
}

void runModernEntry(const FileKind &kind, const ModernOptions &options, const Tools &tools,
                    const std::atomic<Stop> &stop, bool isInto, EntryResult &result)
{
    if (!result.obstacle.isEmpty())
        return fail(result, result.obstacle);
    const Descriptor file = openRegularFile(QFile::encodeName(result.source));
    struct stat source {};
    const bool isOpen = file.isOpen() && ::fstat(file.number(), &source) == 0;
    const std::optional<QByteArray> bytes = isOpen ? FileBytes::readAll(file.number()) : std::nullopt;
    if (!bytes)
        return fail(result, u"the source cannot be read: %1"_s.arg(
                                errno == EINVAL ? u"it is not a regular file"_s : qt_error_string(errno)));
    result.sizeBefore = bytes->size();
    ModernResult minified = minifyModern(kind, *bytes, options, tools, result.source, *result.output, stop);
    result.messages = std::move(minified.messages);
    if (!minified.error.isEmpty())
        return fail(result, minified.error);
    write(minified, source, isInto, result);
    if (minified.isSource && !bytes->isEmpty())
        result.messages.shown.push_back(
            {CompressorMessage::Kind::Information,
             u"not smaller when minified, so the output is the source as it is"_s});
}

void makeCompressedCopies(bool isGzipWanted, bool isBrotliWanted, const std::atomic<Stop> &stop,
                          EntryResult &result)
{
    if (isGzipWanted && result.outcome == Outcome::Done) {
        result.gzipSize =
            makeCopy(*result.output, u"gz"_s, {u"/usr/bin/gzip"_s, {u"-9"_s, u"-n"_s, u"-c"_s}}, stop);
        if (!result.gzipSize)
            result.outcome = Outcome::NoGzipCopy;
    }
    if (isBrotliWanted && (result.outcome == Outcome::Done || result.outcome == Outcome::NoGzipCopy)) {
        result.brotliSize =
            makeCopy(*result.output, u"br"_s, {Tools::brotli(), {u"-q"_s, u"11"_s, u"-c"_s}}, stop);
        if (!result.brotliSize)
            result.outcome = Outcome::NoBrotliCopy;
    }
}

} // namespace brevant
