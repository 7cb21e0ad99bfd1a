// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleSpelling.h"

#include "engine/check/Words.h"

#include <algorithm>
#include <array>

namespace brevant::StyleSpelling {

namespace {

using namespace Qt::StringLiterals;
using TokenKind = StyleToken::Kind;

/// Whether white space means nothing before and after the token.
bool isSpaceFree(const StyleToken &token)
{
    constexpr QStringView signs = u">+~,=^$|";
    return token.kind == TokenKind::Sign && signs.contains(token.text.front());
}

bool isOpening(const StyleToken &token)
{
    return token.kind == TokenKind::Function || token.isSign(u'(') || token.isSign(u'[');
}

bool isClosing(const StyleToken &token)
{
    return token.isSign(u')') || token.isSign(u']');
}

/// Whether the token is the second ":" before one of those that do with a single one.
bool isNeedlessColon(Tokens tokens, std::size_t at)
{
    constexpr std::array names{"before"_L1, "after"_L1, "first-line"_L1, "first-letter"_L1};
    return at > 0 && tokens[at].isSign(u':') && tokens[at - 1].isSign(u':') && at + 1 < tokens.size() &&
           isOneOf(tokens[at + 1].text, names);
}

QString string(QStringView text)
{
    QString spelling = text.toString();
    if (text.size() > 1 && text.startsWith(u'\'') && !text.contains(u'"') && !text.contains(u'\\'))
        spelling.replace(u'\'', u'"');
    return spelling;
}

QString selector(Tokens tokens)
{
    QString spelling;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        const StyleToken &token = tokens[at];
        const bool isJoint = at == 0 || isOpening(tokens[at - 1]) || isClosing(token) || isSpaceFree(token) ||
                             isSpaceFree(tokens[at - 1]) ||
                             (token.kind == TokenKind::Number && token.text.startsWith(u'+')); // of "2n +1"
        if (token.isSpaceBefore && !isJoint)
            spelling += u' ';
        const bool isExact = at > 0 && (tokens[at - 1].isSign(u'.') || tokens[at - 1].isSign(u'='));
        if (token.kind == TokenKind::String)
            spelling += string(token.text);
        else if ((token.kind == TokenKind::Name && !isExact) || token.kind == TokenKind::Function)
            spelling += token.text.toString().toLower();
        else if (!isNeedlessColon(tokens, at))
            spelling += token.text;
    }
    return spelling;
}

} // namespace

std::vector<Tokens> cutAtCommas(Tokens list)
{
    std::vector<Tokens> parts;
    std::size_t first = 0;
    int depth = 0;
    for (std::size_t at = 0; at < list.size(); ++at) {
        if (isOpening(list[at]))
            ++depth;
        else if (isClosing(list[at]) && depth > 0)
            --depth;
        if (depth == 0 && list[at].isSign(u',')) {
            parts.push_back(list.subspan(first, at - first));
            first = at + 1;
        }
    }
    parts.push_back(list.subspan(first));
    return parts;
}

QStringList selectors(Tokens list)
{
    QStringList spellings;
    for (const Tokens &part : cutAtCommas(list))
        spellings.append(selector(part));
    return spellings;
}

std::optional<QStringList> keyframes(Tokens list)
{
    QStringList spellings;
    for (const Tokens &part : cutAtCommas(list)) {
        if (part.size() != 1)
            return std::nullopt;
        const StyleToken &token = part.front();
        if (token.text.compare("from"_L1, Qt::CaseInsensitive) == 0)
            spellings.append(u"0%"_s);
        else if (token.text.compare("to"_L1, Qt::CaseInsensitive) == 0)
            spellings.append(u"100%"_s);
        else if (token.kind == TokenKind::Number && token.text.endsWith(u'%'))
            spellings.append(value(u"--keyframe", part));
        else
            return std::nullopt;
    }
    return spellings;
}

} // namespace brevant::StyleSpelling
