// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>

namespace brevant::StopSignals {

/// From now on Ctrl+C, SIGTERM and a closed terminal ask for a stop instead of ending the program; a second
/// one ends it at once, and leaves the compressor to finish its file. What is ignored stays ignored
/// (nohup(1)). `severalFiles`: whether more than one file may be worked on then, for the words said.
void catchAll(bool severalFiles);

/// Whether a stop was asked for.
[[nodiscard]] const std::atomic<bool> &requested();

/// The exit status of a program ended by the signal that asked for the stop: 128 and its number.
[[nodiscard]] int exitStatus();

} // namespace brevant::StopSignals
