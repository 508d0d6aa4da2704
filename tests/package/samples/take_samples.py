#!/usr/bin/env python3
"""take_samples.py DIRECTORY DOCUMENT...: writes the n-th "```cpp" block of docs/NAME.md to DIRECTORY/NAME_n.inl.

"..." stands for what a sample leaves out: alone on a line for nothing, behind "=" for some value. Blocks with a file's name
belong to a project and are built by another test.
"""
import pathlib
import re
import sys

directory = pathlib.Path(sys.argv[1])
directory.mkdir(parents=True, exist_ok=True)
for document in map(pathlib.Path, sys.argv[2:]):
    samples = re.findall(r"^```cpp\n(.*?)^```$", document.read_text(encoding="utf-8"), re.M | re.S)
    for number, sample in enumerate(samples, 1):
        sample = re.sub(r"^\s*\.\.\.$", "", sample, flags=re.M).replace("= ...;", "{};")
        (directory / f"{document.stem}_{number}.inl").write_text(sample, encoding="utf-8")
