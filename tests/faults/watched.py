# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Watched files, under faults: no source is lost, the watching goes on where it can, and the next run makes the rest."""
import os
import shutil
import signal
import time

from full_disk import sweep
from killed import DELAY, kill_after, moments
from places import LONGEST, Place, Tally, sources, stub_output


def watched_place(disk=None):
    place = Place(sources(4), disk)
    (place.site / "sub").mkdir()
    for name, content in sources(2).items():
        place.add(f"sub/{name}", content)
    return place


def wait_for(condition):
    end = time.monotonic() + LONGEST
    while not condition() and time.monotonic() < end:
        time.sleep(0.01)
    return condition()


def printed(process):
    return b"".join(os.pread(stream.fileno(), 1 << 20, 0) for stream in process.streams)


def start(place):
    process = place.start([*place.cli(), "--watch", "--delete", "."])
    assert wait_for(lambda: b"Ctrl+C ends." in printed(process)), printed(process)
    return process


def change(place, names):
    """As an editor saves: another file, put into its place."""
    for name in names:
        place.add(name + ".new", place.files[name] + b" .changed { a : b }\n").rename(place.site / name)
        place.files[name] = place.files.pop(name + ".new")


def output(place, name):
    return place.site / name.replace(".css", ".min.css")


def is_made(place, name):
    return output(place, name).is_file() and output(place, name).read_bytes() == stub_output(place.files[name])


def judge(tally, what, place, problems=()):
    lost = [name for name, content in place.files.items()
            if not (place.site / name).is_file() or (place.site / name).read_bytes() != content]
    problems = list(problems)
    second = place.run(".")
    if second.status != 0:
        problems.append(f"the next run ended with {second.status}: {second.err[:200]}")
    problems += [f"{name} is not made" for name in place.files if not is_made(place, name)]
    problems += [f"{name} is left behind" for name in place.leftovers()]
    tally.add(what, len(place.files), lost, problems)


def killed(full):
    """While it works on what has changed; every second time with its compressor."""
    tally = Tally("watched files, killed")
    for number, moment in enumerate(moments(full, 6, 100)):
        with watched_place() as place:
            place.environment["FAULT_DELAY"] = DELAY
            process = start(place)
            change(place, list(place.files))
            kill_after(place, process, 0.1 + moment * 0.5, number % 2 == 1)
            judge(tally, f"killed at {moment:.2f}", place)
    return tally


def folders_that_vanish(full):
    """A folder that is deleted or moved away while its files are worked on."""
    tally = Tally("watched folders that vanish")
    for number, moment in enumerate(moments(full, 6, 100)):
        with watched_place() as place:
            place.environment["FAULT_DELAY"] = DELAY
            process = start(place)
            change(place, list(place.files))
            time.sleep(0.05 + moment * 0.4)
            if number % 2:
                (place.site / "sub").rename(place.top / "sub")
            else:
                shutil.rmtree(place.site / "sub", ignore_errors=True)
            for name in [name for name in place.files if name.startswith("sub/")]:
                content = place.files.pop(name)
                if number % 2 and (place.top / name).read_bytes() != content:
                    tally.add(name, 1, [name])
            change(place, ["s0.css"])
            problems = [] if wait_for(lambda: is_made(place, "s0.css")) else ["the watching does not go on"]
            process.send_signal(signal.SIGTERM)
            if (ended := place.end(process)).status != 143:
                problems.append(f"ended with {ended.status}: {ended.err[-200:]}")
            shutil.rmtree(place.site / "sub", ignore_errors=True)
            judge(tally, f"gone at {moment:.2f}", place, problems)
    return tally


def full_disk(tally, disk, what, kib):
    """What fails on a full disk is made once it is changed again."""
    with watched_place(disk.top) as place:
        process = start(place)
        change(place, ["s0.css", "s1.css"])
        disk.leave(kib)
        wait_for(lambda: is_made(place, "s1.css") or b"Failed: " in printed(process))
        (disk.top / "filler").unlink()
        change(place, ["s0.css", "s1.css"])
        problems = [] if wait_for(lambda: is_made(place, "s0.css") and is_made(place, "s1.css")) else ["not made again"]
        process.send_signal(signal.SIGTERM)
        if (ended := place.end(process)).status != 143:
            problems.append(f"ended with {ended.status}: {ended.err[-200:]}")
        judge(tally, what, place, problems)


def cases(full):
    return [lambda: killed(full), lambda: folders_that_vanish(full),
            lambda: sweep("watched files, full disk", full, full_disk)]
