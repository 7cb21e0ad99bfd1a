// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleTokens.h"

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using TokenKind = StyleToken::Kind;

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isHexDigit(QChar character)
{
    return isDigit(character) || (character >= u'a' && character <= u'f') ||
           (character >= u'A' && character <= u'F');
}

bool isLineEnd(QChar character)
{
    return character == u'\n' || character == u'\r' || character == u'\f';
}

/// Goes over a text from its start to its end.
class Scanner final {
public:
    explicit Scanner(QStringView text) : m_text(text) {}

    std::vector<StyleToken> tokens()
    {
        std::vector<StyleToken> tokens;
        for (bool isSpace = skipSpace(); m_at < m_text.size(); isSpace = skipSpace()) {
            const qsizetype start = m_at;
            const TokenKind kind = next();
            tokens.push_back({kind, isSpace, m_text.sliced(start, m_at - start)});
        }
        return tokens;
    }

private:
    /// The character so far ahead; NUL after the end.
    [[nodiscard]] QChar ahead(qsizetype distance = 0) const
    {
        return m_at + distance < m_text.size() ? m_text[m_at + distance] : QChar();
    }

    [[nodiscard]] bool isEscape(qsizetype distance = 0) const
    {
        return ahead(distance) == u'\\' && m_at + distance + 1 < m_text.size() &&
               !isLineEnd(ahead(distance + 1));
    }

    [[nodiscard]] bool isNameStart() const
    {
        const qsizetype distance = ahead() == u'-' ? 1 : 0;
        return isEscape(distance) || (isStyleNameCharacter(ahead(distance)) && !isDigit(ahead(distance)));
    }

    [[nodiscard]] bool isNumberStart() const
    {
        const qsizetype distance = ahead() == u'+' || ahead() == u'-' ? 1 : 0;
        return isDigit(ahead(distance)) || (ahead(distance) == u'.' && isDigit(ahead(distance + 1)));
    }

    /// Skips comments and white space; whether there was any of the latter.
    bool skipSpace()
    {
        bool isSpace = false;
        while (m_at < m_text.size()) {
            if (isWebSpace(m_text[m_at])) {
                isSpace = true;
                ++m_at;
            } else if (ahead() == u'/' && ahead(1) == u'*') {
                const qsizetype end = m_text.indexOf(u"*/", m_at + 2);
                m_at = end < 0 ? m_text.size() : end + 2;
            } else {
                break;
            }
        }
        return isSpace;
    }

    TokenKind next()
    {
        if (ahead() == u'"' || ahead() == u'\'')
            return string();
        if (isNumberStart())
            return number();
        if (isNameStart())
            return nameOrFunction();
        const QChar first = m_text[m_at++];
        if (first == u'@' && isNameStart()) {
            name();
            return TokenKind::At;
        }
        if (first == u'#' && (isStyleNameCharacter(ahead()) || isEscape())) {
            name();
            return TokenKind::Hash;
        }
        return TokenKind::Sign;
    }

    void escape()
    {
        ++m_at;
        if (!isHexDigit(ahead())) {
            ++m_at;
            return;
        }
        constexpr int mostDigits = 6;
        for (int digits = 0; digits < mostDigits && isHexDigit(ahead()); ++digits)
            ++m_at;
        if (ahead() == u'\r' && ahead(1) == u'\n')
            ++m_at;
        if (m_at < m_text.size() && isWebSpace(ahead()))
            ++m_at;
    }

    void name()
    {
        while (m_at < m_text.size()) {
            if (isEscape())
                escape();
            else if (isStyleNameCharacter(ahead()))
                ++m_at;
            else
                break;
        }
    }

    TokenKind nameOrFunction()
    {
        const qsizetype start = m_at;
        name();
        if (ahead() != u'(')
            return TokenKind::Name;
        const QStringView called = m_text.sliced(start, m_at - start);
        ++m_at;
        return called.compare("url"_L1, Qt::CaseInsensitive) == 0 ? url() : TokenKind::Function;
    }

    /// What follows "url(": with a string in it, it is a function.
    TokenKind url()
    {
        qsizetype first = m_at;
        while (first < m_text.size() && isWebSpace(m_text[first]))
            ++first;
        if (first < m_text.size() && (m_text[first] == u'"' || m_text[first] == u'\''))
            return TokenKind::Function;
        while (m_at < m_text.size() && m_text[m_at] != u')')
            m_at += isEscape() ? 2 : 1;
        m_at = std::min(m_at + 1, m_text.size());
        return TokenKind::Url;
    }

    TokenKind string()
    {
        const QChar quote = m_text[m_at++];
        while (m_at < m_text.size() && !isLineEnd(ahead())) {
            if (ahead() == quote) {
                ++m_at;
                break;
            }
            if (ahead() == u'\\')
                m_at += ahead(1) == u'\r' && ahead(2) == u'\n' ? 3 : 2;
            else
                ++m_at;
        }
        m_at = std::min(m_at, m_text.size());
        return TokenKind::String;
    }

    TokenKind number()
    {
        const auto digits = [this] {
            while (isDigit(ahead()))
                ++m_at;
        };
        if (ahead() == u'+' || ahead() == u'-')
            ++m_at;
        digits();
        if (ahead() == u'.' && isDigit(ahead(1))) {
            ++m_at;
            digits();
        }
        if (const qsizetype sign = ahead(1) == u'+' || ahead(1) == u'-' ? 2 : 1;
            (ahead() == u'e' || ahead() == u'E') && isDigit(ahead(sign))) {
            m_at += sign;
            digits();
        }
        if (ahead() == u'%')
            ++m_at;
        else if (isNameStart())
            name();
        return TokenKind::Number;
    }

    QStringView m_text;
    qsizetype m_at = 0;
};

} // namespace

bool isWebSpace(QChar character)
{
    return character == u' ' || character == u'\t' || isLineEnd(character);
}

bool isStyleNameCharacter(QChar character)
{
    return character == u'-' || character == u'_' || character.unicode() >= 0x80 || isDigit(character) ||
           (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

std::vector<StyleToken> styleTokens(QStringView text)
{
    return Scanner(text).tokens();
}

} // namespace brevant
