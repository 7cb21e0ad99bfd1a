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

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <cerrno>

namespace brevant {

namespace {

void printError(const QString &text)
{
    TerminalText::print(stderr, QStringLiteral("brevant-cli: %1\n").arg(TerminalText::printable(text)));
}

/// Says which keys of a settings file are no settings.
void nameUnknownKeys(const QString &fileName, const QJsonObject &values)
{
    QStringList unknown;
    for (const QString &key : values.keys()) {
        if (findSettingKey(key) == nullptr)
            unknown.append(key);
    }
    if (!unknown.isEmpty())
        printError(QStringLiteral("the settings file %1 holds what is no setting: %2")
                       .arg(fileName, unknown.join(QLatin1StringView(", "))));
}

/// Why that settings file cannot be used; empty if it can.
QString settingsFileError(const QString &fileName)
{
    QFile file(fileName);
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly))
        return QStringLiteral("the settings file %1 cannot be read").arg(fileName);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (document.isObject()) {
        nameUnknownKeys(fileName, document.object());
        return {};
    }
    return QStringLiteral("the settings file %1 holds no JSON object (%2)")
        .arg(fileName, document.isNull() ? error.errorString() : QStringLiteral("it holds something else"));
}

QString reportError(const CommandLine &line, const QString &reason)
{
    return QStringLiteral("the report %1 cannot be written: %2").arg(line.reportFile, reason);
}

/// What is wrong with the places that the command line names; empty if nothing is.
QString inputError(const CommandLine &line)
{
    if (QDir::currentPath().isEmpty())
        return QStringLiteral("the working folder is gone");
    if (!line.settingsFile.isEmpty()) {
        if (QString error = settingsFileError(line.settingsFile); !error.isEmpty())
            return error;
    }
    for (const QString &path : line.paths) {
        const QFileInfo file(path);
        if (!file.exists() && !file.isSymLink())
            return QStringLiteral("%1 does not exist").arg(path);
    }
    if (!line.reportFile.isEmpty()) {
        if (DurableFile trial(line.reportFile); !trial.write({}))
            return reportError(line, trial.errorText());
    }
    return {};
}

/// What in the settings would lead the outputs astray; empty if nothing does.
QString settingsError(const SettingsStore &settings)
{
    if (settings.isTrue(sameFolderKeyString) ||
        !settings.stringForKey(selectedFolderKeyString).value_or(QString()).isEmpty())
        return {};
    return QStringLiteral("%1 is not true, and %2 names no folder for the outputs")
        .arg(sameFolderKeyString, selectedFolderKeyString);
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

/// False, with errno set, on failure; so with the next one.
bool printList(const FileQueue &queue, const SettingsStore &settings)
{
    OutputPath outputPath(settings);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        const QString line =
            QStringLiteral("%1\t%2\n")
                .arg(TerminalText::printable(entry), TerminalText::printable(output.value_or(QString())));
        if (!TerminalText::print(stdout, line))
            return false;
    }
    return true;
}

/// The commands of a run as a script: they are run in the tools folder, one after the other.
bool printCommands(const FileQueue &queue, const SettingsStore &settings, const Tools &tools)
{
    const auto print = [](const QString &program, const QStringList &arguments) {
        return TerminalText::print(stdout, TerminalText::commandLine(program, arguments) + u'\n');
    };
    if (!print(QStringLiteral("cd"), {tools.folder}))
        return false;
    OutputPath outputPath(settings);
    const CompressorOptions options = CompressorOptions::atStartOfRun(settings);
    for (const QString &entry : queue.entries()) {
        const std::optional<QString> output = outputPath.next(entry);
        const QStringList arguments = compressorArguments(entry, output, options);
        if (!print(tools.java, arguments))
            return false;
        if (!settings.boolForKey(gzipCheckerKeyString))
            continue;
        for (const GzipStep &step : gzipSteps(output)) {
            if (!print(step.program, step.arguments))
                return false;
        }
    }
    return true;
}

/// The exit status of what only prints.
int statusOfPrinting(bool printed)
{
    if (!printed)
        printError(QStringLiteral("standard output cannot be written: %1").arg(qt_error_string(errno)));
    return static_cast<int>(printed ? ExitStatus::AllDone : ExitStatus::SomeFailed);
}

/// Writes the report that was asked for; false, and said why, if that fails.
bool writeReport(const CommandLine &line, const RunReport &report)
{
    if (line.reportFile.isEmpty())
        return true;
    const QString error = DurableFile::replace(line.reportFile, report.toJson());
    if (!error.isEmpty())
        printError(reportError(line, error));
    return error.isEmpty();
}

int minify(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings)
{
    if (const QString missing = tools.missing(); !missing.isEmpty()) {
        printError(missing);
        RunReport report;
        report.finish(MinifyJob::End::JavaNotStarted, queue.entries(), missing);
        static_cast<void>(writeReport(line, report));
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
    report.finish(end, queue.entries(),
                  end == MinifyJob::End::JavaNotStarted ? display.statusText() : QString());
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
    if (line.action == CommandLine::Action::Help)
        return statusOfPrinting(TerminalText::print(stdout, helpText()));
    if (line.action == CommandLine::Action::Version)
        return statusOfPrinting(TerminalText::print(stdout, versionText()));
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
    if (QString error = settingsError(settings); !error.isEmpty()) {
        printError(error);
        return static_cast<int>(ExitStatus::WrongUsage);
    }

    FileQueue queue;
    for (const QString &path : line.paths)
        addTopLevelPath(PathString::absolute(path), queue, settings);
    if (queue.isEmpty()) {
        TerminalText::print(stderr, whyNothingIsListed(settings));
        const bool reported = line.action != CommandLine::Action::Minify || writeReport(line, RunReport());
        return static_cast<int>(reported ? ExitStatus::AllDone : ExitStatus::SomeFailed);
    }
    if (line.action == CommandLine::Action::List)
        return statusOfPrinting(printList(queue, settings));
    if (line.action == CommandLine::Action::DryRun)
        return statusOfPrinting(printCommands(queue, settings, tools));
    return minify(line, tools, queue, settings);
}

} // namespace brevant
