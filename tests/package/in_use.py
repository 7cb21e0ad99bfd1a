# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""An installed Brevant in use: whether it finds everything that was installed with it."""
import sys
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "desktop"))

# The search path must be set first.
from brevant import Program  # noqa: E402
from session import equal, wait_for  # noqa: E402

SOURCE = "a  {  color : red ; }\n"
SHORT = "a{color:red}"


def use_in_window(session, site, *command):
    """Opens style.css of the folder `site`, as a file of SOURCE, with a command that becomes the window program;
    minifies it and looks at it. The preview is a module, the compressors are resources, and the
    libraries of the sound come with the first one."""
    program = Program(session, *command)
    try:
        program.expect_names("style.css")
        program.click(program.button("Minify"))
        program.expect_status("Well done!")
        equal((site / "style.min.css").read_text(), SHORT, "what the window program wrote")
        maps = Path(f"/proc/{program.process.pid}/maps")
        for library in ("libsndfile.so", "libpulse-simple.so"):
            wait_for(library, lambda name=library: name in maps.read_text())
        program.click(program.row("style.css"))
        program.key("space")
        program.expect_active("style.css")
        wait_for("the text of the preview", lambda: program.root.all("text", "Text of style.css"))
        if "brevant-preview.so" not in maps.read_text():
            raise AssertionError("the preview came from elsewhere")
        program.key("Escape")
        wait_for("the panel to close", lambda: len(program.windows()) == 1)
        program.key("ctrl+q")
        program.wait_for_exit()
    finally:
        program.end()
    (site / "style.min.css").unlink()
