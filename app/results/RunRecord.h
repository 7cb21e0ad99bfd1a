// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"
#include "queue/FileKind.h"

#include <QDateTime>
#include <QString>

#include <array>
#include <vector>

namespace brevant {

/// What the rows of a run come to. Sizes are those of files that are minified.
struct RunTotals {
    struct Sizes {
        qint64 before = 0;
        qint64 after = 0;
    };
    static constexpr std::size_t stateCount = static_cast<std::size_t>(ResultRow::State::Done) + 1;
    static constexpr std::size_t kindCount = static_cast<std::size_t>(KindFamily::Markup) + 1;

    std::array<int, stateCount> counts{}; ///< by state
    Sizes all;
    std::array<Sizes, kindCount> ofKinds;

    [[nodiscard]] int count(ResultRow::State state) const { return counts[static_cast<std::size_t>(state)]; }
};

/// One run as it is remembered, or what a start of the program has put back.
struct RunRecord {
    int number = 0; ///< unique
    QDateTime started;
    QString manner;   ///< what worked and where to, in words; empty for a start of the program
    int expected = 0; ///< rows at the end, as far as is known
    std::vector<ResultRow> rows;
    bool isRunning = false;
    int minified = 0; ///< different outputs, each of a file that counts as minified
    int count = 0;    ///< files that were to be minified
    QString reason;   ///< why nothing could be run
    double seconds = 0;
    QStringList forModern; ///< sources that failed for JavaScript which modern compressors minify

    [[nodiscard]] bool isOfStart() const { return manner.isEmpty(); }
    [[nodiscard]] RunTotals totals() const;
};

/// The end of a run in as many words as a button has room for.
struct ShortResult {
    bool isAllWell = true;
    QString text;    ///< "43 % saved", "3 of 6 failed"
    QString details; ///< "3 failed, 1 put back."
};
[[nodiscard]] ShortResult shortResult(const RunRecord &run);

/// "6 files · 412 kB → 233 kB · 43.4 % saved · 3 failed". The arrow points the way texts are read.
[[nodiscard]] QString totalsText(const RunRecord &run, const RunTotals &totals,
                                 Qt::LayoutDirection direction);

/// Parts that stand beside one another in the order in which texts are read, with dots between.
[[nodiscard]] QString joinedParts(QStringList parts, Qt::LayoutDirection direction);

/// A text that stands for itself among others, in whatever direction those are read.
[[nodiscard]] QString isolated(const QString &text);

/// What a state is called: "Put back".
[[nodiscard]] QString stateText(ResultRow::State state);

/// What a row has to say first: "68:58  Unexpected "}"", "The compressor left an empty output".
[[nodiscard]] QString messageText(const ResultRow &row);

/// Everything that compressor and check have said of a file.
[[nodiscard]] std::vector<CompressorMessage> messagesAbout(const ResultRow &row);

/// The first of them that is about a place in the source; if there is none, why the file failed.
[[nodiscard]] CompressorMessage firstPlaceIn(const ResultRow &row);

/// The folder of a file, with "~" for the home folder.
[[nodiscard]] QString folderText(const QString &path);

} // namespace brevant
