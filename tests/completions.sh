#!/bin/bash
# SPDX-FileCopyrightText: 2026 Loomwright plug-in team
# SPDX-License-Identifier: MIT
#
# Usage: tests/completions.sh BUILD_DIRECTORY
#
# Completes command lines of loomwright in bash, and in fish and zsh where they are installed.

set -uo pipefail
build=$(realpath "$1")
export PATH=$build:$PATH
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/drop"
: > "$work/drop.json"
cd "$work" || exit 1
status=0

# expect SHELL LINE EXPECTED ACTUAL: EXPECTED are words that must be among the completions; a word
# that begins with "!" must not be.
expect() {
    local word
    for word in $3; do
        if [[ $word == !* ]]; then
            ! grep -qxF -- "${word#!}" <<< "$4" && continue
        else
            grep -qxF -- "$word" <<< "$4" && continue
        fi
        printf '%s: "%s" should complete to: %s\nbut completes to:\n%s\n' "$1" "$2" "$3" "$4" >&2
        status=1
        return
    done
}

# in_bash WORD...: completes the last word of a command line that bash has split.
in_bash() {
    # shellcheck disable=SC2016 # expanded by the shell that is started
    bash --norc -c '
        . "$0"
        COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
        _loomwright
        [[ $(complete -p loomwright) == *"-F _loomwright loomwright" ]] || exit 1
        printf "%s\n" "${COMPREPLY[@]}"' "$build/completions/loomwright.bash" loomwright "$@"
}

expect bash 'loomwright ver' 'verify !build' "$(in_bash ver)"
expect bash 'loomwright help b' 'build' "$(in_bash help b)"
expect bash 'loomwright build --' '--manifest --set --json' "$(in_bash build --)"
expect bash 'loomwright verify --' '--json !--set !--manifest' "$(in_bash verify --)"
expect bash 'loomwright -d d' 'drop !drop.json' "$(in_bash -d d)"
expect bash 'loomwright --project=d' 'drop drop.json' "$(in_bash --project = d)"
expect bash 'loomwright --timeout ' '!drop' "$(in_bash build --timeout '')"
expect bash 'loomwright -s Fl' 'Flash-Layer=' "$(in_bash -s Fl)"
expect bash 'loomwright -s Flash-Layer=d' 'drop.json' "$(in_bash -s Flash-Layer = d)"
# The words are those of the shell, so the space is quoted as the shell wants it.
IFS=$'\n'
expect bash 'loomwright -s Host\ F' 'Host\ FW=' "$(in_bash -s 'Host\ F')"
expect bash 'loomwright -s "Host F' 'Host FW=' "$(in_bash -s '"Host F')"
expect bash 'loomwright --target Veld' 'Veldmark\ D1\ Phone\ -\ Unsigned\ Zorv' \
    "$(in_bash --target Veld)"
unset IFS

if command -v shellcheck > /dev/null; then
    shellcheck "$build/completions/loomwright.bash" || status=1
fi

if command -v fish > /dev/null; then
    in_fish() {
        fish --no-config -c "source '$build/completions/loomwright.fish'; complete -C '$1'" | cut -f 1
    }
    expect fish 'loomwright ver' 'verify !build' "$(in_fish 'loomwright ver')"
    expect fish 'loomwright build --' '--manifest --set' "$(in_fish 'loomwright build --')"
    expect fish 'loomwright verify --' '--json !--set' "$(in_fish 'loomwright verify --')"
    expect fish 'loomwright -s Fl' 'Flash-Layer=' "$(in_fish 'loomwright -s Fl')"
fi

if command -v zsh > /dev/null; then
    # A shell on a terminal of its own, in which Tab lists the completions.
    in_zsh() {
        # shellcheck disable=SC2016 # expanded by the shell that is started
        COLUMNS=200 zsh -f -c '
            zmodload zsh/zpty
            zpty shell zsh -f
            zpty -w shell "fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -u -D"
            zpty -w shell "LISTMAX=1000; bindkey \"^I\" list-choices; PROMPT=rea\"\"dy"
            # Before the prompt is there, the terminal would handle the keys itself.
            zpty -r -m shell output "*ready*"
            # Handled after the list is complete: the line is dropped, and a mark printed.
            zpty -w shell "$2"$'"'\\t\\x15'"'"echo fin\"\"ished"
            zpty -r -m shell output "*finished*"
            print -rn -- "$output"
            zpty -d shell' zsh "$work/zsh" "$1" | tr -s '\r\n\t ' '\n' | sed 's/\x1b\[[0-9;?]*[A-Za-z]//g'
    }
    mkdir "$work/zsh"
    cp "$build/completions/loomwright.zsh" "$work/zsh/_loomwright"
    expect zsh 'loomwright ver' 'verify !build' "$(in_zsh 'loomwright ve')"
    expect zsh 'loomwright build --' '--manifest --set' "$(in_zsh 'loomwright build --')"
    expect zsh 'loomwright -s ' 'Flash-Layer' "$(in_zsh 'loomwright -s ')"
fi
exit $status
