// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/EntryRun.h"
#include "engine/Stop.h"
#include "engine/Tools.h"
#include "queue/OutputPath.h"

namespace brevant {

class FileQueue;
class JobDisplay;
class SettingsStore;

/// One run over the queue, from its first entry to its last, one compressor at a time, on the calling thread.
///
/// The queue may change meanwhile: its count is read again after every file, so entries appended are worked
/// on too, and a queue that shrinks ends the run early. What the compressors do, or fail to do, changes
/// nothing in the run. Several jobs may run at once, each with an object of its own.
class MinifyJob final {
public:
    enum class End {
        Completed,
        Stopped,        ///< on request
        JavaNotStarted, ///< the Java runtime could not be started
    };

    MinifyJob(const FileQueue &queue, const SettingsStore &settings, const Tools &tools, JobDisplay &display,
              Refusal refusal = {});

    /// Runs to the end, or for as long as nothing else is asked for. The display is told of the end exactly
    /// once.
    End run(const std::atomic<Stop> &stop);

private:
    [[nodiscard]] End runEntries(EntryRun &entryRun, const std::atomic<Stop> &stop);

    const FileQueue &m_queue;
    const SettingsStore &m_settings;
    const Tools m_tools;
    JobDisplay &m_display;
    OutputPath m_outputPath;
    const Refusal m_refusal;
};

} // namespace brevant
