// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MinifyJob.h"

#include "engine/EntryResult.h"
#include "engine/GzipCopy.h"
#include "engine/JobDisplay.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

#include <chrono>

namespace brevant {

namespace {

/// Locks the controls for as long as it lives.
class ControlsLock final {
public:
    explicit ControlsLock(JobDisplay &display) : m_display(display) { m_display.lockControls(); }
    ~ControlsLock() { m_display.unlockControls(); }

    ControlsLock(const ControlsLock &) = delete;
    ControlsLock &operator=(const ControlsLock &) = delete;

private:
    JobDisplay &m_display;
};

} // namespace

MinifyJob::MinifyJob(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                     JobDisplay &display)
    : m_queue(queue), m_settings(settings), m_tools(tools), m_display(display), m_outputPath(settings)
{
}

MinifyJob::End MinifyJob::run(const std::atomic<bool> &stop)
{
    m_options = CompressorOptions::atStartOfRun(m_settings);
    const ControlsLock lock(m_display);
    const End end = runEntries(stop);
    m_display.deselectRows();
    if (end == End::Completed) {
        if (m_settings.isTrue(soundCheckerKeyString))
            m_display.playDoneSound();
        m_display.setStatusText(QStringLiteral("Well done!"));
    } else if (end == End::JavaNotStarted) {
        m_display.setStatusText(startFailure(java->waitUntilExit()));
    }
    return end;
}

MinifyJob::End MinifyJob::runEntries(const std::atomic<bool> &stop)
{
    int index = 0;
    while (const std::optional<QString> entry = m_queue.entryAt(index)) {
        if (stop)
            return End::Stopped;
        const int count = m_queue.count();
        m_display.setProgress(index, count);
        m_display.setStatusText(QStringLiteral("Minified %1 of %2 items.").arg(index + 1).arg(count));
        m_display.selectRow(index);
        if (!runEntry(*entry, m_outputPath.next(*entry)))
            return End::JavaNotStarted;
        ++index;
    }
    return End::Completed;
}

bool MinifyJob::runEntry(const QString &entry, const std::optional<QString> &output)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    EntryWatch watch(entry, output);

    m_options.readSwitches(m_settings);
    java = std::make_unique<ChildProcess>(m_tools.java, m_tools.folder,
                                          compressorArguments(entry, output, m_options));
    if (!java->launch())
        return false;
    watch.compressorEnded(java->waitUntilExit());

    const bool gzipWanted = m_settings.boolForKey(gzipCheckerKeyString);
    if (gzipWanted)
        makeGzipCopy(output);
    m_display.entryEnded(
        watch.finish(gzipWanted, std::chrono::duration<double>(Clock::now() - start).count()));
    return true;
}

QString MinifyJob::startFailure(const ChildExit &exit) const
{
    if (!QFileInfo(m_tools.java).isExecutable())
        return QStringLiteral("Java was not found at %1.").arg(m_tools.java);
    if (!QFileInfo(m_tools.folder).isDir())
        return QStringLiteral("The compressors were not found in %1.").arg(m_tools.folder);
    return QStringLiteral("Java could not be started: %1").arg(exit.error);
}

} // namespace brevant
