// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

#include <QProcess>
#include <QString>
#include <QStringList>

namespace brevant {

/// How a child process ended.
struct ChildExit {
    bool crashed = false; ///< ended by a signal
    int code = 0;         ///< exit status, or the signal's number
};

/// One child process, started from a list and never through a shell. It inherits the environment and all
/// three streams. It has a process group of its own: what is sent to ours, as Ctrl+C is, does not reach it,
/// so that it finishes what it writes.
class ChildProcess final {
public:
    /// `folder` is the child's working folder; empty for our own.
    ChildProcess(const QString &program, const QString &folder, const QStringList &arguments);

    /// Starts the child; false if that fails.
    bool launch();

    /// Waits for the child's end, without a time limit; its group is killed where a stop at once is asked
    /// for.
    [[nodiscard]] ChildExit waitUntilExit(const std::atomic<Stop> &stop);

    /// Why the child could not be started, in words.
    [[nodiscard]] QString startFailure() const { return m_process.errorString(); }

private:
    QProcess m_process;
};

} // namespace brevant
