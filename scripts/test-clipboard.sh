#!/bin/bash
# The clipboard between two editors, and to and from another program: real windows, real keys, and xclip as the other program. Needs
# a built workbench. Prints what it did; ends with 1 at the first thing that is not as it should be.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/drive-env.sh
workbench=$root/build/win64/vantrel-workbench.exe

# start FILE [OUTPUT]: an editor on a file; `editor` is its process. The window manager gives its window the focus.
start() {
    local arguments=()
    [ $# -lt 2 ] || arguments=(-o "$(wine_path "$2")")
    wine "$workbench" ${arguments[@]+"${arguments[@]}"} "$(wine_path "$1")" >"$logs/clipboard-editor.log" 2>&1 </dev/null &
    editor=$!
    display_window --name "${1##*/}" "$editor" >"$logs/clipboard-window.log" || fail "no window of the editor on $1"
    display_settle
}

# The text on the clipboard once there is any.
clipboard_text() {
    for _ in $(seq 100); do
        xclip -selection clipboard -o -t UTF8_STRING 2>/dev/null && return 0
        sleep 0.1
    done
    return 1
}

# Saves and waits until the program has written its file.
save_and_end() {
    press ctrl+s alt+F4
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

drive_open

printf 'ab,c,1\nd,7,x\n' >"$work/table.csv"
printf '["old", [1, 2]]' >"$work/old.json"

start "$work/table.csv"
press ctrl+shift+c
# Wine ends lines for X11 programs with line feeds alone.
expect "another program sees the table as text" "$(printf 'ab\tc\t1\nd\t7\tx')" "$(clipboard_text)"
first=$editor

start "$work/old.json" "$work/pasted.json"
press ctrl+shift+v
save_and_end
expect "another editor gets the array itself" '[["ab","c",1],["d",7,"x"]]' "$(compact "$work/pasted.json")"
kill "$first" 2>/dev/null || true
wait "$first" 2>/dev/null || true

printf 'one\t2\tx\r\n3.5\tfour\ty\r\n' | xclip -selection clipboard
start "$work/old.json" "$work/table-pasted.json"
press ctrl+shift+v
save_and_end
expect "text of another program becomes a table" '[["one",[2],"x"],[[3.5],"four","y"]]' "$(compact "$work/table-pasted.json")"
