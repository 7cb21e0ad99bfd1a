# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a desktop's own shell does on the session bus: it shows notifications, and a dock with icons."""
from gi.repository import Gio, GLib

from session import Failure

_NOTIFICATIONS = """<node><interface name="org.freedesktop.Notifications">
<method name="GetCapabilities"><arg type="as" direction="out"/></method>
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/>
<arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="as" direction="in"/>
<arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
<method name="CloseNotification"><arg type="u" direction="in"/></method>
</interface></node>"""
_PATH, _NAME = "/org/freedesktop/Notifications", "org.freedesktop.Notifications"


class Shell:
    """Hears and answers only while it is asked something: see turn()."""

    def __init__(self, session):
        self._bus = session.connect()
        self.shown = {}      # by number: summary and body
        self.notified = []   # all summaries there were
        self.progress = []   # as a dock is told: from 0 to 1, or None when it goes
        self.badge = None
        self._bus.register_object(_PATH, Gio.DBusNodeInfo.new_for_xml(_NOTIFICATIONS).interfaces[0],
                                  self._called, None, None)
        self._bus.signal_subscribe(None, "com.canonical.Unity.LauncherEntry", "Update", None, None,
                                   Gio.DBusSignalFlags.NONE, self._updated)
        self._bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", (_NAME, 0)), None, 0, 5000, None)

    def turn(self):
        while GLib.MainContext.default().iteration(False):
            pass
        return self

    def number_of(self, summary):
        """Of a notification that is shown."""
        return next((number for number, text in self.turn().shown.items() if text[0] == summary), None)

    def click(self, number):
        self._emit("ActivationToken", GLib.Variant("(us)", (number, "a-token")))
        self._emit("ActionInvoked", GLib.Variant("(us)", (number, "default")))

    def _emit(self, signal, arguments):
        self._bus.emit_signal(None, _PATH, _NAME, signal, arguments)
        self._bus.flush_sync(None)

    def _called(self, _bus, _sender, _path, _interface, method, arguments, invocation):
        values = arguments.unpack()
        if method == "GetCapabilities":
            invocation.return_value(GLib.Variant("(as)", (["actions", "body", "body-markup"],)))
        elif method == "Notify":
            program, replaced, icon, summary, body, actions, hints, _timeout = values
            if (program, icon, actions[0], hints.get("desktop-entry")) != (
                    "Brevant", "org.brevant.Brevant", "default", "org.brevant.Brevant"):
                raise Failure(f"a notification of {values}")
            number = replaced or len(self.notified) + 1
            self.notified.append(summary)
            self.shown[number] = (summary, body)
            invocation.return_value(GLib.Variant("(u)", (number,)))
        else:
            self.shown.pop(values[0], None)
            invocation.return_value(None)

    def _updated(self, _bus, _sender, _path, _interface, _signal, arguments):
        _application, properties = arguments.unpack()
        if "count" in properties:
            self.badge = properties["count"] if properties["count-visible"] else None
        if "progress" in properties:
            self.progress.append(properties["progress"] if properties["progress-visible"] else None)

    def leave(self):
        self._bus.close_sync(None)
