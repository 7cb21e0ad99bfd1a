// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/Filter.h"

#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <csignal>

#include <unistd.h>

namespace brevant {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype mostMessages = 65536;

// Far above what escaping can make of a text, or a source map add to it.
constexpr qsizetype longestOutput(qsizetype inputSize)
{
    return 16 * inputSize + 16'000'000;
}

void setUp(QProcess &process, const Filter &filter)
{
    process.setProgram(filter.program);
    process.setArguments(filter.arguments);
    process.setWorkingDirectory(QStringLiteral("/"));
    // A group of its own, so that Ctrl+C does not end it, and all of it can be ended.
    process.setChildProcessModifier([] { ::setpgid(0, 0); });
}

/// Takes what has come meanwhile, so that little of it is held twice.
void takeOutput(QProcess &process, FilterRun &run)
{
    run.output += process.readAllStandardOutput();
    const QByteArray messages = process.readAllStandardError();
    run.messages +=
        QByteArrayView(messages).first(std::min(messages.size(), mostMessages - run.messages.size()));
}

/// Why the filter must be ended now; Exited if it may go on.
FilterRun::End reasonToEnd(const FilterRun &run, qsizetype inputSize, const std::atomic<Stop> &stop,
                           bool isLate)
{
    if (stop == Stop::AtOnce)
        return FilterRun::End::Stopped;
    if (run.output.size() > longestOutput(inputSize))
        return FilterRun::End::TooLong;
    return isLate ? FilterRun::End::TooSlow : FilterRun::End::Exited;
}

} // namespace

std::chrono::milliseconds timeFor(qsizetype inputSize)
{
    return 60s + 6s * (inputSize / 1'000'000);
}

FilterRun runFilter(const Filter &filter, const QByteArray &input, const std::atomic<Stop> &stop,
                    std::chrono::milliseconds limit)
{
    constexpr int lookAgain = 50; // milliseconds
    const auto deadline = std::chrono::steady_clock::now() + limit;
    FilterRun run;
    QProcess process;
    setUp(process, filter);
    process.start();
    process.write(input);
    process.closeWriteChannel();
    while (process.state() != QProcess::NotRunning && !process.waitForFinished(lookAgain)) {
        takeOutput(process, run);
        const bool isLate = std::chrono::steady_clock::now() > deadline;
        run.end = reasonToEnd(run, input.size(), stop, isLate);
        if (run.end != FilterRun::End::Exited && process.processId() > 0) {
            ::kill(-static_cast<pid_t>(process.processId()), SIGKILL);
            process.waitForFinished(-1);
            return run;
        }
    }
    takeOutput(process, run);
    run.status = process.exitCode();
    if (process.error() == QProcess::FailedToStart) {
        run.end = FilterRun::End::NotStarted;
        run.error = process.errorString();
    } else if (process.exitStatus() == QProcess::CrashExit) {
        run.end = FilterRun::End::Crashed;
    }
    return run;
}

QString FilterRun::words(const Filter &filter) const
{
    const QString name = QFileInfo(filter.program).fileName();
    switch (end) {
    case End::Exited:
        return QStringLiteral("%1 ended with status %2").arg(name).arg(status);
    case End::Crashed:
        return QStringLiteral("%1 was ended by signal %2").arg(name).arg(status);
    case End::NotStarted:
        return QStringLiteral("%1 could not be started: %2").arg(name, error);
    case End::TooSlow:
        return QStringLiteral("%1 took too long and was ended").arg(name);
    case End::TooLong:
        return QStringLiteral("%1 wrote far too much and was ended").arg(name);
    case End::Stopped:
        return QStringLiteral("%1 was stopped").arg(name);
    }
    return {};
}

} // namespace brevant
