// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ParallelRun.h"

#include "engine/CompressorCommand.h"
#include "engine/EntryRun.h"
#include "engine/JobDisplay.h"
#include "queue/FileQueue.h"
#include "queue/OutputPath.h"

#include <algorithm>
#include <thread>

namespace brevant {

namespace {

std::vector<PlannedEntry> plan(const FileQueue &queue, const SettingsStore &settings)
{
    OutputPath outputPath(settings);
    std::vector<PlannedEntry> entries;
    for (const QString &entry : queue.entries())
        entries.push_back({entry, outputPath.next(entry)});
    return entries;
}

} // namespace

ParallelRun::ParallelRun(const FileQueue &queue, const SettingsStore &settings, const Tools &tools,
                         JobDisplay &display)
    : m_settings(settings), m_tools(tools), m_display(display), m_entries(plan(queue, settings)),
      m_order(m_entries), m_stages(m_entries.size(), Stage::Waiting), m_results(m_entries.size())
{
}

MinifyJob::End ParallelRun::run(int jobs, const std::atomic<Stop> &stop)
{
    const CompressorOptions options = CompressorOptions::atStartOfRun(m_settings);
    m_workers = std::min(jobs, static_cast<int>(m_entries.size()));
    m_display.lockControls();
    std::vector<std::thread> threads;
    for (int i = 0, count = m_workers; i < count; ++i) {
        threads.emplace_back([this, &options, &stop] {
            EntryRun entryRun(m_settings, m_tools, options, stop);
            work(entryRun, stop);
        });
    }
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

void ParallelRun::work(EntryRun &entryRun, const std::atomic<Stop> &stop)
{
    while (const std::optional<int> index = takeNext(stop)) {
        const PlannedEntry &entry = m_entries[static_cast<std::size_t>(*index)];
        store(*index, entryRun.run(entry.source, entry.output), entryRun);
    }
    const std::lock_guard lock(m_mutex);
    --m_workers;
    m_changed.notify_all();
}

std::optional<int> ParallelRun::takeNext(const std::atomic<Stop> &stop)
{
    std::unique_lock lock(m_mutex);
    std::optional<int> index;
    // Where nothing is free, something runs that the rest waits for, and its end is told to all.
    m_changed.wait(lock, [&] {
        if (stop != Stop::No || !m_startFailure.isEmpty() || m_order.isAllTaken())
            return true;
        index = m_order.takeNext();
        return index.has_value();
    });
    if (index) {
        m_stages[static_cast<std::size_t>(*index)] = Stage::Running;
        m_changed.notify_all();
    }
    return index;
}

void ParallelRun::store(int index, const std::optional<EntryResult> &result, const EntryRun &entryRun)
{
    const std::lock_guard lock(m_mutex);
    m_stages[static_cast<std::size_t>(index)] = Stage::Ended;
    m_results[static_cast<std::size_t>(index)] = result;
    if (result)
        m_order.finished(index);
    else
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
    m_changed.wait(lock, [&] { return m_stages[index] != Stage::Waiting || m_workers == 0; });
    return m_stages[index] != Stage::Waiting;
}

const std::optional<EntryResult> &ParallelRun::waitForResult(std::size_t index)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_stages[index] == Stage::Ended; });
    return m_results[index];
}

} // namespace brevant
