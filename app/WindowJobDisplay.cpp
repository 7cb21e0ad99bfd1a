// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowJobDisplay.h"

#include "app/QueueDisplay.h"
#include "app/StatusLine.h"
#include "app/platform/DoneSound.h"
#include "engine/EntryResult.h"
#include "files/PathString.h"
#include "queue/view/BVTableView.h"

#include <QFileInfo>

#include <utility>

namespace brevant {

namespace {

int nextNumber()
{
    static std::atomic<int> last = 0;
    return ++last;
}

/// What its owner must hear of a source that might have been lost, or was not run for that.
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

WindowJobDisplay::WindowJobDisplay(const Outlets &outlets, const Services &services)
    : m_outlets(outlets), m_services(services), m_run(nextNumber())
{
}

/// A step may be taken when this object has gone, and so does not know it.
void WindowJobDisplay::onMainThread(std::function<void()> step)
{
    QMetaObject::invokeMethod(&m_services.runNews, std::move(step), Qt::QueuedConnection);
}

void WindowJobDisplay::lockControls()
{
    onMainThread([outlets = m_outlets] { setControlsLocked(outlets, true); });
}

void WindowJobDisplay::setStatusText(const QString &text)
{
    m_statusText = text;
    onMainThread([line = m_outlets.progressTextField, text] { line->setStringValue(text); });
}

void WindowJobDisplay::setProgress(int done, int count)
{
    m_outcome.count = count;
    onMainThread(
        [&news = m_services.runNews, run = m_run, done, count] { news.setProgress(run, done, count); });
}

void WindowJobDisplay::selectRow(int row)
{
    onMainThread([table = m_outlets.filesTable, row] {
        table->deselectAll();
        table->selectRowIndexes({row}, true);
    });
}

void WindowJobDisplay::entryEnded(const EntryResult &result)
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

void WindowJobDisplay::deselectRows()
{
    onMainThread([table = m_outlets.filesTable] { table->deselectAll(); });
}

void WindowJobDisplay::loadDoneSound()
{
    onMainThread([&sound = m_services.doneSound] { static_cast<void>(sound.load()); });
}

void WindowJobDisplay::playDoneSound()
{
    onMainThread([&sound = m_services.doneSound] { sound.play(); });
}

void WindowJobDisplay::unlockControls()
{
    onMainThread([outlets = m_outlets] { setControlsLocked(outlets, false); });
}

void WindowJobDisplay::runEnded(MinifyJob::End end)
{
    m_outcome.end = end;
    if (end == MinifyJob::End::Completed)
        m_outcome.count = m_done; // without those that were taken off the list meanwhile
    m_outcome.folder = m_folder.value_or(QString());
    if (end == MinifyJob::End::JavaNotStarted)
        m_outcome.reason = m_statusText;
    onMainThread(
        [&news = m_services.runNews, run = m_run, outcome = m_outcome] { news.runEnded(run, outcome); });
}

void runMinifyJob(const Outlets &outlets, const Services &services, const std::atomic<Stop> &stop)
{
    WindowJobDisplay display(outlets, services);
    const MinifyJob::End end =
        MinifyJob(services.queue, services.settings, services.tools, display).run(stop);
    // Who has asked for the end need not be told of it.
    display.runEnded(stop != Stop::No ? MinifyJob::End::Stopped : end);
}

} // namespace brevant
