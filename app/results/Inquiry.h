// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/ResultRow.h"
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
/// would minify. Where nothing is to be asked, the results of the runs are checked, the last run's first. One
/// thing at a time, on a thread of its own, and none while a run is on: a run that begins ends it, and it is
/// done later. What is found out goes to the runs.
class Inquiry final : public QObject {
    Q_OBJECT

public:
    /// All of these must outlive it.
    Inquiry(ResultRuns &runs, const SettingsStore &settings, const Tools &tools);

    /// Ends the question under way; a check, once it is through with its file.
    ~Inquiry() override;

    /// Asks why that file of a run failed, before all else. What was wanted before is dropped.
    void wantReason(int run, int row);

    /// Asks which failures of a run modern compressors would not have.
    void wantModern(int run);

    /// Asks nothing more. Results are checked all the same.
    void wantNothing();

    /// Whether it is being asked why that file failed.
    [[nodiscard]] bool isAskingWhy(int run, int row) const
    {
        return m_question && m_question->about == Question::Reason && m_question->run == run &&
               m_question->row == row;
    }

Q_SIGNALS:
    /// Another question, or none, is under way.
    void changed();

    /// The last results of a run have been checked.
    void checked(int run);

private:
    struct Question {
        enum About { Reason, Modern, Results };

        About about = Reason;
        int run = 0;
        int row = 0; ///< of a failure
        QStringList arguments{};
        int status = 0;
        std::vector<std::pair<int, ResultRow>> results{}; ///< and which rows those are
    };
    struct Answer {
        CompressorMessages messages{};
        bool isForModern = false;
        std::vector<CheckedFile> checked{}; ///< of the first of the results
    };
    [[nodiscard]] std::optional<Question> questionAbout(int run, int row, Question::About about) const;
    [[nodiscard]] std::optional<Question> nextQuestion();
    [[nodiscard]] std::optional<Question> nextCheck();
    [[nodiscard]] Answer ask(const Question &question) const;
    [[nodiscard]] std::vector<CheckedFile> check(const Question &question) const;
    void askNext();
    void stop();
    void take(const Answer &answer);
    void takeChecked(const Question &question, const Answer &answer);

    ResultRuns &m_runs;
    const SettingsStore &m_settings;
    const Tools &m_tools;
    std::optional<std::pair<int, int>> m_wantedReason; ///< run and row
    std::optional<int> m_wantedModern;                 ///< run
    std::map<int, int> m_asked;   ///< by run: the rows before this one have been asked about
    std::map<int, int> m_checked; ///< by run: no row before this one is to be checked
    std::optional<Question> m_question;
    std::atomic<Stop> m_stop = Stop::No;
    std::jthread m_thread;
};

} // namespace brevant
