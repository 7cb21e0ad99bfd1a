// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>

namespace brevant {

/// Whether and how soon a run is to stop. Runs read it from a std::atomic.
enum class Stop {
    No,
    AfterFile, ///< finish the files in work, begin no other
    AtOnce,    ///< end the compressors too
};

/// Counts requests to end the program. Signals within half a second are one request: timeout(1) sends one to
/// the program and one to its group, and a closed terminal may send two. Safe in signal handlers.
class StopCount final {
public:
    using Clock = std::chrono::steady_clock;

    /// The number of requests so far, for a signal received `now`; 0 if it belongs to the last request.
    [[nodiscard]] int add(Clock::time_point now = Clock::now())
    {
        Clock::rep last = m_last;
        if (last != 0 && now - Clock::time_point(Clock::duration(last)) < std::chrono::milliseconds(500))
            return 0;
        // Two threads may be in the handler at once; only one of them counts.
        return m_last.compare_exchange_strong(last, now.time_since_epoch().count()) ? ++m_count : 0;
    }

private:
    std::atomic<Clock::rep> m_last = 0; ///< time of the last request; 0 before the first
    std::atomic<int> m_count = 0;
    static_assert(std::atomic<Clock::rep>::is_always_lock_free && std::atomic<int>::is_always_lock_free);
};

/// The exit status of a program that was ended by that signal, as the shells count, bash(1).
[[nodiscard]] constexpr int statusOfSignal(int number)
{
    return 128 + number;
}

/// Told, in a signal handler, how far a signal asks for a stop.
using StopHandler = void (*)(Stop stop, int number);

/// From now on that signal asks for a stop: the first request is one after the file in work, the second one
/// at once, and the third ends the program. All signals share the handler and the count.
void catchStopSignal(int number, StopHandler handler);

} // namespace brevant
