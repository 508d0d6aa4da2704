"""A viewer of a live screen in plain Python, which can also misbehave."""
import asyncio
import os
import pathlib
import ssl
import struct
import subprocess
import tempfile

import websockets

MAGIC = 0x4D72797A
HELLO, ACKNOWLEDGE, NEED_KEY, POINTER, WHEEL, KEY, RELEASE_ALL, CLIPBOARD_SET, CLIPBOARD_GET, CONTROL, PING = range(1, 12)
WELCOME, STREAM, FRAME, CURSOR, POINTER_AT, CLIPBOARD, CONTROL_STATE, PONG, STATISTICS, REFUSED = range(64, 74)
KEY_FRAME, EXACT, LAST = 1, 2, 4
HOST = os.environ["ZYR_HOST_PROGRAM"]


def text(value):
    return struct.pack("<H", len(value)) + value.encode()


def hello(token, flags=0, codecs=3, version=2, user=""):
    return struct.pack("<IIB", version, flags, codecs) + text(user) + text(token)


def message(kind, head=b"", payload=b""):
    return struct.pack("<IIIIQ", MAGIC, kind, 1, len(head), len(payload)) + head + payload


class Frames:
    """The frames of one connection, each told by what is otherwise than with the one before."""

    def __init__(self):
        self.sequence = self.captured = 0
        self.areas = [[0] * 4, [0] * 4]
        self.header = None

    def read(self, head, payload):
        """Sequence, codec, flags, area and time of capture in microseconds, and the packet."""
        at = 1

        def number():
            nonlocal at
            value = shift = 0
            while True:
                byte = head[at]
                at += 1
                value |= (byte & 127) << shift
                if byte < 128:
                    return value
                shift += 7

        codec = head[0] >> 3 & 1
        self.sequence += 1
        self.captured += number()
        for _ in range(3):
            number()  # Capture, encoding, queue.
        if head[0] & 16:
            self.areas[codec] = [number() for _ in range(4)]
        if codec == 0 and head[0] & 32:
            self.header[1] = head[at]
            self.header[4] = self.header[4] + 1 & 255
            payload = bytes(self.header) + payload
        elif codec == 0:
            ends = [i for i in range(5, min(len(payload), 12)) if payload[i] < 128]
            self.header = bytearray(payload[:ends[1] + 1])
        return self.sequence, codec, head[0] & 7, list(self.areas[codec]), self.captured * 16, payload


class Server:
    """zyr-host serve, until the block ends."""

    def __init__(self, *arguments, environment=None, logs=None):
        self.arguments = arguments
        self.logs = logs
        self.environment = environment or {}

    async def __aenter__(self):
        self.folder = tempfile.TemporaryDirectory(prefix="zyr-live-")
        self.errors = pathlib.Path(self.folder.name) / "errors"
        environment = {**os.environ, "XDG_STATE_HOME": self.folder.name, **self.environment}
        with open(self.errors, "wb") as errors:
            self.process = subprocess.Popen([HOST, "serve", "--log-dir", self.logs or self.folder.name, *self.arguments],
                                            stdout=subprocess.PIPE, stderr=errors, env=environment)
        line = await asyncio.get_running_loop().run_in_executor(None, self.process.stdout.readline)
        assert line, f"the server did not start: {self.errors.read_text()}"
        self.address = line.decode().strip()
        self.page, _, fragment = self.address.partition("#")
        self.token = fragment.removeprefix("token=")
        self.port = int(self.page.rstrip("/").rsplit(":", 1)[1])
        return self

    async def __aexit__(self, *_):
        self.process.terminate()
        self.process.wait()
        self.process.stdout.close()
        self.folder.cleanup()

    def log(self):
        return self.errors.read_text()

    def count_descriptors(self):
        return len(os.listdir(f"/proc/{self.process.pid}/fd"))

    def count_pages(self):
        return int(pathlib.Path(f"/proc/{self.process.pid}/statm").read_text().split()[1])

    def keeps_freed_memory(self):
        """As the address sanitizer does, and an emulator."""
        maps = pathlib.Path(f"/proc/{self.process.pid}/maps").read_text()
        return "libasan" in maps or "qemu" in maps


class Screen:
    """Xvfb whose size can be changed, until the block ends."""

    def __init__(self, width=1280, height=720):
        self.size = f"{width}x{height}x24"

    def __enter__(self):
        end, other = os.pipe()
        self.process = subprocess.Popen(
            ["Xvfb", "-displayfd", str(other), "-screen", "0", self.size, "-noreset", "-nolisten", "tcp"],
            pass_fds=[other], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(other)
        with os.fdopen(end) as told:
            self.display = ":" + told.readline().strip()
        return self

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait()

    def start(self, *command):
        return subprocess.Popen(command, env={**os.environ, "DISPLAY": self.display}, stderr=subprocess.DEVNULL)

    def resize(self, width, height):
        name = f"{width}x{height}"
        for arguments in (["--newmode", name, "10", *[str(width)] * 4, *[str(height)] * 4], ["--addmode", "screen", name],
                          ["--output", "screen", "--mode", name]):
            subprocess.run(["xrandr", "-display", self.display, *arguments], check=True)


def insecure():
    context = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
    context.check_hostname = False
    context.verify_mode = ssl.CERT_NONE
    return context


class Viewer:
    def __init__(self, server, origin=None, port=None):
        self.server = server
        self.port = port or server.port
        self.origin = origin or server.page.rstrip("/")
        self.frames = []
        self.told = Frames()
        self.frame = None     # The last one, without its packet.
        self.area = None      # Of the last packet.
        self.captured = None  # When its picture was, in microseconds of the server's clock.

    async def __aenter__(self):
        scheme = "wss" if self.server.page.startswith("https") else "ws"
        self.socket = await websockets.connect(
            f"{scheme}://127.0.0.1:{self.server.port}/live", max_size=None, origin=self.origin, compression=None,
            ssl=insecure() if scheme == "wss" else None, host="127.0.0.1", port=self.port)
        return self

    async def __aexit__(self, *_):
        await self.socket.close()

    async def send(self, kind, head=b"", payload=b""):
        await self.socket.send(message(kind, head, payload))

    async def receive(self):
        got = await asyncio.wait_for(self.socket.recv(), 60)
        magic, kind, _, size, payload = struct.unpack_from("<IIIIQ", got)
        assert magic == MAGIC and len(got) == 24 + size + payload
        head, payload = got[24:24 + size], got[24 + size:]
        if kind == FRAME:
            *self.frame, payload = self.told.read(head, payload)
        return kind, head, payload

    async def until(self, wanted, acknowledge=True):
        """Receives until a message of the kind comes."""
        while True:
            kind, head, payload = await self.receive()
            if kind == FRAME:
                sequence, codec, flags, self.area, self.captured = self.frame
                self.frames.append((codec, flags, len(payload)))
                if acknowledge and flags & LAST:
                    await self.send(ACKNOWLEDGE, struct.pack("<III", sequence, 0, 0))
            if kind == wanted:
                return head, payload
            assert kind != REFUSED, f"refused: {head}"

    async def join(self, flags=0, codecs=3):
        await self.send(HELLO, hello(self.server.token, flags, codecs))
        await self.until(WELCOME)
        return self

    async def watch(self, count):
        """Takes so many packets more."""
        wanted = len(self.frames) + count
        while len(self.frames) < wanted:
            await self.until(FRAME)
