#!/usr/bin/env python3
"""Decodes the stored streams (an argument: their folder) in Chromium, with the decoder for pages, and compares what a canvas
then shows. Ends with 77, and the reason, where the browser or what drives it is not installed."""
import asyncio
import functools
import http.server
import json
import pathlib
import sys
import threading

sys.dont_write_bytecode = True
TREE = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(TREE / "tests/host/live"))
try:
    import browser
except ImportError:
    print("this machine has no python3-websockets")
    sys.exit(77)
if not browser.is_there():
    print("this machine has no Chromium")
    sys.exit(77)

# The digest of the canvas behind each packet of a stream.
SCRIPT = """(async () => {
    const { BlocksDecoder } = await import('/src/plugin_blocks/js/zyr_blocks_decoder.js');
    const data = new Uint8Array(await (await fetch(%s)).arrayBuffer());
    const view = new DataView(data.buffer), decoder = new BlocksDecoder(), digests = [];
    const canvas = document.createElement('canvas');
    for (let at = 0; at < data.length;) {
        const size = view.getUint32(at, true);
        decoder.decode(data.subarray(at + 4, at + 4 + size));
        at += 4 + size;
        canvas.width = decoder.width;
        canvas.height = decoder.height;
        const context = canvas.getContext('2d', { willReadFrequently: true });
        context.putImageData(new ImageData(decoder.pixels, decoder.width, decoder.height), 0, 0);
        const shown = context.getImageData(0, 0, decoder.width, decoder.height).data;
        const digest = new Uint8Array(await crypto.subtle.digest('SHA-1', shown));
        digests.push(Array.from(digest, (byte) => byte.toString(16).padStart(2, '0')).join(''));
    }
    return digests;
})()"""


class Files(http.server.SimpleHTTPRequestHandler):
    extensions_map = {".js": "text/javascript", "": "application/octet-stream"}

    def log_message(self, *_):
        pass


async def check(folder, port):
    streams = sorted(folder.glob("*.blocks"))
    assert streams, "no stored streams"
    async with browser.Browser() as page:
        await page.open(f"http://127.0.0.1:{port}/tests/data/README.md")
        await page.until("location.port !== '' && document.readyState === 'complete'", "the page of the server")
        for path in streams:
            address = json.dumps(f"/{path.relative_to(TREE)}")
            digests = path.with_suffix(".sha1").read_text().split()
            assert await page.evaluate(SCRIPT % address) == digests, f"{path.name}: pictures are other ones"
    print(f"{len(streams)} streams decoded")


with http.server.ThreadingHTTPServer(("127.0.0.1", 0), functools.partial(Files, directory=str(TREE))) as server:
    threading.Thread(target=server.serve_forever, daemon=True).start()
    asyncio.run(check(pathlib.Path(sys.argv[1]).resolve(), server.server_address[1]))
    server.shutdown()
