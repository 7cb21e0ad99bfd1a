// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <vector>

namespace brevant {

/// A piece of a style sheet, by the rules of CSS Syntax Level 3. Comments and white space are none.
struct StyleToken {
    enum class Kind {
        Name,     ///< an identifier
        At,       ///< an at-keyword, with its "@"
        Hash,     ///< with its "#"
        Function, ///< a name right before "(", which belongs to it
        Number,   ///< with its unit or "%"
        String,   ///< with its quotes; the second one is missing where the line ends first
        Url,      ///< url(…) without quotes, as a whole
        Sign,     ///< any other character
    };

    Kind kind;
    bool isSpaceBefore; ///< white space; a comment alone is none
    QStringView text;   ///< part of the text that was cut up

    [[nodiscard]] bool isSign(QChar sign) const { return kind == Kind::Sign && text.front() == sign; }
};

/// Cuts a style sheet up, whatever it holds.
[[nodiscard]] std::vector<StyleToken> styleTokens(QStringView text);

/// Whether a character may stand in a name.
[[nodiscard]] bool isStyleNameCharacter(QChar character);

/// Whether the character is white space to CSS and HTML; there is more of it in Unicode.
[[nodiscard]] bool isWebSpace(QChar character);

} // namespace brevant
