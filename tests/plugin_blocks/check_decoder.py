#!/usr/bin/env python3
"""Decodes the stored streams (an argument: their folder) with the decoder that was written from the document."""
import hashlib
import pathlib
import struct
import sys

sys.dont_write_bytecode = True
import blocks_decoder  # noqa: E402

streams = sorted(pathlib.Path(sys.argv[1]).glob("*.blocks"))
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
    try:
        decoder.decode(data[4:10])
    except blocks_decoder.Damaged:
        pass
    else:
        raise AssertionError("a packet that is cut short was taken")
print(f"{len(streams)} streams decoded")
