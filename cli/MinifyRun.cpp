// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/MinifyRun.h"

#include "cli/ChangedFiles.h"
#include "cli/CommandLine.h"
#include "cli/InputChecks.h"
#include "cli/KeptTimes.h"
#include "cli/PrintedRun.h"
#include "cli/ReportOutput.h"
#include "cli/ResultChecks.h"
#include "cli/RunReport.h"
#include "cli/StopSignals.h"
#include "cli/TerminalText.h"
#include "cli/project/ProjectPlaces.h"
#include "engine/Tools.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"

#include <QDir>
#include <QThread>

#include <algorithm>

#include <unistd.h>

namespace brevant {

MinifyRun::MinifyRun(const CommandLine &line, const Tools &tools, const EntrySettings &settings,
                     const ReportOutput &output, ChangedFiles *changed)
    : m_line(line), m_tools(tools), m_settings(settings), m_output(output), m_tree(line), m_changed(changed)
{
}

int MinifyRun::run(const FileQueue &queue, const std::vector<FileCopy> &copies) const
{
    if (queue.isEmpty() && copies.empty())
        return writeReport(RunReport({}).toReport()) ? AllDone : SomeFailed;
    const QString missing = missingTools(m_settings.of(queue.entries()));
    if (missing.isEmpty()) {
        RunReport report(queue.entries(),
                         m_line.quiet ? RunReport::Style::Quiet : RunReport::styleOfStandardOutput(),
                         &stopRequested);
        return minify(report, {queue, m_settings, copies});
    }
    TerminalText::printError(missing);
    RunReport report(queue.entries());
    report.runEnded(RunEnd::JavaNotStarted, missing);
    static_cast<void>(writeReport(report.toReport()));
    return NoTools;
}

/// What is missing for work by some of the settings; empty if nothing is.
QString MinifyRun::missingTools(const std::vector<const SettingsStore *> &stores) const
{
    for (const SettingsStore *const store : stores) {
        if (QString missing = m_tools.missing(*store); !missing.isEmpty())
            return missing;
    }
    return {};
}

int MinifyRun::runChanged(const FileQueue &queue, const std::vector<FileCopy> &copies,
                          const EntriesWithOutputs &others) const
{
    RunReport report(queue.entries(),
                     m_line.quiet ? RunReport::Style::QuietChanges : RunReport::Style::Changes,
                     &stopRequested);
    return minify(report, {queue, m_settings, copies, others});
}

int MinifyRun::minify(RunReport &report, const PlannedRun &planned) const
{
    const RunEnd end = minifyWith(report, planned);
    constexpr int usualCopies = 8; // at once
    FileCopying copying(m_tree, m_line.keepTimes);
    if (end == RunEnd::Completed)
        copying.run(planned.copies, m_line.jobs > 0 ? m_line.jobs : usualCopies, stopRequested);
    if (m_line.copyRest)
        report.setCopied(copying.inWords());
    if (report.isOfChanges() && !m_line.quiet && !planned.copies.empty())
        TerminalText::printNow(copying.inWords());
    print(report, end);
    TerminalText::print(stderr, copying.failures(Colours::of(STDERR_FILENO)));
    const bool isReported = writeReport(report.toReport());
    if ((end == RunEnd::Stopped || copying.isStopped()) && stopSignal != 0)
        return statusOfSignal(stopSignal);
    if (end == RunEnd::JavaNotStarted)
        return NoTools;
    const bool isAllDone = report.isAllDone() && copying.isAllDone() && isReported;
    return isAllDone && !report.hasWarnings() ? AllDone : SomeFailed;
}

RunEnd MinifyRun::minifyWith(RunReport &report, const PlannedRun &planned) const
{
    const FileQueue &queue = planned.queue;
    const auto stores = m_settings.of(queue.entries());
    const bool isAnyModern =
        std::ranges::any_of(stores, [](const SettingsStore *store) { return isModernChosen(*store); });
    const int suited = isAnyModern ? QThread::idealThreadCount() : 1;
    const int jobs = m_line.jobs > 0 ? m_line.jobs : suited;
    catchStopSignals(jobs);
    ResultChecks checks(m_settings);
    KeptTimes times(report, m_settings);
    report.setCheck([&](const EntryResult &result) {
        std::optional<CheckedFile> checked = m_line.check ? checks.entryEnded(result) : std::nullopt;
        const bool isGood =
            result.outcome == EntryResult::Outcome::Done && !(checked && checked->isSuspicious());
        if (m_changed != nullptr && isGood)
            m_changed->entryDone(result.source, result.output);
        if (m_resultSeen)
            m_resultSeen(result);
        return checked;
    });
    EntriesWithOutputs done = planned.done;
    if (m_changed != nullptr)
        done.insert(done.end(), m_changed->unchanged().begin(), m_changed->unchanged().end());
    const auto refusal = [&, refuse = refusalFor(queue.entries(), m_settings, done)](
                             const QString &entry, const std::optional<QString> &output) {
        if (m_line.check)
            checks.entryTaken(entry, output);
        if (m_line.keepTimes)
            times.entryTaken(entry);
        if (m_changed != nullptr)
            m_changed->entryTaken(entry, output);
        QString reason = refuse(entry, output);
        if (reason.isEmpty() && !m_line.projectFolder.isEmpty())
            reason = sourceErrorInProject(m_line.projectFolder, entry);
        if (reason.isEmpty() && output && !m_line.projectFolder.isEmpty())
            reason = outputErrorInProject(m_line.projectFolder, *output);
        if (reason.isEmpty() && output && m_tree.isWanted())
            static_cast<void>(m_tree.openFolderOf(*output, reason));
        return reason;
    };
    return MinifyJob(queue, m_settings, m_tools, times, stopRequested, refusal)
        .run(jobs, {m_line.failFast, std::chrono::seconds(m_line.timeout)});
}

/// Prints what is to be said once the files have ended.
void MinifyRun::print(RunReport &report, RunEnd end) const
{
    if (!m_line.quiet || m_output.isWanted())
        report.explainFailures(m_tools, m_output.isWanted() ? report.count() : RunReport::mostPlaces);
    if (!m_line.quiet && !report.isOfChanges())
        TerminalText::print(stdout, report.summary(Colours::of(STDOUT_FILENO)));
    else if (end == RunEnd::JavaNotStarted)
        TerminalText::printError(report.failure());
    const Colours colours = Colours::of(STDERR_FILENO);
    const QString places = m_line.quiet ? QString() : report.failurePlaces(encodingsBy(m_settings), colours);
    TerminalText::print(stderr,
                        report.notes() + places + report.failures(colours) + report.warnings(colours));
}

/// Writes the report if one was asked for. Prints why if that fails, and returns false.
bool MinifyRun::writeReport(Report report) const
{
    if (!m_output.isWanted())
        return true;
    report.folder = QDir::currentPath();
    report.encodingOf = encodingsBy(m_settings);
    const QString error = m_output.write(report);
    if (!error.isEmpty())
        TerminalText::printError(reportError(m_line, error));
    return error.isEmpty();
}

} // namespace brevant
