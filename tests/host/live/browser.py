"""Chromium without a window, driven over its DevTools port."""
import asyncio
import base64
import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import urllib.request

import websockets

PROGRAM = "/usr/lib/chromium/chromium"


def is_there():
    return pathlib.Path(PROGRAM).exists()


class Browser:
    async def __aenter__(self):
        # On a machine with much to do it can be stuck from its start; it is not what is tested.
        for last in (False, False, True):
            try:
                return await asyncio.wait_for(self.start(), 60)
            except TimeoutError:
                self.end()
                if last:
                    raise

    async def start(self):
        self.folder = tempfile.mkdtemp(prefix="zyr-browser-")
        # A group of its own, by which it is ended with all its helpers.
        self.process = subprocess.Popen(
            [PROGRAM, "--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage", "--no-first-run",
             "--disable-extensions", "--disable-background-networking", "--ignore-certificate-errors",
             "--window-size=1400,900", f"--user-data-dir={self.folder}", "--remote-debugging-port=0", "about:blank"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, start_new_session=True, env={**os.environ, "HOME": self.folder})
        port = await self.find_port()
        self.socket = await websockets.connect(await self.find_page(port), max_size=None)
        self.last = 0
        self.messages = []
        await self.call("Runtime.enable")
        await self.call("Page.enable")
        return self

    async def find_port(self):
        note = pathlib.Path(self.folder) / "DevToolsActivePort"
        while not note.exists() or not note.read_text().strip():
            if self.process.poll() is not None:
                raise RuntimeError("Chromium has ended")
            await asyncio.sleep(0.05)
        return int(note.read_text().split()[0])

    async def find_page(self, port):
        while True:
            with urllib.request.urlopen(f"http://127.0.0.1:{port}/json/list", timeout=30) as answer:
                for page in json.load(answer):
                    if page["type"] == "page":
                        return page["webSocketDebuggerUrl"]
            await asyncio.sleep(0.05)

    async def __aexit__(self, *_):
        await self.socket.close()
        self.end()

    def end(self):
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    async def call(self, method, **parameters):
        self.last += 1
        await self.socket.send(json.dumps({"id": self.last, "method": method, "params": parameters}))
        while True:
            answer = json.loads(await asyncio.wait_for(self.socket.recv(), 120))
            if answer.get("id") == self.last:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            if answer.get("method") == "Runtime.consoleAPICalled":
                self.messages.append(" ".join(str(a.get("value", "")) for a in answer["params"]["args"]))
            if answer.get("method") == "Runtime.exceptionThrown":
                self.messages.append(str(answer["params"]["exceptionDetails"].get("exception", {}).get("description")))

    async def open(self, address):
        await self.call("Page.navigate", url="about:blank")
        await self.call("Page.navigate", url=address)

    async def evaluate(self, script, gesture=False):
        """`gesture`: as if a person had just done something."""
        answer = await self.call("Runtime.evaluate", expression=script, awaitPromise=True, returnByValue=True, userGesture=gesture)
        if "exceptionDetails" in answer:
            raise RuntimeError(answer["exceptionDetails"]["exception"].get("description"))
        return answer["result"].get("value")

    async def until(self, script, what, seconds=40):
        """Asks until the script gives something true."""
        for _ in range(int(seconds / 0.05)):
            try:
                value = await self.evaluate(script)
            except RuntimeError:
                value = None  # The page is on its way.
            if value:
                return value
            await asyncio.sleep(0.05)
        status = await self.evaluate("document.getElementById('state')?.textContent")
        raise AssertionError(f"never came: {what} (the page says: {status}; {self.messages[-5:]})")

    async def screenshot(self, path):
        answer = await self.call("Page.captureScreenshot", format="png")
        pathlib.Path(path).write_bytes(base64.b64decode(answer["data"]))
