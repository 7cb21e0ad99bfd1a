// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/CommandLine.h"
#include "cli/Listing.h"
#include "cli/PrintedRun.h"
#include "cli/ResultChecks.h"
#include "cli/RunReport.h"
#include "cli/TerminalText.h"
#include "engine/MinifyJob.h"
#include "engine/Tools.h"
#include "engine/originals/PutBack.h"
#include "files/Descriptor.h"
#include "files/DurableFile.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <string_view>

#include <sys/stat.h>
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

QString settingsFile(const CommandLine &line)
{
    return line.settingsFile.isEmpty() ? SettingsStore::defaultFilePath()
                                       : PathString::absolute(line.settingsFile);
}

/// Why that settings file cannot be used; empty if it can. Keys in it that are no settings are named.
QString settingsFileError(const QString &fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return u"the settings file %1 cannot be read"_s.arg(fileName);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        return u"the settings file %1 holds no JSON object (%2)"_s.arg(
            fileName, document.isNull() ? error.errorString() : u"it holds something else"_s);
    QStringList unknown = document.object().keys();
    unknown.removeIf([](const QString &key) { return findSettingKey(key) != nullptr; });
    if (!unknown.isEmpty())
        printError(u"the settings file %1 holds what is no setting: %2"_s.arg(fileName, unknown.join(u", ")));
    return {};
}

QString reportError(const CommandLine &line, const QString &reason)
{
    return u"the report %1 cannot be written: %2"_s.arg(line.reportFile, reason);
}

/// What is wrong with the files and folders on the command line; empty if nothing is.
QString inputError(const CommandLine &line)
{
    if (QDir::currentPath().isEmpty())
        return u"the working folder is gone"_s;
    if (!line.settingsFile.isEmpty()) {
        if (QString error = settingsFileError(line.settingsFile); !error.isEmpty())
            return error;
    }
    for (const QString &path : line.paths) {
        struct stat status {};
        if (::lstat(RawBytes::encoded(path).constData(), &status) != 0)
            return u"%1 does not exist"_s.arg(path);
    }
    if (!line.reportFile.isEmpty()) {
        if (DurableFile trial(line.reportFile); !trial.write({}))
            return reportError(line, trial.errorText());
    }
    return {};
}

/// Why no run is possible with these settings; empty if one is.
QString settingsError(const CommandLine &line, const SettingsStore &settings)
{
    if (!line.also.isEmpty() && !isModernChosen(settings))
        return u"--also needs the modern compressors: add --set %1=modern"_s.arg(compressorsKeyString);
    if (settings.isTrue(sameFolderKeyString) ||
        !settings.stringForKey(selectedFolderKeyString).value_or(QString()).isEmpty())
        return {};
    return u"%1 is not true, and %2 names no folder for the outputs"_s.arg(sameFolderKeyString,
                                                                           selectedFolderKeyString);
}

/// Applies --set. The compressors run in another folder, so a relative folder is made absolute here.
void overrideSettings(SettingsStore &settings, const CommandLine &line)
{
    for (const auto &[key, value] : line.settings) {
        const bool isFolder = key == selectedFolderKeyString && !value.toString().isEmpty();
        settings.setOverride(isFolder ? PathString::absolute(value.toString()) : value, key);
    }
}

/// Says which file of the run the report would overwrite; empty if none.
QString reportPlaceError(const CommandLine &line, const FileQueue &queue, const SettingsStore &settings)
{
    if (line.reportFile.isEmpty())
        return {};
    const QStringList marks = FileMarks::all(PathString::absolute(line.reportFile));
    QStringList files{settingsFile(line)};
    for (const auto &[entry, output] : entriesWithOutputs(queue, settings)) {
        files.append(entry);
        if (output)
            files << *output << PathString::withExtension(*output, u"gz")
                  << PathString::withExtension(*output, u"br") << PathString::withExtension(*output, u"map");
    }
    for (const QString &file : files) {
        for (const QString &mark : FileMarks::all(file)) {
            if (marks.contains(mark))
                return u"the report %1 would be written over %2"_s.arg(line.reportFile, file);
        }
    }
    return {};
}

/// Writes the report if one was asked for. Prints why if that fails, and returns false.
bool writeReport(const CommandLine &line, const RunReport &report)
{
    if (line.reportFile.isEmpty())
        return true;
    const QString error = DurableFile::replace(line.reportFile, report.toJson());
    if (!error.isEmpty())
        printError(reportError(line, error));
    return error.isEmpty();
}

std::atomic<Stop> stopRequested = Stop::No;
std::atomic<int> stopSignal = 0;
std::atomic<bool> isForSeveralFiles = false;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<Stop>::is_always_lock_free);

void stopOnSignal(Stop stop, int number)
{
    if (stop == Stop::AfterFile)
        stopSignal = number;
    stopRequested = stop;
    if (stop != Stop::AfterFile)
        return;
    constexpr std::string_view thisFile = "\nStopping after this file; once more to end at once.\n";
    constexpr std::string_view theseFiles = "\nStopping after these files; once more to end at once.\n";
    const std::string_view words = isForSeveralFiles ? theseFiles : thisFile;
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, words.data(), words.size());
}

void catchStopSignals(bool severalFiles)
{
    isForSeveralFiles = severalFiles;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) // nohup(1)
            catchStopSignal(number, stopOnSignal);
    }
    // A reader that goes away must not end a run between two files.
    std::signal(SIGPIPE, SIG_IGN);
}

int minify(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings)
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
    const RunEnd end = MinifyJob(queue, settings, tools, report, stopRequested, std::move(refusal)).run(jobs);
    if (!line.quiet)
        TerminalText::print(stdout, report.summary());
    else if (end == RunEnd::JavaNotStarted)
        printError(report.failure());
    TerminalText::print(stderr, report.notes() + report.failures() + report.warnings());
    const bool isReported = writeReport(line, report);
    if (end == RunEnd::Stopped)
        return statusOfSignal(stopSignal);
    if (end == RunEnd::JavaNotStarted)
        return NoTools;
    return statusOf(report.isAllDone() && isReported && !report.hasWarnings());
}

/// Carries out the action on the files in the queue.
int act(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings)
{
    if (queue.isEmpty())
        return statusOf(line.action != CommandLine::Action::Minify || writeReport(line, RunReport({})));
    if (line.action == CommandLine::Action::List)
        return statusOfPrinting(printList(queue, settings));
    if (line.action == CommandLine::Action::DryRun)
        return statusOfPrinting(printCommands(queue, settings, tools));
    if (const QString missing = tools.missing(settings); !missing.isEmpty()) {
        printError(missing);
        RunReport report(queue.entries());
        report.runEnded(RunEnd::JavaNotStarted, missing);
        static_cast<void>(writeReport(line, report));
        return NoTools;
    }
    return minify(line, tools, queue, settings);
}

int run(const CommandLine &line, const Tools &tools)
{
    if (line.action == CommandLine::Action::Help)
        return statusOfPrinting(TerminalText::print(stdout, helpText()));
    if (line.action == CommandLine::Action::Version)
        return statusOfPrinting(TerminalText::print(stdout, versionText() + tools.versions()));
    for (const QString &sentence : putBackAfterInterruption(tools.originals))
        printError(sentence);
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
    for (const QString &path : line.paths)
        listing.add(PathString::absolute(path));
    if (const QString error = reportPlaceError(line, queue, settings); !error.isEmpty())
        return wrongUsage(error);
    listing.printWhatIsMissing();
    const int status = act(line, tools, queue, settings);
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
