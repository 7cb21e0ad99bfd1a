// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ApplicationService.h"

#include "app/platform/Workspace.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QFile>
#include <QUrl>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

// Each further attempt means that another instance has just ended.
constexpr int attempts = 20;

QStringList uris(const QStringList &paths)
{
    QStringList uris;
    for (const QString &path : paths)
        uris.append(fileUrl(path).toString(QUrl::FullyEncoded));
    return uris;
}

QDBusMessage request(const QString &owner, const Launch &launch, const QVariantMap &platformData)
{
    const auto call = [&owner](const char *method) {
        return QDBusMessage::createMethodCall(owner, servicePath, serviceInterface,
                                              QString::fromLatin1(method));
    };
    if (launch.minify)
        return call("ActivateAction") << u"minify"_s << QVariantList{uris(launch.paths)} << platformData;
    if (launch.paths.isEmpty())
        return call("Activate") << platformData;
    return call("Open") << uris(launch.paths) << platformData;
}

} // namespace

ApplicationService::~ApplicationService()
{
    if (m_bus)
        m_bus->unregisterObject(servicePath);
}

ApplicationService::Claim ApplicationService::claim(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return Claim::Alone;
    // The object comes before the name, so that whoever finds the name gets an answer.
    if (!m_bus) {
        m_bus = bus;
        m_bus->registerObject(servicePath, this, QDBusConnection::ExportScriptableInvokables);
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        m_bus->interface()->registerService(serviceName);
    if (!reply.isValid())
        return Claim::Alone;
    return reply.value() == QDBusConnectionInterface::ServiceRegistered ? Claim::First : Claim::Taken;
}

std::optional<int> ApplicationService::claimOrHandOver(const QDBusConnection &bus, const Launch &launch,
                                                       const QVariantMap &platformData,
                                                       std::chrono::milliseconds answerTimeout)
{
    for (int i = 0; i < attempts && claim(bus) == Claim::Taken; ++i) {
        if (launch.asService)
            return EXIT_SUCCESS; // the bus will call the other process
        const QString owner = serviceOwner(bus);
        if (owner.isEmpty())
            continue;
        const QDBusMessage answer = bus.call(request(owner, launch, platformData), QDBus::Block,
                                             static_cast<int>(answerTimeout.count()));
        if (answer.type() == QDBusMessage::ReplyMessage)
            return EXIT_SUCCESS;
        if (serviceOwner(bus) != owner)
            continue;
        if (QDBusError(answer).type() != QDBusError::NoReply)
            return std::nullopt; // it is not Brevant, or refuses
        std::fputs("brevant: the Brevant that is running does not answer\n", stderr);
        return EXIT_FAILURE;
    }
    return std::nullopt;
}

void ApplicationService::release()
{
    m_released = true;
    if (m_bus) // sent before any refusal
        m_bus->interface()->asyncCall(u"ReleaseName"_s, serviceName);
}

bool ApplicationService::accept(const QDBusMessage &call)
{
    // Answered first: carrying it out may take as long as a panel is open.
    call.setDelayedReply(true);
    if (m_released)
        m_bus->send(call.createErrorReply(QDBusError::UnknownObject, u"Brevant is ending"_s));
    else if (call.isReplyRequired())
        m_bus->send(call.createReply());
    return !m_released;
}

void ApplicationService::Activate(const QVariantMap &platform_data, const QDBusMessage &call)
{
    if (accept(call))
        Q_EMIT activateRequested(platform_data);
}

void ApplicationService::Open(const QStringList &uris, const QVariantMap &platform_data,
                              const QDBusMessage &call)
{
    if (accept(call))
        Q_EMIT openRequested(localPaths(QUrl::fromStringList(uris)), platform_data);
}

void ApplicationService::ActivateAction(const QString &action_name, const QVariantList &parameter,
                                        const QVariantMap &platform_data, const QDBusMessage &call)
{
    // At most one parameter, whose type depends on the action.
    const QVariant uris = parameter.value(0);
    const bool areUris = uris.typeId() == QMetaType::QStringList;
    if (accept(call))
        Q_EMIT actionRequested(
            action_name, areUris ? localPaths(QUrl::fromStringList(uris.toStringList())) : QStringList(),
            platform_data);
}

QString serviceOwner(const QDBusConnection &bus)
{
    return bus.interface()->serviceOwner(serviceName).value();
}

QString sessionBusAddress()
{
    if (const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS"); !address.isEmpty())
        return QString::fromLocal8Bit(address);
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray socket = folder + "/bus";
    if (folder.isEmpty() || !QFile::exists(QFile::decodeName(socket)))
        return {};
    return u"unix:path="_s + QString::fromLatin1(socket.toPercentEncoding("/"));
}

QDBusConnection sessionBus()
{
    return sessionBusAddress().isEmpty() ? QDBusConnection(QString()) : QDBusConnection::sessionBus();
}

} // namespace brevant
