// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/FileCopies.h"
#include "engine/MinifyJob.h"

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace brevant {

struct CommandLine;

/// Why an entry whose path holds RawBytes is not run.
[[nodiscard]] QString notUtf8();

/// Each entry with the output that a run would give it.
using EntriesWithOutputs = std::vector<std::pair<QString, std::optional<QString>>>;
[[nodiscard]] EntriesWithOutputs entriesWithOutputs(const FileQueue &queue, const EntrySettings &settings);

/// What a run in the terminal refuses to do. Asked for each entry, in the order of the queue. `done`: others
/// that it does not do again.
[[nodiscard]] Refusal refusalFor(std::vector<QString> sources, const EntrySettings &settings,
                                 const EntriesWithOutputs &done = {});

/// What is to be done.
struct PlannedRun {
    const FileQueue &queue;
    const EntrySettings &settings;
    const std::vector<FileCopy> &copies;
    EntriesWithOutputs done = {}; ///< before, which is not done again
};

/// Prints the path of each entry and of its output, then the same of the copies, except for entries that hold
/// RawBytes; or, `forPrograms`, that of the entry alone, as it is, and a zero byte. False, with errno set, on
/// failure.
[[nodiscard]] bool printList(const PlannedRun &planned, bool forPrograms = false);

/// Prints the commands of a run as a shell script. False, with errno set, on failure.
[[nodiscard]] bool printCommands(const PlannedRun &planned, const CommandLine &line, const Tools &tools);

/// The exit status of what only prints. Says so where that has failed, with errno set.
[[nodiscard]] int statusOfPrinting(bool isPrinted);

} // namespace brevant
