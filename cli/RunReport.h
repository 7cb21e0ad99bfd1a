// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace brevant {

/// The outcome of a run of the terminal program.
class RunReport : public RunObserver {
public:
    /// `entries`: the queue of the run, which does not change meanwhile.
    explicit RunReport(std::vector<QString> entries) : m_entries(std::move(entries)) {}

    void entryEnded(const EntryResult &result) override { m_results.push_back(result); }
    void runEnded(RunEnd end, const QString &status) override;

    /// How many entries have been worked on, successfully or not.
    [[nodiscard]] qsizetype endedCount() const { return static_cast<qsizetype>(m_results.size()); }
    [[nodiscard]] qsizetype doneCount() const;
    [[nodiscard]] bool isAllDone() const { return m_end == RunEnd::Completed && doneCount() == endedCount(); }

    /// Why nothing could be run; empty if that is not so.
    [[nodiscard]] const QString &failure() const { return m_failure; }

    /// The closing lines for a reader: files, bytes, what was saved, where it stopped.
    [[nodiscard]] QString summary() const;

    /// One line for each file that was not minified; empty if there is none.
    [[nodiscard]] QString failures() const;

    /// The notes of all results, one line each; empty if there are none.
    [[nodiscard]] QString notes() const;

    /// The report for machines; its format is described in brevant-cli's documentation.
    [[nodiscard]] QByteArray toJson() const;

private:
    const std::vector<QString> m_entries;
    std::vector<EntryResult> m_results;
    QStringList m_notRun;
    QString m_failure;
    RunEnd m_end = RunEnd::Completed;
};

} // namespace brevant
