#!/usr/bin/env python3
"""Decodes the stored streams (an argument: their folder) with the decoder that was written from the document, and then a
hundred thousand damaged packets: each is taken or refused as damaged, and the next key frame is decoded."""
import hashlib
import pathlib
import random
import struct
import sys
import zlib

sys.dont_write_bytecode = True
import blocks_decoder  # noqa: E402

SIDE = 8


def key_frame(kind, argument, compression, **streams):
    """One block, its streams by their bits."""
    mask, body = 0, b""
    for bit, data in sorted({0: bytes([kind | argument << 4]), **{int(k[1:]): v for k, v in streams.items()}}.items()):
        mask |= 1 << bit
        packed = zlib.compress(data) if compression == 3 and len(data) > 40 else b""
        for number in (2 * len(data) + (packed != b""), len(packed)):
            if number:
                body += bytes([number]) if number < 128 else bytes([number % 128 + 128, number // 128])
        body += packed or data
    return bytes([2, 5, compression, 0, 0, SIDE, SIDE]) + struct.pack("<H", mask) + body


def decode_streams(folder):
    streams = sorted(folder.glob("*.blocks"))
    assert streams, "no stored streams"
    for path in streams:
        data, at, decoder = path.read_bytes(), 0, blocks_decoder.Decoder()
        for number, digest in enumerate(path.with_suffix(".sha1").read_text().split()):
            size, = struct.unpack_from("<I", data, at)
            decoder.decode(data[at + 4:at + 4 + size])
            at += 4 + size
            found = hashlib.sha1(decoder.rgba()).hexdigest()
            assert found == digest, f"{path.name}: picture {number} is another one"
        assert at == len(data), f"{path.name}: packets left over"
    return len(streams)


def decode_edges(path):
    """Packets at the edges of the format: a name, what becomes of the last packet, and all in hexadecimal."""
    lines = path.read_text().splitlines()
    assert lines, "no packets at the edges"
    for line in lines:
        name, verdict, *packets = line.split()
        decoder = blocks_decoder.Decoder()
        for packet in packets[:-1]:
            decoder.decode(bytes.fromhex(packet))
        try:
            decoder.decode(bytes.fromhex(packets[-1]))
            found = hashlib.sha1(decoder.rgba()).hexdigest()
        except blocks_decoder.Damaged:
            found = "refused"
        assert found == verdict, f"{name}: {found}"


def decode_damaged(count):
    dice = random.Random(7)
    noise = dice.randbytes(3 * SIDE * SIDE)
    keys = [key_frame(7, 0, 2, s13=noise), key_frame(0, 0, 1, s2=b"\x10\x20\x30"), key_frame(1, 0, 2, s2=noise[:6], s3=noise[:8]),
            key_frame(3, 0, 1, s2=b"\x0f" + noise[:48], s5=noise[:32]), key_frame(5, 8, 2, s10=bytes(64), s11=bytes(128)),
            key_frame(5, 1, 3, s10=noise[:64], s11=bytes(64), s12=noise[64:128]), key_frame(5, 6, 2, s8=bytes(12))]
    decoder = blocks_decoder.Decoder()
    pictures = []
    for key in keys:
        decoder.decode(key)
        pictures.append(decoder.rgba())
    refused = 0
    for i in range(count):
        damaged = bytearray(keys[i % len(keys)])
        for _ in range(dice.randint(1, 3)):
            damaged[dice.randrange(len(damaged) if i % 2 else min(24, len(damaged)))] = dice.randrange(256)
        try:
            decoder.decode(bytes(damaged[:dice.randrange(len(damaged))] if dice.randrange(8) == 0 else damaged))
        except blocks_decoder.Damaged:
            refused += 1
        if i % 500 < len(keys):
            decoder.decode(keys[i % 500])
            assert decoder.rgba() == pictures[i % 500], "the key frame behind damaged packets is another one"
    assert refused > count // 3, f"too few packets were refused: {refused}"


decoded = decode_streams(pathlib.Path(sys.argv[1]))
decode_edges(pathlib.Path(sys.argv[1]) / "edges.txt")
decode_damaged(100000)
print(f"{decoded} streams decoded")
