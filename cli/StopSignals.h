// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <QtGlobal>

#include <atomic>

namespace brevant {

/// What Ctrl+C and the like have asked for so far. A run heeds it.
extern std::atomic<Stop> stopRequested;

/// The signal that asked first to stop after a file; 0 for none.
extern std::atomic<int> stopSignal;

/// Takes SIGINT, SIGTERM and SIGHUP as requests from here on, but for those that are ignored, as under
/// nohup(1). What it says depends on how many files are worked on at once; nothing for none. Ignores SIGPIPE.
void catchStopSignals(int files);

/// To be waited for with poll(2): readable once a signal has asked for a stop. Made at the first call; -1 on
/// failure.
[[nodiscard]] int stopDescriptor();

/// While this lives, the first of them ends the work on the file too, without a word. After that they end the
/// program as ever.
class StopSignalsEndWork final {
public:
    StopSignalsEndWork();
    ~StopSignalsEndWork();
    Q_DISABLE_COPY_MOVE(StopSignalsEndWork)
};

} // namespace brevant
