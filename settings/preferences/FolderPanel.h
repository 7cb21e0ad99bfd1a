// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace brevant {

/// Asks the user for a folder in a modal panel over `window`, beginning in `startFolder` if it exists.
/// The absolute path of the folder, or nothing if the user did not confirm.
[[nodiscard]] std::optional<QString> runFolderPanel(QWidget *window, const QString &startFolder);

} // namespace brevant
