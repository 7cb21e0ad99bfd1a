// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryRun.h"

#include "engine/GzipCopy.h"
#include "files/PathString.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFile>
#include <QFileInfo>

#include <chrono>
#include <utility>

#include <sys/stat.h>

namespace brevant {

namespace {

bool isSameFile(const QString &a, const QString &b)
{
    struct stat first {};
    struct stat second {};
    return a == b || (::stat(QFile::encodeName(a).constData(), &first) == 0 &&
                      ::stat(QFile::encodeName(b).constData(), &second) == 0 &&
                      first.st_dev == second.st_dev && first.st_ino == second.st_ino);
}

} // namespace

EntryRun::EntryRun(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                   CompressorOptions options, const std::atomic<Stop> &stop)
    : m_settings(settings), m_tools(tools), m_options(std::move(options)), m_stop(stop), m_listed(queue),
      m_safetyCopy(tools.originals, stop)
{
}

/// A path that does not begin at the root counts from the compressor's folder, not from ours.
QString EntryRun::seenByCompressor(const QString &path) const
{
    return path.startsWith(u'/') ? path : PathString::join(m_tools.folder, path);
}

QString EntryRun::keepSafe(const QString &source, const std::optional<QString> &target,
                           const std::optional<QString> &outputAtStart)
{
    if (!target)
        return m_safetyCopy.make(source, Danger::None);
    if (isSameFile(source, *target)) {
        const bool isMeant = outputAtStart && isSameFile(source, seenByCompressor(*outputAtStart));
        return m_safetyCopy.make(source, isMeant ? Danger::Replaced : Danger::Surprise);
    }
    if (m_listed.contains(*target))
        return m_safetyCopy.make(*target, Danger::AnotherEntry);
    return m_safetyCopy.make(source, isTakenForPattern(source, *target) ? Danger::Pattern : Danger::None);
}

std::optional<EntryResult> EntryRun::run(const EntryTask &task)
{
    using Clock = std::chrono::steady_clock;
    const auto &[entry, output, outputAtStart, refusal] = task;
    if (!refusal.isEmpty())
        return EntryWatch(entry, output).refused(refusal);
    if (output && isDangerousPattern(entry, *output))
        return EntryWatch(entry, output)
            .refused(QStringLiteral("YUI Compressor takes its output path for a pattern, which may lead "
                                    "to any file"));
    const Clock::time_point start = Clock::now();
    const QString source = seenByCompressor(entry);
    const std::optional<QString> target = output ? std::optional(seenByCompressor(*output)) : std::nullopt;
    const QString error = keepSafe(source, target, outputAtStart);
    EntryWatch watch(source, target);
    if (!error.isEmpty()) {
        EntryResult result = watch.notSafe(error);
        m_safetyCopy.finish(result, false);
        return result;
    }

    m_options.readSwitches(m_settings);
    java = std::make_unique<ChildProcess>(m_tools.java, m_tools.folder,
                                          compressorArguments(entry, output, m_options));
    {
        const SafetyCopy::Inheritance inheritance(m_safetyCopy);
        if (!java->launch())
            return std::nullopt;
    }
    watch.compressorEnded(java->waitUntilExit(m_stop));

    const bool gzipWanted = m_settings.boolForKey(gzipCheckerKeyString);
    if (gzipWanted) {
        const SafetyCopy::Inheritance inheritance(m_safetyCopy);
        makeGzipCopy(output, m_stop);
    }
    EntryResult result =
        watch.finish(gzipWanted, std::chrono::duration<double>(Clock::now() - start).count());
    m_safetyCopy.finish(result, gzipWanted);
    return result;
}

QString EntryRun::startFailure() const
{
    if (!QFileInfo(m_tools.java).isExecutable())
        return QStringLiteral("Java was not found at %1.").arg(m_tools.java);
    if (!QFileInfo(m_tools.folder).isDir())
        return QStringLiteral("The compressors were not found in %1.").arg(m_tools.folder);
    return QStringLiteral("Java could not be started: %1").arg(java->startFailure());
}

} // namespace brevant
