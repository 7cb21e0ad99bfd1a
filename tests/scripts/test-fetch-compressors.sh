#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# test-fetch-compressors.sh [FOLDER]   tests scripts/fetch-compressors without a network, with an
# npm of its own and downloads from file:// addresses. FOLDER is a build folder with the real
# compressors (default: build of this checkout). Where it has no modern ones, those stand for them
# that the cases without them would have, and what needs them is skipped.
set -uo pipefail

checkout=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)
build=${1-$checkout/build}
lib=resources/lib
yui=yuicompressor-2.4.8.jar
html=htmlcompressor-1.5.3.jar
for file in "$yui" "$html"; do
    if [[ ! -f $build/$lib/$file ]]; then
        echo "$build/$lib/$file is needed for this test; run scripts/fetch-compressors" >&2
        exit 2
    fi
done
build=$(cd -- "$build" && pwd -P)
real=$build/$lib
modern=$build/libexec
have_modern=0
[[ ! -f $modern/esbuild || ! -f $modern/minify.so ]] || have_modern=1

work=$(mktemp -d "${TMPDIR:-/tmp}/fetch test.XXXXXX")
trap 'rm -rf -- "$work"' EXIT
copy="$work/a checkout"
mkdir -p "$copy/resources/lib" "$work/tools" "$work/npm bin" "$work/bad/$lib"
cp -R "$checkout/scripts" "$copy/scripts"
cp -R "$checkout/resources/lib/licences" "$copy/resources/lib/licences"
fetch="$copy/scripts/fetch-compressors"

# Every tool of the machine but npm; and that without curl.
ln -s /usr/bin/* "$work/tools/"
rm -f "$work/tools/npm" "$work/tools/npx"
cp -R --no-dereference "$work/tools" "$work/tools without curl"
rm -f "$work/tools without curl/curl"

# An npm that packs what NPM_MODE says and writes down what it was asked for. The modes:
# real (the right files), wrong (all spoilt), half (the second archive spoilt), empty (packages that
# lack the files), fail, hang, classic (fails for the modern ones), spoilt (esbuild spoilt).
cat >"$work/npm bin/npm" <<'NPM'
#!/usr/bin/env bash
set -e
echo "$*" >>"$NPM_ASKED"
case $* in
*grunt-htmlcompressor@0.1.10*) name=grunt-htmlcompressor-0.1.10 member=package/ext/htmlcompressor-1.5.3.jar ;;
*yuicompressor@2.4.8*) name=yuicompressor-2.4.8 member=package/build/yuicompressor-2.4.8.jar ;;
*@esbuild/linux-*@0.28.2*) name=esbuild-linux member=package/bin/esbuild ;;
*@tdewolff/minify@2.24.8*) name=tdewolff-minify member=package/build/$NPM_PLATFORM/minify.so ;;
*) exit 9 ;;
esac
[[ $NPM_MODE-$name != classic-*esbuild* && $NPM_MODE-$name != classic-*minify ]] || exit 1
[[ $NPM_MODE != fail ]] || { echo "npm says no" >&2; exit 1; }
mkdir -p "$(dirname "$member")"
echo '{}' >package/package.json
[[ $NPM_MODE == empty ]] || cp "$NPM_REAL/${member##*/}" "$member" 2>/dev/null ||
    cp "$NPM_MODERN/${member##*/}" "$member"
case $NPM_MODE-$name in
wrong-* | half-grunt* | spoilt-esbuild*) echo spoilt >>"$member" ;;
hang-*) touch "$NPM_ASKED.hangs"; sleep 60 ;;
esac
tar -czf "$name.tgz" package
rm -r package
echo "$name.tgz"
NPM
chmod +x "$work/npm bin/npm"
export NPM_ASKED="$work/asked" NPM_REAL="$real" NPM_MODERN="$modern" NPM_MODE
case $(uname -m) in
x86_64) export NPM_PLATFORM=linux-amd64 ;;
*) export NPM_PLATFORM=linux-arm64 ;;
esac
for file in "$yui" "$html"; do
    { cat "$real/$file" && echo spoilt; } >"$work/bad/$file"
    cp "$work/bad/$file" "$work/bad/$lib/$file"
done
address_of() {
    printf 'file://%s' "${1// /%20}"
}

failures=0
checks=0
title=

# check TEXT COMMAND…: one check of the case named by `title`.
check() {
    local text=$1
    shift
    checks=$((checks + 1))
    if "$@"; then
        return
    fi
    failures=$((failures + 1))
    printf 'FAIL: %s: %s\n' "$title" "$text"
    sed 's/^/    | /' "$work/output"
}

