// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Outlets.h"
#include "app/RunNews.h"
#include "app/Services.h"
#include "engine/JobDisplay.h"
#include "engine/Stop.h"

#include <QSet>

#include <functional>
#include <optional>

namespace brevant {

/// Shows one run in the window and to the desktop. The job calls from its own thread; each call is handed to
/// the main thread, in order, and never waited for. The window and the services must outlive what was handed.
class WindowJobDisplay final : public JobDisplay {
public:
    WindowJobDisplay(const Outlets &outlets, const Services &services);

    void lockControls() override;
    void setStatusText(const QString &text) override;
    void setProgress(int done, int count) override;
    void selectRow(int row) override;
    void entryEnded(const EntryResult &result) override;
    void deselectRows() override;
    void loadDoneSound() override;
    void playDoneSound() override;
    void unlockControls() override;

    /// To be called after the job's last call.
    void runEnded(MinifyJob::End end);

private:
    void onMainThread(std::function<void()> step);

    const Outlets m_outlets;
    const Services m_services;
    const int m_run; ///< its number
    int m_done = 0;
    RunOutcome m_outcome;
    QSet<QString> m_outputs;         ///< files written: one may have replaced another
    std::optional<QString> m_folder; ///< of the outputs so far; empty if there are several
    QString m_statusText;
};

/// One whole run over the queue, shown in the window, on the calling thread.
void runMinifyJob(const Outlets &outlets, const Services &services, const std::atomic<Stop> &stop);

} // namespace brevant
