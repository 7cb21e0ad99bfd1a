// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later

// To be preloaded: the program's monotonic clock runs FAULT_SPEED times as fast as the true one, so that
// limits of time are reached soon. What the system itself waits for takes as long as ever.
#include <cstdlib>
#include <ctime>

#include <sys/syscall.h>
#include <unistd.h>

// The C library's own function is replaced by its name.
extern "C" [[gnu::visibility("default")]] int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const long result = ::syscall(SYS_clock_gettime, clock, time);
    const char *const speed = std::getenv("FAULT_SPEED");
    if (result == 0 && clock == CLOCK_MONOTONIC && speed != nullptr) {
        constexpr long perSecond = 1'000'000'000;
        const long factor = std::atol(speed);
        const long nanoseconds = time->tv_nsec * factor;
        time->tv_sec = time->tv_sec * factor + nanoseconds / perSecond;
        time->tv_nsec = nanoseconds % perSecond;
    }
    return static_cast<int>(result);
}
