// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StopSignals.h"

#include <cerrno>
#include <csignal>
#include <string_view>

#include <unistd.h>

namespace brevant::StopSignals {

namespace {

constexpr int signalStatus = 128; // as the shells count, bash(1)

StopCount stopCount;
std::atomic<Stop> stopRequested = Stop::No;
std::atomic<int> stopSignal = 0;
std::atomic<bool> isForSeveralFiles = false;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<Stop>::is_always_lock_free);

extern "C" void handleStopSignal(int number)
{
    const int request = stopCount.add();
    if (request > 2)
        ::_exit(signalStatus + number);
    if (request == 2)
        stopRequested = Stop::AtOnce;
    if (request != 1)
        return;
    stopSignal = number;
    stopRequested = Stop::AfterFile;
    constexpr std::string_view thisFile = "\nStopping after this file; once more to end at once.\n";
    constexpr std::string_view theseFiles = "\nStopping after these files; once more to end at once.\n";
    const std::string_view words = isForSeveralFiles ? theseFiles : thisFile;
    const int error = errno;
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, words.data(), words.size());
    errno = error;
}

} // namespace

void catchAll(bool severalFiles)
{
    isForSeveralFiles = severalFiles;
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = handleStopSignal;
        action.sa_flags = SA_RESTART;
        ::sigaction(number, &action, nullptr);
    }
    // A reader that goes away must not end a run between two files.
    std::signal(SIGPIPE, SIG_IGN);
}

const std::atomic<Stop> &requested()
{
    return stopRequested;
}

int exitStatus()
{
    return signalStatus + stopSignal;
}

} // namespace brevant::StopSignals
