#!/usr/bin/env python3
"""Writes the solver cases of this folder. The expected values are worked out here, apart from the library, one rounding
for each operation of the number type; run it again only to add cases, and look at the difference.

A file is {"context": what the cases share, "cases": [...]}. A case gives what differs: "rect" (x, y, width, height of the
record), "anchors" (x, y, width, height, by name or number), "limits" (minWidth, maxWidth, minHeight, maxHeight), "parent",
"previous", "next", "content", "scale", "hSeparators", "vSeparators", "border". "out" is what the solver leaves in a
rectangle that held (-7, -8, -9, -10); "message" stands where it fails. "nan" and "inf" are texts.
"""
import json
import math
import pathlib
import struct

POSITION = {
    "x": ["LEFT", "RIGHT", "CENTER", "PARENT_WIDTH_PERCENT", "ABSOLUTE", "PREV_LEFT", "PREV_RIGHT", "PREV_CENTER",
          "PREV_LEFT_PLUS_WIDTH_PERCENT", "NEXT_LEFT", "NEXT_RIGHT", "NEXT_CENTER", "NEXT_LEFT_PLUS_WIDTH_PERCENT",
          "RIGHT_MINUS_WIDTH", "PARENT_WIDTH_PERCENT_MINUS_WIDTH", "PARENT_WIDTH_PERCENT_WITHOUT_WIDTH"],
    "y": ["TOP", "BOTTOM", "CENTER", "PARENT_HEIGHT_PERCENT", "ABSOLUTE", "PREV_TOP", "PREV_BOTTOM", "PREV_CENTER",
          "PREV_TOP_PLUS_HEIGHT_PERCENT", "NEXT_TOP", "NEXT_BOTTOM", "NEXT_CENTER", "NEXT_TOP_PLUS_HEIGHT_PERCENT",
          "BOTTOM_MINUS_HEIGHT", "PARENT_HEIGHT_PERCENT_MINUS_HEIGHT", "PARENT_HEIGHT_PERCENT_WITHOUT_HEIGHT"],
}
SIZE = {
    "x": ["WIDTH", "PARENT_WIDTH", "PARENT_WIDTH_PERCENT", "RATIO", "RATIO_ASPECT", "RATIO_ASPECT_UPPER_LIMIT",
          "RATIO_ASPECT_LOWER_LIMIT", "LEFT", "RIGHT", "CENTER", "PREV_LEFT", "PREV_RIGHT", "PREV_CENTER", "PREV_WIDTH",
          "PREV_WIDTH_PERCENT", "NEXT_LEFT", "NEXT_RIGHT", "NEXT_CENTER", "NEXT_WIDTH", "NEXT_WIDTH_PERCENT",
          "WIDTH_NEWLINE", "CONTENT_WIDTH", "CONTENT_WIDTH_NO_DS"],
    "y": ["HEIGHT", "PARENT_HEIGHT", "PARENT_HEIGHT_PERCENT", "RATIO", "RATIO_ASPECT", "RATIO_ASPECT_UPPER_LIMIT",
          "RATIO_ASPECT_LOWER_LIMIT", "TOP", "BOTTOM", "CENTER", "PREV_TOP", "PREV_BOTTOM", "PREV_CENTER", "PREV_HEIGHT",
          "PREV_HEIGHT_PERCENT", "NEXT_TOP", "NEXT_BOTTOM", "NEXT_CENTER", "NEXT_HEIGHT", "NEXT_HEIGHT_PERCENT",
          "HEIGHT_NEWLINE", "CONTENT_HEIGHT", "CONTENT_HEIGHT_NO_DS"],
}
for axis, letter in (("x", "V"), ("y", "H")):
    for table in (POSITION, SIZE):
        table[axis] = dict(enumerate(table[axis]))
        table[axis].update({128 + i: f"{letter}_SEPARATOR_{i + 1}" for i in range(16)})


class Integer:
    """Wrapping arithmetic; quotients toward zero, and 0 for a zero divisor."""

    def __init__(self, bits):
        self.bits = bits

    def of(self, v):
        v &= (1 << self.bits) - 1
        return v - (1 << self.bits) if v >> (self.bits - 1) else v

    def add(self, a, b): return self.of(a + b)
    def sub(self, a, b): return self.of(a - b)
    def mul(self, a, b): return self.of(a * b)

    def div(self, a, b):
        if b == 0:
            return 0
        q = abs(a) // abs(b)
        return self.of(q if (a < 0) == (b < 0) else -q)

    def half(self, a): return self.div(a, 2)
    def border_half(self, a): return a >> 1

    def scaled(self, a, scale):
        low, high = -(1 << (self.bits - 1)), (1 << (self.bits - 1)) - 1
        q = float_div(float(a), scale)
        if math.isnan(q):
            return 0
        return high if q >= high else low if q <= low else int(q)


