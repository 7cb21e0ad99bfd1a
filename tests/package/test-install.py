#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""test-install.py CMAKE BUILD FOLDER: installs the build into FOLDER, moves the tree elsewhere and uses it there."""
import os
import re
import shutil
import stat
import subprocess
import sys
from pathlib import Path

from in_use import SHORT, SOURCE, use_in_window
from session import Session, equal

HERE = Path(__file__).resolve().parent
EXECUTABLE = {"bin/brevant", "bin/brevant-cli", "libexec/brevant/brevant-markup", "libexec/brevant/esbuild",
              "share/kio/servicemenus/org.brevant.Brevant-minify.desktop"}


def check_modes(top):
    """Whatever the umask: everybody may read, only the owner writes. Folders are made as the umask says."""
    for path in top.rglob("*"):
        if path.is_dir():
            continue
        expected = 0o755 if str(path.relative_to(top)) in EXECUTABLE else 0o644
        equal(oct(stat.S_IMODE(path.stat().st_mode)), oct(expected), f"mode of {path.relative_to(top)}")


def main():
    cmake, build, folder = sys.argv[1], Path(sys.argv[2]), Path(sys.argv[3])
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    # The record of what was installed belongs to a developer's own installation.
    manifest = build / "install_manifest.txt"
    kept = manifest.read_bytes() if manifest.exists() else None
    os.umask(0o077)
    subprocess.run([cmake, "--install", build, "--prefix", folder / "first", "--strip"], check=True,
                   stdout=subprocess.DEVNULL)
    os.umask(0o022)
    if kept is None:
        manifest.unlink(missing_ok=True)
    else:
        manifest.write_bytes(kept)
    prefix = folder / "another place"
    (folder / "first").rename(prefix)
    check_modes(prefix)

    programs = [prefix / "bin/brevant", prefix / "bin/brevant-cli", prefix / "libexec/brevant/brevant-markup"]
    modules = sorted(prefix.glob("lib/**/brevant/*.so"))
    equal([module.name for module in modules], ["brevant-preview.so"], "modules")
    subprocess.run([HERE / "test-hardening.sh", "--installed", *programs, *modules], check=True)

    manual = prefix / "share/doc/brevant"
    equal(sorted(page.name for page in manual.glob("*.html")),
          ["brevant-cli.1.html", "brevant-settings.5.html", "brevant.1.html", "brevant.json.5.html"], "pages of the manual")
    equal((manual / "pipelines.md").is_file(), True, "examples for builds")
    for page in manual.glob("*.html"):
        for link in re.findall(r'(?:href|src)="([^"#:]+)"', page.read_text()):
            equal((manual / link).is_file(), True, f"{page.name} leads to {link}")

    metainfo = prefix / "share/metainfo/org.brevant.Brevant.metainfo.xml"
    cache = (build / "CMakeCache.txt").read_text()
    for variable, shown in (("BREVANT_HOME_PAGE", r'<url type="homepage">(.*)<'),
                            ("BREVANT_SUPPORT_MAIL", r"<update_contact>(.*)<")):
        address = re.search(rf"^{variable}:\w+=(.*)", cache, re.MULTILINE)[1]
        equal(re.findall(shown, metainfo.read_text()), [address] if address else [], variable)
    subprocess.run(["appstreamcli", "validate", "--no-net", metainfo], check=True, stdout=subprocess.DEVNULL)

    site = folder / "site"
    site.mkdir()
    (site / "style.css").write_text(SOURCE)
    environment = {"PATH": "/usr/bin:/bin", "HOME": str(folder), "LC_ALL": "C.UTF-8"}
    subprocess.run([programs[1], "--quiet", site / "style.css"], check=True, env=environment)
    equal((site / "style.min.css").read_text(), SHORT, "what brevant-cli wrote")
    (site / "style.min.css").unlink()
    with Session() as session:
        use_in_window(session, site, programs[0], site / "style.css")
    shutil.rmtree(folder)


main()
