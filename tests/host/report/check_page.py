#!/usr/bin/env python3
"""check_page.py FILE: opens a report page in Chromium and looks at it, wide, narrow and on paper.

The page may complain of nothing, fetch nothing, and need no scripts.
"""
import asyncio
import json
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "live"))
import browser


async def look(file):
    async with browser.Browser() as chromium:
        # The page is shown as it is where scripts are off.
        await chromium.call("Emulation.setScriptExecutionDisabled", value=True)
        requests = []
        await chromium.call("Network.enable")
        await chromium.call("Log.enable")
        receive = chromium.socket.recv

        async def watch(*arguments):
            text = await receive(*arguments)
            message = json.loads(text)
            if message.get("method") == "Network.requestWillBeSent":
                requests.append(message["params"]["request"]["url"][:80])
            if message.get("method") == "Log.entryAdded":
                chromium.messages.append(message["params"]["entry"]["text"])
            return text

        chromium.socket.recv = watch
        await chromium.open(pathlib.Path(file).resolve().as_uri())
        await chromium.until("document.readyState == 'complete' && document.querySelectorAll('svg').length > 0", "the plots")
        fetched = [r for r in requests if not r.startswith(("file:", "data:", "about:"))]
        assert not fetched, fetched
        images = await chromium.evaluate("[...document.images].map(i => i.naturalWidth)")
        assert all(images), images
        for width in (1400, 800, 360):
            await chromium.call("Emulation.setDeviceMetricsOverride", width=width, height=800, deviceScaleFactor=1, mobile=width < 500)
            across = await chromium.evaluate("document.documentElement.scrollWidth")
            assert across <= width, f"{across} pixels on a screen of {width}"
        await chromium.call("Emulation.setEmulatedMedia", media="print")
        ink = await chromium.evaluate("getComputedStyle(document.body).color")
        assert ink == "rgb(0, 0, 0)", ink
        assert not chromium.messages, chromium.messages
        print(len(images), "pictures")


asyncio.run(look(sys.argv[1]))
