// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Notification.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <chrono>
#include <utility>

namespace brevant {

namespace {

constexpr QLatin1StringView serviceName("org.freedesktop.Notifications");
constexpr QLatin1StringView servicePath("/org/freedesktop/Notifications");

/// A service may have to be started first.
constexpr std::chrono::milliseconds answerTimeout(5000);

QDBusMessage callOf(const QString &method)
{
    return QDBusMessage::createMethodCall(serviceName, servicePath, serviceName, method);
}

} // namespace

Notification::Notification(std::optional<QDBusConnection> bus, QObject *parent)
    : QObject(parent), m_bus(std::move(bus))
{
}

Notification::~Notification()
{
    while (m_call != nullptr && (m_wanted || m_id)) {
        m_call->disconnect(this);
        m_call->waitForFinished();
        answered();
    }
}

void Notification::show(const QString &summary, const QString &body)
{
    m_wanted = {summary, body};
    m_isTold = false;
    proceed();
}

void Notification::withdraw()
{
    m_wanted.reset();
    m_isTold = false;
    proceed();
}

/// Takes the next step from what the service shows to what is wanted. One call at a time: what is to be
/// replaced or closed has no number before the service has answered.
void Notification::proceed()
{
    if (m_call != nullptr || std::exchange(m_isTold, true))
        return;
    if (!m_wanted)
        close();
    else if (m_understandsMarkup)
        send();
    else
        askForCapabilities();
}

void Notification::askForCapabilities()
{
    if (!bus().isConnected())
        return;
    listen();
    await(
        bus().asyncCall(callOf(QStringLiteral("GetCapabilities")), static_cast<int>(answerTimeout.count())));
}

void Notification::send()
{
    const QString body = *m_understandsMarkup ? m_wanted->body.toHtmlEscaped() : m_wanted->body;
    const QStringList actions{QStringLiteral("default"), tr("Show Brevant")};
    const QVariantMap hints{{QStringLiteral("desktop-entry"), QStringLiteral("org.brevant.Brevant")}};
    constexpr int asLongAsTheServiceLikes = -1;
    constexpr int untilClosed = 0;
    m_id = m_id.value_or(0);
    QDBusMessage call = callOf(QStringLiteral("Notify"));
    call << QStringLiteral("Brevant") << *m_id << QStringLiteral("org.brevant.Brevant") << m_wanted->summary
         << body << actions << hints << (m_stays ? untilClosed : asLongAsTheServiceLikes);
    await(bus().asyncCall(call, static_cast<int>(answerTimeout.count())));
}

void Notification::close()
{
    if (!m_id)
        return;
    QDBusMessage call = callOf(QStringLiteral("CloseNotification"));
    call << *std::exchange(m_id, {});
    bus().send(call);
}

/// The signals come for the notifications of all programs; the number identifies ours.
void Notification::listen()
{
    QDBusConnection connection = bus();
    connection.connect(QString(), servicePath, serviceName, QStringLiteral("ActionInvoked"), this,
                       SLOT(ActionInvoked(uint, QString)));
    connection.connect(QString(), servicePath, serviceName, QStringLiteral("ActivationToken"), this,
                       SLOT(ActivationToken(uint, QString)));
    connection.connect(QString(), servicePath, serviceName, QStringLiteral("NotificationClosed"), this,
                       SLOT(NotificationClosed(uint, uint)));
}

void Notification::await(const QDBusPendingCall &call)
{
    m_call = new QDBusPendingCallWatcher(call, this); // a child of this, which deletes itself
    connect(m_call, &QDBusPendingCallWatcher::finished, this, &Notification::answered);
}

void Notification::answered()
{
    if (m_call == nullptr)
        return;
    QDBusPendingCallWatcher *const call = std::exchange(m_call, nullptr);
    call->disconnect(this);
    call->deleteLater();
    const QDBusMessage answer = call->reply();
    const bool isAnswer = answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty();
    const QVariant value = isAnswer ? answer.arguments().constFirst() : QVariant();
    if (m_id) {
        m_id = isAnswer ? std::optional(value.toUInt()) : std::nullopt;
    } else if (isAnswer) {
        m_understandsMarkup = value.toStringList().contains(QStringLiteral("body-markup"));
        m_isTold = false;
    } else {
        m_wanted.reset();
    }
    proceed();
}

void Notification::ActionInvoked(uint id, const QString &action)
{
    if (id != 0 && m_id == id && action == QLatin1StringView("default"))
        Q_EMIT clicked(std::exchange(m_token, {}));
}

void Notification::ActivationToken(uint id, const QString &token)
{
    if (id != 0 && m_id == id)
        m_token = token;
}

void Notification::NotificationClosed(uint id, uint reason)
{
    constexpr uint byTheUser = 2;
    if (id == 0 || m_id != id || m_call != nullptr)
        return;
    m_id.reset();
    if (reason == byTheUser)
        Q_EMIT dismissed();
}

QDBusConnection Notification::bus() const
{
    return m_bus ? *m_bus : QDBusConnection::sessionBus();
}

} // namespace brevant
