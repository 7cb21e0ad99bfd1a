// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalRun.h"

#include "cli/ParallelRun.h"
#include "cli/RunReport.h"
#include "cli/StopSignals.h"
#include "cli/TerminalJobDisplay.h"
#include "cli/TerminalText.h"
#include "engine/CompressorCommand.h"
#include "engine/GzipCopy.h"
#include "engine/InterruptedRuns.h"
#include "queue/AddFiles.h"
#include "queue/FileQueue.h"
#include "queue/OutputPath.h"
#include "queue/PathString.h"
#include "settings/DurableFile.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace brevant {

namespace {

void printError(const QString &text)
{
    TerminalText::print(stderr, QStringLiteral("brevant-cli: %1\n").arg(TerminalText::printable(text)));
}

/// Why that settings file cannot be used; empty if it can.
QString settingsFileError(const QString &fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return QStringLiteral("the settings file %1 cannot be read").arg(fileName);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isObject())
        return {};
    return QStringLiteral("the settings file %1 holds no JSON object (%2)")
        .arg(fileName, document.isNull() ? error.errorString() : QStringLiteral("it holds something else"));
}

/// What is wrong with the files that the command line names; empty if nothing is.
QString inputError(const CommandLine &line)
{
    if (!line.settingsFile.isEmpty()) {
        if (QString error = settingsFileError(line.settingsFile); !error.isEmpty())
            return error;
    }
    for (const QString &path : line.paths) {
        const QFileInfo file(path);
        if (!file.exists() && !file.isSymLink())
            return QStringLiteral("%1 does not exist").arg(path);
    }
    return {};
}

QString whyNothingIsListed(const SettingsStore &settings)
{
    QStringList reasons;
    const auto off = [&](QLatin1StringView key, const QString &kinds) {
        if (!settings.boolForKey(key))
            reasons.append(QStringLiteral("%1 files are off (%2)").arg(kinds, key));
    };
    off(enableHTMLCheckerKeyString, QStringLiteral("HTML"));
    off(enablePHPCheckerKeyString, QStringLiteral("PHP and PHTML"));
    if (settings.boolForKey(filterCheckerKeyString))
        reasons.append(QStringLiteral("files named .min are skipped (%1)").arg(filterCheckerKeyString));
    QString text = QStringLiteral("Nothing to minify: no file of a kind that is on was found");
    if (!reasons.isEmpty())
        text += QStringLiteral("; %1").arg(reasons.join(QLatin1StringView(", ")));
    return text + QStringLiteral(".\n");
}

void printList(const FileQueue &queue, const SettingsStore &settings)
{
    OutputPath outputPath(settings);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        TerminalText::print(stdout, QStringLiteral("%1\t%2\n")
                                        .arg(TerminalText::printable(entry),
                                             TerminalText::printable(output.value_or(QString()))));
    }
}

/// The commands of a run as a script: they are run in the tools folder, one after the other.
void printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools)
{
    TerminalText::print(stdout, TerminalText::commandLine(QStringLiteral("cd"), {tools.folder}) + u'\n');
    OutputPath outputPath(settings);
    const CompressorOptions options = CompressorOptions::atStartOfRun(settings);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        const QStringList arguments = compressorArguments(entry, output, options);
        TerminalText::print(stdout, TerminalText::commandLine(tools.java, arguments) + u'\n');
        if (!settings.boolForKey(gzipCheckerKeyString))
            continue;
        for (const GzipStep &step : gzipSteps(output))
            TerminalText::print(stdout, TerminalText::commandLine(step.program, step.arguments) + u'\n');
    }
}

/// Writes the report that was asked for; false, and said why, if that fails.
bool writeReport(const CommandLine &line, const RunReport &report)
{
    if (line.reportFile.isEmpty())
        return true;
    const QString error = DurableFile::replace(line.reportFile, report.toJson());
    if (!error.isEmpty())
        printError(QStringLiteral("the report %1 cannot be written: %2").arg(line.reportFile, error));
    return error.isEmpty();
}

int minify(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings)
{
    if (const QString missing = tools.missing(); !missing.isEmpty()) {
        printError(missing);
        return static_cast<int>(ExitStatus::NoTools);
    }
    StopSignals::catchAll(line.jobs > 1);
    RunReport report;
    TerminalJobDisplay display(queue, report,
                               line.quiet ? TerminalJobDisplay::Style::Quiet
                                          : TerminalJobDisplay::styleOfStandardOutput());
    const std::atomic<Stop> &stop = StopSignals::requested();
    const MinifyJob::End end = line.jobs == 1
                                   ? MinifyJob(queue, settings, tools, display).run(stop)
                                   : ParallelRun(queue, settings, tools, display).run(line.jobs, stop);
    report.finish(end, queue.entries());
    if (!line.quiet)
        TerminalText::print(stdout, report.summary());
    else if (end == MinifyJob::End::JavaNotStarted)
        printError(display.statusText());
    TerminalText::print(stderr, report.failures());
    const bool reported = writeReport(line, report);
    if (end == MinifyJob::End::Stopped)
        return StopSignals::exitStatus();
    if (end == MinifyJob::End::JavaNotStarted)
        return static_cast<int>(ExitStatus::NoTools);
    return static_cast<int>(report.isAllDone() && reported ? ExitStatus::AllDone : ExitStatus::SomeFailed);
}

/// Sets what holds for this run only. The compressors run elsewhere, so a folder counts from here.
void overrideSetting(SettingsStore &settings, QLatin1StringView key, const QJsonValue &value)
{
    const bool isFolder = key == selectedFolderKeyString && !value.toString().isEmpty();
    settings.setOverride(isFolder ? PathString::absolute(value.toString()) : value, key);
}

} // namespace

int reportUsageError(const UsageError &error)
{
    printError(error.text);
    TerminalText::print(stderr, QStringLiteral("Try: brevant-cli --help\n"));
    return static_cast<int>(ExitStatus::WrongUsage);
}

int runTerminal(const CommandLine &line, const Tools &tools)
{
    if (line.action == CommandLine::Action::Help || line.action == CommandLine::Action::Version) {
        TerminalText::print(stdout, line.action == CommandLine::Action::Help ? helpText() : versionText());
        return static_cast<int>(ExitStatus::AllDone);
    }
    for (const QString &sentence : putBackAfterInterruption(tools.originals))
        printError(sentence);
    if (QString error = inputError(line); !error.isEmpty()) {
        printError(error);
        return static_cast<int>(ExitStatus::WrongUsage);
    }

    SettingsStore settings(line.settingsFile.isEmpty() ? SettingsStore::defaultFilePath()
                                                       : line.settingsFile);
    settings.registerDefaults(registeredDefaults());
    for (const auto &[key, value] : line.settings)
        overrideSetting(settings, key, value);

    FileQueue queue;
    for (const QString &path : line.paths)
        addTopLevelPath(PathString::absolute(path), queue, settings);
    if (queue.isEmpty()) {
        TerminalText::print(stderr, whyNothingIsListed(settings));
        const bool reported = line.action != CommandLine::Action::Minify || writeReport(line, RunReport());
        return static_cast<int>(reported ? ExitStatus::AllDone : ExitStatus::SomeFailed);
    }
    if (line.action == CommandLine::Action::List)
        printList(queue, settings);
    else if (line.action == CommandLine::Action::DryRun)
        printCommands(queue, settings, tools);
    else
        return minify(line, tools, queue, settings);
    return static_cast<int>(ExitStatus::AllDone);
}

} // namespace brevant
