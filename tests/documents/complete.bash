#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The Brevant developers
# SPDX-License-Identifier: GPL-3.0-or-later
#
# complete.bash COMPLETION LINE   prints what bash offers at the end of LINE, one in each line. Only "=" breaks words
# besides blanks, and there is no quoting in LINE.
source /usr/share/bash-completion/bash_completion
# shellcheck source=/dev/null
source "$1"
COMP_LINE=$2
COMP_POINT=${#COMP_LINE}
COMP_TYPE=9
COMP_WORDBREAKS=$' \t\n"\'><=;|&(:'
read -ra COMP_WORDS <<<"${COMP_LINE//=/ = }"
[[ $COMP_LINE != *[\ =] ]] || COMP_WORDS+=('')
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))

# It can be asked for only while bash completes by itself.
compopt() { :; }

completion=$(complete -p "${COMP_WORDS[0]}")
[[ $completion =~ -F\ ([^ ]+) ]]
"${BASH_REMATCH[1]}" "${COMP_WORDS[0]}" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}"
