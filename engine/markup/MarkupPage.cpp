// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/MarkupPage.h"

#include "engine/markup/PhpBlocks.h"
#include "engine/markup/Tags.h"

#include <algorithm>
#include <cctype>

namespace brevant::markup {

using std::string_view;

/// An element that the library damages, and what it does not damage in its place: a name between two texts.
struct Guard {
    enum Extent {
        WithCode,        ///< all of it, if it has PHP code
        Always,          ///< all of it
        ContentWithCode, ///< without its tags, which the library needs, if it has PHP code
    };
    string_view element;
    string_view before;
    string_view after;
    Extent extent;
    bool isForDrawings = false;
};

namespace {

char lower(char sign)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(sign)));
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

constexpr Guard guards[] = {
    {"svg", "<img alt=\"", "\">", Guard::WithCode}, // which has spaces around it as they have
    {"math", "<img alt=\"", "\">", Guard::WithCode},
    {"xmp", "<img alt=\"", "\">", Guard::Always},
    {"listing", "<img alt=\"", "\">", Guard::Always},
    {"text", "<use id=\"", "\"/>", Guard::Always, true},
    {"script", "<use id=\"", "\"/>", Guard::Always, true},
    {"script", "\"", "\"", Guard::ContentWithCode},
    {"style", "", "{a:b}", Guard::ContentWithCode},
};
constexpr Guard commentGuard = {"", "<!--#", "-->", Guard::WithCode}; // a comment that the library keeps

constexpr string_view spaces = " \t\r\n\f";

/// Whether the library would join "& :is(b)", or make "rotate: 0deg" a number.
bool isDamagedStyle(string_view style)
{
    for (std::size_t i = style.find_first_of("&e"); i != npos; i = style.find_first_of("&e", i + 1)) {
        const std::size_t next = style.find_first_not_of(spaces, i + 1);
        const bool isColon = next != npos && style[next] == ':';
        if (isColon && (style[i] == '&' ? next > i + 1 : style.substr(0, i + 1).ends_with("rotate")))
            return true;
    }
    return false;
}

/// Whether browsers lay a page of that document type out as one of today's:
/// https://html.spec.whatwg.org/multipage/parsing.html#the-initial-insertion-mode
bool isStandard(string_view doctype)
{
    constexpr string_view strict[] = {"HTML 4.01//", "XHTML 1.0 Strict//", "XHTML 1.1//"};
    constexpr string_view word = "public";
    const auto isSame = [](char a, char b) { return lower(a) == b; };
    const bool isPublic =
        std::search(doctype.begin(), doctype.end(), word.begin(), word.end(), isSame) != doctype.end();
    return !isPublic ||
           std::ranges::any_of(strict, [doctype](string_view name) { return doctype.find(name) != npos; });
}

/// Behind "?>" and the line end that PHP takes away.
std::size_t behindLineEnd(string_view page, std::size_t from)
{
    if (page.substr(from).starts_with("\r\n"))
        return from + 2;
    return from + (page.substr(from).starts_with("\n") ? 1 : 0);
}

/// What the library made of a page, with the line ends behind code that PHP takes away.
std::string withLineEnds(const std::string &minified)
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
    return page;
}

} // namespace

MarkupPage::MarkupPage(string_view source, Language language)
    : m_source(source), m_language(language), m_kept(source)
{
    const std::string masked = language == Language::Php ? withoutCode(m_source) : m_source;
    for (std::size_t i = 0; i < m_source.size();) {
        if (m_origins.empty() || i - m_text.size() != m_origins.back().second - m_origins.back().first)
            m_origins.emplace_back(m_text.size(), i);
        i = takePart(masked, i);
    }
}

