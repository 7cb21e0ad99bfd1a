# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later

# The switches and the texts among the settings, as the table of settings/SettingsKeys has them, for the completions.
set(settings_table "${CMAKE_SOURCE_DIR}/settings/SettingsKeys.h")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${settings_table}")
foreach(type IN ITEMS boolean text)
    file(STRINGS "${settings_table}" keys REGEX "^ +SettingKey::${type}(WithoutDefault)?\\([A-Za-z]+[,)]")
    list(TRANSFORM keys REPLACE "^ +SettingKey::[A-Za-z]+\\(([A-Za-z]+)[,)].*" "\\1")
    if(NOT keys)
        message(FATAL_ERROR "${settings_table} names no setting of the type ${type}.")
    endif()
    string(TOUPPER "BREVANT_${type}_SETTINGS" list)
    list(JOIN keys " " ${list})
endforeach()
