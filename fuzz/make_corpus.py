#!/usr/bin/env python3
"""Writes the seeds of the fuzzers, a file each, into fuzz/corpus.

    fuzz/make_corpus.py PROGRAM      PROGRAM: a built zyr-host, which codes the packets of the decoder's seeds

Inputs that a fuzzer found to break something are added by hand, under a name that says what broke.
"""
import pathlib
import struct
import subprocess
import sys
import tempfile

CORPUS = pathlib.Path(__file__).parent / "corpus"

# The first byte of a lexer's seed chooses its words, see fuzz_lexer.cpp.
LEXER = {
    "empty": (31, b""),
    "every-kind": (31, b"M10 -2.5e+3 let x_1 = (a -> b), // end\n/* two\nlines */ letter\r\n7"),
    "no-words": (0, b"abc"),
    "number-cut-short": (4, b"1e 1e+ .5 5. 0x 00012 99999999999999999999999999"),
    "open-comment": (31, b"a /* b"),
    "no-token": (31, b"a $ b"),
    "zero-byte": (31, b"a\0b"),
    "not-utf8": (31, b"\xff\xfe \xc3\x28 \xe2\x82"),
}

# The first byte of a seed of documents chooses the reader, see fuzz_documents.cpp.
DOCUMENTS = {
    "json-kinds": (0, b'\xef\xbb\xbf {"a": [1, -2.5e+3, "t", true, false, null, {"b": {}}, []], "c": "d"}'),
    "json-escapes": (0, b'["\\u00e4\\ud834\\udd1e\\"\\\\\\/\\b\\f\\n\\r\\t", "\\u0000"]'),
    "json-equal-keys": (0, b'{"a":1,"a":{"b":1},"a":{"b":2},"a":3}'),
    "json-lone-surrogate": (0, b'["\\ud800"]'),
    "json-cut-short": (0, b'{"a": [1, "\\'),
    "json-faulty-number": (0, b"[01]"),
    "json-not-utf8": (0, b'["\xc3"]'),
    "json-too-deep": (0, b"[" * 1001),
    "xml-kinds": (1, b"<?xml version='1.0' encoding='utf-8'?><!DOCTYPE a [<!ENTITY b 'c'>]><!-- d -->"
                     b"<a b='c&lt;\r\n' e=\"f\">g&#65;<h/><![CDATA[<i>\r]]>\r\n<?j k?><l>m</l></a><?n?>"),
    "xml-bomb": (1, b"<!DOCTYPE a [<!ENTITY b 'lol'><!ENTITY c '&b;&b;&b;&b;'>]><a>&c;&c;</a>"),
    "xml-numeric-references": (1, b"<a>&#0;&#x110000;&#99999999999999999999;</a>"),
    "xml-cut-short": (1, b"<a><![CDATA[b]]"),
    "xml-open-type": (1, b"<!DOCTYPE a ['"),
    "xml-wrong-end": (1, b"<a><b></a></b>"),
    "xml-attribute-twice": (1, b"<a b='' b=''/>"),
    "xml-too-deep": (1, b"<a>" * 1001),
    "config-kinds": (2, b'# a\nb = 1 ; c\r\n[d e]\nf = "g \\"h\\\\ \\n" # i\n[d e]\nj=\n'),
    "config-faults": (2, b'a\n=b\n[c\n[]\nd="e\nf="\\q"\ng="h" i'),
    "binary-blocks": (3, b"\x00\x21\x02\x03\x39\x04\0\0\x02\0\0\0\0\0\0\0\x01\x02"),
    "binary-numbers": (3, b"\x36\x25\x47\x08\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\xff\x02"),
    "binary-huge-block": (3, b"\x00\xff\xff\xff\xff\xff\xff\xff\xff\x11"),
}

SVG_PATH = {
    "every-letter": b"M10,20L30 40H5V6C1 2 3 4 5 6S7 8 9 10Q1 2 3 4T5 6A10 20 30 0 1 40 50Z",
    "relative": b"m1-2l3-4h5v-6c1 2 3 4 5 6s7 8 9 10q1 2 3 4t5 6a1 2 3 1 0 4 5z",
    "repeated-groups": b"M0 0 10 10 20 0 C1 2 3 4 5 6 7 8 9 10 11 12",
    "number-first": b"10 20 M0 0",
    "group-cut-short": b"M10 20 L30",
    "exponents": b"M1e3,-1.5E-2L.5.5",
    "tab": b"M1\t2",
    "number-too-large": b"M10 3e1530",
    "sum-too-large": b"m1e308 0m1e308 0",
}

