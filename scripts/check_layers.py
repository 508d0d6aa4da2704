#!/usr/bin/env python3
"""Rejects includes that look upward.

Each folder of src/ stands on a floor; a file includes its own folder and lower floors. Folders of one floor see each other
only where PEERS says so. Libraries that belong to one corner
(FFmpeg, PAM, ...) are only included there. Prints one line per offence and exits with 1 if there is any.
"""
import pathlib
import re
import sys

# From the ground up.
FLOORS = [
    ["zyr_common/zyr_types.h", "zyr_common/memory", "zyr_common/zyr_threading", "zyr_common/zyr_interlocked"],
    ["zyr_common/text", "zyr_common/containers"],
    ["zyr_common/digest", "zyr_common/platform"],
    ["zyr_common/log"],
    ["zyr_common/threads", "zyr_common/process", "zyr_common/application"],
    ["zyr_common/object", "zyr_common/serialization", "zyr_common/references", "zyr_common/variable/zyr_variable_type",
     "zyr_common/variable/zyr_variable_accessors", "zyr_common/variable/zyr_variable_reference"],
    ["zyr_common/colour", "zyr_common/geometry"],
    ["zyr_common/variable"],
    ["zyr_common/implementation", "zyr_common/formats"],
    ["zyr_common/streams", "zyr_common/tree"],
    ["zyr_common/documents", "zyr_common/resources", "zyr_common/transport", "zyr_common/agents",
     "zyr_common/object_containers", "zyr_common/plugins"],
    ["zyr_common/settings", "zyr_common/storage"],
    ["zyr_common/zyr_common_initialize"],
    ["zyr_common/zyr_common.h"],
    ["picture"],
    ["plugin_ffmpeg", "plugin_blocks", "core_module", "picture_module"],
    ["host"],
    ["host/live"],
]

# Who sees whom on the same floor, and why.
PEERS = {
    ("zyr_common/memory", "zyr_common/zyr_types.h"): "everything starts with the plain types",
    ("zyr_common/memory", "zyr_common/zyr_threading"): "shared counts are atomic",
    ("zyr_common/zyr_threading", "zyr_common/zyr_types.h"): "everything starts with the plain types",
    ("zyr_common/zyr_threading", "zyr_common/memory"): "what the system fills stands in heap cells of its own",
    ("zyr_common/zyr_interlocked", "zyr_common/zyr_threading"): "the bodies of its plain functions",
    ("zyr_common/text", "zyr_common/containers"): "texts are cut into arrays and hold keys",
    ("zyr_common/containers", "zyr_common/text"): "texts are keys",
    ("zyr_common/digest", "zyr_common/platform"): "a fresh GUID takes the time",
    # Records are described by their types, which are found by the object model's names; the object model streams itself.
    ("zyr_common/serialization", "zyr_common/object"): "serializers are objects",
    ("zyr_common/serialization", "zyr_common/variable/zyr_variable_type"): "a field says its type",
    ("zyr_common/serialization", "zyr_common/variable/zyr_variable_reference"): "a path ends in a reference",
    ("zyr_common/references", "zyr_common/object"): "a reference leads to an object",
    ("zyr_common/references", "zyr_common/serialization"): "references are records",
    ("zyr_common/variable/zyr_variable_type", "zyr_common/serialization"): "the types are an enumeration with texts",
    ("zyr_common/variable/zyr_variable_type", "zyr_common/variable/zyr_variable_accessors"): "their list",
    ("zyr_common/variable/zyr_variable_reference", "zyr_common/variable/zyr_variable_type"): "it holds a type",
    ("zyr_common/variable/zyr_variable_reference", "zyr_common/object"): "it may lead to an object",
    ("zyr_common/variable/zyr_variable_reference", "zyr_common/references"): "or to a reference record",
    ("zyr_common/implementation", "zyr_common/formats"): "objects hold a compression info; two modules share its levels",
}

# Single sources that may look higher than their folder, each with its reason.
EXCEPTIONS = {
    # The records of the table refer to its header; its source writes each of them.
    "zyr_common/variable/zyr_variable_reference.cpp": {
        "zyr_common/colour/zyr_color.h": "colours", "zyr_common/geometry/zyr_ext_box.h": "boxes",
        "zyr_common/geometry/zyr_ext_dimension.h": "sizes", "zyr_common/geometry/zyr_ext_position.h": "positions",
        "zyr_common/geometry/zyr_ext_rect.h": "rectangles", "zyr_common/geometry/zyr_matrix.h": "matrices",
    },
}

# Which folders or files may include the headers of a library.
LIBRARIES = {
    r"lib(avcodec|avutil|swscale|avformat)/": ["plugin_ffmpeg", "host", "picture_module"],
    r"libyuv": ["picture_module", "host"],
    r"security/": ["zyr_common/process"],
    r"systemd/": ["zyr_common/process"],
    r"(lz4|lz4hc|xxhash)\.h": ["zyr_common/digest"],
    r"miniz\.h": ["zyr_common/digest", "plugin_blocks"],
    r"(CLI/|nlohmann/)": ["host", "core_module"],
    r"(openssl|wslay)/": ["core_module"],
    r"(pugixml\.hpp|png\.h)": ["host"],
    r"xcb/": ["host/live"],
}


def room_of(name):
    """Floor and room of a path relative to src/, by the longest matching prefix; None twice when no row names it."""
    best, room, length = None, None, -1
    for level, row in enumerate(FLOORS):
        for prefix in row:
            is_folder = not prefix.endswith(".h")
            matches = name == prefix or name.startswith(prefix + "/") or (is_folder and name.startswith(prefix + "_")) \
                or (is_folder and name.startswith(prefix + "."))
            if not matches and "/zyr_" in prefix:
                matches = name.startswith(prefix)
            if matches and len(prefix) > length:
                best, room, length = level, prefix, len(prefix)
    return best, room


def main():
    root = pathlib.Path(__file__).resolve().parent.parent / "src"
    offences = 0

    def offend(path, number, text):
        nonlocal offences
        offences += 1
        print(f"src/{path}:{number}: {text}")

    for file in sorted(root.rglob("*")):
        if file.suffix not in (".h", ".cpp", ".c", ".inl"):
            continue
        path = file.relative_to(root).as_posix()
        own, room = room_of(path)
        if own is None:
            offend(path, 1, "stands on no floor (see FLOORS in scripts/check_layers.py)")
            continue
        for number, line in enumerate(file.read_text(encoding="utf-8").splitlines(), 1):
            match = re.match(r'\s*#\s*include\s*([<"])([^>"]+)[>"]', line)
            if not match:
                continue
            quote, target = match.groups()
            if quote == '"':
                if not (root / target).is_file():
                    offend(path, number, f'"{target}" is not a path relative to src/')
                    continue
                other, neighbour = room_of(target)
                if other is None:
                    continue
                if other > own and target not in EXCEPTIONS.get(path, {}):
                    offend(path, number, f'"{target}" stands on a higher floor')
                if other == own and neighbour != room and (room, neighbour) not in PEERS:
                    offend(path, number, f'"{target}" stands beside it, and PEERS in scripts/check_layers.py has no reason')
            else:
                for pattern, places in LIBRARIES.items():
                    if re.match(pattern, target) and not any(path.startswith(place) for place in places):
                        offend(path, number, f"<{target}> belongs to {', '.join(places)}")
    return 1 if offences else 0


if __name__ == "__main__":
    sys.exit(main())
