// Decodes packets of the format "blocks" (docs/formats.md) in a page or in node. No dependencies.
//
//     import { BlocksDecoder } from './zyr_blocks_decoder.js';
//     const decoder = new BlocksDecoder();
//     decoder.decode(packet);                        // a Uint8Array; throws an Error that says what is wrong
//     context.putImageData(new ImageData(decoder.pixels, decoder.width, decoder.height), 0, 0);
//
// `pixels` (R, G, B, A) is the decoder's own picture, which the next packet changes. After an error a key frame is
// needed. `changed` lists what the last packet changed, as {x, y, width, height}.

const FIRST_VERSION = 1, LAST_VERSION = 2;
const KEY = 1, MOVES = 2, BLOCKS = 4;
const RLE = 1, LZ4 = 2, ZIP = 3;
const BLOCK = 16, BAND_ROWS = 256;
const LARGEST_SIDE = 32768, LARGEST_AREA = 1 << 26;
const MOST_MOVES = 64, LARGEST_BOUND = 32, MOST_BLOCK_BYTES = 800, MOST_BYTES_OF_BLOCK = 1028, KEPT = 15;
const KINDS = 0, PARTS = 1, COLORS = 2, INDICES = 3, VECTORS = 7, WIDTHS = 8, BITS = 9, GREEN = 10, RAW = 13, BUSY = 14, STREAMS = 15;
const QUIET = GREEN, ALIKE = 11, UNLIKE = 12, LARGEST_QUIET = 8;
const FILL = 0, PALETTE_2 = 1, PALETTE_256 = 4, PREDICTED = 5, COPY = 6;
const BLACK = 0xFF000000;

function fail(text) { throw new Error(text); }

class Reader {
    constructor(bytes, start = 0, end = bytes.length) {
        this.bytes = bytes;
        this.at = start;
        this.end = end;
    }
    byte() {
        if (this.at >= this.end) fail('cut short');
        return this.bytes[this.at++];
    }
    number() {
        let value = 0;
        for (let i = 0, scale = 1; i < 5; i++, scale *= 128) {
            const byte = this.byte();
            value += (byte & 0x7F) * scale;
            if (byte < 0x80) return value;
        }
        return fail('a number is too long');
    }
    signed() {
        const value = this.number();
        return value % 2 === 0 ? value / 2 : -((value - 1) / 2);
    }
    // The place of the next bytes.
    take(count) {
        if (count > this.end - this.at) fail('cut short');
        const at = this.at;
        this.at += count;
        return at;
    }
}

function unpackRle(bytes, at, end, out) {
    let to = 0;
    while (at < end) {
        const head = bytes[at++];
        const count = head < 128 ? head + 1 : head - 125;
        const taken = head < 128 ? count : 1;
        if (taken > end - at || count > out.length - to) fail('a stream is damaged');
        if (head < 128) out.set(bytes.subarray(at, at + count), to);
        else out.fill(bytes[at], to, to + count);
        at += taken;
        to += count;
    }
    return to;
}

function unpackLz4(bytes, at, end, out) {
    let to = 0;
    const length = (start) => {
        let value = start;
        if (start === 15) {
            let more;
            do {
                if (at >= end) fail('a stream is damaged');
                more = bytes[at++];
                value += more;
            } while (more === 255);
        }
        return value;
    };
    for (;;) {
        if (at >= end) fail('a stream is damaged');
        const token = bytes[at++];
        const literals = length(token >> 4);
        if (literals > end - at || literals > out.length - to) fail('a stream is damaged');
        for (let i = 0; i < literals; i++) out[to++] = bytes[at++];
        if (at === end) return to;
        if (end - at < 2) fail('a stream is damaged');
        const offset = bytes[at] | bytes[at + 1] << 8;
        at += 2;
        const count = length(token & 15) + 4;
        // Matches begin 12 bytes and end 5 bytes before the end at the latest.
        if (offset === 0 || offset > to || to + 12 > out.length || count + 5 > out.length - to) fail('a stream is damaged');
        for (let i = 0; i < count; i++, to++) out[to] = out[to - offset];
    }
}

// ---- zlib streams (RFC 1950, 1951) -----------------------------------------------------------------------------------

const LENGTH_BASE = [3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 15, 17, 19, 23, 27, 31, 35, 43, 51, 59, 67, 83, 99, 115, 131, 163, 195,
    227, 258];
