"""A client of another make: sends each message that a server sends back, whole and in fragments.

    websocket_peer.py PORT CERTIFICATE
"""
import asyncio
import ssl
import struct
import sys

import websockets


def make_message(number, payload):
    return b"zyrM" + struct.pack("<IIIQ", 7, number, 0, len(payload)) + payload


async def main():
    context = ssl.create_default_context(cafile=sys.argv[2])
    async with websockets.connect(f"wss://localhost:{sys.argv[1]}/live", ssl=context, subprotocols=["zyr"],
                                  max_size=None, compression=None) as peer:
        assert peer.subprotocol == "zyr", peer.subprotocol
        for number, size in enumerate([0, 1, 125 - 24, 126 - 24, 65535 - 24, 65536 - 24, 1000000], 1):
            message = make_message(number, bytes(i * 7 & 255 for i in range(size)))
            await peer.send(message)
            assert (await peer.recv())[24:] == message[24:], size
            await peer.send([message[:5], message[5:30], message[30:]])
            assert (await peer.recv())[24:] == message[24:], size
        await (await peer.ping(b"are you there"))
    print("closed with", peer.close_code)


asyncio.run(main())
