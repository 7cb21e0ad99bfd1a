// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

#include <QObject>

#include <functional>
#include <list>
#include <thread>

namespace brevant {

/// Runs minify jobs, each on a thread of its own, and knows when none is left. Destroyed, it stops and waits.
class JobRunner final : public QObject {
    Q_OBJECT

public:
    /// A whole job; ends soon after `stop` asks for it.
    using Job = std::function<void(const std::atomic<Stop> &stop)>;

    using QObject::QObject;
    ~JobRunner() override;

    /// Starts one new thread for `job` and returns at once.
    void detachNewThread(Job job);

    [[nodiscard]] bool isRunning() const { return !m_threads.empty(); }

    /// Asks all jobs to stop, later ones too. A stronger request made before still holds.
    void requestStop(Stop stop);

    /// Asks all jobs to stop and waits for the files they are working on.
    void stopAndWait();

Q_SIGNALS:
    /// A job begins, whether or not others are under way.
    void started();

    /// The last job under way has ended, and all that it displayed has been shown.
    void allEnded();

private:
    void threadEnded(std::list<std::thread>::iterator thread);

    std::atomic<Stop> m_stop = Stop::No;
    std::list<std::thread> m_threads;
};

} // namespace brevant
