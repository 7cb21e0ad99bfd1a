// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/Report.h"

#include "engine/report/RowTexts.h"
#include "files/RawBytes.h"

namespace brevant {

using namespace Qt::StringLiterals;

/// No cell ends early, and nothing in it is taken for markup.
static QString markdownCell(QString text)
{
    for (const QChar special : u"\\`*_[]<>|~&"_s)
        text.replace(special, u'\\' + QString(special));
    return text;
}

QString Report::shownPath(const QString &path) const
{
    const bool isBelow = !folder.isEmpty() && path.startsWith(folder + u'/');
    return printable(isBelow ? path.sliced(folder.size() + 1) : path);
}

QByteArray reportAsMarkdown(const Report &report)
{
    QString text = u"# Brevant, %1\n\n%2\n\n"_s.arg(report.started.toString(u"yyyy-MM-dd HH:mm"_s),
                                                    totalsText(totalsOf(report.rows), Qt::LeftToRight));
    if (!report.reason.isEmpty())
        text += markdownCell(printable(report.reason)) + u"\n\n"_s;
    if (report.rows.empty())
        return text.toUtf8();
    text += u"| State | File | Before | After | Saved | gzip | Brotli | Time | Message |\n"
            "|---|---|--:|--:|--:|--:|--:|--:|---|\n"_s;
    for (const ResultRow &row : report.rows) {
        QStringList cells{stateText(row.state),
                          markdownCell(report.shownPath(row.source)),
                          sizeOrDash(row.sizeBefore),
                          sizeOrDash(row.isMinified() ? row.sizeAfter : ResultRow::noSize),
                          savedText(row),
                          sizeOrDash(row.gzipSize),
                          sizeOrDash(row.brotliSize),
                          secondsText(row.seconds),
                          markdownCell(messageText(row))};
        text += u"| %1 |\n"_s.arg(cells.join(u" | "));
    }
    return text.toUtf8();
}

} // namespace brevant
