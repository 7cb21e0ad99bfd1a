// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <future>

namespace brevant {

/// What a launch of the program was asked for.
struct Launch {
    QStringList paths;      ///< files and folders to be listed, from the root
    bool minify = false;    ///< the list is to be minified then
    bool asService = false; ///< the bus starts the program, and says later what for
};

/// Prints the help or the version, which need no display, if the arguments ask for one of them.
[[nodiscard]] bool printedHelpOrVersion(int &argc, char *argv[]);

/// Whether a display is named, or a Qt platform that needs none.
[[nodiscard]] bool mayHaveDisplay(int argc, char *argv[]);

/// Reads the system's font configuration on a thread of its own, while the connecting to the display mostly
/// waits; that makes the first painting come a seventh sooner. Qt reads it as soon as a text is measured, and
/// a second time if this has not ended: wait for it first.
[[nodiscard]] std::future<void> loadFonts();

/// Gives the application its name, version and icon theme.
void setUpApplication();

/// What the command line asks for. Answers --help and --version, and ends the process with 2 for an unknown
/// option.
[[nodiscard]] Launch launchOnCommandLine();

} // namespace brevant
