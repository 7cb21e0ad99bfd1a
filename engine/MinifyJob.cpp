// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MinifyJob.h"

#include "engine/JobDisplay.h"
#include "queue/FileQueue.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <utility>

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
                     JobDisplay &display, Refusal refusal)
    : m_queue(queue), m_settings(settings), m_tools(tools), m_display(display), m_outputPath(settings),
      m_refusal(std::move(refusal))
{
}

MinifyJob::End MinifyJob::run(const std::atomic<Stop> &stop)
{
    EntryRun entryRun(m_queue, m_settings, m_tools, CompressorOptions::atStartOfRun(m_settings), stop);
    const ControlsLock lock(m_display);
    const End end = runEntries(entryRun, stop);
    m_display.deselectRows();
    if (end == End::Completed) {
        m_display.loadDoneSound();
        if (m_settings.isTrue(soundCheckerKeyString))
            m_display.playDoneSound();
        m_display.setStatusText(QStringLiteral("Well done!"));
    } else if (end == End::JavaNotStarted) {
        m_display.setStatusText(entryRun.startFailure());
    }
    return end;
}

MinifyJob::End MinifyJob::runEntries(EntryRun &entryRun, const std::atomic<Stop> &stop)
{
    int index = 0;
    while (const std::optional<QString> entry = m_queue.entryAt(index)) {
        if (stop != Stop::No)
            return End::Stopped;
        const int count = m_queue.count();
        m_display.setProgress(index, count);
        m_display.setStatusText(QStringLiteral("Minified %1 of %2 items.").arg(index + 1).arg(count));
        m_display.selectRow(index);
        const std::optional<QString> output = m_outputPath.next(*entry);
        const QString refusal = m_refusal ? m_refusal(*entry, output) : QString();
        const std::optional<EntryResult> result =
            entryRun.run(*entry, output, m_outputPath.atStart(), refusal);
        if (!result)
            return End::JavaNotStarted;
        m_display.entryEnded(*result);
        ++index;
    }
    return stop == Stop::AtOnce ? End::Stopped : End::Completed;
}

} // namespace brevant
