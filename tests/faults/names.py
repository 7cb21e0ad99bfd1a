# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
"""Names that are hard on programs: each is minified, or the terminal says that it is not."""
import os

from places import Place, Tally

TEXT, MINIFIED = b"a { color : red ; }\n", b"a{color:red}"

PLAIN = [b"two\nlines", b"it's", b"\x01\x1b[31m\x7f", b'"q"', b"-rf", b"--help", b"-o", b"$HOME", b"`id`", b"back\\slash", b" blank ",
         b"*?[a]{b}", b"100%1", b"#;&|<>()!", b"~", b"\ttab", b"..x", b".hidden", b"@file",
         b"n" * 247]
WIDE = ["übel", "u\u0308", "日本語", "한국어", "🙂👩‍💻", "עברית", "العربية", "\u202egpj.exe",
        "\u200b", "\ufeffmark", "ß" * 123]
# Each with a letter of its own: those that differ in bad bytes alone look the same, and count as one.
BROKEN = [b"a\xff", b"caf\xe9", b"b\xc3", b"c\xed\xa0\x80", b"d\xf5\x80\x80\x80"]
COLON = [b"a:b", b":x", b"c:"]
TOO_LONG = [b"n" * 248, b"n" * 251]  # of the output there would be more than 255 bytes


def check(tally, what, place, arguments, names, impossible=()):
    """`names`: those that must be minified; `impossible`: those that may fail if that is said."""
    ended = place.run(*arguments)
    minified, lost, problems = 0, [], []
    for name in [*names, *impossible]:
        source, output = place.folder + b"/" + name + b".css", place.folder + b"/" + name + b".min.css"
        if not has(source, TEXT):
            lost.append(repr(name))
        good = len(output) < 4096 and has(output, MINIFIED)
        minified += good
        if not good and name not in impossible:
            problems.append(f"{name!r} is not minified")
    missing = len(names) + len(impossible) - minified
    if (ended.status != 0) != (missing > 0):
        problems.append(f"ended with {ended.status}, {missing} are not minified")
    if missing > ended.err.count(b".css: "):
        problems.append(f"{missing} are not minified, and {ended.err.count(b'.css: ')} of them are named")
    if b"\x1b[31m" in ended.out + ended.err:
        problems.append("a name's control characters reach the terminal")
    tally.add(what, len(names) + len(impossible), lost, problems)


def has(path, content):
    try:
        with open(path, "rb") as file:
            return file.read() == content
    except OSError:
        return False


def make(place, names):
    place.folder = os.fsencode(place.site) + b"/in"
    os.mkdir(place.folder)
    for name in names:
        with open(place.folder + b"/" + name + b".css", "wb") as file:
            file.write(TEXT)


def battery(full, locale):
    tally = Tally(f"names, {locale}")
    plain = PLAIN if full else PLAIN[:8:2] + PLAIN[-1:]
    wide = [name.encode() for name in (WIDE if full else WIDE[:5:2])]
    ascii_only = locale == "C"
    for what, names, impossible in (("plain", plain, ()), ("beyond ASCII", () if ascii_only else wide,
                                                           wide if ascii_only else ()),
                                    ("not UTF-8", (), BROKEN if full else BROKEN[:1]),
                                    ("too long", (), TOO_LONG if full else TOO_LONG[:1]),
                                    ("colons", (), COLON if full else COLON[:1])):
        with Place() as place:
            place.environment["LC_ALL"] = locale
            make(place, [*names, *impossible])
            check(tally, what, place, [place.folder], names, impossible)
    return tally


def long_paths(full):
    """Paths of 4,080 to 4,095 bytes, which is the most that the system takes."""
    tally = Tally("paths near 4,096 bytes")
    for length in range(4080, 4096) if full else (4091, 4095):
        with Place() as place:
            folder = os.fsencode(place.site)
            while len(folder) < 3840:
                folder += b"/" + b"d" * min(250, 3840 - len(folder) + 1)
                os.mkdir(folder)
            place.folder = folder
            name = b"n" * (length - len(folder) - 5)
            with open(folder + b"/" + name + b".css", "wb") as file:
                file.write(TEXT)
            fits = length + len(".min") < 4096
            check(tally, f"{length} bytes", place, [os.fsencode(place.site)], [name] if fits else [],
                  [] if fits else [name])
    return tally


def cases(full):
    for locale in ("C.UTF-8", "C"):
        yield lambda chosen=locale: battery(full, chosen)
    yield lambda: long_paths(full)
