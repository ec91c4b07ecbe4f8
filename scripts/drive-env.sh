# Editors on a display of their own, driven by keys; sourced by scripts in the tree's folder, which run under `set -euo pipefail`.
# What it starts ends with the script.
#
#   root, logs, work       the tree, the folder of the logs, a folder for files of this run
#   drive_open             opens the display and Wine
#   press KEY...           to the focused window, with time to act on each
#   fail TEXT              ends the script
# shellcheck shell=bash

. scripts/wine-env.sh
. scripts/x11-env.sh

root=$PWD
logs=$root/build/logs
mkdir -p "$logs"
work=$(mktemp -d)

end_started() {
    wine_close
    display_close
    rm -rf "$work"
    return 0
}
trap end_started EXIT
trap 'exit 130' INT TERM HUP

fail() {
    printf '%s: %s\n' "$(basename "$0" .sh)" "$1" >&2
    exit 1
}

drive_open() {
    display_open "$logs" || fail "no display could be opened"
    wine_open x11 || fail "Wine could not be started"
}

press() {
    local key
    for key in "$@"; do
        xdotool key --clearmodifiers "$key"
        display_settle
    done
}
