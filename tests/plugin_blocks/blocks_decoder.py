"""Decodes packets of the format "blocks", as docs/formats.md tells. Slow, and meant to be read beside that document."""
import zlib

MOST_STREAM_BYTES = 800


class Damaged(Exception):
    pass


class Bytes:
    def __init__(self, data):
        self.data, self.at = data, 0

    def take(self, count):
        if count > len(self.data) - self.at:
            raise Damaged("cut short")
        self.at += count
        return self.data[self.at - count:self.at]

    def byte(self):
        return self.take(1)[0]

    def number(self):
        value = 0
        for i in range(5):
            byte = self.byte()
            value |= (byte & 0x7F) << 7 * i
            if byte < 0x80:
                return value
        raise Damaged("number too long")

    def signed(self):
        value = self.number()
        return value // 2 if value % 2 == 0 else -(value // 2)

    def is_used_up(self):
        return self.at == len(self.data)


def unpack_rle(data, _):
    source, out = Bytes(data), bytearray()
    while not source.is_used_up():
        head = source.byte()
        out += source.take(head + 1) if head < 128 else source.take(1) * (head - 125)
    return bytes(out)


def unpack_lz4(data, size):
    source, out = Bytes(data), bytearray()

    def length(start):
        value = start
        while start == 15:
            more = source.byte()
            value += more
            if more < 255:
                break
        return value

    while True:
        token = source.byte()
        out += source.take(length(token >> 4))
        if source.is_used_up():
            return bytes(out)
        offset = source.byte() | source.byte() << 8
        count = length(token & 15) + 4
        if offset == 0 or offset > len(out):
            raise Damaged("LZ4 offset")
        if len(out) + 12 > size or len(out) + count + 5 > size:
            raise Damaged("LZ4 match at the end")
        for _ in range(count):
            out.append(out[-offset])


def unpack_zip(data, size):
    stream = zlib.decompressobj()
    try:
        out = stream.decompress(data, size + 1)
    except zlib.error as error:
        raise Damaged(str(error))
    if not stream.eof:
        raise Damaged("end of a stream")
    return out


def unpack(compression, data, size):
    out = (unpack_rle, unpack_lz4, unpack_zip)[compression - 1](data, size)
    if len(out) != size:
        raise Damaged("size of a stream")
    return out


