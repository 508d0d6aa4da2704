#!/usr/bin/env python3
"""Sums up what gcov knows of a build: scripts/coverage.sh calls it.

    coverage_table.py BUILD          a table of the folders of src/
    coverage_table.py BUILD SOURCE   the lines of one source that were not executed
"""
import collections
import json
import pathlib
import subprocess
import sys


def lines_of(build, root):
    """For each source of src/ its lines with code, and whether they were executed in any unit."""
    executed = collections.defaultdict(dict)
    notes = sorted(build.rglob("*.gcno"))
    for start in range(0, len(notes), 20):
        batch = [str(note) for note in notes[start:start + 20]]
        output = subprocess.run(["gcov", "--json-format", "--stdout", "--relative-only", *batch], cwd=build,
                                capture_output=True, text=True, check=True).stdout
        for text in output.splitlines():
            if not text.startswith("{"):
                continue
            for file in json.loads(text)["files"]:
                source = (build / file["file"]).resolve()
                if root not in source.parents:
                    continue
                lines = executed[source.relative_to(root).as_posix()]
                for line in file["lines"]:
                    number = line["line_number"]
                    lines[number] = lines.get(number, False) or line["count"] > 0
    return executed


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    root = pathlib.Path(__file__).resolve().parent.parent / "src"
    executed = lines_of(build, root)
    if len(sys.argv) > 2:
        name = sys.argv[2].removeprefix("src/")
        text = (root / name).read_text(encoding="utf-8").splitlines()
        for number, was_executed in sorted(executed.get(name, {}).items()):
            if not was_executed:
                print(f"{number:5}: {text[number - 1]}")
        return 0
    folders = collections.defaultdict(lambda: [0, 0])
    for name, lines in executed.items():
        for folder in (name.rsplit("/", 1)[0], "together"):
            folders[folder][0] += sum(lines.values())
            folders[folder][1] += len(lines)
    if not folders:
        print("coverage: nothing was built or run", file=sys.stderr)
        return 1
    print(f"{'lines':>7} {'executed':>9}   share")
    for folder in sorted(folders, key=lambda name: (name == "together", name)):
        hit, all_lines = folders[folder]
        print(f"{all_lines:7} {hit:9} {100 * hit / max(all_lines, 1):6.1f} %  {folder}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
