# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Runs: what goes on in the list meanwhile, and two of them at once."""
import os

from brevant import Program
from cases import run
from session import equal, wait_for

TEXT = b"a  {  color : red ; }\n"
SHORT = b"a{color:red}"


def in_a_run(case, *names):
    """A program that is working on held.css, the first of its files, until that is released."""
    held = case.held_file("held.css")
    program = case.start(held.path, *(case.file(name, TEXT.decode()) for name in names))
    program.expect_names("held.css", *names)
    program.click(program.button("Minify"))
    held.expect_reader()
    return program, held


def output(case, name):
    path = case.folder / name
    return path.read_bytes() if path.exists() else None


def the_run_is_shown(case):
    program, held = in_a_run(case, "b.css")
    program.expect_status("Minified 1 of 2 items.")
    program.expect_selected("held.css")
    wait_for("the buttons to go",
             lambda: not program.has_button("Minify") and not program.has_button("Clear"))
    file_menu = program.window.find("menu bar").find("menu item", "File")
    for name in ("Minify", "Clear"):
        equal("enabled" in file_menu.first("menu item", name).states, False, f"{name} in the menu")
    held.release(TEXT)
    program.expect_status("Well done!")
    program.expect_selected()
    wait_for("the buttons to come back",
             lambda: program.has_button("Minify") and program.has_button("Clear"))
    equal("enabled" in file_menu.first("menu item", "Minify").states, True, "Minify in the menu")
    equal((output(case, "held.min.css"), output(case, "b.min.css")), (SHORT, SHORT))


def rows_are_removed_during_a_run(case):
    program, held = in_a_run(case, "b.css", "c.css", "d.css")
    program.expect_status("Minified 1 of 4 items.")
    program.click(program.row("c.css"))
    program.expect_selected("c.css")
    program.key("Delete")
    program.expect_names("held.css", "b.css", "d.css")
    held.release(TEXT)
    program.expect_status("Well done!")
    equal([output(case, f"{name}.min.css") for name in ("held", "b", "c", "d")], [SHORT, SHORT, None, SHORT])


def the_list_is_emptied_during_a_run(case):
    program, held = in_a_run(case, "b.css")
    program.expect_status("Minified 1 of 2 items.")
    program.key("ctrl+shift+BackSpace")  # not to be had during a run
    program.key("ctrl+a")
    program.expect_selected("held.css", "b.css")
    program.key("Delete")
    program.expect_names()
    held.release(TEXT)
    program.expect_status("Well done!")
    equal((output(case, "held.min.css"), output(case, "b.min.css")), (SHORT, None))
    program.click(wait_for("Clear", lambda: program.has_button("Clear") and program.button("Clear")))
    program.expect_status("")


def a_drop_starts_a_second_run(case):
    case.settings('{"autoMinifyCheckerKeyString": true}')
    held = case.held_file("held.css")
    program = case.start()
    x, y, _width, _height = program.table.extents
    case.drop(x + 12, y + 12, held.path)
    program.expect_names("held.css")
    held.expect_reader()
    # Or the second run would begin with it, too.
    program.click(program.row("held.css"))
    program.expect_active("Brevant")
    program.key("Delete")
    program.expect_names()
    case.drop(x + 12, y + 12, case.file("second.css", TEXT.decode()))
    wait_for("the output of the second run", lambda: output(case, "second.min.css") == SHORT)
    program.expect_status("Well done!")
    equal(output(case, "held.min.css"), None)
    held.release(TEXT)
    wait_for("the output of the first run", lambda: output(case, "held.min.css") == SHORT)
    program.expect_status("Well done!")
    equal(program.messages(), "")


def closed_streams(case):
    process = case.session.start("/bin/sh", "-c", 'exec "$0" "$1" <&- >&- 2>&-', case.brevant, case.file("a.css"))
    program = case.keep(Program(case.session, case.brevant, process=process))
    equal([os.readlink(f"/proc/{process.pid}/fd/{number}") for number in range(3)], ["/dev/null"] * 3)
    program.click(program.button("Minify"))
    program.expect_status("Well done!")


run([the_run_is_shown, rows_are_removed_during_a_run, the_list_is_emptied_during_a_run,
     a_drop_starts_a_second_run, closed_streams])
