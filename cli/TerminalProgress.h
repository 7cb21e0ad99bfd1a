// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/TerminalText.h"
#include "engine/RunObserver.h"

#include <QString>

#include <chrono>

namespace brevant {

class RunReport;

/// Shows a run on a terminal: one live line with a bar where there is a real one, else one line for each
/// file. Hands every result to the report.
class TerminalProgress final : public RunObserver {
public:
    enum class Style { Live, Lines, Quiet };

    TerminalProgress(RunReport &report, Style style) : m_report(report), m_style(style) {}

    /// Live on a terminal that can show such a line and where no Java runtime writes below it at each start.
    [[nodiscard]] static Style styleOfStandardOutput();

    /// The last status of the run.
    [[nodiscard]] const QString &status() const { return m_status; }

    void entryStarted(const EntryStart &start) override;
    void entryEnded(const EntryResult &result) override;
    void runEnded(RunEnd end, const QString &status) override;

private:
    using Clock = std::chrono::steady_clock;

    /// The control characters that erase the live line, if there is one to erase.
    [[nodiscard]] QString takeLiveLine();
    [[nodiscard]] QString liveLine(const EntryStart &start) const;
    [[nodiscard]] QString lineFor(const EntryResult &result) const;

    RunReport &m_report;
    const Style m_style;
    const Clock::time_point m_start = Clock::now();
    QString m_status;
    int m_done = 0;
    bool m_liveLineShown = false; ///< right above the cursor
};

} // namespace brevant
