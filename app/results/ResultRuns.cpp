// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/ResultRuns.h"

#include "files/PathString.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr std::size_t mostRuns = 10;
constexpr int numberOfStart = 0; // runs have numbers from 1

ResultRow::State stateOf(StartNews::Kind kind)
{
    switch (kind) {
    case StartNews::Kind::PutBack:
        return ResultRow::State::PutBack;
    case StartNews::Kind::Kept:
        return ResultRow::State::Skipped;
    case StartNews::Kind::Failed:
        return ResultRow::State::Failed;
    }
    Q_UNREACHABLE();
}

} // namespace

void ResultRuns::start(int run, const QString &manner)
{
    RunRecord record;
    record.number = run;
    record.manner = manner;
    record.isRunning = true;
    add(std::move(record));
}

void ResultRuns::startFile(int run, const QString &source, int count)
{
    const std::shared_ptr<RunRecord> record = recordOf(run);
    if (!record)
        return;
    record->expected = std::max(count, static_cast<int>(record->rows.size()) + 1);
    addRow(*record, ResultRow(ResultRow::State::Running, source));
}

void ResultRuns::endFile(int run, const ResultRow &row)
{
    const std::shared_ptr<RunRecord> record = recordOf(run);
    if (!record || record->rows.empty())
        return;
    record->rows.back() = row;
    Q_EMIT rowChanged(run, static_cast<int>(record->rows.size()) - 1);
}

void ResultRuns::end(int run, const RunEnding &ending)
{
    const std::shared_ptr<RunRecord> record = recordOf(run);
    if (!record)
        return;
    // One whose compressor could not be started.
    if (!record->rows.empty() && record->rows.back().state == ResultRow::State::Running)
        endFile(run, ResultRow(ResultRow::State::NotRun, record->rows.back().source));
    record->rows.reserve(record->rows.size() + static_cast<std::size_t>(ending.notRun.size()));
    for (const QString &source : ending.notRun)
        addRow(*record, ResultRow(ResultRow::State::NotRun, source));
    record->isRunning = false;
    record->minified = ending.minified;
    record->count = ending.count;
    record->reason = ending.reason;
    record->seconds = ending.seconds;
    Q_EMIT ended(run);
}

void ResultRuns::explain(int run, int row, const CompressorMessages &messages)
{
    const std::shared_ptr<RunRecord> record = recordOf(run);
    if (!record)
        return;
    ResultRow &file = record->rows.at(static_cast<std::size_t>(row));
    ResultRemarks remarks = *file.remarks;
    remarks.messages = messages;
    remarks.isExplained = true;
    file.remarks = std::make_shared<ResultRemarks>(std::move(remarks));
    Q_EMIT rowChanged(run, row);
}

void ResultRuns::setChecked(int run, int row, const CheckedFile &checked)
{
    const std::shared_ptr<RunRecord> record = recordOf(run);
    if (!record)
        return;
    record->rows.at(static_cast<std::size_t>(row)).setChecked(checked);
    if (checked != CheckedFile())
        Q_EMIT rowChanged(run, row);
}

void ResultRuns::restore(int run, int row, const RestoredSource &restored)
{
    using enum RestoredSource::Outcome;
    const std::shared_ptr<RunRecord> record = recordOf(run);
    if (!record || restored.outcome == Changed)
        return;
    ResultRow &file = record->rows.at(static_cast<std::size_t>(row));
    ResultRemarks remarks = *file.remarks;
    const QString lacks = restored.lacks.isEmpty() ? QString() : u", but not its "_s + restored.lacks;
    if (restored.outcome == Restored) {
        file.state = ResultRow::State::PutBack;
        file.basis.reset();
        remarks.reason = u"the original was put back"_s + lacks;
        remarks.original.clear();
        remarks.isRestored = true;
    } else {
        const QString note = restored.outcome == Beside
                                 ? u"its original is beside it, as %1%2"_s.arg(
                                       PathString::lastComponent(restored.path).toString(), lacks)
                                 : u"its original could not be put back: "_s + restored.error;
        if (!remarks.notes.contains(note))
            remarks.notes.append(note);
    }
    file.remarks = std::make_shared<ResultRemarks>(std::move(remarks));
    Q_EMIT rowChanged(run, row);
}

void ResultRuns::addForModern(int run, int row)
{
    if (const std::shared_ptr<RunRecord> record = recordOf(run)) {
        record->forModern.append(record->rows.at(static_cast<std::size_t>(row)).source);
        Q_EMIT forModernChanged(run);
    }
}

void ResultRuns::addStart(const std::vector<StartNews> &news)
{
    RunRecord record;
    record.number = numberOfStart;
    for (const StartNews &one : news) {
        ResultRow &row = record.rows.emplace_back(stateOf(one.kind), one.source);
        row.remarks = std::make_shared<ResultRemarks>(ResultRemarks{one.sentence, {}, {}});
    }
    add(std::move(record));
}

void ResultRuns::add(RunRecord record)
{
    const int number = record.number;
    record.started = QDateTime::currentDateTime();
    m_all.push_back(std::make_shared<RunRecord>(std::move(record)));
    const auto oldest = std::ranges::find(m_all, false, [](const auto &run) { return run->isRunning; });
    if (m_all.size() > mostRuns && oldest != m_all.end())
        m_all.erase(oldest);
    Q_EMIT added(number);
}

void ResultRuns::addRow(RunRecord &record, const ResultRow &row)
{
    record.rows.push_back(row);
    Q_EMIT rowAdded(record.number, static_cast<int>(record.rows.size()) - 1);
}

bool ResultRuns::isAnyRunning() const
{
    return std::ranges::any_of(m_all, [](const auto &run) { return run->isRunning; });
}

std::shared_ptr<RunRecord> ResultRuns::recordOf(int run) const
{
    const auto found = std::ranges::find(m_all, run, [](const auto &record) { return record->number; });
    return found == m_all.end() ? nullptr : *found;
}

} // namespace brevant
