#!/bin/bash
# Builds everything and runs every test. The last line is "N passed, M failed"; ends with 1 when something failed
# or nothing ran. Logs stand in build/logs.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
logs=$root/build/logs
mkdir -p "$logs"

. scripts/wine-env.sh
behind=
close_all() {
    [ -z "$behind" ] || kill -- "-$behind" 2>/dev/null || true
    wine_close
}
trap close_all EXIT
trap 'exit 130' INT TERM HUP

passed=0
failed=0
declare -A built

# Prints one line a step; the log's tail when it failed.
report() {
    local outcome=$1 name=$2 detail=$3
    printf '%-6s %s (%s)\n' "$outcome" "$name" "$detail"
    if [ "$outcome" = FAILED ]; then
        printf -- '------ end of build/logs/%s.log\n' "$name"
        tail -n "${4:-40}" "$logs/$name.log" | cut -c 1-400
        printf -- '------\n'
    fi
}

# step NAME COMMAND...: one test, passed when the command succeeds. Errors do not end a function called from here by
# themselves: it has to hand them on.
step() {
    local name=$1 start=$SECONDS
    shift
    if "$@" >"$logs/$name.log" 2>&1 </dev/null; then
        passed=$((passed + 1))
        report ok "$name" "$((SECONDS - start)) s"
    else
        failed=$((failed + 1))
        report FAILED "$name" "$((SECONDS - start)) s"
        return 1
    fi
}

# --- builds ---

build_preset() {
    local preset=$1
    shift
    cmake --preset "$preset" && cmake --build --preset "$preset" -j2 ${1:+--target "$@"}
}

# build PRESET [TARGET...]: everything without targets.
build() {
    if step "build-$1" build_preset "$@"; then
        built[$1]=1
    fi
}

# --- GoogleTest programs ---

# The number in attribute $2 of the result's outermost element.
attribute() {
    sed -n "s/.*<testsuites[^>]* $2=\"\([0-9]*\)\".*/\1/p" "$1" | head -n 1
}

count_lines() {
    grep -c "$1" "$2" || true
}

# run_gtest NAME RESULT_ARGUMENT COMMAND...: sets ran, bad, skipped and status. A program that crashed, hung or wrote no
# result counts as one more failure.
run_gtest() {
    local name=$1 argument=$2 result=$logs/$1.xml
    shift 2
    rm -f "$result"
    status=0
    "$@" "--gtest_output=xml:$argument" --gtest_color=no >"$logs/$name.log" 2>&1 </dev/null || status=$?
    if [ -s "$result" ] && [ -n "$(attribute "$result" tests)" ]; then
        skipped=$(count_lines '<skipped' "$result")
        bad=$(($(attribute "$result" failures) + $(attribute "$result" errors)))
        ran=$(($(attribute "$result" tests) - $(attribute "$result" disabled) - skipped))
        [ "$status" = 0 ] || [ "$bad" -gt 0 ] || bad=1 ran=$((ran + 1))
    else
        skipped=0
        bad=$(($(count_lines '^\[  FAILED  \] .* ms)' "$logs/$name.log") + 1))
        ran=$(($(count_lines '^\[       OK \]' "$logs/$name.log") + bad))
    fi
    # A program without a single test tests nothing.
    [ "$ran" -gt 0 ] || bad=1 ran=1
}

# Names of the tests that failed in a log, one a line.
failed_in() {
    sed -n 's/^\[  FAILED  \] \([^ ,]*\).* ms).*/\1/p' "$1" | sort -u
}

# add_tests NAME DETAIL: adds what run_gtest found to the sums and reports it, the failed tests by name.
add_tests() {
    local name=$1 detail=$2
    passed=$((passed + ran - bad))
    failed=$((failed + bad))
    detail="$((ran - bad)) of $ran tests, $detail"
    [ "$skipped" = 0 ] || detail="$detail, $skipped skipped"
    if [ "$bad" = 0 ]; then
        report ok "$name" "$detail"
    else
        [ "$status" -lt 124 ] || detail="$detail, ended with $status"
        failed_in "$logs/$name.log" | head -n 40 | sed 's/^/FAILED /'
        report FAILED "$name" "$detail" 60
    fi
}

