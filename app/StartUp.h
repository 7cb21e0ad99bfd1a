// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/Launch.h"

namespace brevant {

/// Whether the arguments ask for words alone, the help or the version, which need no display. They are
/// printed.
[[nodiscard]] bool answeredInWords(int &argc, char *argv[]);

/// Whether somebody names a display, or a platform of Qt that needs none.
[[nodiscard]] bool mayHaveDisplay(int argc, char *argv[]);

/// Gives the application its name, version and icon theme.
void setUpApplication();

/// Gives the application its icon. Reading the pictures takes a while that the first painting need not wait
/// for.
void loadApplicationIcon();

/// What the command line asks for. Answers --help and --version, and ends the process with 2 for an unknown
/// option.
[[nodiscard]] Launch launchOnCommandLine();

} // namespace brevant
