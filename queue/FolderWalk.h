// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "files/PathString.h"

#include <QString>

#include <functional>

namespace brevant {

/// Calls `visit` with the path, relative to `top`, of every entry below it: folders before their contents,
/// hidden entries too, unsorted. Symbolic links to folders are visited and not followed. If `top` is not a
/// folder, nothing is visited. Entries that vanish are passed over. `unreadable` is called with the path and
/// the error (errno) of each folder that cannot be read; the path of `top` itself is empty.
///
/// `decode` turns names, which need not be valid UTF-8, into text; `top` may hold RawBytes.
///
/// Neither the depth nor the length of a path is limited: the walk holds a bounded number of open folders and
/// never hands a whole path to the system.
void walkFolder(const QString &top, const std::function<void(const QString &relativePath)> &visit,
                const std::function<void(const QString &relativePath, int error)> &unreadable = {},
                QString (*decode)(const QByteArray &name) = PathString::decoded);

} // namespace brevant
