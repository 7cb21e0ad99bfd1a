// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonValue>
#include <QString>

#include <optional>

namespace brevant {

class SettingsStore;

/// Where the minified text of each entry of one run goes. Asked once for every entry, in the queue's order:
/// an undecided setting, or an entry of no kind, falls back on what the entry before it got.
class OutputPath final {
public:
    /// Whether the settings are read anew for each entry, or hold as they are now.
    enum class Reading { Anew, Once };

    explicit OutputPath(const SettingsStore &settings, Reading reading = Reading::Anew);

    /// The output path of `entry` by the settings as they stand now; nothing if none can be formed, which
    /// only happens at the beginning of a run.
    [[nodiscard]] std::optional<QString> next(const QString &entry);

    /// The output path of the entry asked for last, by the settings as they were when this was made.
    [[nodiscard]] const std::optional<QString> &atStart() const
    {
        return m_reading == Reading::Anew ? m_atStart.path : m_now.path;
    }

private:
    struct Naming {
        bool isModern = false;
        QJsonValue suffixSwitch;
        bool sameFolder = true;
        QString suffix;
        QString folder;
        std::optional<QString> path; ///< of the entry before

        void read(const SettingsStore &settings);
        void next(const QString &entry, std::optional<QStringView> extension);
    };

    const SettingsStore &m_settings;
    const Reading m_reading;
    std::optional<QStringView> m_extension; ///< of the entry before
    Naming m_now;
    Naming m_atStart;
};

} // namespace brevant
