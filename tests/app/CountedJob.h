// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Application.h"
#include "engine/EntryResult.h"
#include "engine/MinifyJob.h"

#include <atomic>
#include <set>
#include <vector>

namespace brevant::test {

/// One job: what it tells is counted and handed on to the window.
class CountedJob final : public RunObserver {
public:
    /// `worked` counts the files worked on; it is to keep no two threads in order.
    explicit CountedJob(std::atomic<int> &worked) : m_worked(worked) {}

    /// The whole job, on the calling thread.
    void run(Application &app, const std::atomic<Stop> &stop)
    {
        WindowRun shown(app, app.queue, app.settings, stop);
        m_shown = &shown;
        MinifyJob(app.queue, app.settings, app.tools, *this, stop).run();
    }

    void runStarted() override
    {
        ++m_starts;
        m_shown->runStarted();
    }
    void entryStarted(const EntryStart &start) override
    {
        m_inOrder &= start.index == static_cast<int>(m_sources.size());
        m_shown->entryStarted(start);
    }
    void entryEnded(const EntryResult &result) override
    {
        m_inOrder &= m_starts == 1 && m_ends == 0;
        m_sources.push_back(result.source);
        m_worked.fetch_add(1, std::memory_order_relaxed);
        m_shown->entryEnded(result);
    }
    void runEnded(RunEnd end, const QString &status) override
    {
        ++m_ends;
        m_end = end;
        m_shown->runEnded(end, status);
    }

    [[nodiscard]] const std::vector<QString> &sources() const { return m_sources; }

    /// What is wrong with a job that has ended; empty if nothing is.
    [[nodiscard]] QString fault() const
    {
        if (m_starts != 1 || m_ends != 1)
            return QStringLiteral("%1 beginnings and %2 ends").arg(m_starts).arg(m_ends);
        if (!m_inOrder)
            return QStringLiteral("calls in a wrong order");
        if (m_end == RunEnd::JavaNotStarted)
            return QStringLiteral("Java was not started");
        // Each path is added once, and rows only move up.
        if (std::set(m_sources.begin(), m_sources.end()).size() != m_sources.size())
            return QStringLiteral("a file twice in one job");
        return {};
    }

private:
    std::atomic<int> &m_worked;
    WindowRun *m_shown = nullptr;
    RunEnd m_end = RunEnd::JavaNotStarted;
    int m_starts = 0;
    int m_ends = 0;
    bool m_inOrder = true;
    std::vector<QString> m_sources;
};

} // namespace brevant::test
