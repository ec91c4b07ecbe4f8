#!/bin/bash
# Makes the packages, unpacks each and runs one edit from it: an array is opened, text typed into it, saved, and what comes back is
# compared. The workbench's package plays the interpreter for the libraries of the others.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/drive-env.sh

# unpack HOST: into a folder of its own; the page and the licences must be there.
unpack() {
    unzip -q "dist/vantrel-$version-$1.zip" -d "$work/$1" || fail "the package of $1 cannot be unpacked"
    for file in INSTALL.txt LICENSE.txt LICENSE-DejaVu.txt; do
        [ -s "$work/$1/$file" ] || fail "the package of $1 lacks $file"
    done
}

# edit HOST LIBRARY: one edit with a library, beside a workbench of its own.
edit() {
    local host=$1 folder=$work/run-$1 editor
    mkdir -p "$folder"
    cp "$work/workbench"/*.exe "$work/workbench"/libm*.dll "$folder/"
    cp "$2" "$folder/vantrel.dll"
    [ "$host" != matlab ] || cp "$2" "$folder/vantrel.mexw64"
    printf '"abc"' >"$folder/array.json"
    wine "$folder/vantrel-workbench.exe" --host "$host" -o "$(wine_path "$folder/saved.json")" \
        "$(wine_path "$folder/array.json")" >"$logs/package-$host.log" 2>&1 </dev/null &
    editor=$!
    display_window --class vantrel-workbench "$editor" >/dev/null || fail "no window of the editor for $host"
    display_settle
    press x ctrl+s alt+F4
    wait "$editor" || fail "the edit for $host ended with $?"
    [ "$(cat "$folder/saved.json")" = '"xabc"' ] || fail "the edit for $host gave $(cat "$folder/saved.json")"
    printf 'ok: %s\n' "$host"
}

scripts/package.sh
version=$(sed -n 's/^project(vantrel VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
for host in dyalog matlab aplx workbench; do
    unpack "$host"
done

drive_open
edit dyalog "$work/dyalog/vantrel.dll"
edit matlab "$work/matlab/vantrel.mexw64"
edit aplx "$work/aplx/vantrel.dll"

x86_64-w64-mingw32-objdump -p "$work/dyalog/vantrel.dll" >"$logs/package-exports.log"
for name in DyalogGetInterpreterFunctions DyalogEditArray DyalogEditArrayTitle mexFunction processor; do
    grep -qw "$name" "$logs/package-exports.log" || fail "the library does not export $name"
done
