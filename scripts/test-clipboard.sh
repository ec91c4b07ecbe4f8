#!/bin/bash
# The clipboard between two editors, and to and from another program: real windows, real keys, and xclip as the other program. Needs
# a built workbench. Prints what it did; ends with 1 at the first thing that is not as it should be.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
logs=$root/build/logs
mkdir -p "$logs"
workbench=$root/build/win64/vantrel-workbench.exe

. scripts/wine-env.sh
. scripts/x11-env.sh
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
    printf 'clipboard: %s\n' "$1" >&2
    exit 1
}

# start FILE [OUTPUT]: an editor on a file; `editor` is its process, `window` its window.
start() {
    local arguments=()
    [ $# -lt 2 ] || arguments=(-o "$(wine_path "$2")")
    wine "$workbench" ${arguments[@]+"${arguments[@]}"} "$(wine_path "$1")" >"$logs/clipboard-editor.log" 2>&1 </dev/null &
    editor=$!
    window=$(display_window vantrel-workbench "$editor") || fail "no window of the editor on $1"
    xdotool windowfocus --sync "$window" || true
    sleep 1
}

# keys KEY...: to the focused window, with time to act on each.
keys() {
    local key
    for key in "$@"; do
        xdotool key --clearmodifiers "$key"
        sleep 0.5
    done
}

# Saves and waits until the program has written its file.
save_and_end() {
    keys ctrl+s
    keys alt+F4
    for _ in $(seq 100); do
        kill -0 "$editor" 2>/dev/null || break
        sleep 0.1
    done
    wait "$editor" || fail "the editor ended with $?"
}

expect() {
    [ "$2" = "$3" ] || fail "$1: expected <$2>, found <$3>"
    printf 'ok: %s\n' "$1"
}

compact() {
    tr -d ' \n\r' <"$1"
}

display_open "$logs"
wine_open x11

printf 'ab,c,1\nd,7,x\n' >"$work/table.csv"
printf '["old", [1, 2]]' >"$work/old.json"

start "$work/table.csv"
keys ctrl+shift+c
expect "another program sees the table as text" "$(printf 'ab\tc\t1\r\nd\t7\tx')" "$(xclip -selection clipboard -o)"
first=$editor

start "$work/old.json" "$work/pasted.json"
keys ctrl+shift+v
save_and_end
expect "another editor gets the array itself" '[["ab","c",1],["d",7,"x"]]' "$(compact "$work/pasted.json")"
kill "$first" 2>/dev/null || true
wait "$first" 2>/dev/null || true

printf 'one\t2\tx\r\n3.5\tfour\ty\r\n' | xclip -selection clipboard
start "$work/old.json" "$work/table-pasted.json"
keys ctrl+shift+v
save_and_end
expect "text of another program becomes a table" '[["one",[2],"x"],[[3.5],"four","y"]]' "$(compact "$work/table-pasted.json")"
