// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"
#include "cli/InputChecks.h"
#include "cli/Listing.h"
#include "cli/PathList.h"
#include "cli/PrintedRun.h"
#include "cli/ReportOutput.h"
#include "cli/ResultChecks.h"
#include "cli/RunReport.h"
#include "cli/StopSignals.h"
#include "cli/TerminalText.h"
#include "engine/MinifyJob.h"
#include "engine/Tools.h"
#include "engine/originals/PutBack.h"
#include "files/Descriptor.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QLocale>
#include <QThread>

#include <cerrno>
#include <clocale>
#include <csignal>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

/// After a stop the exit status is that of its signal: statusOfSignal(), 130 for Ctrl+C.
enum ExitStatus { AllDone = 0, SomeFailed = 1, WrongUsage = 2, NoTools = 3 };

using TerminalText::printError;

int wrongUsage(const QString &error)
{
    printError(error);
    return WrongUsage;
}

int statusOf(bool isAllDone)
{
    return isAllDone ? AllDone : SomeFailed;
}

/// The exit status of what only prints.
int statusOfPrinting(bool printed)
{
    if (!printed)
        printError(u"standard output cannot be written: %1"_s.arg(qt_error_string(errno)));
    return statusOf(printed);
}

/// Writes the report if one was asked for. Prints why if that fails, and returns false.
bool writeReport(const CommandLine &line, const ReportOutput &output, const SettingsStore &settings,
                 Report report)
{
    if (!output.isWanted())
        return true;
    report.folder = QDir::currentPath();
    report.encoding = textEncodingNamed(settings.stringForKey(selectedEncodingKeyString));
    const QString error = output.write(report);
    if (!error.isEmpty())
        printError(reportError(line, error));
    return error.isEmpty();
}

int minify(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings,
           const ReportOutput &place)
{
    RunReport report(queue.entries(),
                     line.quiet ? RunReport::Style::Quiet : RunReport::styleOfStandardOutput(),
                     &stopRequested);
    const int suited = isModernChosen(settings) ? QThread::idealThreadCount() : 1;
    const int jobs = line.jobs > 0 ? line.jobs : suited;
    catchStopSignals(jobs > 1);
    ResultChecks checks(settings);
    Refusal refusal = refusalFor(queue.entries(), settings);
    if (line.check) {
        report.setCheck([&checks](const EntryResult &result) { return checks.entryEnded(result); });
        refusal = [&checks, refuse = std::move(refusal)](const QString &entry,
                                                         const std::optional<QString> &output) {
            checks.entryTaken(entry, output);
            return refuse(entry, output);
        };
    }
    const RunEnd end = MinifyJob(queue, settings, tools, report, stopRequested, std::move(refusal))
                           .run(jobs, {line.failFast, std::chrono::seconds(line.timeout)});
    if (!line.quiet || place.isWanted())
        report.explainFailures(tools, place.isWanted() ? queue.count() : RunReport::mostPlaces);
    if (!line.quiet)
        TerminalText::print(stdout, report.summary(Colours::of(STDOUT_FILENO)));
    else if (end == RunEnd::JavaNotStarted)
        printError(report.failure());
    const Colours colours = Colours::of(STDERR_FILENO);
    const TextEncoding encoding = textEncodingNamed(settings.stringForKey(selectedEncodingKeyString));
    const QString places = line.quiet ? QString() : report.failurePlaces(encoding, colours);
    TerminalText::print(stderr,
                        report.notes() + places + report.failures(colours) + report.warnings(colours));
    const bool isReported = writeReport(line, place, settings, report.toReport());
    if (end == RunEnd::Stopped && stopSignal != 0)
        return statusOfSignal(stopSignal);
    if (end == RunEnd::JavaNotStarted)
        return NoTools;
    return statusOf(report.isAllDone() && isReported && !report.hasWarnings());
}

/// Carries out the action on the files in the queue.
int act(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings,
        const ReportOutput &output)
{
    if (queue.isEmpty())
        return statusOf(line.action != CommandLine::Action::Minify ||
                        writeReport(line, output, settings, RunReport({}).toReport()));
    if (line.action == CommandLine::Action::List)
        return statusOfPrinting(printList(queue, settings, line.print0));
    if (line.action == CommandLine::Action::DryRun)
        return statusOfPrinting(printCommands(queue, settings, tools));
    if (const QString missing = tools.missing(settings); !missing.isEmpty()) {
        printError(missing);
        RunReport report(queue.entries());
        report.runEnded(RunEnd::JavaNotStarted, missing);
        static_cast<void>(writeReport(line, output, settings, report.toReport()));
        return NoTools;
    }
    return minify(line, tools, queue, settings, output);
}

int run(CommandLine line, const Tools &tools)
{
    if (line.action == CommandLine::Action::Help)
        return statusOfPrinting(TerminalText::print(stdout, helpText()));
    if (line.action == CommandLine::Action::Version)
        return statusOfPrinting(TerminalText::print(stdout, versionText() + tools.versions()));
    const ReportOutput output(line);
    for (const QString &sentence : putBackAfterInterruption(tools.originals))
        printError(sentence);
    if (const QString error = addPathsFromFile(line); !error.isEmpty())
        return wrongUsage(error);
    if (const QString error = inputError(line); !error.isEmpty())
        return wrongUsage(error);

    SettingsStore settings(settingsFile(line));
    settings.registerDefaults(registeredDefaults());
    overrideSettings(settings, line);
    if (const QString error = settingsError(line, settings); !error.isEmpty())
        return wrongUsage(error);

    if (!line.also.isEmpty()) // whatever the settings file says during the run
        settings.setOverride(u"modern"_s, compressorsKeyString);

    FileQueue queue;
    Listing listing(queue, settings, line);
    if (const QString error = listing.fill(); !error.isEmpty())
        return wrongUsage(error);
    if (const QString error = reportPlaceError(line, queue, settings); !error.isEmpty())
        return wrongUsage(error);
    listing.printWhatIsMissing();
    const int status = act(line, tools, queue, settings, output);
    return status == 0 ? statusOf(listing.isComplete()) : status;
}

} // namespace

} // namespace brevant

int main(int argc, char *argv[])
{
    using namespace brevant;

    openClosedStandardStreams();
    // Writing past the limit of ulimit -f then fails as on a full disk, instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // For wcwidth() only. The environment, which the compressors inherit, stays as it is.
    std::setlocale(LC_CTYPE, "C.UTF-8");

    QLocale::setDefault(QLocale::c()); // programs read reports

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(RawBytes::decoded(argv[i]));
    const CommandLine line = parseCommandLine(arguments);
    if (line.error.isEmpty())
        return run(line, Tools::inResources(findResourceFolder()));
    const int status = wrongUsage(line.error);
    TerminalText::print(stderr, u"Try: brevant-cli --help\n"_s);
    return status;
}
