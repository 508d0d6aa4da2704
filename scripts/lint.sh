#!/usr/bin/env bash
# The static checks, one OK or FAIL line each.
#
#   scripts/lint.sh               all checks but the slow one
#   scripts/lint.sh format tidy   only the named ones: format layers scripts build-list headers tidy beside
#   scripts/lint.sh clang         the slow one: tests by a second compiler
#   scripts/lint.sh --fix         writes the format instead of checking it
#   scripts/lint.sh --no-deps     don't look for missing packages first
#   scripts/lint.sh --tally FILE  also writes "<passed> <failed>" to FILE
#
# headers, clang and tidy look again only at sources whose text, headers and flags have changed since they last passed.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

deps=true
tally=""
checks=()
while [ $# -gt 0 ]; do
    case $1 in
    --no-deps) deps=false ;;
    --tally) tally=${2:?--tally needs a file}; shift ;;
    --fix) scripts/umbrellas.py; git ls-files -co --exclude-standard '*.h' '*.cpp' '*.c' | xargs -r "$(command -v clang-format-14 || echo clang-format)" -i; exit ;;
    -h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
    -*) echo "lint: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) checks+=("$1") ;;
    esac
    shift
done
[ ${#checks[@]} -gt 0 ] || checks=(format layers scripts build-list headers tidy beside)
source scripts/lib.sh
if $deps; then scripts/deps.sh --with lint || exit 1; fi

# Where each source is compiled by itself.
preset=release
mapfile -t sources < <(git ls-files -co --exclude-standard '*.h' '*.cpp' '*.c' | while read -r file; do [ -e "$file" ] && echo "$file"; done)
passed=0 failed=0

# The checks that read the build's list of commands need a configured build, not a finished one.
configured=""
configure() {
    [ -z "$configured" ] || return "$configured"
    mkdir -p "build/$preset"
    cmake --preset $preset >"build/$preset/configure.log" 2>&1
    configured=$?
    # A source that no other target makes: what includes it has to be read too.
    if [ $configured -eq 0 ] && grep -q '^build bench/formats_record.pb.h' "build/$preset/build.ninja"; then
        cmake --build "build/$preset" --target bench/formats_record.pb.h >>"build/$preset/configure.log" 2>&1
        configured=$?
    fi
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
    shellcheck -x scripts/*.sh tests/package/*.sh tests/scripts/*.sh .ci/run || result=1
    for file in $(git ls-files -co --exclude-standard '*.py'); do python3 -c 'import ast, sys; ast.parse(open(sys.argv[1]).read())' "$file" || result=1; done
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

# What is checked unit by unit: one line for each source of the build whose path matches, the path and its own -I, -isystem, -D
# and -std, quoted for a shell.
unitsOfBuild() {
    python3 - "build/$preset/compile_commands.json" "$1" <<'PYTHON'
import json, os, re, shlex, sys
for entry in sorted(json.load(open(sys.argv[1])), key=lambda entry: entry["file"]):
    path = os.path.relpath(entry["file"])
    if not re.match(sys.argv[2], path):
        continue
    words, flags = shlex.split(entry["command"]), []
    for word, following in zip(words, words[1:]):
        if re.match("-(I|D|std=)", word):
            flags.append(word)
        elif word == "-isystem":
            flags += [word, following]
    print(path, shlex.join(flags))
PYTHON
}

# checkUnit KIND "FILE FLAGS": runs checkUnit_KIND with file and flags; a stamp named after everything that it reads stands
# for "passed".
checkUnit() {
    local kind=$1 file=${2%% *} flags stamp
    eval "flags=(${2#* })"
    stamp=$(set -o pipefail; g++ "${flags[@]}" -w -E -x c++ "$file" 2>&1 |
        cat - .clang-tidy scripts/lint.sh <(echo "$kind") | sha256sum | cut -c1-40) ||
        { echo "$file: cannot be preprocessed"; return 1; }
    [ -e "build/tidy/$stamp" ] && return 0
    if "checkUnit_$kind" "$file" "${flags[@]}" >"build/tidy/out.$stamp" 2>&1; then
        rm -f "build/tidy/out.$stamp"
        touch "build/tidy/$stamp"
    else
        grep -vE '^[0-9]+ warnings' "build/tidy/out.$stamp" | head -n 40
        rm -f "build/tidy/out.$stamp"
        return 1
    fi
}
checkUnit_tidy() { clang-tidy --quiet "$1" -- "${@:2}" -w; }
checkUnit_header() { g++ "${@:2}" -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Werror -fsyntax-only -x c++ - <<<"#include \"${1#src/}\""; }
# A reserved object has all operations of all kinds; those that its own kind does not declare are never called.
checkUnit_clang() {
    clang++ "${@:2}" -fsyntax-only -Wall -Wextra -Wshadow -Wmove -Wloop-analysis -Wtautological-compare -Wconditional-uninitialized \
        -Wunreachable-code -Wcomma -Wno-inconsistent-missing-override -Wno-overloaded-virtual -Wno-unused-lambda-capture -Werror "$1"
}

# checkUnits KIND: the lines of its input side by side.
checkUnits() {
    mkdir -p build/tidy
    export -f checkUnit checkUnit_tidy checkUnit_header checkUnit_clang
    tr '\n' '\0' | xargs -0 -r -P "$jobs" -I{} bash -c 'checkUnit "$0" "$1"' "$1" {}
}

# Every header compiles alone, and the umbrella headers have them all. A source that includes its own header first has shown
# it already.
check_headers() {
    local file source includes result=0
    configure || return 1
    # The include folders of all targets.
    includes=$(grep -oE -- '-isystem /[^ "]+' "build/$preset/compile_commands.json" | sort -u | tr '\n' ' ')
    scripts/umbrellas.py --check || result=1
    for file in $(git ls-files -co --exclude-standard 'src/*.h'); do
        source=${file%.h}.cpp
        [ -e "$file" ] || continue
        [ -e "$source" ] && [ "$(grep -m 1 '^ *# *include' "$source")" = "#include \"${file#src/}\"" ] && continue
        echo "$file -std=c++20 -Isrc -DZYR_MODULE_WORD=\\\"lint\\\" $includes"
    done | checkUnits header || result=1
    return $result
}

# Mistakes in the product.
check_tidy() {
    configure || return 1
    unitsOfBuild 'src/.*\.cpp$' | sort -u -k 1,1 | checkUnits tidy
}
# The same in all that stands beside it and runs.
check_beside() {
    configure || return 1
    { unitsOfBuild '(bench|fuzz)/.*\.cpp$'; exampleUnits; } | sort -u -k 1,1 | checkUnits tidy
}
exampleUnits() {
    git ls-files -co --exclude-standard 'examples/*.cpp' |
        sed 's,$, -std=c++20 -Isrc -DZYR_MODULE_WORD=\\"lint\\",'
}

# The tests by another compiler than the one that builds them, and without their precompiled header. tidy would take longer
# than all the rest.
check_clang() {
    configure || return 1
    unitsOfBuild 'tests/.*\.cpp$' | sort -u -k 1,1 | checkUnits clang
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
