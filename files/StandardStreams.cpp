// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "files/StandardStreams.h"

#include "files/Descriptor.h"

#include <fcntl.h>

namespace brevant {

void openClosedStandardStreams()
{
    // The lowest free number is the one taken.
    int opened = STDIN_FILENO;
    while (opened >= 0 && opened <= STDERR_FILENO)
        opened = uninterrupted([] { return ::open("/dev/null", O_RDWR); });
    if (opened >= 0)
        ::close(opened);
}

} // namespace brevant
