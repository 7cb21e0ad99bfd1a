// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/Instance.h"

#include "app/Launch.h"
#include "app/platform/Workspace.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace brevant {

namespace {

using Claim = ApplicationService::Claim;

// Each attempt but the last means that an instance ended just then.
constexpr int attempts = 20;

QString connectionName()
{
    return QStringLiteral("brevant instance");
}

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
        return QDBusMessage::createMethodCall(owner, QString::fromLatin1(servicePath),
                                              QString::fromLatin1(serviceInterface),
                                              QString::fromLatin1(method));
    };
    if (launch.minify)
        return call("ActivateAction")
               << QStringLiteral("minify") << QVariantList{uris(launch.paths)} << platformData;
    if (launch.paths.isEmpty())
        return call("Activate") << platformData;
    return call("Open") << uris(launch.paths) << platformData;
}

} // namespace

Instance::Instance(ApplicationService &service, const QString &busAddress)
    : m_service(service), m_bus(QString())
{
    if (busAddress.isEmpty())
        return;
    m_claiming = std::thread([this, busAddress] {
        // One connection for all that the program does on the session bus, Qt's menu bar included.
        m_bus = busAddress == sessionBusAddress()
                    ? QDBusConnection::sessionBus()
                    : QDBusConnection::connectToBus(busAddress, connectionName());
        m_claim = m_service.claim(m_bus);
    });
}

Instance::~Instance()
{
    finishClaim();
    if (m_bus.isConnected())
        QDBusConnection::disconnectFromBus(m_bus.name());
}

void Instance::finishClaim()
{
    if (m_claiming.joinable())
        m_claiming.join();
}

std::optional<int> Instance::handOver(const Launch &launch, const QVariantMap &platformData)
{
    finishClaim();
    for (int i = 0; m_claim == Claim::Taken && i < attempts; ++i) {
        if (launch.asService)
            return EXIT_SUCCESS; // the bus has somebody else to ask
        if (const QString owner = serviceOwner(m_bus); !owner.isEmpty()) {
            const QDBusMessage answer = m_bus.call(request(owner, launch, platformData), QDBus::Block,
                                                   static_cast<int>(m_answerTimeout.count()));
            if (answer.type() == QDBusMessage::ReplyMessage)
                return EXIT_SUCCESS;
            if (serviceOwner(m_bus) == owner) {
                if (QDBusError(answer).type() != QDBusError::NoReply)
                    return std::nullopt; // it does not understand
                std::fputs("brevant: the Brevant that is running does not answer\n", stderr);
                return EXIT_FAILURE;
            }
        }
        m_claim = m_service.claim(m_bus);
    }
    return std::nullopt;
}

QString sessionBusAddress()
{
    if (const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS"); !address.isEmpty())
        return QString::fromLocal8Bit(address);
    const QByteArray folder = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray socket = folder + "/bus";
    if (folder.isEmpty() || !QFile::exists(QFile::decodeName(socket)))
        return {};
    return QStringLiteral("unix:path=") + QString::fromLatin1(socket.toPercentEncoding("/"));
}

} // namespace brevant
