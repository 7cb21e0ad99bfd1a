// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/Files.h"

#include <QList>

#include <algorithm>

namespace brevant::test {

/// A case of a table: "=== NAME", the source, "---" with or without a mark after it, and the result.
struct TableCase {
    QByteArray name;
    QByteArray source;
    QByteArray mark;
    QByteArray result;
};

/// The cases of a table in a file; none if one of them has no "---".
inline QList<TableCase> readCases(const QString &path)
{
    QByteArray table = readFile(path);
    if (table.endsWith('\n'))
        table.chop(1);
    const QByteArray separator("\n=== ");
    QList<TableCase> cases;
    for (qsizetype start = table.indexOf(separator); start >= 0;) {
        start += separator.size();
        const qsizetype next = table.indexOf(separator, start);
        const QByteArray text = next < 0 ? table.sliced(start) : table.sliced(start, next - start);
        const qsizetype source = text.indexOf('\n') + 1;
        const qsizetype line = text.indexOf("\n---", source - 1);
        const qsizetype lineEnd = text.indexOf('\n', line + 1);
        if (line < 0 || lineEnd < 0)
            return {};
        cases.append({text.first(source - 1), text.sliced(source, std::max<qsizetype>(line - source, 0)),
                      text.sliced(line + 4, lineEnd - line - 4).trimmed(), text.sliced(lineEnd + 1)});
        start = next;
    }
    return cases;
}

} // namespace brevant::test
