# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""How the program ends: at once, or after the file or the run it is busy with."""
import os
import signal
import time

from cases import run
from session import equal, wait_for

TEXT = b"a  {  color : red ; }\n"
SHORT = b"a{color:red}"


def in_a_run(case):
    held = case.held_file("held.css")
    program = case.start(held.path, case.file("next.css", TEXT.decode()))
    program.expect_names("held.css", "next.css")
    program.click(program.button("Minify"))
    held.expect_reader()
    return program, held


def outputs(case):
    return {path.name: path.read_bytes() for path in case.folder.glob("*.min.css")}


def ends_after_the_file(case, program, held):
    wait_for("the window to go", lambda: not program.windows())
    equal(program.process.poll(), None, "still busy with the file")
    held.release(TEXT)
    program.wait_for_exit()
    equal(outputs(case), {"held.min.css": SHORT})
    equal(program.messages(), "")


def ctrl_q_during_a_run(case):
    program, held = in_a_run(case)
    program.key("ctrl+q")
    ends_after_the_file(case, program, held)


def sigterm_during_a_run(case):
    program, held = in_a_run(case)
    os.kill(program.process.pid, signal.SIGTERM)
    ends_after_the_file(case, program, held)


def sigint_during_a_run(case):
    program, held = in_a_run(case)
    os.kill(program.process.pid, signal.SIGINT)
    ends_after_the_file(case, program, held)


def a_second_sigint_during_a_run(case):
    program, held = in_a_run(case)
    os.kill(program.process.pid, signal.SIGINT)
    wait_for("the window to go", lambda: not program.windows())
    equal(program.process.poll(), None, "still busy with the file")
    time.sleep(0.6)  # sooner it would be the same request
    os.kill(program.process.pid, signal.SIGINT)
    program.wait_for_exit(128 + signal.SIGINT)
    held.expect_no_reader()


def the_window_is_closed_during_a_run(case):
    program, held = in_a_run(case)
    program.key("alt+F4")
    wait_for("the window to go", lambda: not program.windows())
    equal(program.process.poll(), None, "still running")
    held.release(TEXT)
    program.wait_for_exit()
    equal(outputs(case), {"held.min.css": SHORT, "next.min.css": SHORT})


def the_window_is_closed(case):
    program = case.start(case.file("a.css"))
    program.expect_names("a.css")
    program.key("alt+F4")
    program.wait_for_exit()
    equal(program.messages(), "")


def other_windows_do_not_keep_it(case):
    program = case.start(case.file("a.css"))
    program.click(program.row("a.css"))
    program.key("space")
    program.expect_active("a.css")
    program.key("Escape")
    wait_for("the preview to be gone", lambda: len(program.windows()) == 1)
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    program.click(program.row("a.css"))
    program.expect_active("Brevant")
    program.key("alt+F4")
    program.wait_for_exit()


def quit_in_the_menu(case):
    program = case.start()
    program.choose("File", "Quit")
    program.wait_for_exit()
    equal(program.messages(), "")


run([ctrl_q_during_a_run, sigterm_during_a_run, sigint_during_a_run, a_second_sigint_during_a_run,
     the_window_is_closed_during_a_run, the_window_is_closed, other_windows_do_not_keep_it, quit_in_the_menu])
