// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <array>

namespace brevant {

// The text of each constant is the key as it is stored. Nothing spells a key anew.
inline constexpr QLatin1StringView suffixKeyString{"suffixKeyString"};
inline constexpr QLatin1StringView suffixSwitcherKeyString{"suffixSwitcherKeyString"};
inline constexpr QLatin1StringView lineBreakKeyString{"lineBreakKeyString"};
inline constexpr QLatin1StringView lineBreakSwitcherKeyString{"lineBreakSwitcherKeyString"};
inline constexpr QLatin1StringView nomungeSwitcherKeyString{"nomungeSwitcherKeyString"};
inline constexpr QLatin1StringView preserveSemiSwitcherKeyString{"preserveSemiSwitcherKeyString"};
inline constexpr QLatin1StringView disableOptimizationsSwitcherKeyString{
    "disableOptimizationsSwitcherKeyString"};
inline constexpr QLatin1StringView sameFolderKeyString{"sameFolderKeyString"};
inline constexpr QLatin1StringView selectedFolderKeyString{"selectedFolderKeyString"};
inline constexpr QLatin1StringView soundCheckerKeyString{"soundCheckerKeyString"};
inline constexpr QLatin1StringView filterCheckerKeyString{"filterCheckerKeyString"};
inline constexpr QLatin1StringView autoMinifyCheckerKeyString{"autoMinifyCheckerKeyString"};
inline constexpr QLatin1StringView selectedEncodingKeyString{"selectedEncodingKeyString"};
inline constexpr QLatin1StringView enableHTMLCheckerKeyString{"enableHTMLCheckerKeyString"};
inline constexpr QLatin1StringView enablePHPCheckerKeyString{"enablePHPCheckerKeyString"};
inline constexpr QLatin1StringView badgeCheckerKeyString{"badgeCheckerKeyString"};
inline constexpr QLatin1StringView gzipCheckerKeyString{"gzipCheckerKeyString"};
inline constexpr QLatin1StringView keepXMLSpaceCheckerKeyString{"keepXMLSpaceCheckerKeyString"};

inline constexpr QLatin1StringView compressorsKeyString{"compressorsKeyString"};
inline constexpr QLatin1StringView keepCommentsCheckerKeyString{"keepCommentsCheckerKeyString"};
inline constexpr QLatin1StringView sourceMapCheckerKeyString{"sourceMapCheckerKeyString"};
inline constexpr QLatin1StringView brotliCheckerKeyString{"brotliCheckerKeyString"};
inline constexpr QLatin1StringView esbuildPathKeyString{"esbuildPathKeyString"};
inline constexpr QLatin1StringView keepOriginalsCheckerKeyString{"keepOriginalsCheckerKeyString"};

/// What a setting holds when the application wrote it.
enum class SettingType { Boolean, Text };

/// One setting: its key, its type and the value that answers while the user has set none.
struct SettingKey {
    QLatin1StringView key;
    SettingType type;
    QLatin1StringView defaultText; ///< of a text; null for one that has none
    bool defaultState;             ///< of a boolean

    static constexpr SettingKey text(QLatin1StringView key, const char *byDefault)
    {
        return {key, SettingType::Text, QLatin1StringView(byDefault), false};
    }
    static constexpr SettingKey textWithoutDefault(QLatin1StringView key)
    {
        return {key, SettingType::Text, {}, false};
    }
    static constexpr SettingKey boolean(QLatin1StringView key, bool byDefault)
    {
        return {key, SettingType::Boolean, {}, byDefault};
    }
};

/// All settings, in the order in which their defaults are registered.
inline constexpr std::array allSettingKeys{
    // The first eighteen and their order are fixed.
    SettingKey::text(suffixKeyString, ".min"),
    SettingKey::boolean(suffixSwitcherKeyString, true),
    SettingKey::text(lineBreakKeyString, "500"),
    SettingKey::boolean(lineBreakSwitcherKeyString, false),
    SettingKey::boolean(nomungeSwitcherKeyString, false),
    SettingKey::boolean(preserveSemiSwitcherKeyString, false),
    SettingKey::boolean(disableOptimizationsSwitcherKeyString, false),
    SettingKey::boolean(sameFolderKeyString, true),
    SettingKey::text(selectedFolderKeyString, ""),
    SettingKey::boolean(soundCheckerKeyString, true),
    SettingKey::boolean(filterCheckerKeyString, false),
    SettingKey::boolean(autoMinifyCheckerKeyString, false),
    SettingKey::text(selectedEncodingKeyString, "utf-8"),
    SettingKey::boolean(enableHTMLCheckerKeyString, true),
    SettingKey::boolean(enablePHPCheckerKeyString, false),
    SettingKey::boolean(badgeCheckerKeyString, true),
    SettingKey::boolean(gzipCheckerKeyString, false),
    SettingKey::boolean(keepXMLSpaceCheckerKeyString, false),
    // Newer settings follow here.
    SettingKey::text(compressorsKeyString, "classic"),
    SettingKey::boolean(keepCommentsCheckerKeyString, false),
    SettingKey::boolean(sourceMapCheckerKeyString, false),
    SettingKey::boolean(brotliCheckerKeyString, false),
    SettingKey::textWithoutDefault(esbuildPathKeyString),
    SettingKey::boolean(keepOriginalsCheckerKeyString, false),
};

/// The setting of that name, or null if there is none.
[[nodiscard]] inline const SettingKey *findSettingKey(QStringView key)
{
    const auto found =
        std::ranges::find_if(allSettingKeys, [key](const SettingKey &setting) { return key == setting.key; });
    return found == allSettingKeys.end() ? nullptr : &*found;
}

/// The table of defaults, as SettingsStore::registerDefaults takes it.
[[nodiscard]] inline QJsonObject registeredDefaults()
{
    QJsonObject defaults;
    for (const SettingKey &setting : allSettingKeys) {
        if (setting.type == SettingType::Boolean)
            defaults.insert(setting.key, setting.defaultState);
        else if (!setting.defaultText.isNull())
            defaults.insert(setting.key, setting.defaultText);
    }
    return defaults;
}

} // namespace brevant