const LENGTH_EXTRA = [0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 0];
const LENGTH_ORDER = [16, 17, 18, 0, 8, 7, 9, 6, 10, 5, 11, 4, 12, 3, 13, 2, 14, 1, 15];
const QUICK_BITS = 10;

// Codes by their first bits, and longer ones by counting down from the first code of each length. Where `mayBeOne` is set,
// one code of a single bit, or none, will do; otherwise every row of bits has to be one.
function buildCodes(lengths, mayBeOne) {
    const counts = new Uint16Array(17), starts = new Uint16Array(17), firsts = new Uint32Array(17);
    for (const length of lengths) counts[length]++;
    counts[0] = 0;
    let code = 0, place = 0;
    for (let bits = 1; bits < 16; bits++) {
        firsts[bits] = code;
        starts[bits] = place;
        place += counts[bits];
        code = (code + counts[bits]) << 1;
        if (code > 2 << bits) fail('a stream is damaged');
    }
    if (code !== 1 << 16 && !(mayBeOne && place === counts[1] && place < 2)) fail('a stream is damaged');
    const next = starts.slice(), symbols = new Uint16Array(lengths.length), quick = new Uint16Array(1 << QUICK_BITS);
    for (let symbol = 0; symbol < lengths.length; symbol++) {
        const bits = lengths[symbol];
        if (bits === 0) continue;
        const code = firsts[bits] + next[bits] - starts[bits];
        symbols[next[bits]++] = symbol;
        if (bits > QUICK_BITS) continue;
        let mirrored = 0;
        for (let i = 0; i < bits; i++) mirrored |= (code >> i & 1) << (bits - 1 - i);
        for (let i = mirrored; i < quick.length; i += 1 << bits) quick[i] = symbol << 4 | bits;
    }
    return { counts, starts, firsts, symbols, quick };
}

let fixedCodes = null;

