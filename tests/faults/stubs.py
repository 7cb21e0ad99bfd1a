# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compressors that misbehave."""
import os
import signal
import subprocess
import time

from killed import IN_PLACE
from places import Place, Tally, judge_in_place, kill_all, members, sources, stub_output


def wait_until(condition, seconds=30):
    end = time.monotonic() + seconds
    while not condition() and time.monotonic() < end:
        time.sleep(0.005)
    return condition()


def hangs(full):
    """Over an emptied source: the first stop is said, the second ends all at once."""
    tally = Tally("compressor hangs, in place")
    for number in ((signal.SIGINT, signal.SIGTERM, signal.SIGHUP) if full else (signal.SIGINT,)):
        with Place(sources(2)) as place:
            place.environment["FAULT_MODE"] = "hang"
            process = place.start([*place.cli(), *IN_PLACE, *place.files])
            first = place.site / next(iter(place.files))
            problems = [] if wait_until(lambda: first.stat().st_size == 0) else ["the compressor never began"]
            os.kill(process.pid, number)
            if not wait_until(lambda: b"Stopping" in (place.streams / "err").read_bytes()):
                problems.append("the first stop is not said")
            time.sleep(0.6)  # sooner it would be the same request
            os.kill(process.pid, number)
            try:
                status = process.wait(10)
            except subprocess.TimeoutExpired:
                status = "does not end"
            if status != 128 + number:
                problems.append(f"ended with {status}")
            if len(members(process.pid)) > 0:
                problems.append("the compressor goes on")
                kill_all(process.pid)
            ended = place.end(process)
            if first.read_bytes() != place.files[first.name]:
                problems.append("the source was not put back")
            lost, found, _ = judge_in_place(place, ended, place.next_start())
            tally.add(number.name, len(place.files), lost, problems + found)
    return tally


def watched(place, process):
    """How a program ended, and the most memory it took, in KiB."""
    peak = 0
    while process.poll() is None:
        try:
            with open(f"/proc/{process.pid}/status") as status:
                peak = max([peak, *(int(line.split()[1]) for line in status if line.startswith("VmHWM"))])
        except OSError:
            pass
        time.sleep(0.002)
    return place.end(process), peak


def floods(full):
    tally = Tally("compressor prints 100 MB")
    with Place(sources(1)) as place:
        place.environment["FAULT_MODE"] = "flood"
        ended, peak = watched(place, place.start([*place.cli(), *place.files]))
        whole = (place.site / "s0.min.css").read_bytes() == stub_output(place.files["s0.css"])
        problems = [] if whole and ended.status == 0 else [f"ended with {ended.status}"]
        problems += [] if len(ended.out) > 100_000_000 else ["something of it is missing"]
        problems += [] if peak < 50_000 else [f"the program took {peak} KiB"]
        tally.add("flood", 1, [], problems)
        tally.notes.append(f"brevant-cli took {peak / 1024:.0f} MiB")
    return tally


def wrong(mode, arguments, name):
    tally = Tally(name)
    with Place(sources(3)) as place:
        place.environment["FAULT_MODE"] = mode
        ended = place.run(*arguments, *place.files)
        lost = [source for source, content in place.files.items() if (place.site / source).read_bytes() != content]
        problems = [] if ended.status == 1 else [f"ended with {ended.status}"]
        problems += [f"{source} is not named" for source in place.files if f"{source}: ".encode() not in ended.err]
        tally.add(mode, len(place.files), lost, problems)
    return tally


def colon(full):
    """An output whose name holds a colon would be written over the source, and so nothing is run."""
    tally = Tally("colon in the output's name")
    with Place(sources(3)) as place:
        ended = place.run("--set", "suffixKeyString=:x", *place.files)
        lost = [source for source, content in place.files.items() if (place.site / source).read_bytes() != content]
        problems = [] if ended.status == 1 else [f"ended with {ended.status}"]
        problems += [f"{source} is not named" for source in place.files if f"{source}: ".encode() not in ended.err]
        tally.add("suffix", len(place.files), lost, problems)
    return tally


def cases(full):
    yield lambda: hangs(full)
    yield lambda: floods(full)
    yield lambda: wrong("nothing", (), "compressor writes nothing")
    yield lambda: wrong("nothing", IN_PLACE, "compressor writes nothing, in place")
    yield lambda: wrong("fail", IN_PLACE, "compressor fails, in place")
    yield lambda: colon(full)
