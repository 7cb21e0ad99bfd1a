# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""System calls that fail one at a time, and the program killed at one after the other."""
import json
import os
import re
import subprocess
import time
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from places import LONGEST, Place, Tally, judge_in_place, kill_all, sources, stub_output

FAMILIES = {
    "read": "read pread64 getdents64 readlink readlinkat fstat newfstatat statx lseek",
    # Without close: one that is made to fail is not done, so that a lock is held that no real failure would keep.
    "write": "write pwrite64 fsync fdatasync ftruncate fallocate copy_file_range fchmod fchown utimensat fsetxattr "
             "fremovexattr",
    "name": "open openat mkdir mkdirat rename renameat renameat2 unlink unlinkat link linkat symlink symlinkat",
    "other": "flock fcntl ioctl pipe2 access faccessat2 clone clone3 vfork sendfile",
}
MOST = 500  # of one call; no program here makes as many
CALLS = set(" ".join(FAMILIES.values()).split())
FULL_DISK = set("write pwrite64 fsync fdatasync ftruncate fallocate copy_file_range open openat mkdir mkdirat rename "
                "renameat renameat2 link linkat symlink symlinkat".split())
INTERRUPTED = set("open openat read pread64 write pwrite64 fsync fdatasync ftruncate fallocate copy_file_range flock "
                  "ioctl".split())
# What a network file system, or one that knows less, says; and one where the files are somebody else's.
REFUSED = set("fsync fdatasync fallocate copy_file_range ftruncate renameat2 link linkat symlink fcntl flock ioctl "
              "fchmod fchown utimensat fsetxattr".split())
FORBIDDEN = set("open openat mkdir rename renameat renameat2 unlink unlinkat link linkat symlink fchmod fchown utimensat "
                "ftruncate fallocate fsetxattr fremovexattr fcntl".split())
LOADED = 'readlink("/proc"'  # brevant-cli asks where it is soon after the libraries are loaded


def errors_of(call):
    if call == "ioctl" and Place.modern:  # asks a pipe how much it holds, which cannot fail
        return []
    return (["EIO"] + ["ENOSPC"] * (call in FULL_DISK) + ["EINTR"] * (call in INTERRUPTED)
            + ["EMFILE"] * (call in ("open", "openat", "pipe2")) + ["EINVAL"] * (call in REFUSED)
            + ["EPERM"] * (call in FORBIDDEN) + ["ENOLCK"] * (call in ("fcntl", "flock"))
            + ["EAGAIN"] * (call in ("fcntl", "flock", "read", "clone", "clone3", "vfork")))


class Traced:
    """One program whose system calls are made to fail. `attach`: only what it does once it is let go."""

    def __init__(self, place, command, attach):
        self.place, self.command, self.attach = place, command, attach

    def run(self, *options):
        log = self.place.top / "trace"
        strace = ["strace", "-o", str(log), *options]
        if not self.attach:
            return self.place.end(self.place.start([*strace, *self.command])), log
        process = self.place.start(self.command, stdin=subprocess.PIPE, bufsize=0)
        while not (self.place.streams / "out").stat().st_size:  # "ready"
            time.sleep(0.001)
        tracer = subprocess.Popen([*strace, "-f", "-p", str(process.pid)], stderr=subprocess.PIPE)
        tracer.stderr.readline()  # "Process N attached"
        try:
            process.stdin.write(b"\n")
        except BrokenPipeError:
            pass  # killed at reading it
        process.stdin.close()
        ended = self.place.end(process)
        tracer.stderr.close()
        tracer.wait(LONGEST)
        return ended, log


def calls_in(log, attach):
    """How often each call is made, by the thread that makes it most often; and how often before the program's own
    work begins."""
    threads, before = {}, Counter()
    loaded = attach
    for line in log.read_text(errors="replace").splitlines():
        match = re.match(r"(?:(\d+) +)?(\w+)\(", line)
        if not match or match[2] not in CALLS:
            continue
        threads.setdefault(match[1], Counter())[match[2]] += 1
        loaded = loaded or LOADED in line
        if not loaded:
            before[match[2]] += 1
    most = Counter()
    for counter in threads.values():
        most |= counter
    return most, before


