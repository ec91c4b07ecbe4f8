#!/bin/bash
# Runs a Windows program without any display in a Wine prefix of its own and ends with the program's exit code.
#
#   run-wine.sh [--unthemed] [--timeout SECONDS] PROGRAM.exe ARGUMENTS...
set -euo pipefail
. "$(dirname "$0")/wine-env.sh"

unthemed=
seconds=600
while [ $# -gt 0 ]; do
    case $1 in
        --unthemed) unthemed=1 ;;
        --timeout) seconds=$2; shift ;;
        --help) sed -n '2,4s/^# \{0,1\}//p' "$0"; exit 0 ;;
        *) break ;;
    esac
    shift
done
if [ $# = 0 ]; then
    printf 'usage: run-wine.sh [--unthemed] [--timeout SECONDS] PROGRAM.exe ARGUMENTS...\n' >&2
    exit 2
fi

trap wine_close EXIT
trap 'exit 130' INT TERM HUP
wine_open null
if [ -n "$unthemed" ]; then
    wine_unthemed
    export VANTREL_THEME=0
fi
status=0
wine_run "$seconds" "$@" || status=$?
exit "$status"
