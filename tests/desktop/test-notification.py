# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the desktop is told of runs: by a notification when nobody looks, and on the dock icon."""
from cases import run
from desktop_shell import Shell
from session import equal, wait_for

TEXT = b"a  {  color : red ; }\n"


def in_a_run(case):
    """A program with two files that is working on held.css, the first of them, until that is released."""
    shell = Shell(case.session)
    held = case.held_file("held.css")
    program = case.start(held.path, case.file("b.css", TEXT.decode()))
    program.expect_names("held.css", "b.css")
    program.click(program.button("Minify"))
    held.expect_reader()
    return shell, program, held


def expect_notified(shell, summary="Minified 2 files", body="~/site"):
    number = wait_for(lambda: f"{summary!r}, not {shell.shown}", lambda: shell.number_of(summary))
    equal(shell.shown[number], (summary, body))
    return number


def expect_none_shown(shell):
    wait_for(lambda: f"no notification, not {shell.shown}", lambda: not shell.turn().shown)


def a_click_brings_back(case, leave):
    shell, program, held = in_a_run(case)
    leave(program)
    held.release(TEXT)
    number = expect_notified(shell)
    shell.click(number)
    program.expect_active("Brevant")
    expect_none_shown(shell)
    program.expect_status("Well done!")
    equal(program.messages(), "")
    shell.leave()


def minimise(program):
    program.session.run("xdotool", "getactivewindow", "windowminimize")
    wait_for("the window to go", lambda: not program.windows())


def close(program):
    program.key("alt+F4")
    wait_for("the window to go", lambda: not program.windows())


def another_program_in_front(program, case):
    source = case.drag_source(case.file("other.css"))
    window = program.session.run("xdotool", "search", "--onlyvisible", "--pid", source.process.pid,
                                 "--name", "drag-source").split()[0].decode()
    program.session.run("xdotool", "windowactivate", window)
    program.expect_active("drag-source")


def a_minimised_window(case):
    a_click_brings_back(case, minimise)


def a_window_behind_another_program(case):
    a_click_brings_back(case, lambda program: another_program_in_front(program, case))


def a_hidden_window(case):
    a_click_brings_back(case, close)


def the_program_ends_and_its_notification_stays(case):
    shell, program, held = in_a_run(case)
    close(program)
    held.release(TEXT)
    expect_notified(shell)
    # It waits for a click first.
    wait_for("the end of the program", lambda: shell.turn() and program.process.poll() is not None, 60)
    program.wait_for_exit()
    equal(list(shell.turn().shown.values()), [("Minified 2 files", "~/site")])
    shell.leave()


def who_looks_is_left_alone(case):
    shell, program, held = in_a_run(case)
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    held.release(TEXT)
    program.expect_status("Well done!")
    wait_for("the progress to go", lambda: shell.turn().progress[-1:] == [None])
    equal(shell.notified, [])
    shell.leave()


def quitting_says_nothing(case):
    shell, program, held = in_a_run(case)
    program.key("ctrl+q")
    wait_for("the window to go", lambda: not program.windows())
    held.release(TEXT)
    wait_for("the end of the program", lambda: shell.turn() and program.process.poll() is not None)
    program.wait_for_exit()
    equal(shell.turn().notified, [])
    equal(shell.progress, [0.0, None])
    shell.leave()


def progress_beside_the_badge(case):
    shell, program, held = in_a_run(case)
    wait_for(lambda: f"the start of the run, not {shell.progress}", lambda: shell.turn().progress == [0.0])
    equal(shell.badge, 2)
    held.release(TEXT)
    program.expect_status("Well done!")
    wait_for(lambda: f"a whole run, not {shell.progress}", lambda: shell.turn().progress == [0.0, 0.5, None])
    equal(shell.badge, 2)
    equal(shell.notified, [])
    shell.leave()


run([a_minimised_window, a_window_behind_another_program, a_hidden_window,
     the_program_ends_and_its_notification_stays,
     who_looks_is_left_alone, quitting_says_nothing, progress_beside_the_badge])
