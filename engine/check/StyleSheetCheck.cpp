// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/StyleSheetCheck.h"

#include "engine/check/CustomProperties.h"
#include "engine/check/DeclarationFate.h"
#include "engine/check/ResultIndex.h"
#include "engine/check/StyleSpelling.h"
#include "engine/check/TextLines.h"

#include <algorithm>

namespace brevant {

namespace {

using namespace Qt::StringLiterals;

class Comparison final {
public:
    Comparison(QStringView source, QStringView result, int firstLine)
        : m_source(source), m_resultSheet(result), m_result(m_resultSheet), m_lines(source, firstLine),
          m_blocks(placedBlocks(m_source)), m_places(m_result.placesOf(m_source, m_blocks)),
          m_customProperties(m_source)
    {
    }

    QList<ResultWarning> warnings()
    {
        std::vector<std::vector<DeclarationFate>> fates(m_blocks.size());
        for (const StyleSheet::Declaration &declaration : m_source.declarations()) {
            if (!blockOf(declaration).isDead)
                fates[static_cast<std::size_t>(declaration.block)].push_back(fateOf(declaration));
        }
        if (isNothingLeft(fates))
            return {{ResultWarning::Kind::NothingLeft}};
        for (const StyleSheet::Statement &statement : m_source.statements())
            compare(statement);
        for (std::vector<DeclarationFate> &inBlock : fates) {
            forgive(inBlock);
            for (const DeclarationFate &fate : inBlock) {
                if (!fate.isKept && !fate.isDead)
                    warn(fate);
            }
        }
        std::ranges::stable_sort(m_warnings, {}, &ResultWarning::line);
        return m_warnings;
    }

private:
    [[nodiscard]] const PlacedBlock &blockOf(const StyleSheet::Declaration &declaration) const
    {
        return m_blocks[static_cast<std::size_t>(declaration.block)];
    }

    [[nodiscard]] bool isNothingLeft(const std::vector<std::vector<DeclarationFate>> &fates) const
    {
        const auto isAlive = [](const DeclarationFate &fate) { return !fate.isDead; };
        return m_resultSheet.declarations().empty() && std::ranges::any_of(fates, [&](const auto &inBlock) {
                   return std::ranges::any_of(inBlock, isAlive);
               });
    }

    void compare(const StyleSheet::Statement &statement)
    {
        const bool isAtTop = statement.block == StyleSheet::noBlock;
        if (!isAtTop && m_blocks[static_cast<std::size_t>(statement.block)].isDead)
            return;
        const QString name = statement.tokens.front().text.toString().toLower();
        const bool mustBeEarly = name == u"@import" || name == u"@namespace";
        const bool isHeeded = mustBeEarly ? isAtTop && !statement.isAfterBlock : name == u"@layer";
        const int place = ResultIndex::placeIn(m_places, statement.block);
        if (!isHeeded || m_result.hasStatement(place, StyleSpelling::atRule(statement.tokens)))
            return;
        const QStringView text = StyleSheet::textOf(statement.tokens);
        ResultWarning warning{ResultWarning::Kind::Statement, m_lines.of(text), around(statement.block)};
        warning.before = shownPart(text);
        m_warnings.append(warning);
    }

    [[nodiscard]] DeclarationFate fateOf(const StyleSheet::Declaration &declaration)
    {
        DeclarationFate fate{&declaration, StyleSpelling::property(declaration.property),
                             isDead(declaration)};
        if (fate.isDead)
            return fate;
        const QString value = StyleSpelling::value(fate.property, declaration.value);
        const int place = ResultIndex::placeIn(m_places, declaration.block);
        fate.isKept = m_result.hasDeclaration(place, fate.property, value) ||
                      (fate.property.startsWith(u"--") && hasLostNeedlessUnits(fate));
        const QStringList &selectors = blockOf(declaration).selectors;
        for (qsizetype i = 0; !fate.isKept && i < selectors.size() && m_steps < mostSteps; ++i) {
            if (!isKeptFor(selectors.at(i), fate, value))
                fate.lostSelectors.push_back(static_cast<std::size_t>(i));
        }
        fate.isKept = fate.lostSelectors.empty();
        return fate;
    }

