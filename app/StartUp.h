// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <future>

namespace brevant {

/// What a launch of the program was asked for.
struct Launch {
    QStringList paths;      ///< files and folders to be listed, from the root
    bool minify = false;    ///< minify the list afterwards
    bool asService = false; ///< started by the bus, which calls later
};

/// Prints the help or the version, which need no display, if the arguments ask for one of them.
[[nodiscard]] bool printedHelpOrVersion(int &argc, char *argv[]);

/// Whether a display is named, or a Qt platform that needs none.
[[nodiscard]] bool mayHaveDisplay(int argc, char *argv[]);

/// Reads the system's font configuration on a thread of its own, while connecting to the display mostly
/// waits; without that the first painting comes 16 % later. Wait for it before any text is measured, or Qt
/// reads the configuration a second time.
[[nodiscard]] std::future<void> loadFonts();

/// Gives the application its name, version and icon theme.
void setUpApplication();

/// What the command line asks for. Answers --help and --version, and ends the process with 2 for an unknown
/// option.
[[nodiscard]] Launch launchOnCommandLine();

} // namespace brevant
