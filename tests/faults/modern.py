# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs by the modern compressors: the cases of the others that hold for them too, and those of filters alone."""
import gzip
import itertools
import os
import signal
import subprocess
import time

import full_disk
import injected
import killed
import names
import odd_places
import stubs
from killed import IN_PLACE
from places import Place, Tally, descendants, judge_in_place, left_for_good, members, sources, stub_output
from stubs import wait_until

COPIES = ("--set", "gzipCheckerKeyString=true", "--set", "brotliCheckerKeyString=true")
MAPS = ("--set", "sourceMapCheckerKeyString=true")


def outputs(place, extension=""):
    return [place.site / name.replace(".css", f".min.css{extension}") for name in place.files]


def judge_copies(tally, what, place, ended):
    """Sources are never touched, each other file is there as a whole or not at all, and what is not there is said."""
    lost = [name for name, content in place.files.items() if (place.site / name).read_bytes() != content]
    problems = []
    for (name, content), output in zip(place.files.items(), outputs(place)):
        link = f"\n/*# sourceMappingURL={output.name}.map */".encode()
        wanted = {"": stub_output(content) + link, ".map": f'{{"file":"{output.name}","sources":["{name}"]}}'.encode(),
                  ".gz": stub_output(content) + link, ".br": stub_output(content) + link}
        for extension, text in wanted.items():
            path = output.with_name(output.name + extension)
            found = path.read_bytes() if path.is_file() else None
            if found == b"old" or (found is None and not place.had_outputs):
                is_said = f"{place.site / name}: ".encode() in ended.err or (ended.status != 1 and ended.err)
                if not is_said and not what.endswith("KILL"):
                    problems.append(f"{path.name} is not there, and nobody said so")
                continue
            try:
                whole = unpack(found, extension) == text
            except Exception:
                whole = False
            if not whole:
                lost.append(path.name)
    tally.add(what, len(place.files) * (5 if place.had_outputs else 1), lost, problems + left_for_good(place))


def unpack(content, extension):
    if extension == ".gz":
        return gzip.decompress(content)
    if extension == ".br":
        return subprocess.run(["/usr/bin/brotli", "-dc"], input=content, capture_output=True, check=True).stdout
    return content


def prepare_copies(old=True):
    place = Place(sources(2))
    place.had_outputs = old
    for path in itertools.chain(*(outputs(place, extension) for extension in ("", ".map", ".gz", ".br"))) if old else ():
        path.write_bytes(b"old")
    return place, [*place.cli(), "--jobs", "1", *COPIES, *MAPS, *place.files]


def linked(place):
    """Gives each source a second name, so that it is written into."""
    for name in place.files:
        os.link(place.site / name, place.site / f"{name}.other")
    return place


def prepare_linked():
    place, command = injected.prepare_in_place()
    return linked(place), command


def judge_linked(tally, what, place, ended):
    # Nobody has parted the names of a file.
    parted = [name for name in place.files
              if (place.site / name).stat().st_ino != (place.site / f"{name}.other").stat().st_ino]
    if parted:
        tally.problems.append(f"{what}: the names of {parted} are parted")
    injected.judge_run_in_place(tally, what, place, ended)


def killed_copies(full):
    tally = Tally("batch with source maps and copies, killed")
    with prepare_copies()[0] as place:
        place.environment["FAULT_DELAY"] = killed.DELAY
        start = time.monotonic()
        place.run(*COPIES, *MAPS, *place.files)
        whole = time.monotonic() - start
    for number, moment in enumerate(killed.moments(full)):
        place, command = prepare_copies(number % 4 < 2)
        with place:
            place.environment["FAULT_DELAY"] = killed.DELAY
            place.killed_command = command
            ended = killed.kill_after(place, place.start(command), whole * moment, number % 2 == 1)
            judge_copies(tally, f"at {moment:.2f} of {whole:.2f} s, KILL", place, ended)
    return tally


def end_of_filters(full):
    """None outlives its program, however that ends."""
    tally = Tally("filter hangs")
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGKILL) if full else (signal.SIGINT, signal.SIGKILL):
        with linked(Place(sources(4))) as place:
            place.environment["FAULT_MODE"] = "hang"
            process = place.start([*place.cli(), "--jobs", "2", *IN_PLACE, *place.files])
            problems = [] if wait_until(lambda: len(members(process.pid)) == 3) else ["no filters"]
            os.kill(process.pid, number)
            if number != signal.SIGKILL:
                if not wait_until(lambda: b"Stopping" in (place.streams / "err").read_bytes()):
                    problems.append("the first stop is not said")
                time.sleep(0.6)  # sooner it would be the same request
                os.kill(process.pid, number)
            ended = place.end(process, 10)
            if ended.status not in (128 + number, -signal.SIGKILL):
                problems.append(f"ended with {ended.status}")
            lost, found, _ = judge_in_place(place, ended, place.next_start())
            tally.add(signal.Signals(number).name, len(place.files), lost, problems + found)
    return tally


