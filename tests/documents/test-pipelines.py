#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The examples of docs/pipelines.md do what is said of them; each is taken from the document itself. So does the
example site, which is a project."""
import os
import re
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ET
from pathlib import Path

import yaml

from programs import BUILD, SOURCE, main

DOCUMENT = (SOURCE / "docs/pipelines.md").read_text(encoding="utf-8")
BROKEN = "a();\nvar = ;\n"

# As ssh is called: the name of a machine, and words for a shell there.
SSH = """#!/bin/sh
while case $1 in -*) true ;; *) false ;; esac; do shift; done
echo "$1" >>"$HOME/machines"
shift
[ "$1" != -- ] || shift
cd && exec sh -c "$*"
"""


def blocks(chapter, language):
    """The examples of a chapter in that language."""
    text = re.search(rf"^#+ {re.escape(chapter)}\n(.*?)(?=^## |\Z)", DOCUMENT, re.DOTALL | re.MULTILINE)[1]
    found = re.findall(rf"^```{language}\n(.*?)^```$", text, re.DOTALL | re.MULTILINE)
    assert found, f"no {language} in {chapter}"
    return found


@unittest.skipUnless((BUILD / "libexec/esbuild").exists(), "the modern compressors are missing")
class Builds(unittest.TestCase):
    """A folder to build in, with a home outside it."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name) / "home"
        self.folder = Path(folder.name) / "work"
        self.home.mkdir()

    def run_here(self, *command, **environment):
        own = {"PATH": f"{BUILD}:{os.environ['PATH']}", "HOME": str(self.home), "XDG_CONFIG_HOME": str(self.home),
               "XDG_STATE_HOME": str(self.home), "npm_config_update_notifier": "false", "npm_config_offline": "true"}
        ended = subprocess.run(command, cwd=self.folder, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                               stderr=subprocess.STDOUT, env=os.environ | own | environment, timeout=120, check=False)
        return ended.returncode, ended.stdout.decode()

    def succeed(self, *command, **environment):
        status, output = self.run_here(*command, **environment)
        self.assertEqual(status, 0, output)
        return output


