#!/usr/bin/env python3
"""Counts the tests of a run of ctest, of which a process may have run many.

  scripts/count_tests.py build/PRESET

Reads what runTests left there (test.log, Testing/Temporary/LastTest.log). Prints the tests that were skipped with their
reasons, and in the last line how many passed, failed and were skipped. A process that ends in another way than its tests
say (a leak, a crash, a timeout) counts as one more failure.
"""

import pathlib
import re
import sys


def number(pattern, output):
    """What the last line of this form says: children may have printed such lines, too."""
    found = re.findall(pattern, output, re.MULTILINE)
    return int(found[-1]) if found else 0


def skipped(output):
    """(name, reason) of each test that was skipped."""
    return re.findall(r"^\[ RUN      \] (\S+)\n(?:(?!\[ RUN  )[^\n]*\n)*?[^\n]*: Skipped\n(.*?)\n+\[  SKIPPED \] ", output,
                      re.MULTILINE | re.DOTALL)


def main():
    if len(sys.argv) != 2 or sys.argv[1] in ("-h", "--help"):
        print(__doc__.strip())
        return 0 if len(sys.argv) == 2 else 2
    build = pathlib.Path(sys.argv[1])
    statuses = dict(re.findall(r"^ *\d+/\d+ Test +#\d+: (.+?) \.*(?: +|(?=\*))(Passed|\*\*\*.*?) +[\d.]+ sec",
                               (build / "test.log").read_text(encoding="utf-8", errors="replace"), re.MULTILINE))
    log = (build / "Testing/Temporary/LastTest.log").read_text(encoding="utf-8", errors="replace")
    outputs = dict(re.findall(r"^\d+/\d+ Testing: ([^\n]+)\n(.*?)^<end of output>$", log, re.MULTILINE | re.DOTALL))
    passed = failed = idle = 0
    for name, status in statuses.items():
        output = outputs.get(name, "")
        tests = re.findall(r"^\[==========\] (\d+) tests? from .* ran\.", output, re.MULTILINE)
        bad = number(r"^\[  FAILED  \] (\d+) tests?, listed below:$", output)
        if tests:
            out = number(r"^\[  SKIPPED \] (\d+) tests?, listed below:$", output)
            good = int(tests[-1]) - bad - out
        elif status == "Passed":
            good, out = 1, 0
        elif status.startswith("***Skipped") or status.startswith("***Not Run (Disabled)"):
            good, out = 0, 1
            print(f"skipped: {name}")
        else:  # It ended in the middle.
            good, out = len(re.findall(r"^\[       OK \] ", output, re.MULTILINE)), 0
        if status != "Passed" and not status.startswith("***Skipped") and bad == 0:
            bad = 1
        for test, reason in skipped(output):
            print(f"skipped: {test}: {' '.join(reason.split())}")
        passed, failed, idle = passed + good, failed + bad, idle + out
    print(f"{passed} passed, {failed} failed, {idle} skipped")
    return 0


if __name__ == "__main__":
    sys.exit(main())
