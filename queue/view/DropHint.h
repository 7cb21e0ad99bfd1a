// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

class SettingsStore;

/// The line that asks for files, with the kinds that are switched on: "Drop CSS or JavaScript files". The
/// picture goes on from there.
[[nodiscard]] QString dropHint(const SettingsStore &settings);

} // namespace brevant
