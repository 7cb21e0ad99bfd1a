// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Motion.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariant>

namespace brevant {

namespace {

constexpr int portalTimeout = 100; // milliseconds; a window waits for the answer

/// One setting of the desktop, as org.freedesktop.portal.Settings tells it; invalid if it does not.
QVariant desktopSetting(const QDBusConnection &bus, const QString &group, const QString &key)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    question.setAutoStartService(false);
    question << group << key;
    const QDBusMessage answer = bus.call(question, QDBus::Block, portalTimeout);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return {};
    // The value comes in a variant within a variant.
    QVariant value = answer.arguments().constFirst();
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

bool isMotionReduced(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return false;
    const QVariant animations = desktopSetting(bus, QStringLiteral("org.gnome.desktop.interface"),
                                               QStringLiteral("enable-animations"));
    if (animations.isValid() && !animations.toBool())
        return true;
    bool isNumber = false;
    const double factor = desktopSetting(bus, QStringLiteral("org.kde.kdeglobals.KDE"),
                                         QStringLiteral("AnimationDurationFactor"))
                              .toDouble(&isNumber);
    return isNumber && factor == 0;
}

} // namespace brevant