class Floating:
    def __init__(self, bits):
        self.bits = bits

    def of(self, v):
        if self.bits == 64 or math.isnan(v) or math.isinf(v):
            return float(v)
        return struct.unpack("<f", struct.pack("<f", v))[0]

    def add(self, a, b): return self.of(a + b)
    def sub(self, a, b): return self.of(a - b)
    def mul(self, a, b): return self.of(a * b)
    def div(self, a, b): return self.of(float_div(a, b))
    def half(self, a): return self.of(a * 0.5)
    border_half = half
    def scaled(self, a, scale): return self.of(float_div(float(a), scale))


def float_div(a, b):
    if b == 0:
        return math.nan if a == 0 or math.isnan(a) else math.copysign(math.inf, a) * math.copysign(1, b)
    return a / b


TYPES = {"int32": Integer(32), "int64": Integer(64), "float": Floating(32), "double": Floating(64)}
CONTEXT = dict(rect=[10, 20, 30, 40], anchors=[0, 0, 0, 0], limits=[-100000, 100000, -100000, 100000],
               parent=[5, 7, 401, 299], previous=[11, 13, 51, 63], next=[211, 113, 77, 89], content=[160, 90], scale=1.0,
               hSeparators=[31, 47], vSeparators=[101, 203, 307], border=0)


def fit_width(t, a, b, p):
    if t.mul(p["w"], b) > t.mul(a, p["h"]):
        return t.div(t.mul(a, p["h"]), b)
    return p["w"] if isinstance(t, Integer) else t.div(t.mul(a, p["w"]), a)


def fit_height(t, a, b, p):
    if t.mul(p["w"], b) > t.mul(a, p["h"]):
        return p["h"] if isinstance(t, Integer) else t.div(t.mul(b, p["h"]), b)
    return t.div(t.mul(p["w"], b), a)


def separator(values, code):
    return values[code - 128] if values and code - 128 < len(values) else 0


def solve_size(t, code, axis, own, p, r, n, c, scale, separators):
    """(kind, value), or None for an unknown anchor."""
    size, position = ("w", "x") if axis == "x" else ("h", "y")
    v = own[size]
    fit = fit_width if axis == "x" else fit_height
    percent = lambda whole: t.div(t.mul(whole, v), 100)
    inside = c["w"] <= p["w"] and c["h"] <= p["h"]
    smaller = c["w"] < p["w"] and c["h"] < p["h"]
    rules = {
        0: lambda: ("size", v), 20: lambda: ("size", v),
        1: lambda: ("size", t.add(p[size], v)),
        2: lambda: ("size", percent(p[size])),
        3: lambda: ("size", fit(t, own["w"], own["h"], p)),
        4: lambda: ("size", fit(t, c["w"], c["h"], p)),
        5: lambda: ("size", c[size] if inside else fit(t, c["w"], c["h"], p)),
        6: lambda: ("size", fit(t, c["w"], c["h"], p) if smaller else c[size]),
        7: lambda: ("edge", v),
        8: lambda: ("edge", t.add(p[size], v)),
        9: lambda: ("edge", t.add(v, t.half(p[size]))),
        10: lambda: ("edge", t.add(r[position], v)),
        11: lambda: ("edge", t.add(t.add(r[position], r[size]), v)),
        12: lambda: ("edge", t.add(t.add(v, r[position]), t.half(r[size]))),
        13: lambda: ("size", t.add(r[size], v)),
        14: lambda: ("size", percent(r[size])),
        15: lambda: ("edge", t.add(n[position], v)),
        16: lambda: ("edge", t.add(t.add(n[position], n[size]), v)),
        17: lambda: ("edge", t.add(t.add(v, n[position]), t.half(n[size]))),
        18: lambda: ("size", t.add(n[size], v)),
        19: lambda: ("size", percent(n[size])),
        21: lambda: ("size", t.add(c[size], v)),
        22: lambda: ("size", t.add(t.scaled(c[size], scale), v)),
    }
    if 128 <= code <= 143:
        return "edge", t.add(v, separator(separators, code))
    return rules[code]() if code in rules else None


