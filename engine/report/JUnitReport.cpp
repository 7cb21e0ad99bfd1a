// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/Faults.h"
#include "engine/report/Report.h"
#include "engine/report/SourceLine.h"

#include "files/RawBytes.h"

#include <QXmlStreamWriter>

#include <algorithm>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

using State = ResultRow::State;

/// XML can hold neither these two nor control characters, which printable() has escaped.
QString forXml(QString text)
{
    for (const char16_t noCharacter : {u'\uFFFE', u'\uFFFF'})
        text.replace(noCharacter, QChar::ReplacementCharacter);
    return text;
}

/// Whether it counts against the exit status.
bool isFailure(const ResultRow &row)
{
    return !row.reason().isEmpty() ||
           (row.remarks && row.remarks->checked && row.remarks->checked->isSuspicious());
}

QString asSeconds(double value)
{
    return QString::number(value, 'f', 3);
}

/// "site/a.js:3:5: Unexpected", the line of the source, and a mark below the place.
QString lineFor(const Report &report, const ResultRow &row, const Fault &fault)
{
    QString text = report.shownPath(row.source);
    if (fault.line > 0)
        text += u":%1"_s.arg(fault.line);
    if (fault.column > 0)
        text += u":%1"_s.arg(fault.column);
    text += u": %1\n"_s.arg(printable(fault.text));
    const auto line = sourceLineAt(row.source, fault.line, fault.column, report.encodingOf(row.source));
    if (line)
        text += u"    %1\n"_s.arg(line->text());
    if (line && fault.column > 0)
        text += QString(4 + line->before.size(), u' ') + u"^\n"_s;
    return forXml(text);
}

void writeFaults(QXmlStreamWriter &xml, const Report &report, const ResultRow &row)
{
    const std::vector<Fault> faults = faultsOf(row);
    if (faults.empty())
        return;
    QString text;
    for (const Fault &fault : faults)
        text += lineFor(report, row, fault);
    if (!isFailure(row)) {
        xml.writeTextElement(u"system-out"_s, text);
        return;
    }
    const bool isError = faults.front().kind == Fault::Kind::Error;
    xml.writeStartElement(u"failure"_s);
    xml.writeAttribute(u"message"_s, forXml(printable(faults.front().text)));
    xml.writeAttribute(u"type"_s, isError ? u"error"_s : u"warning"_s);
    xml.writeCharacters(text);
    xml.writeEndElement();
}

void writeCase(QXmlStreamWriter &xml, const Report &report, const ResultRow &row)
{
    const QString path = forXml(report.shownPath(row.source));
    xml.writeStartElement(u"testcase"_s);
    xml.writeAttribute(u"name"_s, path);
    xml.writeAttribute(u"classname"_s, u"brevant"_s);
    xml.writeAttribute(u"file"_s, path);
    xml.writeAttribute(u"time"_s, asSeconds(row.seconds));
    writeFaults(xml, report, row);
    if (row.state == State::NotRun) {
        xml.writeEmptyElement(u"skipped"_s);
        xml.writeAttribute(u"message"_s,
                           report.reason.isEmpty() ? u"not run"_s : forXml(printable(report.reason)));
    }
    xml.writeEndElement();
}

void writeCounts(QXmlStreamWriter &xml, const Report &report)
{
    const std::pair<QString, qsizetype> counts[]{
        {u"tests"_s, report.rows.size()},
        {u"failures"_s, std::ranges::count_if(report.rows, isFailure)},
        {u"errors"_s, 0},
        {u"skipped"_s, std::ranges::count(report.rows, State::NotRun, &ResultRow::state)}};
    xml.writeAttribute(u"name"_s, u"brevant"_s);
    for (const auto &[name, count] : counts)
        xml.writeAttribute(name, QString::number(count));
    xml.writeAttribute(u"time"_s, asSeconds(report.seconds));
}

} // namespace

QByteArray reportAsJUnit(const Report &report)
{
    QByteArray bytes;
    QXmlStreamWriter xml(&bytes);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(u"testsuites"_s);
    writeCounts(xml, report);
    xml.writeStartElement(u"testsuite"_s);
    writeCounts(xml, report);
    xml.writeAttribute(u"timestamp"_s, report.started.toString(u"yyyy-MM-ddTHH:mm:ss"_s));
    for (const ResultRow &row : report.rows)
        writeCase(xml, report, row);
    xml.writeEndDocument();
    return bytes;
}

} // namespace brevant
