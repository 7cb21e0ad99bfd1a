// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>

namespace brevant {

/// `frame`, no larger than `area` and within it.
[[nodiscard]] QRect keptWithin(QRect frame, const QRect &area);

/// Where on the screen the preview opens for the first time.
///
/// Beside, below or above `window`, smaller than `size` if need be, so that the list stays in sight; if there
/// is no room for that, over the window but clear of `row`, the row it is about (empty if none is in sight);
/// in the middle of `area`, the usable part of the screen, if there is no room for that either. All
/// with the frames of the window manager.
[[nodiscard]] QRect previewPlace(const QRect &window, const QRect &row, const QSize &size, const QRect &area);

} // namespace brevant
