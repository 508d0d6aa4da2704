#!/usr/bin/env python3
"""Runs the campaigns of scripts/campaign.sh, which tells the options, and writes down how they went."""
import argparse
import datetime
import fnmatch
import json
import os
import pathlib
import re
import signal
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build/campaign"
BOOK = ROOT / "docs/campaigns.md"
HOST = ROOT / "build/ci/bin/zyr-host"
TESTS = ROOT / "build/ci/bin"
HEAD = """# Campaigns

Long runs that tests have no time for, by `scripts/campaign.sh`. Memory (KiB resident), descriptors and threads of the process
are looked at while it runs: the median between a tenth and a half of the time, and that of its last quarter. They are
flat when descriptors and threads don't grow, and memory by no more than a twentieth and 4 MiB.
"""
TABLE = "| run | when (UTC), commit, machine | what | seconds | memory | descriptors | threads | result |\n|---|---|---|---|---|---|---|---|\n"
MEMORY_ROOM = 4096


def fuzzers():
    text = (ROOT / "fuzz/CMakeLists.txt").read_text(encoding="utf-8")
    names = re.search(r"foreach\(name ([^)]*)\)", text)[1].split()
    names += [name for name in re.findall(r"zyr_add_fuzzer\((\w+) fuzz_", text) if name not in names]
    formats = [word.lower() for word in re.search(r"foreach\(prefix ([^)]*)\)", text)[1].split()]
    return sorted(names + [f"saved_{word}" for word in formats])


def look(process):
    """Memory, descriptors and threads; nothing once it has ended."""
    try:
        status = pathlib.Path(f"/proc/{process}/status").read_text(encoding="utf-8")
        return (int(re.search(r"VmRSS:\s*(\d+)", status)[1]), len(os.listdir(f"/proc/{process}/fd")),
                int(re.search(r"Threads:\s*(\d+)", status)[1]))
    except (OSError, TypeError):
        return None


def follow(command, log, environment=None, watched=None):
    """Runs a command to its end. Gives its status and what was seen of it, or of another process."""
    seen = []
    with open(log, "wb") as output:
        process = subprocess.Popen([str(part) for part in command], stdin=subprocess.DEVNULL, stdout=output,
                                   stderr=subprocess.STDOUT, cwd=WORK, env={**os.environ, **(environment or {})})
        try:
            while process.poll() is None:
                figures = look(watched or process.pid)
                if figures:
                    seen.append(figures)
                time.sleep(0.2 if len(seen) < 100 else 2)
        except BaseException:
            process.terminate()
            process.wait()
            raise
    return process.returncode, seen


