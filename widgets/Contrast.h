// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QColor;
class QPalette;

namespace brevant {

/// The least contrast of text, and where the user asks for high contrast (levels AA and AAA of
/// https://www.w3.org/TR/WCAG21/, success criteria 1.4.3 and 1.4.6).
constexpr double readableContrast = 4.5;
constexpr double highContrast = 7;

/// The least contrast of the outline of a control (success criterion 1.4.11).
constexpr double visibleContrast = 3;

/// How many times lighter one colour is than the other, 1 to 21, both opaque
/// (https://www.w3.org/TR/WCAG21/#dfn-contrast-ratio).
[[nodiscard]] double contrast(const QColor &one, const QColor &other);

/// `part` of the way from one colour to the other.
[[nodiscard]] QColor mixed(const QColor &from, const QColor &to, double part);

/// `colour`, as far on the way to `text` as it must be to have `ratio` on `ground`; `text` itself at the
/// worst.
[[nodiscard]] QColor readableOn(const QColor &ground, const QColor &text, const QColor &colour, double ratio);

/// Whether the palette is one of high contrast: all but black on all but white, or the other way round, in
/// windows as in lists. Qt does not tell otherwise before 6.10.
[[nodiscard]] bool isHighContrast(const QPalette &palette);

} // namespace brevant
