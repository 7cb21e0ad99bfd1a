// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// What files are told apart by, as the disk has it when it is asked: other spellings of a path and links do
/// not matter.
namespace brevant::FileMarks {

/// The folder that there is and the name in it, whether there is such a file or not.
[[nodiscard]] QString ofPlace(const QString &path);

/// The file itself, which may have other names; nothing if there is none.
[[nodiscard]] std::optional<QString> ofFile(const QString &path);

[[nodiscard]] QString ofFile(quint64 device, quint64 inode);

/// Both, as far as they are there, and the place at the end of links: paths lead to the same file if they
/// have one of these in common.
[[nodiscard]] QStringList all(const QString &path);

} // namespace brevant::FileMarks
