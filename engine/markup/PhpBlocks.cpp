// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/PhpBlocks.h"

#include "engine/markup/Tags.h"

#include <algorithm>
#include <cctype>

namespace brevant::markup {

using std::string_view;

namespace {

std::size_t behindString(string_view text, std::size_t from)
{
    const char quote = text[from];
    for (++from; from < text.size() && text[from] != quote; ++from)
        from += text[from] == '\\' ? 1 : 0;
    return std::min(from + 1, text.size());
}

std::size_t behindLineComment(string_view text, std::size_t from)
{
    return std::min({text.find('\n', from), text.find("?>", from), text.size()});
}

/// Behind a here document that begins with "<<<" at `from`; behind that if none does.
std::size_t behindHereDocument(string_view text, std::size_t from)
{
    std::size_t start = text.find_first_not_of(" \t\"'", from + 3);
    if (start == npos || !isWord(text[start]) || std::isdigit(static_cast<unsigned char>(text[start])) != 0)
        return from + 3;
    std::size_t end = start;
    while (end < text.size() && isWord(text[end]))
        ++end;
    const string_view name = text.substr(start, end - start);
    for (start = text.find('\n', end); start != npos; start = text.find('\n', start + 1)) {
        const std::size_t word = text.find_first_not_of(" \t", start + 1);
        if (word != npos && text.substr(word).starts_with(name) &&
            (word + name.size() == text.size() || !isWord(text[word + name.size()])))
            return word + name.size();
    }
    return text.size();
}

/// Behind the block of PHP code that begins at `from`.
std::size_t behindBlock(string_view text, std::size_t from)
{
    for (from += 2; from < text.size();) {
        const string_view rest = text.substr(from);
        if (rest.starts_with("?>"))
            return from + 2;
        if (rest[0] == '"' || rest[0] == '\'' || rest[0] == '`')
            from = behindString(text, from);
        else if (rest.starts_with("/*"))
            from = behind(text, "*/", from + 2);
        else if (rest.starts_with("//") || (rest[0] == '#' && !rest.starts_with("#[")))
            from = behindLineComment(text, from);
        else if (rest.starts_with("<<<"))
            from = behindHereDocument(text, from);
        else
            ++from;
    }
    return text.size();
}

} // namespace

std::vector<string_view> phpBlocks(string_view page)
{
    std::vector<string_view> blocks;
    for (std::size_t start = page.find("<?"); start != npos; start = page.find("<?", start)) {
        const std::size_t end = behindBlock(page, start);
        blocks.push_back(page.substr(start, end - start));
        start = end;
    }
    return blocks;
}

} // namespace brevant::markup
