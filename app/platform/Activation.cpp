// SPDX-FileCopyrightText: 2026 The Brevant developers
// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Activation.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>

namespace brevant {

namespace {

constexpr QLatin1StringView tokenKey("activation-token");
constexpr QLatin1StringView startupIdKey("desktop-startup-id");

xcb_atom_t atom(xcb_connection_t *display, const char *name)
{
    const auto cookie = xcb_intern_atom(display, 0, static_cast<uint16_t>(std::strlen(name)), name);
    xcb_intern_atom_reply_t *const reply = xcb_intern_atom_reply(display, cookie, nullptr);
    const xcb_atom_t found = reply != nullptr ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply); // as xcb wants it
    return found;
}

xcb_window_t rootOf(xcb_connection_t *display, xcb_window_t window)
{
    xcb_query_tree_reply_t *const reply =
        xcb_query_tree_reply(display, xcb_query_tree(display, window), nullptr);
    const xcb_window_t root = reply != nullptr ? reply->root : xcb_window_t(XCB_WINDOW_NONE);
    std::free(reply); // as xcb wants it
    return root;
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
    const auto mark = startupId.lastIndexOf("_TIME");
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
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1StringView("wayland"))) {
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8()); // where Qt looks for it
        window.requestActivate();
        qunsetenv("XDG_ACTIVATION_TOKEN"); // not for our child processes
    }
    const QByteArray startupId = platformData.value(startupIdKey).toString().toUtf8();
    // Other platforms may have this interface too, but their windows are not known to the X server.
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!startupId.isEmpty() && x11 != nullptr && QGuiApplication::platformName() == QLatin1StringView("xcb"))
        activateOnX11(x11->connection(), static_cast<xcb_window_t>(window.winId()), startupId);
}

} // namespace brevant
