// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Lifetime.h"

#include "app/JobRunner.h"
#include "app/MainWindow.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace brevant {

namespace {

// The program stays for the sound at the end of a run.
constexpr std::chrono::milliseconds soundLength(1000);

// A signal handler may only write to a descriptor; the main loop hears of it at the other end.
std::array<int, 2> signalPipe{-1, -1};

std::atomic_flag signalled;

extern "C" void tellMainLoop(int number)
{
    if (signalled.test_and_set())
        ::_exit(128 + number); // as the shells count, bash(1)
    const int error = errno;
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[0], "", 1);
    errno = error;
}

} // namespace

Lifetime::Lifetime(MainWindow &window, JobRunner &jobs, QObject *parent)
    : QObject(parent), m_window(window), m_jobs(jobs)
{
    QGuiApplication::setQuitOnLastWindowClosed(false);
    connect(&m_window, &MainWindow::closed, this, &Lifetime::windowClosed);
    connect(&m_jobs, &JobRunner::allEnded, this, &Lifetime::runsEnded);
}

void Lifetime::catchSignals()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalPipe.data()) != 0)
        return;
    auto *const notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this); // a child of this
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        quit();
    });
    for (const int number : {SIGINT, SIGTERM}) {
        struct sigaction action {};
        action.sa_handler = tellMainLoop;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

void Lifetime::quit()
{
    m_quitting = true;
    Q_EMIT ending();
    m_jobs.requestStop();
    m_window.hide();
    Q_EMIT quitting();
    if (!m_jobs.isRunning())
        QCoreApplication::exit(0);
}

void Lifetime::quitIfUnseen()
{
    if (!m_window.isHidden() || m_jobs.isRunning())
        return;
    m_quitting = true;
    Q_EMIT ending();
    QCoreApplication::exit(0);
}

void Lifetime::windowClosed()
{
    if (!m_jobs.isRunning())
        quit();
}

void Lifetime::runsEnded()
{
    if (m_quitting) {
        QCoreApplication::exit(0);
    } else if (m_window.isHidden()) {
        QTimer::singleShot(soundLength, this, &Lifetime::quitIfUnseen);
    }
}

} // namespace brevant
