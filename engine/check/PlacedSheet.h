// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/StyleSheet.h"

#include <QHash>
#include <QStringList>

#include <utility>

namespace brevant {

/// Numbers for places: what is spelt in one way, in another place or at the top.
class Places final {
public:
    static constexpr int top = -1;
    static constexpr int none = -2;

    int add(int outer, const QString &spelling);
    /// `none` for a place that was not added, and for all in it.
    [[nodiscard]] int find(int outer, const QString &spelling) const;

private:
    QHash<std::pair<int, QString>, int> m_numbers;
};

/// A block of a style sheet, spelt in one way.
struct PlacedBlock {
    QStringList selectors; ///< or the one at-rule
    QString list;          ///< of all of them
    bool isDead = false;   ///< browsers pass it over, or only old ones do not
};

[[nodiscard]] std::vector<PlacedBlock> placedBlocks(const StyleSheet &sheet);

/// Whether browsers pass the declaration over, or only old ones do not.
[[nodiscard]] bool isDead(const StyleSheet::Declaration &declaration);

} // namespace brevant
