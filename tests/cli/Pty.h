// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <functional>

#include <sys/types.h>

namespace brevant::test {

class Sandbox;

/// brevant-cli on a terminal of its own, which a test looks at and types on.
class Pty final {
public:
    Pty(const Sandbox &sandbox, const QStringList &arguments, int columns = 80);

    /// Ends the program if it still runs.
    ~Pty();

    Pty(const Pty &) = delete;
    Pty &operator=(const Pty &) = delete;

    [[nodiscard]] pid_t processId() const { return m_child; }

    /// The terminal's device.
    [[nodiscard]] const QString &device() const { return m_device; }

    /// Everything written so far.
    [[nodiscard]] const QByteArray &output() const { return m_output; }

    /// Reads until `condition` holds; false if that takes too long.
    [[nodiscard]] bool waitUntil(const std::function<bool()> &condition);

    /// Types on the terminal.
    void type(QByteArrayView keys) const;

    /// Lets the terminal halt who writes on it from the background, as "stty tostop" does.
    void stopBackgroundOutput() const;

    /// Reads until the program ends. Its exit status, or minus the signal's number; -1000 if it does not end.
    [[nodiscard]] int waitForEnd();

private:
    void read(int milliseconds);

    pid_t m_child = -1;
    int m_master = -1;
    QString m_device;
    QByteArray m_output;
};

/// The process that `parent` has started and that runs `program` by now, or -1.
[[nodiscard]] pid_t childRunning(pid_t parent, const QString &program);

/// How many processes that any thread of `parent` has started run `program` by now.
[[nodiscard]] int childrenRunning(pid_t parent, const QString &program);

} // namespace brevant::test