    /// Looks in other lists of selectors, as this one may have changed.
    [[nodiscard]] bool isKeptFor(const QString &selector, const DeclarationFate &fate, const QString &value)
    {
        const std::span<const int> lists = m_result.listsWith(outerOf(*fate.declaration), selector);
        m_steps += lists.size() + 1;
        return std::ranges::any_of(
            lists, [&](int list) { return m_result.hasDeclaration(list, fate.property, value); });
    }

    [[nodiscard]] int outerOf(const StyleSheet::Declaration &declaration) const
    {
        return ResultIndex::placeIn(m_places,
                                    m_source.blocks()[static_cast<std::size_t>(declaration.block)].parent);
    }

    /// Of a custom property.
    [[nodiscard]] bool hasLostNeedlessUnits(const DeclarationFate &fate)
    {
        const auto value =
            m_result.valueOf(ResultIndex::placeIn(m_places, fate.declaration->block), fate.property);
        return value &&
               StyleSpelling::valueWithoutZeroUnits(fate.property, fate.declaration->value) ==
                   StyleSpelling::valueWithoutZeroUnits(fate.property, *value) &&
               !m_customProperties.needZeroUnits(*fate.declaration);
    }

    void warn(const DeclarationFate &fate)
    {
        const StyleSheet::Block &block = m_source.blocks()[static_cast<std::size_t>(fate.declaration->block)];
        ResultWarning warning{ResultWarning::Kind::Declaration, m_lines.of(fate.declaration->property)};
        warning.within = around(block.isAtRule() ? fate.declaration->block : block.parent);
        if (!block.isAtRule())
            warning.selector = lostSelectors(fate, block.prelude);
        warning.property = fate.property;
        warning.before = shownPart(StyleSheet::textOf(fate.declaration->value));
        if (const auto value = valueAfter(fate))
            warning.after = shownPart(StyleSheet::textOf(*value));
        m_warnings.append(warning);
    }

    [[nodiscard]] QString lostSelectors(const DeclarationFate &fate, StyleSheet::Tokens list) const
    {
        if (fate.lostSelectors.size() ==
            static_cast<std::size_t>(blockOf(*fate.declaration).selectors.size()))
            return shownPart(StyleSheet::textOf(list));
        const std::vector<StyleSheet::Tokens> selectors = StyleSpelling::cutAtCommas(list);
        QString texts;
        for (const std::size_t number : fate.lostSelectors) {
            texts += texts.isEmpty() ? QString() : u", "_s;
            texts += StyleSheet::textOf(selectors[number]);
            if (texts.size() > mostShownOfPart)
                break;
        }
        return shownPart(texts);
    }

    [[nodiscard]] std::optional<StyleSheet::Tokens> valueAfter(const DeclarationFate &fate) const
    {
        const int place = ResultIndex::placeIn(m_places, fate.declaration->block);
        if (const auto value = m_result.valueOf(place, fate.property))
            return value;
        const QString &selector =
            blockOf(*fate.declaration).selectors.at(static_cast<qsizetype>(fate.lostSelectors.front()));
        const std::span<const int> lists = m_result.listsWith(outerOf(*fate.declaration), selector);
        return lists.empty() ? std::nullopt : m_result.valueOf(lists.front(), fate.property);
    }

    /// The preludes of a block and of those around it, from the outermost.
    [[nodiscard]] QStringList around(int block) const
    {
        constexpr int mostShown = 8;
        QStringList preludes;
        for (; block != StyleSheet::noBlock && preludes.size() < mostShown;
             block = m_source.blocks()[static_cast<std::size_t>(block)].parent)
            preludes.prepend(
                shownPart(StyleSheet::textOf(m_source.blocks()[static_cast<std::size_t>(block)].prelude)));
        return preludes;
    }

    const StyleSheet m_source;
    const StyleSheet m_resultSheet;
    const ResultIndex m_result;
    const TextLines m_lines;
    const std::vector<PlacedBlock> m_blocks;
    const std::vector<int> m_places; ///< of the blocks in the result
    CustomProperties m_customProperties;
    /// Looking into other lists. More are needed only by a text made to take forever: what is not looked at
    /// is taken for kept.
    static constexpr std::size_t mostSteps = 300'000;
    std::size_t m_steps = 0;
    QList<ResultWarning> m_warnings;
};

} // namespace

QList<ResultWarning> checkStyleSheet(QStringView source, QStringView result, int firstLine)
{
    return Comparison(source, result, firstLine).warnings();
}

} // namespace brevant
