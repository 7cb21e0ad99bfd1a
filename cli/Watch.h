// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/ChangedPaths.h"
#include "cli/MinifyRun.h"
#include "cli/OwnOutputs.h"
#include "cli/PrintedRun.h"
#include "cli/WatchedPaths.h"
#include "settings/EntrySettings.h"

#include <memory>
#include <optional>

namespace brevant {

class ChangedFiles;
struct CommandLine;

/// --watch: minifies what the paths of a command line come to, and then what changes, until it is stopped.
///
/// Changes are collected until nothing has changed for a moment. What is to be done with them is decided by
/// what is there then, by the rules of any run. Nothing is known of single files but what was written for
/// them.
class Watch final {
public:
    Watch(const CommandLine &line, const Tools &tools, const EntrySettings &settings,
          const ReportOutput &output);
    ~Watch();
    Q_DISABLE_COPY_MOVE(Watch)

    /// Returns the exit status, which is that of a signal unless there is nothing to be done.
    [[nodiscard]] int run();

private:
    [[nodiscard]] std::optional<int> minifyAll();
    [[nodiscard]] int minifyChanges();
    [[nodiscard]] QString unfitError(const FileQueue &queue) const;
    [[nodiscard]] int minify(const ChangedPaths &changed);
    enum class Round { First, Later };
    [[nodiscard]] int run(FileQueue &queue, const std::vector<FileCopy> &copies, Round round);
    [[nodiscard]] int runChanged(const MinifyRun &run, const FileQueue &queue,
                                 const std::vector<FileCopy> &copies) const;
    void dropUnchanged(FileQueue &queue);
    void removeOrphans(const ChangedPaths &changed);
    void record(const QStringList &files, const QString &source);

    const CommandLine &m_line;
    const Tools &m_tools;
    const EntrySettings m_settings;
    const ReportOutput &m_output;
    WatchedPaths m_watched;
    OwnOutputs m_own;
    std::unique_ptr<ChangedFiles> m_done; ///< with --changed
    int m_rounds = 0;
};

} // namespace brevant
