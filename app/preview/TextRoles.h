// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace brevant {

enum class TextRole;

/// What the styles of the editor's lexers stand for.
[[nodiscard]] TextRole cssRole(int style);
[[nodiscard]] TextRole javaScriptRole(int style);
[[nodiscard]] TextRole htmlRole(int style); ///< PHP and JavaScript within it included

} // namespace brevant
