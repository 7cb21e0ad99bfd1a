// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleSheet.h"

namespace brevant {

namespace {

using TokenKind = StyleToken::Kind;

/// The sign that closes what the token opens; NUL if it opens nothing.
QChar closingOf(const StyleToken &token)
{
    if (token.kind == TokenKind::Function || token.isSign(u'('))
        return u')';
    if (token.isSign(u'['))
        return u']';
    return token.isSign(u'{') ? QChar(u'}') : QChar();
}

} // namespace

StyleSheet::StyleSheet(QStringView text) : m_tokens(styleTokens(text)), m_closing(m_tokens.size())
{
    matchBrackets();
    read();
}

QStringView StyleSheet::textOf(Tokens tokens)
{
    if (tokens.empty())
        return {};
    return {tokens.front().text.begin(), tokens.back().text.end()};
}

bool StyleSheet::startsWithAt(Tokens tokens)
{
    return !tokens.empty() && tokens.front().kind == TokenKind::At;
}

/// A bracket that does not close the innermost open one is a sign like others, and one that is never closed
/// holds all the rest.
void StyleSheet::matchBrackets()
{
    std::vector<std::size_t> open;
    for (std::size_t at = 0; at < m_tokens.size(); ++at) {
        if (!closingOf(m_tokens[at]).isNull()) {
            m_closing[at] = m_tokens.size();
            open.push_back(at);
        } else if (!open.empty() && m_tokens[at].isSign(closingOf(m_tokens[open.back()]))) {
            m_closing[open.back()] = at;
            open.pop_back();
        }
    }
}

StyleSheet::Tokens StyleSheet::part(std::size_t first, std::size_t last) const
{
    return Tokens(m_tokens).subspan(first, last - first);
}

void StyleSheet::read()
{
    std::vector<Open> open{{noBlock, 0, m_tokens.size()}};
    while (!open.empty()) {
        if (open.back().at >= open.back().end)
            open.pop_back();
        else if (const std::optional<Open> inner = readNext(open.back()))
            open.push_back(*inner);
    }
}

/// Where the statement, declaration or prelude that begins at `open.at` ends: at a ";", at the "{" of a rule,
/// or with the block.
std::size_t StyleSheet::endOfPart(const Open &open) const
{
    const StyleToken &first = m_tokens[open.at];
    const bool isCustomProperty = open.block != noBlock && first.kind == TokenKind::Name &&
                                  first.text.startsWith(u"--") && open.at + 1 < open.end &&
                                  m_tokens[open.at + 1].isSign(u':');
    const bool endsAtSemicolon = open.block != noBlock || first.kind == TokenKind::At;
    std::size_t at = open.at;
    while (at < open.end) {
        const StyleToken &token = m_tokens[at];
        if ((endsAtSemicolon && token.isSign(u';')) || (!isCustomProperty && token.isSign(u'{')))
            break;
        at = closingOf(token).isNull() ? at + 1 : m_closing[at] + 1;
    }
    return std::min(at, open.end);
}

std::optional<StyleSheet::Open> StyleSheet::readNext(Open &open)
{
    if (open.block != noBlock && m_tokens[open.at].isSign(u';')) {
        ++open.at;
        return std::nullopt;
    }
    const std::size_t end = endOfPart(open);
    const Tokens tokens = part(open.at, end);
    open.at = std::min(end + 1, open.end);
    if (end < open.end && m_tokens[end].isSign(u'{')) {
        open.at = std::min(m_closing[end] + 1, open.end);
        m_blocks.push_back({open.block, tokens});
        return Open{static_cast<int>(m_blocks.size()) - 1, end + 1, std::min(m_closing[end], open.end)};
    }
    if (startsWithAt(tokens))
        m_statements.push_back({open.block, open.block == noBlock && !m_blocks.empty(), tokens});
    else if (open.block != noBlock)
        addDeclaration(open.block, tokens);
    return std::nullopt;
}

void StyleSheet::addDeclaration(int block, Tokens tokens)
{
    const bool isHack = !tokens.empty() && tokens.front().kind == TokenKind::Sign;
    if (isHack)
        tokens = tokens.subspan(1);
    if (tokens.size() >= 2 && (tokens[0].kind == TokenKind::Name || tokens[0].kind == TokenKind::Hash) &&
        tokens[1].isSign(u':'))
        m_declarations.push_back({block, tokens[0].text, tokens.subspan(2), isHack});
}

} // namespace brevant
