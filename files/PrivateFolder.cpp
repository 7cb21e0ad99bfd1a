// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/PrivateFolder.h"

#include "files/FileBytes.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QtEndian>

#include <utility>

#include <sys/stat.h>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t ownerOnly = 0700;
constexpr mode_t others = 077;

/// A name is locked by way of one byte, chosen by its hash, of a file of ours: the source itself may be
/// missing for a moment, and on some file systems nobody could write to it while it is locked.
struct flock byteOf(QByteArrayView name, short type)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(name);
    struct flock byte {};
    byte.l_type = type;
    byte.l_start = qFromBigEndian<qint64>(hash.result().constData()) & 0x3fff'ffff'ffff'ffff;
    byte.l_len = 1;
    return byte;
}

} // namespace

PrivateFolder::PrivateFolder(QString path, Descriptor folder)
    : m_path(std::move(path)), m_folder(std::move(folder)), m_locks(openOurs("locks", O_RDWR | O_CREAT))
{
}

std::optional<PrivateFolder> PrivateFolder::open(const QString &path, QString &error, bool make)
{
    const QByteArray name = QFile::encodeName(path);
    Descriptor folder;
    if (!make || makeFolders(name))
        folder = brevant::openFile(name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW);
    struct stat status {};
    const bool isOpen = folder.isOpen() && ::fstat(folder.number(), &status) == 0;
    if (isOpen && status.st_uid != ::geteuid()) {
        error = u"%1 belongs to another user"_s.arg(path);
        return std::nullopt;
    }
    if (isOpen && ((status.st_mode & 07777) == ownerOnly || ::fchmod(folder.number(), ownerOnly) == 0))
        return PrivateFolder(path, std::move(folder));
    error = errno == ENOENT && !make ? QString() : qt_error_string(errno);
    return std::nullopt;
}

Descriptor PrivateFolder::openOurs(const QByteArray &name, int flags) const
{
    Descriptor file = openEntry(name, flags);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.number(), &status) != 0)
        return Descriptor();
    const bool isRegular = S_ISREG(status.st_mode);
    // A second name could lie where others may write.
    if (isRegular && status.st_uid == ::geteuid() && (status.st_mode & others) == 0 && status.st_nlink == 1)
        return file;
    file = Descriptor();
    errno = isRegular ? EPERM : EINVAL;
    return file;
}

std::vector<QByteArray> PrivateFolder::namesEndingIn(const QByteArray &suffix) const
{
    std::vector<QByteArray> names;
    const QDir::Filters all = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::CaseSensitive;
    for (const QString &name : QDir(m_path).entryList({u'*' + QFile::decodeName(suffix)}, all, QDir::Name))
        names.push_back(QFile::encodeName(name));
    return names;
}

std::optional<QString> PrivateFolder::keep(int file, off_t offset, qint64 size, const QByteArray &path) const
{
    constexpr qsizetype longest = 200;
    const QByteArray name = path.sliced(path.lastIndexOf('/') + 1).right(longest);
    const QByteArray kept = "kept-" + randomName() + '-' + name;
    const Descriptor target = makeFile(kept);
    if (!target.isOpen())
        return std::nullopt;
    if (FileBytes::copyAll(file, offset, target.number(), 0, size) && flushFile(target.number()) && flush())
        return pathOf(kept);
    const auto keeper = keepErrno();
    static_cast<void>(removeFile(kept));
    return std::nullopt;
}

PrivateFolder::Lock PrivateFolder::tryLock(QByteArrayView name)
{
    struct flock byte = byteOf(name, F_WRLCK);
    if (!m_locks.isOpen()) {
        errno = ENOLCK;
        return Lock::Refused;
    }
    if (uninterrupted([&] { return ::fcntl(m_locks.number(), F_OFD_SETLK, &byte); }) == 0)
        return Lock::Held;
    return errno == EAGAIN || errno == EACCES ? Lock::InUse : Lock::Refused;
}

void PrivateFolder::unlock(QByteArrayView name)
{
    struct flock byte = byteOf(name, F_UNLCK);
    ::fcntl(m_locks.number(), F_OFD_SETLK, &byte);
}

} // namespace brevant
