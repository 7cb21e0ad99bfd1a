#!/usr/bin/python3 -B
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""The bill of materials is what the built programs link, what the build folder holds, and the same in both forms."""
import hashlib
import json
import re
import subprocess
import unittest
from pathlib import Path

from programs import BUILD, SOURCE, main, output

DEBIAN = "pkg:deb/debian/"


def soname(library):
    """Parts of one library under one name."""
    return "libc.so.6" if re.match(r"(libm\.so|ld-linux)", library) else library


def rows(text):
    """The rows of all tables, by what their first column holds."""
    cells = [[cell.strip().strip("`") for cell in line.strip("|").split("|")]
             for line in text.splitlines() if line.startswith("| ")]
    return {row[0]: row[1:] for row in cells if row[0] != "what"}


class BillOfMaterials(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        bill = json.loads((SOURCE / "docs/bill-of-materials.spdx.json").read_text(encoding="utf-8"))
        cls.bill, cls.packages = bill, {package["SPDXID"]: package for package in bill["packages"]}
        cls.table = rows((SOURCE / "docs/bill-of-materials.md").read_text(encoding="utf-8"))
        cls.binaries = [BUILD / "brevant", BUILD / "brevant-cli", BUILD / "libexec/brevant-markup",
                        *(BUILD / "modules").glob("*.so")]

    def own(self):
        described = [relation["relatedSpdxElement"] for relation in self.bill["relationships"]
                     if relation["relationshipType"] == "DESCRIBES"]
        return {self.packages[identifier]["packageFileName"]: identifier for identifier in described}

    def others(self):
        return [package for key, package in self.packages.items() if key not in self.own().values()]

    def linked(self, identifier):
        return {self.packages[relation["relatedSpdxElement"]]["packageFileName"]
                for relation in self.bill["relationships"]
                if relation["relationshipType"] == "DYNAMIC_LINK" and relation["spdxElementId"] == identifier}

    def debian_names(self):
        """Debian's names of the packages that come from there."""
        names = {}
        for package in self.packages.values():
            for reference in package.get("externalRefs", []):
                if reference["referenceLocator"].startswith(DEBIAN):
                    name = reference["referenceLocator"].removeprefix(DEBIAN).partition("?")[0]
                    names[name.replace("%2B", "+")] = package
        return names

    def test_identifiers(self):
        for relation in self.bill["relationships"]:
            for end in ("spdxElementId", "relatedSpdxElement"):
                self.assertIn(relation[end], {*self.packages, "SPDXRef-DOCUMENT"})
        self.assertEqual(len(self.packages), len(self.bill["packages"]))

    def test_own_version(self):
        version = output(BUILD / "brevant-cli", "--version").split()[1]
        for identifier in self.own().values():
            self.assertEqual(self.packages[identifier]["versionInfo"], version)
        self.assertTrue(self.bill["name"].endswith(version) and self.bill["documentNamespace"].endswith(version))

    def test_every_binary_is_listed(self):
        self.assertEqual(set(self.own()), {binary.name for binary in self.binaries})

    def test_linked_libraries(self):
        for binary in self.binaries:
            with self.subTest(binary=binary.name):
                needed = re.findall(r"\(NEEDED\).*\[(.*)\]", output("readelf", "-dW", binary))
                self.assertEqual({soname(library) for library in needed}, self.linked(self.own()[binary.name]))

    def test_versions(self):
        """Where the libraries come from Debian 12's packages."""
        if "VERSION_CODENAME=bookworm" not in Path("/etc/os-release").read_text(encoding="utf-8"):
            self.skipTest("not on Debian 12")
        for name, package in self.debian_names().items():
            found = subprocess.run(["dpkg-query", "-W", "-f", "${source:Upstream-Version}", name],
                                   stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
            if found and name != "default-jre-headless":
                self.assertEqual(re.split(r"[+~]", found)[0], package["versionInfo"], name)

    def test_packages_to_run_with(self):
        """But for those that scripts/fetch-compressors needs."""
        lines = (SOURCE / "packages/run.txt").read_text().partition("# Fetching")[0].splitlines()
        wanted = {line for line in lines if line and not line.startswith("#")}
        self.assertEqual(wanted - set(self.debian_names()), set())

    def test_compressors(self):
        sums = {(package["checksums"][0]["checksumValue"], package["packageFileName"])
                for package in self.packages.values() if "checksums" in package}
        checked = re.findall(r'"(\S+?)\|([0-9a-f]{64})\|', (SOURCE / "scripts/fetch-compressors").read_text())
        self.assertEqual(sums, {(value, name) for name, value in checked})
        archives = [*(BUILD / "resources/lib").glob("*.jar")]
        self.assertEqual(len(archives), 2)
        modern = [path for name in ("esbuild", "minify.so") if (path := BUILD / "libexec" / name).exists()]
        for path in archives + modern:
            self.assertIn((hashlib.sha256(path.read_bytes()).hexdigest(), path.name), sums)

    def test_versions_of_compressors(self):
        """Those that --version names."""
        lines = output(BUILD / "brevant-cli", "--version").splitlines()
        if (window := BUILD / "brevant").exists():
            self.assertEqual(output(window, "--version").splitlines(), [lines[0].replace("-cli", ""), *lines[1:]])
        told = {line.removesuffix(" (missing)") for line in lines[1:]}
        self.assertEqual(told, {f"{package['name'].split(',')[0]} {package['versionInfo']}"
                                for package in self.packages.values() if "checksums" in package})
        if (esbuild := BUILD / "libexec/esbuild").exists():
            self.assertIn("esbuild " + output(esbuild, "--version").strip(), told)

    def test_table(self):
        self.assertEqual(set(self.table), {package["name"] for package in self.others()})
        for package in self.others():
            with self.subTest(package=package["name"]):
                row = self.table[package["name"]]
                self.assertEqual(row[:2], [package["versionInfo"], package["licenseDeclared"]])
                if "checksums" in package:
                    self.assertEqual(row[2], package["checksums"][0]["checksumValue"])
                elif "packageFileName" in package:
                    users = [file.removesuffix(".so") for file, identifier in self.own().items()
                             if package["packageFileName"] in self.linked(identifier)]
                    self.assertEqual(row[2:], [package["packageFileName"], ", ".join(users)])


if __name__ == "__main__":
    main()
