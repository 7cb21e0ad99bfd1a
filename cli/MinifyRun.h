// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/FileCopies.h"
#include "cli/OutTree.h"
#include "cli/PrintedRun.h"
#include "engine/MinifyJob.h"

namespace brevant {

class ChangedFiles;
class ReportOutput;
class RunReport;
struct CommandLine;
struct Report;

/// After a stop the exit status is that of its signal: statusOfSignal(), 130 for Ctrl+C.
enum ExitStatus { AllDone = 0, SomeFailed = 1, WrongUsage = 2, NoTools = 3 };

/// Minifies queues as a command line asks for it, prints what becomes of them and writes their reports.
class MinifyRun final {
public:
    /// What is done is written to `changed`, which may be null.
    MinifyRun(const CommandLine &line, const Tools &tools, const EntrySettings &settings,
              const ReportOutput &output, ChangedFiles *changed = nullptr);

    /// Told of each result as its file ends: one call at a time.
    using ResultSeen = std::function<void(const EntryResult &)>;
    void setResultSeen(ResultSeen seen) { m_resultSeen = std::move(seen); }

    /// Minifies the files in a queue, and makes the copies once it has gone through all. Returns the exit
    /// status.
    [[nodiscard]] int run(const FileQueue &queue, const std::vector<FileCopy> &copies = {}) const;

    /// The same for what has changed, each file told in one line, without a summary. `others`: files that no
    /// output may be written over, nor over theirs.
    [[nodiscard]] int runChanged(const FileQueue &queue, const std::vector<FileCopy> &copies,
                                 const EntriesWithOutputs &others) const;

private:
    [[nodiscard]] QString missingTools(const std::vector<const SettingsStore *> &stores) const;
    [[nodiscard]] int minify(RunReport &report, const PlannedRun &planned) const;
    [[nodiscard]] RunEnd minifyWith(RunReport &report, const PlannedRun &planned) const;
    void print(RunReport &report, RunEnd end) const;
    [[nodiscard]] bool writeReport(Report report) const;

    const CommandLine &m_line;
    const Tools &m_tools;
    const EntrySettings m_settings;
    const ReportOutput &m_output;
    const OutTree m_tree;
    ChangedFiles *const m_changed;
    ResultSeen m_resultSeen;
};

} // namespace brevant
