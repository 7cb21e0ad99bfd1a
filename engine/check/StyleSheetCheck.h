// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/ResultWarning.h"

namespace brevant {

/// What browsers no longer find in the result of a style sheet. Silent on what none of them uses: hacks,
/// prefixes of old browsers, declarations that others override. `firstLine` is the number of the first line.
[[nodiscard]] QList<ResultWarning> checkStyleSheet(QStringView source, QStringView result, int firstLine = 1);

} // namespace brevant
