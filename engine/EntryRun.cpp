// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/EntryRun.h"

#include "engine/GzipCopy.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

#include <chrono>
#include <utility>

namespace brevant {

EntryRun::EntryRun(const SettingsStore &settings, const Tools &tools, CompressorOptions options,
                   const std::atomic<Stop> &stop)
    : m_settings(settings), m_tools(tools), m_options(std::move(options)), m_stop(stop),
      m_safetyCopy(tools.originals)
{
}

std::optional<EntryResult> EntryRun::run(const QString &entry, const std::optional<QString> &output,
                                         const QString &refusal)
{
    using Clock = std::chrono::steady_clock;
    if (!refusal.isEmpty())
        return EntryWatch(entry, output).refused(refusal);
    if (output && isDangerousPattern(entry, *output))
        return EntryWatch(entry, output)
            .refused(QStringLiteral("YUI Compressor takes its output path for a pattern, which may lead "
                                    "to any file"));
    const Clock::time_point start = Clock::now();
    const QString error = m_safetyCopy.make(entry, output);
    EntryWatch watch(entry, output);
    if (!error.isEmpty())
        return watch.notSafe(error);

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
