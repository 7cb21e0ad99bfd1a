# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the measurements share: where things are, how they are timed, and the table."""
import pathlib
import statistics
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "bench"
LIB = BUILD / "resources" / "lib"
rows = []


def timed(command, **options):
    start = time.perf_counter()
    subprocess.run(command, check=True, stdout=subprocess.DEVNULL, **options)
    return time.perf_counter() - start


def add_row(what, against, limit, value, detail):
    rows.append((what, against, limit, value, detail))
    print(f"  {what}: {value} (limit {limit}; {detail})", flush=True)


def rounds(ratios):
    return f"rounds {min(ratios):.3f} to {max(ratios):.3f}, median {statistics.median(ratios):.3f}"
