// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/TerminalText.h"
#include "engine/JobDisplay.h"

#include <QString>

#include <chrono>

namespace brevant {

class FileQueue;
class RunReport;

/// Shows a run on a terminal: one live line with a bar where there is a real one, else one line for each
/// file. Hands every result to the report.
class TerminalJobDisplay final : public JobDisplay {
public:
    enum class Style { Live, Lines, Quiet };

    TerminalJobDisplay(const FileQueue &queue, RunReport &report, Style style);

    /// Live on a terminal that can show such a line and where no Java runtime writes below it at each start.
    [[nodiscard]] static Style styleOfStandardOutput();

    /// The last status of the run.
    [[nodiscard]] const QString &statusText() const { return m_statusText; }

    void lockControls() override {}
    void setStatusText(const QString &text) override;
    void selectRow(int row) override;
    void deselectRows() override {}
    void playDoneSound() override {}
    void unlockControls() override;
    void entryEnded(const EntryResult &result) override;

private:
    using Clock = std::chrono::steady_clock;

    void drawLiveLine();
    /// The control characters that erase the live line, if there is one to erase.
    [[nodiscard]] QString takeLiveLine();
    [[nodiscard]] TerminalText::Progress progress() const;
    [[nodiscard]] QString lineFor(const EntryResult &result) const;

    const FileQueue &m_queue;
    RunReport &m_report;
    const Style m_style;
    const Clock::time_point m_start = Clock::now();
    QString m_statusText;
    QString m_fileName;
    int m_done = 0;
    bool m_liveLineShown = false; ///< right above the cursor
};

} // namespace brevant
