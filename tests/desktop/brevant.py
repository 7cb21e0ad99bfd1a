# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Brevant in a desktop session, and the hands of its user."""
import errno
import fcntl
import json
import os
import subprocess
import time

from gi.repository import GLib

from accessible import applications
from session import Failure, end, equal, wait_for


class Program:
    """The running program, found again by its process id. Its window is looked at through the bus."""

    def __init__(self, session, executable, *arguments, process=None):
        """`process`: one that is running already, and tells its messages to somebody else."""
        self.session = session
        self.log = session.home / "messages"
        with open(self.log, "wb") as log:
            self.process = process or session.start(executable, *arguments, stderr=log)
        self.root = wait_for("Brevant on the accessibility bus", self._find)
        self.window = self.root.find("frame")
        wait_for("the window to be the active one", lambda: self.active_title() == "Brevant")

    def _find(self):
        if self.process.poll() is not None:
            raise Failure(f"Brevant ended with {self.process.returncode}: {self.log.read_text()}")
        for application in applications(self.session):
            try:
                (pid,) = self.session.accessibility_bus.call_sync(
                    "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetConnectionUnixProcessID",
                    GLib.Variant("(s)", (application._owner,)), None, 0, 5000, None).unpack()
            except GLib.Error:
                continue
            if pid == self.process.pid:
                return application
        return None

    # What is shown.

    @property
    def table(self):
        return self.window.find("table")

    def rows(self):
        return [cell.name for cell in self.table.children if cell.role == "cell"]

    def names(self):
        return [name.split(", ")[0] for name in self.rows()]

    def selected(self):
        return [cell.name.split(", ")[0] for cell in self.table.children if "selected" in cell.states]

    def row(self, name):
        return wait_for(f"a row for {name}", lambda: next(
            (cell for cell in self.table.children if cell.name.startswith(name + ", ")), None))

    def status(self):
        return next((node.name for node in self.window.all("label") if node.name), "")

    def button(self, name):
        return self.window.first("push button", name)

    def has_button(self, name):
        button = self.button(name)
        return bool(button) and "showing" in button.states

    def focused(self):
        """The control with the keyboard focus."""
        for window in self.root.children:
            for node in window.walk():
                # Of tabs it is the list of them; Qt says it of the tab of the page always, and of what holds both.
                if "focused" in node.states and node.role not in ("frame", "dialog", "table", "cell", "page tab",
                                                                  "filler"):
                    return node
        return self.table if "focused" in self.table.states else None

    def expect_focus(self, name):
        wait_for(lambda: f"the focus on {name!r}, not on {self.focused()!r}",
                 lambda: (node := self.focused()) and node.name == name)

    def expect_names(self, *names):
        wait_for(lambda: f"the rows {names}, not {self.names()}", lambda: self.names() == list(names))

    def expect_status(self, text):
        wait_for(lambda: f"the status {text!r}, not {self.status()!r}", lambda: self.status() == text)

    def expect_selected(self, *names):
        wait_for(lambda: f"the selection {names}, not {self.selected()}",
                 lambda: self.selected() == list(names))

    def windows(self):
        """The ids of the windows on the screen, of all kinds."""
        try:
            found = self.session.run("xdotool", "search", "--onlyvisible", "--pid", self.process.pid)
        except Failure:  # what it says when it finds none
            return []
        return found.decode().split()

    def context_menu(self):
        """Its place on the screen, while it is open."""
        for window in self.windows():
            lines = self.session.run("xwininfo", "-id", window).decode().splitlines()
            facts = dict(line.strip().split(": ", 1) for line in lines if ": " in line)
            if facts.get("Override Redirect State", "").strip() == "yes":
                return tuple(int(facts[key]) for key in ("Absolute upper-left X", "Absolute upper-left Y",
                                                         "Width", "Height"))
        return None

    def settings(self):
        try:
            return json.loads((self.session.home / "config/brevant/settings.json").read_text())
        except (FileNotFoundError, json.JSONDecodeError):
            return {}

    # Hands.

    def active_title(self):
        """Only once the keys go there, too."""
        try:
            active, focused = (self.session.run("xdotool", which).decode().strip()
                               for which in ("getactivewindow", "getwindowfocus"))
            return self.session.run("xdotool", "getwindowname", active).decode().strip() if active == focused else ""
        except Failure:
            return ""

    def expect_active(self, title):
        wait_for(lambda: f"{title!r} as the active window, not {self.active_title()!r}",
                 lambda: self.active_title() == title)

    def key(self, *keys):
        self.session.run("xdotool", "key", "--delay", "15", *keys)

    def type(self, text):
        self.session.run("xdotool", "type", "--delay", "8", "--", text)

    def click(self, target, button=1, repeat=1):
        """On the middle of a control, or on a place of the screen."""
        x, y = target if isinstance(target, tuple) else target.centre
        self.session.run("xdotool", "mousemove", x, y, "click", "--repeat", repeat, "--delay", 60,
                         button)

    def expect_moved_by(self, x, y):
        """Drags the active window by a place on it: it comes along, and Escape takes it back. That is the window
        manager's way, with its edges; a program that moves its window itself has none."""
        window = self.session.run("xdotool", "getactivewindow").decode().strip()

        def position():
            lines = self.session.run("xdotool", "getwindowgeometry", "--shell", window).decode().split()
            return tuple(int(line.split("=")[1]) for line in lines[1:3])

        left, top = position()
        self.session.run("xdotool", "mousemove", x, y, "mousedown", "1")
        for step in (5, 15, 30, 50, 80):
            time.sleep(0.05)
            self.session.run("xdotool", "mousemove", x + step, y + step)
        wait_for("the window to come along", lambda: position() > (left + 40, top + 40))
        self.key("Escape")
        wait_for("the window back in its place", lambda: position() == (left, top))
        self.session.run("xdotool", "mouseup", "1")

    def click_check_box(self, node):
        """Where people click: on the box itself, at the start of the control."""
        x, y, _width, height = wait_for(f"{node!r} on the screen", lambda: node.extents)
        self.click((x + 10, y + height // 2))

    def choose(self, menu, item):
        """An item of the menu bar, with the pointer."""
        title = self.window.find("menu bar").find("menu item", menu)
        self.click(title)
        self.click(title.find("popup menu").find("menu item", item))

    def wait_for_exit(self, status=0):
        wait_for("the program to end", lambda: self.process.poll() is not None)
        equal(self.process.returncode, status, "exit status")

    def messages(self):
        """Without what Qt says when it is asked about a row that has just gone."""
        return "".join(line for line in self.log.read_text().splitlines(True)
                       if not line.startswith("QAccessibleTable::child: Invalid index"))

    def end(self):
        end(self.process)


class DragSource:
    """Another program's window, with something to drag."""

    def __init__(self, session, executable, *arguments):
        self.session = session
        self.process = session.start(executable, *arguments, stdout=subprocess.PIPE)
        fcntl.fcntl(self.process.stdout, fcntl.F_SETFL, os.O_NONBLOCK)
        window = wait_for("the drag source", self._window)
        session.run("xdotool", "windowraise", window)
        self.said = b""

    def _window(self):
        try:
            return self.session.run("xdotool", "search", "--onlyvisible", "--pid", self.process.pid,
                                    "--name", "drag-source").split()[0].decode()
        except (Failure, IndexError):
            return None

    def pick_up(self):
        """The pauses are those of a hand: without them a drag is over before it has begun."""
        self._move(120, 110)
        self.session.run("xdotool", "mousedown", "1")
        for step in (4, 12, 24, 40):
            time.sleep(0.05)
            self._move(120 + step, 110)

    def drag_to(self, x, y):
        for part in (0.4, 0.8, 0.97, 1.0):
            time.sleep(0.05)
            self._move(int(160 + (x - 160) * part), int(110 + (y - 110) * part))
        time.sleep(0.15)

    def expect_taken(self, x, y):
        """Waits there for a target that would take it. No hand is quite still."""
        def taken():
            for place in (x + 1, x):
                self._move(place, y)
            return self._lines()[-1:] == ["over copy"]
        wait_for("a target for the drag", taken)

    def drop(self):
        """Lets go, and returns what the source was told."""
        self.session.run("xdotool", "mouseup", "1")

        def outcomes():
            return [line for line in self._lines() if not line.startswith("over ")]
        (outcome,) = wait_for("the end of the drag", outcomes)
        self.said = b""
        return outcome

    def _lines(self):
        self.said += self.process.stdout.read() or b""
        return self.said.decode().splitlines() if self.said.endswith(b"\n") else []

    def _move(self, x, y):
        self.session.run("xdotool", "mousemove", x, y)

    def end(self):
        end(self.process)


class HeldFile:
    """A source file that a compressor can open, but reads to its end only when the test lets it."""

    def __init__(self, path):
        self.path = path
        self._end = None
        os.mkfifo(path)

    def expect_reader(self):
        wait_for(f"a compressor that reads {self.path}", self._open)

    def _open(self):
        try:
            self._end = os.open(self.path, os.O_WRONLY | os.O_NONBLOCK)
        except OSError as error:
            if error.errno != errno.ENXIO:
                raise
            return False
        return True

    def expect_no_reader(self):
        os.close(self._end)
        self._end = None
        equal(self._open(), False, "a compressor still reads")

    def release(self, text):
        os.write(self._end, text)
        os.close(self._end)
        self._end = None
