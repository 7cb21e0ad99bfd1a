# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""A Wayland session: no X server, no pointer and no keyboard. What is done is done over the accessibility bus,
and what is shown is seen in the compositor's own pictures."""
import shutil

from brevant import Program
from cases import run
from instance import launch
from session import Session, equal, wait_for

TEXT = "a  {  color : red ; }\n"
# A black screen with nothing on it, and windows that come and go at once.
CONFIGURATION = """[core]
idle-time=0
[shell]
background-color=0xff000000
panel-position=none
locking=false
animation=none
close-animation=none
startup-animation=none
[input-method]
path=
"""


class WaylandSession(Session):
    needs = ("weston", "weston-screenshooter", "convert", "dbus-daemon")

    def _start_display(self):
        configuration = self.folder / "weston.ini"
        configuration.write_text(CONFIGURATION)
        self.environment.update({"QT_QPA_PLATFORM": "wayland", "WAYLAND_DISPLAY": "wayland-of-the-test"})
        self.start("weston", "--backend=headless-backend.so", "--use-pixman", "--debug", f"--config={configuration}",
                   "--socket=wayland-of-the-test", "--width=1600", "--height=1000")
        wait_for("a display", (self.folder / "run/wayland-of-the-test").exists)

    def screenshot(self, path):
        pictures = self.folder / "pictures"
        pictures.mkdir()
        self.environment["XDG_PICTURES_DIR"] = str(pictures)
        self.run("weston-screenshooter")
        (picture,) = pictures.iterdir()
        shutil.copy(picture, path)
        shutil.rmtree(pictures)

    def picture(self):
        """What is on the screen: one byte for each of its points, 0 where there is nothing."""
        picture = self.folder / "picture.png"
        self.screenshot(picture)
        return self.run("convert", picture, "-depth", "8", "gray:-")

    def covered(self):
        picture = self.picture()
        return len(picture) - picture.count(0)

    def painted_since(self, before):
        """How many points there are more of one shade."""
        picture = self.picture()
        return max(picture.count(shade) - before.count(shade) for shade in range(256))

    def let_go(self):
        pass


class WaylandProgram(Program):
    def active_title(self):
        """Without a keyboard no window is the active one."""
        return self.window.name

    def press(self, menu, item):
        node = self.window.find("menu bar").find("menu item", menu).first("menu item", item)
        wait_for(f"{item} to be enabled", lambda: "enabled" in node.states)
        node.act("Press")


def shown(case, *arguments):
    equal(case.session.covered(), 0, "what is on the screen before")
    program = case.keep(WaylandProgram(case.session, case.brevant, *arguments))
    _x, _y, width, height = program.window.extents
    # All of the window, but for the letters that are as black as the screen.
    wait_for("the window on the screen", lambda: case.session.covered() > 0.95 * width * height)
    return program


def closed(case, program):
    program.press("File", "Quit")
    program.wait_for_exit()
    wait_for("an empty screen", lambda: case.session.covered() == 0)
    equal(program.messages(), "")


def files_are_minified(case):
    css, js = case.file("a.css", TEXT), case.file("b.js", "var b = 1 ;\n")
    program = shown(case, css, js)
    program.expect_names("a.css", "b.js")
    program.expect_status("2 items")
    program.button("Minify").act("Press")
    program.expect_status("Well done!")
    for path in (css, js):
        equal(path.with_name(f"{path.stem}.min{path.suffix}").read_bytes(), case.bare_yui(path))
    closed(case, program)


def the_preview_opens_and_closes(case):
    program = shown(case, case.file("a.css", TEXT))
    program.expect_names("a.css")
    bare = case.session.picture()
    program.table.select_row(0)
    program.expect_selected("a.css")
    _x, _y, width, height = program.row("a.css").extents
    wait_for("the row in its colour", lambda: case.session.painted_since(bare) > width * height / 2)
    before = case.session.picture()
    program.press("View", "Quick Look")
    preview = program.root.find("dialog", "Preview")
    text = preview.find("text", "Text of a.css")
    wait_for("the text of a.css", lambda: TEXT.strip() in text.text)
    wait_for("the preview on the screen", lambda: case.session.picture() != before)
    program.press("View", "Quick Look")
    wait_for("the preview to close", lambda: "showing" not in preview.states)
    wait_for("the screen as it was", lambda: case.session.picture() == before)
    closed(case, program)


def preferences_are_stored(case):
    program = shown(case, case.file("a.css", TEXT))
    program.expect_names("a.css")
    before = case.session.picture()
    program.press("Edit", "Preferences…")
    window = program.root.find("dialog", "Preferences")
    _x, _y, width, height = window.extents
    wait_for("the preferences on the screen", lambda: case.session.painted_since(before) > width * height / 2)
    window.find("check box", "Also make a gzip copy (.gz)").act("Toggle")
    wait_for("the stored switch", lambda: program.settings().get("gzipCheckerKeyString") is True)
    program.button("Minify").act("Press")
    program.expect_status("Well done!")
    equal((case.folder / "a.min.css.gz").exists(), True)
    closed(case, program)


def files_are_combined(case):
    program = shown(case, case.file("a.css", "a{color:red}\n"), case.file("b.css", "b{color:blue}\n"))
    program.expect_names("a.css", "b.css")
    program.press("Edit", "Select All")
    program.expect_selected("a.css", "b.css")
    program.press("File", "Combine…")
    panel = program.root.find("dialog", "Save Combined File")
    panel.find("text", "File name:").write(str(case.folder / "both.css"))
    panel.find("push button", "Save").act("Press")
    program.expect_names("both.css")
    equal((case.folder / "both.css").read_text(), "a{color:red}\n\nb{color:blue}\n\n")
    closed(case, program)


def a_second_launch_hands_its_files_over(case):
    program = shown(case, case.file("a.css"))
    program.expect_names("a.css")
    equal(launch(case, case.file("b c.css"), XDG_ACTIVATION_TOKEN="t"), (0, b""))
    program.expect_names("a.css", "b c.css")
    closed(case, program)


run([files_are_minified, the_preview_opens_and_closes, preferences_are_stored, files_are_combined,
     a_second_launch_hands_its_files_over], WaylandSession)
