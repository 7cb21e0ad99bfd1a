#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The JSON reports of real runs are what the schema says that is installed."""
import json
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import jsonschema

from programs import BUILD, main

SCHEMA = json.loads((Path(__file__).resolve().parents[2] / "resources/report.schema.json").read_text())


class Reports(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def add(self, **sources):
        for name, text in sources.items():
            (self.folder / name.replace("_", ".")).write_text(text)

    def report(self, *options):
        """That of a run over the folder, which is valid, and its exit status."""
        environment = {**os.environ, "HOME": str(self.folder / "home"), "XDG_CONFIG_HOME": str(self.folder / "home")}
        run = subprocess.run([BUILD / "brevant-cli", "--report", "-", *options, "."], cwd=self.folder,
                             env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False)
        report = json.loads(run.stdout)
        jsonschema.Draft202012Validator(SCHEMA).validate(report)
        return report, run.returncode

    def test_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_classic(self):
        self.add(a_css="a { color : red }", b_js="var f = () => 1;", c_html="<p> a </p>")
        report, status = self.report("--set", "gzipCheckerKeyString=true", "--jobs", "2")
        self.assertEqual(status, 1)
        self.assertEqual((report["done"], report["failed"]), (2, 1))
        failed = [file for file in report["files"] if file["outcome"] == "failed"]
        self.assertEqual(failed[0]["messages"][0]["line"], 1)

    def test_checked(self):
        self.add(a_css="a { width : calc(1px + 2px) }", b_js='function f() { "use strict"; return 1; }')
        report, status = self.report("--check")
        self.assertEqual(status, 1)
        self.assertTrue(any(file["warnings"] for file in report["files"]))

    def test_modern(self):
        self.add(a_css="a { color : red }", b_js="var = 1;", c_js="var o = {a: 1, a: 2};")
        report, status = self.report("--set", "compressorsKeyString=modern", "--set", "brotliCheckerKeyString=true")
        self.assertEqual(status, 1)
        self.assertEqual((report["done"], report["failed"]), (2, 1))

    def test_nothing(self):
        self.assertEqual(self.report()[0]["files"], [])

    def test_what_a_report_is_not(self):
        self.add(a_css="a { color : red }")
        valid, _ = self.report()
        for change in ({"version": 2}, {"done": -1}, {"files": None}, {"more": 1},
                       {"files": [{"source": "/a.css", "outcome": "failed"}]},
                       {"files": [{"source": "/a.css", "outcome": "not run", "seconds": 1}]}):
            with self.subTest(change), self.assertRaises(jsonschema.ValidationError):
                jsonschema.Draft202012Validator(SCHEMA).validate({**valid, **change})


main()
