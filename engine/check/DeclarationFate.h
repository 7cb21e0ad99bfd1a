// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/StyleSheet.h"

#include <QString>

namespace brevant {

/// What became of a declaration in a result.
struct DeclarationFate {
    const StyleSheet::Declaration *declaration;
    QString property; ///< spelt in one way
    bool isDead;      ///< browsers do not heed it anyway
    bool isKept = false;
    std::vector<std::size_t> lostSelectors{}; ///< numbers of those that it is lost for
};

/// Calls those of one block kept whose loss means nothing: a later one overrides them, or they said what an
/// earlier one implies.
void forgive(std::vector<DeclarationFate> &fates);

} // namespace brevant
