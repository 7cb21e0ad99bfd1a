// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace brevant {

/// How a child process ended.
struct ChildExit {
    bool started = false;
    bool crashed = false; ///< ended by a signal
    int code = 0;         ///< exit status, or the signal's number
    QString error;        ///< why it could not be started

    [[nodiscard]] bool isSuccess() const { return started && !crashed && code == 0; }
};

/// One child process, started from a list and never through a shell. It inherits the environment and all
/// three streams. Ctrl+C and the closing of a terminal do not reach it, so that it finishes what it writes.
class ChildProcess final {
public:
    /// `folder` is the child's working folder; empty for our own.
    ChildProcess(const QString &program, const QString &folder, const QStringList &arguments);

    /// Starts the child; false if that fails.
    bool launch();

    /// Waits for the child's end, without a time limit.
    [[nodiscard]] ChildExit waitUntilExit();

private:
    QProcess m_process;
};

} // namespace brevant
