// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/platform/NotificationService.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace brevant::test {

NotificationService::NotificationService(const QDBusConnection &bus) : m_bus(bus)
{
    m_bus.registerObject(u"/org/freedesktop/Notifications"_s, this,
                         QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
    m_bus.registerService(u"org.freedesktop.Notifications"_s);
}

NotificationService::~NotificationService()
{
    m_bus.unregisterService(u"org.freedesktop.Notifications"_s);
}

QStringList NotificationService::GetCapabilities()
{
    asked.append(u"capabilities"_s);
    holdBackIfMute(capabilities);
    return capabilities;
}

uint NotificationService::Notify([[maybe_unused]] const QString &application, uint replaces,
                                 [[maybe_unused]] const QString &icon, const QString &summary,
                                 const QString &body, const QStringList &actions, const QVariantMap &hints,
                                 int timeout)
{
    const uint id = replaces == 0 ? ++m_lastId : replaces;
    asked.append(u"notify %1"_s.arg(id));
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
    asked.append(u"close %1"_s.arg(id));
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
