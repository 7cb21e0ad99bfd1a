// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/originals/OriginalRecord.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QtEndian>

#include <array>
#include <climits>
#include <cstdlib>
#include <memory>
#include <utility>

#include <sys/xattr.h>
#include <unistd.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr quint32 allBits = 07777;
constexpr quint32 permissions = 0777;

QByteArray sha256(QByteArrayView bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

bool isSameTime(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool isPath(const QByteArray &bytes)
{
    return bytes.startsWith('/') && !bytes.contains('\0');
}

/// The record, if its paths and its size are possible.
std::optional<OriginalRecord> checked(OriginalRecord record)
{
    record.mode &= permissions;
    const bool isValid = isPath(record.path) && isPath(record.file) && record.size >= 0;
    return isValid ? std::optional(std::move(record)) : std::nullopt;
}

/// Calls `visit` with name and value of each field except the extended attributes, in the order of version
/// 1.0.0.
template <typename Record, typename Visit>
void forEachField(Record &record, Visit visit)
{
    visit("path"_L1, record.path);
    visit("file"_L1, record.file);
    visit("link"_L1, record.linkText);
    visit("sha256"_L1, record.hash);
    visit("size"_L1, record.size);
    visit("device"_L1, record.device);
    visit("inode"_L1, record.inode);
    visit("mode"_L1, record.mode);
    visit("owner"_L1, record.owner);
    visit("group"_L1, record.group);
    visit("accessed"_L1, record.accessed);
    visit("modified"_L1, record.modified);
    visit("changed"_L1, record.changed);
}

template <typename Number>
QJsonValue toJson(Number number)
{
    return static_cast<qint64>(number);
}

// Paths and attributes need not be valid texts.
QJsonValue toJson(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toPercentEncoding("/"));
}

QJsonValue toJson(const timespec &time)
{
    return QJsonArray{qint64(time.tv_sec), qint64(time.tv_nsec)};
}

template <typename Number>
void readJson(const QJsonValue &value, Number &number)
{
    number = static_cast<Number>(value.toInteger(-1));
}

void readJson(const QJsonValue &value, QByteArray &bytes)
{
    bytes = QByteArray::fromPercentEncoding(value.toString().toLatin1());
}

void readJson(const QJsonValue &value, timespec &time)
{
    time.tv_sec = value[0].toInteger();
    time.tv_nsec = value[1].toInteger();
}

// Version 1.0.0 wrote this, the length of the rest in four bytes, its SHA-256, and the rest.
constexpr QByteArrayView oldSignature("BVORIG1\n");

QDataStream &operator>>(QDataStream &stream, timespec &time)
{
    qint64 seconds = 0;
    qint64 nanoseconds = 0;
    stream >> seconds >> nanoseconds;
    time.tv_sec = seconds;
    time.tv_nsec = nanoseconds;
    return stream;
}

std::optional<OriginalRecord> fromOldBytes(QByteArrayView bytes)
{
    constexpr qsizetype hashAt = oldSignature.size() + qsizetype(sizeof(quint32));
    constexpr qsizetype restAt = hashAt + 32;
    if (bytes.size() < restAt)
        return std::nullopt;
    const auto length = qFromLittleEndian<quint32>(bytes.sliced(oldSignature.size()).data());
    if (length > bytes.size() - restAt ||
        sha256(bytes.sliced(restAt, length)) != bytes.first(restAt).sliced(hashAt))
        return std::nullopt;
    OriginalRecord record;
    QDataStream stream(bytes.sliced(restAt, length).toByteArray());
    stream.setVersion(QDataStream::Qt_6_4);
    forEachField(record, [&](QLatin1StringView, auto &value) { stream >> value; });
    const bool isWhole = stream.status() == QDataStream::Ok && stream.atEnd();
    return isWhole ? checked(std::move(record)) : std::nullopt;
}

/// The readable extended attributes of an open file.
std::map<QByteArray, QByteArray> attributesOf(int file)
{
    std::map<QByteArray, QByteArray> attributes;
    QByteArray names(XATTR_LIST_MAX, Qt::Uninitialized);
    QByteArray value(XATTR_SIZE_MAX, Qt::Uninitialized);
    const ssize_t length = ::flistxattr(file, names.data(), static_cast<std::size_t>(names.size()));
    if (length <= 0)
        return attributes;
    for (const QByteArray &name : names.first(length - 1).split('\0')) {
        const ssize_t size =
            ::fgetxattr(file, name.constData(), value.data(), static_cast<std::size_t>(value.size()));
        if (size >= 0)
            attributes[name] = value.first(size);
    }
    return attributes;
}

/// Gives an open file these extended attributes alone. Calls `report` with each that had to be set, and
/// whether it could be.
template <typename Report>
void setAttributes(int file, const std::map<QByteArray, QByteArray> &attributes, Report report)
{
    const std::map<QByteArray, QByteArray> present = attributesOf(file);
    for (const auto &[name, value] : present) {
        if (!attributes.contains(name))
            ::fremovexattr(file, name.constData());
    }
    for (const auto &[name, value] : attributes) {
        const auto found = present.find(name);
        if (found == present.end() || found->second != value)
            report(QString::fromUtf8(name), ::fsetxattr(file, name.constData(), value.constData(),
                                                        static_cast<std::size_t>(value.size()), 0) == 0);
    }
}

} // namespace

