# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The list: its menu, the preview of its rows, combining them, and the window around it."""
from cases import run
from session import equal, wait_for


def three_rows(case):
    program = case.start(case.file("a.css", "a{color:red}\n"), case.file("b.js", "var b = 1;\n"),
                         case.file("c.css", "c{color:blue}\n"))
    program.expect_names("a.css", "b.js", "c.css")
    return program


def below_the_rows(program):
    x, y, width, height = program.table.extents
    return x + width // 2, y + height - 20


def preview(program):
    """The text in the preview, while it shows any."""
    for window in program.root.children:
        for node in window.walk() if window != program.window else ():
            if node.name.startswith("Text of ") and "showing" in node.states:
                return node
    return None


def a_right_click_adds_the_row(case):
    program = three_rows(case)
    program.click(program.row("a.css"))
    program.click(program.row("c.css"), button=3)
    x, y, width, height = wait_for("the menu", program.context_menu)
    program.expect_selected("a.css", "c.css")
    program.click((x + width // 2, y + height - 12))  # its last item: Remove
    program.expect_names("b.js")
    program.expect_status("1 item")


def a_right_click_below_the_rows_shows_no_menu(case):
    program = three_rows(case)
    program.click(program.row("b.js"))
    program.expect_selected("b.js")
    program.click(below_the_rows(program), button=3)
    # An open menu would take the key away from the list.
    program.key("Down")
    program.expect_selected("c.css")
    equal(program.context_menu(), None)


def space_opens_the_preview_and_closes_it(case):
    program = three_rows(case)
    program.key("space")  # no row is selected, and nothing happens
    program.click(program.row("a.css"))
    program.expect_selected("a.css")
    equal(preview(program), None)
    program.key("space")
    program.expect_active("a.css")
    wait_for("the text of a.css", lambda: "a{color:red}" in preview(program).text)
    program.key("space")
    wait_for("the preview to close", lambda: preview(program) is None)
    program.expect_active("Brevant")
    program.expect_selected("a.css")


def the_preview_follows_the_arrow_keys(case):
    program = three_rows(case)
    program.click(program.row("a.css"))
    program.key("space")
    program.expect_active("a.css")
    program.key("Down")
    program.expect_active("b.js")
    program.expect_selected("b.js")
    wait_for("the text of b.js", lambda: preview(program) and "var b = 1;" in preview(program).text)
    program.key("shift+Down")
    program.expect_selected("b.js", "c.css")
    wait_for("the place among the selected ones", lambda: program.root.first("label", "1 of 2"))
    program.key("Escape")
    wait_for("the preview to close", lambda: preview(program) is None)
    program.expect_active("Brevant")
    # The keys are the list's again.
    program.key("Up")
    program.expect_selected("b.js")


def a_click_right_after_the_preview_is_the_lists(case):
    """Its picture is still on its way back over the list then."""
    program = three_rows(case)
    x, y = program.row("c.css").centre
    for pause in (0.02, 0.03, 0.04, 0.05):
        program.click(program.row("a.css"))
        program.expect_selected("a.css")
        program.key("space")
        program.expect_active("a.css")
        wait_for("the panel alone over the window", lambda: len(program.windows()) == 2)
        case.session.run("xdotool", "key", "Escape", "sleep", pause, "mousemove", x, y, "mousedown", "1",
                         "sleep", "0.01", "mouseup", "1")
        program.expect_selected("c.css")


def css_files_are_combined_with_keys(case):
    program = case.start(case.file("a.css", "a{color:red}\n"), case.file("b.css", "b{color:blue}\n"))
    program.expect_names("a.css", "b.css")
    program.key("ctrl+a", "ctrl+j")
    program.expect_active("Save Combined File")
    name = program.root.find("dialog", "Save Combined File").find("text", "File name:")
    equal(name.text, "combined.css")
    program.key("ctrl+a")
    program.type(str(case.folder / "both"))
    program.key("Return")
    program.expect_names("both.css")
    program.expect_selected("both.css")
    program.expect_status("1 item")
    equal((case.folder / "both.css").read_text(), "a{color:red}\n\nb{color:blue}\n\n")


def different_kinds_are_not_combined(case):
    program = three_rows(case)
    program.key("ctrl+a", "ctrl+j")
    alert = program.root.find("alert message")
    texts = [label.name for label in alert.all("label") if label.name]
    equal(texts, ["Combine different kinds of files?", "No, please select only one kind of files at a time."])
    program.key("Return")
    program.expect_active("Brevant")
    program.expect_names("a.css", "b.js", "c.css")


def the_menu_bar_clears(case):
    program = three_rows(case)
    program.choose("File", "Clear")
    program.expect_names()
    program.expect_status("")
    equal(program.has_button("Clear"), False)


def the_window_keeps_a_smallest_size(case):
    program = three_rows(case)
    window = case.session.run("xdotool", "getactivewindow").decode().strip()
    equal(program.window.extents[2:], (520, 560))
    case.session.run("xdotool", "windowsize", window, 100, 100)
    wait_for(lambda: f"a small window, not {program.window.extents}",
             lambda: program.window.extents[2:] == (360, 320))
    # What must be in sight still is.
    _x, _y, width, height = program.window.extents
    for name in ("Clear", "Minify"):
        x, y, button_width, button_height = program.button(name).extents
        equal(x + button_width <= _x + width and y + button_height <= _y + height, True, name)


def the_window_is_moved_by_its_background(case):
    program = three_rows(case)
    program.expect_moved_by(*below_the_rows(program))
    program.choose("File", "Clear")
    program.expect_names()
    program.expect_moved_by(*program.table.centre)  # over the picture
    x, y, width, height = program.window.extents
    program.expect_moved_by(x + width // 2, y + height - 5)


run([a_right_click_adds_the_row, a_right_click_below_the_rows_shows_no_menu,
     space_opens_the_preview_and_closes_it, the_preview_follows_the_arrow_keys,
     a_click_right_after_the_preview_is_the_lists, css_files_are_combined_with_keys, different_kinds_are_not_combined, the_menu_bar_clears,
     the_window_keeps_a_smallest_size, the_window_is_moved_by_its_background])
