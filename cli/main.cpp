// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ChangedFiles.h"
#include "cli/CommandLine.h"
#include "cli/InputChecks.h"
#include "cli/Listing.h"
#include "cli/MinifyRun.h"
#include "cli/OutTree.h"
#include "cli/PathList.h"
#include "cli/PrintedRun.h"
#include "cli/ReportOutput.h"
#include "cli/StandardInput.h"
#include "cli/TerminalText.h"
#include "cli/Watch.h"
#include "cli/project/InitProject.h"
#include "cli/project/ProjectUse.h"
#include "cli/project/ShowSettings.h"
#include "engine/Tools.h"
#include "engine/originals/PutBack.h"
#include "files/Descriptor.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QDir>
#include <QLocale>

#include <clocale>
#include <csignal>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

using TerminalText::printError;

int wrongUsage(const QString &error)
{
    printError(error);
    return WrongUsage;
}

int wrongArguments(const QString &error)
{
    printError(error);
    TerminalText::print(stderr, u"Try: brevant-cli --help\n"_s);
    return WrongUsage;
}

int statusOf(bool isAllDone)
{
    return isAllDone ? AllDone : SomeFailed;
}

/// Carries out the action on the files in the queue.
int act(const CommandLine &line, const Tools &tools, const PlannedRun &planned, const ReportOutput &output,
        ChangedFiles *changed = nullptr)
{
    if (line.action == CommandLine::Action::Minify)
        return MinifyRun(line, tools, planned.settings, output, changed).run(planned.queue, planned.copies);
    if (planned.queue.isEmpty() && planned.copies.empty())
        return AllDone;
    return statusOfPrinting(line.action == CommandLine::Action::List ? printList(planned, line.print0)
                                                                     : printCommands(planned, line, tools));
}

/// The same for --changed: on those files alone that are to be made.
int actOnChanged(const CommandLine &line, const Tools &tools, FileQueue &queue, const Listing &listing,
                 const EntrySettings &settings, const ReportOutput &output)
{
    ChangedFiles changed(line, settings, tools);
    if (const QString error = changed.leaveOutUnchanged(queue); !error.isEmpty())
        return wrongUsage(error);
    const bool isRun = line.action == CommandLine::Action::Minify;
    if (!line.quiet)
        TerminalText::print(isRun ? stdout : stderr, changed.inWords());
    const PlannedRun planned{queue, settings, listing.copies(), changed.unchanged()};
    const int status = act(line, tools, planned, output, &changed);
    if (isRun)
        changed.save();
    return status;
}

/// Carries out the action on the files that the paths come to.
int runOver(const CommandLine &line, const Tools &tools, const ProjectUse &project,
            const EntrySettings &settings, const ReportOutput &output)
{
    FileQueue queue;
    Listing listing(queue, settings, line);
    if (const QString error = listing.fill(); !error.isEmpty())
        return wrongUsage(error);
    if (const QString error = project.inPlaceError(queue, settings, line); !error.isEmpty())
        return wrongUsage(error);
    if (const QString error = reportPlaceError(line, queue, settings, listing.copies()); !error.isEmpty())
        return wrongUsage(error);
    listing.printWhatIsMissing();
    const int status = line.changed ? actOnChanged(line, tools, queue, listing, settings, output)
                                    : act(line, tools, {queue, settings, listing.copies()}, output);
    return status == 0 ? statusOf(listing.isComplete()) : status;
}

/// Writes a project file into the working folder.
int init()
{
    const NewProject made = initProject(QDir::currentPath());
    return made.error.isEmpty() ? statusOfPrinting(TerminalText::print(stdout, made.text))
                                : wrongUsage(made.error);
}

int run(const CommandLine &given, const Tools &tools)
{
    if (given.action == CommandLine::Action::Help)
        return statusOfPrinting(TerminalText::print(stdout, helpText()));
    if (given.action == CommandLine::Action::Version)
        return statusOfPrinting(TerminalText::print(stdout, versionText() + tools.versions()));
    if (given.action == CommandLine::Action::Init)
        return init();
    ProjectUse project;
    if (const QString error = project.load(given); !error.isEmpty())
        return wrongUsage(error);
    CommandLine line = project.completed(given);
    if (const QString error = missingPathError(line); !error.isEmpty())
        return wrongArguments(error);
    const ReportOutput output(line);
    for (const QString &sentence : putBackAfterInterruption(tools.originals))
        printError(sentence);
    if (const QString error = addPathsFromFile(line); !error.isEmpty())
        return wrongUsage(error);
    project.spell(line.paths);
    const bool isShown = line.action == CommandLine::Action::ShowSettings; // before there are its paths, too
    if (const QString error = inputError(isShown ? given : line); !error.isEmpty())
        return wrongUsage(error);

    SettingsStore settings(settingsFile(line));
    settings.registerDefaults(registeredDefaults());
    project.overrideSettings(settings);
    overrideSettings(settings, line);
    EntrySettings entrySettings(settings);
    project.addRules(entrySettings, line);
    if (isShown)
        return statusOfPrinting(TerminalText::print(stdout, settingsText(given, project, entrySettings)));
    if (const QString error = settingsError(line, settings); !error.isEmpty())
        return wrongUsage(error);

    if (!line.also.isEmpty()) // whatever the settings file says during the run
        settings.setOverride(u"modern"_s, compressorsKeyString);
    if (line.action == CommandLine::Action::MinifyText)
        return minifyStandardInput(line, tools, settings);

    if (const OutTree tree(line); tree.isWanted())
        entrySettings.setOutputFolders([tree](const QString &entry) { return tree.folderOf(entry); });
    if (line.watch)
        return Watch(line, tools, entrySettings, output).run();
    return runOver(line, tools, project, entrySettings, output);
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
    return wrongArguments(line.error);
}
