// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/modern/Filter.h"

#include <QFileInfo>
#include <QProcess>

#include <algorithm>
#include <csignal>

#include <sys/prctl.h>
#include <unistd.h>

namespace brevant {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype mostMessages = 65536;

} // namespace

void setUpFilter(QProcess &process, const Filter &filter)
{
    process.setProgram(filter.program);
    process.setArguments(filter.arguments);
    process.setWorkingDirectory(filter.folder);
    process.setChildProcessModifier([parent = ::getpid()] {
        // A group of its own, so that Ctrl+C does not end it, and all of it can be ended.
        ::setpgid(0, 0);
        // One that hangs would outlive a program that is killed.
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() != parent)
            ::_exit(1);
    });
}

void killGroup(const QProcess &process)
{
    if (process.processId() > 0)
        ::kill(-static_cast<pid_t>(process.processId()), SIGKILL);
}

void takeMessages(QProcess &process, FilterRun &run)
{
    const QByteArray messages = process.readAllStandardError();
    run.messages +=
        QByteArrayView(messages).first(std::min(messages.size(), mostMessages - run.messages.size()));
}

namespace {

/// Takes what has come meanwhile, so that little of it is held twice.
void takeOutput(QProcess &process, FilterRun &run)
{
    run.output += process.readAllStandardOutput();
    takeMessages(process, run);
}

/// As soon as it comes, so that a flood does not gather.
void takeWhatComes(QProcess &process, FilterRun &run, qsizetype inputSize)
{
    const auto take = [&process, &run, inputSize] {
        takeOutput(process, run);
        if (run.output.size() > longestOutput(inputSize)) {
            run.end = FilterRun::End::TooLong;
            killGroup(process);
        }
    };
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process, take);
    QObject::connect(&process, &QProcess::readyReadStandardError, &process, take);
    QObject::connect(&process, &QProcess::errorOccurred, &process, [&run](QProcess::ProcessError error) {
        if (error == QProcess::ReadError || error == QProcess::WriteError)
            run.end = FilterRun::End::Cut;
    });
}

/// Ends the filter where it must go on no longer.
void endInTime(QProcess &process, FilterRun &run, const std::atomic<Stop> &stop, bool isLate)
{
    if (stop != Stop::AtOnce && !isLate)
        return;
    run.end = stop == Stop::AtOnce ? FilterRun::End::Stopped : FilterRun::End::TooSlow;
    killGroup(process);
}

/// How a filter that nobody has ended came to its end.
void readEnd(const QProcess &process, FilterRun &run)
{
    run.status = process.exitCode();
    if (process.error() == QProcess::FailedToStart) {
        run.end = FilterRun::End::NotStarted;
        run.error = process.errorString();
    } else if (process.exitStatus() == QProcess::CrashExit) {
        run.end = FilterRun::End::Crashed;
    } else if (run.status != 0) {
        run.end = FilterRun::End::Exited; // whatever it has not read
    }
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
    setUpFilter(process, filter);
    takeWhatComes(process, run, input.size());
    process.start();
    process.write(input);
    process.closeWriteChannel();
    while (process.state() != QProcess::NotRunning && !process.waitForFinished(lookAgain))
        endInTime(process, run, stop, std::chrono::steady_clock::now() > deadline);
    takeOutput(process, run);
    if (run.end == FilterRun::End::Exited || run.end == FilterRun::End::Cut)
        readEnd(process, run);
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
    case End::Cut:
        return QStringLiteral("%1 did not take its whole text, or its result could not be read").arg(name);
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
