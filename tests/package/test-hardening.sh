#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# test-hardening.sh [--installed] FILE…   whether programs and modules were built as hard as they are meant to be.
# With --installed also that they name no folder of the machine they were built on.
set -euo pipefail
export LC_ALL=C

installed=
[[ ${1-} != --installed ]] || { installed=1; shift; }
[[ $# -gt 0 ]] || { echo "no files to look at" >&2; exit 2; }
failures=0

# expect FILE WHAT PATTERN TEXT; expect_none: the other way round.
expect() {
    grep -qE -- "$3" <<<"$4" && return
    echo "FAIL  $1: $2" >&2
    failures=$((failures + 1))
}

expect_none() {
    grep -qE -- "$3" <<<"$4" || return 0
    echo "FAIL  $1: $2" >&2
    failures=$((failures + 1))
}

for file in "$@"; do
    dynamic=$(readelf -dW "$file")
    segments=$(readelf -lW "$file")
    symbols=$(readelf -W --dyn-syms "$file")
    expect "$file" "position-independent" 'Elf file type is DYN' "$segments"
    expect "$file" "bound at the start" '\(FLAGS_1\).*\bNOW\b' "$dynamic"
    expect "$file" "relocations are read-only" 'GNU_RELRO' "$segments"
    expect "$file" "stack not executable" 'GNU_STACK.* RW +0x' "$segments"
    expect_none "$file" "no segment written and executed" ' RWE ' "$segments"
    expect "$file" "stack protector" '__stack_chk_fail' "$symbols"
    expect_none "$file" "no text relocations" '\(TEXTREL\)' "$dynamic"
    if [[ $file != *.so ]]; then
        expect "$file" "a position-independent executable" '\(FLAGS_1\).*\bPIE\b' "$dynamic"
        # The modules call none of the functions that have a checked counterpart.
        expect "$file" "checked string functions" '__[a-z]+_chk' "${symbols//__stack_chk_fail/}"
    fi
    if [[ $(readelf -h "$file") == *X86-64* ]]; then
        # The mark in the notes is lost by linking the C library's own start, which lacks it.
        expect "$file" "control flow protection" endbr64 "$(objdump -d --no-show-raw-insn "$file")"
    fi
    if [[ -n $installed ]]; then
        expect_none "$file" "no search path for libraries" '\((RPATH|RUNPATH)\)' "$dynamic"
        expect_none "$file" "no debug information" '\.debug_info' "$(readelf -SW "$file")"
    fi
done
[[ $failures -eq 0 ]] || exit 1
echo "ok    $# files"
