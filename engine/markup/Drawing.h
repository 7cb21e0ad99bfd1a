// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/markup/KeptParts.h"

#include <optional>
#include <string>
#include <string_view>

namespace brevant::markup {

/// An SVG drawing, as the library is to see it: it takes all spaces in texts and scripts for layout, and
/// leaves out style sheets of the document (`<?xml-stylesheet …?>`) and attributes such as xml:space.
class Drawing final {
public:
    explicit Drawing(std::string_view source);

    /// Why the library must not have it; empty if it may.
    [[nodiscard]] std::string_view refusal() const;

    /// The text for the library, with a name of its own for each part that it would damage.
    [[nodiscard]] const std::string &text() const { return m_text; }

    /// The drawing of what the library made of it; nothing if a part is not where it was.
    [[nodiscard]] std::optional<std::string> restored(const std::string &minified) const
    {
        return m_kept.restored(minified);
    }

private:
    std::size_t take(std::size_t from, std::size_t end);
    std::size_t takeTag(std::size_t from, std::size_t end);
    std::size_t keep(std::size_t from, std::size_t end, std::string_view before, std::string_view after);
    std::size_t takePart(std::size_t from);

    const std::string m_source;
    const bool m_hasText; ///< or scripts, perhaps
    std::string m_text;
    KeptParts m_kept;
};

} // namespace brevant::markup
