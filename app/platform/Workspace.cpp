// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Workspace.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSysInfo>

#include <utility>

using namespace Qt::StringLiterals;

namespace brevant {

namespace {

constexpr int portalTimeout = 100; // milliseconds; a window waits for the answer

/// One setting of the desktop, as org.freedesktop.portal.Settings tells it; invalid if it does not.
QVariant desktopSetting(const QDBusConnection &bus, const QString &group, const QString &key)
{
    QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.portal.Desktop"_s,
                                                           u"/org/freedesktop/portal/desktop"_s,
                                                           u"org.freedesktop.portal.Settings"_s, u"Read"_s);
    question.setAutoStartService(false);
    question << group << key;
    const QDBusMessage answer = bus.call(question, QDBus::Block, portalTimeout);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return {};
    // The value comes in a variant within a variant.
    QVariant value = answer.arguments().constFirst();
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

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

QStringList localPaths(const QList<QUrl> &urls)
{
    QStringList paths;
    for (const QUrl &url : urls) {
        if (const std::optional<QString> path = localPath(url))
            paths.append(*path);
    }
    return paths;
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

Workspace::Workspace(const QDBusConnection &bus, UrlOpener opener)
    : m_bus(bus), m_opener(opener ? std::move(opener) : &QDesktopServices::openUrl)
{
}

bool Workspace::openUrl(const QUrl &url) const
{
    return m_opener(url);
}

void Workspace::selectFile(const QString &path)
{
    if (!m_bus.isConnected()) {
        openFolderOf(path);
        return;
    }
    const QString name = u"org.freedesktop.FileManager1"_s;
    QDBusMessage question =
        QDBusMessage::createMethodCall(name, u"/org/freedesktop/FileManager1"_s, name, u"ShowItems"_s);
    const QString startupId;
    question << QStringList{fileUrl(path).toString(QUrl::FullyEncoded)} << startupId;

    auto *watcher = new QDBusPendingCallWatcher(
        m_bus.asyncCall(question, static_cast<int>(m_answerTimeout.count())), &m_questions);
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

bool isMotionReduced(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return false;
    const QVariant animations = desktopSetting(bus, u"org.gnome.desktop.interface"_s, u"enable-animations"_s);
    if (animations.isValid() && !animations.toBool())
        return true;
    bool isNumber = false;
    const double factor =
        desktopSetting(bus, u"org.kde.kdeglobals.KDE"_s, u"AnimationDurationFactor"_s).toDouble(&isNumber);
    return isNumber && factor == 0;
}

} // namespace brevant
