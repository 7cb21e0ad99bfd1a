// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/platform/NotificationService.h"

#include <utility>

namespace brevant::test {

NotificationService::NotificationService(const QDBusConnection &bus) : m_bus(bus)
{
    m_bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), this,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    m_bus.registerService(QStringLiteral("org.freedesktop.Notifications"));
}

NotificationService::~NotificationService()
{
    m_bus.unregisterService(QStringLiteral("org.freedesktop.Notifications"));
}

QStringList NotificationService::GetCapabilities()
{
    asked.append(QStringLiteral("capabilities"));
    holdBackIfMute(capabilities);
    return capabilities;
}

uint NotificationService::Notify([[maybe_unused]] const QString &application, uint replaces,
                                 [[maybe_unused]] const QString &icon, const QString &summary,
                                 const QString &body, const QStringList &actions, const QVariantMap &hints,
                                 int timeout)
{
    const uint id = replaces == 0 ? ++m_lastId : replaces;
    asked.append(QStringLiteral("notify %1").arg(id));
    shown.append({.id = id,
                  .replaces = replaces,
                  .summary = summary,
                  .body = body,
                  .actions = actions,
                  .hints = hints,
                  .timeout = timeout,
                  .message = message()});
    holdBackIfMute(id);
    return id;
}

void NotificationService::CloseNotification(uint id)
{
    asked.append(QStringLiteral("close %1").arg(id));
    Q_EMIT NotificationClosed(id, 3);
}

void NotificationService::holdBackIfMute(const QVariant &answer)
{
    if (!isMute)
        return;
    setDelayedReply(true);
    m_heldBack.append(message().createReply(answer));
}

void NotificationService::answerAll()
{
    isMute = false;
    for (const QDBusMessage &answer : std::exchange(m_heldBack, {}))
        m_bus.send(answer);
}

void NotificationService::click(uint id, const QString &token, const QString &action)
{
    if (!token.isEmpty())
        Q_EMIT ActivationToken(id, token);
    Q_EMIT ActionInvoked(id, action);
}

void NotificationService::closedByUser(uint id)
{
    Q_EMIT NotificationClosed(id, 2);
}

} // namespace brevant::test
