# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Adding files: dragged from another program, in the open panel, by keys alone."""
from cases import run
from session import equal, wait_for


def corner_of(table):
    """A place on the list, well away from the picture in its middle."""
    x, y, _width, _height = table.extents
    return x + 12, y + 12


def picture(case, table):
    x, y, width, height = table.extents
    return case.session.pixels(x + 40, y + 40, width - 80, height - 80)


def quiet_picture(case, table):
    """As it is once it is there at all."""
    wait_for("the picture to be painted", lambda: len(set(picture(case, table))) > 8)
    return picture(case, table)


def files_are_dropped(case):
    css, js = case.file("a one.css"), case.file("b.js", "var b = 1;\n")
    program = case.start()
    equal(program.status(), "")
    equal(case.drop(*corner_of(program.table), css, js), "copy")
    program.expect_names("a one.css", "b.js")
    program.expect_status("2 items")
    equal(program.has_button("Minify"), True)


def a_folder_is_dropped(case):
    case.file("site/css/deep/a.css")
    case.file("site/.hidden/b.js", "var b;\n")
    case.file("site/notes.txt")
    program = case.start()
    equal(case.drop(*corner_of(program.table), case.folder / "site"), "copy")
    program.expect_status("2 items")
    equal(sorted(program.rows()),
          [f"a.css, {case.folder}/site/css/deep", f"b.js, {case.folder}/site/.hidden"])


def text_is_refused(case):
    program = case.start()
    before = quiet_picture(case, program.table)
    source = case.drag_source("--text", "/etc/a.css")
    source.pick_up()
    source.drag_to(*corner_of(program.table))
    equal(picture(case, program.table) == before, True, "picture unchanged under text")
    equal(source.drop(), "none")
    equal(program.names(), [])
    equal(program.status(), "")


def the_picture_follows_the_drag(case):
    notes = case.file("notes.txt")
    program = case.start()
    table = program.table
    before = quiet_picture(case, table)
    source = case.drag_source(notes)
    source.pick_up()
    source.drag_to(*corner_of(table))
    wait_for("the lit picture", lambda: picture(case, table) != before)
    lit = picture(case, table)
    source.drag_to(60, 700)
    wait_for("the quiet picture after leaving", lambda: picture(case, table) == before)
    source.drag_to(*corner_of(table))
    wait_for("the lit picture again", lambda: picture(case, table) == lit)
    source.expect_taken(*corner_of(table))
    equal(source.drop(), "copy")  # taken, although there is nothing to list in it
    wait_for("the quiet picture after the drop", lambda: picture(case, table) == before)
    equal(program.names(), [])
    equal(program.has_button("Minify"), False)


def a_double_click_opens_the_panel(case):
    case.file("chosen.css")
    program = case.start(case.file("listed.css"))
    program.expect_names("listed.css")
    for target, expected in ((program.row("listed.css"), "listed.css"), (None, "chosen.css")):
        x, y, width, height = program.table.extents
        program.click(target or (x + width // 2, y + height - 30), repeat=2)
        program.expect_active("Choose Files or Folders")
        program.root.find("dialog", "Choose Files or Folders")
        program.type(str(case.folder / expected))
        program.key("Return")
        program.expect_active("Brevant")
    program.expect_names("listed.css", "chosen.css")
    program.expect_status("2 items")


def a_file_is_clicked_in_the_panel(case):
    case.file("clicked.css")
    case.file("notes.txt")
    program = case.start()
    program.key("ctrl+o")
    program.expect_active("Choose Files or Folders")
    panel = program.root.find("dialog", "Choose Files or Folders")
    # The panel begins in the home folder; a double click goes down into a folder.
    program.click(panel.find("tree item", "site"), repeat=2)
    program.click(panel.find("tree item", "clicked.css"))
    equal(panel.first("tree item", "notes.txt"), None)
    program.click(panel.find("push button", "Choose"))
    program.expect_names("clicked.css")


def keys_alone_do_everything(case):
    css = case.file("keys.css", "b {  color : red ; }\n")
    program = case.start()
    program.key("ctrl+o")
    program.expect_active("Choose Files or Folders")
    program.type(str(css))
    program.key("Return")
    program.expect_active("Brevant")
    program.expect_names("keys.css")
    program.key("ctrl+Return")
    program.expect_status("Well done!")
    equal((case.folder / "keys.min.css").read_bytes(), case.bare_yui(css))
    program.key("ctrl+a")
    program.expect_selected("keys.css")
    program.key("Delete")
    program.expect_names()
    program.expect_status("")
    program.key("ctrl+q")
    program.wait_for_exit()


def a_drop_is_minified_at_once(case):
    """The whole road, with a source of each kind, against the bare compressor."""
    css = case.file("site/a.css", "a  {  color : #ff0000 ; }\n/* gone */\n")
    js = case.file("site/b.js", "function sum(first, second) { return first + second; }\n")
    html = case.file("site/c ü.html", "<p>  one </p>   <script>var x = 1 ;</script>\n")
    php = case.file("site/d.php", "<p> <?php echo 1; ?> </p>   <p>  ä </p>\n")
    case.settings('{"autoMinifyCheckerKeyString": true, "enablePHPCheckerKeyString": true}')
    program = case.start()
    equal(case.drop(*corner_of(program.table), case.folder / "site"), "copy")
    program.expect_status("Well done!")
    for source, bare in ((css, case.bare_yui), (js, case.bare_yui), (html, case.bare_html),
                         (php, case.bare_html)):
        output = source.with_name(f"{source.stem}.min{source.suffix}")
        equal(output.read_bytes(), bare(source), output.name)
    equal(program.selected(), [])
    equal(program.messages(), "")


run([files_are_dropped, a_folder_is_dropped, text_is_refused, the_picture_follows_the_drag,
     a_double_click_opens_the_panel, a_file_is_clicked_in_the_panel, keys_alone_do_everything,
     a_drop_is_minified_at_once])
