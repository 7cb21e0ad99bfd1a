// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <functional>

/// Names in folders. Paths are bytes, as the system has them; each function that can fail sets errno.
namespace brevant {

/// "/w/a.css" gives "/w", "/a.css" gives "/", "a.css" gives ".".
[[nodiscard]] QByteArray folderOf(const QByteArray &path);

/// The path at the end of a chain of symbolic links; the file itself need not exist.
[[nodiscard]] QByteArray linkTarget(QByteArray path);

/// Makes a folder, with those above it, where it is missing: for their owner alone, as the XDG Base Directory
/// Specification 0.8 has it. False on failure.
[[nodiscard]] bool makeFolders(const QByteArray &path);

/// Waits until the names in the folder are on the disk; false on failure.
[[nodiscard]] bool flushFolder(const QByteArray &path);
[[nodiscard]] bool flushOpenFolder(int folder);

/// A name that nothing is likely to have.
[[nodiscard]] QByteArray randomName();

/// Calls `make` with paths of hidden files in the folder of `path` until one is free, which is when it does
/// not fail with EEXIST. The path made; empty, with errno set, on failure.
[[nodiscard]] QByteArray makeBeside(const QByteArray &path,
                                    const std::function<bool(const QByteArray &)> &make);

/// The same, and gives what was made the name `path`, whatever has that. False, with nothing left, on
/// failure.
[[nodiscard]] bool makeInPlaceOf(const QByteArray &path, const std::function<bool(const QByteArray &)> &make);

/// The path of an open file that has other names, or none left; proc(5).
[[nodiscard]] QByteArray pathOfOpen(int file);

/// Gives an open file that name too, which nothing may have; false, with errno set, on failure.
[[nodiscard]] bool linkOpenFile(int file, const QByteArray &path);

/// Renames a file to a name that nothing has; false, with EEXIST, where something has it.
[[nodiscard]] bool renameToFree(const QByteArray &from, const QByteArray &to);

} // namespace brevant
