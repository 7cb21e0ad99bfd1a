// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ReportTexts.h"

#include "app/results/ResultModel.h"
#include "files/RawBytes.h"

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

QString number(qint64 size)
{
    return size == ResultRow::noSize ? QString() : QString::number(size);
}

QString quoted(QString value)
{
    const bool isPlain =
        !value.contains(u',') && !value.contains(u'"') && !value.contains(u'\n') && !value.contains(u'\r');
    return isPlain ? value : u'"' + value.replace(u'"', u"\"\""_s) + u'"';
}

QString csvLine(const QStringList &values)
{
    QStringList cells;
    for (const QString &value : values)
        cells.append(quoted(value));
    return cells.join(u',') + u"\r\n"_s;
}

/// No cell ends early, and nothing in it is taken for markup.
QString markdownCell(QString text)
{
    for (const QChar special : u"\\`*_[]<>|"_s)
        text.replace(special, u'\\' + QString(special));
    return text;
}

} // namespace

QByteArray reportAsCsv(const RunRecord &run)
{
    QString text = csvLine({u"state"_s, u"source"_s, u"output"_s, u"size before"_s, u"size after"_s,
                            u"gzip size"_s, u"Brotli size"_s, u"seconds"_s, u"message"_s});
    for (const ResultRow &row : run.rows)
        text += csvLine({stateText(row.state).toLower(), RawBytes::escaped(row.source),
                         RawBytes::escaped(row.output), number(row.sizeBefore), number(row.sizeAfter),
                         number(row.gzipSize), number(row.brotliSize), QString::number(row.seconds, 'f', 3),
                         messageText(row)});
    return text.toUtf8();
}

QByteArray reportAsMarkdown(const RunRecord &run)
{
    using Column = ResultModel::Column;
    QString text = u"# Brevant, %1\n\n%2\n\n"_s.arg(run.started.toString(u"yyyy-MM-dd HH:mm"_s),
                                                    totalsText(run, run.totals(), Qt::LeftToRight));
    text += u"| State | File | Before | After | Saved | gzip | Brotli | Time | Message |\n"
            "|---|---|--:|--:|--:|--:|--:|--:|---|\n"_s;
    for (const ResultRow &row : run.rows) {
        text += u"| %1 | %2 "_s.arg(stateText(row.state), markdownCell(printable(row.source)));
        for (const int column :
             {Column::Before, Column::After, Column::Saved, Column::Gzip, Column::Brotli, Column::Time})
            text += u"| %1 "_s.arg(ResultModel::text(row, column));
        text += u"| %1 |\n"_s.arg(markdownCell(messageText(row)));
    }
    return text.toUtf8();
}

} // namespace brevant
