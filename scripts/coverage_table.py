#!/usr/bin/env python3
"""Sums up what gcov knows of a build: scripts/coverage.sh calls it.

    coverage_table.py BUILD              a table of the folders of src/: lines, and branches of decisions
    coverage_table.py BUILD SOURCE       the lines of one source that were not executed
    coverage_table.py BUILD --compare    compares with tests/coverage/uncovered.txt
    coverage_table.py BUILD --write      takes new places over into that list, without a reason

What gcov told is kept in BUILD/coverage.json, until a test has run again. The list names each place of the folders in LISTED
that no test executes, by the number of its lines and the text of the first one, so that changes elsewhere don't concern it:

    FILE [LINES] TEXT
        why no test executes it
"""
import collections
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOURCES = ROOT / "src"
LIST = ROOT / "tests/coverage/uncovered.txt"
CONDITION = re.compile(r"\b(if|for|while|switch|case|default|ZYR_ASSERT\w*)\b|\?|&&|\|\|")
# The lists of a record's fields, which the compiler alone walks.
COMPILED = re.compile(r"::fields\(\)|zyr_\w+Fields<")
LISTED = ("plugin_ffmpeg/", "zyr_common/storage/", "zyr_common/transport/", "zyr_common/process/", "core_module/serializers/",
          "core_module/transport/")
HEAD = """# Places that no test executes, of the plug-in, storage, serializers, transport and process, and why. Made by
# scripts/coverage.sh --write, compared by scripts/coverage.sh --compare: FILE [LINES] TEXT OF THE FIRST LINE, then the reason.

"""


def decisions_of(branches):
    """The counts of branches without a call's two ways on: to what follows, and to who catches its exception."""
    kept = []
    for branch in branches:
        if not branch["throw"]:
            kept.append(branch)
        elif kept and kept[-1]["fallthrough"]:
            kept.pop()
    return [branch["count"] for branch in kept]


def instances_at(functions, number):
    """How many functions the innermost one around a line is: a template, or a function in one, has instances."""
    around = [each["start_line"] for each in functions if each["start_line"] <= number <= each["end_line"]]
    return max(1, around.count(max(around, default=0)))


def conditional_lines(text):
    """Numbers of lines with a condition, or with a further part of one. Branches of others are the compiler's own."""
    found, goes_on = set(), False
    for number, line in enumerate(text, 1):
        code = line.split("//")[0].rstrip()
        is_condition = bool(CONDITION.search(code))
        if is_condition or goes_on:
            found.add(number)
        goes_on = (is_condition or goes_on) and code.endswith(("&&", "||", "(", ","))
    return found


def ask_gcov(build):
    """For each source of src/: for each line with code its count, and for each of its branches whether it was taken."""
    lines = collections.defaultdict(dict)
    branches = collections.defaultdict(lambda: collections.defaultdict(list))
    notes = sorted(build.rglob("*.gcno"))
    for start in range(0, len(notes), 20):
        batch = [str(note) for note in notes[start:start + 20]]
        output = subprocess.run(["gcov", "--json-format", "--stdout", "--branch-probabilities", *batch], cwd=build,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, check=True).stdout
        for text in output.splitlines():
            if not text.startswith("{"):
                continue
            unit = json.loads(text)
            for file in unit["files"]:
                source = (pathlib.Path(unit["current_working_directory"]) / file["file"]).resolve()
                if SOURCES not in source.parents:
                    continue
                name = source.relative_to(SOURCES).as_posix()
                compiled = {number for each in file["functions"] if COMPILED.search(each["demangled_name"])
                            for number in range(each["start_line"], each["end_line"] + 1)}
                for line in file["lines"]:
                    number = line["line_number"]
                    if number in compiled and line["count"] == 0:
                        continue
                    lines[name][number] = max(lines[name].get(number, 0), line["count"])
                    # A template has a line in each instance; a branch counts as taken when it was in one.
                    known, counts = branches[name][number], decisions_of(line["branches"])
                    of_one = len(counts) // instances_at(file["functions"], number) if counts else 0
                    if of_one == 0 or len(counts) % of_one != 0:
                        of_one = len(counts)
                    for index, count in enumerate(counts):
                        if index % of_one == len(known):
                            known.append(0)
                        known[index % of_one] = max(known[index % of_one], count)
    conditional = {name: conditional_lines((SOURCES / name).read_text(encoding="utf-8").splitlines()) for name in lines}
    return {name: [[number, count, [int(taken > 0) for taken in branches[name][number] if number in conditional[name]]]
                   for number, count in sorted(found.items())] for name, found in lines.items()}


