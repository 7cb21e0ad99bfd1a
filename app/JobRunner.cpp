// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/JobRunner.h"

#include <algorithm>
#include <utility>

namespace brevant {

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
    for (std::thread &thread : m_threads) {
        if (thread.joinable())
            thread.join();
    }
}

void JobRunner::detachNewThread(Job job)
{
    const auto thread = m_threads.emplace(m_threads.end());
    *thread = std::thread([this, thread, job = std::move(job)] {
        job(m_stop);
        // Queued behind everything that the job has queued.
        QMetaObject::invokeMethod(
            this, [this, thread] { threadEnded(thread); }, Qt::QueuedConnection);
    });
    Q_EMIT started();
}

void JobRunner::threadEnded(std::list<std::thread>::iterator thread)
{
    if (thread->joinable())
        thread->join();
    m_threads.erase(thread);
    if (m_threads.empty())
        Q_EMIT allEnded();
}

} // namespace brevant
