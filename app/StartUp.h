// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace brevant {

/// Whether the arguments ask for words alone, the help or the version, which need no display. They are
/// printed.
[[nodiscard]] bool answeredInWords(int &argc, char *argv[]);

/// Gives the application its name, version and icon theme.
void setUpApplication();

/// Gives the application its icon. Reading the pictures takes a while that the first painting need not wait
/// for.
void loadApplicationIcon();

/// The files and folders named on the command line, from the root. Answers --help and --version, and ends the
/// process with 2 for an unknown option.
[[nodiscard]] QStringList pathsOnCommandLine();

} // namespace brevant
