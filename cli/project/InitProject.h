// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

/// A new project file.
struct NewProject {
    QString text;  ///< what to say of it
    QString error; ///< why it cannot be written, in words; empty if it has been
};

/// Writes a project file into a folder, for what is there. It replaces nothing.
[[nodiscard]] NewProject initProject(const QString &folder);

} // namespace brevant
