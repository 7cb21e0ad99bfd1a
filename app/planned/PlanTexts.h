// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/PlannedOutputs.h"
#include "engine/ResultRow.h"

#include <QStringList>

#include <array>

namespace brevant {

/// What the files of a plan come to.
struct PlanTotals {
    std::array<int, static_cast<std::size_t>(PlannedFile::State::Ready) + 1> counts{}; ///< by state
    qint64 size = 0; ///< of the sources, as far as known

    [[nodiscard]] int count(PlannedFile::State state) const
    {
        return counts[static_cast<std::size_t>(state)];
    }
};
[[nodiscard]] PlanTotals totalsOf(const std::vector<PlannedFile> &files);

/// "Take care".
[[nodiscard]] QString stateText(PlannedFile::State state);

/// The state of a result that has the same sign.
[[nodiscard]] ResultRow::State signOf(PlannedFile::State state);

/// What is wrong with a file, in a few words: "Same output as row 12". Rows are counted from 1.
[[nodiscard]] QString problemsText(const PlannedFile &file);

/// The same in sentences that say what follows. `row`: that of the file, from 0.
[[nodiscard]] QStringList sentencesAbout(const PlannedFile &file, int row);

/// "12 files · 35.3 kB · 5 ready · 5 take care · 2 will fail".
[[nodiscard]] QString totalsText(const PlanTotals &totals, Qt::LayoutDirection direction = Qt::LeftToRight);

} // namespace brevant