def too_slow(full):
    """The time that a filter may take, by a clock that is 100 times as fast; in the long form by the true one too."""
    tally = Tally("filter hangs until its time is over")
    for speed in (100, 1) if full else (100,):
        with Place(sources(1)) as place:
            place.environment["FAULT_MODE"] = "hang"
            if speed > 1:
                place.environment |= {"LD_PRELOAD": str(place.build / "tests/libfault-clock.so"), "FAULT_SPEED": str(speed)}
            start = time.monotonic()
            ended = place.run(*IN_PLACE, *place.files)
            seconds = (time.monotonic() - start) * speed
            lost, problems, _ = judge_in_place(place, ended, ended)
            if ended.status != 1 or b"took too long and was ended" not in ended.err:
                problems.append(f"ended with {ended.status}: {ended.err}")
            if not 60 <= seconds or (speed == 1 and seconds > 65):
                problems.append(f"ended after {seconds:.0f} s")
            tally.add(f"{speed} times", 1, lost, problems)
    return tally


def misbehaving(full):
    tally = Tally("filter writes 100 MB, crashes, fails or does not read")
    words = {"pour": b"wrote far too much and was ended", "crash": b"was ended by signal 9",
             "fail": b"ended with status 1", "deaf": b"ended with status 1", "nothing": b"empty", "flood": None}
    for mode, said in words.items():
        for arguments in ((), IN_PLACE):
            files = sources(2) if mode != "deaf" else sources(2, 2_000_000)  # more than a pipe holds
            with linked(Place(files)) as place:
                place.environment["FAULT_MODE"] = mode
                ended, peak = stubs.watched(place, place.start([*place.cli(), "--jobs", "1", *arguments, *place.files]))
                lost, problems, _ = judge_in_place(place, ended, ended)
                if ended.status != (1 if said else 0) or (said and ended.err.count(said) != len(place.files)):
                    problems.append(f"ended with {ended.status}: {ended.err[:300]}")
                problems += [f"{path.name} was made" for path in outputs(place) if said and path.exists()]
                if peak > 200_000:
                    problems.append(f"the program took {peak} KiB")
                tally.add(mode, len(place.files), lost, problems)
                tally.notes.append(f"{mode}: brevant-cli took {peak / 1024:.0f} MiB")
    return tally


def at_once(full):
    """Two runs over the same sources in place, one of them killed at times."""
    tally = Tally("two runs at once, in place")
    for number in range(40 if full else 6):
        with Place(sources(6)) as place:
            if number % 2:
                linked(place)
            place.environment["FAULT_DELAY"] = killed.DELAY
            arguments = [*place.cli(), *IN_PLACE, *(COPIES if number % 3 == 0 else ()), *place.files]
            first = place.start(arguments)
            with Place() as other:
                other.environment = dict(place.environment)
                other.site, own = place.site, other.site
                if number % 4 > 1:  # by the other family
                    arguments[-6:-6] = ["--set", "compressorsKeyString=classic"]
                time.sleep(0.001 * number)
                second = other.start(arguments)
                if number % 5 == 4:
                    killed.kill_after(place, first, 0.01, True)
                    ends = [other.end(second)]
                else:
                    ends = [other.end(second), place.end(first)]
                other.site = own
            lost = []
            for name, original in place.files.items():
                found = (place.site / name).read_bytes()
                modern = stub_output(original)
                allowed = [original, modern, stub_output(modern), b"(" + original + b")", b"(" + modern + b")",
                           stub_output(b"(" + original + b")")]
                if found not in allowed:
                    lost.append(name)
            problems = [f"ended with {one.status}: {one.err}" for one in ends if one.status]
            problems += [f"{name} is left behind" for name in place.leftovers()]
            tally.add(f"number {number}", len(place.files), lost, problems)
    return tally


def edited(full):
    """Somebody saves a newer version while the filter is at work: it stays."""
    tally = Tally("source edited or removed during its run, in place")
    newer = b"newer work { }\n"
    for number in range(20 if full else 4):
        with Place(sources(1)) as place:
            if number % 4 > 1:
                linked(place)
            place.environment["FAULT_DELAY"] = "100000"
            process = place.start([*place.cli(), *IN_PLACE, *place.files])
            wait_until(lambda: descendants(process.pid))
            time.sleep(0.02)
            source = place.site / "s0.css"
            if number % 4 == 1:
                source.unlink()
            elif number % 4 == 3:
                source.write_bytes(newer)
            else:
                (place.site / "s0.css~").write_bytes(newer)
                os.rename(place.site / "s0.css~", source)
            ended = place.end(process)
            now = source.read_bytes() if source.exists() else None
            lost = ["s0.css"] if now != (None if number % 4 == 1 else newer) else []
            problems = [] if ended.status == 1 and b"s0.css: " in ended.err else [f"ended with {ended.status}"]
            tally.add(f"number {number}", 1, lost, problems + [f"{name} is left behind" for name in place.leftovers()])
    return tally


