// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/check/ResultIndex.h"

#include "engine/check/StyleSpelling.h"

namespace brevant {

namespace {

// No two of these spell the same: a selector cannot begin with a bracket that closes.
QString declarationSpelling(const QString &property, const QString &value)
{
    return u'}' + property + u':' + value;
}

QString propertySpelling(const QString &property)
{
    return u')' + property;
}

} // namespace

ResultIndex::ResultIndex(const StyleSheet &sheet)
{
    std::vector<int> places;
    const std::vector<PlacedBlock> blocks = placedBlocks(sheet);
    places.reserve(blocks.size());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const int outer = placeIn(places, sheet.blocks()[i].parent);
        places.push_back(blocks[i].isDead ? Places::none : addBlock(outer, blocks[i]));
    }
    for (const StyleSheet::Declaration &declaration : sheet.declarations()) {
        if (const int place = placeIn(places, declaration.block); place != Places::none)
            addDeclaration(place, declaration);
    }
    for (const StyleSheet::Statement &statement : sheet.statements()) {
        if (const int place = placeIn(places, statement.block); place != Places::none)
            m_places.add(place, StyleSpelling::atRule(statement.tokens));
    }
}

int ResultIndex::addBlock(int outer, const PlacedBlock &block)
{
    const int place = m_places.add(outer, block.list);
    if (m_blocks.contains(place))
        return place;
    m_blocks.insert(place);
    for (const QString &selector : block.selectors)
        m_lists[{outer, selector}].push_back(place);
    return place;
}

void ResultIndex::addDeclaration(int place, const StyleSheet::Declaration &declaration)
{
    const QString property = StyleSpelling::property(declaration.property);
    m_places.add(place, declarationSpelling(property, StyleSpelling::value(property, declaration.value)));
    m_values.insert(m_places.add(place, propertySpelling(property)), declaration.value);
}

std::vector<int> ResultIndex::placesOf(const StyleSheet &source, const std::vector<PlacedBlock> &blocks) const
{
    std::vector<int> places;
    places.reserve(blocks.size());
    for (std::size_t i = 0; i < blocks.size(); ++i)
        places.push_back(m_places.find(placeIn(places, source.blocks()[i].parent), blocks[i].list));
    return places;
}

std::span<const int> ResultIndex::listsWith(int outer, const QString &selector) const
{
    const auto found = m_lists.constFind({outer, selector});
    return found != m_lists.cend() ? std::span<const int>(*found) : std::span<const int>();
}

bool ResultIndex::hasStatement(int place, const QString &statement) const
{
    return m_places.find(place, statement) != Places::none;
}

bool ResultIndex::hasDeclaration(int place, const QString &property, const QString &value) const
{
    return m_places.find(place, declarationSpelling(property, value)) != Places::none;
}

std::optional<StyleSheet::Tokens> ResultIndex::valueOf(int place, const QString &property) const
{
    const auto found = m_values.constFind(m_places.find(place, propertySpelling(property)));
    return found != m_values.cend() ? std::optional(*found) : std::nullopt;
}

} // namespace brevant
