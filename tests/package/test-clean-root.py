#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""test-clean-root.py DEB FOLDER: installs the package into a bare Debian 12, uses it there and removes it again.

The system is set up in FOLDER from the mirror this machine's apt uses. It is kept, with what the package depends on
installed: a later run, with the same dependencies, works on a copy of it and needs no network. Status 77: skipped."""
import ctypes
import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

from in_use import SHORT, SOURCE, use_in_window
from session import Session, equal

SUITE = "bookworm"
SYSTEM = ["dpkg", "apt", "cache", "log"]  # folders of /var that change whenever anything is installed
ENVIRONMENT = {"PATH": "/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL": "C.UTF-8",
               "HOME": "/root", "DEBIAN_FRONTEND": "noninteractive"}
_CLONE_NEWNS, _MS_BIND, _MS_REC, _MS_PRIVATE = 0x20000, 0x1000, 0x4000, 0x40000
_libc = ctypes.CDLL(None, use_errno=True)


def skip(why):
    print(f"skipped: {why}")
    sys.exit(77)


def step(text, _begin=time.monotonic()):
    print(f"{time.monotonic() - _begin:6.1f} s  {text}", flush=True)


def mount(source, target, kind="none", flags=0, data=None):
    if _libc.mount(str(source).encode(), str(target).encode(), kind.encode(), flags,
                   data.encode() if data else None) != 0:
        raise OSError(ctypes.get_errno(), f"mount {source} on {target}")


def run(*command, **options):
    """Quiet, but for what a failing command said."""
    done = subprocess.run([str(word) for word in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False, text=True, errors="replace", **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}: status {done.returncode}\n{done.stdout[-6000:]}")
    return done.stdout


def run_in(root, *command):
    return run("/usr/sbin/chroot", root, *command, env=ENVIRONMENT)


def mirrors():
    """The address, suite and component of each Debian mirror of this machine's apt; the main one first."""
    lines = run("apt-get", "indextargets", "--format", "$(REPO_URI) $(RELEASE) $(COMPONENT) $(ORIGIN)",
                "Created-By: Packages").splitlines()
    found = [line.split()[:3] for line in lines if line.endswith(" Debian") and f" {SUITE}" in line]
    return sorted(found, key=lambda words: (words[1] != SUITE, words[2] != "main"))


def have_base(folder, depends, sources):
    """A bare system with the dependencies installed, in FOLDER/base."""
    base, stamp, archives = folder / "base", folder / "base-is-for", folder / "archives"
    wanted = depends + "\n" + "".join(" ".join(source) + "\n" for source in sources)
    if stamp.exists() and stamp.read_text() == wanted:
        return base
    stamp.unlink(missing_ok=True)
    if base.exists():
        run("rm", "-rf", "--one-file-system", base)
    archives.mkdir(parents=True, exist_ok=True)
    # Nothing is flushed to the disk for a system of minutes.
    unflushed = base / "etc/dpkg/dpkg.cfg.d/unflushed"
    unflushed.parent.mkdir(parents=True)
    unflushed.write_text("force-unsafe-io\n")
    run("debootstrap", "--variant=minbase", f"--cache-dir={archives}", SUITE, base, sources[0][0])
    step("set up")

    # The network as this machine has it; no services started.
    for name in ("resolv.conf", "hosts"):
        (base / "etc" / name).unlink(missing_ok=True)
        shutil.copy(Path("/etc") / name, base / "etc" / name)
    (base / "etc/apt/apt.conf.d/90network").write_text(
        run("apt-config", "dump", "Acquire::http", "Acquire::https", "Acquire::Check-Date",
            "Acquire::Check-Valid-Until"))
    (base / "etc/apt/sources.list").write_text("".join(f"deb {' '.join(source)}\n" for source in sources))
    policy = base / "usr/sbin/policy-rc.d"
    policy.write_text("#!/bin/sh\nexit 101\n")
    policy.chmod(0o755)

    mount("proc", base / "proc", "proc")
    mount(archives, base / "var/cache/apt/archives", flags=_MS_BIND)
    run_in(base, "apt-get", "-q", "update")
    run_in(base, "apt-get", "-qy", "satisfy", "--no-install-recommends", depends)
    run("umount", base / "var/cache/apt/archives", base / "proc")
    stamp.write_text(wanted)
    step("dependencies installed")
    return base


