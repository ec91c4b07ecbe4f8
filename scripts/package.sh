#!/bin/bash
# Makes dist/vantrel-VERSION-HOST.zip for dyalog, matlab, aplx and workbench: the library under the name that its host wants, the licences,
# and a page that says what to type to install and use it. Builds the library first.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
version=$(sed -n 's/^project(vantrel VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
build=$root/build/win64
dist=$root/dist

fail() {
    printf 'package: %s\n' "$1" >&2
    exit 1
}

cmake --preset win64 >/dev/null
cmake --build --preset win64 -j2 --target vantrel vantrel-workbench fake_libmx fake_libmex >/dev/null || fail "the build failed"

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$dist"

# package HOST FILE...: FILE may be SOURCE=NAME.
package() {
    local host=$1 file folder=$scratch/$1 archive=$dist/vantrel-$version-$1.zip
    shift
    mkdir -p "$folder"
    for file in "$@"; do
        cp "${file%%=*}" "$folder/$(basename "${file##*=}")"
    done
    # The page and the licences are read with Windows' Notepad.
    sed 's/$/\r/' "packaging/$host.txt" >"$folder/INSTALL.txt"
    sed 's/$/\r/' LICENSE >"$folder/LICENSE.txt"
    sed 's/$/\r/' src/resources/font/LICENSE-DejaVu.txt >"$folder/LICENSE-DejaVu.txt"
    find "$folder" -name '*.dll' -o -name '*.exe' -o -name '*.mexw64' | xargs x86_64-w64-mingw32-strip
    rm -f "$archive"
    (cd "$folder" && find . -type f | sort | zip -q -X -9 "$archive" -@)
    printf '%s\n' "dist/${archive##*/}"
}

package dyalog "$build/vantrel.dll"
package matlab "$build/vantrel.mexw64"
package aplx "$build/vantrel.dll"
package workbench "$build/vantrel-workbench.exe" "$build/vantrel.dll" "$build/libmx.dll" "$build/libmex.dll" \
    "/usr/share/doc/nlohmann-json3-dev/copyright=LICENSE-json.txt"