class Pipelines(Builds):
    def setUp(self):
        super().setUp()
        self.add("minify.json", blocks("Pipelines and many machines", "json")[0])
        self.add("site/css/base.css", "a { color : #ff0000 ; }\n")
        self.add("site/css/print.css", "b { color : #00ff00 ; }\n" * 3)
        self.add("site/js/menu.js", "var first = 1 ;\n" * 2)
        for name in ("a", "b"):
            self.add(f"site/css/{name}.css", "i { color : blue }\n")
        self.add("site/js/old.min.js", "var old = 1 ;\n")  # its source was deleted since

    def add(self, name, text):
        path = self.folder / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)

    def outputs(self):
        """What was made, by name."""
        return {str(path.relative_to(self.folder)): path.read_text()
                for path in sorted(self.folder.glob("site/**/*.min.*")) if path.name != "old.min.js"}

    def taken_outputs(self):
        outputs = self.outputs()
        for name in outputs:
            (self.folder / name).unlink()
        return outputs

    def wanted(self):
        """What a single run makes, which is no longer there afterwards."""
        self.succeed("brevant-cli", "--settings", "minify.json", "site")
        outputs = self.taken_outputs()
        self.assertGreater(len(outputs), 2)
        return outputs

    def test_parallel(self):
        for number in range(250):
            self.add(f"site/many/{number} \n.css", f"a {{ width : {number}px ; }}\n")
        wanted = self.wanted()
        self.add("../ssh", SSH)
        ssh = self.folder.parent / "ssh"
        ssh.chmod(0o755)
        script = blocks("GNU parallel, on several machines", "sh")[0]
        environment = {"PARALLEL_SSH": str(ssh), "SHELL": "/bin/sh"}
        self.succeed("sh", "-c", script, **environment)
        self.assertEqual(self.taken_outputs(), wanted)
        machines = (self.home / "machines").read_text().split()
        self.assertEqual(set(machines), {"build1", "build2"})
        self.add("site/js/broken.js", BROKEN)
        status, output = self.run_here("sh", "-c", script, **environment)
        self.assertEqual(status, 1, output)
        self.assertEqual(self.outputs(), wanted)

    def test_make(self):
        wanted = self.wanted()
        self.add("Makefile", blocks("make", "makefile")[0])
        self.succeed("make", "-j8")
        self.assertEqual(self.outputs(), wanted)
        self.assertIn("Nothing to be done", self.succeed("make", "-j8"))
        self.add("site/js/broken.js", BROKEN)
        for _ in range(2):
            status, output = self.run_here("make", "-k")
            self.assertEqual(status, 2)
            self.assertIn("<stdin>:2:5: error: ", output)
            self.assertEqual(self.outputs(), wanted)

    def test_ninja(self):
        self.add("build.ninja", blocks("Ninja", "ninja")[0])
        self.succeed("ninja")
        self.assertEqual(list(self.outputs()), ["site/css/base.min.css", "site/js/menu.min.js"])
        self.assertIn("no work to do", self.succeed("ninja"))
        sheet = self.folder / "site/css/base.min.css"
        before = sheet.stat().st_mtime_ns
        (self.folder / "site/js/menu.min.js").unlink()
        self.succeed("ninja")
        self.assertEqual(len(self.outputs()), 2)
        self.assertEqual(sheet.stat().st_mtime_ns, before)
        self.add("site/js/menu.js", BROKEN)
        for _ in range(2):
            self.assertNotEqual(self.run_here("ninja")[0], 0)

    def test_npm(self):
        wanted = {name.replace("site/", "public/").replace(".min.", "."): text for name, text in self.wanted().items()}
        wanted |= {"public/logo.png": "a picture", "public/js/old.min.js": "var old = 1 ;\n"}
        self.add("site/logo.png", "a picture")
        self.add("package.json", blocks("npm", "json")[0])

        def public():
            return {str(path.relative_to(self.folder)): path.read_text()
                    for path in self.folder.glob("public/**/*.*") if path.name != ".brevant-cache.json"}

        self.assertIn("/public/css/base.css", self.succeed("npm", "run", "list"))
        self.assertEqual(public(), {})
        self.succeed("npm", "run", "build")
        self.assertEqual(public(), wanted)
        self.assertIn("\n5 files unchanged.\n", self.succeed("npm", "run", "build"))
        self.assertNotIn("base.css", self.succeed("npm", "run", "list"))
        self.add("site/js/broken.js", BROKEN)
        self.assertNotEqual(self.run_here("npm", "run", "build")[0], 0)
        self.assertEqual(public(), wanted)

    def check_parts(self, count, run_part):
        """Each file is made by one part."""
        wanted, made = self.wanted(), {}
        for number in range(1, count + 1):
            run_part(number)
            outputs = self.taken_outputs()
            self.assertFalse(outputs.keys() & made.keys())
            made |= outputs
        self.assertEqual(made, wanted)

    def test_github(self):
        job = yaml.safe_load(blocks("Services that build", "yaml")[0])["jobs"]["minify"]
        parts = job["strategy"]["matrix"]["part"]
        minify, show = [step for step in job["steps"] if "run" in step]
        self.assertEqual(show["if"], "failure()")
        summary = self.folder / "summary"

        def run_step(step, part):
            # As GitHub runs it.
            script = step["run"].replace("${{ matrix.part }}", str(part))
            return self.run_here("bash", "-e", "-c", script, GITHUB_STEP_SUMMARY=str(summary))

        def run_part(part):
            self.assertEqual(run_step(minify, part)[0], 0)
            self.assertIn("| ", summary.read_text())
            summary.unlink()

        self.check_parts(len(parts), run_part)
        self.assertEqual(parts, list(range(1, len(parts) + 1)))
        self.add("site/js/broken.js", BROKEN * 20)
        failed = [part for part in parts if run_step(minify, part)[0] == 1]
        self.assertEqual(len(failed), 1)
        status, output = run_step(show, failed[0])
        self.assertEqual(status, 1)
        self.assertIn(f"::error file={self.folder}/site/js/broken.js,line=2,col=5", output)
        # What is kept of the run is what was made.
        kept = {str(file.relative_to(self.folder)) for file in self.folder.glob(job["steps"][-1]["with"]["path"])}
        self.assertEqual(kept - {"site/js/old.min.js"}, set(self.outputs()))

    def test_gitlab(self):
        job = yaml.safe_load(blocks("Services that build", "yaml")[1])["minify"]
        report = self.folder / job["artifacts"]["reports"]["junit"]

        def run_part(part):
            self.succeed("sh", "-e", "-c", "\n".join(job["script"]), CI_NODE_INDEX=str(part),
                         CI_NODE_TOTAL=str(job["parallel"]))
            self.assertEqual(len(list(ET.parse(report).iter("testcase"))), len(self.outputs()))

        self.check_parts(job["parallel"], run_part)

    def test_all_are_run(self):
        """Whoever adds an example adds its test."""
        languages = re.findall(r"^```(\w+)$", DOCUMENT, re.MULTILINE)
        self.assertEqual(languages, ["json", "sh", "makefile", "ninja", "json", "yaml", "yaml"])


