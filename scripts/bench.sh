#!/usr/bin/env bash
# Builds the benchmarks of the release preset and runs them, one after the other. What counts are the ratios: each program
# measures its peers in the same run.
#
#   scripts/bench.sh                         all of them
#   scripts/bench.sh NAME...                 some: geometry, layout, variables, noise, library, codec_road, ...
#   scripts/bench.sh live [options]          live screens beside VNC servers (docs/live.md); takes minutes, so only by name
#   scripts/bench.sh --save WORD [NAME...]   runs them five times, and keeps medians and spread in build/bench/WORD.json
#   scripts/bench.sh --runs N --save ...     so many times
#   scripts/bench.sh --compare WORD WORD     compares what was kept, the second with the first: what is worse or better beyond
#                                            the spread, and a page with all of it, build/bench/WORD-WORD.html
#   scripts/bench.sh --no-deps ...           don't look for missing packages first
#
# Without a peer's package (scripts/deps.sh --with bench) its benchmark is left out. The exit code is 1 when a program
# failed, for example because the layout solver touched the heap, or when --compare finds something worse. Options of one
# program: build/release/bin/bench_NAME --help
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

deps=true save="" runs=5
# fileOf WORD: where its results are; a path is taken as it is.
fileOf() { case $1 in */* | *.json) echo "$1" ;; *) echo "build/bench/$1.json" ;; esac; }
while [ $# -gt 0 ]; do
    case $1 in
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    --no-deps) deps=false; shift ;;
    --save) save=${2:?--save needs a word}; shift 2 ;;
    --runs) runs=${2:?--runs needs a number}; shift 2 ;;
    --compare)
        [ $# -eq 3 ] || { echo "bench: --compare needs two words (see --help)" >&2; exit 2; }
        exec scripts/bench_results.py compare "$(fileOf "$2")" "$(fileOf "$3")" "build/bench/$(basename "$2" .json)-$(basename "$3" .json).html"
        ;;
    -*) echo "bench: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) break ;;
    esac
done
source scripts/lib.sh
if $deps; then scripts/deps.sh --with bench || exit 1; fi
if [ "${1:-}" = live ]; then
    shift
    if $deps; then scripts/deps.sh --with test || exit 1; fi
    configureAndBuild release zyr_live_benchmark || exit 1
    exec bench/live/bench_live.py "$@"
fi
configureAndBuild release zyr_benchmarks || exit 1

if [ $# -eq 0 ]; then
    mapfile -t names < <(sed -n 's/^ *add_executable(bench_\([a-z_]*\) .*/\1/p' bench/CMakeLists.txt)
    set -- "${names[@]}"
fi
result=0 programs=()
for name in "$@"; do
    program=build/release/bin/bench_$name
    if [ ! -x "$program" ]; then
        printf '\n== %s\nleft out: its peers are not installed, or there is no such benchmark\n' "$name"
    elif [ -n "$save" ]; then
        programs+=("$program")
    else
        printf '\n== %s\n' "$name"
        "$program" || { printf 'bench: %s FAILED\n' "$name"; result=1; }
    fi
done
if [ -n "$save" ]; then scripts/bench_results.py save "$(fileOf "$save")" "$runs" "${programs[@]}" || result=1; fi
exit $result
