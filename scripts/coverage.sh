#!/usr/bin/env bash
# Builds the coverage preset, runs its tests, and prints which share of the lines and branches of src/ they execute, folder
# by folder. Branches are those of conditions; what exceptions take is left out. It takes half an hour on two cores: release
# checks run it, CI does not.
#
#   scripts/coverage.sh               all tests
#   scripts/coverage.sh NAME...       only some test programs: test_text test_log ...
#   scripts/coverage.sh --no-deps ... don't look for missing packages first
#   scripts/coverage.sh --compare     all tests, then compares with tests/coverage/uncovered.txt: exit code 1 when a place is
#                                     not executed that the list does not know or has no reason for
#   scripts/coverage.sh --table       afterwards: the table again
#   scripts/coverage.sh --lines FILE  afterwards: the lines of that source that no test executed, and those with branches left
#   scripts/coverage.sh --list        afterwards: compares with the list again
#   scripts/coverage.sh --write       afterwards: takes new places over into the list; write their reasons
#
# Lines and branches of templates count when one instance executes them. Every process counts, however it ends: all of one
# program or module share a file in build/coverage/counters (tests/coverage/zyr_shared_counters.cpp).
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

case ${1:-} in
-h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
--table) exec python3 scripts/coverage_table.py build/coverage ;;
--lines) exec python3 scripts/coverage_table.py build/coverage "${2:?--lines needs a source}" ;;
--list) exec python3 scripts/coverage_table.py build/coverage --compare ;;
--write) exec python3 scripts/coverage_table.py build/coverage --write ;;
esac
source scripts/lib.sh
compare=false deps=true
while [ $# -gt 0 ]; do
    case $1 in
    --no-deps) deps=false; shift ;;
    --compare) compare=true; shift ;;
    -*) echo "coverage: unknown option: $1 (see --help)" >&2; exit 2 ;;
    *) break ;;
    esac
done
if $deps; then scripts/deps.sh --with test || exit 1; fi

# Gives gcov what the programs and modules have counted.
writeCounts() {
    local file number
    find build/coverage -name '*.gcda' -delete
    find build/coverage -type f \( -name '*.so' -o -perm -u+x \) | while read -r file; do
        number=$(readelf --notes "$file" 2>/dev/null | sed -n 's/.*Build ID: //p')
        [ -n "$number" ] && [ -f "build/coverage/counters/$number" ] || continue
        case $file in
        *.so) env ZYR_WRITE_COUNTS=1 "LD_PRELOAD=$PWD/$file" true ;;
        *) ZYR_WRITE_COUNTS=1 "$file" ;;
        esac
    done
}

rm -f build/coverage/counters/*
result=0
if [ $# -eq 0 ]; then
    configureAndBuild coverage all || exit 1
    runTests coverage || result=1
else
    for program in "$@"; do
        configureAndBuild coverage "$program" || exit 1
        "build/coverage/bin/$program" >"build/coverage/$program.log" 2>&1 || { echo "$program failed"; result=1; }
    done
fi
writeCounts
python3 scripts/coverage_table.py build/coverage || result=1
if $compare; then python3 scripts/coverage_table.py build/coverage --compare || result=1; fi
exit $result
