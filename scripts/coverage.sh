#!/usr/bin/env bash
# Builds the coverage preset, runs its tests, and prints which share of the lines of src/ they execute, folder by folder.
#
#   scripts/coverage.sh               all tests
#   scripts/coverage.sh NAME...       only some test programs: test_text test_log ...
#   scripts/coverage.sh --no-deps ... don't look for missing packages first
#   scripts/coverage.sh --lines FILE  afterwards: the lines of that source that no test executed
#
# Lines of templates count as executed when one instance is. What a test ends with _exit or a signal is not counted.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit 1

case ${1:-} in
-h | --help) sed -n '2,/^set -u/{/^set -u/d;s/^# \{0,1\}//;p}' "$0"; exit 0 ;;
--lines) exec python3 scripts/coverage_table.py build/coverage "${2:?--lines needs a source}" ;;
esac
source scripts/lib.sh
if [ "${1:-}" = --no-deps ]; then shift; else scripts/deps.sh --with test || exit 1; fi
find build/coverage -name '*.gcda' -delete 2>/dev/null
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
python3 scripts/coverage_table.py build/coverage || result=1
exit $result
