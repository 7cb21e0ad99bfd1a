// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ChildProcess.h"

#include <csignal>

#include <unistd.h>

namespace brevant {

ChildProcess::ChildProcess(const QString &program, const QString &folder, const QStringList &arguments)
{
    m_process.setProgram(program);
    m_process.setArguments(arguments);
    if (!folder.isEmpty())
        m_process.setWorkingDirectory(folder);
    m_process.setInputChannelMode(QProcess::ForwardedInputChannel);
    m_process.setProcessChannelMode(QProcess::ForwardedChannels);
    m_process.setChildProcessModifier([] {
        ::setpgid(0, 0);
        // In the background of the terminal, reading there, or "stty tostop", would halt it for good.
        std::signal(SIGTTIN, SIG_IGN);
        std::signal(SIGTTOU, SIG_IGN);
    });
}

bool ChildProcess::launch()
{
    m_process.start(QIODevice::ReadOnly); // the channels are forwarded all the same
    return m_process.waitForStarted(-1);
}

ChildExit ChildProcess::waitUntilExit(const std::atomic<Stop> &stop)
{
    constexpr int lookAgain = 50; // milliseconds
    while (!m_process.waitForFinished(lookAgain) && m_process.state() != QProcess::NotRunning) {
        if (stop == Stop::AtOnce)
            ::kill(-static_cast<pid_t>(m_process.processId()), SIGKILL);
    }
    return {m_process.exitStatus() == QProcess::CrashExit, m_process.exitCode()};
}

} // namespace brevant
