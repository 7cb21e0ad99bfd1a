# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A desktop session of one's own: display, window manager, session bus, accessibility bus, sound server.

Nothing of the session of whoever runs the tests is used, and nothing is left behind: every process that is
started, or started by one of those, is a descendant of this one and is ended by its id.
"""
import ctypes
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time
from pathlib import Path

from gi.repository import Gio, GLib

PATIENCE = 15.0  # seconds, for what takes milliseconds when nothing is wrong
_PR_SET_PDEATHSIG, _PR_SET_CHILD_SUBREAPER = 1, 36
_libc = ctypes.CDLL(None, use_errno=True)


class Failure(AssertionError):
    """What was expected did not come about."""


def wait_for(what, probe, seconds=PATIENCE):
    """Asks probe() until it answers with something true, and returns that. `what` may be a function that
    says in the end what was there instead."""
    deadline = time.monotonic() + seconds
    while True:
        answer = probe()
        if answer:
            return answer
        if time.monotonic() > deadline:
            raise Failure(f"not within {seconds:g} s: {what() if callable(what) else what}")
        time.sleep(0.02)


def equal(found, expected, what=""):
    if found != expected:
        raise Failure(f"{what or 'values'} differ:\n  found    {found!r}\n  expected {expected!r}")


def children_of(pid):
    found = []
    for entry in Path("/proc").iterdir():
        if not entry.name.isdigit():
            continue
        try:
            fields = (entry / "stat").read_text().rpartition(")")[2].split()
        except OSError:
            continue
        if int(fields[1]) == pid:
            found.append(int(entry.name))
    return found


def descendants_of(pid):
    found = []
    for child in children_of(pid):
        found += [child, *descendants_of(child)]
    return found


def _end_with_parent():
    _libc.prctl(_PR_SET_PDEATHSIG, signal.SIGTERM)


class Session:
    """`with Session() as session:` runs a desktop. `sound=True` adds a sound server."""
    needs = ("Xvfb", "openbox", "xdotool", "xprop", "xwininfo", "import", "dbus-daemon")

    def __init__(self, sound=False, scale=None, screen="1600x1000x24"):
        self.wants_sound, self.scale, self.screen = sound, scale, screen
        self.processes = []

    def __enter__(self):
        # Whoever loses its parent becomes our child, and so can be found at the end.
        _libc.prctl(_PR_SET_CHILD_SUBREAPER, 1)
        self.folder = Path(tempfile.mkdtemp(prefix="brevant-desktop-"))
        try:
            self._set_up_environment()
            self._start_display()
            self._start_buses()
            if self.wants_sound:
                self._start_sound()
        except BaseException:
            self._end()
            raise
        return self

    def __exit__(self, *_unused):
        self._end()

    def _set_up_environment(self):
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700)
        self.environment = {
            "PATH": "/usr/local/bin:/usr/bin:/bin",
            "LC_ALL": "C.UTF-8",
            "TZ": "UTC",
            "XDG_RUNTIME_DIR": str(runtime),
            "XDG_DATA_DIRS": "/usr/local/share:/usr/share",
            "GSETTINGS_BACKEND": "memory",
            # A server that is named is not looked for, nor started.
            "PULSE_SERVER": f"unix:{runtime}/sound",
            "QT_QPA_PLATFORM": "xcb",
            "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1",
        }
        if self.scale:
            self.environment["QT_SCALE_FACTOR"] = str(self.scale)
        self.set_home("home")

    def set_home(self, name):
        """A new home for the programs started from now on."""
        self.home = self.folder / name
        self.home.mkdir()
        self.environment.update({
            "HOME": str(self.home),
            "XDG_CONFIG_HOME": str(self.home / "config"),
            "XDG_STATE_HOME": str(self.home / "state"),
            "XDG_DATA_HOME": str(self.home / "data"),
            "XDG_CACHE_HOME": str(self.home / "cache"),
        })

    def start(self, *command, **options):
        """Starts a process that ends with this one, at the latest with the session."""
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        options.setdefault("env", self.environment)
        process = subprocess.Popen([str(word) for word in command], stdin=subprocess.DEVNULL,
                                   preexec_fn=_end_with_parent, **options)
        self.processes.append(process)
        return process

    def run(self, *command):
        """Runs a tool and returns what it prints, as bytes."""
        done = subprocess.run([str(word) for word in command], env=self.environment, capture_output=True,
                              stdin=subprocess.DEVNULL, timeout=30, check=False)
        if done.returncode != 0:
            raise Failure(f"{' '.join(map(str, command))}: status {done.returncode}\n{done.stderr.decode()}")
        return done.stdout

    def _start_display(self):
        reading, writing = os.pipe()
        # -noreset: or the server begins anew, and drops who is just coming, when its only client goes.
        self.start("Xvfb", "-displayfd", writing, "-screen", "0", self.screen, "-nolisten", "tcp", "-noreset",
                   pass_fds=[writing])
        os.close(writing)
        with os.fdopen(reading) as number:
            if not select.select([number], [], [], PATIENCE)[0]:
                raise Failure("no display")
            self.environment["DISPLAY"] = ":" + number.readline().strip()
        self.start("openbox", "--sm-disable")
        wait_for("a window manager", lambda: b"window id" in self.run(
            "xprop", "-root", "_NET_SUPPORTING_WM_CHECK"))
        # The first key brings the keyboard's map, for which the window manager takes hold of its keys anew; a key
        # that comes meanwhile is lost. Once it has done what it was asked for later, it is through with that.
        self.run("xdotool", "key", "shift")
        wait_for("a window manager with its keys", self._has_one_workspace)

    def _has_one_workspace(self):
        self.run("xdotool", "set_num_desktops", "1")
        return b"= 1" in self.run("xprop", "-root", "_NET_NUMBER_OF_DESKTOPS")

    def _start_buses(self):
        address = f"unix:path={self.folder}/run/bus"
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = address
        self.start("dbus-daemon", "--session", "--nofork", "--nopidfile", f"--address={address}")
        wait_for("a session bus", (self.folder / "run/bus").exists)
        self.bus = self._connection(address)
        (address,) = self.bus.call_sync("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", None,
                                        None, 0, 10000, None).unpack()
        self.accessibility_bus = self._connection(address)

    def connect(self):
        """A connection of one's own to the session bus."""
        return self._connection(self.environment["DBUS_SESSION_BUS_ADDRESS"])

    @staticmethod
    def _connection(address):
        flags = Gio.DBusConnectionFlags
        connection = wait_for(f"a bus at {address}", lambda: _try(
            lambda: Gio.DBusConnection.new_for_address_sync(
                address, flags.AUTHENTICATION_CLIENT | flags.MESSAGE_BUS_CONNECTION, None, None)))
        connection.set_exit_on_close(False)
        return connection

    def _start_sound(self):
        self.start("pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--disable-shm=yes",
                   "--use-pid-file=no", "-L", "module-null-sink sink_name=probe rate=44100 channels=1",
                   "-L", f"module-native-protocol-unix socket={self.folder}/run/sound")
        wait_for("a sound server", lambda: _try(lambda: self.run("pactl", "info")))

    def screenshot(self, path):
        self.run("import", "-silent", "-window", "root", path)

    def pixels(self, x, y, width, height):
        """What is on that part of the screen, as bytes."""
        return self.run("import", "-silent", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}",
                        "-depth", "8", "rgb:-")

    def let_go(self):
        """Of what a test that failed may have left pressed."""
        self.run("xdotool", "mouseup", "1")

    def _end(self):
        for connection in (getattr(self, "bus", None), getattr(self, "accessibility_bus", None)):
            if connection is not None:
                connection.set_exit_on_close(False)
        # Last started, first ended; then whatever they left.
        for process in reversed(self.processes):
            end(process)
        deadline = time.monotonic() + 5
        while pids := descendants_of(os.getpid()):
            for pid in pids:
                _signal(pid, signal.SIGTERM if time.monotonic() < deadline else signal.SIGKILL)
            _reap()
            time.sleep(0.02)
        shutil.rmtree(self.folder, ignore_errors=True)


def end(process, patience=5.0):
    """Ends one process that was started here, and all it started."""
    pids = descendants_of(process.pid) if process.poll() is None else []
    for number, limit in ((signal.SIGTERM, patience), (signal.SIGKILL, patience)):
        if process.poll() is not None:
            break
        _signal(process.pid, number)
        try:
            process.wait(limit)
        except subprocess.TimeoutExpired:
            pass
    for pid in pids:
        if pid in descendants_of(os.getpid()):
            _signal(pid, signal.SIGKILL)
    if process.stdout:
        process.stdout.close()


def _signal(pid, number):
    try:
        os.kill(pid, number)
    except ProcessLookupError:
        pass


def _reap():
    try:
        while os.waitpid(-1, os.WNOHANG)[0]:
            pass
    except ChildProcessError:
        pass


def _try(action):
    try:
        return action() or True
    except (Failure, GLib.Error):
        return None
