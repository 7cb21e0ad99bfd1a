// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Watch.h"

#include "cli/ChangedFiles.h"
#include "cli/CommandLine.h"
#include "cli/Listing.h"
#include "cli/OutputFiles.h"
#include "cli/PrintedRun.h"
#include "cli/StopSignals.h"
#include "cli/TerminalText.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "files/RawBytes.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"

#include <algorithm>
#include <cerrno>

#include <malloc.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace brevant {

using TerminalText::printError;

namespace {

bool isPlainFile(const QString &path)
{
    const auto status = statusOfLink(RawBytes::encoded(path));
    return status && S_ISREG(status->st_mode);
}

} // namespace

Watch::Watch(const CommandLine &line, const Tools &tools, const EntrySettings &settings,
             const ReportOutput &output)
    : m_line(line), m_tools(tools), m_settings(settings), m_output(output), m_watched(line)
{
    if (line.changed)
        m_done = std::make_unique<ChangedFiles>(line, settings, tools);
}

Watch::~Watch() = default;

int Watch::run()
{
    if (stopDescriptor() < 0) {
        printError(u"--watch: %1"_s.arg(qt_error_string(errno)));
        return SomeFailed;
    }
    if (const auto status = minifyAll())
        return *status;
    const int status = minifyChanges();
    if (m_done)
        m_done->save();
    return status;
}

/// Goes on until a stop is asked for, or nothing more can be done. Returns the exit status.
int Watch::minifyChanges()
{
    const auto interest = [this]() -> WatchedPaths::Interest {
        return [this, kinds = AcceptedKinds(m_settings.common(), m_line.also)](const QString &file) {
            return (m_line.copyRest || kinds.accept(file)) && !m_own.hold(file);
        };
    };
    while (stopRequested == Stop::No) {
        catchStopSignals(0);
        ::malloc_trim(0); // a run takes much that is not needed while waiting
        ChangedPaths changed;
        if (m_watched.collect(changed, interest) && minify(changed) == NoTools)
            return NoTools;
        if (!m_watched.folders().error().isEmpty()) {
            printError(m_watched.folders().error());
            return SomeFailed;
        }
    }
    return statusOfSignal(stopSignal);
}

/// The first run. The exit status if there can be no other.
std::optional<int> Watch::minifyAll()
{
    FileQueue queue;
    Listing listing(queue, m_settings, m_line);
    listing.setFolderSeen([this](const QString &folder) { m_watched.folders().add(folder); });
    if (const QString error = listing.fill(); !error.isEmpty()) {
        printError(error);
        return WrongUsage;
    }
    if (!m_watched.folders().error().isEmpty()) {
        printError(m_watched.folders().error());
        return SomeFailed;
    }
    if (const QString error = unfitError(queue); !error.isEmpty()) {
        printError(error);
        return WrongUsage;
    }
    const qsizetype folders = m_watched.folders().count();
    m_watched.watchAround();
    listing.printWhatIsMissing();
    const int files = queue.count();
    if (const int status = run(queue, listing.copies(), Round::First);
        status == NoTools || status == WrongUsage)
        return status;
    if (!m_line.quiet && stopRequested == Stop::No) {
        TerminalText::print(
            stdout, u"Watching %1 in %2. Ctrl+C ends.\n"_s.arg(
                        TerminalText::countedFiles(files),
                        folders == 1 ? u"1 folder"_s : u"%1 folders"_s.arg(TerminalText::grouped(folders))));
    }
    return std::nullopt;
}

/// Why these settings are not for watching: an output would be taken for a source that has changed.
QString Watch::unfitError(const FileQueue &queue) const
{
    QSet<QString> folders;
    for (const auto &[entry, output] : entriesWithOutputs(queue, m_settings)) {
        if (!output)
            continue;
        if (FileMarks::areOfSameFile(entry, *output))
            return u"--watch needs outputs apart from their sources, and %1 is both: add --suffix .min"_s.arg(
                entry);
        const QStringView folder = PathString::folder(*output);
        if (folder != PathString::folder(entry))
            folders.insert(folder.toString());
    }
    for (const QString &folder : folders) {
        if (m_watched.folders().watches(folder))
            return u"--watch: outputs would go to %1, where sources are looked for: name another folder for "
                   "them"_s.arg(folder);
    }
    return {};
}

