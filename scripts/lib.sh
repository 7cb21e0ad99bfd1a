# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What the scripts here share. Sourced, never run; nothing in it changes the caller's folder.

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd -P)
self=${0##*/}
# Tests at once: one for each processor, and one because many wait for a while.
export CTEST_PARALLEL_LEVEL=${CTEST_PARALLEL_LEVEL-$(($(nproc) + 1))}

say() {
    printf '==> %s: %s\n' "$self" "$*"
}

# complain TEXT: one line on stderr. die STATUS TEXT: the same, and the end.
complain() {
    printf '%s: %s\n' "$self" "$*" >&2
}

die() {
    local status=$1
    shift
    complain "$*"
    exit "$status"
}

# The build folder of a preset, as CMakePresets.json has it.
build_folder() {
    case $1 in
    release) printf '%s\n' "$root/build" ;;
    *) printf '%s\n' "$root/build/$1" ;;
    esac
}

# cached FOLDER NAME: the value of a CMake cache entry, or nothing.
cached() {
    [[ -f $1/CMakeCache.txt ]] || return 0
    sed -n "s|^$2:[A-Z]*=||p" "$1/CMakeCache.txt"
}

# configure_preset PRESET [CMAKE ARGUMENT…]. A build folder that was configured for a checkout
# somewhere else (a copied or renamed one) is configured anew.
configure_preset() {
    local preset=$1 folder home
    shift
    folder=$(build_folder "$preset")
    home=$(cached "$folder" CMAKE_HOME_DIRECTORY)
    if [[ -n $home && $home != "$root" ]]; then
        set -- --fresh "$@"
    fi
    if command -v ccache >/dev/null; then
        # It works with precompiled headers, reads each header once, not for each source, and finds what was compiled in
        # another checkout.
        export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER-"env;CCACHE_SLOPPINESS=pch_defines,time_macros;CCACHE_INODECACHE=1;CCACHE_BASEDIR=${CCACHE_BASEDIR-$root};ccache"}
    fi
    say "configuring the preset $preset"
    (cd -- "$root" && cmake --preset "$preset" --log-level=WARNING "$@" >/dev/null)
}

# build_preset PRESET [CMAKE --build ARGUMENT…]
build_preset() {
    local preset=$1 folder
    shift
    folder=$(build_folder "$preset")
    say "building the preset $preset in ${folder#"$root"/}"
    cmake --build "$folder" "$@"
}

# What earlier runs of the tests of the preset asan have counted.
forget_coverage() {
    find "$(build_folder asan)" -name '*.gcda' -delete
}

# The compressors into the build folder. npm is installed where only that gives them: the modern ones, and the archives
# where they cannot be downloaded.
fetch_compressors() {
    local status=0
    "$root/scripts/fetch-compressors" || status=$?
    command -v npm >/dev/null && return "$status"
    case $status-$(uname -m) in
    3-*) ;;
    0-x86_64 | 0-aarch64) [[ ! -e $root/build/libexec/esbuild ]] || return 0 ;;
    *) return "$status" ;;
    esac
    say "trying with npm"
    if "$root/scripts/setup" fetch; then
        status=0
        "$root/scripts/fetch-compressors" || status=$?
    fi
    return "$status"
}

# The project's own files whose path matches one of the patterns, each ended by a NUL.
list_files() {
    (
        cd -- "$root" || exit
        if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
            git ls-files -z --cached --others --exclude-standard -- "$@"
        else
            local pattern tests=()
            for pattern in "$@"; do
                tests+=(-o -path "./$pattern")
            done
            find . -path ./build -prune -o -type f \( "${tests[@]:1}" \) -print0
        fi
    )
}