def judge(seen):
    """Three texts "first to last", and whether all are flat."""
    if len(seen) < 8:
        return ["-"] * 3, True
    start = max(1, len(seen) // 10)
    early = seen[start:max(start + 1, len(seen) // 2)]
    late = seen[-max(1, len(seen) // 4):]
    texts, flat = [], True
    for index in range(3):
        first, last = (round(statistics.median(each[index] for each in part)) for part in (early, late))
        texts.append(f"{first} to {last}")
        flat = flat and last <= first + (MEMORY_ROOM + first // 20 if index == 0 else 0)
    return texts, flat


class Run:
    def __init__(self, options, name):
        self.options, self.name = options, name
        self.log = WORK / "logs" / (name.replace(":", "-") + ".log")
        self.log.parent.mkdir(parents=True, exist_ok=True)
        kind, _, self.what = name.partition(":")
        self.work = getattr(self, kind)

    def tail(self):
        return self.log.read_text(encoding="utf-8", errors="replace")[-2000:]

    def fuzz(self):
        seconds = 5 if self.options.quick else self.options.fuzz_seconds
        corpus, findings = WORK / "corpus" / self.what, WORK / "findings"
        corpus.mkdir(parents=True, exist_ok=True)
        findings.mkdir(exist_ok=True)
        before = set(findings.glob(f"{self.what}-*"))
        # Each instrumented for itself: memory has shadows there, so the limit is a wide one.
        status, _ = follow([ROOT / f"build/fuzz/bin/fuzz_{self.what}", f"-max_total_time={seconds}", "-rss_limit_mb=4096",
                            "-timeout=60", "-print_final_stats=1", "-close_fd_mask=1",
                            f"-artifact_prefix={findings}/{self.what}-", corpus, ROOT / "fuzz/corpus" / self.what], self.log,
                           {"ASAN_OPTIONS": "allocator_may_return_null=1:detect_leaks=1:intercept_tls_get_addr=0",
                            "XDG_STATE_HOME": str(WORK / "state")})
        runs = re.findall(r"stat::number_of_executed_units: (\d+)", self.tail())
        text = f"{runs[-1] if runs else 'unknown'} inputs, {len(list(corpus.iterdir()))} kept"
        found = sorted(file.name for file in set(findings.glob(f"{self.what}-*")) - before)
        return text + "".join(f", {name}" for name in found), status == 0 and not found, []

    def frames(self):
        """The host's stream command: encoder context, packets, decoder context; the sizes go up and down."""
        count = 3000 if self.options.quick else self.options.frames
        changes = [f"--resize-at={frame}:{size}" for frame, size in
                   zip(range(500, count, 500), ("96x64", "64x96", "33x31", "64x64") * (count // 2000 + 1))]
        report = WORK / f"frames-{self.what}.json"
        status, seen = follow([HOST, "stream", f"generate:64x64@30:{count}", "--codec", self.what, "--no-metrics",
                               "--no-progress", "--log-dir", WORK / "state", "--report", report, *changes], self.log)
        return f"{count} frames, {len(changes)} size changes", status == 0, seen

    def live(self):
        """A server, over TLS, and a viewer; the contents change their size."""
        frames, changed = (1200, 100) if self.options.quick else (self.options.live_frames, 500)
        with tempfile.TemporaryDirectory() as place:
            video = pathlib.Path(place) / "video.webm"
            changes = [f"--resize-at={frame}:{size}" for frame, size in
                       zip(range(changed, frames, changed), ("96x64", "64x96", "128x64", "64x64") * (frames // changed // 4 + 1))]
            made = subprocess.run([HOST, "stream", f"generate:64x64@120:{frames}", "--codec", "vp9", "--no-metrics",
                                   "--no-progress", "--log-dir", WORK / "state", "-o", video, *changes],
                                  stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, check=False)
            if made.returncode != 0:
                return made.stderr[-300:], False, []
            address = pathlib.Path(place) / "address"
            with open(address, "wb") as output, open(f"{self.log}.server", "wb") as errors:
                server = subprocess.Popen([HOST, "serve", video, "--codec", self.what, "--rate", "120", "--log-dir",
                                           WORK / "state"], stdin=subprocess.DEVNULL, stdout=output, stderr=errors, cwd=WORK)
            try:
                while not address.read_text(encoding="utf-8").strip():
                    if server.poll() is not None:
                        return "the server has ended", False, []
                    time.sleep(0.1)
                report = WORK / f"live-{self.what}.json"
                status, seen = follow([HOST, "view", address.read_text(encoding="utf-8").split()[0], "--insecure", "--no-window",
                                       "--seconds", str(frames * 8 // 10 // 120), "--report", report, "--log-dir", WORK / "state"],
                                      self.log, watched=server.pid)
            finally:
                server.send_signal(signal.SIGTERM)
                server.wait()
            seen_frames = json.loads(report.read_text(encoding="utf-8")).get("frames") if report.exists() else None
        return f"{seen_frames} frames came, {len(changes)} size changes were sent", status == 0, seen

    def repeat(self, program, tests, times, text):
        status, seen = follow([TESTS / program, f"--gtest_filter={tests}", f"--gtest_repeat={times}", "--gtest_break_on_failure",
                               "--gtest_brief=1"], self.log)
        skipped = "SKIPPED" in self.log.read_text(encoding="utf-8", errors="replace")
        return text + (", skipped here" if skipped else ""), status == 0 and not skipped, seen

    def launches(self):
        times = 1
        return self.repeat("test_process", "LaunchStress.*", times, f"{10000 * times} launches by four threads")

    def logins(self):
        times = 50 if self.options.quick else self.options.logins
        return self.repeat("test_login", "UserAuthentication.AcceptsThePassword:LoginSession.MayBeOpenedByRootForAnyone", times,
                           f"{times} passwords and {times} sessions")

    def storage(self):
        # Each repetition saves and loads the golden objects of all formats ten times on two threads.
        times = 1 if self.options.quick else 28
        text, passed, seen = self.repeat("test_load_threads", "LoadThreads.*", times, "")
        return f"{times} times the golden objects, ten times on each of two threads{text}", passed, seen


def names():
    return ([f"fuzz:{name}" for name in fuzzers()] + ["frames:vp9", "frames:mpeg1video", "live:vp9", "live:blocks"] +
            ["launches", "logins", "storage"])


def machine():
    model = re.search(r"model name\s*: (.*)", pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8"))
    return f"{os.cpu_count()} x {' '.join(model[1].split()) if model else os.uname().machine}, Linux {os.uname().release}"


def write_down(row):
    text = BOOK.read_text(encoding="utf-8") if BOOK.exists() else HEAD + "\n" + TABLE
    BOOK.write_text(text + row, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--only", action="append")
    parser.add_argument("--fuzz-seconds", type=int, default=3600)
    parser.add_argument("--frames", type=int, default=500000)
    parser.add_argument("--live-frames", type=int, default=100000)
    parser.add_argument("--logins", type=int, default=5000)
    parser.add_argument("--again", action="store_true")
    parser.add_argument("--list", action="store_true")
    options = parser.parse_args()
    wanted = [name for name in names() if not options.only or any(fnmatch.fnmatch(name, each) for each in options.only)]
    if not wanted:
        sys.exit("campaign: no run has such a name (see --list)")
    if options.list:
        print(*wanted, sep="\n")
        return 0
    WORK.mkdir(parents=True, exist_ok=True)
    commit = subprocess.run(["git", "rev-parse", "--short=10", "HEAD"], cwd=ROOT, capture_output=True, text=True,
                            check=False).stdout.strip()
    kept = WORK / "passed.json"
    passed = json.loads(kept.read_text(encoding="utf-8")) if kept.exists() else {}
    failed = 0
    for name in wanted:
        if not options.quick and not options.again and passed.get(name) == commit:
            print(f"{name}: has passed at {commit}")
            continue
        began, started = time.monotonic(), datetime.datetime.now(datetime.timezone.utc)
        print(f"{name} ...", flush=True)
        run = Run(options, name)
        text, good, seen = run.work()
        figures, flat = judge(seen)
        seconds = round(time.monotonic() - began)
        result = "passed" if good and flat else "NOT FLAT" if good else "FAILED"
        print(f"{name}: {result}, {text}, {seconds} s, memory {figures[0]}, descriptors {figures[1]}, threads {figures[2]}")
        if not good or not flat:
            failed += 1
            print(f"    see {run.log.relative_to(ROOT)}")
        if options.quick:
            continue
        write_down(f"| {name} | {started:%Y-%m-%d %H:%M}, {commit}, {machine()} | {text} | {seconds} | {' | '.join(figures)} | {result} |\n")
        if good and flat:
            passed[name] = commit
            kept.write_text(json.dumps(passed), encoding="utf-8")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
