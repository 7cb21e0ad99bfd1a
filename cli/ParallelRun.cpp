// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ParallelRun.h"

#include "engine/CompressorCommand.h"
#include "engine/EntryRun.h"
#include "engine/JobDisplay.h"
#include "queue/FileQueue.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace brevant {

ParallelRun::ParallelRun(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                         JobDisplay &display, Refusal refusal)
    : m_queue(queue), m_settings(settings), m_tools(tools), m_display(display), m_entries(queue.entries()),
      m_outputPath(settings), m_refusal(std::move(refusal)), m_ended(m_entries.size()),
      m_results(m_entries.size())
{
}

MinifyJob::End ParallelRun::run(int jobs, const std::atomic<Stop> &stop)
{
    const CompressorOptions options = CompressorOptions::atStartOfRun(m_settings);
    const int count = std::min(jobs, static_cast<int>(m_entries.size()));
    std::vector<std::thread> threads = startThreads(count, options, stop);
    if (threads.empty() && count > 0)
        return MinifyJob(m_queue, m_settings, m_tools, m_display, m_refusal).run(stop);
    m_display.lockControls();
    const bool allRun = showAll() && stop != Stop::AtOnce;
    for (std::thread &thread : threads)
        thread.join();
    m_display.deselectRows();

    MinifyJob::End end = allRun ? MinifyJob::End::Completed : MinifyJob::End::Stopped;
    if (!m_startFailure.isEmpty()) {
        end = MinifyJob::End::JavaNotStarted;
        m_display.setStatusText(m_startFailure);
    } else if (allRun) {
        m_display.setStatusText(QStringLiteral("Well done!"));
    }
    m_display.unlockControls();
    return end;
}

std::vector<std::thread> ParallelRun::startThreads(int count, const CompressorOptions &options,
                                                   const std::atomic<Stop> &stop)
{
    std::vector<std::thread> threads;
    const std::lock_guard lock(m_mutex); // nobody is missed who ends before the next one starts
    for (; m_workers < count; ++m_workers) {
        try {
            threads.emplace_back([this, &options, &stop] {
                EntryRun entryRun(m_queue, m_settings, m_tools, options, stop);
                work(entryRun, stop);
            });
        } catch (const std::system_error &) {
            break; // the system has no more
        }
    }
    return threads;
}

void ParallelRun::work(EntryRun &entryRun, const std::atomic<Stop> &stop)
{
    while (const std::optional<Task> task = takeNext(stop)) {
        store(task->index,
              entryRun.run(m_entries[task->index], task->output, task->outputAtStart, task->refusal),
              entryRun);
    }
    const std::lock_guard lock(m_mutex);
    --m_workers;
    m_changed.notify_all();
}

std::optional<ParallelRun::Task> ParallelRun::takeNext(const std::atomic<Stop> &stop)
{
    const std::lock_guard lock(m_mutex);
    if (stop != Stop::No || !m_startFailure.isEmpty() || m_taken == m_entries.size())
        return std::nullopt;
    Task task{m_taken, m_outputPath.next(m_entries[m_taken]), m_outputPath.atStart(), {}};
    if (m_refusal)
        task.refusal = m_refusal(m_entries[m_taken], task.output);
    ++m_taken;
    m_changed.notify_all();
    return task;
}

void ParallelRun::store(std::size_t index, const std::optional<EntryResult> &result, const EntryRun &entryRun)
{
    const std::lock_guard lock(m_mutex);
    m_ended[index] = true;
    m_results[index] = result;
    if (!result)
        m_startFailure = entryRun.startFailure();
    m_changed.notify_all();
}

bool ParallelRun::showAll()
{
    bool isComplete = true;
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        if (!waitUntilStarted(index)) {
            isComplete = false;
            continue;
        }
        m_display.setProgress(static_cast<int>(index), static_cast<int>(m_entries.size()));
        m_display.setStatusText(
            QStringLiteral("Minified %1 of %2 items.").arg(index + 1).arg(m_entries.size()));
        m_display.selectRow(static_cast<int>(index));
        if (const std::optional<EntryResult> &result = waitForResult(index))
            m_display.entryEnded(*result);
    }
    return isComplete;
}

bool ParallelRun::waitUntilStarted(std::size_t index)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_taken > index || m_workers == 0; });
    return m_taken > index;
}

const std::optional<EntryResult> &ParallelRun::waitForResult(std::size_t index)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_ended[index]; });
    return m_results[index];
}

} // namespace brevant
