# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs into a mirrored tree, with copies of what is not minified."""
import os
import subprocess
import time

import full_disk
import injected
import killed
from odd_places import NOBODY, open_up
from places import Place, Tally, sources, stub_output

OPTIONS = ("--jobs", "1", "--out-dir", "out", "--copy-rest", "--keep-times", "src")
NAMES = ("src/s0.css", "src/d/s1.css", "src/r0.png", "src/d/r1.png")


def make(old=True, disk=None, size=3000):
    """Two sources and two other files; with `old`, something older is where each is to go, but for a new folder."""
    place = Place(disk=disk)
    (place.site / "src/d").mkdir(parents=True)
    for name, content in zip(NAMES, sources(len(NAMES), size).values()):
        place.add(name, content)
    if old:
        (place.site / "out").mkdir()
        for name in ("s0.min.css", "r0.png"):
            (place.site / "out" / name).write_bytes(b"old")
    return place


def prepare():
    place = make()
    return place, [*place.cli(), *OPTIONS]


def targets(place):
    """Each file with its place in the tree and what is to be there."""
    for name, content in place.files.items():
        is_source = name.endswith(".css")
        target = place.site / name.replace("src/", "out/").replace(".css", ".min.css")
        yield place.site / name, target, stub_output(content) if is_source else content


def unmade(place, ended, is_killed):
    """What is not whole though nobody said so, and what is half there."""
    lost, problems = [], []
    for source, target, wanted in targets(place):
        found = target.read_bytes() if target.is_file() else None
        if found == wanted:
            continue
        is_said = (f"{source}: ".encode() in ended.err or b"cannot be read" in ended.err
                   or (ended.status not in (0, 1) and ended.out + ended.err))
        if not is_said and not is_killed:
            problems.append(f"{target.name} is not there, and nobody said so")
        # Classic compressors write where they are told to.
        if found not in (None, b"old") and (Place.modern or target.suffix == ".png"):
            lost.append(target.name)
    return lost, problems


def judge(tally, what, place, ended):
    """Sources are never touched; each other file is there as a whole, or as it was; the next run makes the rest."""
    is_killed = what.endswith("KILL")
    changed = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
    lost, problems = unmade(place, ended, is_killed)
    if is_killed:
        again = place.end(place.start([*place.cli(), *OPTIONS]))
        problems += [f"the next run ended with {again.status}: {again.err}"] * (again.status != 0)
        problems += [f"{target.name} is not made again" for _, target, wanted in targets(place)
                     if not target.is_file() or target.read_bytes() != wanted]
    out = place.site / "out"
    folders = [folder for folder in (place.site, out, out / "d") if folder.is_dir()]
    problems += [f"{name} is left behind" for folder in folders for name in place.leftovers(folder)]
    tally.add(what, 2 * len(place.files), changed + lost, problems)


def killed_at_times(full):
    tally = Tally("mirrored tree, killed")
    with make() as place:
        place.environment["FAULT_DELAY"] = killed.DELAY
        start = time.monotonic()
        place.run(*OPTIONS)
        whole = time.monotonic() - start
    for number, moment in enumerate(killed.moments(full)):
        with make(number % 4 < 2) as place:
            place.environment["FAULT_DELAY"] = killed.DELAY
            ended = killed.kill_after(place, place.start([*place.cli(), *OPTIONS]), whole * moment, number % 2 == 1)
            judge(tally, f"at {moment:.2f} of {whole:.2f} s, KILL", place, ended)
    return tally


def full(full_form):
    def try_one(tally, disk, what, kib):
        with make(disk=disk.top, size=12_000) as place:
            disk.leave(kib)
            ended = place.run(*OPTIONS)
            judge(tally, what, place, ended)
    return full_disk.sweep("full disk, mirrored tree", full_form, try_one)


def read_only(full_form):
    tally = Tally("mirrored tree in a read-only folder, or one that vanishes")
    for what in ("tree", "folder in it"):
        if os.geteuid() != 0 or subprocess.run([*NOBODY, Place.build / "brevant-cli", "--version"],
                                               capture_output=True, cwd="/").returncode != 0:
            tally.notes.append("read-only ones left out: needs root, and a build folder that others may read")
            break
        with make() as place:
            (place.site / "out/d").mkdir()
            open_up(place)
            (place.site / ("out" if what == "tree" else "out/d")).chmod(0o555)
            ended = place.run(*OPTIONS, wrap=NOBODY)
            judge(tally, what, place, ended)
            if ended.status != 1:
                tally.problems.append(f"{what}: ended with {ended.status}")
    for number in range(10 if full_form else 2):
        with make() as place:
            place.environment["FAULT_DELAY"] = "20000"
            process = place.start([*place.cli(), *OPTIONS])
            time.sleep(0.01 * (number + 1))
            (place.site / "out").rename(place.site / "gone")
            ended = place.end(process)
            lost = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
            tally.add(f"vanishes after {10 * (number + 1)} ms", len(place.files), lost,
                      [f"ended with {ended.status}"] * (ended.status not in (0, 1)))
    return tally


def cases(full_form):
    yield lambda: injected.inject("mirrored tree, failing calls", full_form, prepare, judge, False)
    yield lambda: injected.inject("mirrored tree, killed at a call", full_form, prepare, judge, False, True)
    yield lambda: killed_at_times(full_form)
    yield lambda: full(full_form)
    yield lambda: read_only(full_form)
