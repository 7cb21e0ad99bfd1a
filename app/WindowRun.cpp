// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowRun.h"

#include "app/QueueDisplay.h"
#include "app/StatusLine.h"
#include "app/platform/DoneSound.h"
#include "engine/MinifyJob.h"
#include "files/PathString.h"
#include "queue/view/BVTableView.h"
#include "settings/SettingsKeys.h"
#include "settings/SettingsStore.h"

#include <QFileInfo>

#include <utility>

namespace brevant {

namespace {

int nextNumber()
{
    static std::atomic<int> last = 0;
    return ++last;
}

/// What the user must hear of a source that might have been lost, or was not worked on because of that.
QStringList sentencesAbout(const EntryResult &result)
{
    using enum EntryResult::Outcome;
    QStringList sentences = result.notes;
    if (result.sourceState != EntryResult::Source::Safe || result.outcome == NotSafe ||
        result.outcome == Refused)
        sentences.append(QStringLiteral("%1: %2").arg(result.source, result.reason()));
    return sentences;
}

} // namespace

WindowRun::WindowRun(const Outlets &outlets, const Services &services, const std::atomic<Stop> &stop)
    : m_outlets(outlets), m_services(services), m_stop(stop), m_run(nextNumber())
{
}

/// This object may be gone when the step is taken.
void WindowRun::onMainThread(std::function<void()> step)
{
    QMetaObject::invokeMethod(&m_services.runNews, std::move(step), Qt::QueuedConnection);
}

void WindowRun::runStarted()
{
    onMainThread([outlets = m_outlets] { setControlsLocked(outlets, true); });
}

void WindowRun::entryStarted(const EntryStart &start)
{
    m_outcome.count = start.count;
    onMainThread([&news = m_services.runNews, outlets = m_outlets, run = m_run, start] {
        news.setProgress(run, start.index, start.count);
        outlets.progressTextField->setStringValue(start.status);
        outlets.filesTable->deselectAll();
        outlets.filesTable->selectRowIndexes({start.index}, true);
    });
}

void WindowRun::entryEnded(const EntryResult &result)
{
    using enum EntryResult::Outcome;
    ++m_done;
    if (const QStringList sentences = sentencesAbout(result); !sentences.isEmpty())
        onMainThread([&news = m_services.runNews, sentences] { news.tell(sentences); });
    if (result.outcome != Done && result.outcome != NoGzipCopy)
        return;
    const QString output = result.output.value_or(QString());
    m_outputs.insert(QFileInfo(output).canonicalFilePath());
    m_outcome.minified = static_cast<int>(m_outputs.size());
    const QString folder = PathString::folder(output).toString();
    m_folder = m_folder.value_or(folder) == folder ? folder : QString();
}

void WindowRun::runEnded(RunEnd end, const QString &status)
{
    // Whoever has asked for the end need not be told of it.
    m_outcome.end = m_stop != Stop::No ? RunEnd::Stopped : end;
    m_outcome.folder = m_folder.value_or(QString());
    if (end == RunEnd::Completed)
        m_outcome.count = m_done; // without those that were taken off the list meanwhile
    else
        m_outcome.reason = status;
    const bool isPlayed = m_services.settings.isTrue(soundCheckerKeyString);
    onMainThread([outlets = m_outlets, services = m_services, run = m_run, outcome = m_outcome, end, status,
                  isPlayed] {
        outlets.filesTable->deselectAll();
        if (end == RunEnd::Completed)
            static_cast<void>(services.doneSound.load());
        if (end == RunEnd::Completed && isPlayed)
            services.doneSound.play();
        if (!status.isEmpty())
            outlets.progressTextField->setStringValue(status);
        setControlsLocked(outlets, false);
        services.runNews.runEnded(run, outcome);
    });
}

void runMinifyJob(const Outlets &outlets, const Services &services, const std::atomic<Stop> &stop)
{
    WindowRun window(outlets, services, stop);
    MinifyJob(services.queue, services.settings, services.tools, window, stop).run();
}

} // namespace brevant
