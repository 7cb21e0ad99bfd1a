// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryRun.h"

#include "engine/modern/ModernEntry.h"
#include "files/Folders.h"
#include "files/PathString.h"
#include "queue/FileKind.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <csignal>

#include <unistd.h>

namespace brevant {

using namespace Qt::StringLiterals;

namespace {

/// Why the entry must not be worked on; empty if it may be.
QString whyRefused(const EntryTask &task)
{
    if (!task.refusal.isEmpty() || !task.output || !isDangerousPattern(task.entry, *task.output))
        return task.refusal;
    return u"YUI Compressor takes its output path for a pattern, which may lead to any file"_s;
}

/// A child process, which inherits the environment and all three streams. `folder` is its working folder;
/// empty for our own. It has a process group of its own: what is sent to ours, as Ctrl+C is, does not reach
/// it, so that it finishes what it writes.
std::unique_ptr<QProcess> childProcess(const QString &program, const QString &folder,
                                       const QStringList &arguments)
{
    auto process = std::make_unique<QProcess>();
    process->setProgram(program);
    process->setArguments(arguments);
    process->setWorkingDirectory(folder);
    process->setInputChannelMode(QProcess::ForwardedInputChannel);
    process->setProcessChannelMode(QProcess::ForwardedChannels);
    process->setChildProcessModifier([] {
        ::setpgid(0, 0);
        // In the background of the terminal, reading there, or "stty tostop", would halt it for good.
        std::signal(SIGTTIN, SIG_IGN);
        std::signal(SIGTTOU, SIG_IGN);
    });
    return process;
}

bool launch(QProcess &process)
{
    process.start(QIODevice::ReadOnly); // the channels are forwarded all the same
    return process.waitForStarted(-1);
}

/// Waits; the child's group is killed where a stop at once is asked for, or when the time is over, of which
/// there is no end if it is 0. Whether it was killed for that.
bool waitUntilExit(QProcess &process, const std::atomic<Stop> &stop, std::chrono::seconds timeout = {})
{
    constexpr int lookAgain = 50; // milliseconds
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    bool isLate = false;
    while (!process.waitForFinished(lookAgain) && process.state() != QProcess::NotRunning) {
        isLate = timeout.count() > 0 && std::chrono::steady_clock::now() > deadline;
        if (stop == Stop::AtOnce || isLate)
            ::kill(-static_cast<pid_t>(process.processId()), SIGKILL);
    }
    return isLate && stop != Stop::AtOnce;
}

} // namespace

void makeGzipCopy(const std::optional<QString> &output, const std::atomic<Stop> &stop)
{
    for (const auto &[program, arguments] : gzipSteps(output)) {
        if (stop == Stop::AtOnce)
            return;
        const std::unique_ptr<QProcess> process = childProcess(program, {}, arguments);
        if (launch(*process))
            waitUntilExit(*process, stop);
    }
}

EntryRun::EntryRun(const FileQueue &queue, const Tools &tools, const std::atomic<Stop> &stop,
                   KeptOriginals::Use *kept)
    : m_queue(queue), m_tools(tools), m_stop(stop), m_kept(kept), m_safetyCopy(tools.originals, stop),
      m_filters(stop)
{
}

void EntryRun::setTimeout(std::chrono::seconds timeout)
{
    m_timeout = timeout;
    m_filters.setTimeout(timeout);
}

/// A relative path counts from the compressor's working folder, not from ours.
QString EntryRun::seenByCompressor(const QString &path) const
{
    return path.startsWith(u'/') ? path : PathString::join(m_tools.folder, path);
}

/// Whether the path is that of an existing file that is in the queue, under whatever name.
bool EntryRun::isListed(const QString &path)
{
    if (!FileMarks::ofFile(path))
        return false;
    if (const quint64 revision = m_queue.revision(); revision != m_listedRevision) {
        m_listedRevision = revision;
        m_listed.clear();
        FileMarks::Reader marks;
        for (const QString &entry : m_queue.entries()) {
            for (const QString &mark : marks.all(entry))
                m_listed.insert(mark);
        }
    }
    // Not only by inode: gzip puts another file under the same name.
    return std::ranges::any_of(FileMarks::all(path),
                               [this](const QString &mark) { return m_listed.contains(mark); });
}

/// Where replaced sources are kept; null if they are not.
KeptOriginals::Use *EntryRun::wantedKeeper(const EntryTask &task) const
{
    return task.command->settings().isTrue(keepOriginalsCheckerKeyString) ? m_kept : nullptr;
}

/// What the output means for source and list, whatever the compressor.
Danger EntryRun::dangerOf(const QString &source, const QString &target,
                          const std::optional<QString> &outputAtStart)
{
    if (FileMarks::areOfSameFile(source, target)) {
        const bool isMeant =
            outputAtStart && FileMarks::areOfSameFile(source, seenByCompressor(*outputAtStart));
        return isMeant ? Danger::Replaced : Danger::Surprise;
    }
    return isListed(target) ? Danger::AnotherEntry : Danger::None;
}

QString EntryRun::keepSafe(const QString &source, const std::optional<QString> &target,
                           const std::optional<QString> &outputAtStart)
{
    Danger danger = target ? dangerOf(source, *target, outputAtStart) : Danger::None;
    if (danger == Danger::AnotherEntry)
        return m_safetyCopy.make(*target, danger);
    if (danger == Danger::None && target && isTakenForPattern(source, *target))
        danger = Danger::Pattern;
    return m_safetyCopy.make(source, danger);
}

/// Modern compressors write no file, so that a source can be lost only where their output is meant to replace
/// one, or is written into a file. One that is to be kept is copied as for the others.
QString EntryRun::keepSafeFromModern(const EntryTask &task, bool isInto)
{
    if (!task.output)
        return m_safetyCopy.make(task.entry, Danger::None);
    const Danger danger = dangerOf(task.entry, *task.output, task.outputAtStart);
    if (danger == Danger::AnotherEntry || (danger == Danger::None && isInto))
        return m_safetyCopy.make(*task.output, danger == Danger::None ? Danger::Output : danger);
    const bool isCopyNeeded = isInto || wantedKeeper(task) != nullptr;
    return m_safetyCopy.make(task.entry,
                             danger == Danger::Replaced && !isCopyNeeded ? Danger::Exchanged : danger);
}

EntryResult EntryRun::runModern(const EntryTask &task, const FileKind &kind)
{
    QElapsedTimer timer;
    timer.start();
    const bool isInto = task.output && isWrittenInto(*task.output);
    const QString error = keepSafeFromModern(task, isInto);
    EntryResult result = resultWithoutRun(task.entry, task.output, EntryResult::Outcome::NotSafe, error);
    std::optional<QByteArray> written;
    if (error.isEmpty())
        written = runModernEntry(kind, task.command->modernOptions(kind), m_tools, m_filters, isInto, result);
    if (written && wantedKeeper(task))
        result.written = QCryptographicHash::hash(*written, QCryptographicHash::Sha256);
    m_safetyCopy.finish(result, false, wantedKeeper(task));
    const SettingsStore &settings = task.command->settings();
    makeCompressedCopies(settings.boolForKey(gzipCheckerKeyString), settings.isTrue(brotliCheckerKeyString),
                         written, m_stop, result);
    result.seconds = static_cast<double>(timer.nsecsElapsed()) / 1e9;
    return result;
}

std::optional<EntryResult> EntryRun::run(const EntryTask &task)
{
    const auto &[entry, output, outputAtStart, refusal, command] = task;
    const SettingsStore &settings = command->settings();
    const FileKind *const kind = anyKindOf(entry);
    if (kind && isModernChosen(settings))
        return task.refusal.isEmpty()
                   ? runModern(task, *kind)
                   : resultWithoutRun(entry, output, EntryResult::Outcome::Refused, refusal);
    if (const QString reason = whyRefused(task); !reason.isEmpty())
        return resultWithoutRun(entry, output, EntryResult::Outcome::Refused, reason);
    QElapsedTimer timer;
    timer.start();
    const QString source = seenByCompressor(entry);
    const std::optional<QString> target = output ? std::optional(seenByCompressor(*output)) : std::nullopt;
    const QString error = keepSafe(source, target, outputAtStart);
    if (!error.isEmpty()) {
        EntryResult result = resultWithoutRun(source, target, EntryResult::Outcome::NotSafe, error);
        m_safetyCopy.finish(result, false);
        return result;
    }
    EntryWatch watch(source, target);

    java = childProcess(m_tools.java, m_tools.folder, command->arguments(entry, output));
    if (const auto inherited = m_safetyCopy.inherited(); !launch(*java))
        return std::nullopt;
    const bool isLate = waitUntilExit(*java, m_stop, m_timeout);
    watch.compressorEnded(*java);
    const bool gzipWanted = settings.boolForKey(gzipCheckerKeyString);
    if (gzipWanted) {
        const auto inherited = m_safetyCopy.inherited();
        makeGzipCopy(output, m_stop);
    }
    EntryResult result = watch.finish(gzipWanted, static_cast<double>(timer.nsecsElapsed()) / 1e9);
    result.secondsAllowed = isLate ? static_cast<int>(m_timeout.count()) : 0;
    m_safetyCopy.finish(result, gzipWanted, wantedKeeper(task));
    makeCompressedCopies(false, settings.isTrue(brotliCheckerKeyString), {}, m_stop, result);
    if (result.isMinified())
        result.basis = watch.basisOfCheck(command->encoding(), result.original);
    else
        result.arguments = java->arguments();
    return result;
}

QString EntryRun::startFailure() const
{
    if (!QFileInfo(m_tools.java).isExecutable())
        return u"Java was not found at %1."_s.arg(m_tools.java);
    if (!QFileInfo(m_tools.folder).isDir())
        return u"The compressors were not found in %1."_s.arg(m_tools.folder);
    return u"Java could not be started: %1"_s.arg(java->errorString());
}

} // namespace brevant
