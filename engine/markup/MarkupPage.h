// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/markup/KeptParts.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevant::markup {

/// A place in a text; both numbers from 1, the column in characters.
struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
};

struct Guard;

/// A page as the library is to see it, without what the library would damage:
/// - PHP code in scripts, style sheets, drawings, formulas and comments, which it takes for text of theirs,
/// and
///   the line feed after "?>", which PHP takes away and the library takes for a space;
/// - the texts of drawings and old elements for code, which lose spaces;
/// - new style sheets.
class MarkupPage final {
public:
    enum class Language { Html, Php };

    MarkupPage(std::string_view source, Language language);

    /// The text for the library. What it would damage is replaced by a name of its own, and line feeds after
    /// "?>" are left out.
    [[nodiscard]] const std::string &text() const { return m_text; }

    /// Whether the library would drop spaces that show if it were not told to keep all.
    [[nodiscard]] bool keepsSpaces() const { return m_keepsSpaces; }

    /// Where a place of the text is in the source.
    [[nodiscard]] Place inSource(const Place &place) const;

    /// The page of what the library made of it; nothing if something of it got lost, or if the PHP code is
    /// not what it was.
    [[nodiscard]] std::optional<std::string> restored(const std::string &minified) const;

private:
    [[nodiscard]] std::size_t takePart(std::string_view masked, std::size_t from);
    [[nodiscard]] std::size_t takeTag(std::string_view masked, std::size_t from);
    [[nodiscard]] std::size_t takeElement(std::string_view masked, std::size_t from, std::size_t start,
                                          std::size_t end, const Guard &guard);
    void take(std::size_t from, std::size_t end);
    void watchTag(std::string_view masked, std::size_t from);

    const std::string m_source;
    const Language m_language;
    std::string m_text;
    std::vector<std::string> m_doctypes; ///< of the source
    bool m_isInDrawing = false;
    bool m_keepsSpaces = false;
    KeptParts m_kept;
    std::vector<std::pair<std::size_t, std::size_t>>
        m_origins; ///< of parts of the text: offsets in text and source
};

} // namespace brevant::markup
