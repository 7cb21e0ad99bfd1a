# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Completion for brevant; needs bash-completion(7).

_brevant() {
    # shellcheck disable=SC2034 # set by _init_completion
    local cur prev words cword
    _init_completion || return

    if [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--minify --gapplication-service --help --help-all --version -h -v' \
            -- "$cur")
    else
        # shellcheck disable=SC2001 # bash can change the case of letters, but not keep both
        _filedir "@($(sed 's/[a-z]/[&\U&]/g' <<<'@BREVANT_KINDS_PATTERN@'))"
    fi
} &&
    complete -F _brevant brevant
