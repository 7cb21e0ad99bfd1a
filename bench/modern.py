# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs by the modern compressors, against the bare esbuild commands and against the classic run."""
import importlib.machinery
import importlib.util
import json
import os
import pathlib
import shlex
import shutil
import subprocess
import sys
import tempfile
import time

from measuring import BUILD, ROOT, add_row, rounds, timed

JOBS = str(os.cpu_count())
MODERN = ("--set", "compressorsKeyString=modern")
ESBUILD = BUILD / "libexec/esbuild"


def cli(scratch, *arguments):
    """The command, and its environment: a home of its own."""
    return [BUILD / "brevant-cli", "--quiet", *arguments], {**os.environ, "XDG_CONFIG_HOME": str(scratch / "config"),
                                                           "XDG_STATE_HOME": str(scratch / "state")}


def filter_of(source):
    """The filter that a run starts for a source, as it prints it, in words."""
    printed = subprocess.run([BUILD / "brevant-cli", *MODERN, "--dry-run", source], check=True, capture_output=True, text=True)
    words = shlex.split(printed.stdout)
    return words[:words.index("<")]


def small_style_sheets(folder, count=200):
    folder.mkdir()
    sources = [folder / f"{number}.css" for number in range(count)]
    for source in sources:
        source.write_text("".join(f".rule-{i} {{ color : #a{i % 10}b ; margin : 0 {i}px }}\n" for i in range(20)))
    return sources


def in_turn(pairs, count, clean):
    """Seconds of each command, run in turn `count` times."""
    times = [[] for _ in pairs]
    for number in range(count):
        order = list(enumerate(pairs))
        for index, (command, environment) in order if number % 2 == 0 else reversed(order):
            times[index].append(timed(command, env=environment))
            clean()
    return times


def compare(what, against, limit, pairs, clean, count=10, speed=False):
    """The time of the first over that of the second, or with `speed` the other way round."""
    first, second = in_turn(pairs, count, clean)
    ratios = [b / a if speed else a / b for a, b in zip(first, second)]
    value = sum(second) / sum(first) if speed else sum(first) / sum(second)
    add_row(what, against, limit, f"{value:.3f}" if value < 5 else f"{value:.1f}",
            f"{sum(first):.2f} s against {sum(second):.2f} s; {rounds(ratios)}")


def bench_modern(scratch):
    for place, limit in (("/dev/shm", "1.10"), (ROOT / "build", "1.3")):
        with tempfile.TemporaryDirectory(dir=place) as top:
            folder = pathlib.Path(top)
            sources = small_style_sheets(folder / "site")

            def clean():
                for output in (folder / "site").glob("*.min.css"):
                    output.unlink()
            words = shlex.join(filter_of(sources[0]))
            loop = ["/bin/sh", "-c", f'for f; do {words} < "$f" > "${{f%.css}}.min.css"; done', "sh", *sources]
            where = "tmpfs" if place == "/dev/shm" else "a disk"
            compare(f"modern, 200 CSS files, --jobs 1, on {where}", "shell loop of the same esbuild commands", limit,
                    [cli(folder, *MODERN, "--jobs", "1", *sources), (loop, None)], clean)
            if where == "a disk":
                continue
            list_of = folder / "names"
            list_of.write_text("".join(f"{str(source)[:-4]}\0" for source in sources))
            xargs = ["xargs", "-0", "-a", list_of, "-P", JOBS, "-I", "{}", "/bin/sh", "-c", f'exec {words} < "$1.css" > "$1.min.css"', "sh", "{}"]
            compare(f"speed of modern, 200 CSS files, --jobs {JOBS}, on {where}", f"xargs -P {JOBS} of the same esbuild commands", "at least 0.95",
                    [cli(folder, *MODERN, *sources), (xargs, None)], clean, speed=True)
            compare("speed of modern, 200 CSS files", "the classic run of them", "at least 15",
                    [cli(folder, *MODERN, *sources), cli(folder, *sources)], clean, count=2, speed=True)


