// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/ChildProcess.h"

#include <csignal>

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
        // Both are sent to every process of a terminal. Java and gzip leave an ignored signal ignored.
        std::signal(SIGINT, SIG_IGN);
        std::signal(SIGHUP, SIG_IGN);
    });
}

bool ChildProcess::launch()
{
    m_process.start(QIODevice::ReadOnly); // forwarded all the same: nothing is read here
    return m_process.waitForStarted(-1);
}

ChildExit ChildProcess::waitUntilExit()
{
    ChildExit exit;
    if (m_process.error() == QProcess::FailedToStart) {
        exit.error = m_process.errorString();
        return exit;
    }
    m_process.waitForFinished(-1);
    exit.started = true;
    exit.crashed = m_process.exitStatus() == QProcess::CrashExit;
    exit.code = m_process.exitCode();
    return exit;
}

} // namespace brevant
