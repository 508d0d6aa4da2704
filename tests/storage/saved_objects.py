"""Reads saved objects in each of the four formats. Written from docs/formats.md, with nothing of the library.

The binary formats give fields as [name, kind, value]; JSON and XML don't tell kinds, so their readers give the document
and `same` compares it with fields of known kinds.
"""

import json
import re
import struct
import xml.etree.ElementTree
import zlib

KINDS = [None, "bool", "int32", "uint32", "int64", "uint64", "float", "double", "text", "sharedtext", "enum", "record",
         "object", "records", "texts", "floats", "doubles", "uint32s", "enums"]
WRAPPERS = {
    "zbf": (bytes.fromhex("b136dd6d3d1d45e681ab6897c140739b"), 0xf3e031aa0b4b71ac),
    "raw": (bytes.fromhex("98880ce68e7d4d8889a88a97997c03b1"), 0x9375e58bc0c5ba10),
}
MASK = (1 << 64) - 1


class Damaged(Exception):
    pass


def need(condition, what):
    if not condition:
        raise Damaged(what)


def xxh64(data, seed):
    p1, p2, p3, p4, p5 = (0x9E3779B185EBCA87, 0xC2B2AE3D27D4EB4F, 0x165667B19E3779F9, 0x85EBCA77C2B2AE63,
                          0x27D4EB2F165667C5)

    def left(value, count):
        return (value << count | value >> (64 - count)) & MASK

    def mix(lane, value):
        return left((lane + value * p2) & MASK, 31) * p1 & MASK

    place = 0
    if len(data) >= 32:
        lanes = [(seed + p1 + p2) & MASK, (seed + p2) & MASK, seed, (seed - p1) & MASK]
        while place + 32 <= len(data):
            lanes = [mix(lane, value) for lane, value in zip(lanes, struct.unpack_from("<4Q", data, place))]
            place += 32
        result = sum(left(lane, count) for lane, count in zip(lanes, (1, 7, 12, 18))) & MASK
        for lane in lanes:
            result = ((result ^ mix(0, lane)) * p1 + p4) & MASK
    else:
        result = (seed + p5) & MASK
    result = (result + len(data)) & MASK
    while place + 8 <= len(data):
        result = (left(result ^ mix(0, struct.unpack_from("<Q", data, place)[0]), 27) * p1 + p4) & MASK
        place += 8
    if place + 4 <= len(data):
        result = (left(result ^ struct.unpack_from("<I", data, place)[0] * p1 & MASK, 23) * p2 + p3) & MASK
        place += 4
    for byte in data[place:]:
        result = left(result ^ byte * p5 & MASK, 11) * p1 & MASK
    result = (result ^ result >> 33) * p2 & MASK
    result = (result ^ result >> 29) * p3 & MASK
    return result ^ result >> 32


def lz4_block(data, size):
    """One raw LZ4 block."""
    out = bytearray()
    place = 0

    def length(start):
        nonlocal place
        total = start
        while start == 15:
            total += data[place]
            place += 1
            if data[place - 1] != 255:
                break
        return total

    while place < len(data):
        token = data[place]
        place += 1
        count = length(token >> 4)
        out += data[place:place + count]
        place += count
        if place == len(data):
            break
        offset = data[place] | data[place + 1] << 8
        place += 2
        need(0 < offset <= len(out), "LZ4 offset")
        for _ in range(length(token & 15) + 4):
            out.append(out[-offset])
    need(len(out) == size, "LZ4 size")
    return bytes(out)


def guid_text(data):
    digits = data.hex()
    return "-".join((digits[:8], digits[8:12], digits[12:16], digits[16:20], digits[20:]))


def show_text(data):
    """A text as the trees have it."""
    try:
        return data.decode("utf-8")
    except UnicodeDecodeError:
        return {"bytes": data.hex()}


