#!/usr/bin/env zsh
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# complete.zsh FOLDER LINE   prints what zsh offers at the end of LINE, one in each line. FOLDER holds the completions.
# An interactive zsh on a terminal of its own completes the line; what its widgets hand to compadd is written down.
zmodload zsh/zpty || exit 2
export COMPLETIONS=$1 HITS=$(mktemp)
zpty shell zsh -f -i
zpty -w shell '
PS1= ; stty -echo
fpath=($COMPLETIONS $fpath)
autoload -Uz compinit && compinit -u -D
compadd() {
    if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then builtin compadd "$@"; return; fi
    local -a hits; builtin compadd -O hits "$@"
    (( $#hits )) && print -rl -- $hits >>$HITS
    builtin compadd "$@"
}
finish() { print -r -- "=end=" >>$HITS; exit }
comppostfuncs=(finish)
bindkey "^I" complete-word
print ready'
while zpty -r shell line; do [[ $line == ready* ]] && break; done
zpty -w -n shell "$2"$'\t'
# Ends when that shell exits.
while zpty -r shell line; do :; done
grep -qx '=end=' $HITS || { print -u2 "zsh did not complete"; exit 2 }
grep -vx '=end=' $HITS
rm -f $HITS
