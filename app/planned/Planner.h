// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/PlannedOutputs.h"

#include <QObject>
#include <QTimer>

#include <thread>

namespace brevant {

class FileQueue;
struct Tools;

/// Finds out on a thread of its own what a run over the queue would do.
class Planner final : public QObject {
    Q_OBJECT

public:
    /// All must outlive the planner.
    Planner(const FileQueue &queue, const SettingsStore &settings, const Tools &tools);

    /// Waits for the call of the system that is under way.
    ~Planner() override;

    /// Plans anew, a moment later: what was under way ends, and nothing more is told of it.
    void restart();

    /// Ends what is under way.
    void stop();

Q_SIGNALS:
    /// What is known of the files from row `first` on; there are `count` in all.
    void planned(int first, const std::vector<brevant::PlannedFile> &files, int count);

    /// All has been told.
    void finished();

private:
    void startThread();
    void threadEnded();

    const FileQueue &m_queue;
    const SettingsStore &m_settings;
    const Tools &m_tools;
    QTimer m_delay;
    std::jthread m_thread;
    bool m_isRunning = false;
    bool m_isAgainWanted = false;
    int m_plan = 0; ///< the number of the one whose files are told
};

} // namespace brevant
