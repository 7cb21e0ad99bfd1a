# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the cases share: a place to work in, how a run is judged, and the count of it all."""
import ctypes
import os
import shutil
import signal
import subprocess
import tempfile
import threading
import time
from pathlib import Path

LONGEST = 120  # seconds that anything may take
PR_SET_CHILD_SUBREAPER = 36  # prctl(2)
SLOT_CONTENT_AT = 65536  # where a safety copy's own file holds the source


class Tally:
    """One row of the table."""

    def __init__(self, name):
        self.name = "modern: " * Place.modern + name
        self.tried = 0
        self.files = 0
        self.lost = 0
        self.problems = []
        self.notes = []
        self._lock = threading.Lock()

    def add(self, what, files=0, lost=(), problems=()):
        """One thing tried: the files at stake, which of them were lost, and what else was wrong."""
        with self._lock:
            self.tried += 1
            self.files += files
            self.lost += len(lost)
            self.problems += [f"{what}: LOST {name}" for name in lost]
            self.problems += [f"{what}: {problem}" for problem in problems]


class Ended:
    def __init__(self, status, out, err):
        self.status, self.out, self.err = status, out, err


class Place:
    """A folder to work in, with a home of its own; use with `with`."""

    build = None  # the build folder of the programs
    modern = False  # whether the modern compressors are chosen
    stubbed = False  # whether the stand-in is the user's own esbuild

    def __init__(self, files=None, disk=None):
        """On `disk`, what is printed goes to another one all the same."""
        self.streams = Path(tempfile.mkdtemp(prefix="brevant-faults-out-"))
        self.top = Path(tempfile.mkdtemp(prefix="brevant-faults-", dir=disk)).resolve()
        self.site = self.top / "site"
        self.site.mkdir()
        for name in ("config", "state", "tmp"):
            (self.top / name).mkdir()
        self.environment = dict(os.environ, HOME=str(self.top), XDG_CONFIG_HOME=str(self.top / "config"),
                                XDG_STATE_HOME=str(self.top / "state"),
                                TMPDIR=str(self.top / "tmp"), LC_ALL="C.UTF-8")
        self.files = {}
        self.killed_command = []
        self.sessions = []
        for name, content in (files or {}).items():
            self.add(name, content)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for session in self.sessions:  # where a case stumbled
            kill_all(session)
        for folder in (self.top, self.streams):
            shutil.rmtree(os.fsencode(folder), ignore_errors=True)

    def add(self, name, content):
        path = self.site / name
        path.write_bytes(content)
        self.files[name] = content
        return path

    def cli(self):
        """The program, and the choice of its compressors, which no fault of the settings file changes."""
        words = [str(self.build / "brevant-cli")]
        if self.modern:
            words += ["--set", "compressorsKeyString=modern"]
        if self.modern and self.stubbed:
            words += ["--set", f"esbuildPathKeyString={self.build / 'tests/fault-compressor'}"]
        return words

    def start(self, command, **options):
        """A program in a session of its own, its output in two files."""
        out, err = open(self.streams / "out", "wb+"), open(self.streams / "err", "wb+")
        options.setdefault("stdin", subprocess.DEVNULL)
        process = subprocess.Popen(command, cwd=self.site, env=self.environment, stdout=out, stderr=err,
                                   start_new_session=True, **options)
        process.streams = out, err
        self.sessions.append(process.pid)
        return process

    def end(self, process, patience=LONGEST):
        """Waits for the program and all that it started."""
        try:
            process.wait(patience)
            wait_for_session(process.pid, patience)
            self.sessions.remove(process.pid)
        except subprocess.TimeoutExpired:
            kill_all(process.pid)
            process.wait()
            return Ended("does not end", *self._printed(process))
        return Ended(process.returncode, *self._printed(process))

    @staticmethod
    def _printed(process):
        texts = []
        for stream in process.streams:
            stream.seek(0)
            texts.append(stream.read())
            stream.close()
        return texts

    def run(self, *arguments, wrap=(), **options):
        return self.end(self.start([*wrap, *self.cli(), *arguments], **options))

    def next_start(self):
        """A start of the program that works on nothing."""
        return self.run("--list", "--set", "enableHTMLCheckerKeyString=true", self.top / "config")

    def originals(self):
        """The safety copies, in both folders that there may be."""
        folders = [Path(self.environment["XDG_STATE_HOME"]) / "brevant/originals",
                   *Path(self.environment["TMPDIR"]).glob("brevant-originals-*")]
        return [file for folder in folders if folder.is_dir() for file in folder.iterdir() if file.name != "locks"]

    def leftovers(self, folder=None):
        return [path.name for path in (folder or self.site).iterdir() if path.name.startswith(".brevant-")]


def adopt_orphans():
    """From now on what a killed program leaves running is ours to wait for, wherever init is slow to."""
    ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1)


def members(session):
    """A program and all that it has started: compressors have process groups of their own."""
    found = []
    for stat in Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = stat.read_bytes().rpartition(b")")[2].split()
        except OSError:  # ended meanwhile
            continue
        if int(fields[3]) == session:
            found.append(int(stat.parent.name))
    return found


def kill_all(session):
    for pid in members(session):
        try:
            os.kill(pid, signal.SIGKILL)
        except ProcessLookupError:
            pass


def wait_for_session(session, patience=LONGEST):
    """Until no process of the session is left: a killed program's compressor goes on."""
    end = time.monotonic() + patience
    while left := members(session):
        for pid in left:
            try:
                os.waitpid(pid, os.WNOHANG)
            except ChildProcessError:
                pass
        if time.monotonic() > end:
            raise subprocess.TimeoutExpired("session", patience)
        time.sleep(0.002)


def descendants(pid):
    """The children of a program, as long as it lives."""
    try:
        text = Path(f"/proc/{pid}/task/{pid}/children").read_text()
    except OSError:
        return []
    return [int(word) for word in text.split()]


def stub_output(content):
    """What the stand-in makes of a text."""
    return b"(" + (content.replace(b" ", b"").replace(b"\n", b"") if Place.modern else content) + b")"


def judge_in_place(place, first, second, minified=stub_output):
    """What became of the sources of a run onto themselves, after it and the next start: the lost ones, what else is
    wrong, and how many are whole and minified though nobody said so."""
    lost, problems, unsaid = [], [], 0
    printed = first.out + first.err + second.out + second.err
    for name, original in place.files.items():
        path = place.site / name
        content = path.read_bytes() if path.is_file() else None
        if content == original:
            continue
        if is_kept(place, original, printed):
            continue
        if content != minified(original):
            lost.append(name)
        elif f"{path} -> {path}".encode() not in first.out:
            unsaid += 1
    for copy in place.originals():
        if str(copy).encode() not in printed:
            problems.append(f"{copy.name} stays in the folder of the originals, and nobody said so")
    return lost, problems + left_for_good(place), unsaid


def left_for_good(place):
    """The temporary files that are left behind; of a killed program, those that the next run leaves too."""
    if place.killed_command and place.leftovers():
        place.end(place.start(place.killed_command))
    return [f"{name} is left behind" for name in place.leftovers()]


def is_kept(place, original, printed):
    """Whether a copy lies where the program said."""
    for copy in place.originals():
        content = copy.read_bytes()
        content = content[SLOT_CONTENT_AT:][:len(original)] if copy.suffix == ".original" else content
        if content == original and str(copy).encode() in printed:
            return True
    return False


def sources(count, size=3000):
    """Names and contents that differ from each other in every part."""
    return {f"s{number}.css": b"".join(b"a%d { x: %d }\n" % (number, line) for line in range(size // 12))
            for number in range(count)}
