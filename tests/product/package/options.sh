#!/usr/bin/env bash
# Compares the options that a program shows by --help with those on its page and in its completion.
#
#   options.sh PROGRAM PAGE COMPLETION
set -euo pipefail

compare() {
    diff --label "$1" --label "--help" <(echo "$2") <(echo "$shown") || {
        echo "$1 has other options than --help shows" >&2
        exit 1
    }
}

options() { grep -oE -e '--?[a-z]+(-[a-z]+)*' | sort; }

shown=$(QT_QPA_PLATFORM=offscreen "$1" --help | sed -nE '/^Options:/,/^$/s/^  (-[^ ]+( -[^ ]+)*).*/\1/p' | options)
[ -n "$shown" ] || { echo "--help shows no options" >&2; exit 1; }
compare "$2" "$(sed -n '/^\.SH OPTIONS/,/^\.SH EXIT/p' "$2" | sed -n '/^\.TP/{n;p}' | sed 's/\\-/-/g' | options)"
compare "$3" "$(tr '\n' ' ' < "$3" | grep -oE 'compgen -W "-h [^"]*"' | sed 's/.*-W//' | options)"
