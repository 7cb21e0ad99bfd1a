#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The three shells complete what the programs know: options, settings and their values, files of all kinds."""
import json
import os
import tempfile
import unittest
from pathlib import Path
from unittest import mock

from programs import BUILD, COMING, UNLISTED, interface, main, options, output

COMPLETIONS = BUILD / "resources/completions"
HERE = Path(__file__).resolve().parent

OTHERS = ["x.txt", "css", "y.css.bak"]


def bash(line):
    return output("bash", HERE / "complete.bash", COMPLETIONS / f"{line.split()[0]}.bash", line)


def zsh(line):
    return output("zsh", "-f", HERE / "complete.zsh", COMPLETIONS, line).replace("\\ ", " ")


def fish(line):
    script = f"source {COMPLETIONS}/{line.split()[0]}.fish; complete -C '{line}'"
    # A description may follow a tab.
    return "\n".join(hit.split("\t")[0] for hit in output("fish", "--no-config", "-c", script).splitlines())


class Completions(unittest.TestCase):
    """One class for each shell below; this one is not run."""

    shell = None
    values_with_key = False  # whether "KEY=va" is completed to "KEY=value" or to "value"

    @classmethod
    def setUpClass(cls):
        cls.interface = interface()
        cls.settings = {setting["key"]: setting.get("default") for setting in cls.interface["settings"]}
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.addClassCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)
        Path("sub folder").mkdir()
        kinds = [kind["extension"] for kind in cls.interface["kinds"]]
        cls.files = ["B.CsS", "sp ace.js", *(f"a.{kind}" for kind in kinds), *(f"A.{kind.upper()}" for kind in kinds)]
        for name in cls.files + OTHERS + ["s.json"]:
            Path(name).touch()

    def hits(self, line):
        return {hit.rstrip("/") for hit in type(self).shell(line).splitlines()}

    def values(self, key, beginning=""):
        """What is offered after KEY=."""
        found = self.hits(f"brevant-cli --set {key}={beginning}")
        if self.values_with_key:
            self.assertTrue(all(hit.startswith(f"{key}=") for hit in found), found)
            found = {hit.removeprefix(f"{key}=") for hit in found}
        return found - {""}

    def test_options(self):
        for program in ("brevant", "brevant-cli"):
            with self.subTest(program=program):
                known = options(program) | UNLISTED[program] | COMING[program]
                wanted = {option for option in known if option.startswith("--")}
                self.assertEqual(self.hits(f"{program} --"), wanted)

    def test_keys(self):
        keys = {hit.split("=")[0] for hit in self.hits("brevant-cli --set ")}
        self.assertEqual(keys, set(self.settings))

    def test_values(self):
        for key, default in self.settings.items():
            with self.subTest(key=key):
                if isinstance(default, bool):
                    self.assertEqual(self.values(key), {"true", "false"})
                elif key == "selectedEncodingKeyString":
                    self.assertEqual(self.values(key), set(self.interface["encodings"]))
                elif key == "selectedFolderKeyString":
                    self.assertEqual(self.values(key), {"sub folder"})
                else:
                    self.assertEqual(self.values(key), set())

    def test_beginning_of_a_value(self):
        self.assertEqual(self.values("selectedEncodingKeyString", "big5"), {"big5", "big5-hkscs"})

    def test_kinds(self):
        extra = {kind["extension"] for kind in self.interface["extraKinds"]}
        self.assertIn("svg", extra)
        self.assertEqual(self.hits("brevant-cli --also "), extra)
        more = {hit.removeprefix("svg,") for hit in self.hits("brevant-cli --also svg,")}
        self.assertLessEqual(extra - {"svg"}, more)
        self.assertLessEqual(more, extra)

    def test_profiles(self):
        self.assertEqual(self.hits("brevant-cli --profile "), set())
        names = ["dev", "de-1.0", "prod", "two words", "$(touch run)", "`touch run`"]
        project = Path("brevant.json")
        project.write_text(json.dumps({"profiles": {name: {} for name in names}}))
        self.addCleanup(project.unlink)
        with mock.patch.dict(os.environ, PATH=f"{BUILD}:{os.environ['PATH']}"):
            self.assertEqual(self.hits("brevant-cli --profile "), {"dev", "de-1.0", "prod"})
            self.assertEqual(self.hits("brevant-cli --profile de"), {"dev", "de-1.0"})
            project.write_text("{}")
            self.assertEqual(self.hits("brevant-cli --profile "), set())
        self.assertFalse(Path("run").exists())

    def test_files(self):
        for program in ("brevant", "brevant-cli"):
            with self.subTest(program=program):
                self.assertEqual(self.hits(f"{program} "), {*self.files, "sub folder"})

    def test_files_of_options(self):
        settings = self.hits("brevant-cli --settings ")
        self.assertIn("s.json", settings)
        self.assertIn("sub folder", settings)
        self.assertIn("x.txt", self.hits("brevant-cli --report "))


class Bash(Completions):
    shell = staticmethod(bash)


class Zsh(Completions):
    shell = staticmethod(zsh)


class Fish(Completions):
    shell = staticmethod(fish)
    values_with_key = True


del Completions  # so that it is not found as a test

if __name__ == "__main__":
    main()
