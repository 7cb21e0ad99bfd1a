// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StopSignals.h"

#include <csignal>
#include <string_view>

#include <unistd.h>

namespace brevant {

std::atomic<Stop> stopRequested = Stop::No;
std::atomic<int> stopSignal = 0;

namespace {

std::atomic<bool> isForSeveralFiles = false;
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<Stop>::is_always_lock_free);

void stopOnSignal(Stop stop, int number)
{
    if (stop == Stop::AfterFile)
        stopSignal = number;
    stopRequested = stop;
    if (stop != Stop::AfterFile)
        return;
    constexpr std::string_view thisFile = "\nStopping after this file; once more to end at once.\n";
    constexpr std::string_view theseFiles = "\nStopping after these files; once more to end at once.\n";
    const std::string_view words = isForSeveralFiles ? theseFiles : thisFile;
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, words.data(), words.size());
}

void stopAtOnce(Stop, int number)
{
    if (stopSignal == 0)
        stopSignal = number;
    stopRequested = Stop::AtOnce;
}

template <typename Set>
void setForAll(Set set)
{
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        if (::sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_IGN) // nohup(1)
            set(number);
    }
}

void catchAll(StopHandler handler)
{
    setForAll([handler](int number) { catchStopSignal(number, handler); });
    // A reader that goes away must not end a run between two files.
    std::signal(SIGPIPE, SIG_IGN);
}

} // namespace

void catchStopSignals(bool severalFiles)
{
    isForSeveralFiles = severalFiles;
    catchAll(stopOnSignal);
}

StopSignalsEndWork::StopSignalsEndWork()
{
    catchAll(stopAtOnce);
}

StopSignalsEndWork::~StopSignalsEndWork()
{
    setForAll([](int number) { std::signal(number, SIG_DFL); });
}

} // namespace brevant
