// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "engine/check/ResultWarning.h"

namespace brevant {

/// Words that were apart in the source of a page and are joined in its result, and what its style elements
/// have lost. Silent on what stands next to code, which may write anything.
[[nodiscard]] QList<ResultWarning> checkPage(QStringView source, QStringView result);

} // namespace brevant
