// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/StopSignals.h"

#include <csignal>
#include <string_view>

#include <sys/eventfd.h>
#include <unistd.h>

namespace brevant {

std::atomic<Stop> stopRequested = Stop::No;
std::atomic<int> stopSignal = 0;

namespace {

std::atomic<int> filesAtOnce = 0;
std::atomic<int> wakeUp = -1;
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<Stop>::is_always_lock_free);

void stopOnSignal(Stop stop, int number)
{
    if (stop == Stop::AfterFile)
        stopSignal = number;
    stopRequested = stop;
    if (const int descriptor = wakeUp; descriptor >= 0)
        ::eventfd_write(descriptor, 1);
    const int files = filesAtOnce;
    if (stop != Stop::AfterFile || files == 0)
        return;
    constexpr std::string_view thisFile = "\nStopping after this file; once more to end at once.\n";
    constexpr std::string_view theseFiles = "\nStopping after these files; once more to end at once.\n";
    const std::string_view words = files > 1 ? theseFiles : thisFile;
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

void catchStopSignals(int files)
{
    filesAtOnce = files;
    catchAll(stopOnSignal);
}

int stopDescriptor()
{
    if (wakeUp < 0)
        wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    return wakeUp;
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
