// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/ModernEntry.h"

#include "engine/Tools.h"
#include "engine/modern/SourceMap.h"
#include "files/DurableFile.h"
#include "files/FileBytes.h"
#include "files/Folders.h"
#include "files/PathString.h"

#include <QFile>

#include <utility>

#include <sys/stat.h>
#include <sys/xattr.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using Outcome = EntryResult::Outcome;

/// Writes over the content of an existing file. The reason of a failure, or an empty text.
QString writeInto(const QString &path, const QByteArray &bytes)
{
    const Descriptor file = openRegularFile(QFile::encodeName(path), O_WRONLY);
    const bool isWritten = file.isOpen() && FileBytes::writeAll(file.number(), bytes, 0) &&
                           ::ftruncate(file.number(), bytes.size()) == 0 && flushFile(file.number());
    return isWritten ? QString() : qt_error_string(errno);
}

/// Writes a new file beside its place, to the disk. The reason of a failure, or an empty text.
QString prepare(DurableFile &file, const QByteArray &bytes, const struct stat &source)
{
    file.setModeOfNew(source.st_mode & 0777);
    return file.write(bytes) && file.flush() ? QString() : file.errorText();
}

/// Writes output and source map; neither is put into place before there is room for both.
QString writeFiles(const ModernResult &minified, const struct stat &source, const QString &output,
                   bool isInto)
{
    const bool hasMap = !minified.sourceMap.isEmpty();
    struct stat now = source;
    now.st_mtim = {0, UTIME_NOW};
    DurableFile map(sourceMapPath(output), now); // anew, as a link there may lead to a source
    DurableFile file(output);
    QString error = isInto ? QString() : prepare(file, minified.output, source);
    if (hasMap && error.isEmpty())
        error = prepare(map, minified.sourceMap, source);
    if (hasMap && error.isEmpty() && !map.commit())
        error = map.errorText();
    if (!error.isEmpty())
        return error;
    if (isInto)
        return writeInto(output, minified.output);
    return file.commit() ? QString() : file.errorText();
}

bool isSameFile(const struct stat &a, const std::optional<struct stat> &b)
{
    return b && a.st_dev == b->st_dev && a.st_ino == b->st_ino;
}

/// Whether a file still holds what was read of it.
bool isUnchanged(const struct stat &then, const std::optional<struct stat> &now)
{
    return isSameFile(then, now) && then.st_size == now->st_size &&
           then.st_mtim.tv_sec == now->st_mtim.tv_sec && then.st_mtim.tv_nsec == now->st_mtim.tv_nsec;
}

std::nullopt_t fail(EntryResult &result, const QString &why)
{
    result.outcome = Outcome::NotMinified;
    result.obstacle = why;
    result.isUntouched = true;
    return std::nullopt;
}

void write(const ModernResult &minified, const struct stat &source, bool isInto, bool isInPlace,
           EntryResult &result)
{
    if (isInPlace && !isUnchanged(source, statusOf(QFile::encodeName(*result.output)))) {
        fail(result, u"the source was changed meanwhile"_s);
        return;
    }
    const bool isNeeded = !minified.isSource || !isInPlace;
    if (const QString error = isNeeded ? writeFiles(minified, source, *result.output, isInto) : QString();
        !error.isEmpty()) {
        fail(result, u"the output could not be written: %1"_s.arg(error));
        result.isUntouched = !isInto;
        return;
    }
    result.outcome = Outcome::Done;
    result.sizeAfter = minified.output.size();
}

/// The size of the copy; nothing on failure.
std::optional<qint64> makeCopy(const QString &output, const QString &extension, const Filter &filter,
                               std::optional<QByteArray> &bytes, const std::atomic<Stop> &stop)
{
    const std::optional<struct stat> status = statusOf(QFile::encodeName(output));
    if (!bytes)
        bytes = FileBytes::readAll(QFile::encodeName(output));
    if (!status || !bytes)
        return std::nullopt;
    const FilterRun run = runFilter(filter, *bytes, stop, timeFor(bytes->size()));
    DurableFile copy(PathString::withExtension(output, extension), *status);
    if (!run.isSuccess() || run.output.isEmpty() || !copy.write(run.output) || !copy.commit())
        return std::nullopt;
    return run.output.size();
}

} // namespace

bool isWrittenInto(const QString &output)
{
    const std::optional<struct stat> status = statusOf(QFile::encodeName(output));
    if (!status)
        return errno != ENOENT; // who knows what is there
    const QByteArray path = QFile::encodeName(output);
    const QByteArray folder = folderOf(linkTarget(path));
    return status->st_nlink > 1 || status->st_uid != ::geteuid() ||
           ::getxattr(path.constData(), "system.posix_acl_access", nullptr, 0) > 0 ||
           ::faccessat(AT_FDCWD, folder.constData(), W_OK | X_OK, AT_EACCESS) != 0;
}

std::optional<QByteArray> runModernEntry(const FileKind &kind, const ModernOptions &options,
                                         const Tools &tools, FilterRunner &filters, bool isInto,
                                         EntryResult &result)
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
    const bool isInPlace = isSameFile(source, statusOf(QFile::encodeName(*result.output)));
    ModernResult minified =
        minifyModern(kind, *bytes, options, tools, result.source, *result.output, filters);
    result.messages = std::move(minified.messages);
    if (!minified.error.isEmpty())
        return fail(result, minified.error);
    write(minified, source, isInto, isInPlace, result);
    if (minified.isSource && result.outcome == Outcome::Done && !bytes->isEmpty())
        result.messages.shown.push_back(
            {CompressorMessage::Kind::Information,
             u"not smaller when minified, so the output is the source as it is"_s});
    return std::move(minified.output);
}

void makeCompressedCopies(bool isGzipWanted, bool isBrotliWanted, std::optional<QByteArray> output,
                          const std::atomic<Stop> &stop, EntryResult &result)
{
    if (isGzipWanted && result.outcome == Outcome::Done) {
        result.gzipSize = makeCopy(*result.output, u"gz"_s, {u"/usr/bin/gzip"_s, {u"-9"_s, u"-n"_s, u"-c"_s}},
                                   output, stop);
        if (!result.gzipSize)
            result.outcome = Outcome::NoGzipCopy;
    }
    if (isBrotliWanted && (result.outcome == Outcome::Done || result.outcome == Outcome::NoGzipCopy)) {
        result.brotliSize =
            makeCopy(*result.output, u"br"_s, {Tools::brotli(), {u"-q"_s, u"11"_s, u"-c"_s}}, output, stop);
        if (!result.brotliSize)
            result.outcome = Outcome::NoBrotliCopy;
    }
}

} // namespace brevant
