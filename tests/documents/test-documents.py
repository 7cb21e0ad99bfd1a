#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The manual pages and the README hold what the programs have: options, settings, encodings, menu items, keys, the
members of the report. What they link to is there, and so is each room that the documents for developers name."""
import html
import json
import os
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

from programs import BUILD, COMING, SOURCE, UNLISTED, interface, main, options, output

README = (SOURCE / "README.md").read_text(encoding="utf-8")
KEY_NAMES = {"Esc": "Escape", "Del": "Delete"}  # Qt's name, and the one on the key


class Page:
    """A manual page as a reader sees it, by its sections."""

    def __init__(self, name):
        # Wide, so that no item is broken in two.
        text = output("mandoc", "-T", "utf8", "-O", "width=240", BUILD / "docs/man" / name)
        self.text = re.sub(".\b", "", text)
        parts = re.split(r"^([A-Z][A-Z ]+)\n", self.text, flags=re.MULTILINE)
        self.sections = dict(zip(parts[1::2], parts[2::2]))

    def items(self, section):
        """The lines that head the items of a list."""
        return re.findall(r"^ {5}(\S.*?)\s*$", self.sections[section], re.MULTILINE)


class ManualPages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.interface = interface()
        cls.settings = {setting["key"]: setting.get("default") for setting in cls.interface["settings"]}
        cls.pages = {path.stem: Page(path.name) for path in (BUILD / "docs/man").glob("brevant*.[15]")}
        cls.settings_page = cls.pages["brevant-settings"]

    def test_pages(self):
        version = output(BUILD / "brevant-cli", "--version").split()[1]
        sources = sorted(path.name.removesuffix(".in") for path in (SOURCE / "docs/man").glob("*.in"))
        self.assertEqual(sources, ["brevant-cli.1", "brevant-settings.5", "brevant.1", "brevant.json.5"])
        for name, page in self.pages.items():
            self.assertRegex(page.text, rf"\nBrevant {re.escape(version)} ", f"the version at the foot of {name}")

    def test_references(self):
        for path in (SOURCE / "docs/man").glob("*.in"):
            for name, section in re.findall(r"^\.Xr (brevant\S*) (\d)", path.read_text(), re.MULTILINE):
                self.assertTrue((SOURCE / f"docs/man/{name}.{section}.in").is_file(), f"{path.name}: {name}({section})")

    def test_options(self):
        for program in ("brevant", "brevant-cli"):
            with self.subTest(program=program):
                items = [item for item in self.pages[program].items("OPTIONS") if item.startswith("-")]
                described = {word.rstrip(",") for item in items for word in item.split() if word.startswith("-")}
                there = options(program)
                self.assertEqual(there - described, set(), "not described")
                self.assertEqual(described - there - UNLISTED[program] - COMING[program], set(), "not there")

    def test_settings(self):
        heads = re.findall(r"^ {5}(\w+) \((boolean|string), (.*)\)$", self.settings_page.sections["SETTINGS"],
                           re.MULTILINE)
        described = {key: None if value == "no default" else value == "true" if kind == "boolean" else value.strip("“”")
                     for key, kind, value in heads}
        self.assertEqual(described, self.settings)

    def test_ways_of_reading(self):
        """Each boolean setting is named where it says how other values are taken, and no text is."""
        named = set(re.findall(r"\w+KeyString", self.settings_page.sections["TRUE AND FALSE"]))
        self.assertEqual(named, {key for key, default in self.settings.items() if isinstance(default, bool)})

    def test_encodings(self):
        described = [item.split()[0] for item in self.settings_page.items("ENCODINGS") if len(item.split()) == 2]
        self.assertEqual(described, self.interface["encodings"])

    def test_kinds(self):
        """Each kind is named in both pages and the README, and its media type in what desktops are told."""
        pages = {name: " ".join(self.pages[name].sections["DESCRIPTION"].split())
                 for name in ("brevant", "brevant-cli")}
        desktop = SOURCE / "resources/desktop"
        own = {glob.get("pattern"): kind.get("type")
               for kind in ET.parse(desktop / "org.brevant.Brevant.mime.xml").findall("{*}mime-type")
               for glob in kind.findall("{*}glob")}
        entry = (desktop / "org.brevant.Brevant.desktop").read_text(encoding="utf-8")
        types = re.search(r"^MimeType=(.*);$", entry, re.MULTILINE)[1].split(";")
        metadata = ET.parse(desktop / "org.brevant.Brevant.metainfo.xml")
        self.assertEqual([kind.text for kind in metadata.iter("mediatype")], types)
        self.assertGreater(len(self.interface["kinds"]), 0)
        for kind in self.interface["kinds"]:
            with self.subTest(kind=kind["extension"]):
                self.assertRegex(pages["brevant-cli"], rf"tells its kind[^.]*\b{kind['extension']}\b")
                self.assertIn(kind["name"], pages["brevant"])
                self.assertIn(kind["name"], README.split("\n## ")[0])
                self.assertIn(kind["type"] or own.get(f"*.{kind['extension']}"), types)

    def test_extra_kinds(self):
        """Each is named in the manual page and the help of the terminal program."""
        helped = re.search("--also.*", output(BUILD / "brevant-cli", "--help"))[0]
        described = re.search("--also.*?--", self.pages["brevant-cli"].sections["OPTIONS"], re.DOTALL)[0]
        self.assertGreater(len(self.interface["extraKinds"]), 0)
        for kind in self.interface["extraKinds"]:
            self.assertRegex(helped, rf"\b{kind['extension']}\b")
            self.assertRegex(described, rf"\b{kind['extension']}\b")

    def test_preferences(self):
        text = " ".join(self.settings_page.text.split())
        window = ET.parse(SOURCE / "resources/Preferences.ui")
        labels = [widget.find("property[@name='text']/string").text.replace("&", "").rstrip(":")
                  for widget in window.iter("widget") if widget.get("class") in ("QCheckBox", "QRadioButton")]
        self.assertGreater(len(labels), 0)
        for label in labels:
            self.assertIn(f"“{label}”", text)

    def test_menus(self):
        described, menu = [], None
        for line in self.pages["brevant"].sections["MENUS AND KEYS"].splitlines():
            if match := re.fullmatch(r" {3}(\S.*)", line):
                menu = match[1]
            elif (match := re.fullmatch(r" {5}(\S.*?)(?: \((\S+)\))?", line)) and not menu.startswith("In the "):
                described.append((menu, match[1], match[2] or ""))
        there = [(item["menu"], item["text"], KEY_NAMES.get(item["key"], item["key"]))
                 for item in self.interface["items"]]
        self.assertEqual(described, there)

    def test_other_keys(self):
        text = self.pages["brevant"].sections["MENUS AND KEYS"]
        self.assertGreater(len(self.interface["keys"]), 0)
        for key in self.interface["keys"]:
            self.assertRegex(text, rf"(?<![\w+]){re.escape(KEY_NAMES.get(key, key))}(?!\w)")

    def test_exit_statuses(self):
        told = re.search(r"Exit status:(.*)", output(BUILD / "brevant-cli", "--help"), re.DOTALL)[1]
        heads = re.findall(r"^ {5}(\d[\d, ]*)", self.pages["brevant-cli"].sections["EXIT STATUS"], re.MULTILINE)
        self.assertEqual(set(re.findall(r"\d+", told)) - set(re.findall(r"\d+", " ".join(heads))), set())

    def report(self, settings, *options):
        """The names in the report of a run, with a note and a failure in it, and a file that is not valid UTF-8."""
        with tempfile.TemporaryDirectory() as folder:
            (Path(folder) / "good.css").write_text("a { colr: red }\n")
            (Path(folder) / "bad.js").write_text("var = ;\n")
            (Path(folder) / "bad.css").write_bytes(b"a { b: '\xff' }")
            (Path(folder) / "settings.json").write_text(json.dumps({"suffixSwitcherKeyString": False, **settings}))
            state = Path(folder) / "state"
            state.write_text("no folder, so that the safety copies are elsewhere, which a note tells")
            report = Path(folder) / "report.json"
            ended = subprocess.run([BUILD / "brevant-cli", *options, "--settings", Path(folder) / "settings.json",
                                    "--report", report, folder],
                                   env={**os.environ, "XDG_STATE_HOME": str(state), "TMPDIR": folder},
                                   stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
            self.assertEqual(ended.returncode, 1, ended.stdout)
            report = json.loads(report.read_text())
        return set(report).union(*report["files"])

    def test_report(self):
        members = self.report({})
        self.assertIn("reason", members)
        heads = {item.split()[0] for item in self.pages["brevant-cli"].items("JSON REPORT") if "(" in item}
        self.assertIn("messages", members)
        if (BUILD / "libexec/esbuild").exists():
            self.assertIn("messages", self.report({"compressorsKeyString": "modern"}))
        self.assertNotIn("brotliSize", members)
        if Path("/usr/bin/brotli").exists():
            self.assertIn("brotliSize", self.report({"brotliCheckerKeyString": True}))
        members.add("brotliSize")
        checked = self.report({}, "--check") - members
        self.assertEqual(checked, {"warnings", "notChecked"})
        self.assertEqual(heads, members | checked)


class Examples(unittest.TestCase):
    """Those of brevant-cli(1) for builds, run twice as builds are."""

    def setUp(self):
        page = (SOURCE / "docs/man/brevant-cli.1.in").read_text(encoding="utf-8")
        self.blocks = re.findall(r"^\.Bd -literal.*?\n(.*?)^\.Ed", page, re.DOTALL | re.MULTILINE)
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        settings = re.search(r"^\$ (echo .* >minify\.json)$", self.block("minify.json"), re.MULTILINE)[1]
        subprocess.run(["sh", "-c", settings], cwd=self.folder, check=True)

    def block(self, word):
        return next(block for block in self.blocks if word in block).replace("\\e", "\\").replace("\\&", "")

    def add(self, name, text):
        path = self.folder / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)

    def run_twice(self, *command):
        """The exit statuses of both, and what files there are after each."""
        statuses, files = [], []
        for _ in range(2):
            ended = subprocess.run(command, cwd=self.folder, stdin=subprocess.DEVNULL, capture_output=True, timeout=60,
                                   env=os.environ | {"PATH": f"{BUILD}:{os.environ['PATH']}", "HOME": str(self.folder)})
            statuses.append(ended.returncode)
            files.append(sorted(path.name for path in self.folder.glob("*/*")))
        return statuses, files

    def test_make(self):
        self.add("Makefile", self.block("SHEETS"))
        self.add("css/a.css", "a { color: red }\n")
        self.assertEqual(self.run_twice("make"), ([0, 0], [["a.css", "a.min.css"]] * 2))
        # The compressor fails and leaves an empty output, which is no reason to pass the sheet over.
        self.add("css/b.css", f'a {{ content: "{5000 * "x"}" }}\n')
        self.assertEqual(self.run_twice("make"), ([2, 2], [["a.css", "a.min.css", "b.css"]] * 2))

    def test_npm(self):
        script = json.loads("{" + self.block('"scripts"') + "}")["scripts"]["build"]
        self.add("src/a.js", "var a = 1;\n")
        self.add("src/gone.min.js", "var b = 1;\n")  # its source was deleted since
        self.assertEqual(self.run_twice("sh", "-c", script), ([0, 0], [["a.js", "a.min.js", "gone.min.js"]] * 2))


class Families(unittest.TestCase):
    """The table in the README of what the compressors make of the modern example."""

    def minified(self, family):
        """The entries of the report by their names, and the outputs."""
        with tempfile.TemporaryDirectory() as folder:
            site = Path(folder) / "site"
            shutil.copytree(SOURCE / "examples/torten", site)
            report = Path(folder) / "report.json"
            subprocess.run([BUILD / "brevant-cli", "--set", f"compressorsKeyString={family}", "--report", report, site],
                           env=os.environ | {"XDG_CONFIG_HOME": folder, "XDG_STATE_HOME": folder},
                           stdin=subprocess.DEVNULL, capture_output=True, timeout=60)
            entries = {Path(entry["source"]).name: entry for entry in json.loads(report.read_text())["files"]}
            outputs = {path.name: path.read_text(encoding="utf-8") for path in site.glob("*.min.*")}
        return entries, outputs

    def test_table(self):
        rows = re.findall(r"^\| `(torten\.(\w+))` \| ([\d,]+) \| (.*?) \| (.*?) \|$", README, re.MULTILINE)
        self.assertEqual({row[0] for row in rows}, {path.name for path in (SOURCE / "examples/torten").iterdir()})
        there = (BUILD / "libexec/esbuild").exists()
        for family, column in (("classic", 3), ("modern", 4)) if there else (("classic", 3),):
            entries, outputs = self.minified(family)
            for row in rows:
                told, entry, output = row[column], entries[row[0]], outputs.get(f"torten.min.{row[1]}", "")
                with self.subTest(family=family, file=row[0]):
                    self.assertEqual(row[2], f"{entry['sizeBefore']:,}")
                    self.assertEqual(told.split(", ")[0],
                                     f"{entry['sizeAfter']:,}" if entry["outcome"] == "done" else "refused")
                    for part in re.findall("`(.*?)`", told):
                        self.assertIn(part, output)


class Readme(unittest.TestCase):
    def test_options(self):
        block = re.search(r"## brevant-cli\n+```\n(.*?)```", README, re.DOTALL)[1]
        told = set(re.findall(r"^ +(-\S+)", block, re.MULTILINE))
        there = options("brevant-cli")
        self.assertEqual(there - told, set(), "not told")
        self.assertEqual(told - there - COMING["brevant-cli"], set(), "not there")

    def test_settings(self):
        rows = re.findall(r"^\| `(\w+KeyString)` \|([^|]*)\|", README, re.MULTILINE)
        told = {key: value.strip(" `") for key, value in rows}
        there = {setting["key"]: str(setting.get("default", "")).lower() for setting in interface()["settings"]}
        self.assertEqual(told, there)

    def test_encodings(self):
        row = re.search(r"^\| `selectedEncodingKeyString` .*$", README, re.MULTILINE)[0]
        for encoding in interface()["encodings"]:
            self.assertRegex(row, rf"[ :]{encoding}[, ]")


class Links(unittest.TestCase):
    def documents(self):
        return [SOURCE / "README.md", SOURCE / "CHANGELOG.md", *(SOURCE / "docs").glob("*.md"),
                SOURCE / "examples/README.md", SOURCE / "resources/lib/README.md"]

    @staticmethod
    def anchors(path):
        """The names by which headings are linked to."""
        heads = re.findall(r"^#+ (.*)$", path.read_text(encoding="utf-8"), re.MULTILINE)
        return {re.sub(r"[^\w -]", "", head.lower()).replace(" ", "-") for head in heads}

    def test_links(self):
        count = 0
        for path in self.documents():
            text = path.read_text(encoding="utf-8")
            for target in re.findall(r"\]\(<?([^)>\s]+)", text) + re.findall(r'(?:src|href|srcset)="([^"]+)"', text):
                if re.match(r"[a-z]+:", target):
                    continue
                count += 1
                file, _, anchor = html.unescape(target).partition("#")
                linked = (path.parent / file).resolve() if file else path
                where = f"{path.relative_to(SOURCE)}: {target}"
                self.assertTrue(linked.exists(), where)
                if anchor:
                    self.assertIn(anchor, self.anchors(linked), where)
        self.assertGreater(count, 0)


class Rooms(unittest.TestCase):
    FOLDERS = ("files", "settings", "widgets", "queue", "engine", "cli", "app", "resources", "tests", "scripts", "docs")

    @staticmethod
    def stems():
        """The sources, a pair of them once: settings/SettingsFile."""
        return {str(path.relative_to(SOURCE).with_suffix("")) for folder in Rooms.FOLDERS[:7]
                for path in (SOURCE / folder).rglob("*.*") if path.suffix in (".cpp", ".h")}

    def test_what_is_named_is_there(self):
        stems, count = self.stems(), 0
        for name in ("architecture.md", "contributing.md"):
            text = (SOURCE / "docs" / name).read_text(encoding="utf-8")
            for path in re.findall(rf"(?<![\w/.-])((?:{'|'.join(self.FOLDERS)})/[\w./-]*\w/?)(?![\w*])", text):
                count += 1
                there = path in stems or (SOURCE / path).exists() or any(SOURCE.glob(f"{path}.*"))
                self.assertTrue(there, f"{name}: {path}")
        self.assertGreater(count, 50)

    def test_every_source_has_a_room(self):
        rooms, folder = set(), ""
        text = (SOURCE / "docs/architecture.md").read_text(encoding="utf-8")
        for row in re.findall(r"^\| ([\w/, -]+) \|", text[text.index("## Rooms"):], re.MULTILINE):
            for name in row.split(", "):
                folder = name.rpartition("/")[0] if "/" in name else folder
                rooms.add(name if "/" in name else f"{folder}/{name}")
        for stem in self.stems():
            if not stem.endswith("/main"):
                self.assertTrue(stem in rooms or f"{stem.rpartition('/')[0]}/" in rooms, stem)


if __name__ == "__main__":
    main()
