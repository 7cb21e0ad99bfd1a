// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

QUrl fileUrl(const QString &path)
{
    // Not QUrl::fromLocalFile, which takes the first folder of a path that begins with "//" for a host, nor
    // QFileInfo::absoluteFilePath, which leaves out "..", though a symbolic link may stand before it.
    const QString absolute = path.startsWith(u'/') ? path : QDir::current().filePath(path);
    const QByteArray name = QFile::encodeName(absolute);
    return QUrl::fromEncoded("file://" + name.toPercentEncoding("/"), QUrl::StrictMode);
}

std::optional<QString> localPath(const QUrl &url)
{
    const QString host = url.host();
    const bool isHere = host.isEmpty() || host == u"localhost" ||
                        host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
    if (!isHere || url.scheme() != u"file" || url.path().isEmpty())
        return std::nullopt;
    return url.path(QUrl::FullyDecoded);
}

QByteArray percentEscaped(const QString &text)
{
    return text.toUtf8().toPercentEncoding("!*'();/?:@&=+$,");
}

QUrl feedbackMailUrl(const QString &address, const QString &version, const QString &systemVersion)
{
    const QString subject = u"Brevant %1 feedback, OS X %2"_s.arg(version, systemVersion);
    const QByteArray query = "SUBJECT=" + percentEscaped(subject);
    // Strict, so that Qt leaves the escapes as they are.
    return QUrl::fromEncoded("mailto:" + percentEscaped(address) + '?' + query + '&', QUrl::StrictMode);
}

QString operatingSystemVersionString()
{
    return u"%1, %2 %3"_s.arg(QSysInfo::prettyProductName(), QSysInfo::kernelType(),
                              QSysInfo::kernelVersion());
}

Workspace::Workspace(std::optional<QDBusConnection> bus, UrlOpener opener)
    : m_bus(std::move(bus)), m_opener(opener ? std::move(opener) : &QDesktopServices::openUrl)
{
}

bool Workspace::openUrl(const QUrl &url) const
{
    return m_opener(url);
}

void Workspace::selectFile(const QString &path)
{
    const QDBusConnection bus = m_bus ? *m_bus : QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolderOf(path);
        return;
    }
    const QString name = u"org.freedesktop.FileManager1"_s;
    QDBusMessage question =
        QDBusMessage::createMethodCall(name, u"/org/freedesktop/FileManager1"_s, name, u"ShowItems"_s);
    const QString startupId;
    question << QStringList{fileUrl(path).toString(QUrl::FullyEncoded)} << startupId;

    auto *watcher = new QDBusPendingCallWatcher(
        bus.asyncCall(question, static_cast<int>(m_answerTimeout.count())), &m_questions);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_questions, [this, watcher, path] {
        if (QDBusPendingReply<>(*watcher).isError())
            openFolderOf(path);
        watcher->deleteLater();
    });
}

void Workspace::openFolderOf(const QString &path) const
{
    static_cast<void>(openUrl(fileUrl(QFileInfo(path).path())));
}

} // namespace brevant
