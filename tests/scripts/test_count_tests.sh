#!/usr/bin/env bash
# Runs ctest over programs that print what GoogleTest would, and looks at the sum.
set -euo pipefail
root=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# says NAME STATUS LINE...: a process that prints the lines and ends with the status.
says() {
    local name=$1 status=$2
    shift 2
    printf '%s\n' "$@" >"$name.txt"
    printf 'add_test(%s sh -c "cat %s.txt; exit %s")\n' "$name" "$name" "$status" >>CTestTestfile.cmake
}
says all.0 0 '[==========] 3 tests from 1 test suite ran. (1 ms total)' '[  PASSED  ] 3 tests.'
says all.1 0 '[ RUN      ] A.Waits' 'a.cpp:7: Skipped' 'no node here' '' '[  SKIPPED ] A.Waits (0 ms)' \
    '[==========] 2 tests from 1 test suite ran. (1 ms total)' '[  PASSED  ] 1 test.' '[  SKIPPED ] 1 test, listed below:'
says some.0 1 '[==========] 4 tests from 2 test suites ran. (1 ms total)' '[  PASSED  ] 2 tests.' \
    '[  FAILED  ] 2 tests, listed below:'
says leaks.0 1 '[==========] 5 tests from 1 test suite ran. (1 ms total)' '[  PASSED  ] 5 tests.'
says crashes.0 139 '[       OK ] B.First (0 ms)' '[ RUN      ] B.Second'
says plain 0 'fine'
says left_out 77
says broken 1
# Names of types have blanks, and some are longer than ctest's columns.
long='List<unsigned int>.'$(printf 'Holds%.0s' {1..20})
printf '%s\n' '[==========] 1 test from 1 test suite ran. (1 ms total)' '[  PASSED  ] 1 test.' >long.txt
printf 'add_test([==[%s]==] cat long.txt)\n' "$long" >>CTestTestfile.cmake
echo 'set_tests_properties(left_out PROPERTIES SKIP_RETURN_CODE 77)' >>CTestTestfile.cmake

ctest >test.log 2>&1 || true
printf '%s\n' 'skipped: A.Waits: no node here' 'skipped: left_out' '14 passed, 5 failed, 2 skipped' >expected
"$root/scripts/count_tests.py" . >counts
diff expected counts
