# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What became of every file: the mark beside the status line, and the window Results."""
import json

from cases import run
from session import equal, wait_for

GOOD = "a  {  color : red ; }\n"
BAD = "var = ;\n"
DAMAGED = "@media print {\n  .a { color: red }\n  .b { width: calc(1px + 2px) }\n}\n"


def after_a_run(case):
    program = case.start(case.file("good.css", GOOD), case.file("bad.js", BAD), case.file("other.js", BAD))
    program.expect_names("good.css", "bad.js", "other.js")
    program.click(program.button("Minify"))
    program.expect_status("Well done!")
    wait_for("the mark", lambda: program.has_button("Results: 2 of 3 failed"))
    return program


def results(program):
    program.expect_active("Results")
    return wait_for("Results on the bus", lambda: program.root.first("frame", "Results"))


def table(window):
    return window.find("table", "Results")


def cells(window):
    return [cell.name for cell in table(window).children if cell.role == "cell"]


def expect_files(window, *names):
    def found():
        shown = cells(window)
        return [name for name in shown if name.endswith((".css", ".js"))]
    wait_for(lambda: f"the files {names}, not {found()}", lambda: found() == list(names))


def with_the_mouse(case):
    program = after_a_run(case)
    program.click(program.button("Results: 2 of 3 failed"))
    window = results(program)
    expect_files(window, "bad.js", "other.js", "good.css")
    program.click(window.find("check box", "Done 1"))
    expect_files(window, "good.css")
    program.click(window.find("check box", "All 3"))
    expect_files(window, "bad.js", "other.js", "good.css")
    (case.folder / "bad.js").write_text("var  a  =  1 ;\n")
    program.click(window.find("push button", "Retry Failed"))
    expect_files(window, "other.js", "bad.js")
    wait_for("the output", lambda: (case.folder / "bad.min.js").exists())
    equal(program.status(), "Well done!")
    wait_for("the mark of that run", lambda: program.has_button("Results: 1 of 2 failed"))
    program.key("Escape")
    program.expect_active("Brevant")
    program.click(program.button("Clear"))
    wait_for("the mark to go", lambda: not program.has_button("Results: 1 of 2 failed"))


def with_the_keyboard(case):
    program = after_a_run(case)
    program.key("Tab")
    program.key("space")
    window = results(program)
    expect_files(window, "bad.js", "other.js", "good.css")
    program.key("Return")
    program.expect_active("bad.js")
    program.key("Escape")
    program.expect_active("Results")
    program.key("ctrl+f")
    program.type("other")
    expect_files(window, "other.js")
    program.key("Escape")
    expect_files(window, "bad.js", "other.js", "good.css")
    program.key("alt+s")
    program.expect_active("Save Report")
    program.key("ctrl+a")
    program.type(str(case.folder / "report.json"))
    program.key("Return")
    report = wait_for("the report", lambda: (case.folder / "report.json").exists() and
                      json.loads((case.folder / "report.json").read_text()))
    equal((report["done"], report["failed"], report["notRun"]), (1, 2, 0))
    program.expect_active("Results")
    program.key("Escape")
    program.expect_active("Brevant")
    program.key("ctrl+l")
    program.expect_active("Results")


def the_focus_goes_round(case):
    program = after_a_run(case)
    program.key("ctrl+l")
    window = results(program)
    wait_for("the focus on the table", lambda: "focused" in table(window).states)
    for name in ("Open", "Copy Path", "Messages", "Save Report…", "Retry Failed",
                 window.find("combo box").name, "All 3", "Filter"):
        program.key("Tab")
        program.expect_focus(name)
    program.key("Tab")
    wait_for("the focus on the table", lambda: "focused" in table(window).states)
    program.key("shift+Tab", "shift+Tab")
    program.expect_focus("All 3")
    program.key("Right")
    program.expect_focus("Done 1")
    expect_files(window, "good.css")
    program.key("ctrl+w")
    program.expect_active("Brevant")


def newer_javascript_with_the_keyboard(case):
    program = case.start(case.file("new.js", "let a = () => 1;\n"))
    program.expect_names("new.js")
    program.key("Return")
    program.expect_status("Well done!")
    program.key("ctrl+l")
    window = results(program)
    window.find("push button", "Minify It With Modern Compressors")
    program.key(*["Tab"] * 6)
    program.expect_focus(window.find("combo box").name)
    for name in ("Minify It With Modern Compressors", "Always", "Close"):
        program.key("Tab")
        program.expect_focus(name)
    program.key("shift+Tab", "shift+Tab", "Return")
    output = case.folder / "new.min.js"
    wait_for("the output", lambda: output.exists() and output.read_text().strip() == "let a=()=>1;")
    wait_for("the focus on the table", lambda: "focused" in table(window).states)


def with_what_is_damaged(case):
    program = case.start(case.file("good.css", GOOD), case.file("damaged.css", DAMAGED))
    program.expect_names("good.css", "damaged.css")
    program.click(program.button("Minify"))
    program.expect_status("Well done!")
    program.key("ctrl+l")
    window = results(program)
    expect_files(window, "damaged.css", "good.css")
    wait_for("the warning", lambda: "Warning: 1 declaration damaged" in cells(window))
    program.click(window.find("check box", "Warnings 1"))
    expect_files(window, "damaged.css")
    program.click(window.find("cell", "damaged.css"))
    loss = "Line 3: declaration changed in @media print, .b: width: calc(1px + 2px) → calc(1px+2px)"
    wait_for("the loss", lambda: window.find("text", "Messages").text == loss)
    program.key("Return")
    program.expect_active("damaged.css")
    program.key("Escape")
    program.expect_active("Results")


def originals_put_back(case):
    case.settings('{"suffixSwitcherKeyString": false, "keepOriginalsCheckerKeyString": true}')
    program = case.start(case.file("good.css", GOOD))
    source = case.folder / "good.css"
    program.expect_names("good.css")
    program.click(program.button("Minify"))
    program.expect_status("Well done!")
    equal(source.read_text(), "a{color:red}")
    program.key("ctrl+l")
    window = results(program)
    expect_files(window, "good.css")
    program.key("alt+r")
    wait_for("the original", lambda: source.read_text() == GOOD)
    wait_for("the state of the row", lambda: "Put back" in cells(window))
    program.key("Escape")
    program.expect_active("Brevant")
    program.click(program.button("Minify"))
    wait_for("the output", lambda: source.read_text() == "a{color:red}")
    program.expect_status("Well done!")
    source.write_text("newer {}")
    program.key("ctrl+l")
    expect_files(results(program), "good.css")
    program.key("alt+r")
    wait_for("the question", lambda: program.root.first("push button", "Save Beside"))
    program.key("Return")
    wait_for("the second name", lambda: (case.folder / "good.original.css").exists())
    equal((case.folder / "good.original.css").read_text(), GOOD)
    equal(source.read_text(), "newer {}")


run([with_the_mouse, with_the_keyboard, the_focus_goes_round, newer_javascript_with_the_keyboard,
     with_what_is_damaged, originals_put_back])
