// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryResult.h"
#include "engine/RunObserver.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace brevant {

/// What a run of the terminal program came to.
class RunReport final {
public:
    void add(const EntryResult &result) { m_results.push_back(result); }

    /// How the run ended, and the queue it went through; what it did not come to is reported too. `reason`:
    /// why nothing could be run, if so.
    void finish(RunEnd end, const std::vector<QString> &entries, const QString &reason = QString());

    [[nodiscard]] int doneCount() const;
    [[nodiscard]] bool isAllDone() const;

    /// The closing lines for a reader: files, bytes, what was saved, where it stopped.
    [[nodiscard]] QString summary() const;

    /// One line for each file that was not minified; empty if there is none.
    [[nodiscard]] QString failures() const;

    /// A line for each thing that became of a file besides; empty if there is none.
    [[nodiscard]] QString notes() const;

    /// The report for machines; its format is described in brevant-cli's documentation.
    [[nodiscard]] QByteArray toJson() const;

private:
    std::vector<EntryResult> m_results;
    std::vector<QString> m_notRun;
    QString m_reason; ///< why nothing could be run
    RunEnd m_end = RunEnd::Completed;
};

} // namespace brevant