# gtest NAME RESULT_FOLDER COMMAND...: the folder as the program calls it.
gtest() {
    local start=$SECONDS ran bad skipped status
    run_gtest "$1" "$2/$1.xml" "${@:3}"
    add_tests "$1" "$((SECONDS - start)) s"
}

# gtest_again NAME RESULT_FOLDER COMMAND...: like gtest, for tests in real windows with real keys and a real mouse. A busy machine can
# make one of them late: the few that failed are named, run once more by themselves and count as that run says.
gtest_again() {
    local name=$1 folder=$2 start=$SECONDS ran bad skipped status
    shift 2
    run_gtest "$name" "$folder/$name.xml" "$@"
    local names first_ran=$ran first_skipped=$skipped
    names=$(failed_in "$logs/$name.log")
    if [ "$bad" -gt 0 ] && [ "$bad" -le 5 ] && [ "$(wc -w <<<"$names")" = "$bad" ]; then
        printf 'again  %s: %s\n' "$name" "$(tr '\n' ' ' <<<"$names")"
        grep -v '^\[\( RUN  \|       OK\)' "$logs/$name.log" | grep -B 20 '^\[  FAILED  \].* ms)' | cut -c 1-400 | tail -n 60 || true
        mv "$logs/$name.log" "$logs/$name-first.log"
        run_gtest "$name" "$folder/$name.xml" "$@" "--gtest_filter=$(paste -sd : <<<"$names")"
        ran=$first_ran skipped=$first_skipped
    fi
    add_tests "$name" "$((SECONDS - start)) s"
}

gtest_native() {
    local name=$1 program=$2
    if [ -x "$program" ]; then
        ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1 \
            gtest "$name" "$logs" timeout -k 5 600 "$program"
    fi
}

# gtest_wine NAME themed|unthemed RUNNER PROGRAM [ARGUMENT...]: in a prefix of its own, by gtest or gtest_again.
gtest_wine() {
    local name=$1 theme=$2 runner=$3 program=$4
    shift 4
    if [ -e "$program" ]; then
        wine_open null
        if [ "$theme" = unthemed ]; then
            wine_unthemed
            VANTREL_THEME=0 "$runner" "$name" "$(wine_path "$logs")" wine_run 900 "$program" "$@"
        else
            "$runner" "$name" "$(wine_path "$logs")" wine_run 900 "$program" "$@"
        fi
        wine_close
    fi
}

# --- the other checks ---

