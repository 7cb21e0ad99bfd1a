// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string_view>
#include <vector>

namespace brevant::markup {

/// The blocks of PHP code in a page, "<?" and "?>" included, in their order; the last one may have no end.
/// Knows the strings, comments and here documents in which "?>" is no end:
/// https://www.php.net/manual/en/language.basic-syntax.php
[[nodiscard]] std::vector<std::string_view> phpBlocks(std::string_view page);

} // namespace brevant::markup
