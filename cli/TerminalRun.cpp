// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalRun.h"

#include "cli/CommandLine.h"
#include "cli/DryRun.h"
#include "cli/Listing.h"
#include "cli/OutputClaims.h"
#include "cli/StopSignals.h"
#include "cli/TerminalProgress.h"
#include "cli/TerminalText.h"
#include "engine/MinifyJob.h"
#include "engine/originals/PutBack.h"
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

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>

namespace brevant {

namespace {

/// Exit statuses of brevant-cli; after a stop it is 128 and the signal's number, 130 for Ctrl+C.
enum class ExitStatus { AllDone = 0, SomeFailed = 1, WrongUsage = 2, NoTools = 3 };

void printError(const QString &text)
{
    TerminalText::print(stderr, QStringLiteral("brevant-cli: %1\n").arg(printable(text)));
}

int wrongUsage(const QString &error)
{
    printError(error);
    return static_cast<int>(ExitStatus::WrongUsage);
}

int statusOf(bool isAllDone)
{
    return static_cast<int>(isAllDone ? ExitStatus::AllDone : ExitStatus::SomeFailed);
}

/// The exit status of what only prints.
int statusOfPrinting(bool printed)
{
    if (!printed)
        printError(QStringLiteral("standard output cannot be written: %1").arg(qt_error_string(errno)));
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
        return QStringLiteral("the settings file %1 cannot be read").arg(fileName);
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject())
        return QStringLiteral("the settings file %1 holds no JSON object (%2)")
            .arg(fileName,
                 document.isNull() ? error.errorString() : QStringLiteral("it holds something else"));
    QStringList unknown = document.object().keys();
    unknown.removeIf([](const QString &key) { return findSettingKey(key) != nullptr; });
    if (!unknown.isEmpty())
        printError(QStringLiteral("the settings file %1 holds what is no setting: %2")
                       .arg(fileName, unknown.join(QLatin1StringView(", "))));
    return {};
}

QString reportError(const CommandLine &line, const QString &reason)
{
    return QStringLiteral("the report %1 cannot be written: %2").arg(line.reportFile, reason);
}

/// What is wrong with the files and folders on the command line; empty if nothing is.
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

/// Why the settings name no place for the outputs; empty if they do.
QString settingsError(const SettingsStore &settings)
{
    if (settings.isTrue(sameFolderKeyString) ||
        !settings.stringForKey(selectedFolderKeyString).value_or(QString()).isEmpty())
        return {};
    return QStringLiteral("%1 is not true, and %2 names no folder for the outputs")
        .arg(sameFolderKeyString, selectedFolderKeyString);
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
            files << *output << PathString::withExtension(*output, u"gz");
    }
    for (const QString &file : files) {
        for (const QString &mark : FileMarks::all(file)) {
            if (marks.contains(mark))
                return QStringLiteral("the report %1 would be written over %2").arg(line.reportFile, file);
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

/// Reports on standard error what was found but left out of the queue, or out of --list.
void sayWhatIsNotListed(const CommandLine &line, const Listing &listing)
{
    const bool isList = line.action == CommandLine::Action::List;
    for (const QString &sentence : listing.unreadable())
        printError(sentence);
    if (isList) {
        for (const QString &file : listing.unnameable())
            printError(QStringLiteral("%1: not minified: %2").arg(file, notUtf8()));
    }
    if (line.quiet)
        return;
    for (const QString &folder : listing.folders())
        printError(folder + QLatin1StringView(" is a folder"));
    const QStringList outputs = isList ? listing.outputs() : QStringList();
    if (outputs.isEmpty())
        return;
    QString text = outputs.size() == 1
                       ? QStringLiteral("1 file passed over, as the output of another (--all takes all):\n")
                       : QStringLiteral("%1 files passed over, as outputs of others (--all takes all):\n")
                             .arg(outputs.size());
    for (const QString &output : outputs)
        text += printable(output) + u'\n';
    TerminalText::print(stderr, text);
}

int minify(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings)
{
    using Style = TerminalProgress::Style;
    TerminalProgress progress(queue.entries(),
                              line.quiet ? Style::Quiet : TerminalProgress::styleOfStandardOutput());
    if (const QString missing = tools.missing(); !missing.isEmpty()) {
        printError(missing);
        progress.RunReport::runEnded(RunEnd::JavaNotStarted, missing);
        static_cast<void>(writeReport(line, progress));
        return static_cast<int>(ExitStatus::NoTools);
    }
    StopSignals::catchAll(line.jobs > 1);
    const RunEnd end = MinifyJob(queue, settings, tools, progress, StopSignals::requested(),
                                 refusalFor(queue.entries(), settings))
                           .run(line.jobs);
    if (!line.quiet)
        TerminalText::print(stdout, progress.summary());
    else if (end == RunEnd::JavaNotStarted)
        printError(progress.failure());
    TerminalText::print(stderr, progress.notes() + progress.failures());
    const bool reported = writeReport(line, progress);
    switch (end) {
    case RunEnd::Completed:
        break;
    case RunEnd::Stopped:
        return StopSignals::exitStatus();
    case RunEnd::JavaNotStarted:
        return static_cast<int>(ExitStatus::NoTools);
    }
    return statusOf(progress.isAllDone() && reported);
}

/// Carries out the action on the files in the queue.
int act(const CommandLine &line, const Tools &tools, const FileQueue &queue, const SettingsStore &settings,
        const Listing &listing)
{
    if (queue.isEmpty()) {
        if (listing.unreadable().isEmpty())
            TerminalText::print(stderr, whyNothingIsListed(settings));
        return statusOf(line.action != CommandLine::Action::Minify || writeReport(line, RunReport({})));
    }
    if (line.action == CommandLine::Action::List)
        return statusOfPrinting(printList(queue, settings));
    if (line.action == CommandLine::Action::DryRun)
        return statusOfPrinting(printCommands(queue, settings, tools));
    return minify(line, tools, queue, settings);
}

int run(const CommandLine &line, const Tools &tools)
{
    if (line.action == CommandLine::Action::Help)
        return statusOfPrinting(TerminalText::print(stdout, helpText()));
    if (line.action == CommandLine::Action::Version)
        return statusOfPrinting(TerminalText::print(stdout, versionText()));
    for (const QString &sentence : putBackAfterInterruption(tools.originals))
        printError(sentence);
    if (const QString error = inputError(line); !error.isEmpty())
        return wrongUsage(error);

    SettingsStore settings(settingsFile(line));
    settings.registerDefaults(registeredDefaults());
    overrideSettings(settings, line);
    if (const QString error = settingsError(settings); !error.isEmpty())
        return wrongUsage(error);

    FileQueue queue;
    Listing listing(queue, settings, line.all);
    for (const QString &path : line.paths)
        listing.add(PathString::absolute(path));
    if (const QString error = reportPlaceError(line, queue, settings); !error.isEmpty())
        return wrongUsage(error);
    sayWhatIsNotListed(line, listing);
    const int status = act(line, tools, queue, settings, listing);
    const bool isAllThere = listing.unreadable().isEmpty() && listing.unnameable().isEmpty();
    return status == 0 && !isAllThere ? statusOf(false) : status;
}

} // namespace

int runTerminal(const QStringList &arguments, const Tools &tools)
{
    const CommandLine line = parseCommandLine(arguments);
    if (line.error.isEmpty())
        return run(line, tools);
    const int status = wrongUsage(line.error);
    TerminalText::print(stderr, QStringLiteral("Try: brevant-cli --help\n"));
    return status;
}

} // namespace brevant
