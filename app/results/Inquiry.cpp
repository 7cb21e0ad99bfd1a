// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/results/Inquiry.h"

#include "app/results/ResultRuns.h"
#include "engine/CompressorCommand.h"
#include "engine/Tools.h"
#include "engine/classic/Explanation.h"

#include <system_error>
#include <utility>

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
    if (questionAbout(run, row, true) && !isAskingWhy(run, row))
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
    m_stop = Stop::AtOnce; // set back for the next question
}

/// Nothing if there is no more to be found out about that row.
std::optional<Inquiry::Question> Inquiry::questionAbout(int run, int row, bool isWhy) const
{
    const std::shared_ptr<const RunRecord> record = m_runs.find(run);
    if (!record || row < 0 || row >= static_cast<int>(record->rows.size()))
        return std::nullopt;
    const ResultRow &file = record->rows[static_cast<std::size_t>(row)];
    if (file.isMinified() || !file.remarks || file.remarks->arguments.isEmpty() ||
        (isWhy && file.remarks->isExplained))
        return std::nullopt;
    return Question{run, row, isWhy, file.remarks->arguments, file.remarks->status};
}

std::optional<Inquiry::Question> Inquiry::nextQuestion()
{
    if (m_wantedReason) {
        if (auto question = questionAbout(m_wantedReason->first, m_wantedReason->second, true))
            return question;
    }
    const std::shared_ptr<const RunRecord> record = m_wantedModern ? m_runs.find(*m_wantedModern) : nullptr;
    if (!record)
        return std::nullopt;
    int &row = m_asked[record->number];
    for (; row < static_cast<int>(record->rows.size()); ++row) {
        if (auto question = questionAbout(record->number, row, false))
            return question;
    }
    return std::nullopt;
}

Inquiry::Answer Inquiry::ask(const Question &question) const
{
    if (question.isWhy)
        return {explainFailure(question.arguments, m_tools, m_stop).messages, false};
    return {{},
            isForModern(question.arguments, question.status, CompressorCommand(m_settings), m_tools, m_stop)};
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
    if (m_stop == Stop::No && question.isWhy) {
        m_runs.explain(question.run, question.row, answer.messages);
    } else if (m_stop == Stop::No) {
        ++m_asked[question.run];
        if (answer.isForModern)
            m_runs.addForModern(question.run, question.row);
    }
    Q_EMIT changed();
    askNext();
}

} // namespace brevant
