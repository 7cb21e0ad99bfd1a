// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

namespace brevant::markup {

inline constexpr auto npos = std::string_view::npos;

// All look at a text from the offset `from`, and answer with an offset: its end where they find nothing.

/// Behind the next `end`.
[[nodiscard]] std::size_t behind(std::string_view text, std::string_view end, std::size_t from);

/// Behind the ">" of the tag at `from`.
[[nodiscard]] std::size_t behindTag(std::string_view text, std::size_t from);

/// Where the end tag of an element begins.
[[nodiscard]] std::size_t endTag(std::string_view text, std::string_view name, std::size_t from);

/// Whether a tag begins here: `open` is "<" or "</". The case of A to Z is ignored.
[[nodiscard]] bool isTag(std::string_view text, std::string_view open, std::string_view name);

/// Whether a sign can be within a word.
[[nodiscard]] bool isWord(char sign);

} // namespace brevant::markup