def coverage_of(build):
    kept = build / "coverage.json"
    newest = max((file.stat().st_mtime for file in build.rglob("*.gcda")), default=0)
    if not kept.exists() or kept.stat().st_mtime < newest:
        kept.write_text(json.dumps(ask_gcov(build)), encoding="utf-8")
    return json.loads(kept.read_text(encoding="utf-8"))


def places_of(name, lines):
    """Runs of lines that were not executed: how many, the text of the first one, and its number."""
    text = (SOURCES / name).read_text(encoding="utf-8").splitlines()
    places, before = [], False
    for number, count, _ in lines:
        if count == 0 and before:
            places[-1][0] += 1
        elif count == 0:
            places.append([1, " ".join(text[number - 1].split()), number])
        before = count == 0
    return places


def read_list():
    entries = []
    for line in LIST.read_text(encoding="utf-8").splitlines() if LIST.exists() else []:
        if match := re.fullmatch(r"(\S+) \[(\d+)\] (.*)", line):
            entries.append([match[1], int(match[2]), match[3], "?"])
        elif line.startswith("    ") and entries:
            entries[-1][3] = line.strip()
        elif line and not line.startswith("#"):
            sys.exit(f"coverage: what does this line say? {line}")
    return entries


def compare(coverage, write):
    listed = read_list()
    left = [entry[:3] for entry in listed]
    reasons = {tuple(entry[:3]): entry[3] for entry in listed}
    found, unknown = [], []
    for name in sorted(name for name in coverage if name.startswith(LISTED)):
        for count, text, number in places_of(name, coverage[name]):
            place = [name, count, text]
            found.append(place)
            if place in left:
                left.remove(place)
            else:
                unknown.append((place, number))
    if write:
        LIST.parent.mkdir(exist_ok=True)
        LIST.write_text(HEAD + "".join(f"{name} [{count}] {text}\n    {reasons.get((name, count, text), '?')}\n"
                                       for name, count, text in found), encoding="utf-8")
        print(f"coverage: {len(found)} places are in {LIST.relative_to(ROOT)}")
        return 0
    for (name, count, text), number in unknown:
        print(f"coverage: no test executes {count} lines of src/{name}:{number}: {text}")
    for name, count, text in left:
        print(f"coverage: executed, or changed: {name} [{count}] {text}")
    open_places = [entry for entry in listed if entry[3] == "?"]
    for name, count, text, _ in open_places:
        print(f"coverage: why does no test execute this? {name} [{count}] {text}")
    print(f"coverage: {len(found)} places are not executed, {len(unknown)} of them unknown to the list, "
          f"{len(open_places)} without a reason")
    # What is executed by now may have been so by chance: threads and slow machines. The list is not wrong for that.
    return 1 if unknown or open_places else 0


def print_table(coverage):
    folders = collections.defaultdict(lambda: [0, 0, 0, 0])
    for name, lines in coverage.items():
        for folder in (name.rsplit("/", 1)[0], "together"):
            sums = folders[folder]
            sums[0] += sum(count > 0 for _, count, _ in lines)
            sums[1] += len(lines)
            sums[2] += sum(sum(branches) for _, _, branches in lines)
            sums[3] += sum(len(branches) for _, _, branches in lines)
    if not folders:
        print("coverage: nothing was built or run", file=sys.stderr)
        return 1
    print(f"{'lines':>7} {'executed':>9}   share {'branches':>9} {'taken':>7}   share")
    for folder in sorted(folders, key=lambda name: (name == "together", name)):
        hit, lines, taken, branches = folders[folder]
        print(f"{lines:7} {hit:9} {100 * hit / max(lines, 1):6.1f} % {branches:9} {taken:7} "
              f"{100 * taken / max(branches, 1):5.1f} %  {folder}")
    return 0


def main():
    coverage = coverage_of(pathlib.Path(sys.argv[1]).resolve())
    what = sys.argv[2] if len(sys.argv) > 2 else ""
    if what in ("--compare", "--write"):
        return compare(coverage, what == "--write")
    if not what:
        return print_table(coverage)
    name = what.removeprefix("src/")
    text = (SOURCES / name).read_text(encoding="utf-8").splitlines()
    for number, count, branches in coverage.get(name, []):
        if count == 0:
            print(f"{number:5}: {text[number - 1]}")
        elif not all(branches):
            print(f"{number:5}: {text[number - 1]}   // {sum(branches)} of {len(branches)} branches")
    return 0


if __name__ == "__main__":
    sys.exit(main())
