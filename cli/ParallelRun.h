// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryResult.h"
#include "engine/MinifyJob.h"
#include "queue/OutputPath.h"

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace brevant {

class EntryRun;
struct CompressorOptions;

/// One run over the queue with several compressors at once. The queue must not change meanwhile; the work on
/// each entry is that of a MinifyJob. Entries are started in their order, and none waits for another.
///
/// The display is called from the calling thread and in the queue's order, as a MinifyJob does it: it is
/// shown the first entry that has not been finished, and gets each result when all before it are there.
class ParallelRun final {
public:
    /// `refusal` is asked for one entry at a time.
    ParallelRun(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                JobDisplay &display, Refusal refusal = {});

    /// Runs to the end with at most `jobs` compressors at once, or as many as there are threads to be had
    /// for. After a stop none is started, and those that run are waited for, or
    /// ended.
    MinifyJob::End run(int jobs, const std::atomic<Stop> &stop);

private:
    /// What is to be done for an entry, as the settings were when it was taken.
    struct Task {
        std::size_t index = 0;
        std::optional<QString> output;
        std::optional<QString> outputAtStart;
        QString refusal;
    };

    [[nodiscard]] std::vector<std::thread> startThreads(int count, const CompressorOptions &options,
                                                        const std::atomic<Stop> &stop);
    void work(EntryRun &entryRun, const std::atomic<Stop> &stop);
    [[nodiscard]] std::optional<Task> takeNext(const std::atomic<Stop> &stop);
    void store(std::size_t index, const std::optional<EntryResult> &result, const EntryRun &entryRun);

    /// Shows the entries one after the other; whether all have been worked on.
    [[nodiscard]] bool showAll();
    [[nodiscard]] bool waitUntilStarted(std::size_t index);
    [[nodiscard]] const std::optional<EntryResult> &waitForResult(std::size_t index);

    const FileQueue &m_queue;
    const SettingsStore &m_settings;
    const Tools m_tools;
    JobDisplay &m_display;
    const std::vector<QString> m_entries;

    std::mutex m_mutex; ///< of all below
    std::condition_variable m_changed;
    OutputPath m_outputPath;
    Refusal m_refusal;
    std::size_t m_taken = 0; ///< entries, from the first
    std::vector<bool> m_ended;
    std::vector<std::optional<EntryResult>> m_results; ///< nothing for what could not be started
    QString m_startFailure;                            ///< why Java could not be started; empty if it could
    int m_workers = 0;                                 ///< threads still at work
};

} // namespace brevant
