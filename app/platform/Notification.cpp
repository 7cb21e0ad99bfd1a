// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Notification.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QVariantMap>

#include <chrono>
#include <utility>

using namespace Qt::StringLiterals;

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
    if (!m_bus.isConnected())
        return;
    // The signals come for the notifications of all programs; the number identifies ours.
    const auto hear = [this](const QString &signal, const char *slot) {
        m_bus.connect(QString(), servicePath, serviceName, signal, this, slot);
    };
    hear(u"ActionInvoked"_s, SLOT(ActionInvoked(uint, QString)));
    hear(u"ActivationToken"_s, SLOT(ActivationToken(uint, QString)));
    hear(u"NotificationClosed"_s, SLOT(NotificationClosed(uint, uint)));
    await(m_bus.asyncCall(callOf(u"GetCapabilities"_s), static_cast<int>(answerTimeout.count())));
}

void Notification::send()
{
    const QString body = *m_understandsMarkup ? m_wanted->body.toHtmlEscaped() : m_wanted->body;
    const QStringList actions{u"default"_s, tr("Show Brevant")};
    const QVariantMap hints{{u"desktop-entry"_s, u"org.brevant.Brevant"_s}};
    constexpr int asLongAsTheServiceLikes = -1;
    constexpr int untilClosed = 0;
    m_id = m_id.value_or(0);
    QDBusMessage call = callOf(u"Notify"_s);
    call << u"Brevant"_s << *m_id << u"org.brevant.Brevant"_s << m_wanted->summary << body << actions << hints
         << (m_stays ? untilClosed : asLongAsTheServiceLikes);
    await(m_bus.asyncCall(call, static_cast<int>(answerTimeout.count())));
}

void Notification::close()
{
    if (!m_id)
        return;
    QDBusMessage call = callOf(u"CloseNotification"_s);
    call << *std::exchange(m_id, {});
    m_bus.send(call);
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
        m_understandsMarkup = value.toStringList().contains(u"body-markup"_s);
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

} // namespace brevant
