// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/RunReport.h"

#include "cli/TerminalText.h"
#include "files/RawBytes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace brevant {

namespace {

QString counted(qint64 count)
{
    return count == 1 ? QStringLiteral("1 file")
                      : QStringLiteral("%1 files").arg(TerminalText::grouped(count));
}

QJsonValue orNull(std::optional<qint64> number)
{
    return number ? QJsonValue(*number) : QJsonValue(QJsonValue::Null);
}

QJsonObject toObject(const EntryResult &result)
{
    const bool done = result.outcome == EntryResult::Outcome::Done;
    QJsonObject object{
        {QStringLiteral("source"), RawBytes::escaped(result.source)},
        {QStringLiteral("output"),
         result.output ? QJsonValue(RawBytes::escaped(*result.output)) : QJsonValue(QJsonValue::Null)},
        {QStringLiteral("sizeBefore"), orNull(result.sizeBefore)},
        {QStringLiteral("sizeAfter"), orNull(result.sizeAfter)},
        {QStringLiteral("gzipSize"), orNull(result.gzipSize)},
        {QStringLiteral("seconds"), std::round(result.seconds * 1000) / 1000},
        {QStringLiteral("outcome"), done ? QStringLiteral("done") : QStringLiteral("failed")},
    };
    if (!done)
        object.insert(QStringLiteral("reason"), result.reason());
    if (!result.notes.isEmpty())
        object.insert(QStringLiteral("notes"), QJsonArray::fromStringList(result.notes));
    return object;
}

} // namespace

void RunReport::runEnded(RunEnd end, const QString &status)
{
    m_end = end;
    if (end == RunEnd::JavaNotStarted)
        m_failure = status;
    // The results are in the queue's order, and no entry is there twice.
    auto next = m_results.begin();
    for (const QString &entry : m_entries) {
        if (next != m_results.end() && next->source == entry)
            ++next;
        else
            m_notRun.append(entry);
    }
}

qsizetype RunReport::doneCount() const
{
    return std::ranges::count(m_results, EntryResult::Outcome::Done, &EntryResult::outcome);
}

QString RunReport::summary() const
{
    qint64 before = 0;
    qint64 after = 0;
    for (const EntryResult &result : m_results) {
        if (result.outcome == EntryResult::Outcome::Done) {
            before += result.sizeBefore.value_or(0);
            after += result.sizeAfter.value_or(0);
        }
    }
    QString text = QStringLiteral("%1: %2 -> %3 bytes, %4 % saved")
                       .arg(counted(doneCount()), TerminalText::grouped(before), TerminalText::grouped(after),
                            TerminalText::percentSaved(before, after));
    if (const qsizetype failed = endedCount() - doneCount(); failed > 0)
        text += QStringLiteral("; %1 failed").arg(TerminalText::grouped(failed));
    text += QStringLiteral(".\n");
    if (!m_notRun.isEmpty())
        text += QStringLiteral("Stopped before %1; %2 not minified.\n")
                    .arg(printable(m_notRun.first()), counted(m_notRun.size()));
    return text;
}

QString RunReport::failures() const
{
    QString text;
    for (const EntryResult &result : m_results) {
        if (result.outcome != EntryResult::Outcome::Done)
            text +=
                QStringLiteral("Failed: %1: %2\n").arg(printable(result.source), printable(result.reason()));
    }
    return text;
}

QString RunReport::notes() const
{
    QStringList notes;
    for (const EntryResult &result : m_results)
        notes += result.notes;
    notes.removeDuplicates(); // every worker says where its copies are
    QString text;
    for (const QString &note : notes)
        text += QStringLiteral("brevant-cli: %1\n").arg(printable(note));
    return text;
}

QByteArray RunReport::toJson() const
{
    QJsonArray files;
    for (const EntryResult &result : m_results)
        files.append(toObject(result));
    for (const QString &entry : m_notRun)
        files.append(QJsonObject{{QStringLiteral("source"), RawBytes::escaped(entry)},
                                 {QStringLiteral("outcome"), QStringLiteral("not run")}});
    QJsonObject report{
        {QStringLiteral("brevant"), QStringLiteral(BREVANT_VERSION)},
        {QStringLiteral("done"), doneCount()},
        {QStringLiteral("failed"), endedCount() - doneCount()},
        {QStringLiteral("notRun"), m_notRun.size()},
        {QStringLiteral("files"), files},
    };
    if (!m_failure.isEmpty())
        report.insert(QStringLiteral("reason"), m_failure);
    return QJsonDocument(report).toJson();
}

} // namespace brevant
