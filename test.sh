#!/usr/bin/env bash
# Builds everything and runs every test. Prints what fails, then one line that counts the test functions.
#   ./test.sh [--preset dev|release|asan|tsan|windows] [--filter REGEX]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=Tools/quiet.sh
source Tools/quiet.sh

usage() {
    sed -n '2,3s/^# *//p' "$0" >&2
    exit 2
}

preset=dev
filter=()
while (($#)); do
    case $1 in
        --preset) preset=${2:-} ;;
        --filter) filter=(-R "${2:-}") ;;
        *) usage ;;
    esac
    shift 2 || usage
done

case $preset in
    dev | release) ;;
    asan)
        export ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:check_initialization_order=1
        export UBSAN_OPTIONS=print_stacktrace=1
        ;;
    tsan)
        export TSAN_OPTIONS=halt_on_error=0:second_deadlock_stack=1
        KX_TSAN_QT=$(Tools/tsan/build-qt.sh)
        export KX_TSAN_QT
        ;;
    windows) Tools/windows/build-toolchain.sh >/dev/null ;;
    *) usage ;;
esac

Tools/setup.sh
build=build/$preset
quiet "$build/configure.log" cmake --preset "$preset"
quiet "$build/build.log" cmake --build --preset "$preset"

junit=$PWD/$build/junit.xml
rm -f "$junit"
size=100000000 # otherwise the output is cut before the totals
status=0
ctest --preset "$preset" "${filter[@]}" --output-junit "$junit" --test-output-size-passed "$size" \
    --test-output-size-failed "$size" >"$build/test.log" 2>&1 </dev/null || status=$?
if ! [[ -s $junit ]]; then
    tail -n 30 "$build/test.log" >&2
    exit 1
fi
Tools/count-tests.py "$junit" || status=1
exit "$status"
