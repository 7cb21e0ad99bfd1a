// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace brevant {

struct SettingKey;

/// Why a setting cannot have that value, which is "true" or "false" for a boolean; empty if it can.
[[nodiscard]] QString settingValueError(const SettingKey &setting, const QString &value);

/// The extensions of the extra kinds.
[[nodiscard]] QStringList extraKinds();

} // namespace brevant
