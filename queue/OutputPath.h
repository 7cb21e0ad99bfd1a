// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/EntrySettings.h"

#include <QJsonValue>
#include <QString>

#include <optional>

namespace brevant {

/// Where the minified text of each entry of one run goes. Asked once for every entry, in the queue's order:
/// an undecided setting, or an entry of no kind, falls back on what the entry before it got.
class OutputPath final {
public:
    /// Whether the settings are read anew for each entry, or hold as they are now.
    enum class Reading { Anew, Once };

    explicit OutputPath(const EntrySettings &settings, Reading reading = Reading::Anew);

    /// The output path of `entry` by the settings as they stand now; nothing if none can be formed, which
    /// only happens at the beginning of a run.
    [[nodiscard]] std::optional<QString> next(const QString &entry);

    /// The output path of the entry asked for last, by the settings as they were when this was made.
    [[nodiscard]] const std::optional<QString> &atStart() const
    {
        return m_reading == Reading::Anew ? m_pathAtStart : m_path;
    }

private:
    /// What the settings say of outputs.
    struct Naming {
        explicit Naming(const SettingsStore &settings);
        void next(const QString &entry, std::optional<QStringView> extension, const QString &ownFolder,
                  std::optional<QString> &path) const;

        bool isModern;
        QJsonValue suffixSwitch;
        bool sameFolder;
        QString suffix;
        QString folder;
    };

    const EntrySettings m_settings;
    const Reading m_reading;
    BySettings<Naming> m_atStart;
    std::optional<QStringView> m_extension; ///< of the entry before, as are both paths
    std::optional<QString> m_path;
    std::optional<QString> m_pathAtStart;
};

} // namespace brevant