std::optional<OriginalRecord> OriginalRecord::of(const QByteArray &path, int source)
{
    struct stat status {};
    const std::unique_ptr<char, decltype(&std::free)> file(::realpath(path.constData(), nullptr), &std::free);
    if (!file || ::fstat(source, &status) != 0)
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
    record.mode = status.st_mode & allBits;
    record.owner = status.st_uid;
    record.group = status.st_gid;
    record.accessed = status.st_atim;
    record.modified = status.st_mtim;
    record.changed = status.st_ctim;
    record.attributes = attributesOf(source);
    return record;
}

bool OriginalRecord::isUntouched(const struct stat &status) const
{
    return isSameFile(status) && status.st_size == size && isSameTime(status.st_mtim, modified) &&
           isSameTime(status.st_ctim, changed);
}

QByteArray OriginalRecord::toBytes() const
{
    QJsonObject object;
    forEachField(*this, [&](QLatin1StringView name, const auto &value) { object[name] = toJson(value); });
    object["sha256"_L1] = QString::fromLatin1(hash.toHex()); // legible
    QJsonObject values;
    for (const auto &[name, value] : attributes)
        values[QString::fromUtf8(name)] = toJson(value);
    object["attributes"_L1] = values;
    if (!written.isEmpty())
        object["written"_L1] = QString::fromLatin1(written.toHex());
    const QByteArray line = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return sha256(line).toHex() + '\n' + line + '\n';
}

std::optional<OriginalRecord> OriginalRecord::fromBytes(QByteArrayView bytes)
{
    if (bytes.startsWith(oldSignature))
        return fromOldBytes(bytes);
    constexpr qsizetype lineAt = 2 * 32 + 1;
    const qsizetype end = bytes.indexOf('\n', lineAt);
    if (end < 0)
        return std::nullopt;
    const QByteArray line = bytes.first(end).sliced(lineAt).toByteArray();
    if (bytes.first(lineAt) != sha256(line).toHex() + '\n')
        return std::nullopt;
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    OriginalRecord record;
    forEachField(record, [&](QLatin1StringView name, auto &value) { readJson(object[name], value); });
    record.hash = QByteArray::fromHex(object["sha256"_L1].toString().toLatin1());
    record.written = QByteArray::fromHex(object["written"_L1].toString().toLatin1());
    const QJsonObject values = object["attributes"_L1].toObject();
    for (auto value = values.begin(); value != values.end(); ++value)
        readJson(value.value(), record.attributes[value.key().toUtf8()]);
    return checked(std::move(record));
}

QString OriginalRecord::restoreOn(int target, bool times) const
{
    QStringList lacks;
    QString reason; // of the first failure
    const auto restored = [&](const QString &what, bool isDone) {
        if (isDone)
            return;
        if (lacks.isEmpty())
            reason = qt_error_string(errno);
        lacks.append(what);
    };
    struct stat now {};
    if (::fstat(target, &now) != 0)
        return qt_error_string(errno);
    if (now.st_uid != owner || now.st_gid != group)
        restored(u"owner"_s, ::fchown(target, owner, group) == 0);
    // After the owner, as changing that clears special bits of the mode.
    if (::fstat(target, &now) != 0 || (now.st_mode & allBits) != mode)
        restored(u"mode"_s, ::fchmod(target, mode) == 0);
    setAttributes(target, attributes, restored);
    const std::array<timespec, 2> before{accessed, modified};
    if (times)
        restored(u"times"_s, ::futimens(target, before.data()) == 0);
    return lacks.isEmpty() ? QString() : u"%1 (%2)"_s.arg(lacks.join(", "_L1), reason);
}

} // namespace brevant
