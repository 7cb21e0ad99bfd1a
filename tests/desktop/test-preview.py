# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The two pages of the preview: a file and its output."""
from cases import run
from session import wait_for


def footer(program, start):
    def shown():
        return [label.name for label in program.root.all("label") if label.name.startswith(start)]
    wait_for(lambda: f"a label that begins with {start!r}", shown)


def pages(case):
    program = case.start(case.file("a.css", "a  {  color : red ; }\n"), case.file("b.js", "var = ;\n"))
    program.expect_names("a.css", "b.js")
    program.click(program.button("Minify"))
    program.expect_status("Well done!")
    program.click(program.row("a.css"))
    program.key("space")
    program.expect_active("a.css")
    footer(program, "22 bytes, minified 12 bytes (45.5 % saved)")
    program.click(program.root.find("check box", "Minified"))
    footer(program, "12 bytes, source 22 bytes (45.5 % saved)")
    program.key("Down")  # which is the list's
    program.expect_selected("b.js")
    footer(program, "8 bytes  ·  1 line")
    wait_for("the other page to be greyed",
             lambda: "enabled" not in program.root.find("check box", "Minified").states)
    program.key("space")
    program.expect_active("Brevant")


run([pages])
