"""One check of a live screen; its name is the argument. The environment names the program (ZYR_HOST_PROGRAM)."""
import asyncio
import json
import os
import pathlib
import re
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import urllib.error
import urllib.request

import websockets

import browser
from live_client import (ACKNOWLEDGE, CLIPBOARD, CLIPBOARD_GET, CLIPBOARD_SET, CONTROL_STATE, FRAME, HELLO, HOST, NEED_KEY, POINTER,
                         POINTER_AT, REFUSED, STREAM, WELCOME, EXACT, KEY_FRAME, LAST, PING, Screen, Server, Viewer, hello, insecure,
                         message, text)

MOVING = "generate:320x240@30:3000"
CHECKS = {}


def check(function):
    CHECKS[function.__name__] = function
    return function


async def refusal_of(viewer):
    while True:
        kind, head, _ = await viewer.receive()
        assert kind not in (WELCOME, FRAME), "let in"
        if kind == REFUSED:
            return struct.unpack_from("<H", head)[0]


def fetch(server, path="", headers=None, method="GET"):
    request = urllib.request.Request(server.page + path, headers=headers or {}, method=method)
    try:
        with urllib.request.urlopen(request, context=insecure(), timeout=60) as answer:
            return answer.status, answer.headers, answer.read()
    except urllib.error.HTTPError as error:
        return error.code, error.headers, b""


@check
async def a_viewer_gets_a_key_frame_first():
    async with Server(MOVING) as server, Viewer(server) as viewer:
        await viewer.join()
        head, _ = await viewer.until(STREAM)
        assert struct.unpack_from("<IIII", head) == (320, 240, 320, 240)
        await viewer.until(FRAME)
        assert viewer.frames[0][1] & 1, "no key frame"


@check
async def a_wrong_token_is_refused_and_not_logged():
    async with Server(MOVING) as server, Viewer(server) as viewer:
        wrong = "f" * 32
        await viewer.send(HELLO, hello(wrong))
        assert await refusal_of(viewer) == 1
        try:
            await viewer.receive()
            raise AssertionError("the connection stays")
        except websockets.ConnectionClosed:
            pass
        log = server.log()
        assert "refused, wrong secret" in log and wrong not in log and server.token not in log, log


@check
async def broken_messages_end_the_connection():
    async with Server(MOVING) as server:
        for kind, head in ((HELLO, b"\x01"), (POINTER, b""), (999, b"")):
            async with Viewer(server) as viewer:
                await viewer.send(kind, head)
                assert await refusal_of(viewer) == 4, kind
        async with Viewer(server) as viewer:
            await viewer.send(HELLO, hello(server.token, version=1))
            assert await refusal_of(viewer) == 7
        async with Viewer(server) as viewer:
            await viewer.join()
            await viewer.until(FRAME)


@check
async def a_viewer_may_ping_while_its_secret_is_checked():
    async with Server(MOVING) as server, Viewer(server) as viewer:
        await viewer.send(PING, struct.pack("<Q", 1))
        assert await refusal_of(viewer) == 4, "before it has said who it is"
    async with Server(MOVING) as server, Viewer(server) as viewer:
        # In one piece, so that the server has not answered yet.
        line = viewer.socket.transport.get_extra_info("socket")
        line.setsockopt(socket.IPPROTO_TCP, socket.TCP_CORK, 1)
        await viewer.send(HELLO, hello(server.token))
        await viewer.send(PING, struct.pack("<Q", 1))
        line.setsockopt(socket.IPPROTO_TCP, socket.TCP_CORK, 0)
        await viewer.until(FRAME)


@check
async def no_common_codec_is_refused():
    async with Server(MOVING, "--codec", "blocks") as server, Viewer(server) as viewer:
        await viewer.send(HELLO, hello(server.token, codecs=2))
        assert await refusal_of(viewer) == 6


@check
async def another_origin_is_refused():
    async with Server(MOVING) as server:
        try:
            async with Viewer(server, origin="https://evil.example"):
                raise AssertionError("let in")
        except websockets.InvalidStatusCode as error:
            assert error.status_code == 403, error.status_code


@check
async def the_page_comes_with_its_guards():
    async with Server(MOVING) as server:
        status, headers, body = fetch(server)
        assert status == 200 and b"live.js" in body
        assert "default-src 'none'" in headers["Content-Security-Policy"]
        assert headers["X-Content-Type-Options"] == "nosniff"
        for name in ("live.js", "decoders.js", "protocol.js", "input.js", "keys.js", "live.css", "zyr_blocks_decoder.js"):
            assert fetch(server, name)[0] == 200, name
        assert fetch(server, "", {"Host": "evil.example"})[0] == 421
        for path in ("../CMakeCache.txt", "%2e%2e/CMakeCache.txt", "..%2f..%2fetc/passwd", "nothing"):
            assert fetch(server, path)[0] in (400, 403, 404), path


@check
async def plain_http_is_not_spoken_on_the_secure_port():
    async with Server(MOVING) as server:
        try:
            urllib.request.urlopen(f"http://127.0.0.1:{server.port}/", timeout=60).read()
            raise AssertionError("answered")
        except (urllib.error.URLError, ConnectionError, OSError):
            pass
        assert fetch(server)[0] == 200


