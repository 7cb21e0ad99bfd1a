#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# test-skipped.sh   tests that scripts/test names what was skipped, with a ctest of its own.
set -uo pipefail

checkout=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)
work=$(mktemp -d)
trap 'rm -rf -- "$work"' EXIT
mkdir -p "$work/bin" "$work/build/Testing/Temporary"
cp -R "$checkout/scripts" "$work/scripts"
for stub in bin/cmake scripts/fetch-compressors; do
    printf '#!/bin/sh\n' >"$work/$stub"
    chmod +x "$work/$stub"
done
cat >"$work/bin/ctest" <<'CTEST'
#!/bin/sh
cp "$LOG" build/Testing/Temporary/LastTest.log
echo '100% tests passed, 0 tests failed out of 3'
CTEST
chmod +x "$work/bin/ctest"
export PATH="$work/bin:$PATH" BREVANT_SETUP=skip LOG="$work/log"

failures=0
# expect WHAT TEXT: the end of what scripts/test says, after the stages.
expect() {
    local found
    found=$("$work/scripts/test" --quick 2>&1 | sed '1,/all stages passed/d')
    if [[ $found != "$2"$'\n==> test: release\n100% tests passed, 0 tests failed out of 3' ]]; then
        printf 'FAIL  %s\n%s\n' "$1" "$found"
        failures=$((failures + 1))
    fi
}

cat >"$LOG" <<'LOG'
1/3 Test: tst_One
PASS   : tst_One::first()
SKIP   : tst_One::second(a tag) This user (root) may read everything
   Loc: [tst_One.cpp(3)]
2/3 Test: faults
skipped: no mount namespace of our own here
3/3 Test: documents
test_names (__main__.Names) ... ok
test_versions (__main__.Versions)
Where they come from. ... skipped 'not on Debian 12'
LOG
expect "all kinds" "==> test: skipped:
release: tst_One::second(a tag): This user (root) may read everything
release: faults: no mount namespace of our own here
release: documents, test_versions: 'not on Debian 12'"
sed -i '/kip/Id' "$LOG"
expect "none" "==> test: nothing was skipped"
exit "$failures"
