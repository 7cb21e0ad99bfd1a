// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Stop.h"

#include <cerrno>
#include <csignal>

#include <unistd.h>

namespace brevant {

namespace {

StopCount stopCount;
std::atomic<StopHandler> stopHandler;
static_assert(std::atomic<StopHandler>::is_always_lock_free);

extern "C" void handleStopSignal(int number)
{
    const int request = stopCount.add();
    if (request > 2)
        ::_exit(statusOfSignal(number));
    const int error = errno;
    if (request > 0)
        stopHandler.load()(request == 1 ? Stop::AfterFile : Stop::AtOnce, number);
    errno = error;
}

} // namespace

void catchStopSignal(int number, StopHandler handler)
{
    stopHandler = handler;
    struct sigaction action {};
    action.sa_handler = handleStopSignal;
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

} // namespace brevant
