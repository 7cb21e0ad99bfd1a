// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RecordedFile.h"

#include "files/Descriptor.h"
#include "files/FileBytes.h"

#include <algorithm>
#include <charconv>
#include <ctime>

#include <sys/stat.h>

namespace brevant {

namespace {

constexpr qint64 nanosecondsPerSecond = 1'000'000'000;

/// As coarse as the times of files get: those of FAT.
constexpr qint64 longestTick = 2 * nanosecondsPerSecond;

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * nanosecondsPerSecond + time.tv_nsec;
}

RecordedFile recorded(const struct stat &status)
{
    return {status.st_size, status.st_ino, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim), {}};
}

/// Reads a number and the blank behind it off the beginning of a text.
template <typename Number>
bool takeNumber(QByteArrayView &text, Number &number)
{
    const auto [end, error] = std::from_chars(text.begin(), text.end(), number);
    if (error != std::errc() || end == text.end() || *end != ' ')
        return false;
    text = text.sliced(end - text.begin() + 1);
    return true;
}

} // namespace

std::optional<RecordedFile> RecordedFile::statusOf(const QByteArray &path)
{
    struct stat status {};
    if (::stat(path.constData(), &status) != 0)
        return std::nullopt;
    return recorded(status);
}

std::optional<RecordedFile> RecordedFile::of(const QByteArray &path)
{
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    const Descriptor file = openRegularFile(path);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return std::nullopt;
    const std::optional<QByteArray> hash = FileBytes::hash(file.number(), 0, status.st_size);
    if (!hash)
        return std::nullopt;
    RecordedFile result = recorded(status);
    result.hash = hash->toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
    if (std::max(result.modifiedAt, result.changedAt) > nanoseconds(now) - longestTick)
        result.modifiedAt = result.changedAt = 0;
    return result;
}

QByteArray RecordedFile::text() const
{
    constexpr qsizetype longestNumber = 20; // of 64 bits
    QByteArray text(4 * (longestNumber + 1), Qt::Uninitialized);
    char *end = text.data();
    const auto add = [&end](auto number) {
        end = std::to_chars(end, end + longestNumber, number).ptr;
        *end++ = ' ';
    };
    add(size);
    add(inode);
    add(modifiedAt);
    add(changedAt);
    text.truncate(end - text.constData());
    return text + hash;
}

bool RecordedFile::looksLikeText(QByteArrayView text, const QByteArray &path)
{
    const std::optional<RecordedFile> now = statusOf(path);
    return now && text.startsWith(now->text());
}

std::optional<RecordedFile> RecordedFile::fromText(QByteArrayView text)
{
    RecordedFile file;
    if (!takeNumber(text, file.size) || !takeNumber(text, file.inode) || !takeNumber(text, file.modifiedAt) ||
        !takeNumber(text, file.changedAt))
        return std::nullopt;
    file.hash = text.toByteArray();
    return file;
}

std::optional<RecordedFile> RecordedFile::ifUnchanged(const QByteArray &path) const
{
    const std::optional<RecordedFile> now = statusOf(path);
    if (!now || now->size != size)
        return std::nullopt;
    if (looksLike(*now))
        return *this;
    std::optional<RecordedFile> read = of(path);
    return read && read->size == size && read->hash == hash ? read : std::nullopt;
}

} // namespace brevant
