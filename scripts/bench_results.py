#!/usr/bin/env python3
"""Keeps the results of benchmarks and compares them; scripts/bench.sh calls it.

    scripts/bench_results.py save FILE RUNS PROGRAM...   runs each program RUNS times, and writes medians and spread to FILE
    scripts/bench_results.py compare OLD NEW PAGE        compares two such files, and draws them on one page

A result is worse or better when all runs of the one lie on the same side of all runs of the other and the medians are more
than 2 % apart; of a number that says nothing about itself, it has changed. Exit code of compare: 1 when one is worse.
"""
import html
import json
import os
import pathlib
import platform
import re
import statistics
import subprocess
import sys
import tempfile
import time

LEAST = 0.02  # Less than this between the medians is no news, however quiet the machine.
LOWER = re.compile(r"(^|[^/\w])(ns|us|ms|s|sec|seconds|bytes|KB|MB|KiB|MiB|ratio)\b|ns:|_time\b|allocations")
HIGHER = re.compile(r"/s\b|per_second|fps|frames/s|MB/s")
NUMBER = re.compile(r"(?<![\w.])-?\d+(?:\.\d+)?(?:e[-+]?\d+)?(?![\w.]*\w)|(?<![\w.])\d+(?:\.\d+)?(?=(?:ns|us|ms|s|%|x)\b)")


def direction(text):
    return "higher" if HIGHER.search(text) else "lower" if LOWER.search(text) else "unknown"


def from_google(text, program):
    """The results of Google Benchmark's own file."""
    known = {"name", "run_name", "run_type", "repetitions", "repetition_index", "threads", "iterations", "real_time", "cpu_time",
             "time_unit", "family_index", "per_family_instance_index", "aggregate_name", "label", "error_occurred", "error_message"}
    for entry in json.loads(text).get("benchmarks", []):
        if entry.get("run_type") == "aggregate" or entry.get("error_occurred"):
            continue
        name = f"{program} {entry['name']}"
        yield f"{name} time", entry["time_unit"], "lower", entry["cpu_time"]
        for counter, value in entry.items():
            if counter not in known and isinstance(value, (int, float)):
                yield f"{name} {counter}", "", direction(counter), value


def from_lines(text, program):
    """The numbers of a table: each is called by its line with the numbers left out, and its place in it."""
    seen = {}
    for line in text.splitlines():
        numbers = list(NUMBER.finditer(line))
        shape = " ".join(NUMBER.sub("#", line).split())
        if not numbers or not re.search(r"[A-Za-z]", shape):
            continue
        seen[shape] = seen.get(shape, 0) + 1
        place = f" ({seen[shape]})" if seen[shape] > 1 else ""
        for index, number in enumerate(numbers):
            # What stands behind a number is its unit.
            unit = re.match(r"\s*([A-Za-z/%]+)", line[number.end():])
            unit = unit[1] if unit else ""
            where = f" [{index + 1}]" if len(numbers) > 1 else ""
            yield f"{program} {shape}{place}{where}", unit, direction(" " + unit), float(number[0])


def run(program):
    name = pathlib.Path(program).name.removeprefix("bench_")
    with tempfile.TemporaryDirectory() as folder:
        file = pathlib.Path(folder, "results.json")
        environment = {**os.environ, "BENCHMARK_OUT": str(file), "BENCHMARK_OUT_FORMAT": "json"}
        result = subprocess.run([program], capture_output=True, text=True, env=environment, stdin=subprocess.DEVNULL)
        if result.returncode != 0:
            raise RuntimeError(f"{program} failed ({result.returncode}): {result.stderr.strip()[-300:]}")
        if file.exists() and file.read_text():
            return list(from_google(file.read_text(), name))
        return list(from_lines(result.stdout, name))


def machine():
    processor = next((line.split(":", 1)[1].strip() for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines()
                      if line.startswith("model name")), platform.machine())
    compiler = subprocess.run(["g++", "-dumpfullversion"], capture_output=True, text=True).stdout.strip()
    return {"processor": processor, "cores": os.cpu_count(), "kernel": platform.release(), "architecture": platform.machine(),
            "compiler": f"g++ {compiler}"}


def git(*arguments):
    return subprocess.run(["git", *arguments], capture_output=True, text=True).stdout.strip()


def save(file, runs, programs):
    values, units = {}, {}
    load = os.getloadavg()[0]
    for number in range(runs):
        for program in programs:
            for key, unit, better, value in run(program):
                values.setdefault(key, []).append(value)
                units[key] = (unit, better)
            print(f"bench: run {number + 1} of {runs}: {pathlib.Path(program).name}", file=sys.stderr)
    results = [{"key": key, "unit": units[key][0], "better": units[key][1], "median": statistics.median(all_values),
                "least": min(all_values), "most": max(all_values), "values": all_values} for key, all_values in values.items()]
    document = {"name": pathlib.Path(file).stem, "time": time.strftime("%Y-%m-%dT%H:%M:%SZ", time.gmtime()),
                "commit": git("rev-parse", "--short=12", "HEAD"), "changed": bool(git("status", "--porcelain")), "runs": runs,
                "load": round(load, 2), "machine": machine(), "results": results}
    pathlib.Path(file).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(file).write_text(json.dumps(document, indent=1) + "\n", encoding="utf-8")
    print(f"{len(results)} results of {runs} runs: {file}")
    if load > (os.cpu_count() or 1) / 2:
        print(f"the machine was busy (load {load:.1f}): the spread is large, and little can be told from it")
    return 0


def judge(old, new):
    """What has become of a result, and by how much its median has changed."""
    change = new["median"] / old["median"] - 1 if old["median"] else 0.0
    apart = new["least"] > old["most"] or new["most"] < old["least"]
    if not apart or abs(change) <= LEAST:
        return "same", change
    if old["better"] == "unknown":
        return "changed", change
    return ("worse" if (change > 0) == (old["better"] == "lower") else "better"), change


