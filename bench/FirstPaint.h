// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEvent>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <cstdlib>

/// Prints the milliseconds since BREVANT_BENCH_START (nanoseconds of the monotonic clock) when the widget
/// that it filters has painted itself for the first time, and ends the program.
class FirstPaint final : public QObject {
protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        watched->removeEventFilter(this);
        QTimer::singleShot(0, [] {
            using Clock = std::chrono::steady_clock;
            const char *const start = std::getenv("BREVANT_BENCH_START");
            const Clock::duration spent =
                Clock::now().time_since_epoch() - Clock::duration(start == nullptr ? 0 : std::atoll(start));
            std::printf("%.2f\n", std::chrono::duration<double, std::milli>(spent).count());
            std::fflush(stdout);
            std::_Exit(0);
        });
        return false;
    }
};
