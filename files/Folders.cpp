// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/Folders.h"

#include "files/PathString.h"
#include "files/RawBytes.h"

#include <QDir>
#include <QRandomGenerator>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevant {

QByteArray folderOf(const QByteArray &path)
{
    const qsizetype slash = path.lastIndexOf('/');
    if (slash < 0)
        return QByteArrayLiteral(".");
    return slash == 0 ? QByteArrayLiteral("/") : path.first(slash);
}

QByteArray linkTarget(QByteArray path)
{
    constexpr int maximumLinks = 40; // as many as Linux follows, path_resolution(7)
    QByteArray buffer(PATH_MAX, Qt::Uninitialized);
    for (int step = 0; step < maximumLinks; ++step) {
        const ssize_t length =
            ::readlink(path.constData(), buffer.data(), static_cast<std::size_t>(buffer.size()));
        if (length < 0)
            break;
        const QByteArray next = buffer.left(length);
        path = next.startsWith('/') ? next : folderOf(path) + '/' + next;
    }
    return path;
}

QByteArray realPath(const QByteArray &path)
{
    const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.constData(), nullptr), &std::free);
    return real ? QByteArray(real.get()) : QByteArray();
}

std::optional<struct stat> statusOf(const QByteArray &path)
{
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 ? std::optional(status) : std::nullopt;
}

std::optional<struct stat> statusOfLink(const QByteArray &path)
{
    struct stat status {};
    return ::lstat(path.constData(), &status) == 0 ? std::optional(status) : std::nullopt;
}

bool isThere(const QByteArray &path)
{
    return statusOfLink(path).has_value();
}

bool leadsToFolder(const QByteArray &path)
{
    const auto status = statusOf(path);
    return status && S_ISDIR(status->st_mode);
}

bool makeFolders(const QByteArray &path, mode_t mode)
{
    const auto make = [&] { return ::mkdir(path.constData(), mode) == 0; };
    if (make())
        return flushFolder(folderOf(path));
    if (errno == EEXIST)
        return true;
    const QByteArray above = folderOf(path);
    if (errno != ENOENT || above == path || !makeFolders(above, mode))
        return false;
    return (make() || errno == EEXIST) && flushFolder(above);
}

Descriptor openFolderBelow(const QByteArray &top, const QByteArray &below)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY;
    Descriptor folder = openFile(top, flags);
    for (const QByteArray &name : below.split('/')) {
        if (!folder.isOpen() || name.isEmpty())
            continue;
        if (::mkdirat(folder.number(), name.constData(), 0777) == 0)
            static_cast<void>(flushOpenFolder(folder.number()));
        else if (errno != EEXIST)
            return Descriptor();
        Descriptor next = openFile(name, flags | O_NOFOLLOW, 0, folder.number());
        struct stat status {};
        if (!next.isOpen() && errno == ENOTDIR &&
            ::fstatat(folder.number(), name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0)
            errno = S_ISLNK(status.st_mode) ? ELOOP : ENOTDIR;
        folder = std::move(next);
    }
    return folder;
}

bool flushFolder(const QByteArray &path)
{
    const Descriptor folder = openFile(path, O_RDONLY | O_DIRECTORY);
    return folder.isOpen() && flushOpenFolder(folder.number());
}

bool flushOpenFolder(int folder)
{
    // Some network file systems cannot flush a folder, and need not.
    return flushFile(folder) || errno == EINVAL;
}

QByteArray randomName()
{
    return QByteArray::number(QRandomGenerator::global()->generate64(), 36);
}

QByteArray makeBeside(const QByteArray &path, const std::function<bool(const QByteArray &)> &make)
{
    for (;;) {
        QByteArray name = folderOf(path) + "/.brevant-" + randomName() + ".tmp";
        if (make(name))
            return name;
        if (errno != EEXIST)
            return {};
    }
}

bool makeInPlaceOf(const QByteArray &path, const std::function<bool(const QByteArray &)> &make)
{
    const QByteArray made = makeBeside(path, make);
    if (made.isEmpty() || ::rename(made.constData(), path.constData()) == 0)
        return !made.isEmpty();
    const auto keeper = keepErrno();
    ::unlink(made.constData());
    return false;
}

QByteArray pathOfOpen(int file)
{
    return "/proc/self/fd/" + QByteArray::number(file);
}

bool linkOpenFile(int file, const QByteArray &path)
{
    return ::linkat(AT_FDCWD, pathOfOpen(file).constData(), AT_FDCWD, path.constData(), AT_SYMLINK_FOLLOW) ==
           0;
}

bool renameToFree(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno == EEXIST)
        return false;
    // Network file systems refuse that, and some know no hard links either.
    if (::link(from.constData(), to.constData()) == 0) {
        ::unlink(from.constData());
        return true;
    }
    return errno != EEXIST && !isThere(to) && errno == ENOENT &&
           ::rename(from.constData(), to.constData()) == 0;
}

} // namespace brevant

namespace brevant::FileMarks {

QString ofPlace(const QString &path)
{
    return Reader().ofPlace(path);
}

std::optional<QString> ofFile(const QString &path)
{
    const auto status = statusOf(RawBytes::encoded(path));
    return status ? std::optional(ofFile(status->st_dev, status->st_ino)) : std::nullopt;
}

QString ofFile(quint64 device, quint64 inode)
{
    return QString::number(device) + u' ' + QString::number(inode);
}

QStringList all(const QString &path)
{
    return Reader().all(path);
}

QString Reader::ofPlace(const QString &path)
{
    if (const QStringView folder = PathString::folder(path); m_folderMark.isEmpty() || folder != m_folder) {
        m_folder = folder.toString();
        m_folderMark = ofFile(m_folder).value_or(QDir::cleanPath(m_folder));
    }
    return PathString::join(m_folderMark, PathString::lastComponent(path));
}

QStringList Reader::all(const QString &path)
{
    QStringList marks{ofPlace(path)};
    const QByteArray bytes = RawBytes::encoded(path);
    const auto status = statusOfLink(bytes);
    if (!status)
        return marks;
    if (!S_ISLNK(status->st_mode))
        return marks << ofFile(status->st_dev, status->st_ino);
    if (const QString end = FileMarks::ofPlace(RawBytes::decoded(linkTarget(bytes))); end != marks.first())
        marks.append(end);
    if (const std::optional<QString> file = ofFile(path))
        marks.append(*file);
    return marks;
}

bool areOfSameFile(const QString &a, const QString &b)
{
    if (a == b)
        return true;
    const std::optional<QString> file = ofFile(a);
    return file && file == ofFile(b);
}

} // namespace brevant::FileMarks
