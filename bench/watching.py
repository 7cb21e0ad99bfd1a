# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""brevant-cli --watch over many files: what it holds, what it does while nothing changes, and how soon an output is there."""
import os
import pathlib
import signal
import statistics
import subprocess
import time

from measuring import BUILD, add_row

FILES = 50_000
SAVES = 30


def status_of(process, name):
    for line in pathlib.Path(f"/proc/{process.pid}/status").read_text().splitlines():
        if line.startswith(name):
            return int(line.split()[1])
    raise KeyError(name)


def wait_for(condition):
    while not condition():
        time.sleep(0.001)


def bench_watching(scratch):
    for number in range(FILES):
        folder = scratch / "site" / f"folder{number // 1000:02}" / f"part{number // 50 % 20:02}"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"style-sheet-{number:05}.css").write_text("a { b : c }")
    os.environ["XDG_CONFIG_HOME"] = str(scratch / "config")
    os.environ["XDG_STATE_HOME"] = str(scratch / "state")
    command = [BUILD / "brevant-cli", "--changed", "--compressors", "modern", "--quiet", "site"]
    subprocess.run(command, check=True, cwd=scratch)
    said = scratch / "said"
    start = time.perf_counter()
    with open(said, "w") as out:
        process = subprocess.Popen([BUILD / "brevant-cli", "--watch", "--delete", *command[1:4], "site"], cwd=scratch, stdout=out)
    wait_for(lambda: "Ctrl+C ends." in said.read_text())
    ready = time.perf_counter() - start
    time.sleep(1)
    memory, waits = status_of(process, "VmRSS:"), status_of(process, "voluntary_ctxt_switches:")
    time.sleep(10)
    waits = status_of(process, "voluntary_ctxt_switches:") - waits
    source = scratch / "site/folder25/part10/style-sheet-25500.css"
    output = source.with_suffix(".min.css")
    times, bare = [], []
    for number in range(SAVES):
        begin = time.perf_counter()
        source.write_text(f"a {{ b : c{number} }}")
        wait_for(lambda: output.read_text() == f"a{{b:c{number}}}")
        times.append(time.perf_counter() - begin)
        begin = time.perf_counter()
        subprocess.run([BUILD / "libexec/esbuild", "--minify", source], check=True, stdout=subprocess.DEVNULL)
        bare.append(time.perf_counter() - begin)
        time.sleep(0.2)
    process.send_signal(signal.SIGINT)
    assert process.wait() == 130
    add_row(f"brevant-cli --watch --changed --delete, {FILES:,} files", "", "60 MB", f"{memory / 1000:.1f} MB",
            f"resident memory in 1,051 folders; {ready:.1f} s until it waits, with nothing to minify")
    add_row("the same while nothing changes", "", "no wake-up", f"{waits}", "in 10 s")
    late = (statistics.median(times) - statistics.median(bare)) * 1000
    add_row("the same, from a save to its output", "`esbuild` alone", "200 ms more", f"{late:.0f} ms more",
            f"medians of {SAVES}: {statistics.median(times) * 1000:.0f} ms, of which 100 ms are for more changes, "
            f"against {statistics.median(bare) * 1000:.0f} ms; at most {max(times) * 1000:.0f} ms")


BENCHES = {"watching": bench_watching}