class Inflater {
    constructor(bytes, at, end, out) {
        this.bytes = bytes;
        this.at = at;
        this.end = end;
        this.out = out;
        this.to = 0;
        this.held = 0;
        this.count = 0;
    }
    // At least so many bits; behind the end zeros are read, a few of them at most.
    need(count) {
        while (this.count < count) {
            if (this.at >= this.end + 4) fail('a stream is damaged');
            this.held |= (this.at < this.end ? this.bytes[this.at] : 0) << this.count;
            this.at++;
            this.count += 8;
        }
    }
    bits(count) {
        if (count === 0) return 0;
        this.need(count);
        const value = this.held & ((1 << count) - 1);
        this.held >>>= count;
        this.count -= count;
        return value;
    }
    symbol(codes) {
        this.need(15);
        const quick = codes.quick[this.held & ((1 << QUICK_BITS) - 1)];
        if (quick !== 0) {
            this.held >>>= quick & 15;
            this.count -= quick & 15;
            return quick >> 4;
        }
        for (let bits = 1, code = 0; bits < 16; bits++) {
            code = code << 1 | (this.held >> (bits - 1) & 1);
            const place = code - codes.firsts[bits];
            if (place >= 0 && place < codes.counts[bits]) {
                this.held >>>= bits;
                this.count -= bits;
                return codes.symbols[codes.starts[bits] + place];
            }
        }
        return fail('a stream is damaged');
    }
    stored() {
        // Whole bytes that were read ahead are given back.
        this.at -= this.count >> 3;
        this.held = this.count = 0;
        if (this.at + 4 > this.end) fail('a stream is damaged');
        const size = this.bytes[this.at] | this.bytes[this.at + 1] << 8;
        const check = this.bytes[this.at + 2] | this.bytes[this.at + 3] << 8;
        this.at += 4;
        if ((size ^ check) !== 0xFFFF || size > this.end - this.at || size > this.out.length - this.to) {
            fail('a stream is damaged');
        }
        this.out.set(this.bytes.subarray(this.at, this.at + size), this.to);
        this.at += size;
        this.to += size;
    }
    readCodes() {
        const literals = this.bits(5) + 257, distances = this.bits(5) + 1, used = this.bits(4) + 4;
        const small = new Uint8Array(19);
        for (let i = 0; i < used; i++) small[LENGTH_ORDER[i]] = this.bits(3);
        const codes = buildCodes(small, false), lengths = new Uint8Array(literals + distances);
        if (literals > 286 || distances > 30) fail('a stream is damaged');
        for (let i = 0; i < lengths.length;) {
            const symbol = this.symbol(codes);
            if (symbol < 16) {
                lengths[i++] = symbol;
                continue;
            }
            if (symbol === 16 && i === 0) fail('a stream is damaged');
            const value = symbol === 16 ? lengths[i - 1] : 0;
            const count = symbol === 16 ? 3 + this.bits(2) : symbol === 17 ? 3 + this.bits(3) : 11 + this.bits(7);
            if (count > lengths.length - i) fail('a stream is damaged');
            lengths.fill(value, i, i + count);
            i += count;
        }
        if (lengths[256] === 0) fail('a stream is damaged');
        return [buildCodes(lengths.subarray(0, literals), true), buildCodes(lengths.subarray(literals), true)];
    }
    static fixed() {
        if (fixedCodes === null) {
            const lengths = new Uint8Array(288).fill(8);
            lengths.fill(9, 144, 256);
            lengths.fill(7, 256, 280);
            fixedCodes = [buildCodes(lengths, false), buildCodes(new Uint8Array(32).fill(5), false)];
        }
        return fixedCodes;
    }
    coded([literals, distances]) {
        const out = this.out;
        for (;;) {
            const symbol = this.symbol(literals);
            if (symbol < 256) {
                if (this.to >= out.length) fail('a stream is damaged');
                out[this.to++] = symbol;
                continue;
            }
            if (symbol === 256) return;
            if (symbol > 285) fail('a stream is damaged');
            const count = LENGTH_BASE[symbol - 257] + this.bits(LENGTH_EXTRA[symbol - 257]);
            const far = this.symbol(distances);
            if (far > 29) fail('a stream is damaged');
            const extra = far < 4 ? 0 : (far >> 1) - 1;
            const distance = (far < 4 ? far : (2 + (far & 1)) << extra) + this.bits(extra) + 1;
            if (distance > this.to || count > out.length - this.to) fail('a stream is damaged');
            for (let i = 0; i < count; i++, this.to++) out[this.to] = out[this.to - distance];
        }
    }
    run() {
        const head = this.bits(8) << 8 | this.bits(8);
        if ((head >> 8 & 15) !== 8 || head >> 12 > 7 || head % 31 !== 0 || (head & 32) !== 0) fail('a stream is damaged');
        let last;
        do {
            last = this.bits(1);
            const type = this.bits(2);
            if (type === 0) this.stored();
            else if (type === 1) this.coded(Inflater.fixed());
            else if (type === 2) this.coded(this.readCodes());
            else fail('a stream is damaged');
        } while (last === 0);
        this.at -= this.count >> 3;
        let a = 1, b = 0;
        for (let i = 0; i < this.to;) {
            for (const stop = Math.min(i + 3800, this.to); i < stop; i++) {
                a += this.out[i];
                b += a;
            }
            a %= 65521;
            b %= 65521;
        }
        const bytes = this.bytes, at = this.at;
        if (at + 4 > this.end || (bytes[at] << 8 | bytes[at + 1]) !== b || (bytes[at + 2] << 8 | bytes[at + 3]) !== a) {
            fail('a stream is damaged');
        }
        return this.to;
    }
}

function unpack(compression, bytes, at, end, out) {
    const count = compression === RLE ? unpackRle(bytes, at, end, out)
        : compression === LZ4 ? unpackLz4(bytes, at, end, out) : new Inflater(bytes, at, end, out).run();
    if (count !== out.length) fail('a stream is damaged');
}

function largestStream(compression, packedSize) {
    return (packedSize + 1) * [1, 65, 255, 1032][compression];
}

// ---- pixels ----------------------------------------------------------------------------------------------------------

// Adds channel by channel, modulo 256.
function add(a, b) { return ((a & 0x7F7F7F7F) + (b & 0x7F7F7F7F)) ^ ((a ^ b) & 0x80808080); }

function median(left, up, corner) {
    const high = left > up ? left : up, low = left > up ? up : left;
    return corner >= high ? low : corner <= low ? high : left + up - corner;
}

function cut(value) { return value < 0 ? 0 : value > 255 ? 255 : value; }

// What is foretold and a difference, which a bound makes coarse.
function sum(foretold, difference, bound) {
    return bound === 0 ? foretold + difference & 255 : cut(foretold + (difference << 24 >> 24) * (2 * bound + 1));
}

function capacityOf(kind) { return kind === FILL ? 1 : 1 << (1 << (kind - PALETTE_2)); }

