# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs of what has changed, under faults: whatever became of one, the next run makes what is not right."""
import json
import time

from full_disk import sweep
from injected import inject
from killed import DELAY, kill_after, moments
from places import Place, Tally, sources, stub_output


def changed_place(disk=None):
    """One source is changed, one output edited and one gone; the fourth file is as it was made."""
    place = Place(sources(4), disk)
    first = place.run("--changed", *place.files)
    assert first.status == 0, first.err
    place.add("s0.css", place.files["s0.css"].replace(b"x", b"y"))
    output(place, "s1.css").write_bytes(b"(edited)")
    output(place, "s2.css").unlink()
    return place, [*place.cli(), "--changed", *place.files]


def output(place, name):
    return place.site / name.replace(".css", ".min.css")


def judge(tally, what, place, _ended):
    """The faulty run may have come to anything, as long as the next one is right."""
    lost = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
    second = place.run("--changed", *place.files)
    problems = [f"{name} is not made again" for name, content in place.files.items()
                if not output(place, name).is_file() or output(place, name).read_bytes() != stub_output(content)]
    if second.status != 0:
        problems.append(f"the next run ended with {second.status}: {second.err[:200]}")
    left = [name for name in place.leftovers() if name != ".brevant-cache.json"]
    problems += [f"{name} is left behind" for name in left]
    third = place.run("--changed", *place.files)
    if third.out != b"%d files unchanged.\n" % len(place.files):
        problems.append(f"what was made is not known: {third.out[:200]}")
    try:
        json.loads((place.site / ".brevant-cache.json").read_bytes())
    except (OSError, ValueError) as error:
        problems.append(repr(error))
    tally.add(what, len(place.files), lost, problems)


def killed(full):
    tally = Tally("changed files, killed")
    place, command = changed_place()
    with place:
        place.environment["FAULT_DELAY"] = DELAY
        start = time.monotonic()
        place.end(place.start(command))
        whole = time.monotonic() - start
    for number, moment in enumerate(moments(full, 6, 100)):
        place, command = changed_place()
        with place:
            place.environment["FAULT_DELAY"] = DELAY
            ended = kill_after(place, place.start(command), whole * moment, number % 2 == 1)
            judge(tally, f"killed at {moment:.2f} of {whole:.2f} s", place, ended)
    return tally


def full_disk(tally, disk, what, kib):
    place, command = changed_place(disk.top)
    with place:
        disk.leave(kib)
        ended = place.end(place.start(command))
        (disk.top / "filler").unlink()
        judge(tally, what, place, ended)


def cases(full):
    return [lambda: inject("changed files, failing calls", full, changed_place, judge, False),
            lambda: inject("changed files, killed at a call", full, changed_place, judge, False, kill=True),
            lambda: killed(full),
            lambda: sweep("changed files, full disk", full, full_disk)]
