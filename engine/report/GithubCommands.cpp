// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/Faults.h"
#include "engine/report/Report.h"

#include "files/RawBytes.h"

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// As GitHub's own toolkit escapes what follows the second pair of colons.
QString escapedData(QString text)
{
    text.replace(u'%', u"%25"_s);
    text.replace(u'\r', u"%0D"_s);
    return text.replace(u'\n', u"%0A"_s);
}

/// And what stands between them.
QString escapedProperty(const QString &text)
{
    QString escaped = escapedData(text);
    escaped.replace(u':', u"%3A"_s);
    return escaped.replace(u',', u"%2C"_s);
}

QString nameOf(Fault::Kind kind)
{
    switch (kind) {
    case Fault::Kind::Error:
        return u"error"_s;
    case Fault::Kind::Warning:
        return u"warning"_s;
    case Fault::Kind::Note:
        return u"notice"_s;
    }
    Q_UNREACHABLE();
}

/// The whole path, which GitHub makes relative to the repository wherever the run began.
QString commandFor(const ResultRow &row, const Fault &fault)
{
    QStringList properties{u"file="_s + escapedProperty(RawBytes::escaped(row.source))};
    if (fault.line > 0)
        properties.append(u"line=%1"_s.arg(fault.line));
    if (fault.column > 0)
        properties.append(u"col=%1"_s.arg(fault.column));
    return u"::%1 %2::"_s.arg(nameOf(fault.kind), properties.join(u',')) +
           escapedData(RawBytes::escaped(fault.text)) + u'\n';
}

} // namespace

QByteArray reportAsGithubCommands(const Report &report)
{
    QString text;
    if (!report.reason.isEmpty())
        text += u"::error::"_s + escapedData(report.reason) + u'\n';
    for (const ResultRow &row : report.rows) {
        for (const Fault &fault : faultsOf(row))
            text += commandFor(row, fault);
    }
    const auto notRun = std::ranges::count(report.rows, ResultRow::State::NotRun, &ResultRow::state);
    if (notRun > 0)
        text += u"::warning::%1 of %2 files not run\n"_s.arg(notRun).arg(report.rows.size());
    return text.toUtf8();
}

} // namespace brevant
