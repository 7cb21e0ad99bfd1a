#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The JSON schema of the project file that is installed takes what the program takes, and nothing else."""
import json
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

import jsonschema

from programs import BUILD, SOURCE, interface, main

SCHEMA = json.loads((SOURCE / "resources/project.schema.json").read_text(encoding="utf-8"))

GOOD = [
    "{}",
    ' \n{ "$schema": "https://brevant.example/project.schema.json" }\n',
    '{"paths": ["."], "exclude": [], "include": ["*.js", "!a"], "gitignore": false, "sort": true}',
    '{"paths": ["src/css", "./a", "a..b", "..."], "also": ["mjs", "cjs", "htm", "svg"]}',
    '{"outDir": "dist/", "copyRest": true, "keepTimes": false}',
    '{"settings": {}, "overrides": [], "profiles": {}}',
    '{"settings": {"suffixKeyString": "", "lineBreakKeyString": "80", "selectedFolderKeyString": "out"}}',
    '{"settings": {"compressorsKeyString": "modern", "selectedEncodingKeyString": "gbk"}}',
    '{"overrides": [{"files": ["vendor/**"], "settings": {"compressorsKeyString": "classic"}}]}',
    '{"overrides": [{"settings": {}, "files": ["a"]}, {"files": ["b", "c"], "settings": {"suffixKeyString": "-b"}}]}',
    '{"profiles": {"a": {}, "ä b": {"paths": ["x"], "settings": {"gzipCheckerKeyString": true},'
    ' "overrides": [{"files": ["*"], "settings": {"brotliCheckerKeyString": true}}]}}}',
]
BAD = [
    "", "[]", "null", "1", '"a"', "{", '{"sort": true,}', "{'sort': true}", '{"sort": true} x', "// a\n{}",
    '{"sort": true, "sort": true}', '{"profiles": {"a": {}, "a": {}}}', '{"exclude": ["\ud800"]}',
    '{"sorted": true}', '{"Sort": true}', '{"": 1}',
    '{"$schema": 1}', '{"sort": 1}', '{"gitignore": "true"}', '{"copyRest": null}', '{"keepTimes": []}',
    '{"paths": []}', '{"paths": "."}', '{"paths": [""]}', '{"paths": [1]}', '{"paths": ["/"]}', '{"paths": [".."]}',
    '{"paths": ["a/../b"]}', '{"paths": ["../a"]}', '{"paths": ["a/.."]}', '{"paths": ["/etc"]}',
    '{"outDir": ""}', '{"outDir": "/tmp"}', '{"outDir": "../dist"}', '{"outDir": ["dist"]}',
    '{"exclude": "a"}', '{"exclude": [""]}', '{"include": [true]}', '{"include": {}}',
    '{"also": ["css"]}', '{"also": "mjs"}', '{"also": [1]}',
    '{"settings": []}', '{"settings": {"suffix": "-a"}}', '{"settings": {"gzipCheckerKeyString": "true"}}',
    '{"settings": {"suffixKeyString": false}}', '{"settings": {"suffixKeyString": "/../a"}}',
    '{"settings": {"lineBreakKeyString": 80}}', '{"settings": {"lineBreakKeyString": "x"}}',
    '{"settings": {"lineBreakKeyString": ""}}', '{"settings": {"compressorsKeyString": "other"}}',
    '{"settings": {"selectedEncodingKeyString": "ascii"}}', '{"settings": {"selectedFolderKeyString": "/tmp"}}',
    '{"settings": {"selectedFolderKeyString": ""}}', '{"settings": {"selectedFolderKeyString": "a/../../b"}}',
    '{"settings": {"esbuildPathKeyString": "/bin/true"}}', '{"settings": {"keepOriginalsCheckerKeyString": true}}',
    '{"overrides": {}}', '{"overrides": [1]}', '{"overrides": [{}]}', '{"overrides": [{"files": ["a"]}]}',
    '{"overrides": [{"settings": {}}]}', '{"overrides": [{"files": [], "settings": {}}]}',
    '{"overrides": [{"files": "a", "settings": {}}]}', '{"overrides": [{"files": ["a"], "settings": 1}]}',
    '{"overrides": [{"files": ["a"], "settings": {}, "outDir": "b"}]}',
    '{"overrides": [{"files": ["a"], "settings": {"sameFolderKeyString": false}}]}',
    '{"overrides": [{"files": ["a"], "settings": {"selectedFolderKeyString": "b"}}]}',
    '{"overrides": [{"files": ["a"], "settings": {"enablePHPCheckerKeyString": true}}]}',
    '{"profiles": []}', '{"profiles": {"a": []}}', '{"profiles": {"": {}}}', '{"profiles": {"a": {"b": 1}}}',
    '{"profiles": {"a": {"profiles": {}}}}', '{"profiles": {"a": {"outDir": "/b"}}}',
]
FOR_THE_COMMAND_LINE = {"esbuildPathKeyString", "keepOriginalsCheckerKeyString"}


