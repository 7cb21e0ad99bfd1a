# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Folders that cannot be written or that go away, files that cannot be read, and what is no file."""
import os
import signal
import stat
import subprocess
import time

from killed import DELAY, IN_PLACE
from places import Place, Tally, kill_all, sources, stub_output
from stubs import wait_until

NOBODY = ("setpriv", "--reuid=65534", "--regid=65534", "--clear-groups")


def open_up(place):
    """For an ordinary user to work in."""
    for folder, _, names in os.walk(place.top):
        os.chown(folder, 65534, 65534)
        for name in names:
            os.chown(os.path.join(folder, name), 65534, 65534)


def as_nobody(tally, what, spoil, arguments, failing):
    """A run as an ordinary user over three files, of which `failing` cannot be minified."""
    with Place(sources(3)) as place:
        open_up(place)
        spoil(place)
        ended = place.run(*arguments, *place.files, wrap=NOBODY)
        lost, problems = [], []
        for name, content in place.files.items():
            now = (place.site / name).read_bytes()
            good = now == stub_output(content) if arguments else now == content
            if name in failing:
                if now != content:
                    lost.append(name)
                if f"{name}: ".encode() not in ended.err:
                    problems.append(f"{name} failed, and nobody said so")
            elif not good:
                lost.append(name)
        if ended.status != (1 if failing else 0):
            problems.append(f"ended with {ended.status}: {ended.err[:200]}")
        tally.add(what, len(place.files), lost, problems)


def no_place(place):
    for name in ("state", "tmp"):
        (place.top / name).chmod(0o555)


def rights(full):
    tally = Tally("read-only folders, unreadable files")
    if os.geteuid() != 0 or subprocess.run([*NOBODY, Place.build / "brevant-cli", "--version"], capture_output=True,
                                           cwd="/").returncode != 0:
        tally.notes.append("left out: needs root, and a build folder that others may read")
        return tally
    everything = [f"s{number}.css" for number in range(3)]
    for arguments in ((), IN_PLACE):
        as_nobody(tally, "nothing in the way", lambda place: None, arguments, [])
        as_nobody(tally, "read-only folder", lambda place: place.site.chmod(0o555), arguments,
                  everything if not arguments else [])
        as_nobody(tally, "unreadable file", lambda place: (place.site / "s1.css").chmod(0), arguments, ["s1.css"])
        as_nobody(tally, "read-only file", lambda place: (place.site / "s1.css").chmod(0o444), arguments,
                  ["s1.css"] if arguments else [])
        as_nobody(tally, "no copies in the home", lambda place: (place.top / "state").chmod(0o555), arguments, [])
        # A modern run in place needs none.
        as_nobody(tally, "no place for copies", no_place, arguments,
                  everything if arguments and not Place.modern else [])
    return tally


def vanishing(full):
    """The folder goes away amid the run."""
    tally = Tally("vanishing folder")
    for number in range(10 if full else 2):
        with Place(sources(6)) as place:
            place.environment["FAULT_DELAY"] = DELAY
            process = place.start([*place.cli(), *(IN_PLACE if number % 2 else ()), *place.files])
            time.sleep(0.01 * (number + 1))
            gone = place.site.rename(place.top / "gone")
            ended = place.end(process)
            made = {gone / (name if number % 2 else name.replace(".css", ".min.css")): stub_output(content)
                    for name, content in place.files.items()}
            whole = all(path.exists() and path.read_bytes() == content for path, content in made.items())
            # The last one may be made in time, and looked for too late.
            problems = [] if ended.status in ((0, 1) if whole else (1,)) else [f"ended with {ended.status}"]
            tally.add(f"after {10 * (number + 1)} ms", 0, [], problems)
    return tally


NO_FILES = ("a.css", "b.html", "c.js", "d.css")


def make_no_files(place):
    for name in NO_FILES[:3]:
        os.mkfifo(place.site / name)
    try:
        os.mknod(place.site / "d.css", stat.S_IFCHR | 0o600, os.makedev(1, 5))
    except PermissionError:
        return NO_FILES[:3]
    return NO_FILES


