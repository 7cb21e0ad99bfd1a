# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The context menu of Files (Nautilus), where nautilus-python is installed: Minify with Brevant."""
from gi.repository import Gio, GLib, GObject, Nautilus

EXTENSIONS = tuple("." + kind for kind in "@BREVANT_KINDS_PATTERN@".split("|"))


class BrevantMenuProvider(GObject.GObject, Nautilus.MenuProvider):
    def get_file_items(self, *args):
        files = args[-1]  # before it, Nautilus 3 and older hand over their window
        paths = [path_of(file) for file in files]
        if not paths or None in paths:
            return []
        item = Nautilus.MenuItem(name="BrevantMenuProvider::minify", label="Minify with Brevant",
                                 tip="Write a minified copy of each selected file")
        item.connect("activate", lambda _item: minify(paths))
        return [item]

    def get_background_items(self, *_args):
        return []


def path_of(file):
    """Where a file that Brevant takes lies, or None for all others."""
    if file.is_directory() or not file.get_name().lower().endswith(EXTENSIONS):
        return None
    return file.get_location().get_path()


def minify(paths):
    try:
        Gio.Subprocess.new(["brevant", "--minify", "--", *paths], Gio.SubprocessFlags.NONE)
    except GLib.Error as error:
        print(f"Brevant could not be started: {error.message}")
