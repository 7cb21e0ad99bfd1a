// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/Stop.h"

namespace brevant {

int StopCount::add(Clock::time_point now)
{
    constexpr Clock::duration moment = std::chrono::milliseconds(500);
    Clock::rep last = m_last;
    if (last != 0 && now - Clock::time_point(Clock::duration(last)) < moment)
        return 0;
    // Two threads may be in the handler at once; one of them counts.
    return m_last.compare_exchange_strong(last, now.time_since_epoch().count()) ? ++m_count : 0;
}

} // namespace brevant
