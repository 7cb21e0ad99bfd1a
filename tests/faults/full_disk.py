# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A disk with less and less room on it: a small one of our own."""
import json
import math
import os
import subprocess
import tempfile
from pathlib import Path

from injected import OLD, driver, judge_combine, judge_settings
from places import Place, Tally, judge_in_place, sources, stub_output

SIZE = 512  # KiB


class SmallDisk:
    """A mounted disk; `leave(kib)` fills it up to that."""

    def __enter__(self):
        self.top = Path(tempfile.mkdtemp(prefix="brevant-faults-disk-"))
        subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={SIZE}k", "tmpfs", self.top], check=True)
        return self

    def __exit__(self, *_):
        subprocess.run(["umount", "-l", self.top], check=True)
        self.top.rmdir()

    def leave(self, kib):
        status = os.statvfs(self.top)
        room = status.f_bavail * status.f_bsize - kib * 1024
        (self.top / "filler").write_bytes(b"x" * max(0, room))


def levels(full):
    return range(0, 68, 4) if full else (0, 16, 64) if Place.modern else (0, 4, 16, 40, 64)


def sweep(name, full, try_one):
    tally = Tally(name)
    for kib in levels(full):
        with SmallDisk() as disk:
            try_one(tally, disk, f"{kib} KiB left", kib)
    return tally


def is_whole(output, content, gzip):
    if not output.is_file() or output.read_bytes() != stub_output(content):
        return False
    return not gzip or subprocess.run(["gzip", "-dc", f"{output}.gz"], capture_output=True).stdout == stub_output(content)


def done_in(report):
    try:
        return json.loads(report)["done"]
    except ValueError:
        return math.inf


def gzip_wanted(gzip):
    return "--set", f"gzipCheckerKeyString={'true' if gzip else 'false'}"


def plain(gzip, report):
    """Outputs, their gzip copies and the report on the full disk."""
    def try_one(tally, disk, what, kib):
        with Place(sources(3, 12_000), disk.top) as place:
            target = place.top / "report.json"
            target.write_bytes(b"old report")
            disk.leave(kib)
            ended = place.run(*gzip_wanted(gzip), *(("--report", target) if report else ()), *place.files)
            lost = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
            problems = [f"{name} is left behind" for name in place.leftovers() + place.leftovers(place.top)]
            cut = [name for name, content in place.files.items()
                   if not is_whole(place.site / name.replace(".css", ".min.css"), content, gzip)]
            problems += [f"{name} is not whole, and nobody said so" for name in cut
                         if f"{place.site / name}: ".encode() not in ended.err]
            text = target.read_bytes()
            if text != b"old report" and done_in(text) > len(place.files) - len(cut):
                problems.append("the report is cut, or counts what is not whole")
            # What filled the disk to the last byte cannot be told from what was cut there.
            whole = not cut and (not report or text != b"old report")
            if ended.status != (0 if whole else 1) and not (whole and b": the disk is full" in ended.err):
                problems.append(f"ended with {ended.status}, {len(cut)} files are not whole")
            tally.add(what, len(place.files) + 1, lost, problems)
    return try_one


def in_place(gzip, state_elsewhere):
    def try_one(tally, disk, what, kib):
        with Place(sources(3, 12_000), disk.top) as place, Place() as elsewhere:
            if state_elsewhere:
                place.environment["XDG_STATE_HOME"] = elsewhere.environment["XDG_STATE_HOME"]
            disk.leave(kib)
            first = place.run("--set", "suffixSwitcherKeyString=false", *gzip_wanted(gzip), *place.files)
            lost, problems, unsaid = judge_in_place(place, first, place.next_start())
            if first.status == 0 and not all(is_whole(place.site / name, content, False)
                                             for name, content in place.files.items()):
                problems.append("ended with 0, and not everything is minified")
            if unsaid and not gzip:
                problems.append(f"{unsaid} files minified and not reported")
            tally.add(what, len(place.files), lost, problems)
    return try_one


def driven(files, words, judge):
    def try_one(tally, disk, what, kib):
        with Place(files, disk.top) as place:
            command = driver(place, *words(place))
            disk.leave(kib)
            read, write = os.pipe()
            process = place.start(command, stdin=read)
            os.write(write, b"\n")
            os.close(read)
            os.close(write)
            judge(tally, what, place, place.end(process))
    return try_one


def combine_words(place):
    target = place.add("target.css", b"old target")
    return ["combine", target, *(place.site / name for name in place.files if name != "target.css")]


def settings_words(place):
    file = place.site / "settings.json"
    file.write_bytes(json.dumps(OLD).encode())
    return ["settings", file, "-one", "-two"]


def outputs(full):
    yield lambda: sweep("full disk, outputs", full, plain(False, False))
    yield lambda: sweep("full disk, gzip copies", full, plain(True, False))
    yield lambda: sweep("full disk, report", full, plain(False, True))
    yield lambda: sweep("full disk, run in place", full, in_place(False, False))
    yield lambda: sweep("full disk, run in place, copies on another", full, in_place(False, True))
    yield lambda: sweep("full disk, run in place with gzip", full, in_place(True, False))


def cases(full):
    yield from outputs(full)
    yield lambda: sweep("full disk, combine", full, driven(sources(3, 12_000), combine_words, judge_combine(False)))
    yield lambda: sweep("full disk, settings", full, driven({}, settings_words, judge_settings(False)))