@check
async def the_fingerprint_is_that_of_the_certificate():
    async with Server(MOVING) as server:
        told = re.search(r"fingerprint ([0-9a-f]{64})", server.log()).group(1)
        reader, writer = await asyncio.open_connection("127.0.0.1", server.port, ssl=insecure())
        import hashlib
        shown = writer.get_extra_info("ssl_object").getpeercert(binary_form=True)
        writer.close()
        assert hashlib.sha256(shown).hexdigest() == told


@check
async def a_certificate_that_cannot_be_used_is_refused_at_once():
    async with Server(MOVING) as server:
        kept = pathlib.Path(server.folder.name) / "zyr-host/live"
        for certificate, key in (("missing.pem", kept / "key.pem"), (kept / "certificate.pem", kept / "certificate.pem")):
            run = subprocess.run([HOST, "serve", "--log-dir", server.folder.name, "--cert", certificate, "--key", key, MOVING],
                                 capture_output=True, text=True, timeout=60)
            assert run.returncode == 1, run
            assert run.stdout == "", run
            assert f"cannot use the certificate in '{certificate}' with the key in '{key}' (see the log)\n" in run.stderr, run


@check
async def an_address_that_cannot_be_printed_is_a_failure():
    with tempfile.TemporaryDirectory() as folder, open("/dev/full", "wb") as full:
        run = subprocess.run([HOST, "serve", "--insecure-plain", "--log-dir", folder, MOVING], stdout=full,
                             stderr=subprocess.PIPE, text=True, timeout=60)
        assert run.returncode == 1, run
        assert run.stderr == "zyr-host: cannot write to the standard output: No space left on device\n", run


@check
async def a_report_that_cannot_be_written_is_a_failure():
    async with Server(MOVING) as server:
        with open("/dev/full", "wb") as full:
            for path, name in (("-", "the standard output"), ("/dev/full", "'/dev/full'")):
                run = await asyncio.to_thread(
                    subprocess.run, [HOST, "view", server.address, "--insecure", "--no-window", "--frames", "1", "--report", path,
                                     "--log-dir", server.folder.name],
                    stdout=full, stderr=subprocess.PIPE, text=True, timeout=60)
                assert run.returncode == 1, run
                assert run.stderr.endswith(f"zyr-host: cannot write {name}: No space left on device\n"), run


@check
async def names_and_accounts_take_one_word_each():
    async with Server("--name", "here", "--user", "nobody", MOVING) as server:
        assert server.page == f"https://here:{server.port}/", server.page


@check
async def a_silent_viewer_gets_no_more_than_its_window():
    async with Server(MOVING) as server, Viewer(server) as stopped, Viewer(server) as other:
        await stopped.join()
        await other.join()
        while len(other.frames) < 40:
            await other.until(FRAME)
        await stopped.send(11, struct.pack("<Q", 7))
        await stopped.until(71, acknowledge=False)
        assert len(stopped.frames) == 1, stopped.frames


@check
async def a_film_goes_by_vp9_beside_blocks():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, Viewer(server) as viewer:
        await viewer.join()
        while viewer.area != [1008, 576, 256, 128]:
            await viewer.until(FRAME)
        # Blocks come first and are no longer exact; with the film's packet the picture is complete.
        (codec, flags, _), (film, film_flags, _) = viewer.frames[-2:]
        assert (codec, flags & ~KEY_FRAME) == (0, 0), viewer.frames[-2:]
        assert (film, film_flags) == (1, KEY_FRAME | LAST), viewer.frames[-2:]
        # Whoever knows no VP9 gets all by blocks, and then all do.
        async with Viewer(server) as other:
            await other.join(codecs=1)
            while len(other.frames) < 5:
                await other.until(FRAME)
            assert all(codec == 0 and flags & EXACT for codec, flags, _ in other.frames), other.frames


@check
async def a_stopped_viewer_goes_on_with_the_newest_picture():
    async with Server(MOVING) as server, Viewer(server) as stopped, Viewer(server) as other:
        await stopped.join()
        await other.join()
        await asyncio.gather(stopped.watch(10), other.watch(10))
        await other.watch(60)
        present = other.captured

        old = -1
        while stopped.captured < present:
            old += 1
            await asyncio.gather(stopped.watch(1), other.watch(1))
        assert old <= 4, f"{old} pictures of the past"
        assert stopped.frames[-1][1] & KEY_FRAME, stopped.frames
        last = stopped.captured
        for _ in range(5):
            await asyncio.gather(stopped.watch(1), other.watch(1))
            assert stopped.captured > last
            last = stopped.captured


class Delay:
    """A road to the server on which everything takes 150 ms, until the block ends."""

    def __init__(self, server):
        self.server = server
        self.tasks = []

    async def __aenter__(self):
        self.listener = await asyncio.start_server(self.carry, "127.0.0.1", 0)
        self.port = self.listener.sockets[0].getsockname()[1]
        return self

    async def __aexit__(self, *_):
        self.listener.close()
        for task in self.tasks:
            task.cancel()

    async def carry(self, reader, writer):
        far_reader, far_writer = await asyncio.open_connection("127.0.0.1", self.server.port)
        self.tasks += [asyncio.create_task(self.pass_on(reader, far_writer)), asyncio.create_task(self.pass_on(far_reader, writer))]

    async def pass_on(self, reader, writer):
        while data := await reader.read(65536):
            asyncio.get_running_loop().call_later(0.15, writer.write, data)
        writer.close()


