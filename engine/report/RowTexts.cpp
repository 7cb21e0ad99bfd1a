// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/report/RowTexts.h"

#include "files/RawBytes.h"
#include "files/SizeText.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <numeric>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using State = ResultRow::State;
using Kind = CompressorMessage::Kind;

const QString dash = QStringLiteral("–");

/// Makes what it begins read from the right.
constexpr QChar rightToLeftMark(0x200F);

QString beginningWithCapital(QString sentence)
{
    if (!sentence.isEmpty())
        sentence[0] = sentence[0].toUpper();
    return sentence;
}

} // namespace

RunTotals totalsOf(const std::vector<ResultRow> &rows)
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

QStringList RunTotals::lackTexts() const
{
    QStringList texts;
    for (const State state : {State::Failed, State::PutBack, State::Skipped, State::NotRun}) {
        if (const int files = count(state); files > 0)
            texts.append(u"%1 %2"_s.arg(files).arg(stateText(state).toLower()));
    }
    if (const int files = count(State::Warned); files > 0)
        texts.append(u"%1 with warnings"_s.arg(files));
    return texts;
}

QString RunTotals::Sizes::savedText(bool isWhole) const
{
    const QString percent = percentSaved(before, after);
    const double number = isWhole ? std::round(percent.toDouble()) : percent.toDouble();
    return number < 0 ? u"%1 % larger"_s.arg(-number) : u"%1 % saved"_s.arg(number);
}

QString totalsText(const RunTotals &totals, Qt::LayoutDirection direction)
{
    const int count = std::accumulate(totals.counts.begin(), totals.counts.end(), 0);
    QStringList parts{count == 1 ? u"1 file"_s : u"%1 files"_s.arg(count)};
    if (totals.count(State::Done) + totals.count(State::Warned) > 0) {
        const QString before = sizeText(totals.all.before);
        const QString after = sizeText(totals.all.after);
        parts << (direction == Qt::RightToLeft
                      ? rightToLeftMark + isolated(before) + u" ← "_s + isolated(after)
                      : u"%1 → %2"_s.arg(before, after))
              << totals.all.savedText();
    }
    parts += totals.lackTexts();
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

QString sizeOrDash(qint64 size)
{
    return size == ResultRow::noSize ? dash : sizeText(size);
}

QString secondsText(double seconds)
{
    return seconds > 0 ? u"%1 s"_s.arg(seconds, 0, 'f', seconds < 10 ? 2 : 1) : dash;
}

QString savedText(const ResultRow &row)
{
    const std::optional<double> part = row.savedPart();
    return part ? u"%1 %"_s.arg(*part * 100, 0, 'f', 1) : dash;
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

} // namespace brevant
