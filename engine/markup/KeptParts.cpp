// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/markup/KeptParts.h"

#include "engine/markup/Tags.h"

namespace brevant::markup {

using std::string_view;

KeptParts::KeptParts(string_view source)
{
    while (source.find(m_name) != npos)
        m_name += 's';
}

std::string KeptParts::keep(string_view part, string_view before, string_view after)
{
    std::string whole(before);
    whole.append(m_name).append(std::to_string(m_kept.size())).append("_").append(after);
    const std::size_t ending = before.starts_with('<') ? whole.find_last_not_of("/>") + 1 : npos;
    m_kept.push_back({whole.substr(0, ending), std::string(part)});
    return whole;
}

std::optional<std::string> KeptParts::restored(string_view minified) const
{
    std::string text;
    std::size_t from = 0;
    for (const auto &[name, part] : m_kept) {
        const std::size_t found = minified.find(name, from);
        if (found == npos)
            return std::nullopt;
        text.append(minified, from, found - from).append(part);
        // In a drawing within a drawing the library ends the tag in another way.
        from = found + name.size();
        if (name.front() == '<')
            from = behind(minified, ">", from);
    }
    return text.append(minified, from);
}

} // namespace brevant::markup
