// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/PathString.h"

#include <QString>

#include <functional>

namespace brevant {

/// What a folder says of one of its entries.
enum class EntryType {
    File,
    Folder,
    Unknown, ///< a symbolic link, a pipe or the like, or the file system does not say
};

/// What is to be told of a walk, and where it goes. All but `visit` may be left out.
struct FolderWalk {
    /// Called with the path, relative to the top, of every entry.
    std::function<void(const QString &relativePath, EntryType type)> visit;

    /// Called with the path and the error (errno) of each folder that cannot be read; the path of the top
    /// itself is empty.
    std::function<void(const QString &relativePath, int error)> unreadable = {};

    /// Asked for each folder after its visit: whether to walk what is in it.
    std::function<bool(const QString &relativePath)> isEntered = {};

    /// Turns names, which need not be valid UTF-8, into text.
    QString (*decode)(const QByteArray &name) = PathString::decoded;
};

/// Visits every entry below `top`, which may hold RawBytes: folders before their contents, hidden entries
/// too, unsorted. Symbolic links to folders are visited and not followed. If `top` is not a folder, nothing
/// is visited. Entries that vanish are passed over.
///
/// Neither the depth nor the length of a path is limited: the walk holds a bounded number of open folders and
/// never hands a whole path to the system.
void walkFolder(const QString &top, const FolderWalk &walk);

/// The same, for those that only want the paths.
void walkFolder(const QString &top, const std::function<void(const QString &relativePath)> &visit,
                const std::function<void(const QString &relativePath, int error)> &unreadable = {},
                QString (*decode)(const QByteArray &name) = PathString::decoded);

} // namespace brevant
