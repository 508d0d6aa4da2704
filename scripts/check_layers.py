#!/usr/bin/env python3
"""Rejects includes that look upward.

Each folder of src/ stands on a floor; a file includes its own floor and lower ones. Libraries that belong to one corner
(FFmpeg, PAM, ...) are only included there. Prints one line per offence and exits with 1 if there is any.
"""
import pathlib
import re
import sys

# From the ground up; what stands in one row may see each other.
FLOORS = [
    ["zyr_common/zyr_types.h", "zyr_common/memory", "zyr_common/zyr_threading", "zyr_common/zyr_interlocked"],
    ["zyr_common/text", "zyr_common/containers"],
    ["zyr_common/digest", "zyr_common/platform"],
    ["zyr_common/log"],
    ["zyr_common/threads", "zyr_common/process", "zyr_common/application"],
    # Records are described by their types, which are found by the object model's names; the object model streams itself.
    ["zyr_common/object", "zyr_common/serialization", "zyr_common/references", "zyr_common/variable/zyr_variable_type",
     "zyr_common/variable/zyr_variable_accessors", "zyr_common/variable/zyr_variable_reference"],
    ["zyr_common/colour", "zyr_common/geometry"],
    ["zyr_common/variable"],
    # The kit has the levels of the format infos, which two modules share, and its objects hold a compression info.
    ["zyr_common/implementation", "zyr_common/formats"],
    ["zyr_common/streams", "zyr_common/tree"],
    ["zyr_common/documents", "zyr_common/resources", "zyr_common/transport", "zyr_common/object_containers",
     "zyr_common/plugins"],
    ["zyr_common/settings", "zyr_common/storage"],
    ["zyr_common/zyr_common_initialize", "zyr_common/zyr_common.h"],
    ["picture"],
    ["plugin_ffmpeg", "core_module", "picture_module"],
    ["host"],
]

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
    r"(lz4|lz4hc|miniz|xxhash)\.h": ["zyr_common/digest"],
    r"(CLI/|nlohmann/)": ["host", "core_module"],
    r"(pugixml\.hpp|png\.h|turbojpeg\.h)": ["core_module", "picture_module", "host"],
}


def floor_of(name):
    """The floor of a path relative to src/, by the longest matching prefix; None when no row names it."""
    best, length = None, -1
    for level, row in enumerate(FLOORS):
        for prefix in row:
            is_folder = not prefix.endswith(".h")
            matches = name == prefix or name.startswith(prefix + "/") or (is_folder and name.startswith(prefix + "_")) \
                or (is_folder and name.startswith(prefix + "."))
            if not matches and "/zyr_" in prefix:
                matches = name.startswith(prefix)
            if matches and len(prefix) > length:
                best, length = level, len(prefix)
    return best


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
        own = floor_of(path)
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
                other = floor_of(target)
                if other is not None and other > own and target not in EXCEPTIONS.get(path, {}):
                    offend(path, number, f'"{target}" stands on a higher floor')
            else:
                for pattern, places in LIBRARIES.items():
                    if re.match(pattern, target) and not any(path.startswith(place) for place in places):
                        offend(path, number, f"<{target}> belongs to {', '.join(places)}")
    return 1 if offences else 0


if __name__ == "__main__":
    sys.exit(main())
