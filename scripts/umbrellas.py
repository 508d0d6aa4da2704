#!/usr/bin/env python3
"""Writes the headers that include everything public: zyr_common/zyr_common.h and picture/zyr_picture.h.

    scripts/umbrellas.py           writes them
    scripts/umbrellas.py --check   says what they lack, with exit code 1; scripts/lint.sh headers calls it

Every header below src/zyr_common and src/picture is public, but for those that stand here.
"""
import pathlib
import sys

NOT_PUBLIC = {
    "zyr_common/implementation/": "how modules build their classes; each includes the levels that it needs",
    "zyr_common/geometry/zyr_layout_rules.h": "what the solvers share",
    "zyr_common/geometry/zyr_number_lanes.h": "how the matrices calculate",
    "zyr_common/process/zyr_command_vector.h": "a part of the launchers",
    "zyr_common/serialization/zyr_record_walker.h": "the bodies behind a record; for the one source that has its fields",
    "zyr_common/plugins/zyr_plugin_entry.h": "for the one source of a plug-in that has its entry points",
    "picture/zyr_codec_plugin.h": "for the sources of a plug-in with a codec",
    "picture/zyr_level_reserved.h": "a part of each facade",
}
UMBRELLAS = {
    "zyr_common/zyr_common.h": "/// Everything public of the common library. A source that uses little of it includes less.",
    "picture/zyr_picture.h": "/// Everything public of the picture and codec model.",
}


def text_of(umbrella, opening, root):
    folder = umbrella.split("/")[0]
    names = sorted(header.relative_to(root).as_posix() for header in (root / folder).rglob("*.h"))
    public = [name for name in names
              if name not in UMBRELLAS and not any(name.startswith(prefix) for prefix in NOT_PUBLIC)]
    return "\n".join([opening, "#pragma once", ""] + [f'#include "{name}"' for name in public]) + "\n"


def main():
    root = pathlib.Path(__file__).resolve().parent.parent / "src"
    stale = 0
    for umbrella, opening in UMBRELLAS.items():
        file, text = root / umbrella, text_of(umbrella, opening, root)
        if file.exists() and file.read_text(encoding="utf-8") == text:
            continue
        stale += 1
        if "--check" in sys.argv:
            present = set(file.read_text(encoding="utf-8").splitlines()) if file.exists() else set()
            lacking = sorted(set(text.splitlines()) - present)
            print(f"src/{umbrella} is not up to date (scripts/umbrellas.py writes it):", *lacking[:20], sep="\n    ")
        else:
            file.write_text(text, encoding="utf-8")
            print(f"wrote src/{umbrella}")
    return 1 if stale and "--check" in sys.argv else 0


if __name__ == "__main__":
    sys.exit(main())
