// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DockTile.h"

#include <QDBusMessage>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevant {

DockTile::DockTile(std::optional<QDBusConnection> bus) : m_bus(std::move(bus)) {}

void DockTile::setBadgeLabel(const QString &label)
{
    m_badgeLabel = label;
    bool isNumber = false;
    const qlonglong count = label.toLongLong(&isNumber);
    // Listeners expect exactly these types: an int64 and a boolean.
    update({{QStringLiteral("count"), QVariant::fromValue<qlonglong>(isNumber ? count : 0)},
            {QStringLiteral("count-visible"), isNumber}});
}

void DockTile::setProgress(std::optional<double> progress)
{
    if (progress && std::isnan(*progress))
        progress.reset();
    m_progress = progress ? std::optional(std::clamp(*progress, 0.0, 1.0)) : std::nullopt;
    update({{QStringLiteral("progress"), m_progress.value_or(0.0)},
            {QStringLiteral("progress-visible"), m_progress.has_value()}});
}

void DockTile::update(const QVariantMap &properties) const
{
    const QDBusConnection bus = m_bus ? *m_bus : QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return;
    QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/brevant/Brevant/LauncherEntry"),
                                                     QStringLiteral("com.canonical.Unity.LauncherEntry"),
                                                     QStringLiteral("Update"));
    signal << QStringLiteral("application://org.brevant.Brevant.desktop") << properties;
    bus.send(signal);
}

} // namespace brevant
