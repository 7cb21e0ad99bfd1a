// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/RunRecord.h"

#include "files/PathString.h"
#include "files/RawBytes.h"
#include "widgets/Dialogs.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using State = ResultRow::State;
using Kind = CompressorMessage::Kind;

/// Makes what it begins read from the right.
constexpr QChar rightToLeftMark(0x200F);

/// "3 failed", "1 put back", "2 with warnings" and so on, of what did not go well.
QStringList lackTexts(const RunTotals &totals)
{
    QStringList texts;
    for (const State state : {State::Failed, State::PutBack, State::Skipped, State::NotRun}) {
        if (const int count = totals.count(state); count > 0)
            texts.append(u"%1 %2"_s.arg(count).arg(stateText(state).toLower()));
    }
    if (const int count = totals.count(State::Warned); count > 0)
        texts.append(u"%1 with warnings"_s.arg(count));
    return texts;
}

QString savedText(const RunTotals::Sizes &sizes, bool isWhole)
{
    const QString percent = percentSaved(sizes.before, sizes.after);
    const double number = isWhole ? std::round(percent.toDouble()) : percent.toDouble();
    return number < 0 ? u"%1 % larger"_s.arg(-number) : u"%1 % saved"_s.arg(number);
}

QString beginningWithCapital(QString sentence)
{
    if (!sentence.isEmpty())
        sentence[0] = sentence[0].toUpper();
    return sentence;
}

} // namespace

RunTotals RunRecord::totals() const
{
    RunTotals totals;
    const auto add = [](RunTotals::Sizes &sizes, const ResultRow &row) {
        sizes.before += std::max<qint64>(row.sizeBefore, 0);
        sizes.after += std::max<qint64>(row.sizeAfter, 0);
    };
    for (const ResultRow &row : rows) {
        ++totals.counts[static_cast<std::size_t>(row.state)];
        if (!row.isMinified())
            continue;
        add(totals.all, row);
        if (const FileKind *const kind = kindOf(row.source))
            add(totals.ofKinds[static_cast<std::size_t>(kind->family)], row);
    }
    return totals;
}

ShortResult shortResult(const RunRecord &run)
{
    const RunTotals totals = run.totals();
    const int lacking = run.count - run.minified;
    const QStringList details = lackTexts(totals);
    ShortResult result{.isAllWell = lacking <= 0 && details.isEmpty(),
                       .text = savedText(totals.all, true),
                       .details = details.isEmpty() ? QString() : details.join(u", ") + u'.'};
    if (lacking > 0)
        result.text =
            (lacking == totals.count(State::Failed) ? u"%1 of %2 failed"_s : u"%1 of %2 not minified"_s)
                .arg(lacking)
                .arg(run.count);
    return result;
}

QString totalsText(const RunRecord &run, const RunTotals &totals, Qt::LayoutDirection direction)
{
    const auto count = static_cast<int>(run.rows.size());
    QStringList parts{count == 1 ? u"1 file"_s : u"%1 files"_s.arg(count)};
    if (totals.count(State::Done) + totals.count(State::Warned) > 0) {
        const QString before = sizeText(totals.all.before);
        const QString after = sizeText(totals.all.after);
        parts << (direction == Qt::RightToLeft
                      ? rightToLeftMark + isolated(before) + u" ← "_s + isolated(after)
                      : u"%1 → %2"_s.arg(before, after))
              << savedText(totals.all, false);
    }
    parts += lackTexts(totals);
    return joinedParts(std::move(parts), direction);
}

QString joinedParts(QStringList parts, Qt::LayoutDirection direction)
{
    if (direction == Qt::LeftToRight)
        return parts.join(u" · ");
    std::ranges::transform(parts, parts.begin(), isolated);
    return rightToLeftMark + parts.join(u" · ");
}

QString isolated(const QString &text)
{
    constexpr QChar firstStrongIsolate(0x2068);
    constexpr QChar popDirectionalIsolate(0x2069);
    return firstStrongIsolate + text + popDirectionalIsolate;
}

QString stateText(State state)
{
    switch (state) {
    case State::Failed:
        return QCoreApplication::translate("Results", "Failed");
    case State::PutBack:
        return QCoreApplication::translate("Results", "Put back");
    case State::Skipped:
        return QCoreApplication::translate("Results", "Skipped");
    case State::NotRun:
        return QCoreApplication::translate("Results", "Not run");
    case State::Running:
        return QCoreApplication::translate("Results", "Running");
    case State::Warned:
    case State::Done:
        return QCoreApplication::translate("Results", "Done");
    }
    Q_UNREACHABLE();
}

QString messageText(const ResultRow &row)
{
    if (!row.remarks)
        return {};
    const CheckedFile checked = row.remarks->checked.value_or(CheckedFile());
    if (row.reason().isEmpty() && !checked.warnings.isEmpty())
        return (checked.isSuspicious() ? u"Warning: "_s : u"Note: "_s) + summaryOf(checked.warnings);
    const std::vector<CompressorMessage> &messages = row.remarks->messages.shown;
    const Kind wanted = row.isMinified() ? Kind::Warning : Kind::Error;
    const auto first = std::ranges::find(messages, wanted, &CompressorMessage::kind);
    // What was put back is said before why.
    if (first == messages.end() || row.state == State::PutBack || row.state == State::Skipped) {
        const QString reason = !row.reason().isEmpty() ? row.reason()
                               : messages.empty()      ? row.remarks->notes.value(0)
                                                       : messages.front().text;
        return beginningWithCapital(printable(reason));
    }
    const QString place = first->line > 0 ? u"%1:%2  "_s.arg(first->line).arg(first->column) : QString();
    const QString text = place + printable(first->text);
    return wanted == Kind::Warning ? u"Warning: "_s + text : text;
}

std::vector<CompressorMessage> messagesAbout(const ResultRow &row)
{
    if (!row.remarks)
        return {};
    std::vector<CompressorMessage> messages = row.remarks->messages.shown;
    for (const ResultWarning &warning : row.remarks->checked.value_or(CheckedFile()).warnings)
        messages.push_back({warning.isNote() ? Kind::Information : Kind::Warning, warning.withoutLine(u"→"_s),
                            warning.line, 0});
    return messages;
}

CompressorMessage firstPlaceIn(const ResultRow &row)
{
    const std::vector<CompressorMessage> messages = messagesAbout(row);
    const auto placed =
        std::ranges::find_if(messages, [](const CompressorMessage &message) { return message.line > 0; });
    if (placed != messages.end())
        return *placed;
    return row.isMinified() && !messages.empty() ? messages.front()
                                                 : CompressorMessage{Kind::Error, row.reason(), 0, 0};
}

QString folderText(const QString &path)
{
    return printable(PathString::withTilde(PathString::folder(path).toString()));
}

} // namespace brevant
