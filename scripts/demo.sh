#!/bin/bash
# Opens a file in the editor through the workbench, building first what is missing.
#
#   demo.sh [--unthemed] [--screenshot PICTURE.png] [FILE]
#
# FILE is JSON, CSV, .npy or CCDR; without it a nested example is shown. On a display the editor runs until it is
# closed. Without one, and whenever --screenshot is given, it opens on a display of its own, its picture is saved
# (build/demo.png unless told otherwise) and it is closed again. --unthemed shows the classic look.
set -euo pipefail
cd_from=$PWD
cd "$(dirname "$0")/.."
root=$PWD
logs=$root/build/logs
mkdir -p "$logs"

unthemed=
picture=
file=
while [ $# -gt 0 ]; do
    case $1 in
        --unthemed) unthemed=1 ;;
        --screenshot)
            [ $# -gt 1 ] || { printf 'demo: --screenshot needs a file name\n' >&2; exit 2; }
            picture=$(cd "$cd_from" && realpath -m "$2")
            shift
            ;;
        --help) sed -n '2,8s/^# \{0,1\}//p' "$0"; exit 0 ;;
        -*) printf 'demo: unknown option %s (try --help)\n' "$1" >&2; exit 2 ;;
        *) file=$(cd "$cd_from" && realpath -m "$1") ;;
    esac
    shift
done
file=${file:-$root/examples/nested.json}
[ -r "$file" ] || { printf 'demo: cannot read %s\n' "$file" >&2; exit 1; }

fail() {
    printf 'demo: %s\n' "$1" >&2
    [ -s "${2:-}" ] && tail -n 20 "$2" >&2
    exit 1
}

scripts/setup.sh || fail "the packages needed could not be installed"

build_log=$logs/demo-build.log
{ cmake --preset win64 && cmake --build --preset win64 -j2 --target vantrel vantrel-workbench; } >"$build_log" 2>&1 ||
    fail "the build failed (log: $build_log)" "$build_log"

. scripts/wine-env.sh
. scripts/x11-env.sh
scratch=
end_started() {
    wine_close
    display_close
    [ -z "$scratch" ] || rm -rf "$scratch"
    return 0
}
trap end_started EXIT
trap 'exit 130' INT TERM HUP

open_prefix() {
    wine_open x11 || fail "Wine could not be started"
    if [ -n "$unthemed" ]; then
        wine_unthemed
        export VANTREL_THEME=0
    fi
}

workbench=$root/build/win64/vantrel-workbench.exe

if [ -n "${DISPLAY:-}" ] && [ -z "$picture" ]; then
    open_prefix
    status=0
    wine "$workbench" "$(wine_path "$file")" || status=$?
    exit "$status"
fi

# --- no display: one of our own, and a picture ---

picture=${picture:-$root/build/demo.png}
scratch=$(mktemp -d)

display_open "$logs" || fail "no display could be opened"

open_prefix
wine "$workbench" "$(wine_path "$file")" >"$logs/demo-workbench.log" 2>&1 </dev/null &
editor=$!

# The title is the file's name, so the window is known by its program.
window=$(display_window --class vantrel-workbench "$editor") ||
    fail "no window of the editor appeared" "$logs/demo-workbench.log"

display_settle "$scratch/shot.png"

# The client window, and what the window manager draws around it: left, right, top, bottom.
read -r x y width height < <(xwininfo -id "$window" | awk -F: '
    /Absolute upper-left X|Absolute upper-left Y|^ *Width|^ *Height/ { printf "%d ", $2 } END { print "" }')
read -r left right top bottom < <(xprop -id "$window" _NET_FRAME_EXTENTS | sed -n 's/.*= //p' | tr -d ,) || true
: "${left:=0}" "${right:=0}" "${top:=0}" "${bottom:=0}"
mkdir -p "${picture%/*}"
convert "$scratch/shot.png" -crop "$((width + left + right))x$((height + top + bottom))+$((x - left))+$((y - top))" \
    +repage "$picture"
printf 'The picture of the editor is in %s\n' "$picture"
