// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/results/RunRecord.h"

#include <memory>

class QWidget;

namespace brevant {

/// Asks where to save the report of a run, and in which format, and writes it. Returns at once.
void saveReport(const std::shared_ptr<const RunRecord> &run, QWidget *window);

} // namespace brevant