def bits_of(data, width):
    """The numbers of `width` bits in the bytes, the first in the lowest bits."""
    held = int.from_bytes(data, "little")
    for _ in range(len(data) * 8 // width if width else 0):
        yield held & ((1 << width) - 1)
        held >>= width


class Decoder:
    def __init__(self):
        self.width = self.height = 0
        self.rows = []  # of lists of (red, green, blue)
        self.needs_key, self.sequence = True, 0

    def decode(self, packet):
        try:
            self._packet(Bytes(packet))
            self.needs_key = False
        except Damaged:
            self.needs_key = True
            raise

    def rgba(self):
        return b"".join(bytes(pixel) + b"\xff" for row in self.rows for pixel in row)

    def _packet(self, source):
        version, flags, compression, bound, sequence = source.take(5)
        width, height = source.number(), source.number()
        before, self.sequence = self.sequence, sequence
        is_key = flags & 1
        if version not in (1, 2) or flags > 7 or (is_key and flags != 5) or compression not in (1, 2, 3) or bound > 32:
            raise Damaged("header")
        if not (0 < width <= 32768 and 0 < height <= 32768 and width * height <= 1 << 26):
            raise Damaged("size")
        if not is_key and (self.needs_key or (width, height) != (self.width, self.height) or
                           sequence != (before + 1) % 256):
            raise Damaged("not the next packet")
        if flags & 2:
            self._moves(source, width, height)
        if flags & 4:
            self._blocks(source, is_key, compression, bound, width, height, version)
        if not source.is_used_up():
            raise Damaged("bytes left over")

    def _moves(self, source, width, height):
        count, pieces, area = source.number(), [], 0
        if not 1 <= count <= 64:
            raise Damaged("number of moves")
        for _ in range(count):
            x, y, w, h = (source.number() for _ in range(4))
            from_x, from_y = x + source.signed(), y + source.signed()
            for left, top in ((x, y), (from_x, from_y)):
                if w == 0 or h == 0 or left < 0 or top < 0 or left + w > width or top + h > height:
                    raise Damaged("move")
            area += w * h
            pieces.append((x, y, w, [self.rows[from_y + i][from_x:from_x + w] for i in range(h)]))
        if area > width * height:
            raise Damaged("area of moves")
        for x, y, w, rows in pieces:
            for i, row in enumerate(rows):
                self.rows[y + i][x:x + w] = row

    def _blocks(self, source, is_key, compression, bound, width, height, version):
        columns, lines = -(-width // 16), -(-height // 16)
        count = columns * lines
        if is_key:
            marks = [1] * count
        else:
            marks, changed = [], 0
            while len(marks) < count:
                run = source.number()
                if len(marks) + run > count or (run == 0 and (marks or changed)) or (run == count and not changed):
                    raise Damaged("map of blocks")
                marks += [changed] * run
                changed ^= 1
        # All streams are looked at before memory is asked for.
        bands = []
        for first in range(0, count, columns * 16):
            blocks = [i for i in range(first, min(first + columns * 16, count)) if marks[i]]
            if blocks:
                bands.append(Band(self, source, compression, bound, first // columns * 16, version, blocks))
        if is_key:
            self.width, self.height = width, height
            self.rows = [[(0, 0, 0)] * width for _ in range(height)]
        for band in bands:
            band.draw(columns)


class Band:
    KINDS, PARTS, COLORS, INDICES, VECTORS, WIDTHS, BITS, GREEN, RAW = 0, 1, 2, 3, 7, 8, 9, 10, 13

    QUIET, ALIKE, UNLIKE, BUSY = 10, 11, 12, 14

    def __init__(self, decoder, source, compression, bound, top, version, blocks):
        self.decoder, self.bound, self.top, self.version, self.blocks = decoder, bound, top, version, blocks
        self.palettes = [[] for _ in range(5)]
        self.streams = [Bytes(b"") for _ in range(15)]
        self.packed = []
        mask = source.byte() | source.byte() << 8
        if mask >> (14 if version == 1 else 15):
            raise Damaged("mask")
        for i in range(15):
            if mask >> i & 1:
                number = source.number()
                size = number // 2
                data = source.take(source.number() if number % 2 else size)
                if not 0 < size <= MOST_STREAM_BYTES * len(blocks) or not data:
                    raise Damaged("size of a stream")
                self.streams[i] = Bytes(unpack(compression, data, size) if number % 2 else data)

        if len(self.streams[self.KINDS].data) != len(blocks):
            raise Damaged("number of kinds")

    def draw(self, columns):
        self.rows = self.decoder.rows
        for block in self.blocks:
            self._block(block % columns * 16, block // columns * 16)
        if not all(stream.is_used_up() for stream in self.streams):
            raise Damaged("stream not used up")

    def _block(self, x, y):
        w, h = min(16, self.decoder.width - x), min(16, self.decoder.height - y)
        head = self.streams[self.KINDS].byte()
        kind, argument = head & 7, head >> 4
        if head & 8:
            across, down = self.streams[self.PARTS].take(2)
            if (across & 15) + (across >> 4) + 1 > w or (down & 15) + (down >> 4) + 1 > h:
                raise Damaged("part")
            x, y, w, h = x + (across & 15), y + (down & 15), (across >> 4) + 1, (down >> 4) + 1
        if kind <= 4:
            self._palette(kind, argument, x, y, w, h)
        elif kind == 5:
            self._predicted(argument, x, y, w, h)
        elif argument:
            raise Damaged("argument")
        elif kind == 6:
            self._copy(x, y, w, h)
        else:
            for row in range(h):
                data = self.streams[self.RAW].take(3 * w)
                self.rows[y + row][x:x + w] = [tuple(data[3 * i:3 * i + 3]) for i in range(w)]

    def _palette(self, kind, age, x, y, w, h):
        most = (1, 2, 4, 16, 256)[kind]
        known = self.palettes[kind]
        if age:
            if age > len(known):
                raise Damaged("age of a palette")
            colors = known[-age]
        else:
            stream = self.streams[self.COLORS]
            count = stream.byte() + 1 if kind > 1 else most
            if count > most:
                raise Damaged("colours of a palette")
            data = stream.take(3 * count)
            colors = [tuple(data[3 * i:3 * i + 3]) for i in range(count)] + [(0, 0, 0)] * (most - count)
            known.append(colors)
        if kind == 0:
            indices = iter([0] * (w * h))
        else:
            bits = (0, 1, 2, 4, 8)[kind]
            data = self.streams[self.INDICES + kind - 1].take(-(-w * h * bits // 8))
            if bits == 1 and w == 16 and self.version > 1:
                data = bytes(data[half * h + row] for row in range(h) for half in (0, 1))
            indices = bits_of(data, bits)
        for row in range(y, y + h):
            self.rows[row][x:x + w] = [colors[next(indices)] for _ in range(w)]

    def _copy(self, x, y, w, h):
        dx, dy = self.streams[self.VECTORS].signed(), self.streams[self.VECTORS].signed()
        left, top = x + dx, y + dy
        if ((abs(dx) < w and abs(dy) < h) or left < 0 or top < self.top or left + w > self.decoder.width or
                top + h > min(self.top + 256, self.decoder.height)):
            raise Damaged("copy")
        for i in range(h):
            self.rows[y + i][x:x + w] = self.rows[top + i][left:left + w]

    def _differences(self, packed, w, h):
        """For each row its green, red and blue ones."""
        if not packed:
            planes = [self.streams[self.GREEN + i].take(w * h) for i in range(3)]
            return [[plane[row * w:row * w + w] for plane in planes] for row in range(h)]
        groups = -(-w // 8)
        widths = bits_of(self.streams[self.WIDTHS].take(-(-h * groups * 3 // 2)), 4)
        rows = []
        for _ in range(h):
            row = []
            for _ in range(3):
                samples = []
                for _ in range(groups):
                    width = next(widths)
                    if width > 8:
                        raise Damaged("width")
                    mapped = list(bits_of(self.streams[self.BITS].take(width), width)) or [0] * 8
                    samples += [m // 2 if m % 2 == 0 else 255 - m // 2 for m in mapped]
                row.append(samples)
            rows.append(row)
        return rows

    def _foretell(self, mode, x, y):
        left = self.rows[y][x - 1] if x > 0 else None
        up = self.rows[y - 1][x] if y > self.top else None
        if left is None or up is None:
            return left or up or (0, 0, 0)
        if mode < 2:
            return up if mode else left
        if mode == 3:
            return tuple((l + u) // 2 for l, u in zip(left, up))
        corner = self.rows[y - 1][x - 1]
        return tuple(min(l, u) if c >= max(l, u) else max(l, u) if c <= min(l, u) else l + u - c
                     for l, u, c in zip(left, up, corner))

    def _sum(self, foretold, difference):
        if self.bound == 0:
            return (foretold + difference) % 256
        signed = difference - 256 if difference > 127 else difference
        return min(max(foretold + signed * (2 * self.bound + 1), 0), 255)

    def _sorted(self, x, y):
        left = self.rows[y][x - 1] if x > 0 else None
        up = self.rows[y - 1][x] if y > self.top else None
        corner = self.rows[y - 1][x - 1] if left and up else None
        left = left or up or (0, 0, 0)
        up = up or left
        corner = corner or up
        near = left[1], up[1], corner[1]
        busy = max(near) - min(near) > 8
        median = sorted((near[0], near[1], near[0] + near[1] - near[2]))[1]
        green = self._sum(median, self.streams[self.BUSY if busy else self.QUIET].byte())
        likest = left if abs(green - left[1]) < abs(green - up[1]) else up
        step = green - likest[1]
        stream = self.streams[self.UNLIKE if step else self.ALIKE]
        red = self._sum(min(max(likest[0] + step, 0), 255), stream.byte())
        return red, green, self._sum(min(max(likest[2] + step, 0), 255), stream.byte())

    def _predicted(self, argument, x, y, w, h):
        if self.version > 1 and argument & 12 == 8:
            if argument != 8:
                raise Damaged("argument")
            for row in range(y, y + h):
                for column in range(x, x + w):
                    self.rows[row][column] = self._sorted(column, row)
            return
        for i, (greens, reds, blues) in enumerate(self._differences(argument & 4, w, h)):
            for j in range(w):
                green = greens[j]
                shared = 0 if argument & 8 else green
                differences = ((reds[j] + shared) % 256, green, (blues[j] + shared) % 256)
                foretold = self._foretell(argument & 3, x + j, y + i)
                if self.bound == 0:
                    pixel = tuple((f + d) % 256 for f, d in zip(foretold, differences))
                else:
                    step = 2 * self.bound + 1
                    pixel = tuple(min(max(f + (d - 256 if d > 127 else d) * step, 0), 255)
                                  for f, d in zip(foretold, differences))
                self.rows[y + i][x + j] = pixel
