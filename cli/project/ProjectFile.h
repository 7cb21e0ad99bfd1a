// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// Finding `brevant.json` and reading it. It may be part of what somebody else has made, so that the wrong
/// ones are refused: those of other users, those that others may write to, links, and what is no file.
namespace brevant::ProjectFile {

inline constexpr QStringView name = u"brevant.json";

/// The path of the project file of a folder, which is absolute and without links: the next one from there
/// upwards, up to the home folder or a repository's top, and never beyond the file system or in a folder
/// above that all users can write to. Empty if there is none. Nothing is said of what it is.
[[nodiscard]] QString find(const QString &folder);

struct Content {
    QByteArray bytes;
    QString error; ///< why it is not used, in words with its path; empty if it is
};

[[nodiscard]] Content read(const QString &path);

} // namespace brevant::ProjectFile
