// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Lifetime.h"

#include "app/MainWindow.h"
#include "app/WindowRun.h"
#include "ui_MainWindow.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace brevant {

namespace {

// How long the program stays after a run, for the sound.
constexpr std::chrono::milliseconds soundLength(1000);

constexpr int signalStatus = 128; // as the shells count, bash(1)

// The signal handler writes to one end, and the main loop reads from the other.
std::array<int, 2> signalPipe{-1, -1};

StopCount stopCount;

extern "C" void tellMainLoop(int number)
{
    const int request = stopCount.add();
    if (request == 0)
        return;
    if (request > 2)
        ::_exit(signalStatus + number);
    const int error = errno;
    const auto byte = static_cast<char>(number);
    [[maybe_unused]] const ssize_t written = ::write(signalPipe[0], &byte, 1);
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

void Lifetime::awakeFromNib()
{
    connect(m_window.ui().quitMenu, &QAction::triggered, this, &Lifetime::quit);
}

void Lifetime::catchSignals()
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalPipe.data()) != 0)
        return;
    auto *const notifier = new QSocketNotifier(signalPipe[1], QSocketNotifier::Read, this); // a child of this
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char number = 0;
        if (::read(signalPipe[1], &number, 1) == 1)
            signalled(number);
    });
    for (const int number : {SIGINT, SIGTERM}) {
        struct sigaction action {};
        action.sa_handler = tellMainLoop;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
}

void Lifetime::signalled(int number)
{
    if (++m_signals == 1) {
        quit();
    } else {
        m_exitStatus = signalStatus + number;
        m_jobs.requestStop(Stop::AtOnce);
    }
}

void Lifetime::quit()
{
    m_quitting = true;
    Q_EMIT ending();
    m_jobs.requestStop(Stop::AfterFile);
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
        QCoreApplication::exit(m_exitStatus);
    } else if (m_window.isHidden()) {
        QTimer::singleShot(soundLength, this, &Lifetime::quitIfUnseen);
    }
}

} // namespace brevant
