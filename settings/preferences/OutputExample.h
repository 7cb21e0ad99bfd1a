// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace brevant {

/// What becomes of a source, in one line: "app.js → ~/dist/app.min.js", "app.js → app.js, replaces the
/// source". Right to left the arrow points to the left; the paths themselves always run from left to right.
[[nodiscard]] QString exampleText(const QString &source, const std::optional<QString> &output,
                                  Qt::LayoutDirection direction);

} // namespace brevant