class Sample(Builds):
    """The example site is a project that is built."""

    def setUp(self):
        super().setUp()
        self.copy_site()

    def copy_site(self):
        shutil.copytree(SOURCE / "examples", self.folder, ignore=shutil.ignore_patterns("public", "minify.xml"))

    def site(self):
        """The files of the site, as they should be named in public, and those that are there."""
        own = {"README.md", "brevant.json", "package.json", "robots.txt", "minify.xml", ".gitlab-ci.yml"}
        public = self.folder / "public"
        wanted = {path.relative_to(self.folder) for path in self.folder.rglob("*")
                  if path.is_file() and public not in path.parents} - {Path(name) for name in own}
        there = {path.relative_to(public) for path in public.rglob("*") if path.is_file()}
        return wanted, there

    def test_build(self):
        self.succeed("npm", "run", "build")
        wanted, there = self.site()
        self.assertGreater(len(wanted), 15)
        self.assertEqual(there, wanted | {Path("robots.txt"), Path(".brevant-cache.json")})
        self.assertIn(f"\n{len(wanted)} files unchanged.\n", self.succeed("npm", "run", "build"))
        # Only the modern compressors know this.
        (self.folder / "torten/torten.js").write_text("export const f = (x) => x ?? 1 ;\n")
        (self.folder / "legacy/Menu.JS").write_text("export const f = (x) => x ?? 1 ;\n")
        status, output = self.run_here("npm", "run", "build")
        self.assertEqual(status, 1)
        self.assertRegex(output, "Failed: .*/legacy/Menu.JS")
        self.assertEqual((self.folder / "public/torten/torten.js").read_text(), "export const f=o=>o??1;")

    def test_service(self):
        job = yaml.safe_load((self.folder / ".gitlab-ci.yml").read_text())["site"]
        script = "\n".join(job["script"])
        report = self.folder / job["artifacts"]["reports"]["junit"]
        self.succeed("sh", "-e", "-c", script)
        wanted, there = self.site()
        self.assertEqual(len(list(ET.parse(report).iter("testcase"))), len(wanted))
        self.assertTrue({Path(f"{name}.gz") for name in wanted} <= there)
        # The next machine has another copy of it all, with nothing but the cached folder from the last.
        shutil.copytree(self.folder / job["cache"]["paths"][0], self.home / "cached")
        shutil.rmtree(self.folder)
        self.copy_site()
        shutil.move(self.home / "cached", self.folder / job["cache"]["paths"][0])
        self.succeed("sh", "-e", "-c", script)
        self.assertEqual(len(list(ET.parse(report).iter("testcase"))), 0)
        self.assertEqual(self.site()[1], there)


if __name__ == "__main__":
    main()
