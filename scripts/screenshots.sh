#!/bin/bash
# Takes the pictures of the documentation: the window, each menu, dialog and bar, on a display of their own.
#
#   screenshots.sh [--dpi DOTS] [--unthemed] [--colours] [FOLDER]
#
# FOLDER is docs/images unless told otherwise. --dpi sets the dots per inch (96 unless told otherwise), --unthemed shows the
# classic look, --colours keeps all colours, to look closely. The workbench must have been built (scripts/demo.sh does).
set -euo pipefail
cd_from=$PWD
cd "$(dirname "$0")/.."
root=$PWD
folder=$root/docs/images
workbench=$root/build/win64/vantrel-workbench.exe
logs=$root/build/logs
dpi=96
unthemed=
colours=64
while [ $# -gt 0 ]; do
    case $1 in
        --dpi) dpi=$2; shift ;;
        --unthemed) unthemed=1 ;;
        --colours) colours=256 ;;
        --help) sed -n '2,7s/^# \{0,1\}//p' "$0"; exit 0 ;;
        -*) printf 'screenshots: unknown option %s (try --help)\n' "$1" >&2; exit 2 ;;
        *) folder=$(cd "$cd_from" && realpath -m "$1") ;;
    esac
    shift
done
mkdir -p "$folder" "$logs"

fail() {
    printf 'screenshots: %s\n' "$1" >&2
    [ -s "${2:-}" ] && tail -n 20 "$2" >&2
    exit 1
}
[ -e "$workbench" ] || fail "build the workbench first: cmake --preset win64 && cmake --build --preset win64"

. scripts/wine-env.sh
. scripts/x11-env.sh
scratch=$(mktemp -d)
end_started() {
    wine_close
    display_close
    rm -rf "$scratch"
    return 0
}
trap end_started EXIT
trap 'exit 130' INT TERM HUP

display_open "$logs" || fail "no display could be opened"
wine_open x11 || fail "Wine could not be started"
wine reg add 'HKCU\Control Panel\Desktop' /v LogPixels /t REG_DWORD /d "$dpi" /f </dev/null >/dev/null 2>&1
wine reg add 'HKCU\Software\Quillmoor\Vantrel\1.1\Options' /v 'Confirm close' /t REG_BINARY /d 01000000 /f \
    </dev/null >/dev/null 2>&1
if [ -n "$unthemed" ]; then wine_unthemed; fi

window=
editor=
width=$((700 * dpi / 96))
height=$((460 * dpi / 96))
[ "$width" -le 1200 ] || width=1200
[ "$height" -le 860 ] || height=860

# open_editor FILE [ARGUMENTS...]: waits for the window and gives it its place.
open_editor() {
    local file=$1
    shift
    wine "$workbench" "$@" "$(wine_path "$file")" >"$logs/screenshots-workbench.log" 2>&1 </dev/null &
    editor=$!
    # The first to appear is thrown away again: it takes the show command that was meant for the whole program.
    for _ in first last; do
        window=$(display_window --class vantrel-workbench "$editor") ||
            fail "no window of the editor appeared" "$logs/screenshots-workbench.log"
        sleep 1
    done
    xdotool windowsize "$window" "$width" "$height"
    sleep 0.5
    xdotool windowmove "$window" 20 40
    xdotool mousemove 1270 950
    sleep 0.7
}

# After dialogs the window manager sometimes gives the keyboard to nobody.
activate() {
    xdotool windowactivate --sync "$window"
    sleep 0.3
}

close_editor() {
    activate
    press alt+F4
    sleep 0.5
    # The question, where something was changed.
    kill -0 "$editor" 2>/dev/null && press n
    wait "$editor" 2>/dev/null || true
}

press() {
    xdotool key --delay 60 "$@"
    sleep 0.5
}

typed() {
    xdotool type --delay 40 "$1"
    sleep 0.3
}

# A point of the window, in pixels of 96 to the inch.
point_at() {
    xdotool mousemove --window "$window" $(($1 * dpi / 96)) $(($2 * dpi / 96))
    sleep 0.2
}

# A window with what the window manager draws around it, as WIDTHxHEIGHT+X+Y.
place_of() {
    local x y w h left right top bottom
    read -r x y w h < <(xwininfo -id "$1" | awk -F: '
        /Absolute upper-left X|Absolute upper-left Y|^ *Width|^ *Height/ { printf "%d ", $2 } END { print "" }')
    read -r left right top bottom < <(xprop -id "$1" _NET_FRAME_EXTENTS | sed -n 's/.*= //p' | tr -d ,) || true
    : "${left:=0}" "${right:=0}" "${top:=0}" "${bottom:=0}"
    printf '%dx%d+%d+%d' $((w + left + right)) $((h + top + bottom)) $((x - left)) $((y - top))
}

# shot NAME [PLACE]: what stands still. Few colours are enough and keep the files small.
shot() {
    display_settle "$scratch/shot.png"
    convert "$scratch/shot.png" -crop "${2:-$(place_of "$window")}" +repage -dither None -colors "$colours" \
        -define png:compression-level=9 -strip "PNG8:$folder/$1.png"
    printf '%s\n' "$folder/$1.png"
}

# shot_dialog NAME TITLE: a dialog alone; closed by Escape.
shot_dialog() {
    local dialog
    dialog=$(display_window --name "$2" "$editor") || fail "the dialog $2 did not come up"
    shot "$1" "$(place_of "$dialog")"
    press Escape
}

# --- an array of Dyalog APL ---

open_editor "$root/examples/nested.json" --title 'Missions'
press Tab Tab
shot editor
for menu in f:file e:edit a:actions i:insert o:options g:graphics h:help; do
    press "alt+${menu%%:*}"
    shot "menu-${menu#*:}"
    press Escape Escape
done
press Menu
shot menu-cell
press Escape
press ctrl+Up
press shift+F10
shot menu-array
press Escape
press ctrl+f
typed Mars
press Return
shot find-bar
press Escape
press alt+o i
shot large-icons
press alt+o i
point_at 92 34
sleep 1
shot tool-tip
xdotool mousemove 1270 950
press ctrl+o
shot_dialog dialog-open '^Open$'
press alt+f a
shot_dialog dialog-save-as '^Save As$'
press alt+h a
shot_dialog dialog-about '^About'
press alt+o f
shot_dialog dialog-font '^Font$'
press Tab Tab
typed x
press alt+F4
shot_dialog dialog-close '^Vantrel$'
close_editor

# --- arrays of higher rank, simple arrays ---

open_editor "$root/examples/cube.npy" --title 'Cube'
press alt+Down Escape
shot planes
point_at 40 "$((height * 96 / dpi - 8))"
xdotool click 1
shot information
press Escape
xdotool mousemove 1270 950
press alt+a
press Up Up Up Return
shot_dialog dialog-reorder-axes 'Reorder'
close_editor

open_editor "$root/examples/matrix.csv" --title 'Matrix'
shot matrix
close_editor

# --- MATLAB ---

open_editor "$root/examples/nested.json" --host matlab
press Tab Tab
shot matlab
# The second time the name is taken.
for _ in first second; do
    activate
    press alt+f a
    display_window --name '^Save As$' "$editor" >"$scratch/dialog" || fail "the dialog Save As did not come up"
    typed figures
    press Return
done
shot_dialog dialog-replace '^Vantrel$'
close_editor
