// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/PhpPage.h"

#include "engine/markup/Tags.h"

#include <algorithm>
#include <cctype>

namespace brevant::markup {

namespace {

using std::string_view;
constexpr auto npos = string_view::npos;

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

/// The page with all code as \1.
std::string withoutCode(string_view page)
{
    std::string masked(page);
    for (const string_view block : phpBlocks(page))
        std::fill_n(masked.begin() + (block.data() - page.data()), block.size(), '\1');
    return masked;
}

bool beginsCharacter(char byte)
{
    return (byte & 0xC0) != 0x80; // in UTF-8
}

std::size_t offsetOf(string_view text, const Place &place)
{
    std::size_t at = 0;
    for (std::size_t line = 1; line < place.line && at < text.size(); ++line)
        at = behind(text, "\n", at);
    for (std::size_t column = 1; column < place.column && at < text.size(); ++column) {
        do
            ++at;
        while (at < text.size() && !beginsCharacter(text[at]));
    }
    return at;
}

Place placeOf(string_view text, std::size_t at)
{
    const string_view before = text.substr(0, at);
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 if there is none
    return {static_cast<std::size_t>(std::ranges::count(before, '\n')) + 1,
            static_cast<std::size_t>(std::ranges::count_if(before.substr(lineStart), beginsCharacter)) + 1};
}

/// Behind "?>" and the line end that PHP takes away.
std::size_t behindLineEnd(string_view page, std::size_t from)
{
    if (page.substr(from).starts_with("\r\n"))
        return from + 2;
    return from + (page.substr(from).starts_with("\n") ? 1 : 0);
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

PhpPage::PhpPage(string_view source) : m_source(source), m_name("brevantkeeps")
{
    while (m_source.find(m_name) != npos)
        m_name += 's';
    const std::string masked = withoutCode(m_source);
    for (std::size_t i = 0; i < m_source.size();) {
        m_origins.emplace_back(m_text.size(), i);
        i = takePart(masked, i);
    }
}

Place PhpPage::inSource(const Place &place) const
{
    const std::size_t at = offsetOf(m_text, place);
    const auto next =
        std::ranges::upper_bound(m_origins, at, {}, &std::pair<std::size_t, std::size_t>::first);
    if (next == m_origins.begin())
        return place;
    const auto &[text, source] = *std::prev(next);
    return placeOf(m_source, std::min(source + (at - text), m_source.size()));
}

/// Takes the part that begins there over into the text; returns where the next one begins. `masked` is the
/// source with all code as \1.
std::size_t PhpPage::takePart(string_view masked, std::size_t from)
{
    const string_view source = m_source;
    const string_view rest = masked.substr(from);
    if (rest[0] == '\1') {
        const std::size_t end = std::min(masked.find_first_not_of('\1', from), masked.size());
        m_text += source.substr(from, end - from);
        return m_text.ends_with("?>") ? behindLineEnd(source, end) : end;
    }
    // Of its content only, as the library needs the tags of scripts and style sheets.
    std::size_t start = from;
    std::size_t end = from;
    string_view before;
    string_view after;
    if (rest.starts_with("<!--")) {
        end = behind(masked, "-->", from);
        before = "<!--#"; // of a comment that the library keeps
        after = "-->";
    }
    for (const string_view name : {"svg", "math"}) {
        if (isTag(rest, "<", name)) {
            end = behindTag(masked, endTag(masked, name, from));
            before = "<img alt=\""; // which has spaces around it as they have
            after = "\">";
        }
    }
    for (const string_view name : {"script", "style"}) {
        if (isTag(rest, "<", name)) {
            start = behindTag(masked, from);
            end = endTag(masked, name, start);
            before = name == "script" ? "\"" : "";
            after = name == "script" ? "\"" : "{a:b}";
        }
    }
    if (masked.substr(start, end - start).find('\1') == npos) {
        m_text += source[from];
        return from + 1;
    }
    m_text += source.substr(from, start - from);
    const std::string name =
        std::string(before) + m_name + std::to_string(m_kept.size()) + '_' + std::string(after);
    m_text += name;
    m_kept.push_back({name, std::string(source.substr(start, end - start))});
    return end;
}

std::optional<std::string> PhpPage::restored(const std::string &minified) const
{
    std::string page;
    const std::string masked = withoutCode(minified);
    for (std::size_t i = 0; i < minified.size(); ++i) {
        page += minified[i];
        const bool isBehindCode =
            masked[i] == '\1' && page.ends_with("?>") && masked.substr(i + 1, 1) != "\1";
        if (isBehindCode && behindLineEnd(minified, i + 1) > i + 1)
            page += '\n';
    }
    for (const auto &[name, part] : m_kept) {
        const std::size_t found = page.find(name);
        if (found == npos)
            return std::nullopt;
        page.replace(found, name.size(), part);
    }
    if (!std::ranges::equal(phpBlocks(page), phpBlocks(m_source)))
        return std::nullopt;
    return page;
}

} // namespace brevant::markup