def solve_position(t, code, axis, own, p, r, n, solved, separators):
    size, position = ("w", "x") if axis == "x" else ("h", "y")
    v = own[position]
    percent = lambda whole: t.div(t.mul(whole, v), 100)
    rules = {
        0: lambda: v,
        1: lambda: t.add(p[size], v),
        2: lambda: t.add(t.half(p[size]), v),
        3: lambda: percent(p[size]),
        4: lambda: t.add(p[position], v),
        5: lambda: t.add(r[position], v),
        6: lambda: t.add(t.add(r[position], r[size]), v),
        7: lambda: t.add(t.add(v, r[position]), t.half(r[size])),
        8: lambda: t.add(percent(r[size]), r[position]),
        9: lambda: t.add(n[position], v),
        10: lambda: t.add(t.add(n[position], n[size]), v),
        11: lambda: t.add(t.add(v, n[position]), t.half(n[size])),
        12: lambda: t.add(percent(n[size]), n[position]),
        13: lambda: t.add(t.sub(p[size], solved), v),
        14: lambda: t.of(0), 15: lambda: t.of(0),
    }
    if 128 <= code <= 143:
        return t.add(v, separator(separators, code))
    return rules[code]() if code in rules else None


def solve(case):
    t = TYPES[case["type"]]
    full = {**CONTEXT, **case}
    rect = lambda v: dict(zip("xywh", map(t.of, v)))
    own, p, r, n = (rect(full[k]) for k in ("rect", "parent", "previous", "next"))
    c = dict(zip("wh", map(t.of, full["content"])))
    ax, ay, aw, ah = full["anchors"]
    vs = full["vSeparators"] and list(map(t.of, full["vSeparators"]))
    hs = full["hSeparators"] and list(map(t.of, full["hSeparators"]))
    out = rect([-7, -8, -9, -10])
    width = solve_size(t, aw, "x", own, p, r, n, c, full["scale"], vs)
    if not width:
        return out, f"Unknown width anchor type:{aw}"
    out["w"] = width[1]
    height = solve_size(t, ah, "y", own, p, r, n, c, full["scale"], hs)
    if not height:
        return out, f"Unknown height anchor type:{ah}"
    out["h"] = height[1]
    x = solve_position(t, ax, "x", own, p, r, n, out["w"], vs)
    if x is None:
        return out, f"Unknown x anchor type:{ax}"
    out["x"] = x
    y = solve_position(t, ay, "y", own, p, r, n, out["h"], hs)
    if y is None:
        return out, f"Unknown y anchor type:{ay}"
    out["y"] = y
    if width[0] == "edge":
        out["w"] = t.sub(out["w"], x)
    if height[0] == "edge":
        out["h"] = t.sub(out["h"], y)
    border = t.of(full["border"])
    if border > 0:
        h = t.border_half(border)
        right, bottom = t.add(out["x"], out["w"]), t.add(out["y"], out["h"])
        left = border if t.sub(out["x"], h) < 0 else t.add(out["x"], h)
        top = border if t.sub(out["y"], h) < 0 else t.add(out["y"], h)
        right = t.sub(p["w"], border) if t.add(right, h) > p["w"] else t.sub(right, h)
        bottom = t.sub(p["h"], border) if t.add(bottom, h) > p["h"] else t.sub(bottom, h)
        out = dict(x=left, y=top, w=t.sub(right, left), h=t.sub(bottom, top))
    low_w, high_w, low_h, high_h = map(t.of, full["limits"])
    for size, low, high in (("w", low_w, high_w), ("h", low_h, high_h)):
        if low > out[size]:
            out[size] = low
        elif high < out[size]:
            out[size] = high
    for position, size, code in (("x", "w", ax), ("y", "h", ay)):
        if code == 14:
            out[position] = t.sub(t.div(t.mul(p[size], own[position]), 100), out[size])
        elif code == 15:
            free = t.add(t.sub(p[size], out[size]), 1)
            out[position] = t.div(t.mul(free, own[position]), 100)
    if t.add(out["x"], out["w"]) > p["w"] and aw == 20:
        out["x"] = t.of(0)
        out["y"] = t.add(out["y"], own["h"]) if own["y"] > 0 else t.sub(out["y"], own["h"])
    return out, None


def number(v):
    if isinstance(v, float):
        return "nan" if math.isnan(v) else ("inf" if v > 0 else "-inf") if math.isinf(v) else v
    return v


def finish(case):
    out, message = solve(case)
    case = dict(case)
    if "anchors" in case:
        tables = (POSITION["x"], POSITION["y"], SIZE["x"], SIZE["y"])
        case["anchors"] = [table.get(code, code) for table, code in zip(tables, case["anchors"])]
    case["out"] = [number(out[k]) for k in "xywh"]
    if message:
        case["message"] = message
    return case


def write(name, cases):
    lines = ",\n".join("  " + json.dumps(finish(case)) for case in cases)
    context = dict(CONTEXT, anchors=["LEFT", "TOP", "WIDTH", "HEIGHT"])
    text = '{"context": ' + json.dumps(context) + ',\n "cases": [\n' + lines + "\n ]}\n"
    (pathlib.Path(__file__).parent / name).write_text(text)
    print(name, len(cases))


