// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound/SoundThread.h"

#include "app/sound/SoundPlayer.h"

#include <QThread>

#include <chrono>
#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace brevant {

using namespace std::chrono_literals;

namespace {

/// The sink drops what it still holds when it is told that the sound is over.
constexpr auto trailingSilence = 250ms;

/// A sound that comes later than this says nothing any more.
constexpr auto latestStart = 5s;

/// What a healthy sound server needs to let go of the sound is far less.
constexpr auto patienceAtEnd = 200ms;

/// Leaves with the status the program is leaving with, but before any static object is destroyed: those of Qt
/// Multimedia would wait for the thread that we could not stop.
[[maybe_unused]] void leaveNow(int status, void * /*unused*/)
{
    std::fflush(nullptr);
    ::_exit(status);
}

void leaveWithoutWaitingForThreads()
{
#ifdef __GLIBC__
    ::on_exit(leaveNow, nullptr);
#endif
}

} // namespace

SoundThread::SoundThread() = default;

SoundThread::~SoundThread()
{
    if (!m_thread)
        return;
    m_thread->requestInterruption();
    m_thread->quit();
    if (m_thread->wait(QDeadlineTimer(patienceAtEnd)))
        return;
    // Blocked by the sound server. The thread keeps its own objects and is left behind with them.
    static_cast<void>(m_thread.release());
    leaveWithoutWaitingForThreads();
}

bool SoundThread::loadFromData(const QByteArray &file)
{
    m_samples = decodedSound(file, trailingSilence);
    return m_samples.has_value();
}

void SoundThread::play()
{
    if (!m_samples)
        return;
    if (!m_thread) {
        m_thread = std::make_unique<QThread>();
        m_player = new SoundPlayer; // deleted on its thread, below
        m_player->moveToThread(m_thread.get());
        QObject::connect(m_thread.get(), &QThread::finished, m_player, &QObject::deleteLater);
        m_thread->start();
    }
    QMetaObject::invokeMethod(
        m_player,
        [player = m_player, samples = *m_samples, latest = QDeadlineTimer(latestStart)] {
            player->play(samples, latest);
        },
        Qt::QueuedConnection);
}

} // namespace brevant