export class BlocksDecoder {
    constructor() {
        this.width = 0;
        this.height = 0;
        this.pixels = null;
        this.changed = [];
        this.needsKey = true;
        this.sequence = 0;
        this.words = null;
        this.isOfFirstVersion = false;
        this.streams = Array.from({ length: STREAMS }, () => new Reader(new Uint8Array(0)));
        this.rooms = Array.from({ length: STREAMS }, () => new Uint8Array(0));
        this.kept = [];
        this.added = new Int32Array(PALETTE_256 + 1);
        for (let kind = FILL; kind <= PALETTE_256; kind++) this.kept.push(new Uint32Array(capacityOf(kind) * KEPT));
        this.planes = [new Uint8Array(256), new Uint8Array(256), new Uint8Array(256)];
    }

    decode(packet) {
        try {
            this.needsKey = this.decodePacket(packet) !== true;
        } catch (error) {
            this.needsKey = true;
            throw error;
        }
    }

    decodePacket(packet) {
        const reader = new Reader(packet);
        const version = reader.byte();
        if (version < FIRST_VERSION || version > LAST_VERSION) fail('another version');
        this.isOfFirstVersion = version === FIRST_VERSION;
        const flags = reader.byte(), compression = reader.byte(), bound = reader.byte(), sequence = reader.byte();
        const width = reader.number(), height = reader.number();
        const isKey = (flags & KEY) !== 0;
        if (flags > 7 || (isKey && flags !== (KEY | BLOCKS)) || compression < RLE || compression > ZIP ||
            bound > LARGEST_BOUND) {
            fail('a damaged header');
        }
        if (width === 0 || height === 0 || width > LARGEST_SIDE || height > LARGEST_SIDE || width * height > LARGEST_AREA) {
            fail('an impossible size');
        }
        const previous = this.sequence;
        this.sequence = sequence;
        if (!isKey) {
            if (this.needsKey) fail('a key frame is needed first');
            if (width !== this.width || height !== this.height) fail('another size');
            if (sequence !== (previous + 1 & 255)) fail('packets are missing');
        }
        this.changed = [];
        if ((flags & MOVES) !== 0) this.movePixels(reader, width, height);
        if ((flags & BLOCKS) !== 0) this.decodeBlocks(reader, isKey, compression, bound, width, height);
        if (reader.at !== reader.end) fail('bytes are left over');
        return true;
    }

    movePixels(reader, width, height) {
        const count = reader.number();
        if (count === 0 || count > MOST_MOVES) fail('damaged moves');
        const moves = [];
        let area = 0;
        for (let i = 0; i < count; i++) {
            const x = reader.number(), y = reader.number(), w = reader.number(), h = reader.number();
            const fromX = x + reader.signed(), fromY = y + reader.signed();
            if (w === 0 || h === 0 || x + w > width || y + h > height || fromX < 0 || fromY < 0 || fromX + w > width ||
                fromY + h > height) {
                fail('damaged moves');
            }
            area += w * h;
            moves.push({ x, y, w, h, fromX, fromY });
        }
        if (area > width * height) fail('damaged moves');
        const words = this.words;
        const move = ({ x, y, w, h, fromX, fromY }, from, to) => {
            for (let row = 0; row < h; row++) {
                const at = (fromY + row) * width + fromX;
                to.set(from.subarray(at, at + w), (y + row) * width + x);
            }
        };
        if (moves.length === 1) {
            // Rows in an order that reads each before it is written.
            const { x, y, w, h, fromX, fromY } = moves[0];
            for (let i = 0; i < h; i++) {
                const row = fromY < y ? h - 1 - i : i;
                const at = (fromY + row) * width + fromX;
                words.copyWithin((y + row) * width + x, at, at + w);
            }
        } else {
            const old = words.slice();
            for (const one of moves) move(one, old, words);
        }
        for (const { x, y, w, h } of moves) this.changed.push({ x, y, width: w, height: h });
    }

