// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/platform/PrivateBus.h"

#include <QFile>

namespace brevant::test {

PrivateBus::PrivateBus()
{
    const QString configuration = m_folder.filePath(QStringLiteral("bus.conf"));
    QFile file(configuration);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write("<busconfig><type>session</type><listen>unix:path=" +
               m_folder.filePath(QStringLiteral("bus")).toUtf8() +
               "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
               "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    file.close();
    m_daemon.start(QStringLiteral("dbus-daemon"),
                   {QStringLiteral("--config-file=") + configuration, QStringLiteral("--nofork"),
                    QStringLiteral("--print-address")});
    if (m_daemon.waitForReadyRead(10'000))
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    end();
}

void PrivateBus::end()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}

} // namespace brevant::test
