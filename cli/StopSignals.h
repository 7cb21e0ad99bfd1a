// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/MinifyJob.h"

#include <atomic>

namespace brevant {

/// What Ctrl+C and the like have asked for so far. A run heeds it.
extern std::atomic<Stop> stopRequested;

/// The signal that asked first to stop after a file; 0 for none.
extern std::atomic<int> stopSignal;

/// Takes SIGINT, SIGTERM and SIGHUP as requests from here on, but for those that are ignored, as under
/// nohup(1). What it says depends on whether several files are worked on at once. Ignores SIGPIPE.
void catchStopSignals(bool severalFiles);

} // namespace brevant
