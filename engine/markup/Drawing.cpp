// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/Drawing.h"

#include "engine/markup/Tags.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <span>
#include <utility>

namespace brevant::markup {

namespace {

using std::string_view;

constexpr std::array<string_view, 1> leftOut{"metadata"}; // by the library
constexpr std::array<string_view, 2> keptElements{"text", "script"};

std::string inLowerCase(string_view text)
{
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](unsigned char sign) { return std::tolower(sign); });
    return lower;
}

/// Whether a processing instruction tells no more than what holds without it.
bool isNeedless(string_view instruction)
{
    const std::string lower = inLowerCase(instruction);
    const bool isDeclaration = lower.starts_with("<?xml") && !isWord(lower[5]) && lower[5] != '-';
    return isDeclaration && (lower.find("encoding") == npos || lower.find("utf-8") != npos);
}

/// Behind the element that begins at `from`.
std::size_t behindElement(string_view text, string_view name, std::size_t from)
{
    const std::size_t content = behindTag(text, from);
    const bool isEmpty = text.substr(from, content - from).ends_with("/>");
    return isEmpty ? content : behindTag(text, endTag(text, name, content));
}

/// Where the element at `from` ends, if it is one of those; else 0.
std::size_t behindAny(std::span<const string_view> names, string_view text, std::size_t from)
{
    for (const string_view name : names) {
        if (isTag(text.substr(from), "<", name))
            return behindElement(text, name, from);
    }
    return 0;
}

} // namespace

Drawing::Drawing(string_view source)
    : m_source(source), m_hasText(std::ranges::any_of(
                            keptElements, [source](string_view name) { return source.find(name) != npos; })),
      m_kept(source)
{
    for (std::size_t i = 0; i < m_source.size();)
        i = takePart(i);
}

string_view Drawing::refusal() const
{
    const std::string lower = inLowerCase(m_source);
    for (std::size_t at = lower.find("<?"); at != npos; at = lower.find("<?", at + 2)) {
        const string_view rest = string_view(lower).substr(at + 2);
        if (rest.empty() || !isWord(rest[0]) || rest.starts_with("php"))
            return "the drawing holds PHP code, which would be lost";
    }
    return lower.find("<!entity") == npos ? "" : "the drawing declares entities, which might break";
}

std::size_t Drawing::take(std::size_t from, std::size_t end)
{
    m_text.append(m_source, from, end - from);
    return end;
}

/// Takes something of its own, between `before` and `after`, in place of the part.
std::size_t Drawing::keep(std::size_t from, std::size_t end, string_view before, string_view after)
{
    m_text += m_kept.keep(m_source.substr(from, end - from), before, after);
    return end;
}

/// Takes a tag over, with other names for attributes such as xml:space, and for the declarations of prefixes
/// that may occur in what is kept.
std::size_t Drawing::takeTag(std::size_t from, std::size_t end)
{
    const string_view source = m_source;
    for (std::size_t at = from; (at = source.find("xml", at)) < end; ++at) {
        const string_view rest = source.substr(at);
        const bool isDeclaration = m_hasText && rest.starts_with("xmlns:");
        if (isDeclaration || rest.starts_with("xml:"))
            from = keep(take(from, at), behind(source, ":", at), "", "");
    }
    return take(from, end);
}

/// Takes what begins there; returns where the next part begins.
std::size_t Drawing::takePart(std::size_t from)
{
    const string_view source = m_source;
    const string_view rest = source.substr(from);
    if (rest[0] != '<')
        return take(from, std::min(source.find('<', from), source.size()));
    if (rest.starts_with("<!--"))
        return take(from, behind(source, "-->", from));
    if (rest.starts_with("<![CDATA["))
        return take(from, behind(source, "]]>", from));
    if (rest.starts_with("<?")) {
        const std::size_t end = behind(source, "?>", from);
        return isNeedless(source.substr(from, end - from)) ? take(from, end) : keep(from, end, "<", "/>");
    }
    if (const std::size_t end = behindAny(leftOut, source, from); end > 0)
        return take(from, end);
    if (const std::size_t end = behindAny(keptElements, source, from); end > 0)
        return keep(from, end, "<", "/>");
    return takeTag(from, behindTag(source, from));
}

} // namespace brevant::markup
