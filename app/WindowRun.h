// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/DesktopReport.h"
#include "engine/RunObserver.h"
#include "engine/Stop.h"

#include <QSet>

#include <functional>
#include <optional>

namespace brevant {

struct AppContext;

/// Shows one run in the window and to the desktop. The run calls from its own thread; what is to be shown is
/// handed to the main thread, in order, and never waited for. The context must outlive that.
class WindowRun final : public RunObserver {
public:
    WindowRun(AppContext &context, const std::atomic<Stop> &stop);

    void runStarted() override;
    void entryStarted(const EntryStart &start) override;
    void entryEnded(const EntryResult &result) override;
    void runEnded(RunEnd end, const QString &status) override;

private:
    void onMainThread(std::function<void()> step);

    AppContext &m_app;
    const std::atomic<Stop> &m_stop;
    const int m_run; ///< its number
    int m_done = 0;
    RunOutcome m_outcome;
    QSet<QString> m_outputs;         ///< files written: one may have replaced another
    std::optional<QString> m_folder; ///< of the outputs so far; empty if there are several
};

/// One whole run over the queue, shown in the window, on the calling thread.
void runMinifyJob(AppContext &context, const std::atomic<Stop> &stop);

} // namespace brevant
