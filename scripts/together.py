#!/usr/bin/env python3
"""Runs programs and modules of two builds together: each host with its own modules, then with the other's in their place.

    scripts/together.py OLD-TREE NEW-TREE    two trees with a build in build/ci

Each host runs with its own modules; then one module at a time is the other's, then all of them. Every mixture has to list
its codecs, to send pictures through each, and to pass `conform` where the host has it. Packets of blocks that
the old side kept are decoded by the new one. What each tree keeps as saved objects is loaded by the other and saved in another
format, which its own side loads and saves again: the first bytes have to come back. Exit code 1: something of it fails. Two things are told and are no failure: packets that are not those of the
host's own modules, since an encoder may have learned, and rules of the newer `conform` that an older module does not keep.
"""
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

MODULES = ("zyr_core.so", "zyr_picture.so", "plugins/zyr_ffmpeg.so", "plugins/zyr_blocks.so")
CODECS = {"vp9": "zyr_ffmpeg", "mpeg1video": "zyr_ffmpeg", "blocks": "zyr_blocks"}
EXTENSIONS = {"vp9": ".ivf", "mpeg1video": ".mpg", "blocks": ".zyrs"}
FORMATS = ("raw", "zbf", "xml", "json")


class Side:
    """A built tree: what it has, and how to run it."""

    def __init__(self, name, tree):
        self.name, self.tree = name, tree
        self.host = tree / "build/ci/bin/zyr-host"
        built = tree / "build/ci/lib"
        self.modules = {module: built / pathlib.Path(module).name for module in MODULES}
        self.modules = {module: path for module, path in self.modules.items() if path.exists()}
        commands = subprocess.run([self.host, "--help"], capture_output=True, text=True).stdout
        self.has = lambda command: f"\n  {command} " in commands


class Figures:
    def __init__(self, work):
        self.work = work
        self.runs = self.failures = self.equal = self.other = self.unkept = 0

    def run(self, what, *command, older=False):
        """Whether the command does its work; its words if not. Rules may stay unkept where a module is older."""
        self.runs += 1
        environment = {"PATH": "/usr/bin:/bin", "LC_ALL": "C.UTF-8", "HOME": str(self.work), "XDG_STATE_HOME": str(self.work)}
        done = subprocess.run([str(word) for word in command], capture_output=True, text=True, errors="replace",
                              env=environment, timeout=600)
        if done.returncode == 0:
            return True
        unkept = re.findall(r"^not ok \d+ - (\S+)\n(?:(?!ok |not ok ).*\n)*?  reason: (.*)$", done.stdout, re.M)
        if older and done.returncode == 1 and unkept:
            self.unkept += len(unkept)
            print("\n".join(f"together: {what}: not kept: {name}: {reason}" for name, reason in unkept))
            return False
        self.fail(f"{what}: exit code {done.returncode}")
        print("\n".join((done.stdout + done.stderr).splitlines()[-20:]))
        return False

    def fail(self, what):
        self.failures += 1
        print(f"together: FAILED: {what}")


def layOut(directory, host, modules):
    """As if it were installed. The program is a copy, since it looks for its modules beside its own file."""
    (directory / "bin").mkdir(parents=True)
    shutil.copy2(host.host, directory / "bin/zyr-host")
    for module, path in modules.items():
        place = directory / "lib/zyrmont" / module
        place.parent.mkdir(parents=True, exist_ok=True)
        place.symlink_to(path)
    return directory / "bin/zyr-host"


def mixture(figures, name, host, modules, clip, older=False):
    """Runs one mixture, and returns its packets by codec and source. `older`: it has modules of the older side."""
    place = figures.work / name.replace(" ", "_")
    program = layOut(place, host, modules)
    before = figures.failures
    packets = {}
    figures.run(f"{name}: inspect", program, "inspect")
    for codec, plugin in CODECS.items():
        if f"plugins/{plugin}.so" not in modules:
            continue
        for source, options in (("generate:128x96:6", ()), (str(clip), ("--frames", "4"))):
            file = place / f"{codec}-{len(packets)}{EXTENSIONS[codec]}"
            if figures.run(f"{name}: stream of {codec}", program, "stream", source, "--codec", codec, *options,
                           "--packets", file):
                packets[codec, source] = file.read_bytes()
    conformed = 0
    if host.has("conform"):
        for module in modules:
            kind = {"zyr_core.so": ("--kind", "core"), "zyr_picture.so": ("--kind", "picture")}.get(module, ())
            conformed += figures.run(f"{name}: conform {pathlib.Path(module).name}", program, "conform",
                                     place / "lib/zyrmont" / module, *kind, older=older)
    shutil.rmtree(place)
    if figures.failures == before:
        print(f"together: {name}: OK, {len(packets)} packet files, {conformed} modules conform")
    return packets