LAYOUT = {
    "siblings": b"""{"type": "int32", "root": {"x": 3, "width": 40, "height": 30, "border": 3, "vSeparators": [5, 9],
        "children": [{"name": "a", "x": 1, "xAnchor": "V_SEPARATOR_2", "width": -2, "widthAnchor": "NEXT_LEFT"},
        {"x": 7, "xAnchor": "PARENT_WIDTH_PERCENT_WITHOUT_WIDTH", "width": 9, "widthAnchor": "WIDTH_NEWLINE"},
        {"y": 2147483647, "yAnchor": "PREV_BOTTOM", "heightAnchor": "BOTTOM", "minHeight": -4, "maxHeight": 5}]}}""",
    "contents": b"""{"root": {"width": 40, "height": 30, "children": [{"widthAnchor": "CONTENT_WIDTH",
        "heightAnchor": "RATIO_ASPECT", "children": [{"heightAnchor": "CONTENT_HEIGHT_NO_DS", "contentScale": 0,
        "children": [{"x": -1, "xAnchor": "RIGHT", "width": 8, "height": 4}]}]}]}}""",
    "points": b"""{"type": "int64", "marks": ["x"], "root": {"width": 9, "height": 9, "children": [
        {"point": true, "x": 5}, {"point": true, "x": 9223372036854775807, "xAnchor": 5},
        {"point": true, "previous": {"x": 1, "y": 2}, "yAnchor": "PREV_TOP"}]}}""",
    "boxes": b"""{"type": "double", "space": "box", "view": "zy", "root": {"width": 9, "height": 9, "depth": 9,
        "children": [{"z": 50, "zAnchor": "PARENT_DEPTH_PERCENT", "depth": 2, "depthAnchor": "RATIO"},
        {"zAnchor": "PREV_FAR"}, {"point": true, "z": -1, "zAnchor": "FAR"}]}}""",
    "not-a-number": b"""{"title": "<&>", "root": {"width": 1e30, "height": 1e30, "children": [
        {"name": "none", "widthAnchor": "RATIO", "content": {"width": 1e38, "height": 1}, "children": [{}]}]}}""",
    "waiting-siblings": b"""{"root": {"width": 1, "height": 1, "children": [
        {"xAnchor": "NEXT_LEFT"}, {"xAnchor": "PREV_LEFT", "children": [{}]}]}}""",
    "key-twice": b'{"root": {"width": 1, "height": 1, "width": 2}}',
    "too-deep": b'{"root": ' + b"[" * 200 + b"]" * 200 + b"}",
    "number-too-large": b'{"type": "double", "root": {"width": 1e999, "height": 1}}',
    "cut-short": b'{"root": {"width": 1,\n "hei',
    "not-utf8": b'{"title": "\xff", "root": {"width": 1, "height": 1}}',
}

TEXT = {
    "empty": b"",
    "number": b"-12345.678901e-7",
    "huge-number": b"9" * 400 + b"e999",
    "guid": b"8d3bfe60-d157-4077-8ff0-68af1abc390d",
    "guid-cut-short": b"8d3bfe60-d157-4",
    "list": b"a, b,,c , ,",
    "brackets": b"name[a[b],3..7]rest(12)",
    "open-bracket": b"name[a[b",
    "range": b"3..7",
    "path": b"a\\b/../c//name.tar.gz",
    "pattern": b"a*b**c*",
    "utf8": "\u00e4\u20ac\U0001f600".encode(),
    "not-utf8": b"\xff\xc3\xe2\x82\xf0\x9f",
    "lines": b"one\r\ntwo\rthree\n\nfive",
}

COMPRESSION = {
    "text": b"\x10" + b"the quick brown fox " * 20,
    "zeros": b"\x00" + bytes(300),
    "lz4-offset-out-of-range": b"\xff\x1fA\xff\xff\x00",
    "zlib-header": b"\xff\x78\x9c\x03\x00\x00\x00\x00\x01",
}


