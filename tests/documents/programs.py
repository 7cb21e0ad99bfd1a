# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""What the built programs say of themselves. The scripts here are run as: test-….py BUILD-FOLDER [TEST…]."""
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent.parent
BUILD = Path(sys.argv[1]).resolve() if len(sys.argv) > 1 else SOURCE / "build"

# Not in the programs' own lists: what only the session bus uses, and short forms known by custom.
UNLISTED = {"brevant": {"--gapplication-service"}, "brevant-cli": {"-h"}}
# Documented before they are there; both sides of each may be missing until then.
COMING = {"brevant": set(), "brevant-cli": set()}


def output(*command, **environment):
    """What a command prints, which must go well."""
    with tempfile.TemporaryDirectory() as home:
        own = {"HOME": home, "XDG_CONFIG_HOME": home, "XDG_RUNTIME_DIR": home, "LC_ALL": "C.UTF-8",
               "QT_QPA_PLATFORM": "offscreen"}
        ended = subprocess.run([str(word) for word in command], stdout=subprocess.PIPE, stdin=subprocess.DEVNULL,
                               env=os.environ | own | environment, timeout=60, check=True)
    return ended.stdout.decode()


def options(program):
    """The options in a program's help, both forms."""
    text = output(BUILD / program, "--help")
    # A definition begins its line, and ends where two blanks are.
    lines = re.findall(r"^  (-.*?)(?:  |$)", text, re.MULTILINE)
    found = {word.rstrip(",") for line in lines for word in line.split() if word.startswith("-")}
    assert found, f"no options in the help of {program}"
    return found


def interface():
    """Settings, encodings, kinds, menu items and keys: see list-interface.cpp."""
    return json.loads(output(BUILD / "tests/list-interface"))


def main():
    sys.exit(not unittest.main(argv=sys.argv[:1] + sys.argv[2:], exit=False, verbosity=2).result.wasSuccessful())
