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
    for (auto &[number, thread] : m_threads) {
        if (thread.joinable())
            thread.join();
    }
}

void JobRunner::detachNewThread(Job job)
{
    const int number = ++m_lastNumber;
    m_threads[number] = std::thread([this, number, job = std::move(job)] {
        job(m_stop);
        // Queued behind everything that the job has queued.
        QMetaObject::invokeMethod(
            this, [this, number] { threadEnded(number); }, Qt::QueuedConnection);
    });
    Q_EMIT started();
}

void JobRunner::threadEnded(int number)
{
    if (std::thread &thread = m_threads.at(number); thread.joinable())
        thread.join();
    m_threads.erase(number);
    if (m_threads.empty())
        Q_EMIT allEnded();
}

} // namespace brevant
