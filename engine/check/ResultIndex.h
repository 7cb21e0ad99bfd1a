// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/PlacedSheet.h"

#include <QSet>

#include <optional>

namespace brevant {

/// What browsers find in the result of a style sheet, spelt in one way.
class ResultIndex final {
public:
    /// Points into the sheet's text.
    explicit ResultIndex(const StyleSheet &sheet);

    /// The place of each block of the source in the result, or Places::none.
    [[nodiscard]] std::vector<int> placesOf(const StyleSheet &source,
                                            const std::vector<PlacedBlock> &blocks) const;

    /// The place of a block, by its number.
    [[nodiscard]] static int placeIn(const std::vector<int> &places, int block)
    {
        return block == StyleSheet::noBlock ? Places::top : places[static_cast<std::size_t>(block)];
    }

    /// The places of all lists in `outer` that a selector is in.
    [[nodiscard]] std::span<const int> listsWith(int outer, const QString &selector) const;

    [[nodiscard]] bool hasStatement(int place, const QString &statement) const;
    [[nodiscard]] bool hasDeclaration(int place, const QString &property, const QString &value) const;

    /// The tokens of the last value of a property there.
    [[nodiscard]] std::optional<StyleSheet::Tokens> valueOf(int place, const QString &property) const;

private:
    [[nodiscard]] int addBlock(int outer, const PlacedBlock &block);
    void addDeclaration(int place, const StyleSheet::Declaration &declaration);

    Places m_places;
    QSet<int> m_blocks;
    QHash<std::pair<int, QString>, std::vector<int>> m_lists;
    QHash<int, StyleSheet::Tokens> m_values;
};

} // namespace brevant
