// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"

#include <algorithm>

namespace brevant {

const SettingKey *findSettingKey(QStringView key)
{
    const auto found =
        std::ranges::find_if(allSettingKeys, [key](const SettingKey &setting) { return key == setting.key; });
    return found == allSettingKeys.end() ? nullptr : &*found;
}

QJsonObject registeredDefaults()
{
    QJsonObject defaults;
    for (const SettingKey &setting : allSettingKeys) {
        if (setting.type == SettingType::Boolean)
            defaults.insert(setting.key, setting.defaultState);
        else
            defaults.insert(setting.key, QString(setting.defaultText));
    }
    return defaults;
}

} // namespace brevant
