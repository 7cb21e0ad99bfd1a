// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"
#include "engine/modern/FilterMessages.h"

#include <QObject>
#include <QStringList>

#include <atomic>
#include <map>
#include <optional>
#include <thread>

namespace brevant {

class ResultRuns;
class SettingsStore;
struct Tools;

/// Asks compressors about failures of classic ones: why a file failed, and which files modern compressors
/// would minify. One question at a time, on a thread of its own, and none while a run is on: a run that
/// begins ends it, and it is asked again later. What is found out goes to the runs.
class Inquiry final : public QObject {
    Q_OBJECT

public:
    /// All of these must outlive it.
    Inquiry(ResultRuns &runs, const SettingsStore &settings, const Tools &tools);

    /// Ends the question under way.
    ~Inquiry() override;

    /// Asks why that file of a run failed, before all else. What was wanted before is dropped.
    void wantReason(int run, int row);

    /// Asks which failures of a run modern compressors would not have.
    void wantModern(int run);

    /// Asks nothing more.
    void wantNothing();

    /// Whether it is being asked why that file failed.
    [[nodiscard]] bool isAskingWhy(int run, int row) const
    {
        return m_question && m_question->isWhy && m_question->run == run && m_question->row == row;
    }

Q_SIGNALS:
    /// Another question, or none, is under way.
    void changed();

private:
    struct Question {
        int run = 0;
        int row = 0;
        bool isWhy = false; ///< else whether it is for modern compressors
        QStringList arguments;
        int status = 0;
    };
    struct Answer {
        CompressorMessages messages;
        bool isForModern = false;
    };
    [[nodiscard]] std::optional<Question> questionAbout(int run, int row, bool isWhy) const;
    [[nodiscard]] std::optional<Question> nextQuestion();
    [[nodiscard]] Answer ask(const Question &question) const;
    void askNext();
    void stop();
    void take(const Answer &answer);

    ResultRuns &m_runs;
    const SettingsStore &m_settings;
    const Tools &m_tools;
    std::optional<std::pair<int, int>> m_wantedReason; ///< run and row
    std::optional<int> m_wantedModern;                 ///< run
    std::map<int, int> m_asked; ///< by run: the rows before this one have been asked about
    std::optional<Question> m_question;
    std::atomic<Stop> m_stop = Stop::No;
    std::jthread m_thread;
};

} // namespace brevant