    decodeBlocks(reader, isKey, compression, bound, width, height) {
        const columns = Math.ceil(width / BLOCK), rows = Math.ceil(height / BLOCK), count = columns * rows;
        const marks = new Uint8Array(count);
        if (isKey) {
            marks.fill(1);
        } else {
            for (let at = 0, changed = 0; at < count; changed ^= 1) {
                const run = reader.number();
                if (run > count - at || (run === 0 && (at !== 0 || changed !== 0)) || (run === count && changed === 0)) {
                    fail('a damaged map of blocks');
                }
                marks.fill(changed, at, at + run);
                at += run;
            }
        }
        // All sizes are looked at before memory is asked for.
        const bandBlocks = columns * (BAND_ROWS / BLOCK);
        const bands = [];
        for (let first = 0; first < count; first += bandBlocks) {
            let marked = 0;
            for (let i = first; i < Math.min(first + bandBlocks, count); i++) marked += marks[i];
            if (marked !== 0) bands.push({ first, streams: this.openStreams(reader, compression, marked) });
        }
        if (isKey) {
            if (width !== this.width || height !== this.height) {
                // Without memory for it, the picture and its size stay together.
                this.pixels = new Uint8ClampedArray(width * height * 4);
                this.words = new Uint32Array(this.pixels.buffer);
                this.width = width;
                this.height = height;
            }
            this.words.fill(BLACK);
            this.changed = [{ x: 0, y: 0, width, height }];
        }
        for (const { first, streams } of bands) {
            this.unpackStreams(reader.bytes, compression, streams);
            this.added.fill(0);
            const top = first / columns * BLOCK;
            for (let i = first; i < Math.min(first + bandBlocks, count); i++) {
                if (marks[i] !== 0) this.drawBlock(i % columns * BLOCK, Math.floor(i / columns) * BLOCK, top, bound, isKey);
            }
            for (const stream of this.streams) if (stream.at !== stream.end) fail('a stream is too long');
        }
    }

    openStreams(reader, compression, marked) {
        const mask = reader.byte() | reader.byte() << 8;
        if (mask >> (this.isOfFirstVersion ? BUSY : STREAMS) !== 0) fail('damaged streams');
        const streams = [];
        let total = 0;
        for (let i = 0; i < STREAMS; i++) {
            if ((mask >> i & 1) === 0) continue;
            const number = reader.number(), size = Math.floor(number / 2);
            const packedSize = number % 2 !== 0 ? reader.number() : 0;
            if (number % 2 !== 0 && packedSize === 0) fail('damaged streams');
            const at = reader.take(packedSize !== 0 ? packedSize : size);
            if (size === 0 || size > marked * MOST_BLOCK_BYTES ||
                (packedSize !== 0 && size > largestStream(compression, packedSize))) {
                fail('damaged streams');
            }
            streams.push({ id: i, at, size, packedSize });
            total += size;
        }
        // More would not be used up, and is not unpacked to find that out.
        if (streams.length === 0 || streams[0].id !== KINDS || streams[0].size !== marked || total > marked * MOST_BYTES_OF_BLOCK) {
            fail('damaged streams');
        }
        return streams;
    }

    unpackStreams(bytes, compression, streams) {
        for (const stream of this.streams) stream.at = stream.end = 0;
        for (const { id, at, size, packedSize } of streams) {
            const stream = this.streams[id];
            if (packedSize === 0) {
                stream.bytes = bytes;
                stream.at = at;
                stream.end = at + size;
                continue;
            }
            if (this.rooms[id].length < size) this.rooms[id] = new Uint8Array(size * 2);
            unpack(compression, bytes, at, at + packedSize, this.rooms[id].subarray(0, size));
            stream.bytes = this.rooms[id];
            stream.at = 0;
            stream.end = size;
        }
    }

    drawBlock(blockX, blockY, bandTop, bound, isKey) {
        let x = blockX, y = blockY;
        let w = Math.min(BLOCK, this.width - x), h = Math.min(BLOCK, this.height - y);
        const head = this.streams[KINDS].byte(), kind = head & 7, argument = head >> 4;
        if ((head & 8) !== 0) {
            const across = this.streams[PARTS].byte(), down = this.streams[PARTS].byte();
            const right = (across & 15) + (across >> 4) + 1, bottom = (down & 15) + (down >> 4) + 1;
            if (right > w || bottom > h) fail('a damaged part');
            x += across & 15;
            y += down & 15;
            w = (across >> 4) + 1;
            h = (down >> 4) + 1;
        }
        if (!isKey) this.changed.push({ x, y, width: w, height: h });
        if (kind <= PALETTE_256) {
            this.drawPalette(kind, argument, x, y, w, h);
        } else if (kind === PREDICTED) {
            this.drawPrediction(argument, x, y, w, h, bandTop, bound);
        } else if (argument !== 0) {
            fail('a damaged block');
        } else if (kind === COPY) {
            this.drawCopy(x, y, w, h, bandTop);
        } else {
            const stream = this.streams[RAW], bytes = stream.bytes;
            let at = stream.take(w * h * 3);
            for (let row = 0; row < h; row++) {
                let to = (y + row) * this.width + x;
                for (let i = 0; i < w; i++, at += 3) {
                    this.words[to++] = BLACK | bytes[at + 2] << 16 | bytes[at + 1] << 8 | bytes[at];
                }
            }
        }
    }

