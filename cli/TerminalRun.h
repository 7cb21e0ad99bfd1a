// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/CommandLine.h"
#include "engine/Tools.h"

namespace brevant {

/// Exit statuses of brevant-cli; after a stop it is 128 and the signal's number, 130 for Ctrl+C.
enum class ExitStatus { AllDone = 0, SomeFailed = 1, WrongUsage = 2, NoTools = 3 };

/// Does what the command line says, and returns the exit status of the process.
[[nodiscard]] int runTerminal(const CommandLine &line, const Tools &tools);

/// Says on the error stream what is wrong with the use, and returns the exit status for it.
[[nodiscard]] int reportUsageError(const UsageError &error);

} // namespace brevant
