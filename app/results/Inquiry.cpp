// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/Inquiry.h"

#include "app/results/ResultRuns.h"
#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "engine/classic/Explanation.h"

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <utility>

#include <sys/resource.h>
#include <unistd.h>

namespace brevant {

Inquiry::Inquiry(ResultRuns &runs, const SettingsStore &settings, const Tools &tools)
    : m_runs(runs), m_settings(settings), m_tools(tools)
{
    connect(&runs, &ResultRuns::added, this, &Inquiry::stop);
    connect(&runs, &ResultRuns::ended, this, &Inquiry::askNext);
}

Inquiry::~Inquiry()
{
    m_stop = Stop::AtOnce;
}

void Inquiry::wantReason(int run, int row)
{
    const std::pair wanted(run, row);
    if (m_wantedReason == wanted)
        return;
    m_wantedReason = wanted;
    if (questionAbout(run, row, Question::Reason) && !isAskingWhy(run, row))
        stop();
    askNext();
}

void Inquiry::wantModern(int run)
{
    m_wantedModern = run;
    askNext();
}

void Inquiry::wantNothing()
{
    m_wantedReason.reset();
    m_wantedModern.reset();
    stop();
}

void Inquiry::stop()
{
    m_stop = Stop::AtOnce; // set back for what comes next
}

/// Nothing if there is no more to be found out about that row.
std::optional<Inquiry::Question> Inquiry::questionAbout(int run, int row, Question::About about) const
{
    const std::shared_ptr<const RunRecord> record = m_runs.find(run);
    if (!record || row < 0 || row >= static_cast<int>(record->rows.size()))
        return std::nullopt;
    const ResultRow &file = record->rows[static_cast<std::size_t>(row)];
    if (file.isMinified() || !file.remarks || file.remarks->arguments.isEmpty() ||
        (about == Question::Reason && file.remarks->isExplained))
        return std::nullopt;
    return Question{about, run, row, file.remarks->arguments, file.remarks->status};
}

std::optional<Inquiry::Question> Inquiry::nextQuestion()
{
    if (m_wantedReason) {
        if (auto question = questionAbout(m_wantedReason->first, m_wantedReason->second, Question::Reason))
            return question;
    }
    const std::shared_ptr<const RunRecord> record = m_wantedModern ? m_runs.find(*m_wantedModern) : nullptr;
    if (!record)
        return nextCheck();
    int &row = m_asked[record->number];
    for (; row < static_cast<int>(record->rows.size()); ++row) {
        if (auto question = questionAbout(record->number, row, Question::Modern))
            return question;
    }
    return nextCheck();
}

/// The next results to be checked; more than can be in one piece.
std::optional<Inquiry::Question> Inquiry::nextCheck()
{
    constexpr std::size_t mostAtOnce = 200;
    auto runs = m_runs.all();
    std::ranges::reverse(runs); // the newest first
    for (const auto &record : runs) {
        const std::vector<ResultRow> &rows = record->rows;
        Question question{Question::Results, record->number};
        int &first = m_checked[question.run];
        for (int row = first; row < static_cast<int>(rows.size()) && question.results.size() < mostAtOnce;
             ++row) {
            if (rows[static_cast<std::size_t>(row)].basis)
                question.results.emplace_back(row, rows[static_cast<std::size_t>(row)]);
            else if (question.results.empty())
                first = row + 1;
        }
        if (!question.results.empty())
            return question;
    }
    return std::nullopt;
}

Inquiry::Answer Inquiry::ask(const Question &question) const
{
    switch (question.about) {
    case Question::Reason:
        return {.messages = explainFailure(question.arguments, m_tools, m_stop).messages};
    case Question::Modern:
        return {.isForModern = isForModern(question.arguments, question.status, CompressorCommand(m_settings),
                                           m_tools, m_stop)};
    case Question::Results:
        return {.checked = check(question)};
    }
    Q_UNREACHABLE();
}

/// As many of the results as there is time for before the others are to hear of them.
std::vector<CheckedFile> Inquiry::check(const Question &question) const
{
    // Whatever else is going on comes first. On Linux each thread has its own nice value: sched(7).
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), 10);
    const QDeadlineTimer end(std::chrono::milliseconds(200));
    std::vector<CheckedFile> checked;
    for (const auto &[row, file] : question.results) {
        if (m_stop != Stop::No || (!checked.empty() && end.hasExpired()))
            break;
        checked.push_back(file.basis->check(file.source, file.output));
    }
    return checked;
}

void Inquiry::askNext()
{
    if (m_question || m_runs.isAnyRunning())
        return;
    m_question = nextQuestion();
    if (!m_question)
        return;
    m_stop = Stop::No;
    try {
        m_thread = std::jthread([this, question = *m_question] {
            QMetaObject::invokeMethod(
                this, [this, answer = ask(question)] { take(answer); }, Qt::QueuedConnection);
        });
    } catch (const std::system_error &) {
        m_question.reset(); // no thread is to be had; the next wish tries again
    }
    Q_EMIT changed();
}

void Inquiry::take(const Answer &answer)
{
    const Question question = *std::exchange(m_question, std::nullopt);
    if (question.about == Question::Results) {
        takeChecked(question, answer);
    } else if (m_stop == Stop::No && question.about == Question::Reason) {
        m_runs.explain(question.run, question.row, answer.messages);
    } else if (m_stop == Stop::No) {
        ++m_asked[question.run];
        if (answer.isForModern)
            m_runs.addForModern(question.run, question.row);
    }
    Q_EMIT changed();
    askNext();
}

void Inquiry::takeChecked(const Question &question, const Answer &answer)
{
    for (std::size_t i = 0; i < answer.checked.size(); ++i)
        m_runs.setChecked(question.run, question.results[i].first, answer.checked[i]);
    const std::shared_ptr<const RunRecord> record = m_runs.find(question.run);
    const auto isUnchecked = [](const ResultRow &row) { return row.basis.has_value(); };
    if (record &&
        std::none_of(record->rows.begin() + question.results.front().first, record->rows.end(), isUnchecked))
        Q_EMIT checked(question.run);
}

} // namespace brevant