def exchange(figures, host, other, clip):
    own = mixture(figures, f"host {host.name}", host, host.modules, clip)
    shared = [module for module in host.modules if module in other.modules]
    for strange in [[module] for module in shared] + [shared]:
        modules = {module: (other if module in strange else host).modules[module] for module in host.modules}
        # A plug-in that the other side does not have stays away when everything else is the other's.
        if strange == shared:
            modules = {module: path for module, path in modules.items() if module in other.modules}
            what = "all modules"
        else:
            what = strange[0]
        packets = mixture(figures, f"host {host.name}, {pathlib.Path(what).name} {other.name}", host, modules, clip,
                          older=other.name == "old")
        for key, bytes_ in packets.items():
            if bytes_ == own.get(key):
                figures.equal += 1
            else:
                figures.other += 1
                print(f"together: other packets of {key[0]} with {what} of the {other.name} side, from {pathlib.Path(key[1]).name}")
    return own


def readPack(path):
    """Saved objects by name: for each a line with name and size, the bytes, and a line end."""
    objects, data, place = {}, path.read_bytes(), 0
    while place < len(data):
        end = data.index(b"\n", place)
        name, size = data[place:end].rsplit(b" ", 1)
        objects[name.decode()] = data[end + 1:end + 1 + int(size)]
        place = end + int(size) + 2
    return objects


def saved(figures, writer, reader):
    """What `writer` saved, through `reader` and back. The formats take turns: each object comes in one of them."""
    packs = [[readPack(side.tree / f"tests/data/objects/golden.{form}.pack") for form in FORMATS] for side in (writer, reader)]
    # Bare records are no objects that convert takes, and one object wants its deferred file beside it.
    known = [name for name in packs[0][0] if name in packs[1][0] and not name.startswith(("record/", "shape/", "odd/deferred"))]
    back = 0
    for index, name in enumerate(known):
        form, between = FORMATS[index % 4], FORMATS[(index // 4 + index + 1) % 4]
        data = packs[0][index % 4][name]
        first, middle, last = (figures.work / word for word in (f"first.{form}", f"middle.{between}", f"last.{form}"))
        first.write_bytes(data)
        words = f"{name} of {writer.name} in {form}"
        if figures.run(f"{words}, loaded by {reader.name}", reader.host, "object", "convert", first, middle,
                       "--format", between) and \
                figures.run(f"{words}, loaded again", writer.host, "object", "convert", middle, last, "--format", form):
            if last.read_bytes() == data:
                back += 1
            else:
                figures.fail(f"{words}: other bytes come back from {reader.name} by way of {between}")
    print(f"together: {len(known)} saved objects of {writer.name} loaded by {reader.name}, {back} come back byte by byte")


def main():
    sys.stdout.reconfigure(line_buffering=True)
    if len(sys.argv) != 3:
        print(__doc__, file=sys.stderr)
        sys.exit(2)
    old, new = (Side(name, pathlib.Path(tree).resolve()) for name, tree in zip(("old", "new"), sys.argv[1:]))
    clip = new.tree / "tests/data/terminals.webm"
    with tempfile.TemporaryDirectory(prefix="zyr-together.") as work:
        figures = Figures(pathlib.Path(work))
        exchange(figures, new, old, clip)
        for (codec, source), packets in exchange(figures, old, new, clip).items():
            if codec == "blocks":  # The others are read by FFmpeg, and not by a plug-in.
                file = pathlib.Path(work) / "kept.zyrs"
                file.write_bytes(packets)
                figures.run(f"packets that old kept of {source}, decoded by new", new.host, "stream", file, "--codec", codec)
        if all((side.tree / "tests/data/objects/golden.raw.pack").exists() and side.has("object") for side in (old, new)):
            saved(figures, old, new)
            saved(figures, new, old)
        else:
            print("together: one side keeps no saved objects yet")
    print(f"together: {figures.runs} runs, {figures.failures} failures; {figures.equal} files of equal packets, "
          f"{figures.other} with others; {figures.unkept} rules that older modules do not keep")
    sys.exit(1 if figures.failures else 0)


if __name__ == "__main__":
    main()
