# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Originals that the window keeps of replaced sources, and that are put back."""
import os

from injected import driver, inject
from places import Place, is_kept, left_for_good, sources, stub_output


def prepare(work, linked):
    def make():
        place = Place(sources(2))
        if linked:
            for name in place.files:
                os.link(place.site / name, place.top / name)
        esbuild = place.build / "tests/fault-compressor" if Place.modern else "-"
        return place, driver(place, work, esbuild, *(place.site / name for name in place.files))
    return make


def is_there(place, original):
    """Whether a kept original, with its record, is in the folder."""
    kept = [file for file in place.originals() if file.name.endswith(".source.kept")]
    return any(file.read_bytes() == original and file.with_name(file.name.replace(".source.", ".record.")).exists()
               for file in kept)


def judge(work, kill):
    def judged(tally, what, place, ended):
        second = place.next_start()
        printed = ended.out + ended.err + second.out + second.err
        lost, problems = [], []
        for name, original in place.files.items():
            path = place.site / name
            content = path.read_bytes() if path.is_file() else None
            said = f"{path}: ".encode() in ended.err
            if content == original:
                if work == "keep" and ended.status == 0:
                    problems.append(f"ended with 0, and {name} is not minified")
                continue
            if content != stub_output(original) and not is_kept(place, original, printed):
                lost.append(name)
            elif not is_there(place, original) and not is_kept(place, original, printed):
                if work == "restore" or kill or not said:
                    lost.append(f"original of {name}")
            if work == "restore" and not kill and not said:
                problems.append(f"{name} is not put back, and nobody said so")
        for copy in place.originals():
            if copy.suffix != ".kept" and str(copy).encode() not in printed:
                problems.append(f"{copy.name} stays in the folder of the originals, and nobody said so")
        if not kill and ended.status not in (0, 1, 127):
            problems.append(f"ended with {ended.status}: {ended.err}")
        for name, original in place.files.items():
            (place.site / name).write_bytes(original)  # so that there is something to do again
        tally.add(what, len(place.files), lost, problems + left_for_good(place))
    return judged


def cases(full):
    for work in ("keep", "restore"):
        for linked in (False, True):
            if not full and linked and not Place.modern:
                continue
            name = f"originals, {work}{', two names' if linked else ''}"
            yield lambda work=work, linked=linked, name=name: inject(
                f"{name}, failing calls", full, prepare(work, linked), judge(work, False), work == "restore")
            yield lambda work=work, linked=linked, name=name: inject(
                f"{name}, killed at a call", full, prepare(work, linked), judge(work, True), work == "restore",
                True)