def plan(log, attach, full, kill):
    """Every fault to try: (call, its number, what happens). The short form leaves out the loading of the program and
    takes a part of the rest."""
    most, before = calls_in(log, attach)
    faults = []
    for call in sorted(most):
        for number in range(1 if full else before[call] + 1, min(most[call], MOST) + 1):
            for what in ["KILL"] if kill else errors_of(call):
                faults.append((call, number, what))
    return faults if full else faults[::max(1, len(faults) // (12 if Place.modern else 25))]


def unnamed_files_refused(log):
    """What makes a program run as on a file system without files without a name."""
    opened = Counter()
    for line in log.read_text(errors="replace").splitlines():
        thread = line.split()[0]
        opened[thread] += " openat(" in line
        if "O_TMPFILE" in line:
            return ["-e", f"inject=openat:error=EOPNOTSUPP:when={opened[thread]}"]
    raise RuntimeError("no file without a name was opened")


def inject(name, full, prepare, judge, attach, kill=False, named=False):
    """`prepare` gives a place and the command; `judge(tally, what, place, ended)` looks at what it left. `named`: as
    where every file has a name."""
    tally = Tally(name)
    place, command = prepare()
    with place:
        _, log = Traced(place, command, attach).run()
        refused = unnamed_files_refused(log) if named else []
        faults = [fault for fault in plan(log, attach, full, kill) if not named or fault[0] != "openat"]

    def try_one(fault):
        call, number, what = fault
        fresh, fresh_command = prepare()
        with fresh:
            fresh.killed_command = fresh_command * kill
            effect = "signal=KILL" if kill else f"error={what}"
            ended, _ = Traced(fresh, fresh_command, attach).run("-e", f"trace={call},openat", *refused,
                                                                "-e", f"inject={call}:{effect}:when={number}")
            try:
                judge(tally, f"{call} {number} {what}", fresh, ended)
            except Exception as error:  # a judge that stumbles is a finding
                tally.add(f"{call} {number} {what}", problems=[repr(error)])

    with ThreadPoolExecutor(os.cpu_count()) as pool:
        list(pool.map(try_one, faults))
    return tally


def driver(place, *words):
    return [str(place.build / "tests/fault-driver"), *map(str, words)]


# Settings

OLD = {"suffixKeyString": "-old", "somebodyElse": [1, 2]}


def prepare_settings(old=None):
    place = Place()
    file = place.site / "settings.json"
    file.write_bytes(old if old is not None else json.dumps(OLD).encode())
    return place, driver(place, "settings", file, "-one", "-two")


def judge_settings(kill):
    def judge(tally, what, place, ended):
        allowed = [dict(OLD, suffixKeyString=value) for value in ("-old", "-one", "-two")]
        problems = []
        content = (place.site / "settings.json").read_bytes()
        try:
            found = json.loads(content)
        except ValueError:
            found = None
        lost = ["settings.json"] if found not in allowed else []
        if not kill:
            problems += [f"{name} is left behind" for name in place.leftovers()]
            if ended.status not in (0, 127):  # 127: a library that is loaded late could not be
                problems.append(f"ended with {ended.status}")
            if found != allowed[2] and not ended.err:
                problems.append("the last value is not there, and nobody said so")
        tally.add(what, 1, lost, problems)
    return judge


def judge_bad_settings(tally, what, place, ended):
    """What somebody has typed wrongly must lie in the file or in its copy."""
    kept = [path.read_bytes() for path in place.site.iterdir() if path.is_file()]
    lost = [] if b"{ typed: wrongly }" in kept else ["settings.json"]
    tally.add(what, 1, lost, [f"{name} is left behind" for name in place.leftovers()])


# Combine

def prepare_combine():
    files = sources(3, 200_000)
    place = Place(files)
    target = place.add("target.css", b"old target")
    return place, driver(place, "combine", target, *(place.site / name for name in files))


def judge_combine(kill):
    def judge(tally, what, place, ended):
        target = (place.site / "target.css").read_bytes()
        new = b"".join(content + b"\n" for name, content in place.files.items() if name != "target.css")
        lost = [name for name, content in place.files.items()
                if name != "target.css" and (place.site / name).read_bytes() != content]
        if target not in (b"old target", new):
            lost.append("target.css")
        problems = []
        if not kill:
            problems += [f"{name} is left behind" for name in place.leftovers()]
            if (ended.status == 0) != (target == new) or (ended.status != 0 and not ended.err):
                problems.append(f"ended with {ended.status}, and the target is {'new' if target == new else 'old'}")
        tally.add(what, len(place.files), lost, problems)
    return judge


# Runs of brevant-cli

def prepare_report():
    place = Place(sources(2))
    place.report = place.top / "report.json"
    place.report.write_bytes(b"old report")
    return place, [*place.cli(), "--jobs", "1", "--report", str(place.report), *place.files]


def judge_report(tally, what, place, ended):
    lost = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
    problems = [f"{name} is left behind" for name in place.leftovers() + place.leftovers(place.top)]
    report = place.report.read_bytes()
    done = 0
    if report != b"old report":
        try:
            done = json.loads(report)["done"]
        except ValueError:
            lost.append("report.json")
    outputs = [(place.site / name.replace(".css", ".min.css")) for name in place.files]
    good = [path for path, content in zip(outputs, place.files.values())
            if path.is_file() and path.read_bytes() == stub_output(content)]
    if ended.status == 0 and (report == b"old report" or len(good) < len(outputs) or done < len(outputs)):
        problems.append("ended with 0, and not everything is there")
    if done > len(good):
        problems.append(f"reports {done} files as done, and {len(good)} are good")
    if ended.status != 0 and not ended.err and b"could not be started" not in ended.out:
        problems.append(f"ended with {ended.status} without a word")
    tally.add(what, len(place.files) + 1, lost, problems)


def prepare_in_place():
    place = Place(sources(2))
    return place, [*place.cli(), "--jobs", "1", "--set", "suffixSwitcherKeyString=false", *place.files]


def prepare_in_place_with_gzip():
    place, command = prepare_in_place()
    return place, [command[0], "--set", "gzipCheckerKeyString=true", *command[1:]]


def judge_run_in_place(tally, what, place, ended):
    second = place.next_start()
    lost, problems, unsaid = judge_in_place(place, ended, second)
    if ended.status == 0 and any((place.site / name).read_bytes() != stub_output(content)
                                 for name, content in place.files.items()):
        problems.append("ended with 0, and not everything is minified")
    if unsaid and not what.endswith("KILL") and not what.startswith("write"):  # which says it
        problems.append(f"{unsaid} files minified and not reported")
    tally.add(what, len(place.files), lost, problems)


def prepare_next_start():
    """The state that a program killed amid a file leaves: the source is empty."""
    place = Place(sources(2))
    place.environment["FAULT_MODE"] = "hang"
    process = place.start([*place.cli(), "--set", "suffixSwitcherKeyString=false", *place.files])
    first = place.site / next(iter(place.files))
    while first.stat().st_size and process.poll() is None:
        pass
    kill_all(process.pid)
    place.end(process)
    del place.environment["FAULT_MODE"]
    return place, [*place.cli(), "--list", str(place.top / "config")]


def judge_next_start(tally, what, place, ended):
    again = place.next_start()
    lost, problems, _ = judge_in_place(place, ended, again)
    tally.add(what, len(place.files), lost, problems)


def cases(full):
    def bad():
        return prepare_settings(b"{ typed: wrongly }")
    yield lambda: inject("settings, failing calls", full, prepare_settings, judge_settings(False), True)
    yield lambda: inject("settings, killed at a call", full, prepare_settings, judge_settings(True), True, True)
    yield lambda: inject("settings typed wrongly, failing calls", full, bad, judge_bad_settings, True)
    yield lambda: inject("combine, failing calls", full, prepare_combine, judge_combine(False), True)
    yield lambda: inject("combine where files need names, failing calls", full, prepare_combine, judge_combine(False),
                         True, named=True)
    yield lambda: inject("combine, killed at a call", full, prepare_combine, judge_combine(True), True, True)
    yield lambda: inject("run with a report, failing calls", full, prepare_report, judge_report, False)
    yield lambda: inject("run in place, failing calls", full, prepare_in_place, judge_run_in_place, False)
    yield lambda: inject("run in place with gzip, failing calls", full, prepare_in_place_with_gzip, judge_run_in_place,
                         False)
    yield lambda: inject("run in place, killed at a call", full, prepare_in_place, judge_run_in_place, False, True)
    yield lambda: inject("next start, failing calls", full, prepare_next_start, judge_next_start, False)
    yield lambda: inject("next start, killed at a call", full, prepare_next_start, judge_next_start, False, True)
