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

#include <sys/xattr.h>
#include <unistd.h>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

constexpr quint32 allBits = 07777;
constexpr quint32 permissions = 0777;

QByteArray sha256(QByteArrayView bytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(bytes);
    return hash.result();
}

bool isSameTime(const timespec &a, const timespec &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool isPath(const QByteArray &bytes)
{
    return bytes.startsWith('/') && !bytes.contains('\0');
}

bool isValid(const OriginalRecord &record)
{
    return isPath(record.path) && isPath(record.file) && record.size >= 0;
}

// Paths and values of attributes need not be texts.
QJsonValue textOf(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toPercentEncoding("/"));
}

QByteArray bytesOf(const QJsonValue &text)
{
    return QByteArray::fromPercentEncoding(text.toString().toLatin1());
}

QJsonArray toJson(const timespec &time)
{
    return {qint64(time.tv_sec), qint64(time.tv_nsec)};
}

timespec timeOf(const QJsonValue &value)
{
    timespec time{};
    time.tv_sec = value[0].toInteger();
    time.tv_nsec = value[1].toInteger();
    return time;
}

std::optional<OriginalRecord> fromJson(const QJsonObject &object)
{
    OriginalRecord record;
    record.path = bytesOf(object["path"_L1]);
    record.file = bytesOf(object["file"_L1]);
    record.linkText = bytesOf(object["link"_L1]);
    record.hash = QByteArray::fromHex(object["sha256"_L1].toString().toLatin1());
    record.size = object["size"_L1].toInteger(-1);
    record.device = static_cast<quint64>(object["device"_L1].toInteger());
    record.inode = static_cast<quint64>(object["inode"_L1].toInteger());
    record.mode = static_cast<quint32>(object["mode"_L1].toInteger()) & permissions;
    record.owner = static_cast<quint32>(object["owner"_L1].toInteger());
    record.group = static_cast<quint32>(object["group"_L1].toInteger());
    record.accessed = timeOf(object["accessed"_L1]);
    record.modified = timeOf(object["modified"_L1]);
    record.changed = timeOf(object["changed"_L1]);
    const QJsonObject attributes = object["attributes"_L1].toObject();
    for (auto attribute = attributes.begin(); attribute != attributes.end(); ++attribute)
        record.attributes[attribute.key().toUtf8()] = bytesOf(attribute.value());
    return isValid(record) ? std::optional(record) : std::nullopt;
}

// Version 1.0.0 wrote these bytes, the length of the rest in four bytes, its SHA-256, and the rest.
constexpr QByteArrayView oldSignature("BVORIG1\n");

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
    stream >> record.path >> record.file >> record.linkText >> record.hash >> record.size >> record.device >>
        record.inode >> record.mode >> record.owner >> record.group;
    record.mode &= permissions;
    for (timespec *time : {&record.accessed, &record.modified, &record.changed}) {
        qint64 seconds = 0;
        qint64 nanoseconds = 0;
        stream >> seconds >> nanoseconds;
        time->tv_sec = seconds;
        time->tv_nsec = nanoseconds;
    }
    const bool isWhole = stream.status() == QDataStream::Ok && stream.atEnd();
    return isWhole && isValid(record) ? std::optional(record) : std::nullopt;
}

/// The extended attributes of an open file that can be read.
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

/// What could not be made as it was, and why.
class Lacks final {
public:
    void add(const QString &what, bool done)
    {
        if (done)
            return;
        if (m_what.isEmpty())
            m_reason = qt_error_string(errno);
        m_what.append(what);
    }
    [[nodiscard]] QString text() const
    {
        return m_what.isEmpty()
                   ? QString()
                   : QStringLiteral("%1 (%2)").arg(m_what.join(QLatin1StringView(", ")), m_reason);
    }

private:
    QStringList m_what;
    QString m_reason;
};

void restoreExtended(int file, const std::map<QByteArray, QByteArray> &wanted, Lacks &lacks)
{
    const std::map<QByteArray, QByteArray> now = attributesOf(file);
    for (const auto &[name, value] : now) {
        if (!wanted.contains(name))
            ::fremovexattr(file, name.constData());
    }
    for (const auto &[name, value] : wanted) {
        const auto found = now.find(name);
        const bool isSame = found != now.end() && found->second == value;
        lacks.add(QString::fromUtf8(name),
                  isSame || ::fsetxattr(file, name.constData(), value.constData(),
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
    QJsonObject values;
    for (const auto &[name, value] : attributes)
        values[QString::fromUtf8(name)] = textOf(value);
    const QJsonObject object{
        {u"path"_s, textOf(path)},
        {u"file"_s, textOf(file)},
        {u"link"_s, textOf(linkText)},
        {u"sha256"_s, QString::fromLatin1(hash.toHex())},
        {u"size"_s, size},
        {u"device"_s, static_cast<qint64>(device)},
        {u"inode"_s, static_cast<qint64>(inode)},
        {u"mode"_s, static_cast<qint64>(mode)},
        {u"owner"_s, static_cast<qint64>(owner)},
        {u"group"_s, static_cast<qint64>(group)},
        {u"accessed"_s, toJson(accessed)},
        {u"modified"_s, toJson(modified)},
        {u"changed"_s, toJson(changed)},
        {u"attributes"_s, values},
    };
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
    return fromJson(QJsonDocument::fromJson(line).object());
}

QString OriginalRecord::restoreOn(int target, bool times) const
{
    Lacks lacks;
    struct stat now {};
    if (::fstat(target, &now) != 0)
        return qt_error_string(errno);
    if (now.st_uid != owner || now.st_gid != group)
        lacks.add(QStringLiteral("owner"), ::fchown(target, owner, group) == 0);
    // After the owner: a new one takes special bits from the mode.
    if (::fstat(target, &now) != 0 || (now.st_mode & allBits) != mode)
        lacks.add(QStringLiteral("mode"), ::fchmod(target, mode) == 0);
    restoreExtended(target, attributes, lacks);
    const std::array<timespec, 2> before{accessed, modified};
    if (times)
        lacks.add(QStringLiteral("times"), ::futimens(target, before.data()) == 0);
    return lacks.text();
}

} // namespace brevant
