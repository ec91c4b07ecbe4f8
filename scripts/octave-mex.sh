#!/bin/bash
# Builds the MATLAB adapter as a MEX file of GNU Octave and runs it on values and .mat files that Octave makes. Files that MATLAB itself has
# written are tried, too: those of the folder that VANTREL_MAT_DATA names, else of mat in the one that VANTREL_SHARED_DATA names, else of data/mat
# in any folder beside this one.
# Needs the native build of the logic.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
library=$root/build/native/libvantrel_logic.a

for tool in octave-cli mkoctfile; do
    command -v "$tool" >/dev/null || { printf 'octave-mex: no %s (scripts/setup.sh installs it)\n' "$tool" >&2; exit 1; }
done
[ -e "$library" ] || { printf 'octave-mex: build the preset "native" first\n' >&2; exit 1; }

mkdir -p build/octave
cd build/octave
CXXFLAGS="-std=c++20 -O1 -Wall -Wextra -Werror -Wno-unused-parameter" mkoctfile --mex "-I$root/src" -o vantrel.mex \
    "$root/tests/octave/vantrel.cpp" "$library"

if [ -z "${VANTREL_MAT_DATA:-}" ]; then
    for folder in "$root"/../*/data/mat "${VANTREL_SHARED_DATA:-/none}/mat"; do
        [ ! -d "$folder" ] || VANTREL_MAT_DATA=$folder
    done
fi
export VANTREL_MAT_DATA=${VANTREL_MAT_DATA:-}
printf 'files written by MATLAB: %s\n' "${VANTREL_MAT_DATA:-none}"
timeout -k 5 280 octave-cli --norc --quiet --path . "$root/tests/octave/vantrel_test.m"
