#!/usr/bin/env bash
# The static checks, one OK or FAIL line each.
#
#   scripts/lint.sh               all checks
#   scripts/lint.sh format tidy   only the named ones: format tidy headers layers build-list scripts
#   scripts/lint.sh --fix         writes the format instead of checking it
#   scripts/lint.sh --no-deps     don't look for missing packages first
#   scripts/lint.sh --tally FILE  also writes "<passed> <failed>" to FILE
#
# tidy looks again only at sources whose text, headers and flags have changed since they last passed.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

deps=true
tally=""
checks=()
while [ $# -gt 0 ]; do
    case $1 in
    --no-deps) deps=false ;;
    --tally) tally=${2:?--tally needs a file}; shift ;;
    --fix) git ls-files -co --exclude-standard '*.h' '*.cpp' '*.c' | xargs -r "$(command -v clang-format-14 || echo clang-format)" -i; exit ;;
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    -*) echo "lint: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) checks+=("$1") ;;
    esac
    shift
done
[ ${#checks[@]} -gt 0 ] || checks=(format layers scripts build-list headers tidy)
source scripts/lib.sh
if $deps; then scripts/deps.sh --with lint || exit 1; fi

preset=ci
mapfile -t sources < <(git ls-files -co --exclude-standard '*.h' '*.cpp' '*.c' | while read -r file; do [ -e "$file" ] && echo "$file"; done)
passed=0 failed=0

# The checks that read the build's list of commands need a configured build, not a finished one.
configured=""
configure() {
    [ -z "$configured" ] || return "$configured"
    mkdir -p "build/$preset"
    cmake --preset $preset >"build/$preset/configure.log" 2>&1
    configured=$?
    [ $configured -eq 0 ] || tail -n 20 "build/$preset/configure.log"
    return $configured
}

check_format() {
    local tool=clang-format
    command -v clang-format-14 >/dev/null && tool=clang-format-14
    case $($tool --version) in
    *"version 14."*) $tool --dry-run --Werror "${sources[@]}" ;;
    # Other versions lay some lines out differently, so they are no judge.
    *) echo "not checked: clang-format 14 is not on this machine" ;;
    esac
}

check_layers() { python3 scripts/check_layers.py; }

check_scripts() {
    local file result=0
    for file in scripts/*.sh .ci/run; do bash -n "$file" || result=1; done
    return $result
}

# Every source and every test is built: a file outside the build rots.
check_build-list() {
    local file result=0
    configure || return 1
    for file in $(git ls-files -co --exclude-standard 'src/*.cpp' 'src/*.c' 'tests/**/test_*.cpp'); do
        [ -e "$file" ] || continue
        grep -qF "\"file\": \"$PWD/$file\"" "build/$preset/compile_commands.json" || { echo "$file is not in the build"; result=1; }
    done
    for file in $(git ls-files -co --exclude-standard 'src/*.h'); do
        [ -e "$file" ] || continue
        grep -rqF "$(basename "$file")" "$(dirname "$file")/CMakeLists.txt" 2>/dev/null ||
            grep -qF "$(basename "$file")" "$(dirname "$(dirname "$file")")/CMakeLists.txt" 2>/dev/null ||
            { echo "$file is in no header set (HEADERS of zyr_sources)"; result=1; }
    done
    return $result
}

# Every header compiles alone.
check_headers() {
    local log=build/$preset/headers.log
    configure || return 1
    cmake --build build/$preset --target all_verify_interface_header_sets -j "$jobs" -- -k 20 >"$log" 2>&1 ||
        { grep -vE '^\[[0-9]+/[0-9]+\] Building' "$log" | head -n 60; return 1; }
}

# One source through clang-tidy; a stamp named after everything that it reads stands for "passed".
tidyOne() {
    local file=$1 flags stamp
    flags="-std=c++20 -Isrc -DZYR_MODULE_WORD=\"lint\" $ZYR_TIDY_INCLUDES"
    # shellcheck disable=SC2086
    stamp=$(set -o pipefail; g++ $flags -w -E "$file" 2>&1 | cat - .clang-tidy | sha256sum | cut -c1-40) ||
        { echo "$file: cannot be preprocessed"; return 1; }
    [ -e "build/tidy/$stamp" ] && return 0
    # shellcheck disable=SC2086
    if clang-tidy --quiet "$file" -- $flags -w >"build/tidy/out.$stamp" 2>&1; then
        rm -f "build/tidy/out.$stamp"
        touch "build/tidy/$stamp"
    else
        grep -vE '^[0-9]+ warnings' "build/tidy/out.$stamp" | head -n 40
        rm -f "build/tidy/out.$stamp"
        return 1
    fi
}
check_tidy() {
    configure || return 1
    mkdir -p build/tidy
    # The include folders of all targets; the compiler's own options mean nothing to clang.
    ZYR_TIDY_INCLUDES=$(grep -oE -- '-(I|isystem )/[^ "]+' "build/$preset/compile_commands.json" | sort -u | tr '\n' ' ')
    export ZYR_TIDY_INCLUDES
    export -f tidyOne
    git ls-files -co --exclude-standard 'src/*.cpp' | while read -r file; do [ -e "$file" ] && echo "$file"; done |
        xargs -P "$jobs" -I{} bash -c 'tidyOne {}'
}

for check in "${checks[@]}"; do
    began=$SECONDS
    if ! declare -F "check_$check" >/dev/null; then echo "lint: no check named $check" >&2; exit 2; fi
    if output=$("check_$check" 2>&1); then
        printf 'OK   %s%s (%d s)\n' "$check" "${output:+ ($output)}" $((SECONDS - began))
        passed=$((passed + 1))
    else
        printf 'FAIL %s (%d s)\n' "$check" $((SECONDS - began))
        head -n 200 <<<"$output" | sed 's/^/     /'
        failed=$((failed + 1))
    fi
done
[ -z "$tally" ] || { mkdir -p "$(dirname "$tally")"; echo "$passed $failed" >"$tally"; }
[ $failed -eq 0 ]
