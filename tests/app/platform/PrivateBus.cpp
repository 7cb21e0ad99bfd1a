// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/platform/PrivateBus.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace brevant::test {

PrivateBus::PrivateBus()
{
    const QString configuration = m_folder.filePath(u"bus.conf"_s);
    QFile file(configuration);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write("<busconfig><type>session</type><listen>unix:path=" + m_folder.filePath(u"bus"_s).toUtf8() +
               "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
               "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
    file.close();
    m_daemon.start(u"dbus-daemon"_s,
                   {u"--config-file="_s + configuration, u"--nofork"_s, u"--print-address"_s});
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
