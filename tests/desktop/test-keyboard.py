# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""All that the program does, without a pointer."""
from gi.repository import Gio, GLib

from cases import run
from session import equal, wait_for

NAMES = ("a.css", "b.css", "c.js")


def started(case):
    files = [case.file(name, "a { color: red; }\n" if name.endswith("css") else "var  b = 1 ;\n")
             for name in NAMES]
    program = case.start(*files[:-1])
    program.key("ctrl+o")
    program.expect_active("Choose Files or Folders")
    program.type(str(files[-1]))
    program.key("Return")
    program.expect_names(*NAMES)
    program.expect_active("Brevant")
    return program


def rows_are_chosen(case):
    program = started(case)
    program.key("ctrl+a")
    program.expect_selected(*NAMES)
    program.key("Home")
    program.expect_selected("a.css")
    program.key("Down", "shift+Down")
    program.expect_selected("b.css", "c.js")
    program.key("a")  # the name that begins so
    program.expect_selected("a.css")
    program.key("End")
    program.expect_selected("c.js")
    program.key("Delete")
    program.expect_names("a.css", "b.css")
    program.key("ctrl+shift+BackSpace")
    program.expect_names()
    equal(program.has_button("Minify"), False)


def the_focus_goes_round_and_is_seen(case):
    program = started(case)
    program.key("ctrl+a", "Home")
    x, y, width, height = program.table.extents
    unfocused = case.session.pixels(x, y + height - 4, width, 4)
    program.key("Tab")
    program.expect_focus("Clear")
    program.key("Tab")
    program.expect_focus("Minify")
    program.key("Tab")
    wait_for("the ring round the list", lambda: case.session.pixels(x, y + height - 4, width, 4) != unfocused)
    program.key("Down")
    program.expect_selected("b.css")
    program.key("shift+Tab")
    program.expect_focus("Minify")
    wait_for("the ring to go", lambda: case.session.pixels(x, y + height - 4, width, 4) == unfocused)
    # And the menu bar gives back what it takes.
    program.key("alt+f")
    wait_for("the menu", program.context_menu)
    program.key("Escape", "Escape")
    wait_for("the menu to go", lambda: not program.context_menu())
    program.expect_focus("Minify")
    program.key("space")
    program.expect_status("Well done!")


def the_menu_key_opens_the_menu(case):
    program = started(case)
    program.key("Menu")  # no row is selected, and nothing happens
    program.key("ctrl+a", "End")
    program.expect_selected("c.js")
    for key in ("Menu", "shift+F10"):
        equal(program.context_menu(), None, key)
        program.key(key)
        wait_for(f"the menu after {key}", program.context_menu)
        program.expect_selected(program.selected()[0])
        program.key("Up", "Return")  # its last item: Remove
        wait_for("the menu to go", lambda: not program.context_menu())
        program.key("ctrl+a", "End")
    program.expect_names("a.css")


def the_file_manager_is_asked(case):
    program = started(case)
    shown = []
    interface = Gio.DBusNodeInfo.new_for_xml(
        "<node><interface name='org.freedesktop.FileManager1'><method name='ShowItems'>"
        "<arg type='as' direction='in'/><arg type='s' direction='in'/></method></interface></node>")

    def called(_bus, _sender, _path, _interface, _method, arguments, invocation):
        shown.append(arguments.unpack()[0])
        invocation.return_value(None)
    case.session.bus.register_object("/org/freedesktop/FileManager1", interface.interfaces[0], called, None, None)
    case.session.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                               GLib.Variant("(su)", ("org.freedesktop.FileManager1", 4)), None, 0, 5000, None)
    program.key("ctrl+a", "End", "ctrl+r")

    def asked():
        while GLib.MainContext.default().iteration(False):
            pass
        return shown
    wait_for("the file manager to be asked", asked)
    equal(shown, [[f"file://{case.folder}/c.js"]])


def the_preview_is_walked_through(case):
    program = started(case)
    program.key("ctrl+a", "Home", "space")
    program.expect_active("a.css")
    program.root.find("dialog", "Preview")
    program.key("Down")
    program.expect_active("b.css")
    program.key("shift+Up")
    program.expect_selected("a.css", "b.css")
    program.expect_active("b.css")
    program.root.find("label", "2 of 2")
    program.click(program.root.find("push button", "Previous file"))
    program.expect_active("a.css")
    program.key("Escape")
    program.expect_active("Brevant")
    program.key("Down")
    program.expect_selected("b.css")


def a_long_preview_is_read_to_its_end(case):
    case.file("long.css", "".join(f"a{{z-index:{line}}}\n" for line in range(400)))
    program = case.start(case.folder / "long.css")
    program.expect_names("long.css")
    program.key("ctrl+a", "space")
    program.expect_active("long.css")
    wait_for("the panel alone over the window", lambda: len(program.windows()) == 2)
    text = program.root.find("text", "Text of long.css")
    x, y, width, height = wait_for("the text on the screen", lambda: text.extents)

    def seen():
        return case.session.pixels(x, y, width // 2, height)
    wait_for("the text to be painted", lambda: len(set(seen())) > 8)
    top = seen()
    program.key("Menu", "d")
    wait_for("the next page", lambda: seen() != top)
    program.key("Menu", "u")
    wait_for("the first page again", lambda: seen() == top)
    program.expect_selected("long.css")


def every_preference_is_reached(case):
    program = case.start()
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    window = program.root.find("dialog", "Preferences")
    controls = [node for node in window.walk()
                if node.role in ("check box", "radio button", "text", "combo box")]
    usable = {node for node in controls if "sensitive" in node.states}
    seen = set()
    for page in ("Output", "Compressors", "Files and Runs"):
        program.expect_focus(page)
        tab = program.focused()
        rows = []
        for _ in range(len(controls)):
            program.key("Tab")
            before = node if rows else tab
            node = wait_for("the focus to move", lambda: program.focused() not in (None, before) and program.focused())
            if node == tab:
                break
            seen.add(node)
            _x, y, _width, height = node.extents
            rows.append(y + height // 2)
        equal(rows, sorted(rows), "order from top to bottom")
        program.key("ctrl+Tab")
    # One radio button stands for its group; the arrow keys choose in it.
    equal({node.name for node in usable - seen}, {"The same as source"}, "controls that Tab passes over")
    # A letter with Alt is as good as a click.
    program.key("alt+g")
    wait_for("the stored switch", lambda: program.settings().get("gzipCheckerKeyString") is True)
    program.key("ctrl+Tab", "ctrl+Tab", "alt+r")
    program.expect_focus(window.find("combo box", "Unicode (utf-8)").name)
    program.key("Down", "Down", "Return")
    wait_for("the stored encoding", lambda: program.settings().get("selectedEncodingKeyString") == "gb2312")
    program.key("Escape")
    program.expect_active("Brevant")


def a_run_and_the_end(case):
    program = started(case)
    program.key("Return")
    program.expect_status("Well done!")
    equal((case.folder / "a.min.css").read_bytes(), b"a{color:red}")
    program.key("ctrl+q")
    program.wait_for_exit()


run([rows_are_chosen, the_focus_goes_round_and_is_seen, the_menu_key_opens_the_menu, the_file_manager_is_asked,
     the_preview_is_walked_through, a_long_preview_is_read_to_its_end, every_preference_is_reached,
     a_run_and_the_end])