def odd_outputs(full):
    """Links, pipes and devices where the outputs are to be."""
    tally = Tally("links, pipes and devices as outputs")
    for what in ("pipe", "device", "dangling", "link", "loop", "folder"):
        with Place(sources(1)) as place:
            output, = outputs(place)
            elsewhere = place.top / "elsewhere.css"
            if what == "pipe":
                os.mkfifo(output)
                os.link(output, place.site / "other name")
            elif what == "folder":
                output.mkdir()
            else:
                os.symlink({"device": "/dev/null", "loop": output.name}.get(what, elsewhere), output)
            if what == "link":
                elsewhere.write_bytes(b"old")
            ended = place.run(*COPIES, *place.files)
            made = what in ("dangling", "link")
            problems = [] if ended.status == (0 if made else 1) else [f"ended with {ended.status}: {ended.err}"]
            if made and (elsewhere.read_bytes() != stub_output(place.files["s0.css"]) or not output.is_symlink()):
                problems.append("the output is not where the link leads")
            if not made and any(path.exists() for path in (*outputs(place, ".gz"), *outputs(place, ".br"))):
                problems.append("a copy was made of what is no output")
            lost = [] if (place.site / "s0.css").read_bytes() == place.files["s0.css"] else ["s0.css"]
            if what == "device" and not os.stat("/dev/null").st_rdev:
                problems.append("/dev/null is gone")
            tally.add(what, 1, lost, problems + [f"{name} is left behind" for name in place.leftovers()])
    return tally


def huge(full):
    """A source of many gigabytes fails, and the others are minified."""
    tally = Tally("source of 50 GB")
    for arguments in ((), IN_PLACE):
        with Place(sources(2)) as place:
            os.truncate(place.add("s0.css", b""), 50_000_000_000)
            del place.files["s0.css"]
            ended, peak = stubs.watched(place, place.start([*place.cli(), *arguments, str(place.site)]))
            problems = [] if ended.status == 1 and b"s0.css: " in ended.err else [f"ended with {ended.status}"]
            output = place.site / ("s1.css" if arguments else "s1.min.css")
            whole = output.exists() and output.read_bytes() == stub_output(place.files["s1.css"])
            problems += [] if whole else ["s1.css is not minified"]
            problems += [] if peak < 100_000 else [f"the program took {peak} KiB"]
            lost = [] if (place.site / "s0.css").stat().st_size == 50_000_000_000 else ["s0.css"]
            tally.add("huge", 2, lost, problems)
    return tally


def pipes(full):
    """Pipes and devices as sources are never opened, and each is said to have failed."""
    tally = Tally("pipes and devices in a folder")
    with Place() as place:
        sources_made = odd_places.make_no_files(place)
        log = place.top / "trace"
        ended = place.run(str(place.site), wrap=["strace", "-f", "-o", str(log), "-e", "trace=open,openat,openat2,creat"])
        problems = [f"ended with {ended.status}"] * (ended.status != 1)
        problems += [f"{name} is not named" for name in sources_made if f"{name}: ".encode() not in ended.err]
        problems += odd_places.opened(log)
        tally.add("plain", 0, [], problems)
    return tally


def cases(full):
    yield lambda: odd_places.rights(full)
    yield lambda: odd_places.vanishing(full)
    yield lambda: pipes(full)
    yield lambda: odd_places.loops(full)
    yield lambda: odd_outputs(full)
    yield lambda: edited(full)
    yield lambda: at_once(full)
    yield lambda: huge(full)
    yield from full_disk.outputs(full)
    yield lambda: injected.inject("run with a report, failing calls", full, injected.prepare_report,
                                  injected.judge_report, False)
    yield lambda: injected.inject("run with source maps and copies, failing calls", full, prepare_copies, judge_copies,
                                  False)
    yield lambda: injected.inject("run with source maps and copies, killed at a call", full, prepare_copies,
                                  judge_copies, False, True)
    yield lambda: injected.inject("run in place, failing calls", full, injected.prepare_in_place,
                                  injected.judge_run_in_place, False)
    yield lambda: injected.inject("run in place, killed at a call", full, injected.prepare_in_place,
                                  injected.judge_run_in_place, False, True)
    yield lambda: injected.inject("run over files with two names, failing calls", full, prepare_linked, judge_linked,
                                  False)
    yield lambda: injected.inject("run over files with two names, killed at a call", full, prepare_linked,
                                  judge_linked, False, True)
    yield lambda: killed.stub_in_place("batch in place, killed", full)
    yield lambda: killed_copies(full)
    yield lambda: killed.compressor(full)
    yield lambda: end_of_filters(full)
    yield lambda: too_slow(full)
    yield lambda: misbehaving(full)


def real_cases(full):
    yield from names.cases(full)
    yield from killed.real_cases(full)