class Reader:
    """Values of the binary formats."""

    def __init__(self, data):
        self.data = data
        self.place = 0

    def at_end(self):
        return self.place == len(self.data)

    def take(self, size):
        need(size <= len(self.data) - self.place, "cut short")
        self.place += size
        return self.data[self.place - size:self.place]

    def number(self):
        value = shift = 0
        while True:
            byte = self.take(1)[0]
            value |= (byte & 127) << shift
            shift += 7
            if byte < 128:
                need(value <= MASK, "number too large")
                return value

    def signed(self):
        value = self.number()
        return -(value >> 1) - 1 if value & 1 else value >> 1

    def part(self):
        return Reader(self.take(self.number()))

    def text(self):
        code = self.number()
        return guid_text(self.take(16)) if code == 0 else show_text(self.take(code - 1))

    def plain(self, kind):
        if kind == "bool":
            return self.number() == 1
        if kind in ("int32", "int64"):
            return self.signed()
        if kind in ("uint32", "uint64", "enum"):
            return self.number()
        if kind in ("float", "double"):
            return self.take(4 if kind == "float" else 8)[::-1].hex()
        if kind == "text":
            return self.text()
        if kind == "sharedtext":
            return self.text() if self.number() == 1 else None
        count = self.number()
        if kind == "texts":
            return [self.text() for _ in range(count)]
        if kind == "enums":
            return [self.number() for _ in range(count)]
        size = 8 if kind == "doubles" else 4
        items = [self.take(size)[::-1].hex() for _ in range(count)]
        return [int(item, 16) for item in items] if kind == "uint32s" else items


class Raw:
    def __init__(self, payload):
        need(payload[0] == 1, "version")
        self.fields = self.read_fields(Reader(payload[1:]))

    def read_fields(self, reader):
        fields = []
        while not reader.at_end():
            kind = KINDS[reader.take(1)[0]]
            name = show_text(reader.take(reader.number()))
            fields.append([name, kind, self.value(reader, kind)])
        return fields

    def value(self, reader, kind):
        if kind == "record":
            return self.read_fields(reader.part())
        if kind == "object":
            name, guid = reader.text(), reader.text()
            return None if name == "" else {"class": name, "guid": guid, "fields": self.read_fields(reader.part())}
        if kind == "records":
            part = reader.part()
            elements = [self.element(part) for _ in range(part.number())]
            need(part.at_end(), "bytes behind the elements")
            return elements
        return reader.plain(kind)

    def element(self, reader):
        name = reader.text()
        return None if name == "" else {"type": name, "fields": self.read_fields(reader.part())}


class Zbf:
    def __init__(self, payload):
        need(payload[0] == 1, "version")
        place = struct.unpack_from("<Q", payload, 1)[0]
        table = Reader(payload[place:])
        self.structures = [self.structure(table) for _ in range(table.number())]
        self.classes = [(table.number(), table.text()) for _ in range(table.number())]
        need(table.at_end(), "bytes behind the table")
        self.fields = self.read_fields(Reader(payload[9:place]), 0)

    @staticmethod
    def structure(table):
        name = table.text()
        fields = []
        for _ in range(table.number()):
            field = show_text(table.take(table.number() - 1))
            kind = KINDS[table.number()]
            fields.append((field, kind, table.number() if kind == "record" else None))
        return name, fields

    def read_fields(self, reader, structure):
        fields = []
        while not reader.at_end():
            name, kind, record = self.structures[structure][1][reader.number()]
            fields.append([name, kind, self.value(reader, kind, record)])
        return fields

    def value(self, reader, kind, record):
        if kind == "record":
            return self.read_fields(reader.part(), record)
        if kind == "object":
            number = reader.number()
            if number == 0:
                return None
            structure, guid = self.classes[number - 1]
            return {"class": self.structures[structure][0], "guid": guid,
                    "fields": self.read_fields(reader.part(), structure)}
        if kind == "records":
            part = reader.part()
            elements = [self.element(part) for _ in range(part.number())]
            need(part.at_end(), "bytes behind the elements")
            return elements
        return reader.plain(kind)

    def element(self, reader):
        number = reader.number()
        if number == 0:
            return None
        return {"type": self.structures[number - 1][0], "fields": self.read_fields(reader.part(), number - 1)}


