"""The servers and viewers that the live screen's benchmark sets beside each other. Each is started for one measurement and ended
behind it."""
import asyncio
import contextlib
import json
import os
import pathlib
import re
import shutil
import socket
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests/host/live"))
import browser  # noqa: E402

SIZE = "1280x720"
TICKS = os.sysconf("SC_CLK_TCK")
NOVNC = "/usr/share/novnc"


def find_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def await_port(port, process):
    for _ in range(400):
        if process.poll() is not None:
            raise RuntimeError(f"{process.args[0]} has ended")
        with socket.socket() as probe:
            if probe.connect_ex(("127.0.0.1", port)) == 0:
                return
        time.sleep(0.05)
    raise RuntimeError(f"{process.args[0]} never listened")


def cpu_of(process):
    """Seconds of one process with all its threads; its children's too once they have ended."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / TICKS


def bytes_from(port):
    """What the sockets of a port have sent."""
    lines = subprocess.run(["ss", "-tinH", "state", "established", f"( sport = :{port} )"], capture_output=True, text=True, check=True).stdout
    return sum(int(n) for n in re.findall(r"bytes_sent:(\d+)", lines))


class Programs:
    """What runs for one measurement."""

    def __init__(self, folder):
        self.folder = folder
        self.processes = []

    def start(self, *command, display=None, **options):
        environment = {**os.environ, "XDG_STATE_HOME": str(self.folder), "HOME": str(self.folder)}
        if display:
            environment["DISPLAY"] = display
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=environment, **options)
        self.processes.append(process)
        return process

    def start_x(self, *command):
        """An X server that tells its display."""
        end, other = os.pipe()
        process = self.start(*command, "-displayfd", str(other), pass_fds=[other])
        os.close(other)
        with os.fdopen(end) as told:
            return process, ":" + told.readline().strip()

    def end(self):
        for process in reversed(self.processes):
            with contextlib.suppress(ProcessLookupError):
                process.terminate()
        for process in self.processes:
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


class Contender:
    """`servers`: the processes whose time counts, by name. `port`: the one whose bytes count."""

    def __init__(self, programs, tools):
        self.programs, self.tools = programs, tools
        self.servers = {}
        self.port = 0

    def start_x(self):
        self.servers["X"], self.display = self.programs.start_x("Xvfb", "-screen", "0", SIZE + "x24", "-noreset", "-nolisten", "tcp")

    def native(self, pictures):
        return [str(self.tools / "vnc_viewer"), str(self.vnc_port), *([str(pictures), "37"] if pictures else [])]

    def start_proxy(self):
        """What browsers need in front of a VNC server."""
        self.port = find_port()
        proxy = self.programs.start("websockify", "--web", NOVNC, f"127.0.0.1:{self.port}", f"127.0.0.1:{self.vnc_port}")
        await_port(self.port, proxy)
        self.servers["proxy"] = proxy

    def page(self):
        self.start_proxy()
        return f"http://127.0.0.1:{self.port}/vnc_lite.html?host=127.0.0.1&port={self.port}&path=websockify&scale=false"

    def cpu(self):
        used = {}
        for name, process in self.servers.items():
            used[name] = cpu_of(process) + (self.cpu_of_children(process) if name == "proxy" else 0)
        return used

    @staticmethod
    def cpu_of_children(process):
        """websockify serves each connection by a process of its own."""
        total = 0
        for child in pathlib.Path(f"/proc/{process.pid}/task/{process.pid}/children").read_text().split():
            with contextlib.suppress(OSError):
                fields = pathlib.Path(f"/proc/{child}/stat").read_text().rpartition(")")[2].split()
                total += (int(fields[11]) + int(fields[12])) / TICKS
        return total


class Ours(Contender):
    def start(self):
        server = self.programs.start(str(self.tools / "zyr-host"), "serve", "--log-dir", str(self.programs.folder), "--display",
                                     self.display, *self.options, stdout=subprocess.PIPE)
        self.address = server.stdout.readline().decode().strip()
        if not self.address:
            raise RuntimeError("zyr-host serve did not start")
        self.servers["server"] = server
        self.port = int(re.search(r":(\d+)/", self.address).group(1))

    options = ()

    def native(self, pictures):
        return [str(self.tools / "live_viewer"), self.address, *([str(pictures), "37"] if pictures else [])]

    def page(self):
        return self.address


class X11vnc(Contender):
    options = ()

    def start(self):
        self.port = self.vnc_port = find_port()
        server = self.programs.start("x11vnc", "-display", self.display, "-rfbport", str(self.vnc_port), "-localhost", "-forever",
                                     "-shared", "-nopw", "-quiet", *self.options)
        await_port(self.vnc_port, server)
        self.servers["server"] = server


class Xvnc(Contender):
    def start_x(self):
        self.port = self.vnc_port = find_port()
        self.servers["server"], self.display = self.programs.start_x(
            "Xtigervnc", "-geometry", SIZE, "-depth", "24", "-SecurityTypes", "None", "-localhost", "-rfbport", str(self.vnc_port),
            "-AlwaysShared", "-noreset")

    def start(self):
        await_port(self.vnc_port, self.servers["server"])


KINDS = {"ours": Ours, "x11vnc": X11vnc, "xvnc": Xvnc}


def find_missing(names):
    """The programs that are not there, so that what needs them is left out."""
    needs = {"ours": ["Xvfb"], "x11vnc": ["Xvfb", "x11vnc"], "xvnc": ["Xtigervnc"]}
    missing = {}
    for name in names:
        kind, way = name.split("-")
        wanted = needs[kind] + (["websockify"] if way == "page" and kind != "ours" else [])
        lacks = [program for program in wanted if not shutil.which(program)]
        if way == "page" and not browser.is_there():
            lacks.append("chromium")
        if lacks:
            missing[name] = lacks
    return missing


class NativeViewer:
    """Writes its lines into a file: nobody needs to wake up for them."""

    def __init__(self, programs, command):
        self.path = programs.folder / "seen"
        self.report = programs.folder / "report"
        with open(self.path, "wb") as seen, open(self.report, "wb") as report:
            self.process = programs.start(*command, stdin=subprocess.PIPE, stdout=seen, stderr=report)

    def lines(self, kind):
        return [line.split()[1:] for line in self.path.read_text().splitlines() if line.startswith(kind + " ")]

    async def await_picture(self):
        for _ in range(600):
            if self.lines("P"):
                return
            if self.process.poll() is not None:
                raise RuntimeError(f"the viewer has ended: {self.report.read_text()}")
            await asyncio.sleep(0.05)
        raise RuntimeError("the viewer never saw a picture")

    async def tell(self, word):
        self.process.stdin.write(word.encode() + b"\n")
        self.process.stdin.flush()

    async def click(self):
        await self.tell("click")

    async def take_report(self):
        await self.tell("report")
        for _ in range(200):
            text = self.report.read_text()
            if text.endswith("}\n"):
                return json.loads(text)
            await asyncio.sleep(0.05)
        raise RuntimeError(f"the viewer did not report: {text}")

    async def pictures(self):
        return [(int(seen) / 1e6, float(age), int(frame)) for seen, age, frame in self.lines("P")]

    async def clicks(self):
        return [(int(seen) - int(sent)) / 1000 for sent, seen in self.lines("C")]

    async def hashes(self):
        return [(int(seen) / 1e6, value) for seen, value in self.lines("H")]

    async def pause(self, signal):
        self.process.send_signal(signal)

    async def end(self):
        self.process.stdin.close()
        self.process.wait(20)


class PageViewer:
    def __init__(self, page, probe):
        self.page, self.probe = page, probe

    async def open(self, address):
        self.script = (await self.page.call("Page.addScriptToEvaluateOnNewDocument", source=self.probe))["identifier"]
        await self.page.open(address)

    async def await_picture(self):
        await self.page.until("window.benchSeen?.pictures.length > 0", "a picture")

    async def tell(self, word):
        pass

    async def click(self):
        for kind in ("mousePressed", "mouseReleased"):
            await self.page.call("Input.dispatchMouseEvent", type=kind, x=500, y=500, button="left", clickCount=1)

    async def pictures(self):
        return [(seen / 1000, age, frame) for seen, age, frame in await self.page.evaluate("benchSeen.pictures")]

    async def clicks(self):
        return await self.page.evaluate("benchSeen.clicks")

    async def stages(self):
        return await self.page.evaluate("benchSeen.stages")

    async def hashes(self):
        return []

    async def pause(self, signal):
        os.killpg(self.page.process.pid, signal)

    async def end(self):
        await self.page.call("Page.removeScriptToEvaluateOnNewDocument", identifier=self.script)
        await self.page.call("Page.navigate", url="about:blank")
