# Wine for tests and demonstrations; sourced by the other scripts, which run under `set -euo pipefail`.
#
# One template prefix is made once and kept in build/wine. Every run works in a clone of its own, which costs a
# second, so that runs cannot disturb each other or anything else of the user. A clone's programs are ended
# through the clone's own wineserver only.
#
#   wine_open null|x11     makes a clone and starts its server; null: no display is needed or used
#   wine_unthemed          switches the visual theme off in the clone
#   wine_run SECONDS PROGRAM ARGUMENTS...
#   wine_close             ends the clone's programs and removes it
# shellcheck shell=bash

wine_root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wine
wine_prefix=

# An absolute path as Windows programs see it.
wine_path() {
    local path
    path=$(realpath -m "$1")
    printf 'Z:%s' "${path//\//\\}"
}

wine_environment() {
    export WINEPREFIX=$1 WINEARCH=win64 WINEDEBUG=${WINEDEBUG:--all}
    # No downloads of mono and gecko, no menu entries in the user's home.
    export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
    # Under the plain C locale names and arguments beyond ASCII do not arrive.
    export LC_ALL=C.UTF-8
    # Only known fonts, so that pictures are the same on every machine.
    export FONTCONFIG_FILE=$wine_root/fonts.conf
}

wine_write_fontconfig() {
    mkdir -p "$wine_root/fonts"
    cp /usr/share/fonts/truetype/dejavu/DejaVuSansMono*.ttf "$wine_root/fonts/"
    cat >"$wine_root/fonts.conf" <<F
<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig><dir>$wine_root/fonts</dir><cachedir>$wine_root/font-cache</cachedir></fontconfig>
F
}

# A crash must print its backtrace and end instead of asking; windows must work without a display.
wine_write_settings() {
    cat >"$1" <<'R'
REGEDIT4

[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\AeDebug]
"Auto"="1"
"Debugger"="winedbg --auto %ld %ld"

[HKEY_CURRENT_USER\Software\Wine\WineDbg]
"ShowCrashDialog"=dword:00000000

[HKEY_CURRENT_USER\Software\Wine\X11 Driver]
"Managed"="N"

[HKEY_CURRENT_USER\Software\Wine\Drivers]
"Graphics"="null"

[HKEY_CURRENT_USER\Control Panel\Desktop]
"FontSmoothing"="0"
"LogPixels"=dword:00000060
R
}

wine_make_template() (
    template=$wine_root/template
    unset DISPLAY
    rm -rf "$template"
    mkdir -p "$template"
    wine_write_fontconfig
    wine_environment "$template"
    wine wineboot -i </dev/null >/dev/null 2>&1 || true
    wineserver -w
    if [ ! -e "$template/drive_c/windows/system32/kernel32.dll" ]; then
        printf 'Wine could not make a prefix in %s\n' "$template" >&2
        return 1
    fi
    # Marlett, from which Wine draws caption buttons and check marks, and the dialogs' Tahoma.
    mkdir -p "$template/drive_c/windows/Fonts"
    cp /usr/share/wine/fonts/*.ttf "$template/drive_c/windows/Fonts/"
    wine_write_settings "$template/settings.reg"
    wine regedit /S "$(wine_path "$template/settings.reg")" </dev/null >/dev/null 2>&1
    wineserver -k || true
    wineserver -w
    wine_keep_home_apart "$template"
    grep -q '"Graphics"="null"' "$template/user.reg"
)

# Wine links a user's Documents and the like to the real home, where programs would leave their files.
wine_keep_home_apart() {
    local link
    find "$1/drive_c/users" -mindepth 2 -maxdepth 2 -type l | while read -r link; do
        rm "$link"
        mkdir "$link"
    done
}

# The template is made again when Wine, the fonts, the settings or the place of the source tree changed.
wine_stamp() {
    printf '%s\n' "$wine_root"
    dpkg-query -W -f '${Package} ${Version}\n' wine64 fonts-wine fonts-dejavu-core
    sha256sum <"${BASH_SOURCE[0]}"
}

wine_template() {
    local stamp
    mkdir -p "$wine_root"
    stamp=$(wine_stamp)
    (
        flock 9
        if [ "$(cat "$wine_root/template.stamp" 2>/dev/null)" != "$stamp" ]; then
            rm -f "$wine_root/template.stamp"
            wine_make_template || exit 1
            printf '%s\n' "$stamp" >"$wine_root/template.stamp"
        fi
    ) 9>"$wine_root/lock"
}

# Clones whose script was killed keep a server; both go when the next run starts.
wine_remove_leftovers() {
    local clone pid
    for clone in "$wine_root"/run.*; do
        [ -d "$clone" ] || continue
        pid=${clone##*/run.}
        kill -0 "${pid%%.*}" 2>/dev/null && continue
        WINEPREFIX=$clone wineserver -k 2>/dev/null || true
        rm -rf "$clone"
    done
}

wine_open() {
    local file
    wine_template
    wine_remove_leftovers
    wine_prefix=$(mktemp -d "$wine_root/run.$$.XXXXXX")
    cp -al "$wine_root/template/." "$wine_prefix/"
    # The server writes these in place, which through the hard links would change the template.
    for file in "$wine_root"/template/*.reg; do
        cp --remove-destination "$file" "$wine_prefix/"
    done
    if [ "$1" = x11 ]; then
        sed -i -e 's/^"Graphics"="null"/"Graphics"="x11"/' -e 's/^"FontSmoothing"="0"/"FontSmoothing"="2"/' \
            -e 's/^"Managed"="N"/"Managed"="Y"/' "$wine_prefix/user.reg"
    else
        unset DISPLAY
    fi
    wine_environment "$wine_prefix"
    wineserver -p </dev/null >/dev/null 2>&1
    # The first program of a prefix starts the services, and these keep whatever output they inherit open.
    wine wineboot </dev/null >/dev/null 2>&1
}

wine_unthemed() {
    wine reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\ThemeManager' /v ThemeActive /t REG_SZ /d 0 /f \
        </dev/null >/dev/null 2>&1
}

wine_run() {
    local seconds=$1
    shift
    timeout --foreground -k 5 "$seconds" wine "$@" </dev/null
}

wine_close() {
    [ -n "$wine_prefix" ] || return 0
    WINEPREFIX=$wine_prefix wineserver -k 2>/dev/null || true
    WINEPREFIX=$wine_prefix wineserver -w 2>/dev/null || true
    rm -rf "$wine_prefix"
    wine_prefix=
}
