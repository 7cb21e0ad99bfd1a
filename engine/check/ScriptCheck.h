// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/ResultWarning.h"

namespace brevant {

/// Notes the "use strict" of functions of a script that its result has lost.
[[nodiscard]] QList<ResultWarning> checkScript(QStringView source, QStringView result);

} // namespace brevant
