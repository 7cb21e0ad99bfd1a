# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What those notice who do not look at the window: assistive programs, and the desktop's dock."""
from gi.repository import Gio, GLib

from cases import run
from session import equal, wait_for


class Signals:
    """Collects what is sent on a bus."""

    def __init__(self, bus, interface, member):
        self.received = []
        bus.signal_subscribe(None, interface, member, None, None, Gio.DBusSignalFlags.NONE, self._receive)

    def _receive(self, _bus, _sender, path, _interface, _member, arguments):
        self.received.append((path, arguments))

    def forget(self):
        """All that has come so far."""
        while GLib.MainContext.default().iteration(False):
            pass
        self.received.clear()

    def expect(self, what, test):
        """Waits for one that passes, and forgets it and those before it."""
        def found():
            while GLib.MainContext.default().iteration(False):
                pass
            for index, signal in enumerate(self.received):
                if test(*signal):
                    del self.received[:index + 1]
                    return signal
            return None
        return wait_for(lambda: f"{what} among {self.received}", found)


def every_control_has_a_name_and_a_role(case):
    program = case.start(case.file("a.css"))
    program.expect_names("a.css")
    found = {(node.role, node.name) for node in program.window.walk() if node.name}
    expected = {
        ("frame", "Brevant"), ("table", "Files"), ("label", "1 item"), ("push button", "Clear"),
        ("push button", "Minify"), ("progress bar", "Adding files"),
        *(("menu item", name) for name in (
            "File", "Edit", "View", "Help", "Add Files…", "Minify", "Combine…", "Clear", "Quit",
            "Select All", "Remove", "Reveal in File Manager", "Preferences…", "Quick Look",
            "Brevant Home Page", "About Brevant")),
    }
    equal(expected - found, set(), "controls that are not found")
    equal(program.root.name, "Brevant")
    controls = ("push button", "check box", "radio button", "text", "table", "cell", "menu item", "combo box")
    nameless = [node for node in program.window.walk() if not node.name and node.role in controls]
    equal(nameless, [], "controls without a name")


def every_preference_has_a_name_and_a_role(case):
    program = case.start()
    program.key("ctrl+comma")
    program.expect_active("Preferences")
    window = wait_for("the preferences", lambda: next(
        (node for node in program.root.children if node.name == "Preferences"), None))
    equal(window.role, "dialog")
    counts = {}
    for node in window.walk():
        if node.role == "page tab":
            equal(bool(node.name), True, f"name of {node!r}")
            counts[node.role] = counts.get(node.role, 0) + 1
        if node.role in ("check box", "radio button", "text", "combo box"):
            equal(bool(node.name and node.description), True, f"name and description of {node!r}")
            counts[node.role] = counts.get(node.role, 0) + 1
    equal(counts, {"check box": 16, "radio button": 2, "text": 2, "combo box": 3, "page tab": 3})


def expect_names_in(window):
    controls = ("push button", "check box", "text", "table", "combo box", "column header")
    found = [node for node in window.walk() if node.role in controls and "showing" in node.states]
    equal([node for node in found if not node.name], [], "controls without a name")
    return {node.name for node in found}


def results_and_planned_outputs_have_names(case):
    program = case.start(case.file("good.css", "a  {  color : red ; }\n"), case.file("new.js", "let a = () => 1;\n"))
    program.key("ctrl+shift+l")
    planned = program.root.find("frame", "Planned Outputs")
    planned.find("check box", "Ready 2")
    names = {"Planned Outputs", "All 2", "Ready 2", "Filter", "Open", "Reveal Source", "Copy Path", "Messages",
             "Preferences…", "Minify", "Row", "State", "Name", "Folder", "Goes to", "Problem"}
    equal(names - {name.strip() for name in expect_names_in(planned)}, set(), "controls that are not found")
    program.key("ctrl+f")
    program.type("c")
    planned.find("push button", "Clear")
    expect_names_in(planned)
    program.key("Escape", "Escape")
    program.expect_active("Brevant")
    program.key("Return")
    program.expect_status("Well done!")
    program.key("ctrl+l")
    results = program.root.find("frame", "Results")
    results.find("push button", "Minify It With Modern Compressors")
    names = {"Results", "All 2", "Done 1", "Failed 1", "Filter", "Open", "Reveal Output", "Copy Path", "Messages",
             "Save Report…", "Retry Failed", "Always", "Close", "State", "Name", "Saved", "Message"}
    equal(names - {name.strip() for name in expect_names_in(results)}, set(), "controls that are not found")


