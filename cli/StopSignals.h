// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

namespace brevant::StopSignals {

/// From now on the first SIGINT, SIGTERM or SIGHUP asks for a stop after the current file, the second for a
/// stop at once, and the third ends the program. Ignored signals stay ignored (nohup(1)). `severalFiles` only
/// chooses the wording of the message: whether several files may be in work at a time.
void catchAll(bool severalFiles);

/// How far a stop was asked for.
[[nodiscard]] const std::atomic<Stop> &requested();

/// The exit status of a program ended by the signal that asked for the stop: 128 and its number.
[[nodiscard]] int exitStatus();

} // namespace brevant::StopSignals
