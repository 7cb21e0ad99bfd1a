# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The preferences, with the pointer and the keys of a user: all of it is stored at once."""
from cases import run
from session import equal, wait_for


def preferences(case):
    program = case.start()
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    window = wait_for("the preferences", lambda: next(
        (node for node in program.root.children if node.name == "Preferences"), None))
    return program, window


def turn_to(program, window, page):
    program.click(window.find("page tab", page))
    window.find("page tab list", page)


def expect_stored(program, **settings):
    wait_for(lambda: f"{settings} in {program.settings()}",
             lambda: settings.items() <= program.settings().items())


def warning(program):
    """The headline and the text of the warning that is open, and its button."""
    alert = program.root.find("alert message")
    texts = [label.name for label in alert.all("label") if label.name]
    return texts, alert.find("push button")


def check_boxes_are_stored_at_once(case):
    program, window = preferences(case)
    box = window.find("check box", "Also make a gzip copy (.gz)")
    equal("checked" in box.states, False)
    program.click_check_box(box)
    expect_stored(program, gzipCheckerKeyString=True)
    equal("checked" in box.states, True)
    program.click_check_box(box)
    expect_stored(program, gzipCheckerKeyString=False)
    turn_to(program, window, "Files and Runs")
    program.click_check_box(window.find("check box", "Accept HTML files"))
    expect_stored(program, enableHTMLCheckerKeyString=False)
    equal(len(program.root.all("alert message")), 0)


def the_line_break_column_is_typed(case):
    program, window = preferences(case)
    turn_to(program, window, "Compressors")
    field = window.find("text", "Column after which lines break")
    equal("enabled" in field.states, False)
    program.click_check_box(window.find("check box", "Break lines after column"))
    expect_stored(program, lineBreakSwitcherKeyString=True)
    wait_for("a field to type in", lambda: "enabled" in field.states)
    program.click(field)
    program.key("ctrl+a")
    program.type("80")
    expect_stored(program, lineBreakKeyString="80")


def the_same_name_as_the_source_is_warned_of(case):
    program, window = preferences(case)
    program.click(window.find("radio button", "The same as source"))
    texts, button = warning(program)
    equal(texts[0], "Be careful with this option")
    equal(texts[1].endswith("your source file will be lost."), True, texts[1])
    equal(button.name, "OK")
    # Nothing waits for the answer.
    expect_stored(program, suffixSwitcherKeyString=False)
    equal("enabled" in window.find("text", "Suffix").states, False)
    program.click(button)
    wait_for("the warning to go", lambda: not program.root.all("alert message"))
    program.click(window.find("radio button", "Add a suffix:"))
    expect_stored(program, suffixSwitcherKeyString=True)
    equal(len(program.root.all("alert message")), 0)


def php_is_warned_of(case):
    program, window = preferences(case)
    turn_to(program, window, "Files and Runs")
    box = window.find("check box", "Accept PHP and PHTML files (experiment)")
    program.click_check_box(box)
    texts, button = warning(program)
    equal(texts[0], "PHP compression is an experiment feature")
    equal(button.name, "OK, I got it.")
    expect_stored(program, enablePHPCheckerKeyString=True)
    program.key("Return")
    wait_for("the warning to go", lambda: not program.root.all("alert message"))
    program.click_check_box(box)
    expect_stored(program, enablePHPCheckerKeyString=False)
    equal(len(program.root.all("alert message")), 0)


def a_typed_suffix_names_the_next_output(case):
    source = case.file("a.css", "a  { color : red ; }\n")
    program, window = preferences(case)
    program.click(window.find("text", "Suffix"))
    program.key("ctrl+a")
    program.type("-small")
    expect_stored(program, suffixKeyString="-small")
    program.key("alt+F4")
    program.expect_active("Brevant")
    program.key("ctrl+o")
    program.expect_active("Choose Files or Folders")
    program.type(str(source))
    program.key("Return")
    program.expect_names("a.css")
    program.key("ctrl+Return")
    program.expect_status("Well done!")
    equal((case.folder / "a-small.css").read_bytes(), b"a{color:red}")
    # The window is shown again as it was left.
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    equal(window.find("text", "Suffix").text, "-small")