def main():
    odd = {"int32": [9, 21, 33, 45], "int64": [9, 21, 33, 45], "float": [9.25, 21.1, 33.3, 45.7],
           "double": [9.25, 21.1, 33.3, 45.7]}
    sizes = []
    for kind in TYPES:
        for code in list(range(23)) + [128, 130, 143]:
            sizes.append(dict(type=kind, rect=odd[kind], anchors=[0, 0, code, code]))
            sizes.append(dict(type=kind, rect=[-v for v in odd[kind]], anchors=[0, 0, code, code], content=[1600, 300],
                              scale=1.5))
        for content in ([401, 299], [402, 10], [10, 300], [400, 298], [1600, 900], [300, 1600], [0, 0], [0, 5], [5, 0]):
            for code in (4, 5, 6):
                sizes.append(dict(type=kind, anchors=[0, 0, code, code], content=content))
        for rect in ([0, 0, 16, 9], [0, 0, 9, 16], [0, 0, 401, 299], [0, 0, 0, 7], [0, 0, 7, 0]):
            sizes.append(dict(type=kind, rect=rect, anchors=[0, 0, 3, 3]))
        for scale in (2.0, 3.0, 0.0, -1.0, 1e-12):
            sizes.append(dict(type=kind, rect=[0, 0, 1, 2], anchors=[0, 0, 22, 22], scale=scale,
                              limits=[-(1 << 31), (1 << 31) - 1] * 2))
    write("sizes.json", sizes)

    positions = []
    for kind in TYPES:
        for code in list(range(16)) + [128, 129, 130, 143]:
            positions.append(dict(type=kind, rect=odd[kind], anchors=[code, code, 0, 0]))
            positions.append(dict(type=kind, rect=[-v for v in odd[kind][:2]] + odd[kind][2:], anchors=[code, code, 8, 8]))
        positions.append(dict(type=kind, anchors=[128, 128, 0, 0], hSeparators=None, vSeparators=None))
        positions.append(dict(type=kind, anchors=[0, 0, 128, 128], hSeparators=None, vSeparators=None))
        positions.append(dict(type=kind, anchors=[13, 13, 11, 11]))
    write("positions.json", positions)

    steps = []
    for kind in TYPES:
        floating = kind in ("float", "double")
        for border in [4, 5, 1, -4] + ([0.5] if floating else []):
            for rect in ([0, 0, 401, 299], [50, 60, 100, 80], [1, 2, 10, 10], [380, 280, 21, 19], [2, 2, 397, 295]):
                steps.append(dict(type=kind, rect=rect, border=border))
        for limits in ([50, 60, 70, 80], [0, 20, 0, 30], [100, 50, 90, 40], [30, 30, 40, 40]):
            steps.append(dict(type=kind, limits=limits))
            steps.append(dict(type=kind, limits=limits, anchors=[13, 13, 0, 0]))
        for percent in (0, 25, 50, 100, -10):
            for code in (14, 15):
                steps.append(dict(type=kind, rect=[percent, percent, 30, 40], anchors=[code, code, 0, 0]))
                steps.append(dict(type=kind, rect=[percent, percent, 30, 40], anchors=[code, code, 0, 0],
                                  limits=[60, 70, 80, 90], border=6))
        for rect in ([390, 10, 30, 40], [390, 0, 30, 40], [390, -5, 30, 40], [371, 10, 30, 40], [372, 10, 30, 40]):
            steps.append(dict(type=kind, rect=rect, anchors=[0, 0, 20, 0]))
            steps.append(dict(type=kind, rect=rect, anchors=[0, 0, 20, 20], limits=[0, 20, 50, 60]))
            steps.append(dict(type=kind, rect=rect, anchors=[0, 0, 0, 20]))
    for kind, big in (("int32", 2147483647), ("int64", 9223372036854775807)):
        steps.append(dict(type=kind, rect=[big, -big, 2, 3], anchors=[1, 1, 0, 0]))
        steps.append(dict(type=kind, rect=[0, 0, big, big], anchors=[0, 0, 2, 1], limits=[-big, big, -big, big]))
    write("steps.json", steps)

    failures = []
    for kind in TYPES:
        for code in (23, 24, 100, 127, 144, 255):
            failures.append(dict(type=kind, anchors=[0, 0, code, 0]))
            failures.append(dict(type=kind, anchors=[0, 0, 8, code]))
        for code in (16, 17, 127, 144, 255):
            failures.append(dict(type=kind, anchors=[code, 0, 8, 8]))
            failures.append(dict(type=kind, anchors=[4, code, 8, 8]))
        failures.append(dict(type=kind, anchors=[200, 201, 202, 203]))
    write("failures.json", failures)


main()
