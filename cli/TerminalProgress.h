// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RunReport.h"

#include <QString>

#include <chrono>

namespace brevant {

/// A report that shows the run as it goes on: on a live line with a bar on a real terminal, elsewhere with
/// one line for each file.
class TerminalProgress final : public RunReport {
public:
    enum class Style { Live, Lines, Quiet };

    TerminalProgress(std::vector<QString> entries, Style style)
        : RunReport(std::move(entries)), m_style(style)
    {
    }

    /// Live on a terminal that can erase a line, unless Java prints on it at each start.
    [[nodiscard]] static Style styleOfStandardOutput();

    void entryStarted(const EntryStart &start) override;
    void entryEnded(const EntryResult &result) override;
    void runEnded(RunEnd end, const QString &status) override;

private:
    /// The control characters that erase the live line; empty if there is none.
    [[nodiscard]] QString takeLiveLine();
    [[nodiscard]] QString liveLine(const EntryStart &start) const;
    [[nodiscard]] QString lineFor(const EntryResult &result) const;

    using Clock = std::chrono::steady_clock;

    const Style m_style;
    const Clock::time_point m_start = Clock::now();
    QString m_status;
    bool m_liveLineShown = false; ///< on the line above the cursor
};

} // namespace brevant
