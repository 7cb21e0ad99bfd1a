// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationService.h"

#include "app/platform/Workspace.h"

#include <QDBusAbstractAdaptor>
#include <QDBusError>
#include <QDBusMessage>
#include <QUrl>
#include <QVariantList>

namespace brevant {

namespace {

// https://dbus.freedesktop.org/doc/dbus-specification.html#bus-messages-request-name
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint nameExists = 3;
constexpr uint alreadyOwner = 4;

QDBusMessage busCall(const char *method)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QString::fromLatin1(method));
    call << QString::fromLatin1(serviceName);
    return call;
}

QStringList localPaths(const QStringList &uris)
{
    QStringList paths;
    for (const QString &uri : uris) {
        if (const std::optional<QString> path = localPath(QUrl(uri)))
            paths.append(*path);
    }
    return paths;
}

} // namespace

/// The methods, by the names and types that the interface has.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationAdaptor(ApplicationService *service)
        : QDBusAbstractAdaptor(service), m_service(*service)
    {
    }

public Q_SLOTS:
    void Activate(const QVariantMap &platform_data, const QDBusMessage &call)
    {
        if (m_service.accept(call))
            Q_EMIT m_service.activateRequested(platform_data);
    }

    void Open(const QStringList &uris, const QVariantMap &platform_data, const QDBusMessage &call)
    {
        if (m_service.accept(call))
            Q_EMIT m_service.openRequested(localPaths(uris), platform_data);
    }

    void ActivateAction(const QString &action_name, const QVariantList &parameter,
                        const QVariantMap &platform_data, const QDBusMessage &call)
    {
        // None, or one; of a type that is the action's own.
        const QVariant uris = parameter.value(0);
        const bool areUris = uris.typeId() == QMetaType::QStringList;
        if (m_service.accept(call))
            Q_EMIT m_service.actionRequested(
                action_name, areUris ? localPaths(uris.toStringList()) : QStringList(), platform_data);
    }

private:
    ApplicationService &m_service;
};

ApplicationService::ApplicationService(QObject *parent) : QObject(parent)
{
    new ApplicationAdaptor(this); // a child of this
}

ApplicationService::~ApplicationService()
{
    if (m_bus)
        m_bus->unregisterObject(QString::fromLatin1(servicePath));
}

ApplicationService::Claim ApplicationService::claim(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return Claim::Alone;
    // The object first: who finds the name finds somebody who answers.
    if (!m_bus) {
        m_bus = bus;
        m_bus->registerObject(QString::fromLatin1(servicePath), this);
    }
    QDBusMessage question = busCall("RequestName");
    question << doNotQueue;
    const QDBusMessage answer = m_bus->call(question);
    switch (answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toUInt() : 0) {
    case primaryOwner:
    case alreadyOwner:
        return Claim::First;
    case nameExists:
        return Claim::Taken;
    default:
        return Claim::Alone;
    }
}

void ApplicationService::release()
{
    m_released = true;
    if (!m_bus)
        return;
    m_bus->send(busCall("ReleaseName")); // it goes out before any refusal does
}

bool ApplicationService::accept(const QDBusMessage &call)
{
    // Answered before it is carried out, which may take as long as a panel is open.
    call.setDelayedReply(true);
    if (m_released)
        m_bus->send(call.createErrorReply(QDBusError::UnknownObject, QStringLiteral("Brevant is ending")));
    else if (call.isReplyRequired())
        m_bus->send(call.createReply());
    return !m_released;
}

QString serviceOwner(const QDBusConnection &bus)
{
    const QDBusMessage answer = bus.call(busCall("GetNameOwner"));
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toString() : QString();
}

} // namespace brevant

#include "ApplicationService.moc"
