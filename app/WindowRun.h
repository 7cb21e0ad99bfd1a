// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/DesktopReport.h"
#include "engine/MinifyJob.h"

#include <QObject>
#include <QSet>

#include <chrono>
#include <functional>
#include <list>
#include <optional>
#include <thread>

namespace brevant {

class Application;

/// Runs minify jobs, each on a thread of its own, and knows when none is left. Destroyed, it stops and waits.
class JobRunner final : public QObject {
    Q_OBJECT

public:
    /// A whole job; ends soon after `stop` asks for it.
    using Job = std::function<void(const std::atomic<Stop> &stop)>;

    using QObject::QObject;
    ~JobRunner() override;

    /// Starts one new thread for `job` and returns at once. False if there is none to be had.
    bool detachNewThread(Job job);

    [[nodiscard]] bool isRunning() const { return !m_threads.empty(); }

    /// Asks all jobs to stop, later ones too. A stronger request made before still holds.
    void requestStop(Stop stop);

    /// Asks all jobs to stop and waits for the files they are working on.
    void stopAndWait();

Q_SIGNALS:
    /// A job begins, whether or not others are under way.
    void started();

    /// No thread was to be had for a job, for this reason.
    void notStarted(const QString &reason);

    /// The last job under way has ended, and all that it displayed has been shown.
    void allEnded();

private:
    void threadEnded(std::list<std::jthread>::iterator thread);

    std::atomic<Stop> m_stop = Stop::No;
    std::list<std::jthread> m_threads;
};

/// Shows one run in the window, in Results and to the desktop. The run calls from its own thread; what is to
/// be shown is handed to the main thread, in order, and never waited for. The application must outlive that.
class WindowRun final : public RunObserver {
public:
    /// A run over another queue than that of the window is shown in Results only.
    WindowRun(Application &app, const FileQueue &queue, const SettingsStore &settings,
              const std::atomic<Stop> &stop);

    void runStarted() override;
    void entryStarted(const EntryStart &start) override;
    void entryEnded(const EntryResult &result) override;
    void runEnded(RunEnd end, const QString &status) override;

private:
    [[nodiscard]] QStringList notRun() const;
    void onMainThread(std::function<void()> step);

    Application &m_app;
    const FileQueue &m_queue;
    const SettingsStore &m_settings;
    const bool m_isInWindow;
    const std::atomic<Stop> &m_stop;
    const int m_run; ///< its number
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    int m_done = 0;
    int m_begun = 0;
    RunOutcome m_outcome;
    QSet<QString> m_outputs;         ///< files written: one may have replaced another
    std::optional<QString> m_folder; ///< of the outputs so far; empty if there are several
};

/// One whole run over the queue, shown in the window, on the calling thread.
void runMinifyJob(Application &app, const std::atomic<Stop> &stop);

/// One more run over some files, by those settings, shown in Results, on the calling thread.
void runAgain(Application &app, const SettingsStore &settings, const QStringList &sources,
              const std::atomic<Stop> &stop);

} // namespace brevant
