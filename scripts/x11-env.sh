# A display of its own with a window manager, for programs whose picture is taken or that are driven by keys; sourced by other
# scripts, which run under `set -euo pipefail`.
#
#   display_open LOGS      starts both and exports DISPLAY; what they say goes to files in the folder LOGS
#   display_window --class|--name PATTERN PID
#                          waits for a visible window of this class or title and prints its number; fails when the program PID ends
#                          or a minute is over
#   display_settle [PICTURE.png]
#                          waits until two pictures of the display in a row are the same; keeps the last
#   display_close
# shellcheck shell=bash

display_processes=()
display_scratch=

display_open() {
    local logs=$1
    display_scratch=$(mktemp -d)
    # The server itself picks a free number and tells it.
    Xvfb -displayfd 3 -screen 0 1280x960x24 -nolisten tcp 3>"$display_scratch/number" >"$logs/xvfb.log" 2>&1 &
    display_processes+=($!)
    for _ in $(seq 100); do
        [ -s "$display_scratch/number" ] && break
        sleep 0.1
    done
    if [ ! -s "$display_scratch/number" ]; then
        printf 'Xvfb did not start (log: %s)\n' "$logs/xvfb.log" >&2
        return 1
    fi
    DISPLAY=:$(cat "$display_scratch/number")
    export DISPLAY
    openbox --sm-disable >"$logs/openbox.log" 2>&1 &
    display_processes+=($!)
}

display_window() {
    local window
    for _ in $(seq 600); do
        window=$(xdotool search --onlyvisible "$1" "$2" 2>/dev/null | tail -n 1) || true
        if [ -n "$window" ]; then
            printf '%s\n' "$window"
            return 0
        fi
        kill -0 "$3" 2>/dev/null || return 1
        sleep 0.1
    done
    return 1
}

# Shown is not yet painted, and a key pressed is not yet done.
display_settle() {
    local previous='' current picture=${1:-$display_scratch/shot.png}
    for _ in $(seq 20); do
        sleep 0.5
        import -silent -window root "$picture"
        current=$(identify -format '%#' "$picture")
        [ "$current" != "$previous" ] || break
        previous=$current
    done
}

display_close() {
    local pid
    # Last started first: the window manager before its display.
    for pid in $(printf '%s\n' ${display_processes[@]+"${display_processes[@]}"} | tac); do
        kill "$pid" 2>/dev/null && wait "$pid" 2>/dev/null
    done
    display_processes=()
    [ -z "$display_scratch" ] || rm -rf "$display_scratch"
    display_scratch=
    return 0
}
