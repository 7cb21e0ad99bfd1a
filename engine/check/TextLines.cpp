// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/TextLines.h"

#include <algorithm>

namespace brevant {

TextLines::TextLines(QStringView text, int first) : m_first(first)
{
    for (const QChar *at = text.begin(); at != text.end(); ++at) {
        const bool isPair = *at == u'\r' && at + 1 != text.end() && at[1] == u'\n';
        if (*at == u'\n' || (*at == u'\r' && !isPair))
            m_starts.push_back(at + 1);
    }
}

int TextLines::of(QStringView part) const
{
    return m_first + static_cast<int>(std::ranges::upper_bound(m_starts, part.begin()) - m_starts.begin());
}

QString shownPart(QStringView text)
{
    const QString line = text.first(std::min(text.size(), mostShownOfPart)).toString().simplified();
    return text.size() > mostShownOfPart ? line + u'…' : line;
}

} // namespace brevant
