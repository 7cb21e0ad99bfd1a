// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowRun.h"

#include "app/Application.h"
#include "files/PathString.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

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
        sentences.append(u"%1: %2"_s.arg(result.source, result.reason()));
    return sentences;
}

} // namespace

JobRunner::~JobRunner()
{
    stopAndWait();
}

void JobRunner::requestStop(Stop stop)
{
    m_stop = std::max(m_stop.load(), stop);
}

void JobRunner::stopAndWait()
{
    requestStop(Stop::AfterFile);
    for (std::jthread &thread : m_threads) {
        if (thread.joinable())
            thread.join();
    }
}

void JobRunner::detachNewThread(Job job)
{
    const auto thread = m_threads.emplace(m_threads.end());
    *thread = std::jthread([this, thread, job = std::move(job)] {
        job(m_stop);
        // Queued behind everything that the job has queued.
        QMetaObject::invokeMethod(
            this, [this, thread] { threadEnded(thread); }, Qt::QueuedConnection);
    });
    Q_EMIT started();
}

void JobRunner::threadEnded(std::list<std::jthread>::iterator thread)
{
    m_threads.erase(thread); // which waits for its end
    if (m_threads.empty())
        Q_EMIT allEnded();
}

WindowRun::WindowRun(Application &app, const std::atomic<Stop> &stop)
    : m_app(app), m_stop(stop), m_run(nextNumber())
{
}

/// This object may be gone when the step is taken.
void WindowRun::onMainThread(std::function<void()> step)
{
    QMetaObject::invokeMethod(&m_app.desktopReport, std::move(step), Qt::QueuedConnection);
}

void WindowRun::runStarted()
{
    onMainThread([&window = m_app.window] { window.setRunning(true); });
}

void WindowRun::entryStarted(const EntryStart &start)
{
    m_outcome.count = start.count;
    onMainThread([&app = m_app, run = m_run, start] {
        BVTableView &filesTable = *app.window.ui().filesTable;
        app.desktopReport.setProgress(run, start.index, start.count);
        app.window.setStatusText(start.status);
        filesTable.deselectAll();
        filesTable.selectRowIndexes({start.index}, true);
    });
}

void WindowRun::entryEnded(const EntryResult &result)
{
    using enum EntryResult::Outcome;
    ++m_done;
    if (const QStringList sentences = sentencesAbout(result); !sentences.isEmpty())
        onMainThread([&news = m_app.desktopReport, sentences] { news.tell(sentences); });
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
    // Whoever has asked for the end is not notified of it.
    m_outcome.end = m_stop != Stop::No ? RunEnd::Stopped : end;
    m_outcome.folder = m_folder.value_or(QString());
    if (end == RunEnd::Completed)
        m_outcome.count = m_done; // without files taken off the list meanwhile
    else
        m_outcome.reason = status;
    const bool isPlayed = m_app.settings.isTrue(soundCheckerKeyString);
    onMainThread([&app = m_app, run = m_run, outcome = m_outcome, end, status, isPlayed] {
        app.window.ui().filesTable->deselectAll();
        if (end == RunEnd::Completed)
            static_cast<void>(app.doneSound->load());
        if (end == RunEnd::Completed && isPlayed)
            app.doneSound->play();
        if (!status.isEmpty())
            app.window.setStatusText(status);
        app.window.setRunning(false);
        app.desktopReport.runEnded(run, outcome);
    });
}

void runMinifyJob(Application &app, const std::atomic<Stop> &stop)
{
    WindowRun window(app, stop);
    MinifyJob(app.queue, app.settings, app.tools, window, stop).run();
}

} // namespace brevant
