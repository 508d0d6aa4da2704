#!/usr/bin/python3
"""Live screens beside their peers: a painter paints, viewers read back what was painted when.

    bench/live/bench_live.py [--build build/release] [--runs 3] [--seconds 5] [--json FILE] [--scenes A,B] [--ways A,B]

Each scene is shown by each way in turn, every other run backwards; what counts is the median of the runs. The ways are "ours",
"x11vnc" and "xvnc", natively and in the same Chromium ("ours-native", "xvnc-page", ...). Prints a table, the targets and what
was met, and writes all figures as JSON. Needs what scripts/deps.sh --with test --with bench installs.
"""
import argparse
import asyncio
import contextlib
import json
import pathlib
import random
import signal
import statistics
import subprocess
import sys
import tempfile
import time

import live_peers
import live_targets

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parents[1]
SCENES = ["typing", "window", "scroll-copy", "scroll-redraw", "redraw", "video"]
WAYS = [f"{kind}-{way}" for way in ("native", "page") for kind in ("ours", "xvnc", "x11vnc")]
STAGES = ["capture", "encode", "queue", "network", "decode", "draw"]
WARM_SECONDS = 1.5
STOP_SECONDS = 2
CLICKS = 15


def percentile(values, share):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, int(len(ordered) * share / 100))] if ordered else None


def percentiles(values):
    return {f"p{share}": percentile(values, share) for share in (50, 95, 99)}


