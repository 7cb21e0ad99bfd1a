// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

namespace brevant {

/// What a launch of the program was asked for.
struct Launch {
    QStringList paths;      ///< files and folders to be listed, from the root
    bool minify = false;    ///< the list is to be minified then
    bool asService = false; ///< the bus starts the program, and says later what for
};

} // namespace brevant