# begin TITLE: a new case with an empty folder and nothing asked of npm yet.
begin() {
    title=$1
    target="$work/target folder"
    rm -rf -- "$target" "$NPM_ASKED" "$NPM_ASKED.hangs"
    : >"$NPM_ASKED"
    NPM_MODE=real
    tools="$work/npm bin:$work/tools"
    address=$(address_of "$work/nothing here")
}

# run ARGUMENT…: the script under test; leaves `status` and the file `output`.
run() {
    PATH=$tools BREVANT_COMPRESSORS_URL=$address "$fetch" "$@" >"$work/output" 2>&1 </dev/null
    status=$?
}

ended_with() { [[ $status -eq $1 ]]; }
says() { grep -qF -- "$1" "$work/output"; }
same() { cmp -s -- "$1" "$2"; }
placed() { same "$real/$yui" "$1/$lib/$yui" && same "$real/$html" "$1/$lib/$html"; }
modern_placed() {
    same "$modern/esbuild" "$1/libexec/esbuild" && same "$modern/minify.so" "$1/libexec/minify.so" && [[ -x $1/libexec/esbuild ]]
}
no_modern_placed() { [[ ! -e $target/libexec/esbuild && ! -e $target/libexec/minify.so ]]; }
nothing_placed() { [[ ! -e $target/$lib/$yui && ! -e $target/$lib/$html ]]; }
no_remains() { [[ -z $(find "$work" -name '.fetch*') ]]; }
# For the archives.
asked_npm() { [[ $(grep -c -e yuicompressor -e grunt "$NPM_ASKED") -eq $1 ]]; }
inode() { stat -c '%i %y' -- "$1"; }
sum_of() { sha256sum <"$1" | cut -d ' ' -f 1; }