    // The place of the palette's first colour among those kept.
    findPalette(kind, age) {
        const capacity = capacityOf(kind);
        if (age !== 0) {
            if (age > this.added[kind]) fail('an unknown palette');
            return (this.added[kind] - age) % KEPT * capacity;
        }
        const stream = this.streams[COLORS];
        const count = kind > PALETTE_2 ? stream.byte() + 1 : capacity;
        if (count > capacity) fail('a damaged palette');
        let at = stream.take(count * 3);
        const first = this.added[kind]++ % KEPT * capacity, colors = this.kept[kind], bytes = stream.bytes;
        for (let i = 0; i < count; i++, at += 3) {
            colors[first + i] = BLACK | bytes[at + 2] << 16 | bytes[at + 1] << 8 | bytes[at];
        }
        colors.fill(BLACK, first + count, first + capacity);
        return first;
    }

    drawPalette(kind, age, x, y, w, h) {
        const first = this.findPalette(kind, age), colors = this.kept[kind], words = this.words;
        if (kind === FILL) {
            for (let row = 0; row < h; row++) {
                const to = (y + row) * this.width + x;
                words.fill(colors[first], to, to + w);
            }
            return;
        }
        const bits = 1 << (kind - PALETTE_2), mask = (1 << bits) - 1, stream = this.streams[INDICES + kind - PALETTE_2];
        let at = stream.take(Math.ceil(w * h * bits / 8));
        const bytes = stream.bytes;
        if (bits === 1 && w === BLOCK && !this.isOfFirstVersion) {
            for (let row = 0; row < h; row++, at++) {
                const to = (y + row) * this.width + x, held = bytes[at] | bytes[at + h] << 8;
                for (let i = 0; i < BLOCK; i++) words[to + i] = colors[first + (held >> i & 1)];
            }
            return;
        }
        for (let row = 0, held = 0, count = 0; row < h; row++) {
            let to = (y + row) * this.width + x;
            for (let i = 0; i < w; i++) {
                if (count === 0) {
                    held = bytes[at++];
                    count = 8;
                }
                words[to++] = colors[first + (held & mask)];
                held >>= bits;
                count -= bits;
            }
        }
    }

    drawCopy(x, y, w, h, bandTop) {
        const dx = this.streams[VECTORS].signed(), dy = this.streams[VECTORS].signed();
        const fromX = x + dx, fromY = y + dy;
        if ((Math.abs(dx) < w && Math.abs(dy) < h) || fromX < 0 || fromY < bandTop || fromX + w > this.width ||
            fromY + h > Math.min(bandTop + BAND_ROWS, this.height)) {
            fail('a damaged copy');
        }
        for (let row = 0; row < h; row++) {
            const at = (fromY + row) * this.width + fromX;
            this.words.copyWithin((y + row) * this.width + x, at, at + w);
        }
    }

    readPacked(w, h) {
        const groups = Math.ceil(w / 8), widths = this.streams[WIDTHS], bits = this.streams[BITS];
        let widthAt = widths.take(Math.ceil(h * groups * 3 / 2)), high = false;
        for (let row = 0; row < h; row++) {
            for (let plane = 0; plane < 3; plane++) {
                const samples = this.planes[plane];
                for (let group = 0; group < groups; group++) {
                    const width = high ? widths.bytes[widthAt++] >> 4 : widths.bytes[widthAt] & 15;
                    high = !high;
                    const to = row * BLOCK + group * 8;
                    if (width === 0) {
                        samples.fill(0, to, to + 8);
                        continue;
                    }
                    if (width > 8) fail('a damaged width');
                    let at = bits.take(width);
                    const mask = (1 << width) - 1;
                    for (let i = 0, held = 0, count = 0; i < 8; i++) {
                        if (count < width) {
                            held |= bits.bytes[at++] << count;
                            count += 8;
                        }
                        const mapped = held & mask;
                        samples[to + i] = mapped >> 1 ^ -(mapped & 1);
                        held >>= width;
                        count -= width;
                    }
                }
            }
        }
    }

