#!/usr/bin/env bash
# Builds the benchmarks of the release preset and runs them, one after the other. What counts are the ratios: each program
# measures its peers in the same run.
#
#   scripts/bench.sh                         all of them
#   scripts/bench.sh NAME...                 some: geometry, layout, variables, noise, library, codec_road, ...
#   scripts/bench.sh --no-deps ...           don't look for missing packages first
#
# Without a peer's package (scripts/deps.sh --with bench) its benchmark is left out. The exit code is 1 when a program
# failed, for example because the layout solver touched the heap. Options of one program: build/release/bin/bench_NAME --help
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

case ${1:-} in
-h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
esac
source scripts/lib.sh
if [ "${1:-}" = --no-deps ]; then shift; else scripts/deps.sh --with bench || exit 1; fi
configureAndBuild release zyr_benchmarks || exit 1

if [ $# -eq 0 ]; then
    mapfile -t names < <(sed -n 's/^ *add_executable(bench_\([a-z_]*\) .*/\1/p' bench/CMakeLists.txt)
    set -- "${names[@]}"
fi
result=0
for name in "$@"; do
    program=build/release/bin/bench_$name
    printf '\n== %s\n' "$name"
    if [ -x "$program" ]; then
        "$program" || { printf 'bench: %s FAILED\n' "$name"; result=1; }
    else
        printf 'left out: its peers are not installed, or there is no such benchmark\n'
    fi
done
exit $result
