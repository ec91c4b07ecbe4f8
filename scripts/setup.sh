#!/bin/bash
# Installs every Debian package that building, testing and showing the editor needs. Debian 12, as root or with sudo.
# Quick, and without any download, when all is there.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

packages=(
    git ca-certificates file procps
    cmake ninja-build ccache g++
    clang-14 libclang-rt-14-dev clang-format-14 clang-tidy-14
    g++-mingw-w64-x86-64-posix binutils-mingw-w64-x86-64
    googletest libbenchmark-dev nlohmann-json3-dev dpkg-dev
    wine wine64 fonts-wine fonts-dejavu-core
    xvfb xauth x11-utils xdotool xclip openbox imagemagick zip unzip
    octave octave-dev
)

log=$root/build/logs/setup.log
mkdir -p "${log%/*}"

fail() {
    [ -s "$log" ] && tail -n 20 "$log" >&2
    printf 'setup: %s\n' "$*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

missing_packages() {
    local package
    for package in "${packages[@]}"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || printf '%s\n' "$package"
    done
}

install_packages() {
    local missing
    mapfile -t missing < <(missing_packages)
    [ ${#missing[@]} -gt 0 ] || return 0
    [ "$(id -u)" = 0 ] || command -v sudo >/dev/null ||
        fail "these packages are missing and neither root nor sudo is at hand: ${missing[*]}"
    printf 'setup: installing %s\n' "${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    as_root apt-get update >"$log" 2>&1 || fail "apt-get update failed (log: $log)"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}" >>"$log" 2>&1 ||
        fail "apt-get install failed (log: $log)"
}

# Google Benchmark has no package for Windows, but the source of the native package can be built for it. The
# source index is fetched with lists of our own: the machine's package sources stay as they are. Without the
# sources all but the Windows benchmarks is built, so a failure here is only reported.
fetch_benchmark_source() {
    local target=$root/build/third_party/benchmark version work
    [ -e "$target/CMakeLists.txt" ] && return 0
    # Tried and failed once: not again until somebody removes the build folder.
    [ -e "$target.failed" ] && return 0
    version=$(dpkg-query -W -f '${source:Version}' libbenchmark-dev)
    mkdir -p "${target%/*}"
    work=$(mktemp -d "${target%/*}/apt.XXXXXX")
    mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
    apt-get indextargets --format '$(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
        awk -v keys=/usr/share/keyrings/debian-archive-keyring.gpg \
            '$1 ~ /debian/ && $3 == "main" { print "deb-src [signed-by=" keys "]", $1, $2, $3 }' |
        sort -u >"$work/sources.list"
    local options=(-o "Dir::Etc::SourceList=$work/sources.list" -o Dir::Etc::SourceParts=-
        -o "Dir::State::Lists=$work/lists" -o "Dir::Cache=$work/cache"
        -o APT::Sandbox::User=root -o Debug::NoLocking=1)
    if (cd "$work" && apt-get "${options[@]}" update && apt-get "${options[@]}" source --download-only "benchmark=$version" &&
        dpkg-source --no-check -x ./*.dsc source) >"$root/build/logs/benchmark-source.log" 2>&1; then
        mv "$work/source" "$target"
    else
        touch "$target.failed"
        printf 'setup: no source of Google Benchmark; the Windows build goes without benchmarks (log: %s)\n' \
            build/logs/benchmark-source.log >&2
    fi
    rm -rf "$work"
}

command -v apt-get >/dev/null && command -v dpkg-query >/dev/null ||
    fail "this script needs Debian's apt-get; on another system install by hand: ${packages[*]}"
install_packages
fetch_benchmark_source
