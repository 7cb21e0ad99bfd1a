#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# test-package.sh BUILD FOLDER   builds the Debian package from two copies of the checkout in FOLDER, and looks at it.
# BUILD is a build folder with the compressors; without the modern ones in it, the package is one without them. The
# package is left in FOLDER/brevant.deb.
set -euo pipefail

checkout=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/../.." && pwd -P)
# shellcheck source=scripts/lib.sh
source "$checkout/scripts/lib.sh"
build=$(realpath -- "$1")
classic_only=
if [[ ! -f $build/libexec/esbuild ]]; then
    classic_only=--classic-only
    echo "skipped: the modern compressors are not in $build/libexec"
fi
mkdir -p -- "$2"
work=$(realpath -- "$2")
failures=0

fail() {
    printf 'FAIL  %s\n' "$*" >&2
    failures=$((failures + 1))
}

# build FOLDER UMASK [VARIABLE=VALUE…]: a copy of the checkout there, packed. What an earlier copy compiled is in
# ccache and not compiled again.
build() {
    local copy=$work/$1
    umask "$2"
    rm -rf -- "$copy"
    mkdir -p -- "$copy/build/resources/lib" "$copy/build/libexec"
    list_files '*' | (cd -- "$checkout" && tar -c --null --no-recursion -T - --ignore-failed-read) | tar -x -C "$copy"
    cp -- "$build"/resources/lib/*.jar "$copy/build/resources/lib/"
    [[ -n $classic_only ]] || cp -- "$build"/libexec/{esbuild,minify.so} "$copy/build/libexec/"
    env CCACHE_BASEDIR="$work" CCACHE_NOHASHDIR=1 SOURCE_DATE_EPOCH=1795000000 "${@:3}" \
        "$copy/scripts/package" $classic_only >"$work/$1.log" 2>&1 || {
        tail -n 40 -- "$work/$1.log" >&2
        die 1 "the package could not be built in $copy"
    }
    tail -n 1 -- "$work/$1.log"
}

start=$SECONDS
first=$(build one 022 TZ=UTC)
printf 'built once in %d s\n' "$((SECONDS - start))"
start=$SECONDS
second=$(build "two, of a longer name" 077 TZ=Pacific/Auckland LC_ALL=C)
printf 'built again in %d s\n' "$((SECONDS - start))"
cmp -- "$first" "$second" || fail "two builds of the same sources differ"
[[ ${first##*/} =~ ^brevant_[0-9.]+_[a-z0-9]+\.deb$ ]] || fail "the package is named ${first##*/}"
deb=$work/brevant.deb
cp -- "$first" "$deb"

