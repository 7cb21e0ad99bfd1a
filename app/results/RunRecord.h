// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/report/RowTexts.h"

#include <QDateTime>
#include <QString>

#include <vector>

namespace brevant {

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
    [[nodiscard]] RunTotals totals() const { return totalsOf(rows); }
};

/// The end of a run in as many words as a button has room for.
struct ShortResult {
    bool isAllWell = true;
    QString text;    ///< "43 % saved", "3 of 6 failed"
    QString details; ///< "3 failed, 1 put back."
};
[[nodiscard]] ShortResult shortResult(const RunRecord &run);

/// Everything that compressor and check have said of a file.
[[nodiscard]] std::vector<CompressorMessage> messagesAbout(const ResultRow &row);

/// The first of them that is about a place in the source; if there is none, why the file failed.
[[nodiscard]] CompressorMessage firstPlaceIn(const ResultRow &row);

/// The folder of a file, with "~" for the home folder.
[[nodiscard]] QString folderText(const QString &path);

} // namespace brevant