# A short run from a fixed seed; what it finds interesting goes to the build folder, not to the corpus.
fuzz() {
    local program=$1 name=${1##*/fuzz_} corpus
    local found=$root/build/fuzz-found/$name
    rm -rf "$found"
    mkdir -p "$found"
    local folders=("$found")
    for corpus in "$root/tests/fuzz/corpus/$name" "$root/tests/fuzz/corpus/${name}_fuzz"; do
        [ ! -d "$corpus" ] || folders+=("$corpus")
    done
    (cd "$found" && timeout -k 5 120 "$program" -seed=1 -max_total_time=5 -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 "${folders[@]}")
}

bench_runs() {
    VANTREL_BENCH_ONCE=1 timeout -k 5 400 "$1" --benchmark_min_time=0.001
}

all_sources() {
    find src tests workbench bench -name '*.h' -o -name '*.cpp' 2>/dev/null | sort
}

format_is_clean() {
    all_sources | xargs -r clang-format-14 --dry-run -Werror
}

tidy_is_clean() {
    find src -mindepth 2 -maxdepth 2 -name '*.cpp' -not -path 'src/resources/*' | sort |
        xargs -r -n 4 -P 2 clang-tidy-14 -p build/native --quiet --extra-arg=-Wno-unknown-warning-option
}

# The library must load on a machine that has nothing but Windows.
library_stands_alone() {
    local needed
    x86_64-w64-mingw32-objdump -p build/win64/vantrel.dll | grep 'DLL Name'
    needed=$(x86_64-w64-mingw32-objdump -p build/win64/vantrel.dll | grep 'DLL Name' | grep -iE 'libstdc|libgcc|libwinpthread' || true)
    [ -z "$needed" ]
}

scripts_are_sound() {
    local script
    for script in scripts/*.sh .ci/run; do
        bash -n "$script" || return 1
        [[ $script = scripts/*-env.sh ]] || [ -x "$script" ] || return 1
    done
}

# The exit code of a Windows program and its output reach the caller; nothing of the run stays behind.
wine_runner_works() {
    local status=0 output
    output=$(scripts/run-wine.sh cmd /c 'echo reached& exit 7') || status=$?
    printf 'output: %s, exit code: %s\n' "$output" "$status"
    [ "$status" = 7 ] && [ "${output%$'\r'}" = reached ]
}

# Picture of the editor window: has to be there and to show more than an empty frame.
demo_shows_window() {
    local picture=$logs/demo-$1.png options=() colours
    [ "$1" = themed ] || options=(--unthemed)
    rm -f "$picture"
    scripts/demo.sh "${options[@]}" --screenshot "$picture" || return 1
    colours=$(identify -format '%k' "$picture") || return 1
    printf '%s colours\n' "$colours"
    [ "$colours" -gt 10 ]
}

# Tests of what no theme changes; they run with it and not again without.
same_in_any_theme='*Road.*:OpenVariable*:FrameRoads.*:FrameNames.*:FrameResources.*:FrameDialogs.*:*EveryAction.*:Action.*:Undo*:*OutOfMemory*:Failure.*:Printing.*:MenuStates.*:*MonkeyTest*'

# --- the run ---

start=$SECONDS
step setup scripts/setup.sh || true
step scripts scripts_are_sound || true
step arrangement scripts/check-sources.sh || true

build win64

# Window tests mostly wait. What needs no window is built and run behind them at low priority. The unit tests run sanitized and under Wine; a
# third, plain build of them would cost minutes and tell nothing new.
checks_without_window() {
    passed=0
    failed=0
    step format format_is_clean || true
    build native bench
    build native-asan
    if [ -n "${built[native-asan]:-}" ]; then
        gtest_native unit-asan build/native-asan/unit_tests
        # One program for each source file; a missing one fails.
        for source in tests/fuzz/*.cpp; do
            name=$(basename "$source" .cpp)
            step "fuzz-${name%_fuzz}" fuzz "$root/build/native-asan/fuzz_${name%_fuzz}" || true
        done
    fi
    if [ -n "${built[native]:-}" ]; then
        step octave-mex scripts/octave-mex.sh || true
        if [ -x build/native/bench ]; then
            step bench-native bench_runs build/native/bench || true
        fi
        step tidy tidy_is_clean || true
    fi
    printf '%s %s\n' "$passed" "$failed" >"$logs/without-window.sum"
}
rm -f "$logs/without-window.sum"
set -m # a process group of their own, which can be ended as a whole
(
    set +m
    renice -n 19 "$BASHPID" >/dev/null
    checks_without_window
) >"$logs/without-window.txt" 2>&1 </dev/null &
behind=$!
set +m

if step wine-prefix wine_template; then
    step wine-runner wine_runner_works || true
    if [ -n "${built[win64]:-}" ]; then
        [ -e build/win64/vantrel.dll ] && { step library library_stands_alone || true; }
        gtest_wine unit-win64 themed gtest build/win64/unit_tests.exe
        gtest_wine ui-themed themed gtest_again build/win64/ui_tests.exe
        gtest_wine ui-unthemed unthemed gtest_again build/win64/ui_tests.exe "--gtest_filter=-$same_in_any_theme"
        if [ -e build/win64/vantrel-workbench.exe ]; then
            step demo-themed demo_shows_window themed || true
            step demo-unthemed demo_shows_window unthemed || true
            step clipboard scripts/test-clipboard.sh || true
            step package scripts/test-package.sh || true
        fi
    fi
fi

# Those that ended early would be missing from the sums.
wait "$behind" || true
behind=
cat "$logs/without-window.txt"
read -r more_passed more_failed <"$logs/without-window.sum" || more_passed=0 more_failed=1
passed=$((passed + more_passed))
failed=$((failed + more_failed))

printf 'took %s s\n' "$((SECONDS - start))"
printf '%s passed, %s failed\n' "$passed" "$failed"
[ "$failed" = 0 ] && [ "$passed" -gt 0 ]
