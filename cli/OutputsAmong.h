// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include <vector>

namespace brevant {

class EntrySettings;

/// For each of `files`, whether it is the output of another one among them, by the settings. `areBeside`:
/// outputs are beside their sources in any case.
[[nodiscard]] std::vector<bool> outputsAmong(const QStringList &files, const EntrySettings &settings,
                                             bool areBeside);

} // namespace brevant
