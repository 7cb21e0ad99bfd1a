// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// A path in the folder of a project.
struct PlaceInProject {
    QString path;  ///< absolute
    QString error; ///< why it is none, in words that can follow it: it leads out, by its text or by links
};

[[nodiscard]] PlaceInProject placeInProject(const QString &folder, const QString &text);

/// Why a source in the folder of a project is not taken, in words: it is a link that leads out, to what is
/// not for those to see who get its output. Empty if it may be. One elsewhere is nothing that the project has
/// named.
[[nodiscard]] QString sourceErrorInProject(const QString &folder, const QString &source);

/// Why an output in the folder of a project must not be written, in words: there, or in the place of a copy
/// of it, is a link that leads out. Empty if it may be. One elsewhere is nothing that the project has named.
[[nodiscard]] QString outputErrorInProject(const QString &folder, const QString &output);

} // namespace brevant
