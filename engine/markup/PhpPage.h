// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevant::markup {

/// The blocks of PHP code in a page, "<?" and "?>" included, in their order; the last one may have no end.
/// Knows the strings, comments and here documents in which "?>" is no end:
/// https://www.php.net/manual/en/language.basic-syntax.php
[[nodiscard]] std::vector<std::string_view> phpBlocks(std::string_view page);

/// A place in a text; both numbers from 1, the column in characters.
struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
};

/// A page with PHP code, as the library is to see it: it takes PHP in scripts, style sheets, drawings,
/// formulas and comments for text of theirs, and PHP takes away the line feed after "?>", which to the
/// library is a space.
class PhpPage final {
public:
    explicit PhpPage(std::string_view source);

    /// The text for the library. What it would damage is replaced by a name of its own, and line feeds after
    /// "?>" are left out.
    [[nodiscard]] const std::string &text() const { return m_text; }

    /// Where a place of the text is in the source.
    [[nodiscard]] Place inSource(const Place &place) const;

    /// The page of what the library made of it; nothing if the PHP code is not what it was.
    [[nodiscard]] std::optional<std::string> restored(const std::string &minified) const;

private:
    struct Kept {
        std::string name; ///< what stands for it in the text
        std::string part;
    };
    [[nodiscard]] std::size_t takePart(std::string_view masked, std::size_t from);

    const std::string m_source;
    std::string m_name; ///< that does not occur in the source
    std::string m_text;
    std::vector<Kept> m_kept;
    std::vector<std::pair<std::size_t, std::size_t>>
        m_origins; ///< of bytes of the text: offsets in text and source
};

} // namespace brevant::markup
