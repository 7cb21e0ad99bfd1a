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
#include "engine/Tools.h"
#include "engine/originals/PutBack.h"
#include "files/Descriptor.h"
#include "files/RawBytes.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

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

    if (line.action == CommandLine::Action::MinifyText)
        return minifyStandardInput(line, tools, settings);

    EntrySettings entrySettings(settings);
    if (const OutTree tree(line); tree.isWanted())
        entrySettings.setOutputFolders([tree](const QString &entry) { return tree.folderOf(entry); });
    if (line.watch)
        return Watch(line, tools, entrySettings, output).run();

    FileQueue queue;
    Listing listing(queue, entrySettings, line);
    if (const QString error = listing.fill(); !error.isEmpty())
        return wrongUsage(error);
    if (const QString error = reportPlaceError(line, queue, entrySettings, listing.copies());
        !error.isEmpty())
        return wrongUsage(error);
    listing.printWhatIsMissing();
    const int status = line.changed ? actOnChanged(line, tools, queue, listing, entrySettings, output)
                                    : act(line, tools, {queue, entrySettings, listing.copies()}, output);
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
