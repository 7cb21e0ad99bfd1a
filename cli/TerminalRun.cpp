// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalRun.h"

#include "cli/DryRun.h"
#include "cli/Listing.h"
#include "cli/OutputClaims.h"
#include "cli/RunReport.h"
#include "cli/StopSignals.h"
#include "cli/TerminalProgress.h"
#include "cli/TerminalText.h"
#include "engine/originals/PutBack.h"
#include "files/DurableFile.h"
#include "files/FileMarks.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "queue/OutputPath.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

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
        struct stat status {};
        if (::lstat(RawBytes::encoded(path).constData(), &status) != 0)
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

/// The exit status of what only prints.
int statusOfPrinting(bool printed)
{
    if (!printed)
        printError(QStringLiteral("standard output cannot be written: %1").arg(qt_error_string(errno)));
    return static_cast<int>(printed ? ExitStatus::AllDone : ExitStatus::SomeFailed);
}

/// What the report would be written over; empty if it is no file of the run.
QString fileUnderReport(const CommandLine &line, const FileQueue &queue, const SettingsStore &settings)
{
    if (line.reportFile.isEmpty())
        return {};
    const QStringList marks = FileMarks::all(PathString::absolute(line.reportFile));
    const auto isUnderReport = [&marks](const QString &path) {
        return std::ranges::any_of(FileMarks::all(path),
                                   [&marks](const QString &mark) { return marks.contains(mark); });
    };
    OutputPath outputPath(settings);
    QStringList files{line.settingsFile.isEmpty() ? SettingsStore::defaultFilePath()
                                                  : PathString::absolute(line.settingsFile)};
    for (const QString &entry : queue.entries()) {
        files.append(entry);
        if (const std::optional<QString> output = outputPath.next(entry))
            files << *output << PathString::withExtension(*output, u"gz");
    }
    const auto found = std::ranges::find_if(files, isUnderReport);
    return found == files.end() ? QString() : *found;
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
        report.finish(RunEnd::JavaNotStarted, queue.entries(), missing);
        static_cast<void>(writeReport(line, report));
        return static_cast<int>(ExitStatus::NoTools);
    }
    StopSignals::catchAll(line.jobs > 1);
    RunReport report;
    TerminalProgress progress(report, line.quiet ? TerminalProgress::Style::Quiet
                                                 : TerminalProgress::styleOfStandardOutput());
    const RunEnd end = MinifyJob(queue, settings, tools, progress, StopSignals::requested(),
                                 refusalFor(queue.entries(), settings))
                           .run(line.jobs);
    report.finish(end, queue.entries(), end == RunEnd::JavaNotStarted ? progress.status() : QString());
    if (!line.quiet)
        TerminalText::print(stdout, report.summary());
    else if (end == RunEnd::JavaNotStarted)
        printError(progress.status());
    TerminalText::print(stderr, report.notes() + report.failures());
    const bool reported = writeReport(line, report);
    if (end == RunEnd::Stopped)
        return StopSignals::exitStatus();
    if (end == RunEnd::JavaNotStarted)
        return static_cast<int>(ExitStatus::NoTools);
    return static_cast<int>(report.isAllDone() && reported ? ExitStatus::AllDone : ExitStatus::SomeFailed);
}

/// Says on the error stream what was found and is not in the queue, or not in the list of it.
void sayWhatIsNotListed(const CommandLine &line, const Listing &listing)
{
    for (const QString &sentence : listing.unreadable())
        printError(sentence);
    if (line.action == CommandLine::Action::List) {
        for (const QString &file : listing.unnameable())
            printError(QStringLiteral("%1: not minified: %2").arg(file, notUtf8()));
    }
    if (line.quiet)
        return;
    for (const QString &folder : listing.folders())
        printError(folder + QLatin1StringView(" is a folder"));
    const QStringList outputs = listing.outputs();
    if (line.action != CommandLine::Action::List || outputs.isEmpty())
        return;
    QString text = outputs.size() == 1
                       ? QStringLiteral("1 file passed over, as the output of another (--all takes all):\n")
                       : QStringLiteral("%1 files passed over, as outputs of others (--all takes all):\n")
                             .arg(outputs.size());
    for (const QString &output : outputs)
        text += TerminalText::printable(output) + u'\n';
    TerminalText::print(stderr, text);
}

/// Does what was asked for with the files that are listed.
int act(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings,
        const Listing &listing)
{
    if (queue.isEmpty()) {
        if (listing.unreadable().isEmpty())
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
    Listing listing(queue, settings, line.all);
    for (const QString &path : line.paths)
        listing.add(PathString::absolute(path));
    if (const QString file = fileUnderReport(line, queue, settings); !file.isEmpty()) {
        printError(QStringLiteral("the report %1 would be written over %2").arg(line.reportFile, file));
        return static_cast<int>(ExitStatus::WrongUsage);
    }
    sayWhatIsNotListed(line, listing);
    const int status = act(line, tools, queue, settings, listing);
    const bool isAllThere = listing.unreadable().isEmpty() && listing.unnameable().isEmpty();
    return status == static_cast<int>(ExitStatus::AllDone) && !isAllThere
               ? static_cast<int>(ExitStatus::SomeFailed)
               : status;
}

} // namespace brevant
