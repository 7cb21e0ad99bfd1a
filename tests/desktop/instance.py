# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The session bus's view of Brevant, and second launches of it."""
import os
import re
import subprocess
from pathlib import Path

from gi.repository import Gio, GLib

from session import Failure, wait_for

NAME, PATH = "org.brevant.Brevant", "/org/brevant/Brevant"


def launch(case, *arguments, **variables):
    """A launch that is expected to end; its status, and what it printed. A variable that is None is unset."""
    environment = {**case.session.environment, **variables}
    environment = {key: value for key, value in environment.items() if value is not None}
    done = subprocess.run([case.brevant, *map(os.fsencode, arguments)], env=environment, cwd=case.folder,
                          capture_output=True, timeout=30, stdin=subprocess.DEVNULL, check=False)
    return done.returncode, done.stdout + done.stderr


def ask(session, method, *arguments, path=PATH, name=NAME, start=False):
    """A method of the desktop's interface; a GLib.Error if it is refused."""
    signature = {"Activate": "(a{sv})", "Open": "(asa{sv})", "ActivateAction": "(sava{sv})"}[method]
    flags = Gio.DBusCallFlags.NONE if start else Gio.DBusCallFlags.NO_AUTO_START
    session.bus.call_sync(name, path, "org.freedesktop.Application", method,
                          GLib.Variant(signature, (*arguments, {})), None, flags, 10000, None)


def owner(session):
    """The process that has the name, or None."""
    try:
        (pid,) = session.bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus",
                                       "GetConnectionUnixProcessID", GLib.Variant("(s)", (NAME,)), None, 0,
                                       5000, None).unpack()
    except GLib.Error:
        return None
    return pid


class Foreign:
    """A Brevant that something else started, looked at the way a subprocess is."""
    stdout = None
    returncode = None

    def __init__(self, pid):
        self.pid = pid

    def poll(self):
        """Its status is told to its parent alone."""
        try:
            state = Path(f"/proc/{self.pid}/stat").read_text().rpartition(")")[2].split()[0]
        except OSError:
            state = "Z"
        if state == "Z":
            self.returncode = 0
        return self.returncode

    def wait(self, seconds):
        try:
            wait_for("", lambda: self.poll() is not None, seconds)
        except Failure as failure:
            raise subprocess.TimeoutExpired("", seconds) from failure


def windows(session):
    """How many windows the window manager shows or keeps minimised."""
    clients = session.run("xprop", "-root", "_NET_CLIENT_LIST").decode()
    return len(re.findall("0x[0-9a-f]+", clients))


class Badges:
    """The numbers that were shown on the dock's icon."""

    def __init__(self, session):
        self._bus, self.counts = session.bus, []
        self._number = self._bus.signal_subscribe(None, "com.canonical.Unity.LauncherEntry", "Update", None,
                                                  None, 0, self._heard)

    def _heard(self, _bus, _sender, _path, _interface, _signal, arguments):
        properties = arguments.unpack()[1]
        if "count" in properties:
            self.counts.append(properties["count"])

    def expect(self, count):
        def shown():
            while GLib.MainContext.default().iteration(False):
                pass
            return count in self.counts
        wait_for(lambda: f"{count} on the badge, not {self.counts}", shown)

    def end(self):
        self._bus.signal_unsubscribe(self._number)
