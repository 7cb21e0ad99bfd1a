// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDBusConnection>
#include <QString>
#include <QVariantMap>

#include <optional>

namespace brevant {

/// The application's icon in the dock or task bar: the number on it and the progress under it.
///
/// Both are broadcast on the bus. Listeners forget them when this program leaves the bus. Without a
/// bus nothing happens.
class DockTile final {
public:
    explicit DockTile(const QDBusConnection &bus) : m_bus(bus) {}

    /// Shows a number, written in decimal digits. "" removes it, as does any other text: a dock shows numbers
    /// only.
    void setBadgeLabel(const QString &label);

    /// The last label that was set.
    [[nodiscard]] const QString &badgeLabel() const { return m_badgeLabel; }

    /// Shows how much is done, from 0 to 1; other values are clamped. No value removes the progress.
    void setProgress(std::optional<double> progress);

    [[nodiscard]] std::optional<double> progress() const { return m_progress; }

private:
    void update(const QVariantMap &properties) const;

    QDBusConnection m_bus;
    QString m_badgeLabel;
    std::optional<double> m_progress;
};

} // namespace brevant
