// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"

#include <QByteArray>

namespace brevant {

/// The rows of a run as comma-separated values (RFC 4180) with a line of titles, in UTF-8.
[[nodiscard]] QByteArray reportAsCsv(const RunRecord &run);

} // namespace brevant
