// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/ResultRuns.h"

using namespace Qt::StringLiterals;

namespace brevant::test {

inline ResultRow row(ResultRow::State state, const QString &source, qint64 before = ResultRow::noSize,
                     qint64 after = ResultRow::noSize, const QString &reason = {})
{
    ResultRow made(state, source);
    made.output = source + u".out"_s;
    made.sizeBefore = before;
    made.sizeAfter = after;
    if (!reason.isEmpty())
        made.remarks = std::make_shared<ResultRemarks>(ResultRemarks{reason, {}, {}});
    return made;
}

/// A failure with a message about a place in the source.
inline ResultRow failure(const QString &source, const QString &text, qint64 line, qint64 column)
{
    ResultRow made = row(ResultRow::State::Failed, source, 100);
    ResultRemarks remarks{text, {}, {}};
    remarks.messages.shown.push_back({CompressorMessage::Kind::Error, text, line, column});
    made.remarks = std::make_shared<ResultRemarks>(remarks);
    return made;
}

/// A run of these rows, from its beginning to its end.
inline void addRun(ResultRuns &runs, int number, const std::vector<ResultRow> &rows)
{
    runs.start(number, u"Classic compressors"_s);
    RunEnding ending;
    for (const ResultRow &made : rows) {
        runs.startFile(number, made.source, static_cast<int>(rows.size()));
        runs.endFile(number, made);
        ending.minified += made.isMinified() ? 1 : 0;
        ++ending.count;
    }
    runs.end(number, ending);
}

/// A run with a file in each state that a run can leave.
inline std::vector<ResultRow> mixedRows()
{
    using State = ResultRow::State;
    return {row(State::Done, u"/w/b.css"_s, 1000, 600), failure(u"/w/a.js"_s, u"Unexpected \"}\""_s, 68, 58),
            row(State::Skipped, u"/w/sub/d.css"_s, 50, ResultRow::noSize, u"not minified, as x"_s),
            row(State::Warned, u"/w/c.html"_s, 3000, 1500, u"the gzip copy could not be made"_s),
            row(State::PutBack, u"/w/e.js"_s, 70, 70, u"the compressor failed; the source was put back"_s)};
}

} // namespace brevant::test