/// Minifies what there is of what has changed. Returns the exit status of that.
int Watch::minify(const ChangedPaths &changed)
{
    removeOrphans(changed);
    FileQueue queue;
    Listing listing(queue, m_settings, m_line);
    listing.lookOnlyAt(changed);
    listing.setFolderSeen([this](const QString &folder) { m_watched.folders().add(folder); });
    if (const QString error = listing.fill(); !error.isEmpty())
        printError(error);
    listing.printWhatIsMissing();
    m_watched.await(changed);
    dropUnchanged(queue);
    if (const QString error = unfitError(queue); !error.isEmpty()) {
        printError(error);
        return SomeFailed;
    }
    return run(queue, listing.copies(), Round::Later);
}

/// Takes out what was written here, and, where changes have been lost, what is as old as its output.
void Watch::dropUnchanged(FileQueue &queue)
{
    const auto lostSince = m_watched.takeLostSince();
    std::vector<int> unchanged;
    int index = 0;
    for (const auto &[entry, output] : entriesWithOutputs(queue, m_settings)) {
        const auto state = lostSince ? FileState::of(entry) : std::nullopt;
        if (m_own.hold(entry) ||
            (state && state->changedAt < *lostSince && output && isThere(RawBytes::encoded(*output))))
            unchanged.push_back(index);
        ++index;
    }
    queue.removeAt(unchanged);
}

int Watch::run(FileQueue &queue, const std::vector<FileCopy> &copies, Round round)
{
    if (m_done) {
        if (const QString error = m_done->leaveOutUnchanged(queue); !error.isEmpty()) {
            printError(error);
            return WrongUsage;
        }
        if (round == Round::First && !m_line.quiet)
            TerminalText::print(stdout, m_done->inWords());
        for (const auto &[source, output] : m_done->unchanged())
            record(m_done->ownFiles(source, *output), source);
    }
    MinifyRun run(m_line, m_tools, m_settings, m_output, m_done.get());
    run.setResultSeen([this](const EntryResult &result) {
        record(writtenFiles(result, m_settings.of(result.source)), result.source);
    });
    int status = AllDone;
    if (!queue.isEmpty() || !copies.empty())
        status = round == Round::First ? run.run(queue, copies) : runChanged(run, queue, copies);
    if (m_done) {
        m_done->forgetUnchanged();
        constexpr int roundsBetween = 1000; // as it grows, and each time the whole file is written anew
        if (m_rounds++ % roundsBetween == 0)
            m_done->save();
    }
    return status;
}

/// Minifies what has changed. If an output is there that is not known from before, all other files are looked
/// at first, as it might be one of theirs.
int Watch::runChanged(const MinifyRun &run, const FileQueue &queue, const std::vector<FileCopy> &copies) const
{
    const auto isKnown = [this](const auto &pair) {
        const auto &[entry, output] = pair;
        return !output || !isThere(RawBytes::encoded(*output)) || m_own.hold(*output, entry);
    };
    if (std::ranges::all_of(entriesWithOutputs(queue, m_settings), isKnown))
        return run.runChanged(queue, copies, {});
    FileQueue all;
    if (const QString error = Listing(all, m_settings, m_line).fill(); !error.isEmpty()) {
        printError(error);
        return SomeFailed;
    }
    EntriesWithOutputs others = entriesWithOutputs(all, m_settings);
    std::erase_if(others, [&](const auto &pair) { return queue.indexOf(pair.first) >= 0; });
    return run.runChanged(queue, copies, others);
}

void Watch::record(const QStringList &files, const QString &source)
{
    for (const QString &file : files)
        m_own.add(file, source);
}

/// Deletes what was made from sources that are gone, if that is wanted.
void Watch::removeOrphans(const ChangedPaths &changed)
{
    for (const auto &[file, source] : m_own.takeOrphans(changed)) {
        if (!m_line.deleteOutputs || !isPlainFile(file))
            continue;
        if (::unlink(RawBytes::encoded(file).constData()) != 0)
            printError(u"%1 cannot be deleted: %2"_s.arg(file, qt_error_string(errno)));
        else if (!m_line.quiet)
            TerminalText::printNow(
                u"%1 deleted, as %2 is gone"_s.arg(file, PathString::lastComponent(source)));
    }
}

} // namespace brevant
