# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Completion for brevant-cli; needs bash-completion(7).

# KEY=VALUE in $cur. Readline replaces what follows the last "=" only, if that breaks words.
_brevant_cli_setting() {
    local -r texts='@BREVANT_TEXT_SETTINGS@'
    local -r switches='@BREVANT_BOOLEAN_SETTINGS@'
    local -r encodings='utf-8 gb2312 gbk gb18030 big5 big5-hkscs shift-jis iso-2022-jp iso-2022-kr
        iso-8859-1 iso-8859-15'
    if [[ $cur != *=* ]]; then
        mapfile -t COMPREPLY < <(compgen -S = -W "$texts $switches" -- "$cur")
        compopt -o nospace
        return
    fi

    local -r key=${cur%%=*} before=${COMP_WORDBREAKS//[^=]/}
    local prefix=
    [[ -n $before ]] || prefix=$key=
    cur=${cur#*=}
    case $key in
    selectedEncodingKeyString) mapfile -t COMPREPLY < <(compgen -P "$prefix" -W "$encodings" -- "$cur") ;;
    selectedFolderKeyString) _filedir -d ;;
    *)
        if [[ " $switches " == *" $key "* ]]; then
            mapfile -t COMPREPLY < <(compgen -P "$prefix" -W 'true false' -- "$cur")
        fi
        ;;
    esac
}

# The profiles that are named where one is asked for that is not there. A project file may come from anybody, and
# compgen expands what it is given: names that are no plain words are left out.
_brevant_cli_profiles() {
    brevant-cli --show-settings --profile ' ' 2>&1 >/dev/null |
        sed -n 's/.* has no profile " ", but these: //; T; s/, /\n/g; p' | grep -x '[[:alnum:]._-]*'
}

_brevant_cli() {
    # shellcheck disable=SC2034 # set by _init_completion
    local cur prev words cword
    _init_completion -n = || return

    if [[ $cur == --*=* ]]; then
        prev=${cur%%=*}
        cur=${cur#*=}
    fi
    case $prev in
    --set) _brevant_cli_setting ;;
    --settings) _filedir '@([jJ][sS][oO][nN])' ;;
    --out-dir) _filedir -d ;;
    --report | --files-from | --exclude | --include) _filedir ;;
    --report-format) mapfile -t COMPREPLY < <(compgen -W 'json junit github markdown' -- "$cur") ;;
    --timeout) mapfile -t COMPREPLY < <(compgen -W '10 60 600' -- "$cur") ;;
    --shard) mapfile -t COMPREPLY < <(compgen -W '1/2 2/2' -- "$cur") ;;
    --also)
        local before=
        [[ $cur != *,* ]] || before=${cur%,*},
        mapfile -t COMPREPLY < <(compgen -P "$before" -W '@BREVANT_EXTRA_KINDS@' -- "${cur##*,}")
        ;;
    --profile) mapfile -t COMPREPLY < <(compgen -W "$(_brevant_cli_profiles)" -- "$cur") ;;
    --suffix) mapfile -t COMPREPLY < <(compgen -W '.min -min' -- "$cur") ;;
    --stdin) mapfile -t COMPREPLY < <(compgen -W '@BREVANT_KINDS_WORDS@ @BREVANT_EXTRA_KINDS@' -- "$cur") ;;
    --compressors) mapfile -t COMPREPLY < <(compgen -W 'classic modern' -- "$cur") ;;
    --jobs) mapfile -t COMPREPLY < <(compgen -W "$(seq "$(nproc)")" -- "$cur") ;;
    *)
        if [[ $cur == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W \
                '--exclude --include --gitignore --files-from -0 --sort --shard --changed --also --all --list --print0
                    --out-dir --copy-rest --keep-times --suffix --no-suffix --gzip --brotli --source-maps --stdin --compressors --dry-run
                    --set --settings --no-user-settings --profile --no-project --show-settings --init --jobs --timeout --fail-fast --watch --delete --check
                    --report --report-format --quiet --version --help -h' -- "$cur")
        else
            # shellcheck disable=SC2001 # bash can change the case of letters, but not keep both
            _filedir "@($(sed 's/[a-z]/[&\U&]/g' <<<'@BREVANT_KINDS_PATTERN@'))"
        fi
        ;;
    esac
} &&
    complete -F _brevant_cli brevant-cli
