// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/Files.h"
#include "tests/cli/CliRun.h"

#include <QDir>
#include <QProcess>
#include <QTest>

#include <csignal>

namespace brevant::test {

/// brevant-cli --watch at work in a sandbox.
class WatchedSite final {
public:
    static constexpr int longestWait = 30'000; ///< milliseconds

    Sandbox sandbox;

    ~WatchedSite()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    WatchedSite() = default;
    Q_DISABLE_COPY_MOVE(WatchedSite)

    /// Starts it with these arguments, modern compressors unless others are named there, and waits until
    /// the first run has ended.
    [[nodiscard]] bool start(const QStringList &arguments)
    {
        m_process.setProcessEnvironment(sandbox.environment);
        m_process.setWorkingDirectory(sandbox.path());
        m_process.setStandardInputFile(QProcess::nullDevice());
        m_process.start(cliProgram(), QStringList{u"--watch"_s, u"--compressors=modern"_s} + arguments);
        return prints("Ctrl+C ends.\n");
    }

    /// Waits until that is on standard output.
    [[nodiscard]] bool prints(const QByteArray &text)
    {
        return QTest::qWaitFor([&] { return out().contains(text); }, longestWait);
    }

    /// Waits until that is on standard error.
    [[nodiscard]] bool complains(const QByteArray &text)
    {
        return QTest::qWaitFor([&] { return err().contains(text); }, longestWait);
    }

    /// Waits until a file has that content.
    [[nodiscard]] bool makes(const QString &name, const QByteArray &content) const
    {
        return QTest::qWaitFor([&] { return sandbox.has(name) && sandbox.read(name) == content; },
                               longestWait);
    }

    /// Waits until a file is gone.
    [[nodiscard]] bool removes(const QString &name) const
    {
        return QTest::qWaitFor([&] { return !sandbox.has(name); }, longestWait);
    }

    /// Waits until a change of this very moment has been seen, and so everything before it.
    [[nodiscard]] bool catchesUp()
    {
        const QString name = u"marker%1"_s.arg(++m_markers);
        sandbox.add(name + u".css"_s, "m{a:b}");
        return prints(QFile::encodeName(name) + ".min.css");
    }

    void signal(int number) const { ::kill(static_cast<pid_t>(m_process.processId()), number); }

    /// The exit status after a signal; minus the number of one that has ended it.
    [[nodiscard]] int end(int number)
    {
        signal(number);
        if (!m_process.waitForFinished(longestWait))
            return -1000;
        return m_process.exitStatus() == QProcess::CrashExit ? -m_process.exitCode() : m_process.exitCode();
    }

    [[nodiscard]] const QByteArray &out()
    {
        m_out += m_process.readAllStandardOutput();
        return m_out;
    }
    [[nodiscard]] const QByteArray &err()
    {
        m_err += m_process.readAllStandardError();
        return m_err;
    }

    /// How often that file was minified after the first run.
    [[nodiscard]] qsizetype count(const QString &name)
    {
        const QByteArray line = ' ' + QFile::encodeName(sandbox.path(name)) + " -> ";
        return out().sliced(out().indexOf("Ctrl+C ends.")).count(line);
    }

    [[nodiscard]] QProcess &process() { return m_process; }

private:
    QProcess m_process;
    QByteArray m_out;
    QByteArray m_err;
    int m_markers = 0;
};

} // namespace brevant::test
