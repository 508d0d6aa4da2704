#!/usr/bin/env bash
# Installs what is missing, builds, and runs the tests.
#
#   scripts/test.sh               everything: --native --asan --tsan --aarch64 --lint
#   scripts/test.sh --native      the tests as built for this machine, warnings as errors
#   scripts/test.sh --asan        the same tests under the address and undefined-behaviour sanitizers
#   scripts/test.sh --tsan        the tests that run threads, under the thread sanitizer
#   scripts/test.sh --aarch64     the same tests cross-built and run under emulation
#   scripts/test.sh --lint        format, static checks, headers, layers, test list
#   scripts/test.sh --filter RE   only the tests whose name matches (with any of the above)
#   scripts/test.sh --no-deps     don't look for missing packages first
#
# The last line is "N passed, N failed, N skipped" over all parts; a part that could not be built counts as one failure.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

parts=()
deps=true
filter=""
while [ $# -gt 0 ]; do
    case $1 in
    --native | --asan | --tsan | --aarch64 | --lint) parts+=("${1#--}") ;;
    --filter) filter=${2:?--filter needs an expression}; shift ;;
    --no-deps) deps=false ;;
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    *) echo "test: unknown option: $1 (see --help)" >&2; exit 2 ;;
    esac
    shift
done
[ ${#parts[@]} -gt 0 ] || parts=(native asan tsan aarch64 lint)
has() { case " ${parts[*]} " in *" $1 "*) return 0 ;; esac; return 1; }

source scripts/lib.sh
passed=0 failed=0 skipped=0 broken=()
started=$SECONDS

# What a finished run of tests adds to the sum.
count() {
    local good bad idle
    read -r good bad idle < <(sed -n '$s/^\([0-9]*\) passed, \([0-9]*\) failed, \([0-9]*\) skipped$/\1 \2 \3/p' "build/$1/counts")
    passed=$((passed + ${good:-0})) failed=$((failed + ${bad:-1})) skipped=$((skipped + ${idle:-0}))
}

# part NAME COMMAND...: runs one part, and reports how long it took and whether it failed.
part() {
    local name=$1 began=$SECONDS
    shift
    printf '\n== %s\n' "$name"
    if "$@"; then
        printf '== %s: OK (%d s)\n' "$name" $((SECONDS - began))
    else
        printf '== %s: FAILED (%d s)\n' "$name" $((SECONDS - began))
        broken+=("$name")
    fi
}

# presetPart PRESET BUILD-TARGET CTEST-ARGUMENTS...
presetPart() {
    local preset=$1 target=$2
    shift 2
    local single=()
    # Chosen tests are run one by one.
    [ -z "$filter" ] || { set -- "$@" -R "$filter"; single=(-DZYR_TESTS_TOGETHER=OFF); }
    rm -f "build/$preset/digest"
    configureAndBuild "$preset" "$target" "${single[@]}" || { failed=$((failed + 1)); return 1; }
    runTests "$preset" "$@"
    local result=$?
    count "$preset"
    return $result
}

aarch64Part() {
    local arguments=(--no-deps)
    $deps && arguments=()
    [ -z "$filter" ] || arguments+=(--filter "$filter")
    rm -f build/aarch64/counts build/aarch64/digest
    scripts/aarch64.sh "${arguments[@]}"
    local result=$?
    if [ -e build/aarch64/counts ]; then count aarch64; else [ $result = 0 ] || failed=$((failed + 1)); fi
    # The tests pin the digest too, so this says in one line what their passing on both platforms means.
    if has native && [ -e build/ci/digest ] && [ -e build/aarch64/digest ]; then
        if cmp -s build/ci/digest build/aarch64/digest; then
            echo "the native run has the same digest"
            passed=$((passed + 1))
        else
            echo "the native run has another digest: $(cat build/ci/digest)"
            failed=$((failed + 1)) result=1
        fi
    fi
    return $result
}

lintPart() {
    scripts/lint.sh --no-deps --tally build/lint.tally
    local result=$? ok bad
    read -r ok bad <build/lint.tally
    passed=$((passed + ok)) failed=$((failed + bad))
    return $result
}

abiPart() {
    scripts/abi.sh --no-deps || { failed=$((failed + 1)); return 1; }
    passed=$((passed + 1))
}

if $deps; then
    wanted=()
    if has native || has asan || has tsan; then wanted+=(--with test); fi
    has lint && wanted+=(--with lint)
    has native && wanted+=(--with bench)
    part dependencies scripts/deps.sh "${wanted[@]}"
    if [ ${#broken[@]} -gt 0 ]; then
        printf '\n0 passed, 1 failed\n'
        exit 1
    fi
fi
has native && part native presetPart ci all
# Costs seconds on what was just built.
has native && [ -z "$filter" ] && part abi abiPart
has lint && part lint lintPart
has asan && part asan-ubsan presetPart asan-ubsan all
has tsan && part tsan presetPart tsan zyr_threaded_tests -L threaded
has aarch64 && part aarch64 aarch64Part

printf '\n'
[ ${#broken[@]} -eq 0 ] || printf 'failed parts: %s\n' "${broken[*]}"
printf 'took %d min %d s\n' $(((SECONDS - started) / 60)) $(((SECONDS - started) % 60))
printf '%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
[ ${#broken[@]} -eq 0 ] && [ "$failed" -eq 0 ]
