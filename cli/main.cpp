// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/TerminalRun.h"
#include "engine/Tools.h"
#include "files/Descriptor.h"
#include "files/RawBytes.h"

#include <clocale>
#include <csignal>

int main(int argc, char *argv[])
{
    using namespace brevant;

    openClosedStandardStreams();
    // Writing past the limit of ulimit -f then fails as on a full disk, instead of ending the program.
    std::signal(SIGXFSZ, SIG_IGN);
    // For wcwidth() only. The environment, which the compressors inherit, stays as it is.
    std::setlocale(LC_CTYPE, "C.UTF-8");

    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(RawBytes::decoded(argv[i]));

    return runTerminal(arguments, Tools::inResources(findResourceFolder()));
}
