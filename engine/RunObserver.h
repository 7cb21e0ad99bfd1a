// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

struct EntryResult;

/// What is known of an entry when work on it begins.
struct EntryStart {
    int index = 0; ///< in the run, from 0
    int count = 0; ///< entries in the queue by now
    QString path;
    QString status; ///< in words: "Minified 1 of 3 items."
};

enum class RunEnd {
    Completed,
    Stopped,        ///< on request
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

} // namespace brevant
