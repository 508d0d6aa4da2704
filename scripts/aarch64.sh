#!/usr/bin/env bash
# Cross-builds the tree for 64-bit ARM, checks the plug-in's file, and runs the same tests under emulation.
#
#   scripts/aarch64.sh               all of it
#   scripts/aarch64.sh --build       only build and check the files
#   scripts/aarch64.sh --filter RE   only the tests whose name matches
#   scripts/aarch64.sh --no-deps     don't look for missing packages first
#
# Tests that emulation cannot run stand in tests/aarch64-excluded.txt, each with the reason.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

deps=true
run=true
filter=""
while [ $# -gt 0 ]; do
    case $1 in
    --build) run=false ;;
    --filter) filter=${2:?--filter needs an expression}; shift ;;
    --no-deps) deps=false ;;
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    *) echo "aarch64: unknown option: $1 (see --help)" >&2; exit 2 ;;
    esac
    shift
done
if [ "$(uname -m)" = aarch64 ]; then
    echo "aarch64: this machine is one itself, so the native tests are these tests"
    exit 0
fi
source scripts/lib.sh
if $deps; then
    scripts/deps.sh --arch aarch64 || exit 1
fi
# Chosen tests are run one by one.
single=()
[ -z "$filter" ] || single=(-DZYR_TESTS_TOGETHER=OFF)
configureAndBuild aarch64 all "${single[@]}" || exit 1

# The plug-in as a loader on the target sees it: right machine, right name, and nothing needed that is not named.
expect() {
    if grep -qE "$2" <<<"$3"; then echo "OK $1"; else echo "FAIL $1: no match for $2 in: $3"; return 1; fi
}
plugin=build/aarch64/lib/zyr_ffmpeg.so
result=0
if [ -e "$plugin" ]; then
    kind=$(file -b "$plugin")
    dynamic=$(aarch64-linux-gnu-readelf -dW "$plugin")
    expect "file: shared object for AArch64" 'ELF 64-bit LSB shared object, ARM aarch64' "$kind" || result=1
    expect "soname zyr_ffmpeg.so" 'SONAME.*\[zyr_ffmpeg\.so\]' "$dynamic" || result=1
    for needed in 'libavcodec.so.61' 'libavutil.so.59' 'libswscale.so.8' 'libc.so.6'; do
        expect "needs $needed" "NEEDED.*\\[$needed\\]" "$dynamic" || result=1
    done
    if grep -q TEXTREL <<<"$dynamic"; then echo "FAIL position independent: text relocations"; result=1; else echo "OK position independent"; fi
fi
$run || exit $result

list=tests/aarch64-excluded.txt
excluded=$(grep -vE '^ *(#|$)' "$list" | paste -sd ':')
if [ -n "$excluded" ]; then
    echo "not run under emulation:"
    sed '1d; /^$/d; s/^/    /' "$list"
    export GTEST_FILTER="-$excluded"
fi
arguments=()
[ -z "$filter" ] || arguments+=(-R "$filter")

# Tests that execute programs of their own need the emulator's namespace.
if [ "$(id -u)" = 0 ] && inEmulatorNamespace true; then
    inEmulatorNamespace bash -c 'source scripts/lib.sh; runTests aarch64 "$@"' bash "${arguments[@]}" || result=1
else
    echo "no private registration of the emulator here: tests that execute other programs may fail"
    runTests aarch64 "${arguments[@]}" || result=1
fi
exit $result
