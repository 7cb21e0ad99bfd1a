# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs the cases of one script: test-….py BREVANT DRAG-SOURCE FOLDER-FOR-PICTURES [CASE…]."""
import shutil
import subprocess
import sys
import time
import traceback
from pathlib import Path

from brevant import DragSource, HeldFile, Program
from session import Session


class Case:
    """What one case has to work with: a session, a home and a folder of its own."""

    def __init__(self, session, name, brevant, drag_source):
        self.session, self.brevant, self._drag_source = session, brevant, drag_source
        session.set_home(name)
        self.folder = session.home / "site"
        self.folder.mkdir()
        self.jars = Path(brevant).resolve().parent / "resources/lib"
        self._started = []

    def start(self, *arguments):
        return self.keep(Program(self.session, self.brevant, *arguments))

    def drag_source(self, *arguments):
        for started in self._started:
            if isinstance(started, DragSource):
                started.end()  # its window would lie over the new one
        return self.keep(DragSource(self.session, self._drag_source, *arguments))

    def drop(self, x, y, *arguments):
        """A whole drag of files from another program that are taken; returns what became of it. The other
        program must live on: what was dropped is fetched from it later."""
        source = self.drag_source(*arguments)
        source.pick_up()
        source.drag_to(x, y)
        source.expect_taken(x, y)
        return source.drop()

    def file(self, name, text="a { color: red; }\n"):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")
        return path

    def held_file(self, name):
        return HeldFile(self.folder / name)

    def settings(self, text):
        """The stored settings that the next program starts with."""
        file = self.session.home / "config/brevant/settings.json"
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text)

    def compressed(self, path, *arguments):
        """What the bare compressor makes of a file."""
        output = self.session.home / "bare-output"
        command = ["/usr/bin/java", "-jar", *arguments, str(path), "-o", str(output), "--charset", "utf-8"]
        subprocess.run(command, cwd=self.jars, check=True, timeout=60, stdin=subprocess.DEVNULL)
        return output.read_bytes()

    def bare_yui(self, path):
        return self.compressed(path, "yuicompressor-2.4.8.jar")

    def bare_html(self, path):
        return self.compressed(path, "htmlcompressor-1.5.3.jar", "--type", "html", "--compress-js",
                               "--compress-css", "--remove-intertag-spaces")

    def keep(self, started):
        self._started.append(started)
        return started

    def end(self):
        for started in reversed(self._started):
            started.end()

    def messages(self):
        return "".join(started.messages() for started in self._started if isinstance(started, Program))


def run(cases, desktop=Session, **options):
    """Status 77, where the desktop cannot be had: skipped."""
    brevant, drag_source, pictures, *chosen = sys.argv[1:]
    for tool in desktop.needs:
        if not shutil.which(tool):
            print(f"skipped: {tool} was not found")
            sys.exit(77)
    failed = []
    with desktop(**options) as session:
        for function in cases:
            name = function.__name__
            if chosen and name not in chosen:
                continue
            started = time.monotonic()
            case = Case(session, name, brevant, drag_source)
            picture = Path(pictures) / f"{Path(sys.argv[0]).stem}-{name}.png"
            picture.unlink(missing_ok=True)
            try:
                function(case)
                print(f"ok    {name}  {time.monotonic() - started:.1f} s", flush=True)
            except Exception:  # every case gets its turn
                failed.append(name)
                print(f"FAIL  {name}  {time.monotonic() - started:.1f} s\n{traceback.format_exc()}"
                      f"messages of Brevant: {case.messages()!r}\npicture: {picture}", flush=True)
                session.screenshot(picture)
            finally:
                session.let_go()
                case.end()
    sys.exit(f"failed: {', '.join(failed)}" if failed else 0)
