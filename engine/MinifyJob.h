// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryRun.h"
#include "queue/OutputPath.h"

#include <deque>
#include <functional>
#include <mutex>

namespace brevant {

/// What is known of an entry when work on it begins.
struct EntryStart {
    int index = 0; ///< in the run, from 0
    int count = 0; ///< entries in the queue by now
    QString path;
    QString status; ///< in words: "Minified 1 of 3 items."
};

enum class RunEnd {
    Completed,
    Stopped,        ///< on request, or at a failure where that is wanted
    JavaNotStarted, ///< the Java runtime could not be started
};

/// Is told of a run as it goes on: one call at a time, in the order of the queue, from the threads of the
/// run. The run waits for each call to return.
class RunObserver {
public:
    RunObserver() = default;
    RunObserver(const RunObserver &) = delete;
    RunObserver &operator=(const RunObserver &) = delete;
    virtual ~RunObserver() = default;

    virtual void runStarted() {}

    /// Called before each entry; with several compressors at once, when all entries before it have ended.
    virtual void entryStarted([[maybe_unused]] const EntryStart &start) {}

    /// Everything has been done for the entry announced last. There is no such call for one whose compressor
    /// could not be started.
    virtual void entryEnded([[maybe_unused]] const EntryResult &result) {}

    /// The last call of every run. `status` is the end in words: "Well done!", or why Java could not be
    /// started; empty after a stop.
    virtual void runEnded([[maybe_unused]] RunEnd end, [[maybe_unused]] const QString &status) {}
};

/// What ends the work before its time.
struct RunLimits {
    bool failFast = false;          ///< once a file has failed no other is begun, and the run has stopped
    std::chrono::seconds timeout{}; ///< EntryRun::setTimeout()
};

/// Says why an entry must not be run, given the output it has; empty if it may be.
using Refusal = std::function<QString(const QString &entry, const std::optional<QString> &output)>;

/// One run over the queue, from its first entry to its last, with one compressor at a time or several.
///
/// The queue may change meanwhile: it is read again for every entry, so entries appended are worked on too,
/// and a queue that shrinks ends the run early. A compressor that fails does not end it.
/// Several jobs may run at once, each with an object of its own.
class MinifyJob final {
public:
    /// `refusal` is asked for one entry at a time, in the order of the queue.
    MinifyJob(const FileQueue &queue, const EntrySettings &settings, const Tools &tools,
              RunObserver &observer, const std::atomic<Stop> &stop, Refusal refusal = {});

    /// Sources that outputs replace go there, if the settings ask for it.
    void keepOriginals(KeptOriginals::Use &kept) { m_kept = &kept; }

    /// Runs to the end, or until a stop is asked for, with up to `jobs` compressors at once: one on the
    /// calling thread, each of the others on a thread of its own, or fewer if the system has no more threads.
    RunEnd run(int jobs = 1, const RunLimits &limits = {});

private:
    struct OpenEntry {
        EntryTask task;
        std::optional<EntryResult> result;
        bool isAnnounced = false;
        bool hasEnded = false; ///< without a result if Java could not be started
    };

    void work();
    [[nodiscard]] OpenEntry *takeNext();
    void tellObserver();

    const FileQueue &m_queue;
    const EntrySettings m_settings;
    const Tools m_tools;
    RunObserver &m_observer;
    const std::atomic<Stop> &m_stop;
    const Refusal m_refusal;
    KeptOriginals::Use *m_kept = nullptr;

    RunLimits m_limits; ///< set before there are other threads

    std::mutex m_mutex; ///< guards all below, the refusal and the calls to the observer
    OutputPath m_outputPath;
    std::optional<BySettings<CompressorCommand>> m_commands; ///< since the start of the run
    std::deque<OpenEntry> m_open; ///< entries whose end the observer has not been told of yet
    int m_told = 0;               ///< entries before those
    RunEnd m_end = RunEnd::Completed;
    bool m_hasFailed = false; ///< a file, and no other is to be begun
    QString m_startFailure;   ///< why Java could not be started
};

} // namespace brevant
