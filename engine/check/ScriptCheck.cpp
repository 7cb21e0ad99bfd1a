// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/ScriptCheck.h"

#include "engine/check/StyleTokens.h"
#include "engine/check/TextLines.h"

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

/// Goes over a script as far as is needed to know strings from comments and regular expressions.
class ScriptReader final {
public:
    explicit ScriptReader(QStringView text) : m_text(text) {}

    /// The directives "use strict" of functions.
    std::vector<QStringView> directives()
    {
        std::vector<QStringView> found;
        while (m_at < m_text.size()) {
            const QChar character = m_text[m_at];
            const qsizetype start = m_at;
            if (character == u'/' && startsComment())
                continue;
            if (isWebSpace(character)) {
                ++m_at;
                continue;
            }
            const bool isRegularExpression = character == u'/' && isAfterOperator();
            if (character == u'"' || character == u'\'' || character == u'`' || isRegularExpression) {
                skipQuoted(character);
                const QStringView string = m_text.sliced(start, m_at - start);
                if (m_last == u'{' && string.size() > 2 && string.sliced(1).chopped(1) == u"use strict")
                    found.push_back(string);
                m_last = u'"';
            } else {
                m_wordStart =
                    isWord(character) && (!isWord(m_last) || m_lastAt + 1 < m_at) ? m_at : m_wordStart;
                m_last = character;
                m_lastAt = m_at++;
            }
        }
        return found;
    }

private:
    static bool isWord(QChar character)
    {
        return character.isLetterOrNumber() || character == u'_' || character == u'$';
    }

    /// Skips a comment, if it is one.
    bool startsComment()
    {
        const QStringView rest = m_text.sliced(m_at);
        if (!rest.startsWith(u"//") && !rest.startsWith(u"/*"))
            return false;
        const QStringView end = rest[1] == u'/' ? QStringView(u"\n") : QStringView(u"*/");
        const qsizetype found = m_text.indexOf(end, m_at + 2);
        m_at = found < 0 ? m_text.size() : found + end.size();
        return true;
    }

    /// Where a value may begin, "/" divides nothing.
    [[nodiscard]] bool isAfterOperator() const
    {
        if (!isWord(m_last))
            return m_last != u')' && m_last != u']' && m_last != u'"' && m_last != u'}';
        const QStringView word = m_text.sliced(m_wordStart, m_lastAt + 1 - m_wordStart);
        return word == u"return" || word == u"typeof" || word == u"case" || word == u"in" ||
               word == u"delete" || word == u"void" || word == u"throw" || word == u"else";
    }

    void skipQuoted(QChar quote)
    {
        bool isInClass = false; // of a regular expression, where "/" is a character like others
        for (++m_at; m_at < m_text.size(); ++m_at) {
            const QChar character = m_text[m_at];
            if (character == u'\\')
                ++m_at;
            else if (quote == u'/' && (character == u'[' || character == u']'))
                isInClass = character == u'[';
            else if ((character == quote && !isInClass) || (character == u'\n' && quote != u'`'))
                break;
        }
        m_at = std::min(m_at + 1, m_text.size());
    }

    const QStringView m_text;
    qsizetype m_at = 0;
    QChar m_last = u';'; ///< the last character that is no space
    qsizetype m_lastAt = -1;
    qsizetype m_wordStart = 0;
};

} // namespace

QList<ResultWarning> checkScript(QStringView source, QStringView result)
{
    if (!source.contains("use strict"_L1))
        return {};
    const std::vector<QStringView> directives = ScriptReader(source).directives();
    if (directives.size() <= ScriptReader(result).directives().size())
        return {};
    const TextLines lines(source);
    QList<ResultWarning> warnings;
    for (const QStringView directive : directives) {
        ResultWarning warning{ResultWarning::Kind::UseStrict, lines.of(directive)};
        warning.before = directive.toString();
        warnings.append(warning);
    }
    return warnings;
}

} // namespace brevant
