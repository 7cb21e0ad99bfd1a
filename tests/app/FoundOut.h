// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AppFixture.h"
#include "app/results/ResultTable.h"

#include <QRegularExpression>

#include <algorithm>

/// What Results has found out about files once their runs have ended.
namespace brevant::test {

inline bool isChecked(const ResultRow &row)
{
    return row.remarks && row.remarks->checked;
}

inline bool isExplained(const ResultRow &row)
{
    return row.remarks && row.remarks->isExplained;
}

inline bool isToBeChecked(const ResultRow &row)
{
    return row.basis.has_value();
}

/// Of the files of the last runs.
inline int countOf(const Application &app, bool (*is)(const ResultRow &))
{
    std::ptrdiff_t count = 0;
    for (const auto &run : app.results.runs.all())
        count += std::ranges::count_if(run->rows, is);
    return static_cast<int>(count);
}

/// Whether all results are checked, and it is known why the file that Results shows has failed.
inline bool isAllFoundOut(const Application &app)
{
    const ResultRow *const file = app.window.findChild<ResultTable *>()->currentFile();
    const bool canBeAsked = file && file->remarks && !file->remarks->arguments.isEmpty();
    return countOf(app, isToBeChecked) == 0 && (!canBeAsked || isExplained(*file));
}

/// The calls of the compressors but for those that are asked why they failed.
inline QStringList callsOfJobs(const AppFixture &app)
{
    static const QRegularExpression asked(u"\\t-o\\t[^\\t]*/brevant-[^\\t/]*/output"_s);
    QStringList calls = app.javaCalls();
    calls.removeIf([](const QString &call) { return call.contains(asked); });
    return calls;
}

} // namespace brevant::test
