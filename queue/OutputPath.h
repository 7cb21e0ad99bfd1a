// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace brevant {

class SettingsStore;

/// Where the minified text of each entry of one run goes. Asked once for every entry, in the queue's order:
/// an undecided setting, or an entry of no kind, falls back on what the entry before it got.
class OutputPath final {
public:
    explicit OutputPath(const SettingsStore &settings) : m_settings(settings) {}

    /// The output path of `entry` by the settings as they stand now; nothing if none can be formed, which can
    /// be at the beginning of a run only.
    [[nodiscard]] std::optional<QString> next(const QString &entry);

private:
    const SettingsStore &m_settings;
    std::optional<QString> m_extension; ///< of the entry before
    std::optional<QString> m_path;      ///< of the entry before
};

} // namespace brevant
