// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/RunOrder.h"
#include "engine/EntryResult.h"
#include "engine/MinifyJob.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace brevant {

class EntryRun;

/// One run over the queue with several compressors at once. The queue must not change meanwhile, and the
/// outputs are worked out when the run starts; the rest of each entry's work is that of a MinifyJob.
///
/// The display is called from the calling thread and in the queue's order, as a MinifyJob does it: it is
/// shown the first entry that has not been finished, and gets each result when all before it are there.
class ParallelRun final {
public:
    ParallelRun(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                JobDisplay &display);

    /// Runs to the end with at most `jobs` compressors at once. After a stop none is started, and those that
    /// run are waited for, or ended.
    MinifyJob::End run(int jobs, const std::atomic<Stop> &stop);

private:
    enum class Stage { Waiting, Running, Ended };

    void work(EntryRun &entryRun, const std::atomic<Stop> &stop);
    [[nodiscard]] std::optional<int> takeNext(const std::atomic<Stop> &stop);
    void store(int index, const std::optional<EntryResult> &result, const EntryRun &entryRun);

    /// Shows the entries one after the other; whether all have been worked on.
    [[nodiscard]] bool showAll();
    [[nodiscard]] bool waitUntilStarted(std::size_t index);
    [[nodiscard]] const std::optional<EntryResult> &waitForResult(std::size_t index);

    const SettingsStore &m_settings;
    const Tools m_tools;
    JobDisplay &m_display;
    const std::vector<PlannedEntry> m_entries;

    std::mutex m_mutex; ///< of all below
    std::condition_variable m_changed;
    RunOrder m_order;
    std::vector<Stage> m_stages;
    std::vector<std::optional<EntryResult>> m_results; ///< nothing for what could not be started
    QString m_startFailure;                            ///< why Java could not be started; empty if it could
    int m_workers = 0;                                 ///< threads still at work
};

} // namespace brevant