def an_encoding_is_chosen_from_the_list(case):
    program, window = preferences(case)
    turn_to(program, window, "Files and Runs")
    box = window.find("combo box", "Unicode (utf-8)")
    program.click(box)
    program.key("Down", "Down", "Return")
    expect_stored(program, selectedEncodingKeyString="gbk")
    equal(box.name, "Chinese (gbk)")


def compressors_are_chosen(case):
    program, window = preferences(case)
    turn_to(program, window, "Compressors")
    maps = window.find("check box", "Also make source maps (.map)")
    semicolons = window.find("check box", "Keep all semicolons (JavaScript)")
    equal(("enabled" in maps.states, "enabled" in semicolons.states), (False, True))
    equal(maps.description, "Needs the modern compressors.")
    program.click(window.find("combo box", "Classic (YUI Compressor, htmlcompressor)"))
    program.key("Down", "Return")
    expect_stored(program, compressorsKeyString="modern")
    wait_for("source maps to choose", lambda: "enabled" in maps.states)
    equal("enabled" in semicolons.states, False)
    program.click_check_box(maps)
    expect_stored(program, sourceMapCheckerKeyString=True)


def the_example_follows(case):
    program, window = preferences(case)

    def example():
        texts = [node.name for node in window.all("label") if "app.js" in node.name]
        return texts[0].replace("\u2066", "").replace("\u2069", "") if texts else None
    wait_for("the example", lambda: example() == "app.js → app.min.js")
    program.click(window.find("text", "Suffix"))
    program.key("ctrl+a", "BackSpace")
    wait_for("the example of an empty suffix", lambda: example() == "app.js → app.js, replaces the source")
    file = case.session.home / "config/brevant/settings.json"
    wait_for("the stored suffix", lambda: program.settings().get("suffixKeyString") == "")
    file.write_text('{"sameFolderKeyString": false, "selectedFolderKeyString": "/out"}')
    wait_for("the example of a change from outside", lambda: example() == "app.js → /out/app.min.js")


def a_folder_for_the_outputs_is_chosen(case):
    folder = case.folder / "out put"
    folder.mkdir()
    program, window = preferences(case)
    box = window.find("combo box", "The same folder as source")
    program.click(box)
    program.key("Down", "Return")  # over the separator
    program.expect_active("Choose a Folder")
    program.type(str(folder))
    program.key("Return")
    program.expect_active("Preferences")
    expect_stored(program, sameFolderKeyString=False, selectedFolderKeyString=str(folder))
    wait_for("the folder in the list", lambda: box.name == "out put" or str(folder) in box.name)


def the_window_is_moved_by_its_background(case):
    program, window = preferences(case)
    x, y, _width, _height = window.extents
    program.expect_moved_by(x + 5, y + 5)
    program.expect_active("Preferences")


def panels_leave_nothing_behind(case):
    """Of the folders shown, nothing is stored; the program knows the last one until it ends."""
    program = case.start(case.file("a.css"), case.file("b.css"))
    program.expect_names("a.css", "b.css")
    program.key("ctrl+o")
    program.expect_active("Choose Files or Folders")
    program.type(str(case.folder / "a.css"))
    program.key("Return")
    program.expect_active("Brevant")
    # A key may be lost while the window becomes the active one.
    wait_for("both files selected", lambda: program.key("ctrl+a") or len(program.selected()) == 2)
    program.key("ctrl+j")
    program.expect_active("Save Combined File")
    program.key("Escape")
    program.expect_active("Brevant")
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    window = program.root.find("dialog", "Preferences")
    program.click(window.find("combo box", "The same folder as source"))
    program.key("Down", "Return")
    program.expect_active("Choose a Folder")
    program.key("Escape")
    program.expect_active("Preferences")
    program.key("alt+F4")
    program.expect_active("Brevant")
    program.key("ctrl+q")
    program.wait_for_exit()
    config = case.session.home / "config"
    equal(sorted(str(file.relative_to(config)) for file in config.rglob("*") if not file.is_dir()),
          ["brevant/settings.json"])


run([check_boxes_are_stored_at_once, the_line_break_column_is_typed, the_same_name_as_the_source_is_warned_of,
     php_is_warned_of, a_typed_suffix_names_the_next_output, an_encoding_is_chosen_from_the_list,
     compressors_are_chosen, the_example_follows, a_folder_for_the_outputs_is_chosen, the_window_is_moved_by_its_background, panels_leave_nothing_behind])