# What is in it. Everything of these; nothing outside the folders below.
tree=$work/tree
rm -rf -- "$tree"
dpkg-deb -x "$deb" "$tree"
share=$tree/usr/share
libraries=$(cd -- "$tree" && echo usr/lib/*/brevant)
icons=(16x16 22x22 24x24 32x32 48x48 64x64 128x128 256x256 512x512)
expected=(usr/bin/brevant usr/bin/brevant-cli "$libraries/brevant-preview.so"
    usr/share/brevant/lib/{yuicompressor-2.4.8,htmlcompressor-1.5.3}.jar
    usr/share/brevant/lib/licences/{htmlcompressor-Apache-2.0,jargs-BSD,yuicompressor-BSD,yuicompressor-rhino-MPL-1.1}.txt
    usr/share/brevant/lib/licences/{esbuild-MIT,minify-MIT,go-BSD}.txt usr/libexec/brevant/brevant-markup
    usr/share/doc/brevant/{copyright,changelog.gz,manual.css,pipelines.md}
    usr/share/doc/brevant/{brevant.1,brevant-cli.1,brevant-settings.5}.html
    usr/share/applications/org.brevant.Brevant.desktop usr/share/metainfo/org.brevant.Brevant.metainfo.xml
    usr/share/mime/packages/org.brevant.Brevant.xml
    "${icons[@]/%//apps/org.brevant.Brevant.png}" scalable/apps/org.brevant.Brevant.svg
    usr/share/kio/servicemenus/org.brevant.Brevant-minify.desktop
    usr/share/nemo/actions/org.brevant.Brevant.nemo_action
    usr/share/nautilus-python/extensions/brevant-nautilus.py)
[[ -n $classic_only ]] || expected+=(usr/libexec/brevant/{esbuild,minify.so})
for file in "${expected[@]}"; do
    [[ $file == usr/* ]] || file=usr/share/icons/hicolor/$file
    [[ -s $tree/$file ]] || fail "$file is missing"
done
known="^usr/(bin/brevant|libexec/brevant/|${libraries#usr/}/|share/(lintian/overrides|brevant|applications|bash-completion|dbus-1/services|doc/brevant|fish"
known+="|icons/hicolor|kio/servicemenus|man|metainfo|mime/packages|nautilus-python/extensions|nemo/actions|zsh)/)"
while IFS= read -r file; do
    [[ $file =~ $known ]] || fail "$file has no business there"
done < <(cd -- "$tree" && find usr ! -type d)
for program in brevant brevant-cli; do
    [[ ! -d $checkout/docs/man || -s $share/man/man1/$program.1.gz ]] || fail "no manual page of $program"
done
owners=$(dpkg-deb -c "$deb" | awk '{ print $2 }' | sort -u)
[[ $owners == root/root ]] || fail "owners: $owners"
! grep -rqaF -e "$work" -- "$tree" || fail "names the folder it was built in: $(grep -rlaF -e "$work" -- "$tree")"
"$checkout/tests/package/test-hardening.sh" --installed "$tree"/usr/bin/* "$tree/$libraries"/*.so \
    "$tree/usr/libexec/brevant/brevant-markup" ||
    fail "not hardened"

# What it says of itself, and what it needs: no more, no less.
version=$(dpkg-deb -f "$deb" Version)
[[ $("$tree/usr/bin/brevant-cli" --version | head -n 1) == *" $version" ]] || fail "its version is not the program's"
[[ $(zcat "$share/doc/brevant/changelog.gz" | dpkg-parsechangelog -l - -S Version) == "$version" ]] ||
    fail "its version is not the newest of the changes"
grep -qF "<release version=\"$version\"" "$share/metainfo/org.brevant.Brevant.metainfo.xml" ||
    fail "its version is not in the metainfo"
needed=$(dpkg-deb -f "$deb" Depends | sed 's/ ([^)]*)//g; s/, /\n/g' | sort)
wanted=$(sort <<'LIST'
default-jre-headless | java-runtime-headless
fonts-dejavu-core
libc6
libfontconfig1
libgcc-s1
libicu72
libpulse0
libqscintilla2-qt6-15
libqt6core6
libqt6dbus6
libqt6gui6
libqt6svg6
libqt6widgets6
libsndfile1
libstdc++6
libxcb1
LIST
)
[[ $needed == "$wanted" ]] || fail "what it depends on: $(diff <(echo "$wanted") <(echo "$needed"))"
kinds=$(grep -h '^MimeType=' "$share/applications/org.brevant.Brevant.desktop" \
    "$share/kio/servicemenus/org.brevant.Brevant-minify.desktop" | sort -u)
[[ $(wc -l <<<"$kinds") -eq 1 ]] || fail "the menus are for other kinds of files than the program"
if [[ -e $checkout/resources/desktop/org.brevant.Brevant.service.in ]]; then
    grep -qsE '^Exec=/usr/bin/brevant( |$)' "$share/dbus-1/services/org.brevant.Brevant.service" ||
        fail "the bus cannot start it"
fi

lintian --fail-on error,warning "$deb" || fail "lintian"
[[ $failures -eq 0 ]] || exit 1
rm -rf -- "$tree" "$work/one" "$work/two, of a longer name"
echo "ok    ${first##*/}, $(stat -c %s -- "$deb") bytes"
