# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""How well brevant-cli --check warns, held against what a browser finds. Used by scripts/try-packages."""

import subprocess
import sys
from pathlib import Path

BENCH = Path(__file__).resolve().parent.parent / "build/bench/bench-check"


class Count:
    """How often something was said, and how often it should have been."""

    def __init__(self):
        self.right = self.wrong = self.missed = self.silent = 0

    def add(self, is_damaged, is_warned):
        if is_damaged:
            self.right, self.missed = self.right + is_warned, self.missed + (not is_warned)
        else:
            self.wrong, self.silent = self.wrong + is_warned, self.silent + (not is_warned)


def share(part, whole):
    return f"{part:,} of {whole:,} ({part / whole:.3f})" if whole else "–"


class Marks:
    """Of the files of one set, as scripts/try-packages compares them."""

    def __init__(self, kinds):
        self.sheets, self.pages, self.declarations = Count(), Count(), Count()
        self.found = self.lost = 0
        for file in kinds["css"]:
            self._add(self.sheets, file, [warning for warning in file["warnings"] if "property" in warning])
            self._add_declarations(file)
        for file in kinds["html"]:
            self._add(self.pages, file, [warning for warning in file["warnings"] if "glued" in warning["text"]])
        self.seconds = self._time([file for kind in ("css", "html") for file in kinds[kind]])

    @staticmethod
    def _add(count, file, warnings):
        is_damaged, is_warned = bool(file["lost"]), bool(warnings)
        count.add(is_damaged, is_warned)
        if is_damaged != is_warned:
            print(f"{'missed' if is_damaged else 'wrong'}: {file['path']}: {(file['lost'] or warnings)[0]}", file=sys.stderr)

    def _add_declarations(self, file):
        """A warning is right if a declaration that it names is lost; a lost one is found if a warning names it."""
        lost = {one["key"] for one in file["lost"]}
        for keys in file["warned"]:
            self.declarations.add(not lost.isdisjoint(keys), True)
        self.lost += len(lost)
        self.found += len(lost.intersection(*[set().union(*file["warned"])])) if file["warned"] else 0

    @staticmethod
    def _time(files):
        """Seconds for each megabyte of source; nothing where bench/run has not built what measures it."""
        if not BENCH.exists():
            return None
        pairs = [path for file in files for path in (file["path"], file["output"])]
        seconds = float(subprocess.run([BENCH, *pairs], capture_output=True, check=True, text=True).stdout)
        return seconds / (sum(file["path"].stat().st_size for file in files) / 1e6)

    def rows(self):
        yield "style sheets warned of, of damaged ones", share(self.sheets.right, self.sheets.right + self.sheets.missed)
        yield "damaged, of those warned of", share(self.sheets.right, self.sheets.right + self.sheets.wrong)
        yield "silent, of undamaged ones", share(self.sheets.silent, self.sheets.silent + self.sheets.wrong)
        yield "declarations warned of, of lost ones", share(self.found, self.lost)
        yield ("warnings of declarations that are right",
               share(self.declarations.right, self.declarations.right + self.declarations.wrong))
        yield "pages warned of, of those with other visible text", share(self.pages.right, self.pages.right + self.pages.missed)
        yield "with other visible text, of those warned of", share(self.pages.right, self.pages.right + self.pages.wrong)
        yield "silent, of pages with the same text", share(self.pages.silent, self.pages.silent + self.pages.wrong)
        yield "time for each MB", "–" if self.seconds is None else f"{self.seconds:.2f} s"


def print_marks(sets):
    print("| | " + " | ".join(name for name, _ in sets) + " |\n|---|" + "---|" * len(sets))
    for row in zip(*(marks.rows() for _, marks in sets)):
        print(f"| {row[0][0]} | " + " | ".join(value for _, value in row) + " |")
