# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What a run would do: the window Planned Outputs, and what Minify says of itself."""
from cases import run
from session import equal, wait_for

MODERN = '{"compressorsKeyString": "modern", "soundCheckerKeyString": false}'


def started(case):
    case.settings(MODERN)
    program = case.start(case.file("good.css"), case.file("bad.css", "a { color: red }"),
                         case.file("bad.min.css"))
    program.expect_names("good.css", "bad.css", "bad.min.css")
    return program


def planned(program):
    program.expect_active("Planned Outputs")
    return wait_for("Planned Outputs on the bus", lambda: program.root.first("frame", "Planned Outputs"))


def cells(window):
    return [cell.name for cell in window.find("table", "Planned Outputs").children if cell.role == "cell"]


def expect_problems(window, *problems):
    """Each as a text, or as several that are all right."""
    def found():
        return cells(window)[5::6]

    def as_expected():
        return len(found()) == len(problems) and all(
            text in (expected if isinstance(expected, tuple) else (expected,)) for text, expected in zip(found(), problems))
    wait_for(lambda: f"the problems {problems}, not {found()}", as_expected)


def with_the_mouse(case):
    program = started(case)
    equal(program.button("Minify").description, "Writes 3 minified copies beside their sources")
    program.choose("View", "Planned Outputs")
    window = planned(program)
    expect_problems(window, "", "Replaces the source in row 3", "Replaced by the output of row 2")
    program.click(window.find("check box", "Ready 1"))
    expect_problems(window, "")
    program.click(window.find("check box", "All 3"))
    program.click(window.find("push button", "Minify"))
    program.expect_status("Well done!")
    wait_for("the output", lambda: (case.folder / "good.min.css").exists())
    # Row 3 and its output have one time where both were written within a tick of the clock.
    replaced = "Replaced by the output of row 2"
    expect_problems(window, "Output is newer than the source", "Replaces the source in row 3",
                    (replaced, replaced + "; Output is newer than the source"))
    program.click(window.find("push button", "Preferences…"))
    program.expect_active("Preferences")


def with_the_keyboard(case):
    program = started(case)
    program.key("ctrl+shift+l")
    window = planned(program)
    expect_problems(window, "", "Replaces the source in row 3", "Replaced by the output of row 2")
    program.key("ctrl+f")
    program.type("replaced by")
    expect_problems(window, "Replaced by the output of row 2")
    program.key("Escape")
    expect_problems(window, "", "Replaces the source in row 3", "Replaced by the output of row 2")
    program.key("Escape")
    program.expect_active("Brevant")
    equal(program.status(), "3 items")
    program.key("ctrl+shift+l")
    program.expect_active("Planned Outputs")
    program.key("ctrl+w")
    program.expect_active("Brevant")
    program.key("ctrl+shift+l")
    program.expect_active("Planned Outputs")
    program.key("Return")
    wait_for("the output", lambda: (case.folder / "good.min.css").exists())
    program.expect_status("Well done!")


run([with_the_mouse, with_the_keyboard])
