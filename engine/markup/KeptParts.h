// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevant::markup {

/// Parts of a text that the library must not see, each with something of its own in its place.
class KeptParts final {
public:
    explicit KeptParts(std::string_view source);

    /// What is to stand for that part: a name that is nowhere in the source, between two texts that make it
    /// something which the library keeps.
    [[nodiscard]] std::string keep(std::string_view part, std::string_view before, std::string_view after);

    /// What the library made of the text, with the parts in their places; nothing if one is lost.
    [[nodiscard]] std::optional<std::string> restored(std::string_view minified) const;

private:
    struct Kept {
        std::string name; ///< what stands for it, without the end of a tag
        std::string part;
    };
    std::string m_name = "brevantkeeps";
    std::vector<Kept> m_kept; ///< in their order
};

} // namespace brevant::markup