def unwrap(data, word):
    identifier, seed = WRAPPERS[word]
    need(data[:16] == identifier, "identifier")
    digest, size = struct.unpack_from("<QQ", data, 16)
    payload = data[32:]
    need(len(payload) == size, "size")
    need(xxh64(payload, seed) == digest, "hash")
    return payload


def field(fields, name):
    return next(value for key, _, value in fields if key == name)


def unpack(format_name, size, words):
    """The bytes of a compressed object, from its numbers of 32 bits."""
    packed = struct.pack("<%dI" % (len(words) - 1), *words[1:])[:words[0]]
    if format_name == "lz4":
        return lz4_block(packed, size)
    unpacked = zlib.decompress(packed)
    need(len(unpacked) == size, "size of what was compressed")
    return unpacked


def read_binary(data, word):
    """The object of a file, as [name, kind, value]."""
    fields = (Raw if word == "raw" else Zbf)(unwrap(data, word)).fields
    need([entry[:2] for entry in fields] == [["fileHeader", "record"], ["fileObject", "object"]], "what a file holds")
    header = fields[0][2]
    need(header == [["format", "text", word], ["version", "uint32", 100], ["info", "text", ""]], "header")
    saved = fields[1][2]
    if saved["class"] == "CompressedObject":
        info = field(saved["fields"], "compressionInfo")["fields"]
        return read_binary(unpack(field(info, "formatName"), field(info, "decompressSize"),
                                  field(saved["fields"], "compressedData")), word)
    return fields[1]


def marked(text):
    """A text of a document, with the bytes behind the mark."""
    if text.startswith("\\bytes:"):
        return show_text(bytes.fromhex(text[7:]))
    return text


def bits_of(word, kind):
    """The bits of a real that stands as a word or number."""
    form = ">f" if kind == "float" else ">d"
    unusual = re.fullmatch(r"nan\(([0-9a-f]+)\)", word)
    if unusual:
        return unusual.group(1).zfill(8 if kind == "float" else 16)
    return struct.pack(form, float(word)).hex()


def worded(value):
    """[number, word] of a number that may have a word."""
    return value if isinstance(value, list) else [value, None]


class Number(str):
    """A number of a document, with its digits."""


def same_number(found, kind, value):
    number, word = worded(value)
    if word is not None and found == word:
        return True
    if kind in ("float", "double"):
        return bits_of(found, kind) == number
    return re.fullmatch("-?[0-9]+", found) is not None and int(found) == number


class Json:
    ITEMS = {"floats": "float", "doubles": "double", "uint32s": "uint32", "enums": "enum"}

    def __init__(self, data):
        self.document = json.loads(data.decode("utf-8"), parse_int=Number, parse_float=Number)
        need(list(self.document) == ["fileHeader", "fileObject"], "what a file holds")
        need(self.document["fileHeader"] == {"format": "json", "version": "100", "info": ""}, "header")
        saved = self.document["fileObject"]
        if saved["_class"] == "CompressedObject":
            info = saved["compressionInfo"]
            words = [int(word) for word in saved["compressedData"]]
            self.document = Json(unpack(info["formatName"], int(info["decompressSize"]), words)).document

    def same(self, expected):
        return self.value(self.document["fileObject"], expected[1], expected[2])

    def fields(self, group, expected, own):
        names = [("_" if entry[0].startswith("_") else "") + entry[0] for entry in expected]
        return list(group)[:len(own)] == own and sorted(list(group)[len(own):]) == sorted(names) and \
            all(self.value(group[name], entry[1], entry[2]) for name, entry in zip(names, expected))

    def value(self, found, kind, value):
        if value is None:
            return found is None
        if kind == "bool":
            return found is value
        if kind in ("text", "sharedtext"):
            return not isinstance(found, Number) and marked(found) == value
        if kind == "record":
            return self.fields(found, value, [])
        if kind == "object":
            return self.fields(found, value["fields"], ["_class", "_guid"]) and \
                [found["_class"], found["_guid"]] == [value["class"], value["guid"]]
        if kind == "records":
            return self.elements(found, value)
        if kind == "texts":
            return [marked(item) for item in found] == value
        if kind in self.ITEMS:
            return len(found) == len(value) and \
                all(same_number(item, self.ITEMS[kind], entry) for item, entry in zip(found, value))
        return same_number(found, kind, value)

    def elements(self, found, expected):
        before = None
        if len(found) != len(expected):
            return False
        for element, entry in zip(found, expected):
            if entry is None:
                if element is not None:
                    return False
                continue
            own = ["_type"] if "_type" in element else []
            before = element.get("_type", before)
            if before != entry["type"] or not self.fields(element, entry["fields"], own):
                return False
        return True


