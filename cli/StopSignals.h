// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Stop.h"

namespace brevant::StopSignals {

/// From now on Ctrl+C, SIGTERM and a closed terminal ask for a stop after the file instead of ending the
/// program; a second one asks for a stop at once, and a third one ends the program as it stands. What is
/// ignored stays ignored (nohup(1)). `severalFiles`: whether more than one file may be worked on then, for
/// the words said.
void catchAll(bool severalFiles);

/// How far a stop was asked for.
[[nodiscard]] const std::atomic<Stop> &requested();

/// The exit status of a program ended by the signal that asked for the stop: 128 and its number.
[[nodiscard]] int exitStatus();

} // namespace brevant::StopSignals