class Painter:
    def __init__(self, programs, tools, scene, display):
        self.process = programs.start(str(tools / "live_paint"), scene, display=display, stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        self.read("ready")

    def read(self, word):
        line = self.process.stdout.readline().decode().split()
        if not line or line[0] != word:
            raise RuntimeError(f"the painter said {line}")
        return line[1:]

    def begin(self, seconds):
        self.process.stdin.write(f"go {seconds}\n".encode())
        self.process.stdin.flush()

    async def rest(self):
        """When the last picture was painted, the screen's hash then, and the pictures so far."""
        painted, value, frames = await asyncio.get_running_loop().run_in_executor(None, self.read, "rest")
        return int(painted) / 1e6, value, int(frames)


class Measurement:
    def __init__(self, contender, painter, viewer):
        self.contender, self.painter, self.viewer = contender, painter, viewer
        self.result = {}

    def meter(self):
        return time.monotonic(), live_peers.bytes_from(self.contender.port), self.contender.cpu()

    def note_load(self, before, after, prefix=""):
        seconds = after[0] - before[0]
        parts = {name: 100 * (after[2][name] - before[2].get(name, 0)) / seconds for name in after[2]}
        self.result[prefix + "kBps"] = (after[1] - before[1]) / seconds / 1000
        self.result[prefix + "cpu"] = sum(parts.values())
        self.result[prefix + "cpuParts"] = parts

    async def move(self, seconds):
        """The scene itself, once it has gone on for a while: who looks for video needs some."""
        self.painter.begin(WARM_SECONDS + seconds)
        await asyncio.sleep(WARM_SECONDS)
        seen = len(await self.viewer.pictures())
        before = self.meter()
        painted, value, _ = await self.painter.rest()
        self.note_load(before, self.meter())
        await asyncio.sleep(0.8)
        pictures = (await self.viewer.pictures())[seen:]
        ages = [age for _, age, _ in pictures]
        self.result |= {"latency": percentiles(ages), "pictures": len(ages), "fps": len(ages) / seconds}
        # The screen is shown to the bit from the first hash on that all later ones equal.
        exact = None
        for when, shown in reversed(await self.viewer.hashes()):
            if shown != value:
                break
            exact = when
        self.result["exactMs"] = None if exact is None else max(0.0, (exact - painted) * 1000)

    async def be_idle(self, seconds=4):
        await asyncio.sleep(1.5)
        seen = len(await self.viewer.pictures())
        before = self.meter()
        await asyncio.sleep(seconds)
        self.note_load(before, self.meter(), "idle-")
        self.result["idlePictures"] = len(await self.viewer.pictures()) - seen

    async def click(self):
        for _ in range(CLICKS):
            await asyncio.sleep(0.12 + random.random() * 0.1)
            await self.viewer.click()
        await asyncio.sleep(0.3)
        self.result["click"] = percentiles(await self.viewer.clicks())

    async def stop(self):
        """The viewer stops for a while; it is current again with the first picture that was painted after it went on."""
        self.painter.begin(STOP_SECONDS + 2.5)
        await asyncio.sleep(0.7)
        await self.viewer.pause(signal.SIGSTOP)
        await asyncio.sleep(STOP_SECONDS)
        going = time.time()
        await self.viewer.pause(signal.SIGCONT)
        await self.painter.rest()
        await asyncio.sleep(0.3)
        fresh = [when - going for when, age, _ in await self.viewer.pictures() if when - age / 1000 >= going]
        self.result["resumeMs"] = min(fresh) * 1000 if fresh else None

    async def note_stages(self):
        if isinstance(self.viewer, live_peers.PageViewer):
            # The server's clock starts with the machine, the page's is the one on the wall.
            offset = (time.time() - time.clock_gettime(time.CLOCK_MONOTONIC)) * 1e6
            rows = [[capture, encode, queue, arrival - offset - capture - encode - queue, decode, draw]
                    for capture, encode, queue, arrival, decode, draw in await self.viewer.stages()]
            self.result["stages"] = {name: percentiles([row[i] / 1000 for row in rows]) for i, name in enumerate(STAGES)}
            return
        report = await self.viewer.take_report()
        self.result["stages"] = {name: report["latencyMs"][name] for name in STAGES}
        self.result["codecs"] = report["codecs"] | {"regions": report["regionFrames"], "keys": report["keyFrames"]}
        self.result["bytesOfCodecs"] = report["bytesOfCodecs"]


async def show(way, scene, options, page):
    """One way shows one scene."""
    kind, form = way.split("-")
    with tempfile.TemporaryDirectory(prefix="zyr-bench-", dir="/dev/shm") as folder:
        folder = pathlib.Path(folder)
        programs = live_peers.Programs(folder)
        tools = options.build / "bin"
        try:
            contender = live_peers.KINDS[kind](programs, tools)
            contender.start_x()
            painter = Painter(programs, tools, scene, contender.display)
            contender.start()
            if form == "native":
                (folder / "pictures").mkdir()
                viewer = live_peers.NativeViewer(programs, contender.native(folder / "pictures"))
            else:
                viewer = live_peers.PageViewer(page, (HERE / "live_probe.js").read_text())
                await viewer.open(contender.page())
            await viewer.await_picture()
            await asyncio.sleep(1)
            await viewer.tell("hash")
            measured = Measurement(contender, painter, viewer)
            await measured.move(options.seconds)
            if kind == "ours":
                await measured.note_stages()
            if scene == "typing":
                await measured.be_idle()
                await measured.click()
            if kind == "ours" or scene == "typing":
                await measured.stop()
            kept = viewer.lines("D")[:4] if form == "native" else []
            await viewer.end()
            measured.result["ssim"] = find_likeness(programs, tools, scene, kept)
            return measured.result
        finally:
            programs.end()


def find_likeness(programs, tools, scene, kept):
    """How like the viewer's pictures are to what was painted, which is painted again for it."""
    if not kept:
        return None
    _, display = programs.start_x("Xvfb", "-screen", "0", live_peers.SIZE + "x24", "-noreset", "-nolisten", "tcp")
    pairs = [word for frame, path in kept for word in (frame, path)]
    process = programs.start(str(tools / "live_paint"), scene, "compare", *pairs, display=display, stdout=subprocess.PIPE)
    lines = process.stdout.read().decode().split("\n")
    return statistics.median(float(line.split()[1]) for line in lines if line)


def middle(results):
    """The median of each figure of several runs."""
    if isinstance(results[0], dict):
        return {key: middle([r[key] for r in results if key in r]) for key in results[0]}
    known = [r for r in results if r is not None]
    return statistics.median(known) if known else None


async def measure(options):
    runs = {}
    async with contextlib.AsyncExitStack() as stack:
        page = None
        if any(way.endswith("page") for way in options.ways):
            page = await stack.enter_async_context(live_peers.browser.Browser())
        for run in range(options.runs):
            for scene in options.scenes:
                for way in options.ways if run % 2 == 0 else options.ways[::-1]:
                    try:
                        result = await show(way, scene, options, page)
                    except (OSError, RuntimeError, AssertionError, subprocess.SubprocessError) as error:
                        print(f"{scene} {way}: {error}", file=sys.stderr)
                        continue
                    runs.setdefault(scene, {}).setdefault(way, []).append(result)
                    print(f"run {run + 1}: {live_targets.make_row(scene, way, result)}", flush=True)
    return {"runs": runs, "medians": {scene: {way: middle(results) for way, results in ways.items()} for scene, ways in runs.items()}}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build/release", help="the build folder")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--seconds", type=float, default=5, help="of each scene")
    parser.add_argument("--scenes", type=lambda text: text.split(","), default=SCENES)
    parser.add_argument("--ways", type=lambda text: text.split(","), default=WAYS)
    parser.add_argument("--json", type=pathlib.Path, default=None, help="where the figures go (build/bench/live.json)")
    parser.add_argument("--serve", type=lambda text: tuple(text.split()), default=(), help="more words for zyr-host serve")
    parser.add_argument("--x11vnc", type=lambda text: tuple(text.split()), default=(), help="more words for x11vnc")
    options = parser.parse_args()
    live_peers.Ours.options = options.serve
    live_peers.X11vnc.options = options.x11vnc
    for way, lacks in live_peers.find_missing(options.ways).items():
        print(f"{way} is left out: there is no {', '.join(lacks)} (scripts/deps.sh --with test --with bench)", file=sys.stderr)
        options.ways = [w for w in options.ways if w != way]
    results = asyncio.run(measure(options))
    print(live_targets.make_table(results["medians"]))
    results["targets"] = live_targets.judge(results["medians"])
    print(live_targets.make_verdicts(results["targets"]))
    path = options.json or ROOT / "build/bench/live.json"
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(json.dumps(results, indent=1))
    print(f"all figures: {path}")


if __name__ == "__main__":
    main()
