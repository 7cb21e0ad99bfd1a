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
#include <QGuiApplication>
#include <QSysInfo>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

#include <xcb/xcb.h>

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

constexpr QLatin1StringView tokenKey("activation-token");
constexpr QLatin1StringView startupIdKey("desktop-startup-id");

/// What the X server answers, freed as xcb wants it.
template <typename Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

xcb_atom_t atom(xcb_connection_t *display, const char *name)
{
    const auto cookie = xcb_intern_atom(display, 0, static_cast<uint16_t>(std::strlen(name)), name);
    const Answer<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(display, cookie, nullptr), &std::free);
    return answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

xcb_window_t rootOf(xcb_connection_t *display, xcb_window_t window)
{
    const auto cookie = xcb_query_tree(display, window);
    const Answer<xcb_query_tree_reply_t> answer(xcb_query_tree_reply(display, cookie, nullptr), &std::free);
    return answer ? answer->root : xcb_window_t(XCB_WINDOW_NONE);
}

void send(xcb_connection_t *display, xcb_window_t root, uint32_t mask,
          const xcb_client_message_event_t &event)
{
    xcb_send_event(display, 0, root, mask, reinterpret_cast<const char *>(&event));
}

// The time of the click or key that the startup id was made for: its last part is "_TIME" and a number.
// https://specifications.freedesktop.org/startup-notification-spec/
std::optional<xcb_timestamp_t> timeOf(const QByteArray &startupId)
{
    // Qt 6.4 reads past the end of a text that is shorter than what it looks for.
    const auto mark = startupId.size() < 5 ? -1 : startupId.lastIndexOf("_TIME");
    bool isNumber = false;
    const uint time = mark < 0 ? 0 : startupId.mid(mark + 5).toUInt(&isNumber);
    return isNumber ? std::optional<xcb_timestamp_t>(time) : std::nullopt;
}

// Ends the launcher's feedback that a program is starting.
void endStartupNotice(xcb_connection_t *display, xcb_window_t root, xcb_window_t window,
                      const QByteArray &startupId)
{
    QByteArray quoted = startupId;
    quoted.replace('\\', "\\\\").replace('"', "\\\"");
    const QByteArray text = "remove: ID=\"" + quoted + '"' + '\0';
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window;
    event.type = atom(display, "_NET_STARTUP_INFO_BEGIN");
    for (qsizetype done = 0; done < text.size(); done += qsizetype(sizeof event.data.data8)) {
        std::memset(event.data.data8, 0, sizeof event.data.data8);
        std::memcpy(event.data.data8, text.constData() + done,
                    std::min(sizeof event.data.data8, static_cast<std::size_t>(text.size() - done)));
        send(display, root, XCB_EVENT_MASK_PROPERTY_CHANGE, event);
        event.type = atom(display, "_NET_STARTUP_INFO");
    }
}

// Qt would send the time of the last user action in this program, which is too old by now.
// https://specifications.freedesktop.org/wm-spec/latest/ar01s03.html, _NET_ACTIVE_WINDOW
void activateOnX11(xcb_connection_t *display, xcb_window_t window, const QByteArray &startupId)
{
    const xcb_window_t root = rootOf(display, window);
    if (const std::optional<xcb_timestamp_t> time = timeOf(startupId)) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = atom(display, "_NET_ACTIVE_WINDOW");
        event.data.data32[0] = 1; // asked by an application
        event.data.data32[1] = *time;
        send(display, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, event);
    }
    endStartupNotice(display, root, window, startupId);
    xcb_flush(display);
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

QVariantMap activationFromEnvironment()
{
    QVariantMap platformData;
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty())
        platformData.insert(tokenKey, token);
    if (const QString id = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !id.isEmpty())
        platformData.insert(startupIdKey, id);
    return platformData;
}

void activate(QWindow &window, const QVariantMap &platformData)
{
    const QString token = platformData.value(tokenKey).toString();
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(u"wayland")) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // where Qt looks for it
        window.requestActivate();
        qunsetenv("XDG_ACTIVATION_TOKEN"); // not for our child processes
    }
    const QByteArray startupId = platformData.value(startupIdKey).toString().toUtf8();
    // Other platforms may have this interface too, but their windows are not known to the X server.
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!startupId.isEmpty() && x11 != nullptr && QGuiApplication::platformName() == u"xcb")
        activateOnX11(x11->connection(), static_cast<xcb_window_t>(window.winId()), startupId);
}

} // namespace brevant
