#!/usr/bin/env python3
"""docs_samples.py DOCUMENT DIRECTORY: writes the files whose code stands in a document.

A block that begins with "```cpp main.cpp" goes to main.cpp; several with one name follow each other. The last "```text" block,
if there is one, is what the program prints: it goes to expected.txt.
"""
import pathlib
import re
import sys

document, directory = map(pathlib.Path, sys.argv[1:3])
files = {}
for kind, name, text in re.findall(r"^```(\w+) ?(\S*)\n(.*?)^```$", document.read_text(encoding="utf-8"), re.M | re.S):
    if name:
        files[name] = files.get(name, "") + ("\n" if name in files else "") + text
    elif kind == "text":
        files["expected.txt"] = text
if not files:
    sys.exit(f"{document} has no code")
directory.mkdir(parents=True, exist_ok=True)
for name, text in files.items():
    (directory / name).write_text(text, encoding="utf-8")
