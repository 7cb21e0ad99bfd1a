// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/MinifyJob.h"

#include "queue/FileQueue.h"

#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace brevant {

using namespace Qt::StringLiterals;

MinifyJob::MinifyJob(const FileQueue &queue, const EntrySettings &settings, const Tools &tools,
                     RunObserver &observer, const std::atomic<Stop> &stop, Refusal refusal)
    : m_queue(queue), m_settings(settings), m_tools(tools), m_observer(observer), m_stop(stop),
      m_refusal(std::move(refusal)), m_outputPath(settings)
{
}

RunEnd MinifyJob::run(int jobs, const RunLimits &limits)
{
    m_limits = limits;
    m_commands.emplace(m_settings);
    m_observer.runStarted();
    {
        std::vector<std::jthread> others;
        try {
            for (int i = 1; i < std::min(jobs, m_queue.count()); ++i)
                others.emplace_back([this] { work(); });
        } catch (const std::system_error &) {
            // The threads that could be started do the work.
        }
        work();
    }
    if (m_end == RunEnd::Completed && m_stop == Stop::AtOnce)
        m_end = RunEnd::Stopped;
    m_observer.runEnded(m_end, m_end == RunEnd::Completed ? u"Well done!"_s : m_startFailure);
    return m_end;
}

void MinifyJob::work()
{
    EntryRun entryRun(m_queue, m_tools, m_stop, m_kept);
    entryRun.setTimeout(m_limits.timeout);
    while (OpenEntry *const entry = takeNext()) {
        std::optional<EntryResult> result = entryRun.run(entry->task);
        const std::lock_guard lock(m_mutex);
        if (!result) {
            m_end = RunEnd::JavaNotStarted;
            m_startFailure = entryRun.startFailure();
        } else if (m_limits.failFast && result->outcome != EntryResult::Outcome::Done) {
            m_hasFailed = true;
        }
        entry->result = std::move(result);
        entry->hasEnded = true;
        tellObserver();
    }
}

/// The next entry, at an address that stays valid until it has ended; null at the end of the run.
MinifyJob::OpenEntry *MinifyJob::takeNext()
{
    const std::lock_guard lock(m_mutex);
    const std::optional<QString> path = m_queue.entryAt(m_told + static_cast<int>(m_open.size()));
    if (!path || m_end != RunEnd::Completed)
        return nullptr;
    if (m_stop != Stop::No || m_hasFailed) {
        m_end = RunEnd::Stopped;
        return nullptr;
    }
    EntryTask &task = m_open.emplace_back().task;
    task.entry = *path;
    tellObserver(); // before the settings are read, so that a change meanwhile counts for this entry
    task.command = &m_commands->of(*path);
    task.output = m_outputPath.next(*path);
    task.outputAtStart = m_outputPath.atStart();
    if (m_refusal)
        task.refusal = m_refusal(*path, task.output);
    return &m_open.back();
}

/// Tells the observer everything that is known so far and next in the order of the queue.
void MinifyJob::tellObserver()
{
    for (; !m_open.empty(); m_open.pop_front(), ++m_told) {
        OpenEntry &entry = m_open.front();
        if (!std::exchange(entry.isAnnounced, true)) {
            const int count = m_queue.count();
            m_observer.entryStarted(
                {m_told, count, entry.task.entry, u"Minified %1 of %2 items."_s.arg(m_told + 1).arg(count)});
        }
        if (!entry.hasEnded)
            return;
        if (entry.result)
            m_observer.entryEnded(*entry.result);
    }
}

} // namespace brevant