def drawing(old, new):
    """Both spreads as bars on one scale, the medians as strokes."""
    low, high = min(old["least"], new["least"], 0), max(old["most"], new["most"])
    scale = 300 / (high - low) if high > low else 0
    place = lambda value: f"{(value - low) * scale:.1f}"
    parts = []
    for row, (result, style) in enumerate(((old, "old"), (new, "new"))):
        y = 3 + row * 11
        parts.append(f'<rect class="{style}" x="{place(result["least"])}" y="{y}" height="8" '
                     f'width="{max(1.0, (result["most"] - result["least"]) * scale):.1f}"/>'
                     f'<path class="{style}" d="M{place(result["median"])} {y - 1}v10"/>')
    return '<svg viewBox="-2 0 304 26" width="304" height="26" role="img" aria-label="spread">' + "".join(parts) + "</svg>"


STYLE = """
:root{--ink:#1c2330;--paper:#fff;--faint:#d8dde6;color-scheme:light dark}
@media (prefers-color-scheme:dark){:root{--ink:#e4e8f0;--paper:#14181f;--faint:#353c49}}
body{font:15px/1.4 system-ui,sans-serif;color:var(--ink);background:var(--paper);max-width:80rem;margin:auto;padding:1rem}
.wide{overflow-x:auto}table{border-collapse:collapse}th,td{text-align:left;padding:.15rem .8rem .15rem 0;border-bottom:1px solid var(--faint)}
td{font-variant-numeric:tabular-nums}rect.old{fill:#8b94a5}rect.new{fill:#2563c9}path{stroke:var(--ink);stroke-width:2}
tr.worse td:first-child{border-left:.4rem solid #c8324f;padding-left:.4rem}tr.better td:first-child{border-left:.4rem solid #1f9254;padding-left:.4rem}
.worse b{color:#c8324f}.better b{color:#1f9254}
"""


def page(old, new, rows):
    say = lambda value: html.escape(str(value))
    about = "".join(
        f"<tr><th>{name}</th>" + "".join(f"<td>{say(value(one))}</td>" for one in (old, new)) + "</tr>" for name, value in (
            ("name", lambda one: one["name"]), ("commit", lambda one: one["commit"] + (", changed" if one["changed"] else "")),
            ("time", lambda one: one["time"]), ("runs", lambda one: one["runs"]), ("load before", lambda one: one["load"]),
            *((key, lambda one, key=key: one["machine"].get(key, "")) for key in old["machine"])))
    body = "".join(
        f'<tr class="{verdict}"><td>{say(key)}</td><td>{before["median"]:.6g}</td><td>{after["median"]:.6g} {say(before["unit"])}</td>'
        f"<td>{change:+.1%}</td><td><b>{verdict}</b></td><td>{drawing(before, after)}</td></tr>\n"
        for key, before, after, verdict, change in rows)
    title = say(f"{old['name']} and {new['name']}")
    return (f'<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width, '
            f'initial-scale=1"><link rel="icon" href="data:,"><title>{title}</title><style>{STYLE}</style></head>\n<body><h1>{title}</h1>\n'
            f'<div class="wide"><table>{about}</table></div>\n<p>Bars reach from the least to the most of all runs, strokes are medians; '
            f"{say(old['name'])} above {say(new['name'])}. Worse, better and changed are results whose runs don't overlap.</p>\n"
            f'<div class="wide"><table><thead><tr><th>result</th><th>{say(old["name"])}</th><th>{say(new["name"])}</th><th>change</th>'
            f"<th></th><th>spread</th></tr></thead><tbody>\n{body}</tbody></table></div></body></html>\n")


def compare(old_file, new_file, target):
    old, new = (json.loads(pathlib.Path(file).read_text(encoding="utf-8")) for file in (old_file, new_file))
    before = {result["key"]: result for result in old["results"]}
    after = {result["key"]: result for result in new["results"]}
    rows = [(key, before[key], after[key], *judge(before[key], after[key])) for key in before if key in after]
    order = {"worse": 0, "better": 1, "changed": 2, "same": 3}
    rows.sort(key=lambda row: (order[row[3]], row[0]))
    for key, _, _, verdict, change in rows:
        if verdict != "same":
            print(f"{verdict:8} {change:+7.1%}  {key}")
    for words, only in ((f"only in {old['name']}", before.keys() - after.keys()), (f"only in {new['name']}", after.keys() - before.keys())):
        if only:
            print(f"{len(only)} results {words}")
    if old["machine"] != new["machine"]:
        print("the machines or compilers differ: " + ", ".join(
            f"{key} {old['machine'][key]} / {new['machine'].get(key)}" for key in old["machine"] if old["machine"][key] != new["machine"].get(key)))
    counts = {verdict: sum(row[3] == verdict for row in rows) for verdict in order}
    print(", ".join(f"{count} {verdict}" for verdict, count in counts.items()))
    pathlib.Path(target).parent.mkdir(parents=True, exist_ok=True)
    pathlib.Path(target).write_text(page(old, new, rows), encoding="utf-8")
    print(f"page: {target}")
    return 1 if counts["worse"] else 0


def main():
    arguments = sys.argv[1:]
    try:
        if len(arguments) >= 4 and arguments[0] == "save":
            return save(arguments[1], int(arguments[2]), arguments[3:])
        if len(arguments) == 4 and arguments[0] == "compare":
            return compare(*arguments[1:])
    except (OSError, RuntimeError, ValueError, KeyError) as error:
        print(f"bench: FAILED: {error}", file=sys.stderr)
        return 3
    print(__doc__, file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main())