@check
async def slow_viewers_and_new_ones_do_not_hold_up_others():
    async with Server(MOVING) as server, Delay(server) as road, Viewer(server) as quick, Viewer(server, port=road.port) as slow:
        await quick.join()
        going = asyncio.create_task(quick.watch(1_000_000))
        await slow.join()
        before = len(quick.frames)
        await slow.watch(20)
        assert len(quick.frames) - before >= 20, (before, len(quick.frames))
        # Ten join at once: until they all have ten pictures, the quick one has as many, and few key frames among them.
        before = len(quick.frames)
        started = quick.captured

        async def visit():
            async with Viewer(server) as viewer:
                await viewer.join()
                await viewer.watch(10)

        await asyncio.gather(*(visit() for _ in range(10)))
        keys = sum(flags & KEY_FRAME for _, flags, _ in quick.frames[before:])
        assert len(quick.frames) - before >= 10, (before, len(quick.frames))
        assert keys <= 2 + 2 * (quick.captured - started) / 1e6, (keys, quick.captured - started)
        going.cancel()


@check
async def viewers_that_join_together_share_key_frames():
    async with Server(MOVING) as server:
        viewers = [Viewer(server) for _ in range(10)]
        for viewer in viewers:
            await viewer.__aenter__()
        await asyncio.gather(*(viewer.join() for viewer in viewers))

        async def watch(viewer):
            while len(viewer.frames) < 20:
                await viewer.until(FRAME)
            return sum(flags & 1 for _, flags, _ in viewer.frames)

        keys = await asyncio.gather(*(watch(viewer) for viewer in viewers))
        for viewer in viewers:
            await viewer.__aexit__()
        # One for the first of them, one for all others, and one for a change of codecs.
        assert max(keys) <= 4, keys


@check
async def a_broken_decoder_gets_a_key_frame():
    async with Server(MOVING) as server, Viewer(server) as viewer:
        await viewer.join()
        while len(viewer.frames) < 5:
            await viewer.until(FRAME)
        await viewer.send(NEED_KEY, struct.pack("<I", 3))
        seen = len(viewer.frames)
        while not any(flags & 1 for _, flags, _ in viewer.frames[seen:]):
            await viewer.until(FRAME)


@check
async def many_connections_leave_nothing_behind():
    async with Server(MOVING) as server:
        async def visit():
            async with Viewer(server) as viewer:
                await viewer.join()
                await viewer.until(FRAME)

        async def stay(viewer, count):
            seen = len(viewer.frames)
            while len(viewer.frames) < seen + count:
                await viewer.until(FRAME)

        await asyncio.gather(*(visit() for _ in range(8)))
        async with Viewer(server) as viewer:
            await viewer.join()
            await stay(viewer, 10)
            before = server.count_descriptors()
            for _ in range(2):
                await asyncio.gather(stay(viewer, 5), *(visit() for _ in range(8)))
            await stay(viewer, 10)
            assert server.count_descriptors() <= before + 1, (before, server.count_descriptors())


def connect_rudely(server, way):
    """Comes and goes as nobody should."""
    with socket.create_connection(("127.0.0.1", server.port), timeout=60) as peer:
        if way == 0:
            return
        head = (f"GET /live HTTP/1.1\r\nHost: 127.0.0.1:{server.port}\r\nOrigin: http://127.0.0.1:{server.port}\r\n"
                "Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
                "Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n\r\n").encode()
        if way == 1:
            peer.sendall(head[:40])
            return
        said = message(HELLO, hello(server.token if way == 3 else "wrong"))
        peer.sendall(head + bytes([0x82, 0x80 | len(said), 0, 0, 0, 0]) + said)
        wanted = struct.pack("<II", 0x4D72797A, WELCOME if way == 3 else REFUSED)
        got = b""
        while wanted not in got:
            more = peer.recv(65536)
            assert more, got
            got += more


@check
async def five_hundred_connections_leave_nothing_behind():
    async with Server(MOVING, "--insecure-plain", "--codec", "blocks") as server, Viewer(server) as viewer:
        await viewer.join()

        async def come_and_go(count):
            for i in range(count):
                await asyncio.to_thread(connect_rudely, server, i % 4)
            # What they left is cleaned up before this one has its pictures.
            await viewer.send(NEED_KEY, struct.pack("<I", 1))
            await viewer.watch(5)
            return server.count_descriptors(), server.count_pages()

        descriptors, pages = await come_and_go(100)
        later_descriptors, later_pages = await come_and_go(400)
        assert later_descriptors <= descriptors, (descriptors, later_descriptors)
        assert server.keeps_freed_memory() or later_pages - pages < 1024, (pages, later_pages)


@check
async def too_many_messages_end_the_connection():
    async with Server(MOVING) as server, Viewer(server) as viewer:
        await viewer.join()

        async def chatter():
            try:
                for _ in range(100_000):
                    await viewer.send(ACKNOWLEDGE, struct.pack("<III", 0, 0, 0))
            except websockets.ConnectionClosed:
                pass

        talking = asyncio.create_task(chatter())
        try:
            while (await viewer.receive())[0] != REFUSED:
                pass
        except websockets.ConnectionClosed:
            pass  # What was on its way may have swept the farewell away.
        await talking
        assert "refused, too many messages" in server.log(), server.log()