def without_twins(pairs):
    """An object, in which json itself would let the last of two values with one key win."""
    if len(dict(pairs)) < len(pairs):
        raise ValueError("a key is there twice")
    return dict(pairs)


def is_valid(text):
    """What the schema says."""
    try:
        content = json.loads(text, object_pairs_hook=without_twins)
        text.encode()
    except ValueError:
        return False
    return jsonschema.Draft202012Validator(SCHEMA).is_valid(content)


class Projects(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name).resolve()

    def error(self, text):
        """What the program says is wrong with a project file; empty if it takes it."""
        (self.folder / "brevant.json").write_bytes(text.encode("utf-8", "surrogatepass"))
        run = subprocess.run([BUILD / "brevant-cli", "--show-settings"], cwd=self.folder, stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, env={**os.environ, "HOME": str(self.folder)}, check=False)
        self.assertEqual(run.returncode, 2 if run.stderr else 0)
        return run.stderr.decode()

    def test_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_good_ones(self):
        for text in GOOD:
            with self.subTest(text):
                self.assertEqual(self.error(text), "")
                self.assertTrue(is_valid(text))

    def test_bad_ones(self):
        for text in BAD:
            with self.subTest(text):
                place = re.escape(str(self.folder / "brevant.json"))
                self.assertRegex(self.error(text), rf"^brevant-cli: {place}:\d+:\d+: [^\n]+\n$")
                self.assertFalse(is_valid(text))

    def test_settings(self):
        """All but those that are for the command line alone, each of its type."""
        types = {setting["key"]: "boolean" if isinstance(setting.get("default"), bool) else "text"
                 for setting in interface()["settings"] if setting["key"] not in FOR_THE_COMMAND_LINE}
        described = SCHEMA["$defs"]["settings"]["properties"]
        self.assertEqual({key: "boolean" if value == {"type": "boolean"} else "text"
                          for key, value in described.items()}, types)
        self.assertEqual(described["selectedEncodingKeyString"]["enum"], interface()["encodings"])
        self.assertEqual(SCHEMA["$defs"]["values"]["properties"]["also"]["items"]["enum"],
                         [kind["extension"] for kind in interface()["extraKinds"]])

    def test_what_overrides_can_hold(self):
        """The settings that the schema names there, and no others."""
        overrides = SCHEMA["$defs"]["values"]["properties"]["overrides"]["items"]["properties"]
        named = set(overrides["settings"]["propertyNames"]["enum"])
        values = {"suffixKeyString": "-a", "lineBreakKeyString": "80", "compressorsKeyString": "modern",
                  "selectedEncodingKeyString": "gbk", "selectedFolderKeyString": "out"}
        for key in SCHEMA["$defs"]["settings"]["properties"]:
            with self.subTest(key):
                text = json.dumps({"overrides": [{"files": ["a"], "settings": {key: values.get(key, True)}}]})
                self.assertEqual(self.error(text) == "", key in named)
                self.assertEqual(is_valid(text), key in named)


main()
