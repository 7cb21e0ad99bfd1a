// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/Tags.h"

#include <algorithm>
#include <cctype>

namespace brevant::markup {

using std::string_view;

std::size_t behind(string_view text, string_view end, std::size_t from)
{
    const std::size_t found = text.find(end, from);
    return found == npos ? text.size() : found + end.size();
}

bool isWord(char sign)
{
    return std::isalnum(static_cast<unsigned char>(sign)) != 0 || sign == '_' || (sign & 0x80) != 0;
}

bool isTag(string_view text, string_view open, string_view name)
{
    const auto isSame = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    return text.starts_with(open) && text.size() > open.size() + name.size() &&
           std::ranges::equal(text.substr(open.size(), name.size()), name, isSame) &&
           !isWord(text[open.size() + name.size()]);
}

std::size_t behindTag(string_view text, std::size_t from)
{
    for (; from < text.size() && text[from] != '>'; ++from) {
        if (text[from] == '"' || text[from] == '\'')
            from = std::min(text.find(text[from], from + 1), text.size() - 1);
    }
    return std::min(from + 1, text.size());
}

std::size_t endTag(string_view text, string_view name, std::size_t from)
{
    do
        from = text.find("</", from);
    while (from != npos && !isTag(text.substr(from), "</", name) && ++from != npos);
    return std::min(from, text.size());
}

} // namespace brevant::markup