@check
async def who_says_nothing_is_turned_away():
    async with Server(MOVING) as server, Viewer(server) as silent:
        reader, writer = await asyncio.open_connection("127.0.0.1", server.port)

        async def wait_without_tls():
            assert await asyncio.wait_for(reader.read(), 60) == b""
            writer.close()

        reason, _ = await asyncio.gather(refusal_of(silent), wait_without_tls())
        assert reason == 3


@check
async def who_says_nothing_keeps_nobody_out():
    async with Server(MOVING) as server:
        silent = [await asyncio.open_connection("127.0.0.1", server.port) for _ in range(16)]
        async with Viewer(server) as viewer:
            await viewer.join()
            await viewer.until(FRAME)
            assert await asyncio.wait_for(silent[0][0].read(), 60) == b"", "the one that has waited longest is still there"
        assert re.search(r"turned away, too many connections without a secret \(1 turned away\)", server.log()), server.log()
        for _, writer in silent:
            writer.close()


@check
async def a_crowd_takes_few_lines_of_the_log():
    async with Server(MOVING, "--insecure-plain") as server:
        crowd = [await asyncio.open_connection("127.0.0.1", server.port) for _ in range(100)]
        async with Viewer(server) as viewer:
            await viewer.join()
        assert 1 <= server.log().count("turned away, too many") <= 10, server.log()
        for _, writer in crowd:
            writer.close()


@check
async def the_log_tells_why_a_viewer_was_refused():
    async with Server(MOVING, "--codec", "blocks") as server:
        for said, why in ((message(HELLO, b"\x01"), "a message that is not understood"),
                          (message(HELLO, hello(server.token, version=1)), "another version of the protocol"),
                          (message(HELLO, hello(server.token, codecs=2)), "there is no codec that all viewers know")):
            async with Viewer(server) as viewer:
                port = viewer.socket.local_address[1]
                await viewer.socket.send(said)
                await refusal_of(viewer)
                await viewer.socket.wait_closed()
            async with Viewer(server) as viewer:
                await viewer.join()  # The other one is gone then.
            lines = [line for line in server.log().splitlines() if f"127.0.0.1:{port} " in line]
            assert lines == [f"zyr-host: 127.0.0.1:{port} refused, {why}"], lines


@check
async def vp9_has_the_range_that_every_browser_takes_it_for():
    # Its own header says it, and so does the message.
    async with Server(MOVING, "--codec", "vp9") as server, Viewer(server) as viewer:
        await viewer.join()
        head, _ = await viewer.until(STREAM)
        assert head[17:19] == b"\0\0", head
        _, packet = await viewer.until(FRAME)
        assert packet[1:4] == b"\x49\x83\x42" and packet[4] >> 4 & 1 == 0, packet[:8]


@check
async def native_viewers_check_the_certificate():
    async with Server(MOVING) as server:
        def view(*arguments):
            return subprocess.run([HOST, "view", server.address, "--no-window", "--frames", "3", "--log-dir",
                                   server.folder.name, *arguments], capture_output=True, text=True, check=False)
        refused = await asyncio.to_thread(view)
        assert refused.returncode == 1 and "tell it with --fingerprint" in refused.stderr, refused.stderr
        told = re.search(r"fingerprint ([0-9a-f]{64})", server.log()).group(1)
        good = await asyncio.to_thread(view, "--fingerprint", told, "--report", "-")
        assert good.returncode == 0 and '"frames": 3' in good.stdout, good.stderr
        wrong = await asyncio.to_thread(view, "--fingerprint", "0" * 64)
        assert wrong.returncode == 1, wrong.stderr


async def view_of(handler, *arguments):
    """What 'zyr-host view' makes of a server that does as the handler says."""
    async with websockets.serve(handler, "127.0.0.1", 0) as server:
        port = server.sockets[0].getsockname()[1]
        with tempfile.TemporaryDirectory() as folder:
            process = await asyncio.create_subprocess_exec(
                HOST, "view", f"http://127.0.0.1:{port}/#token=x", "--no-window", "--log-dir", folder, *arguments,
                stdout=subprocess.PIPE, stderr=subprocess.PIPE, env={**os.environ, "XDG_STATE_HOME": folder})
            output, errors = await process.communicate()
        return port, process.returncode, output, errors.decode()


@check
async def a_refusal_is_printed_without_the_controls_of_the_server():
    async def refuse(socket, _):
        await socket.recv()
        await socket.send(message(REFUSED, struct.pack("<H", 99) + text("\x1b[31mno\r\nzyr-host: yes")))

    port, code, _, errors = await view_of(refuse)
    assert (code, errors) == (1, f"zyr-host: the connection to 127.0.0.1:{port} has ended: ?[31mno??zyr-host: yes\n"), errors


@check
async def a_view_without_a_picture_has_failed():
    async def be_silent(socket, _):
        await socket.wait_closed()

    port, code, output, errors = await view_of(be_silent, "--seconds", "1")
    assert (code, output) == (1, b""), (code, output)
    assert errors == f"zyr-host: no picture came from 127.0.0.1:{port} within 1 s\n", errors