def makeBlocksSeeds():
    """The tests' stored streams: whole, without their key frame, and damaged."""
    seeds = {}
    for path in sorted((CORPUS.parent.parent / "tests/data/blocks").glob("*.blocks")):
        data, place, packets = path.read_bytes(), 0, []
        while place < len(data):
            size = struct.unpack_from("<I", data, place)[0]
            packets.append(data[place + 4:place + 4 + size])
            place += 4 + size
        damaged = bytearray(packets[-1])
        damaged[len(damaged) // 2] ^= 0x55
        for name, chosen in (("stream", packets[2:]), ("no-key-frame", packets[1:4]),
                             ("damaged", [bytes(damaged), packets[-1][:40]])):
            if name != "stream" or path.stem == "rle":
                seeds[f"{path.stem}-{name}"] = b"".join(struct.pack("<H", len(p)) + p for p in chosen)
    return seeds


def readIvf(path):
    data = path.read_bytes()
    place = struct.unpack_from("<H", data, 6)[0]
    packets = []
    while place + 12 <= len(data):
        size = struct.unpack_from("<I", data, place)[0]
        packets.append(data[place + 12:place + 12 + size])
        place += 12 + size
    return packets


def codePackets(program, directory, codec, name):
    """Three frames of 32x24, as packets."""
    path = pathlib.Path(directory) / name
    subprocess.run([program, "stream", "generate:32x24:3", "--codec", codec, "--packets", str(path), "--no-progress",
                    "--log-dir", directory], check=True, stdout=subprocess.DEVNULL)
    if name.endswith(".ivf"):
        return readIvf(path)
    # One picture after the other, as they stand in the container: cut where a picture begins.
    raw = pathlib.Path(directory) / "raw.m1v"
    subprocess.run(["ffmpeg", "-v", "error", "-i", str(path), "-c", "copy", "-f", "mpeg1video", str(raw)], check=True)
    data = raw.read_bytes()
    starts = [i for i in range(len(data)) if data.startswith(b"\0\0\1\xb3", i) or data.startswith(b"\0\0\1\0", i)]
    # A picture behind a sequence header belongs to it.
    cuts = [s for n, s in enumerate(starts) if n == 0 or data[starts[n - 1] + 3] != 0xB3]
    return [data[a:b] for a, b in zip(cuts, cuts[1:] + [len(data)])]


def joinPackets(way, packets):
    return bytes([way]) + b"".join(struct.pack("<H", len(p)) + p for p in packets)


def makeDecoderSeeds(program):
    with tempfile.TemporaryDirectory() as directory:
        vp9 = codePackets(program, directory, "vp9", "seed.ivf")
        mpeg1 = codePackets(program, directory, "mpeg1video", "seed.mpg")
    seeds = {}
    # The ways of decoding in list order: vp9, libvpx-vp9, mpeg1video.
    for way, name, own, foreign in ((0, "vp9", vp9, mpeg1), (1, "libvpx-vp9", vp9, mpeg1), (2, "mpeg1video", mpeg1, vp9)):
        seeds[f"{name}-stream"] = joinPackets(way, own)
        seeds[f"{name}-foreign-then-own"] = joinPackets(way, foreign[:1] + own)
        seeds[f"{name}-no-key-frame"] = joinPackets(way, own[1:])
        seeds[f"{name}-empty-packet"] = joinPackets(way, [b""] + own[:1])
        seeds[f"{name}-cut-short"] = joinPackets(way, own)[:-len(own[-1]) // 2]
    return seeds


def readPack(path):
    """The files of a pack of golden files, see tests/data/README.md."""
    data = path.read_bytes()
    place = 0
    while place < len(data):
        end = data.index(b"\n", place)
        name, size = data[place:end].decode().rsplit(" ", 1)
        yield name, data[end + 1:end + 1 + int(size)]
        place = end + 1 + int(size) + 1


def makeSavedSeeds(word):
    """Golden files of each class that stores something; of maps those of two types of keys."""
    seeds = {}
    for name, data in readPack(CORPUS.parent.parent / "tests/data/objects" / f"golden.{word}.pack"):
        kind, _, thing = name.partition("/")
        if kind in ("filled", "odd") and ("{" not in thing or thing.endswith(("{int32}", "{String}"))):
            seeds[thing.replace("{", "-").rstrip("}")] = data[32:] if word in ("raw", "zbf") else data
    return seeds


def makeLoadSeeds():
    """The first byte chooses the format and the way, see fuzz_load.cpp."""
    seeds = {}
    for number, word in enumerate(("raw", "zbf", "xml", "json")):
        for name, data in readPack(CORPUS.parent.parent / "tests/data/objects" / f"golden.{word}.pack"):
            if name in ("filled/NativeFormatInfo", "odd/nested", "odd/zip", "odd/lz4", "odd/deferred"):
                thing = name.split("/")[1]
                seeds[f"{word}-{thing}"] = bytes([number + 4]) + data
                seeds[f"{word}-{thing}-file"] = bytes([number + 8]) + data
        seeds[f"{word}-wrong-hash"] = bytes([number]) + data[:-1] + b"x"
        seeds[f"{word}-cut-short"] = bytes([number]) + data[:20]
        seeds[f"{word}-as-next"] = bytes([(number + 1) % 4]) + data
    return seeds


def message(payload=b"", header=b"", announced=None, magic=b"zyrM", flags=0):
    """A message of the transports' framing; what it announces can differ from what it has."""
    header_size, size = announced or (len(header), len(payload))
    return magic + struct.pack("<IIIQ", 7, 1, header_size | flags, size) + header + payload


def frame(first, payload, mask=b"\1\2\3\4", size=None):
    """A WebSocket frame of a client; mask None leaves it plain."""
    size = len(payload) if size is None else size
    masked = 0x80 if mask else 0
    head = bytes([first, masked | size]) if size < 126 else \
        bytes([first, masked | 126]) + struct.pack(">H", size) if size < 65536 else \
        bytes([first, masked | 127]) + struct.pack(">Q", size)
    return head + (mask or b"") + bytes(b ^ mask[i % 4] if mask else b for i, b in enumerate(payload))


def request(fields=b"", line=b"GET /live HTTP/1.1"):
    return line + b"\r\nHost: a\r\n" + fields + b"\r\n"


# The first byte of a transport's seed chooses who listens, the second the size of the pieces, see fuzz_transport.cpp.
UPGRADE = (b"Upgrade: websocket\r\nConnection: Upgrade\r\nSec-WebSocket-Version: 13\r\n"
           b"Sec-WebSocket-Key: dGhlIHNhbXBsZSBub25jZQ==\r\n")
TRANSPORT = {
    "frames-two": (0, 0, message(b"payload", b"header") + message()),
    "frames-by-bytes": (0, 1, message(b"payload", b"header") + message(b"x")),
    "frames-object": (0, 0, message(b"", b"no object", flags=1 << 31)),
    "frames-too-big": (0, 0, message(announced=(0, 1 << 20))),
    "frames-wrapped": (0, 0, message(announced=(16, (1 << 64) - 15))),
    "frames-header-too-big": (0, 0, message(announced=(1001, 0))),
    "frames-cut-short": (0, 0, message(b"four", announced=(0, 5))),
    "frames-other": (0, 0, message(magic=b"GET ")),
    "http-file": (1, 0, request(line=b"GET / HTTP/1.1") + request(line=b"HEAD /null?x HTTP/1.1")),
    "http-by-bytes": (1, 1, request(b"A: b\r\n", b"GET /%6eull HTTP/1.0")),
    "http-traversal": (1, 0, b"".join(request(line=b"GET " + path + b" HTTP/1.1") for path in (
        b"/../etc/passwd", b"/%2e%2e/etc/passwd", b"/.hidden", b"//a", b"/fd/0"))),
    "http-zero-byte": (1, 0, request(line=b"GET /a%00b HTTP/1.1")),
    "http-body": (1, 0, request(b"Content-Length: 5\r\n", b"POST / HTTP/1.1") + b"body!"),
    "http-folded": (1, 0, request(b"A: b\r\n c\r\n")),
    "http-bare-newline": (1, 0, b"GET / HTTP/1.1\nHost: a\n\n"),
    "http-too-long": (1, 0, request(b"A: " + b"b" * 3000 + b"\r\n")),
    "http-many-fields": (1, 0, request(b"a:\r\n" * 101)),
    "http-upgrade": (1, 0, request(UPGRADE) + frame(0x82, message(b"payload"))),
    "http-upgrade-wrong-key": (1, 0, request(UPGRADE.replace(b"dGhl", b"!!!!"))),
    "socket-message": (2, 0, frame(0x82, message(b"payload", b"header"))),
    "socket-fragments": (2, 1, frame(0x02, message(b"payload")[:5]) + frame(0x89, b"ping") + frame(0x80, message(b"payload")[5:])),
    "socket-long": (2, 0, frame(0x82, message(b"p" * 60000))),
    "socket-close": (2, 0, frame(0x88, b"\3\xe8bye")),
    "socket-close-code": (2, 0, frame(0x88, b"\0\1")),
    "socket-text": (2, 0, frame(0x81, b"text")),
    "socket-plain": (2, 0, frame(0x82, message(), mask=None)),
    "socket-reserved": (2, 0, frame(0xf2, message())),
    "socket-opcode": (2, 0, frame(0x83, b"")),
    "socket-too-big": (2, 0, frame(0x82, message(announced=(0, 1 << 20)), size=1 << 40)),
    "socket-ping-too-long": (2, 0, frame(0x89, b"p" * 126)),
    "socket-continuation-first": (2, 0, frame(0x80, message())),
    "client-refused": (3, 0, b"HTTP/1.1 403 Forbidden\r\nContent-Length: 0\r\n\r\n"),
    "client-wrong-accept": (3, 0, b"HTTP/1.1 101 a\r\nUpgrade: websocket\r\nConnection: Upgrade\r\n"
                                  b"Sec-WebSocket-Accept: s3pPLMBiTxaQ9kYGzzhZRbK+xOo=\r\n\r\n"),
    "client-no-status": (3, 3, b"HTTP/1.1 1x1 a\r\n\r\n"),
}


def said(kind, head=b"", payload=b""):
    """A message of a live screen's viewer, whose payload is a multiple of ten bytes, see fuzz_live.cpp."""
    return bytes([kind, len(head), len(payload) // 10]) + head + payload


def hello(user=b"", secret=b"0123456789abcdef", version=1, codecs=3):
    return said(1, struct.pack("<IIB", version, 1, codecs) + struct.pack("<H", len(user)) + user +
                struct.pack("<H", len(secret)) + secret)


# Behind a 1 the viewer has been let in.
LIVE = {
    "hello": b"\0" + hello(),
    "hello-twice": b"\1" + hello(),
    "hello-wrong": b"\0" + hello(secret=b"x"),
    "hello-user": b"\0" + hello(user=b"root"),
    "hello-version": b"\0" + hello(version=2),
    "hello-no-codec": b"\0" + hello(codecs=0),
    "hello-cut-short": b"\0" + said(1, b"\1\0\0\0"),
    "hello-long-text": b"\0" + said(1, struct.pack("<IIBHH", 1, 0, 3, 0, 65535) + b"short"),
    "nothing-first": b"\0" + said(2, bytes(12)),
    "all": b"\1" + b"".join((
        said(2, struct.pack("<III", 1, 2, 3)), said(3, struct.pack("<I", 3)), said(4, struct.pack("<iiH", -1, 1 << 30, 65535)),
        said(5, b"\x80\x7f"), said(6, struct.pack("<IHB", 0xFFFFFF, 65535, 1)), said(7), said(8, b"", b"gr\xc3\xbc\xc3\x9fe!!!"[:10]),
        said(9), said(10, b"\1"), said(11, bytes(8)))),
    "acknowledge-nothing": b"\1" + said(2, struct.pack("<III", 0xFFFFFFFF, 0, 0)),
    "key-cut-short": b"\1" + said(6, b"\1\2"),
    "ping-cut-short": b"\1" + said(11, bytes(7)),
    "of-the-server": b"\1" + said(66, bytes(40), bytes(100)),
    "unknown": b"\1" + said(255),
}


def write(name, seeds):
    directory = CORPUS / name
    directory.mkdir(parents=True, exist_ok=True)
    for seed, data in seeds.items():
        (directory / seed).write_bytes(data)


if len(sys.argv) != 2:
    sys.exit(__doc__)
write("lexer", {name: bytes([words]) + text for name, (words, text) in LEXER.items()})
write("documents", {name: bytes([reader]) + text for name, (reader, text) in DOCUMENTS.items()})
write("svg_path", SVG_PATH)
write("layout", LAYOUT)
write("text", TEXT)
write("transport", {name: bytes([kind, size]) + data for name, (kind, size, data) in TRANSPORT.items()})
write("live", LIVE)
write("compression", COMPRESSION)
write("blocks", makeBlocksSeeds())
write("load", makeLoadSeeds())
for form in ("raw", "zbf", "xml", "json"):
    write(f"saved_{form}", makeSavedSeeds(form))
write("decoder", makeDecoderSeeds(sys.argv[1]))