def opened(log):
    return [f"opened: {line}" for line in log.read_text(errors="replace").splitlines()
            if any(f'/{name}"' in line for name in NO_FILES)]


def no_files(full):
    """Pipes, devices and sockets among the files of a folder: the program itself never opens them."""
    tally = Tally("pipes and devices in a folder")
    for arguments in ((), IN_PLACE):
        with Place() as place:
            make_no_files(place)
            log = place.top / "trace"
            trace = ["strace", "-o", str(log), "-e", "trace=open,openat,openat2,creat"]
            place.environment["FAULT_MODE"] = "hang"
            process = place.start([*trace, *place.cli(), *arguments, str(place.site)])
            program = []

            def is_waiting():
                program[:] = subprocess.run(["pgrep", "-g", str(process.pid), "-x", "brevant-cli"],
                                            capture_output=True, text=True).stdout.split()
                return program and subprocess.run(["pgrep", "-P", program[0]], capture_output=True).stdout
            problems = [] if wait_until(is_waiting) else ["no compressor was started"]
            for _ in range(2):
                if program:
                    os.kill(int(program[0]), signal.SIGTERM)
                wait_until(lambda: b"Stopping" in (place.streams / "err").read_bytes())
                time.sleep(0.6)  # sooner it would be the same request
            try:
                status = process.wait(20)
            except subprocess.TimeoutExpired:
                status = "does not end"
            if status not in (143, -signal.SIGTERM):
                problems.append(f"cannot be stopped: {status}")
            kill_all(process.pid)
            place.end(process)
            problems += opened(log)
            tally.add("in place" if arguments else "plain", 0, [], problems)
    return tally


def loops(full):
    """Symbolic links that lead to themselves, to each other and up again."""
    tally = Tally("links in loops")
    with Place(sources(2)) as place:
        for name, target in (("self.css", "self.css"), ("one.css", "two.css"), ("two.css", "one.css"),
                             ("up", ".."), ("here.css", "."), ("nowhere.css", "missing.css")):
            os.symlink(target, place.site / name)
        os.symlink("../site", place.site / "round")
        ended = place.run(str(place.site))
        lost = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
        problems = [] if ended.status == 1 else [f"ended with {ended.status}"]
        for name in ("self.css: ", "one.css: ", "two.css: ", "here.css is a folder", "nowhere.css: "):
            if f"/{name}".encode() not in ended.err:
                problems.append(f"not said: {name}")
        for name, content in place.files.items():
            if (place.site / name.replace(".css", ".min.css")).read_bytes() != stub_output(content):
                problems.append(f"{name} is not minified")
        tally.add("loops", len(place.files), lost, problems)
    return tally


def edited(full):
    """Somebody saves a newer version, by way of another file as editors do, while the compressor is at work. Where
    that fails, or writes elsewhere, the newer version stays."""
    tally = Tally("source edited during its run")
    newer = b"newer work { }\n"
    for number in range(20 if full else 4):
        with Place(sources(1)) as place:
            place.environment["FAULT_DELAY"] = "50000"
            place.environment["FAULT_MODE"] = "fail" if number % 2 else ""
            process = place.start([*place.cli(), *(IN_PLACE if number % 2 else ()), *place.files])
            time.sleep(0.02 + 0.003 * number)
            (place.site / "s0.css~").write_bytes(newer)
            os.rename(place.site / "s0.css~", place.site / "s0.css")
            ended = place.end(process)
            lost = [] if (place.site / "s0.css").read_bytes() == newer else ["s0.css"]
            problems = [] if ended.status == number % 2 else [f"ended with {ended.status}"]
            tally.add("in place" if number % 2 else "plain", 1, lost, problems)
    return tally


def cases(full):
    yield lambda: rights(full)
    yield lambda: vanishing(full)
    yield lambda: no_files(full)
    yield lambda: loops(full)
    yield lambda: edited(full)