@check
async def the_window_shows_and_steers():
    sys.path.append(str(pathlib.Path(__file__).parents[2] / "plugin_blocks"))
    import blocks_decoder
    decoder = blocks_decoder.Decoder()
    # A screen is shown in a window on another one, which is looked at in its turn.
    with Screen(320, 240) as far, Screen(400, 300) as near:
        subprocess.run(["xsetroot", "-display", far.display, "-solid", "#203040"], check=True)
        async with Server("--display", far.display) as server, Viewer(server) as watcher:
            report = f"{server.folder.name}/report"
            view = subprocess.Popen([HOST, "view", server.address, "--insecure", "--report", report, "--log-dir", server.folder.name],
                                    env={**os.environ, "DISPLAY": near.display}, stderr=subprocess.DEVNULL)
            async with Server("--display", near.display, "--codec", "blocks") as looking, Viewer(looking) as viewer:
                await viewer.join(flags=1)

                def color(x, y):
                    return tuple(decoder.rows[y][x])

                shown = None
                while shown != (32, 48, 64):
                    _, payload = await viewer.until(FRAME)
                    decoder.decode(payload)
                    shown = color(300, 230)
                assert color(0, 0) == (32, 48, 64) and color(330, 230) == (0, 0, 0) and color(300, 250) == (0, 0, 0)
                await watcher.join()
                await viewer.send(POINTER, struct.pack("<iiH", 123, 45, 0))
                while struct.unpack("<ii", (await watcher.until(POINTER_AT))[0]) != (123, 45):
                    pass
                view.send_signal(signal.SIGINT)
                assert await asyncio.to_thread(view.wait) == 130
                assert json.loads(pathlib.Path(report).read_text())["frames"] > 0


@check
async def input_moves_the_pointer_of_the_screen():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, Viewer(server) as viewer, Viewer(server) as other:
        await viewer.join(flags=1)
        await viewer.until(CONTROL_STATE)
        # Places are those of a picture.
        await viewer.until(FRAME)
        await other.join()
        await viewer.send(POINTER, struct.pack("<iiH", 321, 123, 0))
        while True:
            head, _ = await viewer.until(POINTER_AT)
            if struct.unpack("<ii", head) == (321, 123):
                break
        # Whoever only looks on moves nothing.
        await other.send(POINTER, struct.pack("<iiH", 5, 5, 0))
        await viewer.send(POINTER, struct.pack("<iiH", 400, 300, 0))
        while True:
            head, _ = await viewer.until(POINTER_AT)
            assert struct.unpack("<ii", head) != (5, 5)
            if struct.unpack("<ii", head) == (400, 300):
                break


@check
async def the_clipboard_goes_both_ways():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, Viewer(server) as viewer:
        await viewer.join(flags=1)
        await viewer.send(CLIPBOARD_SET, b"", "grüß dich".encode())
        await viewer.send(CLIPBOARD_GET)
        _, payload = await viewer.until(CLIPBOARD)
        assert payload.decode() == "grüß dich"


