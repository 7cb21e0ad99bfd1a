// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/FileCopies.h"

namespace brevant {

class EntrySettings;

/// Says which two files of a run with --out-dir would be written to one place, or which would be written over
/// a file of the run; empty if none.
[[nodiscard]] QString outputConflict(const std::vector<QString> &files, const std::vector<FileCopy> &copies,
                                     const EntrySettings &settings);

} // namespace brevant