def packages():
    """The sources of public packages that the trial of the compressors has fetched, or fetches now."""
    path = str(ROOT / "scripts/try-packages")
    sys.path.append(str(ROOT / "scripts"))  # for what it imports
    loader = importlib.machinery.SourceFileLoader("try_packages", path)
    trial = importlib.util.module_from_spec(importlib.util.spec_from_loader("try_packages", loader))
    loader.exec_module(trial)
    folder = ROOT / "build/try-packages"
    folder.mkdir(exist_ok=True)
    for package in trial.PACKAGES:
        for source in sorted(trial.fetch(package, folder).rglob("*")):
            if source.suffix in (".css", ".js", ".html") and source.is_file() and trial.is_source(source):
                yield source


def copied(sources, folder, most=None):
    """Copies with names of their own, up to so many bytes."""
    folder.mkdir()
    size, copies = 0, []
    for number, source in enumerate(sources):
        if most and size > most:
            break
        copies.append(pathlib.Path(shutil.copy(source, folder / f"{number}{source.suffix}")))
        size += copies[-1].stat().st_size
    return copies, size


def done(scratch, sources):
    """Those that a modern run takes; their outputs are removed again."""
    report = scratch / "report.json"
    command, environment = cli(scratch, *MODERN, "--report", report, *sources)
    subprocess.run(command, env=environment, stderr=subprocess.DEVNULL)
    files = json.loads(report.read_text())["files"]
    for source in sources:
        source.with_suffix(f".min{source.suffix}").unlink(missing_ok=True)
    return [source for source, file in zip(sources, files) if file["outcome"] == "done"]


def bench_packages(scratch):
    with tempfile.TemporaryDirectory(dir="/dev/shm") as top:
        folder = pathlib.Path(top)
        sources, _ = copied((path for path in packages() if path.suffix != ".html"), folder / "site", 22_000_000)
        sources = done(folder, sources)
        size = sum(source.stat().st_size for source in sources)
        one = [ESBUILD, "--minify", "--charset=utf8", "--log-level=error", f"--outdir={folder / 'out'}", *sources]
        compare(f"modern, {size / 1e6:.0f} MB of real sources in {len(sources)} files", "one esbuild process over all of them", "2.0",
                [cli(folder, *MODERN, *sources), (one, None)], lambda: None, count=5)


def bench_pages(scratch):
    pages = [path for path in packages() if path.suffix == ".html" and path.stat().st_size < 100_000]
    with tempfile.TemporaryDirectory(dir="/dev/shm") as top:
        folder = pathlib.Path(top)
        sources, _ = copied((pages * 100)[:100], folder / "site")
        on = ("--set", "enableHTMLCheckerKeyString=true")
        fair = done(folder, sources)
        # The classic run fails for some of them, which takes it no longer.
        quiet = [["/bin/sh", "-c", '"$@" 2> /dev/null || true', "sh", *command] for command in
                 (cli(folder, *MODERN, *on, *fair)[0], cli(folder, *on, *fair)[0])]
        environment = cli(folder)[1]
        compare(f"speed of modern, {len(fair)} real pages", "the classic run of them", "at least 30",
                [(command, environment) for command in quiet], lambda: None, count=2, speed=True)


def most_memory(process):
    """In bytes, of the program itself and not its filters."""
    peak = 0
    while process.poll() is None:
        try:
            with open(f"/proc/{process.pid}/status") as status:
                peak = max([peak, *(int(line.split()[1]) for line in status if line.startswith("VmHWM"))])
        except OSError:
            pass
        time.sleep(0.001)
    return peak * 1024


def bench_script(scratch):
    text, number = [], 0
    while sum(map(len, text[-1:])) * len(text) < 10_000_000:
        text.append(f"export function work{number:06}(first, second) {{ return first.map((value) => value ?? second); }}\n")
        number += 1
    source = scratch / "long.js"
    source.write_text("".join(text))
    command, environment = cli(scratch, *MODERN, source)
    process = subprocess.Popen(command, env=environment)
    peak = most_memory(process)
    assert process.returncode == 0
    add_row(f"memory for a script of {source.stat().st_size / 1e6:.0f} MB", "that of its filter, besides", "60 MB", f"{peak / 1e6:.1f} MB",
            "at most, of brevant-cli")


BENCHES = {"modern": bench_modern, "packages": bench_packages, "pages": bench_pages, "script": bench_script}