@check
async def a_browser_shows_the_screen_and_reloads():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, browser.Browser() as chromium:
        await chromium.open(server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 10", "ten frames")
        size = await chromium.evaluate("[document.getElementById('screen').width, document.getElementById('screen').height]")
        assert size == [1280, 720], size
        # The demonstration's background, which blocks keep exactly.
        color = "Array.from(document.getElementById('screen').getContext('2d').getImageData(3, 700, 1, 1).data).join()"
        assert await chromium.evaluate(color) == "32,48,64,255", await chromium.evaluate(color)
        assert await chromium.evaluate("location.hash") == ""
        await chromium.call("Page.reload")
        await chromium.until("Number(document.documentElement.dataset.frames) > 10", "frames after a reload")
        assert not chromium.messages, chromium.messages


@check
async def a_browser_puts_a_film_among_the_blocks():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, browser.Browser() as chromium:
        await chromium.open(server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 0", "a frame")
        await chromium.evaluate("document.getElementById('figures').click()")
        await chromium.until("document.getElementById('overlay').textContent.includes('blocks, vp9 in 256x128 at 1008,576')",
                             "a region")
        pixels = ("((x, y) => Array.from(document.getElementById('screen').getContext('2d').getImageData(x, y, 1, 1).data)"
                  ".join())")
        # The film's neighbours are as they were painted, on all four sides.
        for x, y in ((1007, 640), (1264, 640), (1100, 575), (1100, 704)):
            assert await chromium.evaluate(f"{pixels}({x}, {y})") == "32,48,64,255", (x, y)
        first = await chromium.evaluate(f"{pixels}(1100, 640)")
        await chromium.until(f"{pixels}(1100, 640) !== '{first}'", "another picture of the film")
        assert not chromium.messages, chromium.messages


@check
async def a_browser_decodes_vp9():
    async with Server("generate:321x241@30:3000", "--codec", "vp9") as server, browser.Browser() as chromium:
        await chromium.open(server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 10", "ten frames")
        size = await chromium.evaluate("[document.getElementById('screen').width, document.getElementById('screen').height]")
        assert size == [321, 241], size
        # As a late comer it gets a key frame of the context that stood by.
        await chromium.call("Page.reload")
        await chromium.until("Number(document.documentElement.dataset.frames) > 10", "frames after a reload")
        assert not chromium.messages, chromium.messages


BEFORE_THE_PAGE = "Page.addScriptToEvaluateOnNewDocument"
STATE = "document.getElementById('state').textContent"


@check
async def a_browser_that_keeps_nothing_shows_the_screen():
    async with Server(MOVING) as server, browser.Browser() as chromium:
        await chromium.call(BEFORE_THE_PAGE, source="Object.defineProperty(window, 'sessionStorage', "
                            "{ get() { throw new DOMException('refused', 'SecurityError'); } });")
        await chromium.open(server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 3", "frames")
        assert not chromium.messages, chromium.messages


@check
async def a_browser_without_webcodecs_tells_what_is_missing():
    async with browser.Browser() as chromium:
        await chromium.call(BEFORE_THE_PAGE, source="delete window.VideoDecoder;")
        async with Server(MOVING, "--codec", "vp9") as server:
            await chromium.open(server.address)
            await chromium.until(f"{STATE} === 'Refused: this server shows VP9 only, and this browser has no WebCodecs, or they "
                                 "are switched off. Another or a newer browser can, and \\'zyr-host serve --codec auto\\' does "
                                 "without.'", "an explanation")
        async with Server(MOVING) as server:
            await chromium.open(server.address)
            await chromium.until("Number(document.documentElement.dataset.frames) > 3", "frames")
        assert not chromium.messages, chromium.messages


@check
async def a_browser_does_not_wait_for_the_farewell_of_a_silent_server():
    async with Server(MOVING) as server, browser.Browser() as chromium:
        # As Firefox has it for half a minute.
        await chromium.call(BEFORE_THE_PAGE, source="WebSocket.prototype.close = () => {};")
        await chromium.open(server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 3", "frames")
        server.process.send_signal(signal.SIGSTOP)
        await chromium.until(f"{STATE}.startsWith('The connection is gone')", "a loss")
        server.process.send_signal(signal.SIGCONT)
        before = await chromium.evaluate("Number(document.documentElement.dataset.frames)")
        await chromium.until(f"Number(document.documentElement.dataset.frames) > {before + 3}", "frames again")
        assert not chromium.messages, chromium.messages


@check
async def a_browser_takes_another_token_into_the_same_tab():
    async with Server(MOVING) as server, browser.Browser() as chromium:
        await chromium.open(server.page + "#token=wrong")
        await chromium.until("!document.getElementById('login').hidden", "a question for the secret")
        await chromium.call("Page.navigate", url=server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 3", "frames")
        assert await chromium.evaluate("location.hash") == ""


@check
async def a_browser_moves_the_pointer():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, browser.Browser() as chromium, Viewer(server) as viewer:
        await chromium.open(server.address)
        await chromium.until("document.getElementById('state').textContent.startsWith('You are in control')", "control")
        await chromium.until("Number(document.documentElement.dataset.frames) > 0", "a picture to point at")
        await viewer.join()
        x, y, scale = await chromium.evaluate(
            "(() => { const c = document.getElementById('screen'), r = c.getBoundingClientRect();"
            " return [r.left, r.top, r.width / 1280]; })()")
        await chromium.call("Input.dispatchMouseEvent", type="mouseMoved", x=x + 200.5 * scale, y=y + 100.5 * scale)
        while True:
            head, _ = await viewer.until(POINTER_AT)
            place = struct.unpack("<ii", head)
            if abs(place[0] - 200) <= 1 and abs(place[1] - 100) <= 1:
                break


IN_CONTROL = "document.getElementById('state').textContent.startsWith('You are in control')"


async def press(chromium, key, code, modifiers=0, text=None):
    await chromium.call("Input.dispatchKeyEvent", type="keyDown", key=key, code=code, modifiers=modifiers,
                        windowsVirtualKeyCode={"Tab": 9, "Enter": 13}.get(key, 0), **({"text": text} if text else {}))
    await chromium.call("Input.dispatchKeyEvent", type="keyUp", key=key, code=code, modifiers=modifiers)


@check
async def a_browser_needs_no_mouse():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, browser.Browser() as chromium:
        await chromium.open(server.address)
        await chromium.until(IN_CONTROL, "control")
        focused = "document.activeElement.id"
        await chromium.until(f"{focused} === 'screen'", "the screen has the keyboard")
        # All keys are the screen's but the way out, and that leads to the buttons.
        await press(chromium, "Tab", "Tab")
        assert await chromium.evaluate(focused) == "screen"
        await press(chromium, "Shift", "ShiftLeft", modifiers=1 | 2 | 8)
        assert await chromium.evaluate(focused) == "full"
        await press(chromium, "Tab", "Tab", modifiers=8)
        assert await chromium.evaluate(focused) == "figures"
        await press(chromium, "Enter", "Enter", text="\r")
        await chromium.until("document.getElementById('overlay').textContent.includes('fps')", "figures")
        assert await chromium.evaluate("document.activeElement.getAttribute('aria-pressed')") == "true"
        # Every button says what it does, and the way back is a key, too.
        names = "Array.from(document.querySelectorAll('button')).every((b) => b.textContent.trim() && b.type)"
        assert await chromium.evaluate(names)
        for _ in range(2):
            await press(chromium, "Tab", "Tab")
        assert await chromium.evaluate(focused) == "screen", await chromium.evaluate(focused)


@check
async def a_browser_fills_the_screen():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, browser.Browser() as chromium:
        await chromium.open(server.address)
        await chromium.until("Number(document.documentElement.dataset.frames) > 0", "a frame")
        await chromium.evaluate("document.getElementById('full').click()", gesture=True)
        await chromium.until("document.fullscreenElement === document.documentElement", "full screen")
        assert await chromium.evaluate("document.activeElement.id") == "screen"
        await chromium.evaluate("document.getElementById('full').click()", gesture=True)
        await chromium.until("document.fullscreenElement === null", "a window again")
        assert not chromium.messages, chromium.messages


@check
async def a_browser_shares_its_clipboard():
    async with Server("--demo", environment={"DISPLAY": ""}) as server, browser.Browser() as chromium:
        await chromium.call("Browser.grantPermissions", permissions=["clipboardReadWrite", "clipboardSanitizedWrite"],
                            origin=server.page.rstrip("/"))
        await chromium.call("Emulation.setFocusEmulationEnabled", enabled=True)
        await chromium.open(server.address)
        await chromium.until(IN_CONTROL, "control")
        # More than one piece on the screen's side.
        await chromium.evaluate("navigator.clipboard.writeText('grün'.repeat(30000))", gesture=True)
        await chromium.evaluate("document.getElementById('paste').click()", gesture=True)
        await chromium.until("document.getElementById('state').textContent === 'The clipboard is on the screen.'", "a paste")
        await chromium.evaluate("navigator.clipboard.writeText('another')", gesture=True)
        await chromium.evaluate("document.getElementById('copy').click()", gesture=True)
        await chromium.until("document.getElementById('state').textContent === \"The screen's clipboard is on this device.\"", "a copy")
        assert await chromium.evaluate("navigator.clipboard.readText().then((text) => text === 'grün'.repeat(30000))", gesture=True)


@check
async def a_browser_follows_changes_of_size():
    with Screen() as screen:
        async with Server("--display", screen.display) as server, browser.Browser() as chromium:
            await chromium.open(server.address)
            await chromium.until("Number(document.documentElement.dataset.frames) > 0", "a frame")
            for width, height in ((801, 601), (902, 700)):
                await asyncio.to_thread(screen.resize, width, height)
                await chromium.until(f"document.getElementById('screen').width === {width} && "
                                     f"document.getElementById('screen').height === {height}", f"{width}x{height}")
            assert not chromium.messages, chromium.messages


async def tap(chromium, character):
    """Presses what a person presses for a letter or an underscore."""
    code = f"Key{character.upper()}" if character.isalpha() else "Minus"
    shift = 8 if character.isupper() or character == "_" else 0
    if shift:
        await chromium.call("Input.dispatchKeyEvent", type="keyDown", key="Shift", code="ShiftLeft", modifiers=shift, location=1)
    for kind in ("keyDown", "keyUp"):
        await chromium.call("Input.dispatchKeyEvent", type=kind, key=character, code=code, modifiers=shift)
    if shift:
        await chromium.call("Input.dispatchKeyEvent", type="keyUp", key="Shift", code="ShiftLeft", location=1)


@check
async def a_browser_types_into_a_terminal():
    with Screen() as screen, tempfile.TemporaryDirectory() as folder:
        typed = pathlib.Path(folder) / "typed"
        terminal = screen.start("xterm", "-geometry", "80x24+0+0", "-e", f"echo > {typed}; cat >> {typed}")
        async with Server("--display", screen.display) as server, browser.Browser() as chromium:
            await chromium.open(server.address)
            await chromium.until("document.getElementById('state').textContent.startsWith('You are in control')", "control")
            await chromium.until("Number(document.documentElement.dataset.frames) > 0", "a picture to point at")
            while not typed.exists():
                await asyncio.sleep(0.05)
            x, y = await chromium.evaluate(
                "(() => { const r = document.getElementById('screen').getBoundingClientRect(); return [r.left + 40, r.top + 40]; })()")
            for kind in ("mouseMoved", "mousePressed", "mouseReleased"):
                await chromium.call("Input.dispatchMouseEvent", type=kind, x=x, y=y, button="left", clickCount=1)
            for character in "Hi_there":
                await tap(chromium, character)
            for kind in ("keyDown", "keyUp"):
                await chromium.call("Input.dispatchKeyEvent", type=kind, key="Enter", code="Enter")
            while typed.read_text().strip() != "Hi_there":
                await asyncio.sleep(0.05)
        terminal.terminate()
        terminal.wait()


@check
async def a_browser_comes_back_to_a_server_that_was_killed():
    with tempfile.TemporaryDirectory() as folder:
        token = pathlib.Path(folder) / "token"
        token.write_text("0123456789abcdef0123456789abcdef\n")
        os.chmod(token, 0o600)
        async with browser.Browser() as chromium:
            async with Server(MOVING, "--token-file", str(token)) as server:
                await chromium.open(server.page + "#token=0123456789abcdef0123456789abcdef")
                await chromium.until("Number(document.documentElement.dataset.frames) > 5", "frames")
                server.process.kill()
            before = await chromium.evaluate("Number(document.documentElement.dataset.frames)")
            async with Server(MOVING, "--token-file", str(token), "--port", str(server.port)):
                await chromium.until(f"Number(document.documentElement.dataset.frames) > {before + 5}", "frames again")


def in_a_private_system(name):
    """Runs another of the checks where mounts are its own; nothing outside changes."""
    run = subprocess.run(["unshare", "--mount", "--propagation", "private", sys.executable, __file__, name])
    assert run.returncode == 0


def replace(path, text):
    """Another file in the place of an existing one, or one more in a directory that becomes changeable."""
    target = pathlib.Path(path)
    if not target.exists():
        room = tempfile.mkdtemp(dir="/run")
        subprocess.run(["mount", "-t", "tmpfs", "zyr-test", room], check=True)
        for name in ("upper", "work"):
            os.mkdir(f"{room}/{name}")
        subprocess.run(["mount", "-t", "overlay", "zyr-test", "-o",
                        f"lowerdir={target.parent},upperdir={room}/upper,workdir={room}/work", target.parent], check=True)
    target.write_text(text)


def add_line(path, line):
    """Lets a line follow the text of an existing file, behind a mount on /run."""
    copy = pathlib.Path("/run") / pathlib.Path(path).name
    copy.write_text(pathlib.Path(path).read_text() + line)
    subprocess.run(["mount", "--bind", copy, path], check=True)


@check
async def an_account_that_does_not_exist_is_refused_at_once():
    with tempfile.TemporaryDirectory() as folder:
        run = subprocess.run([HOST, "serve", "--log-dir", folder, "--user", "root", "--user", "no\tbody", MOVING],
                             capture_output=True, text=True, timeout=60)
        assert run.returncode == 2, run
        assert run.stdout == "", run
        assert run.stderr == "zyr-host: there is no account no?body\n", run
        assert not os.listdir(folder), "nothing was begun"


@check
async def accounts_come_in_by_their_passwords():
    in_a_private_system("accounts_of_a_private_system")


@check
async def accounts_of_a_private_system():
    subprocess.run(["mount", "-t", "tmpfs", "zyr-test", "/run"], check=True)
    module = os.environ["ZYR_TEST_PAM_MODULE"]
    replace("/etc/pam.d/zyr-other", "")
    for service in ("login", "system"):
        replace(f"/etc/pam.d/{service}", f"auth required {module} password=secret\naccount required {module}\n")
    add_line("/etc/passwd", "carol:x:48131:48131::/:/bin/sh\ndave:x:48132:48132::/:/bin/sh\n")

    async def say(server, user, password):
        async with Viewer(server) as viewer:
            await viewer.send(HELLO, hello(password, user=user))
            kind, head, _ = await viewer.receive()
            return "welcome" if kind == WELCOME else struct.unpack_from("<H", head)[0]

    async with Server(MOVING, "--user", "carol", "--user", "dave") as server:
        assert server.token == "", "a token beside the accounts"
        assert await say(server, "carol", "secret") == "welcome"
        assert await say(server, "dave", "secret") == "welcome"
        assert await say(server, "carol", "Secret") == 1
        assert await say(server, "erin", "secret") == 1, "an account that was not named"
        assert await say(server, "", "secret") == 1, "a token that is a password"
        assert await say(server, "", "") == 1
        log = server.log()
        assert "looks on as carol" in log and "ecret" not in log.replace("wrong secret", ""), log


@check
async def root_becomes_the_user_at_the_console():
    in_a_private_system("console_of_a_private_system")


@check
async def console_of_a_private_system():
    subprocess.run(["mount", "-t", "tmpfs", "zyr-test", "/run"], check=True)
    for name in ("seats", "sessions", "users", "machines"):
        os.makedirs(f"/run/systemd/{name}")
    pathlib.Path("/run/systemd/sessions/7").write_text("UID=48123\nSTATE=active\nCLASS=user\nSEAT=seat0\n")
    pathlib.Path("/run/systemd/seats/seat0").write_text("ACTIVE=7\nACTIVE_UID=48123\n")
    os.mkdir("/run/home")
    os.chown("/run/home", 48123, 48124)
    add_line("/etc/passwd", "console:x:48123:48124::/run/home:/bin/sh\n")
    add_line("/etc/group", "console:x:48124:\n")
    with Screen() as screen:
        async with Server(logs="/run/home/log", environment={"DISPLAY": screen.display}) as server, Viewer(server) as viewer:
            status = pathlib.Path(f"/proc/{server.process.pid}/status").read_text()
            assert re.search(r"^Uid:\t48123\t48123\t48123\t48123$", status, re.M), status
            assert re.search(r"^Gid:\t48124\t48124\t48124\t48124$", status, re.M), status
            assert re.search(r"^Groups:\s*48124\s*$", status, re.M), status
            assert "runs as console, the user at the console" in server.log(), server.log()
            await viewer.join()
            await viewer.until(FRAME)
            assert os.stat("/run/home/log").st_uid == 48123


if __name__ == "__main__":
    asyncio.run(CHECKS[sys.argv[1]]())