def xml_name(name):
    """The name of a field as one of XML."""
    data = name.encode("utf-8")
    out = ""
    for place, byte in enumerate(data):
        char = chr(byte)
        plain = byte < 128 and (char.isalpha() or (place > 0 and (char.isdigit() or char in "-._")))
        if char == "_" and re.match("[0-9a-f]{2}", data[place + 1:place + 3].decode("latin-1")):
            plain = False
        out += char if plain else "_%02x" % byte
    return out


class Xml:
    def __init__(self, data):
        root = xml.etree.ElementTree.fromstring(data)
        need(data.startswith(b'<?xml version="1.0" encoding="utf-8"?>'), "declaration")
        need([child.tag for child in root] == ["fileHeader", "fileObject"], "what a file holds")
        need(root[0].attrib == {"format": "xml", "version": "100"}, "header")
        self.saved = root[1]
        if self.saved.get("_class") == "CompressedObject":
            info = self.saved.find("compressionInfo")
            words = [int(word) for word in self.saved.find("compressedData").text.split()]
            self.saved = Xml(unpack(info.get("formatName"), int(info.get("decompressSize")), words)).saved

    def same(self, expected):
        return self.value(self.saved, expected[1], expected[2])

    def fields(self, group, expected, own):
        """Each field once, as attribute or element."""
        attributes = dict(group.attrib)
        children = {child.tag: child for child in group}
        if len(children) != len(group) or any(attributes.pop(key, None) != value for key, value in own.items()):
            return False
        for name, kind, value in expected:
            name = xml_name(name)
            if name in attributes:
                good = self.text(attributes.pop(name), kind, value)
            elif name in children:
                good = self.value(children.pop(name), kind, value)
            else:
                good = kind == "sharedtext" and value is None
            if not good:
                return False
        return not attributes and not children

    @staticmethod
    def text(found, kind, value):
        if kind == "bool":
            return found == ("true" if value else "false")
        if kind in ("text", "sharedtext"):
            return marked(found) == value
        return kind not in ("record", "object", "records", "texts") and same_number(found, kind, value)

    def value(self, found, kind, value):
        if value is None:
            return found.attrib == {"_null": "true"} and len(found) == 0
        if kind == "record":
            return self.fields(found, value, {})
        if kind == "object":
            return self.fields(found, value["fields"], {"_class": value["class"], "_guid": value["guid"]})
        if kind == "records":
            return self.elements(found, value)
        if kind in ("texts", "enums"):
            item = "text" if kind == "texts" else "enum"
            return len(found) == len(value) and all(
                child.tag == "item" and self.text(child.text or "", item, entry)
                for child, entry in zip(found, value))
        if kind in ("floats", "doubles", "uint32s"):
            words = (found.text or "").split()
            return len(words) == len(value) and \
                all(same_number(word, kind[:-1], entry) for word, entry in zip(words, value))
        return not found.attrib and self.text(found.text or "", kind, value)

    def elements(self, found, expected):
        before = None
        if len(found) != len(expected):
            return False
        for element, entry in zip(found, expected):
            if entry is None:
                if element.attrib != {"_null": "true"}:
                    return False
                continue
            own = {"_type": element.get("_type")} if "_type" in element.attrib else {}
            before = element.get("_type", before)
            if element.tag != "item" or before != entry["type"] or not self.fields(element, entry["fields"], own):
                return False
        return True
