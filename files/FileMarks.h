// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

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

} // namespace brevant::FileMarks
