// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/DockTile.h"

#include <QDBusMessage>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace brevant {

void DockTile::setBadgeLabel(const QString &label)
{
    m_badgeLabel = label;
    bool isNumber = false;
    const qlonglong count = label.toLongLong(&isNumber);
    // Listeners expect exactly these types: an int64 and a boolean.
    update(
        {{u"count"_s, QVariant::fromValue<qlonglong>(isNumber ? count : 0)}, {u"count-visible"_s, isNumber}});
}

void DockTile::setProgress(std::optional<double> progress)
{
    if (progress && std::isnan(*progress))
        progress.reset();
    m_progress = progress ? std::optional(std::clamp(*progress, 0.0, 1.0)) : std::nullopt;
    update({{u"progress"_s, m_progress.value_or(0.0)}, {u"progress-visible"_s, m_progress.has_value()}});
}

void DockTile::update(const QVariantMap &properties) const
{
    if (!m_bus.isConnected())
        return;
    QDBusMessage signal = QDBusMessage::createSignal(u"/org/brevant/Brevant/LauncherEntry"_s,
                                                     u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s);
    signal << u"application://org.brevant.Brevant.desktop"_s << properties;
    m_bus.send(signal);
}

} // namespace brevant
