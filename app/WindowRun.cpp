// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/WindowRun.h"

#include "app/Application.h"
#include "app/planned/RunManner.h"
#include "files/PathString.h"
#include "settings/SettingsKeys.h"
#include "ui_MainWindow.h"

#include <QFileInfo>

#include <algorithm>
#include <system_error>
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

void showEnd(Application &app, RunEnd end, const QString &status, bool isPlayed)
{
    app.window.ui().filesTable->deselectAll();
    if (end == RunEnd::Completed)
        static_cast<void>(app.doneSound->load());
    if (end == RunEnd::Completed && isPlayed)
        app.doneSound->play();
    if (!status.isEmpty())
        app.window.setStatusText(status);
    app.window.setRunning(false);
}

void runOver(const FileQueue &queue, Application &app, const SettingsStore &settings,
             const std::atomic<Stop> &stop)
{
    app.keptOriginals.dropForRun();
    KeptOriginals::Use kept(app.keptOriginals);
    WindowRun window(app, queue, settings, stop);
    MinifyJob job(queue, settings, app.tools, window, stop);
    job.keepOriginals(kept);
    job.run();
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

bool JobRunner::detachNewThread(Job job)
{
    const auto thread = m_threads.emplace(m_threads.end());
    try {
        *thread = std::jthread([this, thread, job = std::move(job)] {
            job(m_stop);
            // Queued behind everything that the job has queued.
            QMetaObject::invokeMethod(
                this, [this, thread] { threadEnded(thread); }, Qt::QueuedConnection);
        });
    } catch (const std::system_error &error) {
        m_threads.erase(thread);
        Q_EMIT notStarted(qt_error_string(error.code().value()));
        return false;
    }
    Q_EMIT started();
    return true;
}

void JobRunner::threadEnded(std::list<std::jthread>::iterator thread)
{
    m_threads.erase(thread); // which waits for its end
    if (m_threads.empty())
        Q_EMIT allEnded();
}

WindowRun::WindowRun(Application &app, const FileQueue &queue, const SettingsStore &settings,
                     const std::atomic<Stop> &stop)
    : m_app(app), m_queue(queue), m_settings(settings), m_isInWindow(&queue == &app.queue), m_stop(stop),
      m_run(nextNumber())
{
}

/// This object may be gone when the step is taken.
void WindowRun::onMainThread(std::function<void()> step)
{
    QMetaObject::invokeMethod(&m_app.desktopReport, std::move(step), Qt::QueuedConnection);
}

void WindowRun::runStarted()
{
    onMainThread(
        [&app = m_app, run = m_run, isInWindow = m_isInWindow, manner = RunManner(m_settings).ofRun()] {
            if (isInWindow)
                app.window.setRunning(true);
            app.results.runs.start(run, manner);
        });
}

void WindowRun::entryStarted(const EntryStart &start)
{
    m_outcome.count = start.count;
    m_begun = start.index + 1;
    onMainThread([&app = m_app, run = m_run, isInWindow = m_isInWindow, start] {
        BVTableView &filesTable = *app.window.ui().filesTable;
        app.desktopReport.setProgress(run, start.index, start.count);
        app.results.gather([&app, run, start] { app.results.runs.startFile(run, start.path, start.count); });
        if (!isInWindow)
            return;
        app.window.setStatusText(start.status);
        filesTable.deselectAll();
        filesTable.selectRowIndexes({start.index}, true);
    });
}

void WindowRun::entryEnded(const EntryResult &result)
{
    ++m_done;
    if (const QStringList sentences = sentencesAbout(result); !sentences.isEmpty())
        onMainThread([&news = m_app.desktopReport, sentences] { news.tell(sentences); });
    onMainThread([&app = m_app, run = m_run, row = ResultRow(result)] {
        app.results.gather([&app, run, row] { app.results.runs.endFile(run, row); });
    });
    if (!result.isMinified())
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
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - m_start;
    const RunEnding ending{m_outcome.minified, m_outcome.count,
                           end == RunEnd::Completed ? QStringList() : notRun(), m_outcome.reason,
                           seconds.count()};
    onMainThread([&app = m_app, run = m_run, isInWindow = m_isInWindow, outcome = m_outcome, ending, end,
                  status, isPlayed] {
        if (isInWindow)
            showEnd(app, end, status, isPlayed);
        app.results.catchUp();
        app.results.runs.end(run, ending);
        app.desktopReport.runEnded(run, outcome);
    });
}

/// The entries that the run has not come to.
QStringList WindowRun::notRun() const
{
    QStringList sources;
    const std::vector<QString> entries = m_queue.entries();
    for (auto entry = static_cast<std::size_t>(m_begun); entry < entries.size(); ++entry)
        sources.append(entries[entry]);
    return sources;
}

void runMinifyJob(Application &app, const std::atomic<Stop> &stop)
{
    runOver(app.queue, app, app.settings, stop);
}

void runAgain(Application &app, const SettingsStore &settings, const QStringList &sources,
              const std::atomic<Stop> &stop)
{
    FileQueue queue;
    for (const QString &source : sources)
        queue.append(source);
    runOver(queue, app, settings, stop);
}

} // namespace brevant
