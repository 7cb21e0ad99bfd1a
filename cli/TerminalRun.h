// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/Tools.h"

#include <QStringList>

namespace brevant {

/// Does what the arguments say, without the program's own name, and returns the exit status.
[[nodiscard]] int runTerminal(const QStringList &arguments, const Tools &tools);

} // namespace brevant
