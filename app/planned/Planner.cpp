// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/planned/Planner.h"

#include "engine/Tools.h"
#include "queue/FileQueue.h"

#include <chrono>
#include <system_error>
#include <utility>

namespace brevant {

/// Changes often come several at a time.
constexpr std::chrono::milliseconds restartDelay(50);

Planner::Planner(const FileQueue &queue, const SettingsStore &settings, const Tools &tools)
    : m_queue(queue), m_settings(settings), m_tools(tools)
{
    m_delay.setSingleShot(true);
    m_delay.setInterval(restartDelay);
    connect(&m_delay, &QTimer::timeout, this, &Planner::startThread);
}

Planner::~Planner() = default;

void Planner::restart()
{
    stop();
    m_delay.start();
}

void Planner::stop()
{
    m_delay.stop();
    m_isAgainWanted = false;
    ++m_plan;
    m_thread.request_stop();
}

void Planner::startThread()
{
    if (m_isRunning) { // to end soon; waiting for a slow disk would hold up the window
        m_isAgainWanted = true;
        return;
    }
    try {
        m_thread = std::jthread([this, plan = m_plan, sources = m_queue.entries(),
                                 folder = m_tools.folder](const std::stop_token &stop) {
            const auto count = static_cast<int>(sources.size());
            planOutputs(sources, m_settings, folder, stop,
                        [this, plan, count](int first, std::vector<PlannedFile> files) {
                            const auto tell = [this, plan, first, count, told = std::move(files)] {
                                if (plan == m_plan)
                                    Q_EMIT planned(first, told, count);
                            };
                            QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
                        });
            QMetaObject::invokeMethod(this, &Planner::threadEnded, Qt::QueuedConnection);
        });
        m_isRunning = true;
    } catch (const std::system_error &) {
        m_delay.start(); // no thread to be had; tried again until there is one
    }
}

void Planner::threadEnded()
{
    m_thread.join();
    m_isRunning = false;
    if (std::exchange(m_isAgainWanted, false))
        startThread();
    else if (!m_delay.isActive())
        Q_EMIT finished();
}

} // namespace brevant
