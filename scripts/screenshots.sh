#!/bin/bash
# Takes the pictures of the documentation: the window, each menu, dialog and bar, on a display of their own.
#
#   screenshots.sh [FOLDER]
#
# FOLDER is docs/images unless told otherwise. The workbench must have been built (scripts/demo.sh does).
set -euo pipefail
cd_from=$PWD
cd "$(dirname "$0")/.."
root=$PWD
folder=$root/docs/images
[ $# = 0 ] || folder=$(cd "$cd_from" && realpath -m "$1")
workbench=$root/build/win64/vantrel-workbench.exe
logs=$root/build/logs
mkdir -p "$folder" "$logs"

fail() {
    printf 'screenshots: %s\n' "$1" >&2
    [ -s "${2:-}" ] && tail -n 20 "$2" >&2
    exit 1
}
[ -e "$workbench" ] || fail "build the workbench first: cmake --preset win64 && cmake --build --preset win64"

. scripts/wine-env.sh
started=()
end_started() {
    local pid
    wine_close
    for pid in $(printf '%s\n' "${started[@]}" | tac); do
        kill "$pid" 2>/dev/null && wait "$pid" 2>/dev/null
    done
    [ -z "${scratch:-}" ] || rm -rf "$scratch"
    return 0
}
trap end_started EXIT
trap 'exit 130' INT TERM HUP

scratch=$(mktemp -d)
Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp 3>"$scratch/number" >"$logs/screenshots-xvfb.log" 2>&1 &
started+=($!)
for _ in $(seq 100); do
    [ -s "$scratch/number" ] && break
    sleep 0.1
done
[ -s "$scratch/number" ] || fail "Xvfb did not start" "$logs/screenshots-xvfb.log"
DISPLAY=:$(cat "$scratch/number")
export DISPLAY
openbox --sm-disable >"$logs/screenshots-openbox.log" 2>&1 &
started+=($!)
wine_open x11 || fail "Wine could not be started"

window=
width=880
height=560

# Opens a file and waits for the window.
open_editor() {
    local editor
    wine "$workbench" "$(wine_path "$1")" >"$logs/screenshots-workbench.log" 2>&1 </dev/null &
    editor=$!
    started+=("$editor")
    window=
    for _ in $(seq 600); do
        window=$(xdotool search --onlyvisible --class vantrel-workbench 2>/dev/null | tail -n 1) || true
        [ -n "$window" ] && break
        kill -0 "$editor" 2>/dev/null || fail "the workbench ended without a window" "$logs/screenshots-workbench.log"
        sleep 0.1
    done
    [ -n "$window" ] || fail "no window appeared within a minute" "$logs/screenshots-workbench.log"
    sleep 1
    xdotool windowsize "$window" "$width" "$height"
    sleep 0.5
    xdotool windowmove "$window" 20 40
    xdotool mousemove 1020 760
    sleep 0.7
}

press() {
    xdotool key --delay 60 "$@"
    sleep 0.5
}

# What stands still: two pictures in a row are the same. A few colours are enough and keep the files small.
shot() {
    local previous='' current=''
    for _ in $(seq 20); do
        sleep 0.3
        import -silent -window root "$scratch/shot.png"
        current=$(identify -format '%#' "$scratch/shot.png")
        [ "$current" = "$previous" ] && break
        previous=$current
    done
    convert "$scratch/shot.png" -crop "${2:-$((width + 20))x$((height + 40))+10+10}" +repage -dither None -colors 128 \
        -define png:compression-level=9 "PNG8:$folder/$1.png"
    printf '%s\n' "$folder/$1.png"
}

open_editor "$root/examples/nested.json"
shot window
for menu in f:file e:edit a:actions i:insert o:options g:graphics h:help; do
    press "alt+${menu%%:*}"
    shot "menu-${menu#*:}"
    press Escape Escape
done

press ctrl+f
xdotool type --delay 40 Mars
press Return
shot find-bar
press ctrl+o
shot dialog-open
press Escape
press alt+f a
shot dialog-save-as
press Escape
press alt+h a
shot dialog-about
press Escape
press alt+o f
shot dialog-font
press Escape