def copy_of(base, folder):
    """The base in a folder of its own; where there is no overlay, as a real copy."""
    layer, root = folder / "layer", folder / "copy"
    for path in (layer, root):
        if path.exists():
            run("rm", "-rf", "--one-file-system", path)
    for path in (layer / "upper", layer / "work", root):
        path.mkdir(parents=True)
    try:
        mount("overlay", root, "overlay", data=f"lowerdir={base},upperdir={layer}/upper,workdir={layer}/work")
    except OSError:
        root.rmdir()
        run("cp", "-a", "--reflink=auto", base, root)
    mount("proc", root / "proc", "proc")
    return root


def contents(root):
    """Mode and size of every file, and of links where they lead."""
    found = {}
    skipped = {root / name for name in ("proc", "dev", "sys", "tmp", "run")}
    skipped |= {root / "var/lib" / name for name in SYSTEM} | {root / "var" / name for name in SYSTEM}
    for folder, names, files in os.walk(root):
        names[:] = [name for name in names if Path(folder) / name not in skipped]
        for name in names + files:
            path = os.path.join(folder, name)
            state = os.lstat(path)
            target = os.readlink(path) if os.path.islink(path) else None
            size = None if os.path.isdir(path) else state.st_size
            found[os.path.relpath(path, root)] = (oct(state.st_mode), size, target)
    return found


def packages(root):
    return set(run_in(root, "dpkg-query", "-W", "-f", "${binary:Package} ${db:Status-Abbrev}\n").splitlines())


def check(root, deb):
    before, installed_before = contents(root), packages(root)
    shutil.copy(deb, root / "tmp/brevant.deb")
    run_in(root, "apt-get", "-qy", "install", "--no-install-recommends", "/tmp/brevant.deb")
    new = packages(root) - installed_before
    equal({line.split()[0] for line in new}, {"brevant"}, "installed with the package")
    step("package installed")
    equal((root / "usr/share/mime/application/x-phtml.xml").exists(), True, "phtml known as a kind of file")

    with Session() as session:
        site = session.home / "site"
        site.mkdir()
        (site / "style.css").write_text(SOURCE)
        inside = root / str(session.folder).lstrip("/")
        inside.mkdir(parents=True)
        mount(session.folder, inside, flags=_MS_BIND)
        try:
            run_in(root, "brevant-cli", site / "style.css")
            equal((site / "style.min.css").read_text(), SHORT, "what brevant-cli wrote")
            (site / "style.min.css").unlink()
            step("used in a terminal")
            use_in_window(session, site, "/usr/sbin/chroot", root, "/usr/bin/brevant", site / "style.css")
        finally:
            run("umount", inside)
    step("used in its window")

    run_in(root, "apt-get", "-qy", "purge", "brevant")
    after = contents(root)
    equal({path: after.get(path) for path in before.keys() | after.keys() if before.get(path) != after.get(path)},
          {}, "left or changed when the package is gone")
    equal(packages(root), installed_before, "packages")
    step("removed without a trace")


def main():
    deb, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    if os.geteuid() != 0:
        skip("only root can set up a system")
    for tool in ("debootstrap", "apt-get", "dpkg-deb", "Xvfb"):
        if not shutil.which(tool):
            skip(f"{tool} was not found")
    sources = mirrors()
    if not sources:
        skip(f"apt has no mirror of Debian {SUITE} here")
    # What is mounted from here on is seen by nobody else, and gone at the end whatever happens.
    if _libc.unshare(_CLONE_NEWNS) != 0:
        skip("mounting is not allowed here")
    try:
        mount("none", "/", flags=_MS_REC | _MS_PRIVATE)
    except OSError:
        skip("/ is no mount point here, so that what is mounted would be seen by others")
    folder.mkdir(parents=True, exist_ok=True)
    root = copy_of(have_base(folder, run("dpkg-deb", "-f", deb, "Depends").strip(), sources), folder)
    check(root, deb)
    run("umount", "--recursive", root)
    run("rm", "-rf", "--one-file-system", folder / "layer", folder / "copy")


main()
