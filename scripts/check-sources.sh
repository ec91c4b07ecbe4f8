#!/bin/bash
# Checks of the arrangement that no compiler makes:
#   - a room includes only the rooms it builds on, and its logic half neither Windows headers nor a win folder;
#   - no name in a header of the logic half is a macro of the Windows headers, which would rename it silently.
set -euo pipefail
cd "$(dirname "$0")/.."

problems=0
problem() {
    printf '%s\n' "$*"
    problems=$((problems + 1))
}

# The rooms that room $1 may include, besides itself.
rooms_below() {
    case $1 in
        entry) echo "" ;;
        tools) echo "entry" ;;
        model) echo "entry tools" ;;
        builtin) echo "entry tools model" ;;
        hosts) echo "entry tools model builtin" ;;
        editor) echo "entry tools model" ;;
        view) echo "entry tools model builtin editor" ;;
        frame) echo "entry tools model builtin editor view resources" ;;
        # EditObject stands above the window that it opens.
        entry/win) echo "tools model editor view frame resources" ;;
        */win) echo "$(rooms_below "${1%/win}") resources" ;;
        *) return 1 ;;
    esac
}

check_rooms() {
    local file line folder room included target below
    while IFS=: read -r file line included; do
        folder=${file#src/}
        folder=${folder%/*}
        room=${folder%/win}
        below=$(rooms_below "$folder") || { problem "$file: unknown room $folder"; continue; }
        target=${included%%/*}
        case " $room $below " in
            *" $target "*) ;;
            *) problem "$file:$line: $folder may not include $included" ;;
        esac
        if [ "$folder" = "$room" ] && [[ $included == */win/* ]]; then
            problem "$file:$line: the logic half may not include $included"
        fi
    done < <(grep -rnE '^#include "' src --include='*.h' --include='*.cpp' | grep -v '^src/resources/' |
        sed -E 's/:#include "([^"]*)".*/:\1/')

    local platform='windows|windowsx|commctrl|commdlg|objbase|ole2|shellapi|shlobj|shlwapi|uxtheme|winspool|gdiplus|imm'
    platform="$platform|unistd|sys/.*|pthread|dlfcn|x86intrin|immintrin|intrin"
    while IFS= read -r line; do
        problem "$line: a platform header in the logic half"
    done < <(grep -rnE "^#include <($platform)(\.h)?>" src --include='*.h' --include='*.cpp' | grep -v '/win/' || true)
}

check_names() {
    local headers work name
    mapfile -t headers < <(find src -mindepth 2 -maxdepth 2 -name '*.h' -not -path 'src/resources/*')
    [ ${#headers[@]} -gt 0 ] || return 0
    work=$(mktemp -d)
    {
        for name in windows commctrl commdlg shellapi shlobj windowsx uxtheme winspool htmlhelp; do
            printf '#include <%s.h>\n' "$name"
        done
        sed 's://.*::' "${headers[@]}" | grep -v '^#include' | grep -oE '\b[A-Z][A-Za-z0-9]*[a-z][A-Za-z0-9]*\b' |
            sort -u | while IFS= read -r name; do
            printf '#ifdef %s\n#error %s is a macro of the Windows headers\n#endif\n' "$name" "$name"
        done
    } >"$work/names.cpp"
    x86_64-w64-mingw32-g++-posix -fsyntax-only -DUNICODE -DNOMINMAX "$work/names.cpp" ||
        problem "a public name collides with a macro of the Windows headers"
    rm -rf "$work"
}

check_rooms
check_names
[ "$problems" = 0 ]
