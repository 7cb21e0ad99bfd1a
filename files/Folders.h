// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/Descriptor.h"

#include <QByteArray>
#include <QStringList>

#include <functional>
#include <optional>

#include <sys/stat.h>

/// Folders, links and names on the disk. Paths are bytes, as the system has them. Failures set errno.
namespace brevant {

/// "/w/a.css" gives "/w", "/a.css" gives "/", "a.css" gives ".".
[[nodiscard]] QByteArray folderOf(const QByteArray &path);

/// The path at the end of a chain of symbolic links; the file itself need not exist.
[[nodiscard]] QByteArray linkTarget(QByteArray path);

/// The path without links, "." and ".."; empty on failure.
[[nodiscard]] QByteArray realPath(const QByteArray &path);

/// What stat(2) tells of a path, or lstat(2) of a link at its end itself; nothing on failure.
[[nodiscard]] std::optional<struct stat> statusOf(const QByteArray &path);
[[nodiscard]] std::optional<struct stat> statusOfLink(const QByteArray &path);

/// Whether there is anything of that name, if only a link that leads nowhere.
[[nodiscard]] bool isThere(const QByteArray &path);

/// Whether a path leads to a folder, through links too.
[[nodiscard]] bool leadsToFolder(const QByteArray &path);

/// Makes a folder and its parents if they are missing, accessible to their owner alone, as the XDG Base
/// Directory Specification 0.8 demands, unless `mode` is another, to which the umask applies. False on
/// failure.
[[nodiscard]] bool makeFolders(const QByteArray &path, mode_t mode = 0700);

/// Opens the folder `below` another one; those of the way that are missing are made, as by mkdir(1), but for
/// `top` itself. No symbolic link below `top` is followed: ELOOP stands for one. Closed, with errno set, on
/// failure.
[[nodiscard]] Descriptor openFolderBelow(const QByteArray &top, const QByteArray &below);

/// Flushes the names in a folder to the disk; false on failure.
[[nodiscard]] bool flushFolder(const QByteArray &path);
[[nodiscard]] bool flushOpenFolder(int folder);

/// A name that is most likely unused.
[[nodiscard]] QByteArray randomName();

/// Calls `make` with the paths of hidden files beside `path` until it does not fail with EEXIST. Returns the
/// path made, or an empty one on failure.
[[nodiscard]] QByteArray makeBeside(const QByteArray &path,
                                    const std::function<bool(const QByteArray &)> &make);

/// Makes a file as makeBeside() does and renames it to `path`, replacing what is there. A failure leaves
/// nothing behind.
[[nodiscard]] bool makeInPlaceOf(const QByteArray &path, const std::function<bool(const QByteArray &)> &make);

/// A path to an open file that works under whatever name it has, or without one; proc(5).
[[nodiscard]] QByteArray pathOfOpen(int file);

/// Gives an open file one more name; false if that is taken, or on another failure.
[[nodiscard]] bool linkOpenFile(int file, const QByteArray &path);

/// Renames a file and replaces nothing: false, with EEXIST, if `to` is taken.
[[nodiscard]] bool renameToFree(const QByteArray &from, const QByteArray &to);

} // namespace brevant

/// Marks by which two paths are recognised as the same file, however they are spelt and through links. The
/// disk is asked each time.
namespace brevant::FileMarks {

/// The folder by device and inode, and the name in it. The file need not exist.
[[nodiscard]] QString ofPlace(const QString &path);

/// The file itself, by device and inode; nothing if it does not exist.
[[nodiscard]] std::optional<QString> ofFile(const QString &path);

[[nodiscard]] QString ofFile(quint64 device, quint64 inode);

/// All marks of a path: its place, the place at the end of its links, and the file. Two paths lead to the
/// same file if they share one of them.
[[nodiscard]] QStringList all(const QString &path);

/// The marks of many paths at one moment. For several in a row that are in one folder, the disk is asked only
/// once which folder that is.
class Reader final {
public:
    [[nodiscard]] QString ofPlace(const QString &path);
    [[nodiscard]] QStringList all(const QString &path);

private:
    QString m_folder;
    QString m_folderMark;
};

/// Whether two paths are equal, or lead to one file that exists.
[[nodiscard]] bool areOfSameFile(const QString &a, const QString &b);

} // namespace brevant::FileMarks
