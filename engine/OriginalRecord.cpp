// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/OriginalRecord.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>
#include <QtEndian>

#include <climits>
#include <cstdlib>
#include <memory>

#include <unistd.h>

namespace brevant {

namespace {

// On the disk: these bytes, the length of the rest in four bytes, its SHA-256, and the rest.
constexpr QByteArrayView signature("BVORIG1\n");
constexpr qsizetype hashSize = 32;
constexpr qsizetype prefixSize = signature.size() + qsizetype(sizeof(quint32)) + hashSize;

QByteArray sha256(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(bytes);
    return hash.result();
}

void put(QDataStream &stream, const timespec &time)
{
    stream << qint64(time.tv_sec) << qint64(time.tv_nsec);
}

timespec takeTime(QDataStream &stream)
{
    qint64 seconds = 0;
    qint64 nanoseconds = 0;
    stream >> seconds >> nanoseconds;
    timespec time{};
    time.tv_sec = seconds;
    time.tv_nsec = nanoseconds;
    return time;
}

bool isSameTime(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool isPath(const QByteArray &bytes)
{
    return bytes.startsWith('/') && !bytes.contains('\0');
}

} // namespace

std::optional<OriginalRecord> OriginalRecord::of(const QByteArray &path, const struct stat &status)
{
    const std::unique_ptr<char, decltype(&std::free)> file(::realpath(path.constData(), nullptr), &std::free);
    if (!file)
        return std::nullopt;
    OriginalRecord record;
    record.path = path.startsWith('/') ? path : QByteArray(file.get());
    record.file = file.get();
    QByteArray link(PATH_MAX, Qt::Uninitialized);
    const ssize_t length =
        ::readlink(record.path.constData(), link.data(), static_cast<std::size_t>(link.size()));
    if (length > 0)
        record.linkText = link.first(length);
    record.size = status.st_size;
    record.device = status.st_dev;
    record.inode = status.st_ino;
    record.mode = status.st_mode & 07777;
    record.owner = status.st_uid;
    record.group = status.st_gid;
    record.accessed = status.st_atim;
    record.modified = status.st_mtim;
    record.changed = status.st_ctim;
    return record;
}

bool OriginalRecord::isUntouched(const struct stat &status) const
{
    return isSameFile(status) && status.st_size == size && isSameTime(status.st_mtim, modified) &&
           isSameTime(status.st_ctim, changed);
}

QByteArray OriginalRecord::toBytes() const
{
    QByteArray rest;
    QDataStream stream(&rest, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_6_4);
    stream << path << file << linkText << hash << size << device << inode << mode << owner << group;
    for (const timespec &time : {accessed, modified, changed})
        put(stream, time);
    QByteArray length(sizeof(quint32), Qt::Uninitialized);
    qToLittleEndian(static_cast<quint32>(rest.size()), length.data());
    return signature.toByteArray() + length + sha256(rest) + rest;
}

std::optional<OriginalRecord> OriginalRecord::fromBytes(QByteArrayView bytes)
{
    if (bytes.size() < prefixSize || !bytes.startsWith(signature))
        return std::nullopt;
    const auto length = qFromLittleEndian<quint32>(bytes.sliced(signature.size()).data());
    if (length > bytes.size() - prefixSize)
        return std::nullopt;
    const QByteArray rest = bytes.sliced(prefixSize, length).toByteArray();
    if (sha256(rest) != bytes.sliced(prefixSize - hashSize, hashSize))
        return std::nullopt;

    OriginalRecord record;
    QDataStream stream(rest);
    stream.setVersion(QDataStream::Qt_6_4);
    stream >> record.path >> record.file >> record.linkText >> record.hash >> record.size >> record.device >>
        record.inode >> record.mode >> record.owner >> record.group;
    for (timespec *time : {&record.accessed, &record.modified, &record.changed})
        *time = takeTime(stream);
    const bool isWhole = stream.status() == QDataStream::Ok && stream.atEnd();
    if (!isWhole || !isPath(record.path) || !isPath(record.file) || record.size < 0)
        return std::nullopt;
    return record;
}

} // namespace brevant
