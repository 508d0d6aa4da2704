#!/usr/bin/env python3
"""The main job beside FFmpeg's command line: encode a clip, then decode it and compare it with the source.

    bench/bench_stream.py [--runs N] [--cpus 0,1] [--host PROGRAM] CLIP...

zyr-host does the whole job in one run, with packets, report and both metrics; ffmpeg encodes in one run, and decodes with
the filters psnr and ssim in a second. Same encoder options. Runs are interleaved, all on the same two processors, and
the medians of wall time and CPU time are compared. Also told: the time from the start to the first packet, and the memory
at its highest.
"""

import argparse
import os
import resource
import statistics
import subprocess
import sys
import tempfile
import time

OPTIONS = "crf=29,deadline=realtime,cpu-used=8,threads=8,lag-in-frames=0"


def measure(commands):
    """Wall and CPU seconds of commands that run one after the other."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.monotonic()
    for command in commands:
        subprocess.run(command, check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL)
    wall = time.monotonic() - start
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return wall, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def first_packet(host, folder):
    """Milliseconds from the start of the program to the first bytes of a 640x360 stream on its standard output."""
    start = time.monotonic()
    process = subprocess.Popen([host, "stream", "generate:640x360:1", "-o", "-", "--packets-format", "ivf"],
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, cwd=folder)
    process.stdout.read(33)  # The head of an IVF file has 32 bytes.
    elapsed = time.monotonic() - start
    process.stdout.read()
    process.wait()
    return elapsed * 1000


def highest_memory(command):
    """Megabytes of resident memory that a command took."""
    pid = os.posix_spawnp(command[0], command, os.environ, file_actions=[
        (os.POSIX_SPAWN_OPEN, 1, os.devnull, os.O_WRONLY, 0), (os.POSIX_SPAWN_OPEN, 2, os.devnull, os.O_WRONLY, 0)])
    return os.wait4(pid, 0)[2].ru_maxrss / 1024


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("clips", nargs="+")
    parser.add_argument("--runs", type=int, default=7)
    parser.add_argument("--cpus", default="0,1")
    parser.add_argument("--host", default="build/release/bin/zyr-host")
    arguments = parser.parse_args()
    os.sched_setaffinity(0, {int(cpu) for cpu in arguments.cpus.split(",")})
    host = os.path.abspath(arguments.host)
    with tempfile.TemporaryDirectory() as folder:
        packets = os.path.join(folder, "packets.ivf")
        quiet = ["ffmpeg", "-y", "-nostdin", "-v", "error"]
        for clip in arguments.clips:
            ours = [[host, "stream", clip, "-o", packets, "--report", os.path.join(folder, "report.json"),
                     "--encoder", "libvpx-vp9", "--no-progress"]]
            encoder = ["-c:v", "libvpx-vp9", "-b:v", "0"]
            for pair in OPTIONS.split(","):
                key, value = pair.split("=")
                encoder += ["-" + key, value]
            theirs = [quiet + ["-i", clip, "-an"] + encoder + [packets],
                      quiet + ["-i", packets, "-i", clip, "-an", "-lavfi",
                               "[0:v]split[a][b];[1:v]split[c][d];[a][c]psnr[e];[b][d]ssim[f]",
                               "-map", "[e]", "-map", "[f]", "-f", "null", "-"]]
            results = {"zyr-host": [], "ffmpeg": []}
            for _ in range(arguments.runs):
                results["zyr-host"].append(measure(ours))
                results["ffmpeg"].append(measure(theirs))
            print(clip)
            medians = {}
            for name, runs in results.items():
                medians[name] = [statistics.median(run[i] for run in runs) for i in range(2)]
                print(f"  {name:9} wall {medians[name][0]:7.3f} s, CPU {medians[name][1]:7.3f} s")
            ratios = [[ours[i] / theirs[i] for ours, theirs in zip(results["zyr-host"], results["ffmpeg"])] for i in
                      range(2)]
            print(f"  ratio     wall {statistics.median(ratios[0]):7.3f}    CPU {statistics.median(ratios[1]):7.3f}"
                  "    (medians of interleaved pairs)")
            print(f"  memory    {highest_memory(ours[0]):.0f} MB")
        times = sorted(first_packet(host, folder) for _ in range(max(arguments.runs, 5)))
        print(f"first packet at 640x360: median {statistics.median(times):.1f} ms, best {times[0]:.1f} ms")


if __name__ == "__main__":
    sys.exit(main())
