// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/SettingsKeys.h"

#include <algorithm>

namespace brevant {

namespace {

constexpr SettingKey text(QLatin1StringView key, const char *defaultText)
{
    return {key, SettingType::Text, QLatin1StringView(defaultText), false};
}

constexpr SettingKey boolean(QLatin1StringView key, bool defaultState)
{
    return {key, SettingType::Boolean, QLatin1StringView(), defaultState};
}

constexpr std::array<SettingKey, 18> keys{
    text(suffixKeyString, ".min"),
    boolean(suffixSwitcherKeyString, true),
    text(lineBreakKeyString, "500"),
    boolean(lineBreakSwitcherKeyString, false),
    boolean(nomungeSwitcherKeyString, false),
    boolean(preserveSemiSwitcherKeyString, false),
    boolean(disableOptimizationsSwitcherKeyString, false),
    boolean(sameFolderKeyString, true),
    text(selectedFolderKeyString, ""),
    boolean(soundCheckerKeyString, true),
    boolean(filterCheckerKeyString, false),
    boolean(autoMinifyCheckerKeyString, false),
    text(selectedEncodingKeyString, "utf-8"),
    boolean(enableHTMLCheckerKeyString, true),
    boolean(enablePHPCheckerKeyString, false),
    boolean(badgeCheckerKeyString, true),
    boolean(gzipCheckerKeyString, false),
    boolean(keepXMLSpaceCheckerKeyString, false),
};

} // namespace

const std::array<SettingKey, 18> &allSettingKeys()
{
    return keys;
}

const SettingKey *findSettingKey(QStringView key)
{
    const auto found =
        std::ranges::find_if(keys, [key](const SettingKey &setting) { return key == setting.key; });
    return found == keys.end() ? nullptr : &*found;
}

QJsonObject registeredDefaults()
{
    QJsonObject defaults;
    for (const SettingKey &setting : keys) {
        if (setting.type == SettingType::Boolean)
            defaults.insert(setting.key, setting.defaultState);
        else
            defaults.insert(setting.key, QString(setting.defaultText));
    }
    return defaults;
}

} // namespace brevant
