// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ReportTexts.h"

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

} // namespace brevant