    readPlain(w, h) {
        for (let plane = 0; plane < 3; plane++) {
            const stream = this.streams[GREEN + plane];
            const at = stream.take(w * h);
            for (let row = 0; row < h; row++) {
                for (let i = 0; i < w; i++) this.planes[plane][row * BLOCK + i] = stream.bytes[at + row * w + i];
            }
        }
    }

    drawSorted(x, y, w, h, bandTop, bound) {
        const quiet = this.streams[QUIET], busy = this.streams[BUSY], alike = this.streams[ALIKE], unlike = this.streams[UNLIKE];
        const words = this.words, pitch = this.width;
        for (let row = 0; row < h; row++) {
            const hasUp = y + row > bandTop;
            let to = (y + row) * pitch + x;
            for (let i = 0; i < w; i++, to++) {
                let left, up, corner;
                if (hasUp && x + i > 0) {
                    left = words[to - 1];
                    up = words[to - pitch];
                    corner = words[to - pitch - 1];
                } else {
                    left = up = corner = hasUp ? words[to - pitch] : x + i > 0 ? words[to - 1] : 0;
                }
                const l = left >> 8 & 255, u = up >> 8 & 255, c = corner >> 8 & 255;
                const high = l > u ? l : u, low = l > u ? u : l;
                const greens = (c > high ? c : high) - (c < low ? c : low) > LARGEST_QUIET ? busy : quiet;
                const median = c >= high ? low : c <= low ? high : l + u - c;
                const green = sum(median, greens.bytes[greens.at++], bound);
                const likest = Math.abs(green - l) < Math.abs(green - u) ? left : up, step = green - (likest >> 8 & 255);
                const others = step === 0 ? alike : unlike;
                const red = sum(cut((likest & 255) + step), others.bytes[others.at++], bound);
                const blue = sum(cut((likest >> 16 & 255) + step), others.bytes[others.at++], bound);
                words[to] = BLACK | blue << 16 | green << 8 | red;
            }
        }
        for (const stream of [quiet, busy, alike, unlike]) if (stream.at > stream.end) fail('cut short');
    }

    drawPrediction(argument, x, y, w, h, bandTop, bound) {
        if (!this.isOfFirstVersion && (argument & 12) === 8) {
            if (argument !== 8) fail('a damaged block');
            this.drawSorted(x, y, w, h, bandTop, bound);
            return;
        }
        if ((argument & 4) !== 0) this.readPacked(w, h);
        else this.readPlain(w, h);
        const [greens, reds, blues] = this.planes, words = this.words, pitch = this.width, mode = argument & 3;
        const greenPart = (argument & 8) !== 0 ? 0 : 0x10001;
        for (let row = 0; row < h; row++) {
            const hasUp = y + row > bandTop;
            let to = (y + row) * pitch + x;
            for (let i = 0; i < w; i++, to++) {
                const hasLeft = x + i > 0, place = row * BLOCK + i, green = greens[place];
                let foretold = BLACK;
                if (!hasUp) {
                    if (hasLeft) foretold = words[to - 1];
                } else if (!hasLeft || mode === 1) {
                    foretold = words[to - pitch];
                } else if (mode === 0) {
                    foretold = words[to - 1];
                } else {
                    const left = words[to - 1], up = words[to - pitch];
                    if (mode === 3) {
                        foretold = (left & up) + ((left ^ up) >> 1 & 0x7F7F7F7F);
                    } else {
                        const corner = words[to - pitch - 1];
                        foretold = median(left & 255, up & 255, corner & 255) |
                            median(left >> 8 & 255, up >> 8 & 255, corner >> 8 & 255) << 8 |
                            median(left >> 16 & 255, up >> 16 & 255, corner >> 16 & 255) << 16;
                    }
                }
                const joined = add(reds[place] | blues[place] << 16, green * greenPart) | green << 8;
                words[to] = BLACK | (bound === 0 ? add(foretold, joined) : this.addSteps(foretold, joined, 2 * bound + 1));
            }
        }
    }

    addSteps(foretold, joined, step) {
        let drawn = 0;
        for (let shift = 0; shift < 24; shift += 8) {
            drawn |= cut((foretold >> shift & 255) + (joined << (24 - shift) >> 24) * step) << shift;
        }
        return drawn;
    }
}
