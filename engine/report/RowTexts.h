// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"
#include "queue/FileKind.h"

#include <QStringList>

#include <array>

namespace brevant {

/// What the rows of a run come to. Sizes are those of files that are minified.
struct RunTotals {
    struct Sizes {
        qint64 before = 0;
        qint64 after = 0;

        /// "43.4 % saved", "2 % larger"; `isWhole`: without a fraction.
        [[nodiscard]] QString savedText(bool isWhole = false) const;
    };
    static constexpr std::size_t stateCount = static_cast<std::size_t>(ResultRow::State::Done) + 1;
    static constexpr std::size_t kindCount = static_cast<std::size_t>(KindFamily::Markup) + 1;

    std::array<int, stateCount> counts{}; ///< by state
    Sizes all;
    std::array<Sizes, kindCount> ofKinds;

    [[nodiscard]] int count(ResultRow::State state) const { return counts[static_cast<std::size_t>(state)]; }

    /// "3 failed", "1 put back", "2 with warnings" and so on, of what did not go well.
    [[nodiscard]] QStringList lackTexts() const;
};
[[nodiscard]] RunTotals totalsOf(const std::vector<ResultRow> &rows);

/// "6 files · 412 kB → 233 kB · 43.4 % saved · 3 failed". The arrow points the way texts are read.
[[nodiscard]] QString totalsText(const RunTotals &totals, Qt::LayoutDirection direction);

/// Parts that stand beside one another in the order in which texts are read, with dots between.
[[nodiscard]] QString joinedParts(QStringList parts, Qt::LayoutDirection direction);

/// A text that stands for itself among others, in whatever direction those are read.
[[nodiscard]] QString isolated(const QString &text);

/// What a state is called: "Put back".
[[nodiscard]] QString stateText(ResultRow::State state);

/// A size, a time, and what was saved of the source, in words; or a dash.
[[nodiscard]] QString sizeOrDash(qint64 size);
[[nodiscard]] QString secondsText(double seconds);
[[nodiscard]] QString savedText(const ResultRow &row);

/// What a row has to say first: "68:58  Unexpected "}"", "The compressor left an empty output".
[[nodiscard]] QString messageText(const ResultRow &row);

} // namespace brevant
