// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <chrono>

namespace brevant {

/// How far a run is asked to stop. Runs look at a std::atomic of it.
enum class Stop {
    No,
    AfterFile, ///< no other file is begun, and those being worked on are finished
    AtOnce,    ///< what works on a file is ended too
};

/// Counts the signals that ask a program to end. Signals within half a second are one request: timeout(1)
/// sends one to the program and one to its group, and a terminal that goes away may be told of twice.
/// For signal handlers: it calls nothing that is not safe there.
class StopCount final {
public:
    using Clock = std::chrono::steady_clock;

    /// How many requests there have been with the signal that has come `now`; 0 if that is none of its own.
    [[nodiscard]] int add(Clock::time_point now = Clock::now())
    {
        Clock::rep last = m_last;
        if (last != 0 && now - Clock::time_point(Clock::duration(last)) < std::chrono::milliseconds(500))
            return 0;
        // Two threads may be in the handler at once; one of them counts.
        return m_last.compare_exchange_strong(last, now.time_since_epoch().count()) ? ++m_count : 0;
    }

private:
    std::atomic<Clock::rep> m_last = 0; ///< when the last request came; 0 before the first
    std::atomic<int> m_count = 0;
    static_assert(std::atomic<Clock::rep>::is_always_lock_free && std::atomic<int>::is_always_lock_free);
};

} // namespace brevant
