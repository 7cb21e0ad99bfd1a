// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ResultRow.h"

#include "files/RawBytes.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using State = ResultRow::State;

bool hasWarning(const CompressorMessages &messages)
{
    return std::ranges::any_of(messages.shown, [](const CompressorMessage &message) {
        return message.kind == CompressorMessage::Kind::Warning;
    });
}

State stateOf(const EntryResult &result)
{
    using enum EntryResult::Outcome;
    if (result.outcome == Done)
        return hasWarning(result.messages) ? State::Warned : State::Done;
    if (result.sourceState == EntryResult::Source::PutBack)
        return State::PutBack;
    if (result.outcome == NotSafe || result.outcome == Refused)
        return State::Skipped;
    return result.isMinified() ? State::Warned : State::Failed;
}

QJsonValue orNull(qint64 size)
{
    return size == ResultRow::noSize ? QJsonValue(QJsonValue::Null) : QJsonValue(size);
}

QJsonArray toArray(const std::vector<CompressorMessage> &messages)
{
    using Kind = CompressorMessage::Kind;
    QJsonArray array;
    for (const CompressorMessage &message : messages) {
        const QString kind = message.kind == Kind::Error     ? u"error"_s
                             : message.kind == Kind::Warning ? u"warning"_s
                                                             : u"information"_s;
        QJsonObject object{{u"kind"_s, kind}, {u"text"_s, message.text}};
        if (message.line > 0) {
            object.insert(u"line"_s, message.line);
            object.insert(u"column"_s, message.column);
        }
        array.append(object);
    }
    return array;
}

QJsonArray toArray(const QList<ResultWarning> &warnings)
{
    QJsonArray array;
    for (const ResultWarning &warning : warnings) {
        QJsonObject object{{u"kind"_s, warning.isNote() ? u"note"_s : u"warning"_s},
                           {u"text"_s, warning.sentence()}};
        if (warning.line > 0)
            object.insert(u"line"_s, warning.line);
        if (!warning.within.isEmpty())
            object.insert(u"within"_s, QJsonArray::fromStringList(warning.within));
        for (const auto &[name, value] : {std::pair(u"selector"_s, warning.selector),
                                          {u"property"_s, warning.property},
                                          {u"before"_s, warning.before},
                                          {u"after"_s, warning.after}}) {
            if (!value.isEmpty())
                object.insert(name, value);
        }
        array.append(object);
    }
    return array;
}

QString outcomeOf(const ResultRow &row)
{
    if (row.state == State::NotRun)
        return u"not run"_s;
    return row.reason().isEmpty() ? u"done"_s : u"failed"_s;
}

QJsonObject toObject(const ResultRow &row)
{
    QJsonObject object{{u"source"_s, RawBytes::escaped(row.source)}, {u"outcome"_s, outcomeOf(row)}};
    if (row.state == State::NotRun)
        return object;
    object.insert(u"output"_s,
                  row.output.isNull() ? QJsonValue(QJsonValue::Null) : RawBytes::escaped(row.output));
    object.insert(u"sizeBefore"_s, orNull(row.sizeBefore));
    object.insert(u"sizeAfter"_s, orNull(row.sizeAfter));
    object.insert(u"gzipSize"_s, orNull(row.gzipSize));
    object.insert(u"seconds"_s, std::round(row.seconds * 1000) / 1000);
    if (row.brotliSize != ResultRow::noSize)
        object.insert(u"brotliSize"_s, row.brotliSize);
    if (!row.remarks)
        return object;
    if (!row.remarks->reason.isEmpty())
        object.insert(u"reason"_s, row.remarks->reason);
    if (!row.remarks->messages.shown.empty())
        object.insert(u"messages"_s, toArray(row.remarks->messages.shown));
    if (!row.remarks->notes.isEmpty())
        object.insert(u"notes"_s, QJsonArray::fromStringList(row.remarks->notes));
    if (const std::optional<CheckedFile> &checked = row.remarks->checked;
        checked && checked->obstacle.isEmpty())
        object.insert(u"warnings"_s, toArray(checked->warnings));
    else if (checked)
        object.insert(u"notChecked"_s, checked->obstacle);
    return object;
}

} // namespace

ResultRow::ResultRow(const EntryResult &result)
    : state(stateOf(result)), source(result.source), output(result.output.value_or(QString())),
      sizeBefore(result.sizeBefore.value_or(noSize)), sizeAfter(result.sizeAfter.value_or(noSize)),
      gzipSize(result.gzipSize.value_or(noSize)), brotliSize(result.brotliSize.value_or(noSize)),
      seconds(result.seconds), basis(result.basis)
{
    const QString why = result.reason();
    const bool isKeepingSaid = !result.original.isEmpty() || !result.notKept.isEmpty();
    if (why.isEmpty() && result.messages.shown.empty() && result.notes.isEmpty() && !isKeepingSaid)
        return;
    ResultRemarks made{why, result.messages, result.notes, result.arguments, result.status};
    made.original = result.original;
    made.notKept = result.notKept;
    remarks = std::make_shared<ResultRemarks>(std::move(made));
}

std::optional<double> ResultRow::savedPart() const
{
    if (!isMinified() || sizeBefore == noSize || sizeAfter == noSize)
        return std::nullopt;
    return sizeBefore == 0 ? 0 : 1 - static_cast<double>(sizeAfter) / static_cast<double>(sizeBefore);
}

void ResultRow::setChecked(const CheckedFile &checked)
{
    basis.reset();
    // Most of 100,000 rows may have nothing else to say.
    static const auto allWell =
        std::make_shared<const ResultRemarks>(ResultRemarks{{}, {}, {}, {}, 0, CheckedFile()});
    if (!remarks && checked == CheckedFile()) {
        remarks = allWell;
        return;
    }
    auto more = remarks ? std::make_shared<ResultRemarks>(*remarks) : std::make_shared<ResultRemarks>();
    more->checked = checked;
    remarks = more;
    if (state == State::Done && checked.isSuspicious())
        state = State::Warned;
}

QByteArray reportAsJson(const std::vector<ResultRow> &rows, const QString &reason)
{
    QJsonArray files;
    QStringList reasons(reason.isEmpty() ? 0 : 1, reason);
    qint64 done = 0;
    qint64 notRun = 0;
    for (const ResultRow &row : rows) {
        if (row.source.isEmpty()) { // about a folder of originals
            reasons.append(row.reason());
            continue;
        }
        files.append(toObject(row));
        const QString outcome = outcomeOf(row);
        done += outcome == u"done" ? 1 : 0;
        notRun += outcome == u"not run" ? 1 : 0;
    }
    QJsonObject report{
        {u"version"_s, reportVersion},
        {u"brevant"_s, QStringLiteral(BREVANT_VERSION)},
        {u"done"_s, done},
        {u"failed"_s, files.size() - done - notRun},
        {u"notRun"_s, notRun},
        {u"files"_s, files},
    };
    if (!reasons.isEmpty())
        report.insert(u"reason"_s, reasons.join(u' '));
    return QJsonDocument(report).toJson();
}

QString percentSaved(qint64 before, qint64 after)
{
    if (before == 0)
        return u"0"_s;
    const double percent = 100.0 * static_cast<double>(before - after) / static_cast<double>(before);
    const auto tenths = static_cast<double>(std::llround(percent * 10)); // an integer has no "-0"
    return QString::number(tenths / 10, 'g', 15);
}

} // namespace brevant