begin "npm delivers both"
run "$target"
check "exit status 0" ended_with 0
check "both archives in place" placed "$target"
check "npm asked once for each" asked_npm 2
check "npm asked for yuicompressor" grep -q '^pack .*yuicompressor@2\.4\.8$' "$NPM_ASKED"
check "npm asked for htmlcompressor" grep -q '^pack .*grunt-htmlcompressor@0\.1\.10$' "$NPM_ASKED"
for text in "$checkout"/resources/lib/licences/*.txt; do
    check "licence ${text##*/} beside them" same "$text" "$target/$lib/licences/${text##*/}"
done
check "no temporary files" no_remains

title="both are there already"
before=$(inode "$target/$lib/$yui")$(inode "$target/$lib/$html")
: >"$NPM_ASKED"
run "$target"
check "exit status 0" ended_with 0
check "npm not asked" asked_npm 0
check "the files untouched" [ "$before" = "$(inode "$target/$lib/$yui")$(inode "$target/$lib/$html")" ]

title="a wrong one in place is replaced"
cp "$work/bad/$yui" "$target/$lib/$yui"
before=$(inode "$target/$lib/$html")
: >"$NPM_ASKED"
run "$target"
check "exit status 0" ended_with 0
check "says that it replaces it" says "replacing $yui"
check "only that one fetched" asked_npm 1
check "both right" placed "$target"
check "the right one untouched" [ "$before" = "$(inode "$target/$lib/$html")" ]

title="a wrong one in place stays when the new one is wrong too"
cp "$work/bad/$yui" "$target/$lib/$yui"
NPM_MODE=wrong
run "$target"
check "exit status 1" ended_with 1
check "the old one still there" same "$work/bad/$yui" "$target/$lib/$yui"
check "the other still there" same "$real/$html" "$target/$lib/$html"

begin "npm delivers a wrong archive"
NPM_MODE=wrong
run "$target"
check "exit status 1" ended_with 1
check "the error names the file" says "$yui is refused"
check "the error says what was expected" says "expected $(sum_of "$real/$yui")"
check "the error says what was got" says "got      $(sum_of "$work/bad/$yui")"
check "nothing put in place" nothing_placed
check "no temporary files" no_remains

begin "only the second archive is wrong"
NPM_MODE=half
run "$target"
check "exit status 1" ended_with 1
check "the error names the file" says "$html is refused"
check "nothing put in place" nothing_placed
check "no temporary files" no_remains

begin "npm fails, the download works"
NPM_MODE=fail
address=$(address_of "$real")
run "$target"
check "exit status 0" ended_with 0
check "npm was asked first" asked_npm 2
check "says where it came from" says "fetched $yui by download"
check "both archives in place" placed "$target"

begin "the npm package lacks the archive"
NPM_MODE=empty
address=$(address_of "$real")
run "$target"
check "exit status 0" ended_with 0
check "both archives in place" placed "$target"

begin "without npm"
tools="$work/tools"
address=$(address_of "$real")
run "$target"
check "exit status 0" ended_with 0
check "npm not asked" asked_npm 0
check "both archives in place" placed "$target"

begin "a wrong download"
tools="$work/tools"
address=$(address_of "$work/bad")
run "$target"
check "exit status 1" ended_with 1
check "the error names the file" says "$yui is refused"
check "nothing put in place" nothing_placed
check "no temporary files" no_remains

begin "neither npm nor the download"
tools="$work/tools"
run "$target"
check "exit status 3" ended_with 3
check "the error names the file" says "$yui (yuicompressor@2.4.8) could not be got"
check "the error says what to do" says "apt-get install npm"
check "nothing put in place" nothing_placed
check "no temporary files" no_remains

begin "neither npm nor curl"
tools="$work/tools without curl"
address=$(address_of "$real")
run "$target"
check "exit status 3" ended_with 3
check "the error names curl" says "curl was not found"
check "nothing put in place" nothing_placed

begin "the default folder, in a checkout with a space"
run
check "exit status 0" ended_with 0
check "both archives in place" placed "$copy/build"
check "no temporary files" no_remains

begin "a folder relative to where it is called from"
mkdir -p "$target"
(cd "$target" && run "a b" && exit "$status")
status=$?
check "exit status 0" ended_with 0
check "both archives in place" placed "$target/a b"

begin "copies from another folder"
NPM_MODE=fail
run --from "$build" "$target"
check "exit status 0" ended_with 0
check "npm not asked" asked_npm 0
check "both archives in place" placed "$target"

begin "a wrong one in the other folder is passed over"
run --from "$work/bad" "$target"
check "exit status 0" ended_with 0
check "npm asked" asked_npm 2
check "both archives in place" placed "$target"

if [[ $have_modern -eq 1 ]]; then
    begin "npm delivers the modern ones too"
    run "$target"
    check "exit status 0" ended_with 0
    check "both archives in place" placed "$target"
    check "both modern ones in place" modern_placed "$target"
    check "no warning" [ "$(grep -c warning "$work/output")" -eq 0 ]
    check "no temporary files" no_remains

    title="they are there already"
    before=$(inode "$target/libexec/esbuild")$(inode "$target/libexec/minify.so")
    : >"$NPM_ASKED"
    run "$target"
    check "exit status 0" ended_with 0
    check "npm not asked" [ ! -s "$NPM_ASKED" ]
    check "the files untouched" [ "$before" = "$(inode "$target/libexec/esbuild")$(inode "$target/libexec/minify.so")" ]

    begin "the modern ones from another folder"
    NPM_MODE=fail
    run --from "$build" "$target"
    check "exit status 0" ended_with 0
    check "both modern ones in place" modern_placed "$target"

    begin "a wrong modern one"
    NPM_MODE=spoilt
    run "$target"
    check "exit status 1" ended_with 1
    check "the error names the file" says "esbuild is refused"
    check "both archives in place" placed "$target"
    check "no modern one in place" no_modern_placed
    check "no temporary files" no_remains
else
    echo "skipped: the modern compressors are not in $modern"
fi

begin "no modern ones to be had"
NPM_MODE=classic
run "$target"
check "exit status 0" ended_with 0
check "both archives in place" placed "$target"
check "no modern one in place" no_modern_placed
check "one warning" [ "$(grep -c "warning: " "$work/output")" -eq 1 ]
check "the warning says what is missing" says "esbuild"
check "no temporary files" no_remains

begin "no modern ones for the processor"
mkdir -p "$work/other processor"
printf '#!/bin/sh\necho riscv64\n' >"$work/other processor/uname"
chmod +x "$work/other processor/uname"
tools="$work/other processor:$tools"
run "$target"
check "exit status 0" ended_with 0
check "both archives in place" placed "$target"
check "one warning" says "warning: there are no modern compressors for riscv64"
check "no modern one in place" no_modern_placed

begin "wrong usage"
run one two
check "two folders: exit status 2" ended_with 2
run --nonsense
check "unknown option: exit status 2" ended_with 2
run --from
check "--from without a folder: exit status 2" ended_with 2
run ""
check "empty folder: exit status 2" ended_with 2

begin "the folder cannot be made"
: >"$work/a file"
run "$work/a file/lib"
check "exit status 1" ended_with 1
check "the error names the folder" says "$work/a file/lib"

begin "interrupted while npm works"
NPM_MODE=hang
PATH=$tools BREVANT_COMPRESSORS_URL=$address setsid "$fetch" "$target" >"$work/output" 2>&1 &
child=$!
for ((i = 0; i < 200; ++i)); do
    [[ ! -e $NPM_ASKED.hangs ]] || break
    sleep 0.05
done
check "npm was reached" [ -e "$NPM_ASKED.hangs" ]
kill -TERM -- "-$child"
wait "$child"
status=$?
check "exit status 143" ended_with 143
check "nothing put in place" nothing_placed
check "no temporary files" no_remains

if [[ $failures -gt 0 ]]; then
    echo "$failures of $checks checks failed"
    exit 1
fi
echo "all $checks checks passed"
