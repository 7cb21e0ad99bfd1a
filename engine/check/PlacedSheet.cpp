// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/PlacedSheet.h"

#include "engine/check/StyleSpelling.h"
#include "engine/check/Words.h"

#include <algorithm>
#include <array>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;
using TokenKind = StyleToken::Kind;

bool hasOldPrefix(QStringView name)
{
    constexpr std::array prefixes{"-moz-"_L1, "-ms-"_L1, "-o-"_L1, "-khtml-"_L1};
    return std::ranges::any_of(
        prefixes, [name](QLatin1StringView prefix) { return name.startsWith(prefix, Qt::CaseInsensitive); });
}

bool isKnownAtRule(QStringView name)
{
    constexpr std::array known{
        "@media"_L1,    "@supports"_L1,       "@container"_L1,       "@layer"_L1,
        "@scope"_L1,    "@starting-style"_L1, "@font-face"_L1,       "@keyframes"_L1,
        "@page"_L1,     "@counter-style"_L1,  "@property"_L1,        "@-webkit-keyframes"_L1,
        "@function"_L1, "@position-try"_L1,   "@view-transition"_L1, "@font-palette-values"_L1};
    return isOneOf(name, known);
}

/// "::-moz-focus-inner" and the like make a whole list of selectors void for other browsers.
bool hasOldSelector(StyleSheet::Tokens prelude)
{
    for (std::size_t at = 1; at < prelude.size(); ++at) {
        if (prelude[at - 1].isSign(u':') && hasOldPrefix(prelude[at].text))
            return true;
    }
    return std::ranges::any_of(
        prelude, [](const StyleToken &token) { return token.isSign(u'}') || token.isSign(u';'); });
}

PlacedBlock placed(const StyleSheet::Block &block, bool isKeyframe)
{
    if (block.isAtRule())
        return {{StyleSpelling::atRule(block.prelude)}, {}, !isKnownAtRule(block.prelude.front().text)};
    if (!isKeyframe)
        return {StyleSpelling::selectors(block.prelude), {}, hasOldSelector(block.prelude)};
    const std::optional<QStringList> steps = StyleSpelling::keyframes(block.prelude);
    return {steps.value_or(QStringList()), {}, !steps};
}

} // namespace

int Places::add(int outer, const QString &spelling)
{
    const std::pair key(outer, spelling);
    const auto found = m_numbers.constFind(key);
    return found != m_numbers.cend() ? *found : *m_numbers.insert(key, static_cast<int>(m_numbers.size()));
}

int Places::find(int outer, const QString &spelling) const
{
    return m_numbers.value({outer, spelling}, none);
}

std::vector<PlacedBlock> placedBlocks(const StyleSheet &sheet)
{
    std::vector<PlacedBlock> placedBlocks;
    placedBlocks.reserve(sheet.blocks().size());
    for (const StyleSheet::Block &block : sheet.blocks()) {
        const auto parent = static_cast<std::size_t>(block.parent);
        const bool isInBlock = block.parent != StyleSheet::noBlock;
        const bool isKeyframe =
            isInBlock && sheet.blocks()[parent].isAtRule() &&
            sheet.blocks()[parent].prelude.front().text.endsWith("keyframes"_L1, Qt::CaseInsensitive);
        PlacedBlock &placedBlock = placedBlocks.emplace_back(placed(block, isKeyframe));
        placedBlock.list = placedBlock.selectors.join(u',');
        placedBlock.isDead = placedBlock.isDead || (isInBlock && placedBlocks[parent].isDead);
    }
    return placedBlocks;
}

/// A string without its end, and what follows a bracket without its end.
bool isBroken(const StyleToken &token)
{
    return token.isSign(u';') || token.isSign(u'}') ||
           (token.kind == TokenKind::String &&
            (token.text.size() < 2 || token.text.back() != token.text.front()));
}

bool isDead(const StyleSheet::Declaration &declaration)
{
    if (declaration.isHack || declaration.property.startsWith(u'_') || hasOldPrefix(declaration.property))
        return true;
    if (declaration.property.startsWith(u"--"))
        return false;
    // There the names of unknown properties are allowed.
    const bool namesProperties = declaration.property.contains("transition"_L1, Qt::CaseInsensitive) ||
                                 declaration.property.compare("will-change"_L1, Qt::CaseInsensitive) == 0;
    return std::ranges::any_of(declaration.value, [namesProperties](const StyleToken &token) {
        constexpr std::array old{"progid"_L1, "expression("_L1, "alpha("_L1};
        const bool isName = token.kind == TokenKind::Name || token.kind == TokenKind::Function;
        return isBroken(token) || (isName && !namesProperties && hasOldPrefix(token.text)) ||
               token.text.endsWith(u"\\9") || token.text.endsWith(u"\\0") || isOneOf(token.text, old);
    });
}

} // namespace brevant
