# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Programs killed at moments spread over their whole time."""
import json
import os
import random
import signal
import time

from injected import OLD, driver
from places import Place, Tally, descendants, judge_in_place, kill_all, sources, stub_output

IN_PLACE = ("--set", "suffixSwitcherKeyString=false")
DELAY = "3000"  # microseconds the stub rests between two steps, so that most moments lie amid its work


def moments(full, few=15, many=200):
    count = many if full else few // 2 if Place.modern else few
    return [(number + 0.5) / count for number in range(count)]


def kill_after(place, process, seconds, compressor_too):
    try:
        process.wait(seconds)
    except Exception:
        kill_all(process.pid) if compressor_too else process.kill()
    return place.end(process)


def in_place(name, full, few, many, make, minified, arguments=IN_PLACE):
    """A batch over its own sources; every second time the compressor is killed too."""
    tally = Tally(name)
    with make() as place:
        start = time.monotonic()
        place.run(*arguments, *place.files)
        whole = time.monotonic() - start
    unsaid = 0
    for number, moment in enumerate(moments(full, few, many)):
        with make() as place:
            place.killed_command = [*place.cli(), *arguments, *place.files]
            process = place.start(place.killed_command)
            first = kill_after(place, process, whole * moment, number % 2 == 1)
            lost, problems, done = judge_in_place(place, first, place.next_start(), minified)
            unsaid += done
            tally.add(f"killed at {moment:.2f} of {whole:.2f} s", len(place.files), lost, problems)
    if unsaid:
        tally.notes.append(f"{unsaid} whole and minified, killed before the line about it")
    return tally


def stub_batch():
    place = Place(sources(6))
    place.environment["FAULT_DELAY"] = DELAY
    return place


def stub_in_place(name, full, *more):
    return in_place(name, full, 15, 200, stub_batch, stub_output, (*IN_PLACE, *more))


def compressor(full):
    """The compressor alone: the program goes on, puts the source back and says so."""
    tally = Tally("compressor killed, in place")
    for moment in moments(full):
        with stub_batch() as place:
            process = place.start([*place.cli(), *IN_PLACE, *place.files])
            chosen = random.Random(moment).randrange(len(place.files))
            killed = kill_one(process, chosen, moment * 4 * int(DELAY) / 1e6)
            ended = place.end(process)
            lost, problems, unsaid = judge_in_place(place, ended, ended)
            failures = ended.err.count(b"was ended by signal 9")
            if killed and ended.status != 1 and failures:
                problems.append(f"ended with {ended.status}")
            if unsaid:
                problems.append(f"{unsaid} files minified and not reported")
            tally.add(f"number {chosen}", len(place.files), lost, problems)
    return tally


def kill_one(process, chosen, seconds):
    seen = []
    while process.poll() is None:
        for child in descendants(process.pid):
            if child not in seen:
                seen.append(child)
        if len(seen) > chosen:
            time.sleep(seconds)
            try:
                os.kill(seen[chosen], signal.SIGKILL)
            except ProcessLookupError:
                return False
            return True
        time.sleep(0.0005)
    return False


def go_on_for_ever(name, full, make, judge):
    """The driver, writing again and again, killed after a while that is another each time."""
    tally = Tally(name)
    left = 0
    for moment in moments(full):
        place, command = make()
        with place:
            command.insert(1, "forever")
            read, write = os.pipe()
            process = place.start(command, stdin=read)
            os.write(write, b"\n")
            os.close(read)
            os.close(write)
            kill_after(place, process, 0.05 + 0.1 * moment, False)
            lost = judge(place)
            tally.add(f"killed at {moment:.2f}", len(place.files), lost)
            left += len(place.leftovers())
    if left:  # between its name and its place
        tally.notes.append(f"{left} temporary files left behind")
    return tally


def settings(full):
    def make():
        place = Place()
        file = place.add("settings.json", json.dumps(OLD).encode())
        return place, driver(place, "settings", file, "-one", "-two")

    def judge(place):
        allowed = [dict(OLD, suffixKeyString=value) for value in ("-old", "-one", "-two")]
        try:
            return [] if json.loads((place.site / "settings.json").read_bytes()) in allowed else ["settings.json"]
        except ValueError:
            return ["settings.json"]
    return go_on_for_ever("settings, killed", full, make, judge)


def combine(full):
    files = sources(3, 200_000)

    def make():
        place = Place(files)
        target = place.add("target.css", b"old target")
        return place, driver(place, "combine", target, *(place.site / name for name in files))

    def judge(place):
        new = b"".join(content + b"\n" for content in files.values())
        lost = [name for name in files if (place.site / name).read_bytes() != files[name]]
        return lost + ([] if (place.site / "target.css").read_bytes() in (b"old target", new) else ["target.css"])
    return go_on_for_ever("combine, killed", full, make, judge)


def cases(full):
    yield lambda: stub_in_place("batch in place, killed", full)
    yield lambda: stub_in_place("batch in place, three at once, killed", full, "--jobs", "3")
    yield lambda: stub_in_place("batch in place with gzip, killed", full, "--set", "gzipCheckerKeyString=true")
    yield lambda: compressor(full)
    yield lambda: settings(full)
    yield lambda: combine(full)


def real_cases(full):
    texts = {f"r{number}.css": b"a%d { color : red ; }\n" % number * 400 for number in range(3)}

    def make():
        return Place(texts)
    with make() as place:
        place.run(*place.files)
        outputs = {content: (place.site / name.replace(".css", ".min.css")).read_bytes()
                   for name, content in texts.items()}
    yield lambda: in_place("batch in place, real compressor, killed", full, 4, 40, make, outputs.get)
