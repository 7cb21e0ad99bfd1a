// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <vector>

namespace brevant {

/// The lines of a text.
class TextLines final {
public:
    /// `first`: the number of its first line.
    explicit TextLines(QStringView text, int first = 1);

    /// The number of the line on which a part of the text begins.
    [[nodiscard]] int of(QStringView part) const;

private:
    std::vector<const QChar *> m_starts; ///< of all lines but the first
    int m_first;
};

/// Characters of a part of a text that readers are shown.
inline constexpr qsizetype mostShownOfPart = 400;

/// A part of a text for readers: on one line, and not too long.
[[nodiscard]] QString shownPart(QStringView text);

} // namespace brevant