def the_preview_is_a_dialog(case):
    program = case.start(case.file("a.css"))
    program.expect_names("a.css")
    program.click(program.row("a.css"))
    program.key("space")
    program.expect_active("a.css")
    program.root.find("dialog", "Preview")
    program.root.find("text", "Text of a.css")
    program.key("Escape")
    program.expect_active("Brevant")


def the_lists_menu_is_found(case):
    program = case.start(case.file("a.css"))
    program.expect_names("a.css")

    def menus():
        return [node for node in program.window.children if node.role == "popup menu"]
    equal(menus(), [])
    program.click(program.row("a.css"), button=3)
    (menu,) = wait_for("the menu", menus)
    equal([item.name for item in menu.children],
          ["Quick Look", "Reveal in File Manager", "Combine…", "Remove"])
    program.key("Escape")
    wait_for("the menu to go", lambda: not menus())


def rows_read_name_and_folder(case):
    program = case.start(case.file("css/a one.css"), case.file("b.js"))
    wait_for(lambda: f"the rows, not {program.rows()}", lambda: program.rows() == [
        f"a one.css, {case.folder}/css", f"b.js, {case.folder}"])


def a_run_is_started_and_heard_of(case):
    """Without pointer or keys: pressed and listened to."""
    source = case.file("a.css", "a  { color : red ; }\n")
    bus = case.session.accessibility_bus
    bus.call_sync("org.a11y.atspi.Registry", "/org/a11y/atspi/registry", "org.a11y.atspi.Registry",
                  "RegisterEvent", GLib.Variant("(sass)", ("object:property-change", [], "")), None, 0, 5000,
                  None)
    changes = Signals(bus, "org.a11y.atspi.Event.Object", "PropertyChange")
    program = case.start(source)
    program.expect_names("a.css")
    label = program.window.find("label", "1 item")
    changes.forget()
    program.button("Minify").act("Press")
    program.expect_status("Well done!")
    # Each text once.
    for text in ("Minified 1 of 1 items.", "Well done!"):
        changes.expect(f"the status line with {text!r}", lambda path, arguments: path == label._path)
    equal([path for path, _arguments in changes.received if path == label._path], [], "said again")
    equal((case.folder / "a.min.css").read_bytes(), b"a{color:red}")


def the_dock_icon_counts(case):
    signals = Signals(case.session.bus, "com.canonical.Unity.LauncherEntry", "Update")

    def badge(count):
        def test(_path, arguments):
            equal(arguments.get_type_string(), "(sa{sv})")
            application, properties = arguments.unpack()
            equal(application, "application://org.brevant.Brevant.desktop")
            types = {}
            values = arguments.get_child_value(1)
            for index in range(values.n_children()):
                entry = values.get_child_value(index)
                value = entry.get_child_value(1).get_variant()
                types[entry.get_child_value(0).get_string()] = value.get_type_string()
            if "count" not in properties:
                return False
            equal((types["count"], types["count-visible"]), ("x", "b"))
            return properties["count-visible"] == (count > 0) and (count == 0 or properties["count"] == count)
        signals.expect(f"a badge of {count}", test)

    program = case.start()
    x, y, _width, _height = program.table.extents
    case.drop(x + 12, y + 12, case.file("a.css"), case.file("b.css"), case.file("c.css"))
    program.expect_names("a.css", "b.css", "c.css")
    badge(3)
    program.click(program.row("a.css"))
    program.expect_active("Brevant")
    program.key("Delete")
    badge(2)
    program.click(program.button("Clear"))
    badge(0)


run([every_control_has_a_name_and_a_role, every_preference_has_a_name_and_a_role,
     results_and_planned_outputs_have_names,
     the_preview_is_a_dialog, the_lists_menu_is_found, rows_read_name_and_folder,
     a_run_is_started_and_heard_of, the_dock_icon_counts])