Place MarkupPage::inSource(const Place &place) const
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
std::size_t MarkupPage::takePart(string_view masked, std::size_t from)
{
    const string_view rest = masked.substr(from);
    if (rest[0] == '\1') {
        const std::size_t end = std::min(masked.find_first_not_of('\1', from), masked.size());
        take(from, end);
        return m_text.ends_with("?>") ? behindLineEnd(m_source, end) : end;
    }
    if (rest[0] != '<') {
        const std::size_t end = std::min(masked.find_first_of("<\1", from), masked.size());
        take(from, end);
        return end;
    }
    if (rest.starts_with("<!--"))
        return takeElement(masked, from, from, behind(masked, "-->", from), commentGuard);
    if (rest.size() > 1 && (isWord(rest[1]) || rest[1] == '/' || rest[1] == '!'))
        watchTag(masked, from);
    for (const Guard &guard : guards) {
        if (!isTag(rest, "<", guard.element) || (guard.isForDrawings && !m_isInDrawing))
            continue;
        if (guard.extent == Guard::WithCode && m_language != Language::Php)
            break; // there may be texts in it
        const bool isContent = guard.extent == Guard::ContentWithCode;
        const std::size_t start = isContent ? behindTag(masked, from) : from;
        const std::size_t end = endTag(masked, guard.element, start);
        return takeElement(masked, from, start, isContent ? end : behindTag(masked, end), guard);
    }
    return takeTag(masked, from);
}

/// Takes the source over into the text as it is.
void MarkupPage::take(std::size_t from, std::size_t end)
{
    m_text.append(m_source, from, end - from);
}

std::size_t MarkupPage::takeTag(string_view masked, std::size_t from)
{
    const bool isTag = from + 1 < masked.size() && (isWord(masked[from + 1]) || masked[from + 1] == '/');
    std::size_t end = isTag ? behindTag(masked, from) : from + 1;
    if (masked.substr(from, end - from).find('\1') != npos)
        end = from + 1;
    take(from, end);
    return end;
}

/// The element that begins at `from`, of which the part from `start` to `end` may be kept from the library.
std::size_t MarkupPage::takeElement(string_view masked, std::size_t from, std::size_t start, std::size_t end,
                                    const Guard &guard)
{
    const string_view part = masked.substr(start, end - start);
    const bool isDamaged = guard.extent == Guard::Always || part.find('\1') != npos ||
                           (guard.element == "style" && isDamagedStyle(part));
    if (!isDamaged && guard.extent == Guard::WithCode && &guard != &commentGuard)
        return takeTag(masked, from);
    if (!isDamaged) {
        take(from, end);
        return end;
    }
    take(from, start);
    m_text += m_kept.keep(m_source.substr(start, end - start), guard.before, guard.after);
    return end;
}

/// The library drops spaces that show beside style sheets within text, and behind empty elements whose
/// content comes from elsewhere.
void MarkupPage::watchTag(string_view masked, std::size_t from)
{
    const string_view rest = masked.substr(from);
    const std::size_t end = behindTag(masked, from);
    // A drawing within a drawing ends both to the library.
    if (isTag(rest, "<", "svg") || isTag(rest, "</", "svg"))
        m_isInDrawing = rest[1] != '/';
    if (isTag(rest, "<!", "doctype"))
        m_doctypes.push_back(m_source.substr(from, behindTag(rest, 0)));
    const auto isUnseen = [rest](string_view open) {
        return isTag(rest, open, "style") || isTag(rest, open, "noscript");
    };
    if (isUnseen("<")) {
        const std::size_t text = from == 0 ? npos : masked.find_last_not_of(spaces, from - 1);
        m_keepsSpaces |= text != npos && text + 1 < from && masked[text] != '>';
    }
    const std::size_t next = masked.find_first_not_of(spaces, end);
    if (!rest.starts_with("</") || next == npos || next == end || masked.substr(next).starts_with("</"))
        return;
    const bool isEmpty = from > 0 && masked[from - 1] == '>';
    const bool isCustomElement = masked.substr(from, end - from).find('-') != npos;
    if (isUnseen("</"))
        m_keepsSpaces |= masked[next] != '<';
    else if (isTag(rest, "</", "audio") || (isCustomElement && isEmpty))
        m_keepsSpaces = true;
}

std::optional<std::string> MarkupPage::restored(const std::string &minified) const
{
    const bool isPhp = m_language == Language::Php;
    std::optional<std::string> page = m_kept.restored(isPhp ? withLineEnds(minified) : minified);
    if (!page || (isPhp && !std::ranges::equal(phpBlocks(*page), phpBlocks(m_source))))
        return std::nullopt;
    // The library turns each document type into that of today.
    constexpr string_view today = "<!doctype html>";
    std::size_t from = 0;
    for (const std::string &doctype : m_doctypes) {
        from = page->find(today, from);
        if (from == npos)
            break;
        const string_view kept = isStandard(doctype) ? today : string_view(doctype);
        page->replace(from, today.size(), kept);
        from += kept.size();
    }
    return page;
}

} // namespace brevant::markup
