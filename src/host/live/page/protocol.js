// The messages of a live screen (docs/live.md), as they travel in a WebSocket's binary messages.

export const VERSION = 2;
export const Message = {
    HELLO: 1, ACKNOWLEDGE: 2, NEED_KEY: 3, POINTER: 4, WHEEL: 5, KEY: 6, RELEASE_ALL: 7, CLIPBOARD_SET: 8,
    CLIPBOARD_GET: 9, CONTROL: 10, PING: 11,
    WELCOME: 64, STREAM: 65, FRAME: 66, CURSOR: 67, POINTER_AT: 68, CLIPBOARD: 69, CONTROL_STATE: 70, PONG: 71,
    STATISTICS: 72, REFUSED: 73,
};
export const Codec = { BLOCKS: 0, VP9: 1 };
export const CODEC_NAMES = ['blocks', 'vp9'];
export const Flag = { KEY: 1, EXACT: 2, LAST: 4 };
export const Control = { FREE: 0, YOURS: 1, ANOTHERS: 2, VIEW_ONLY: 3 };
export const Refusal = { WRONG_SECRET: 1, TOO_MANY: 2, NO_COMMON_CODEC: 6, ANOTHER_VERSION: 7, ENDING: 8 };

const MAGIC = 0x4d72797a;
const ENVELOPE = 24;

export class Writer {
    constructor() { this.bytes = []; }
    number(value, size) {
        for (let i = 0; i < size; i++) this.bytes.push(Math.floor(value / 2 ** (8 * i)) & 255);
        return this;
    }
    u8(value) { return this.number(value, 1); }
    u16(value) { return this.number(value, 2); }
    u32(value) { return this.number(value, 4); }
    u64(value) { return this.number(value, 8); }
    i8(value) { return this.number(value & 255, 1); }
    i32(value) { return this.number(value >>> 0, 4); }
    text(value) {
        const bytes = new TextEncoder().encode(value);
        this.u16(bytes.length).bytes.push(...bytes);
        return this;
    }
}

export class Reader {
    constructor(view) {
        this.view = view;
        this.at = 0;
    }
    take(size) { this.at += size; return this.at - size; }
    u8() { return this.view.getUint8(this.take(1)); }
    u16() { return this.view.getUint16(this.take(2), true); }
    u32() { return this.view.getUint32(this.take(4), true); }
    i32() { return this.view.getInt32(this.take(4), true); }
    varying() {
        let value = 0;
        for (let scale = 1; scale < 2 ** 64; scale *= 128) {
            const byte = this.u8();
            value += (byte & 127) * scale;
            if (byte < 128) return value;
        }
        throw new Error('a number without end');
    }
    u64() { return Number(this.view.getBigUint64(this.take(8), true)); }
    text() {
        const size = this.u16();
        return new TextDecoder().decode(new Uint8Array(this.view.buffer, this.view.byteOffset + this.take(size), size));
    }
}

let lastId = 0;

export function pack(type, head = new Writer(), payload = new Uint8Array(0)) {
    const size = head.bytes.length;
    const message = new Uint8Array(ENVELOPE + size + payload.length);
    const view = new DataView(message.buffer);
    lastId = lastId + 1 >>> 0;
    [MAGIC, type, lastId, size, payload.length].forEach((value, i) => view.setUint32(4 * i, value, true));
    message.set(head.bytes, ENVELOPE);
    message.set(payload, ENVELOPE + size);
    return message;
}

// Throws on bytes that are no message.
export function unpack(buffer) {
    const view = new DataView(buffer);
    const size = view.getUint32(12, true);
    if (view.getUint32(0, true) !== MAGIC || ENVELOPE + size > buffer.byteLength) throw new Error('no message');
    return {
        type: view.getUint32(4, true),
        head: new Reader(new DataView(buffer, ENVELOPE, size)),
        payload: new Uint8Array(buffer, ENVELOPE + size),
    };
}

const FRAME_TIME_UNIT = 16;
const Mark = { FLAGS: 7, VP9: 8, AREA: 16, BRIEF: 32, UNKNOWN: 192 };

// Where the size in the header of a packet of blocks ends.
function measureBlocksHeader(packet) {
    let sides = 0;
    for (let i = 5; i < packet.length; i++) {
        if (packet[i] < 128 && ++sides === 2) return i + 1;
    }
    return 0;
}

// The frames of one connection: each head tells what is otherwise than with the frame before. Throws on what cannot be.
export class FrameReader {
    constructor() {
        this.sequence = 0;
        this.captured = 0;
        this.areas = [Codec.BLOCKS, Codec.VP9].map(() => ({ x: 0, y: 0, width: 0, height: 0 }));
        this.blocksHeader = null;
    }

    // Gives the frame, with its whole packet.
    read(head, payload) {
        const marks = head.u8();
        if (marks & Mark.UNKNOWN) throw new Error('a frame of another kind');
        const codec = marks & Mark.VP9 ? Codec.VP9 : Codec.BLOCKS;
        this.captured += head.varying();
        const [capture, encode, queue] = [0, 0, 0].map(() => head.varying() * FRAME_TIME_UNIT);
        if (marks & Mark.AREA) {
            this.areas[codec] = { x: head.varying(), y: head.varying(), width: head.varying(), height: head.varying() };
        }
        const packet = codec === Codec.BLOCKS ? this.completeBlocks(head, payload, marks) : payload;
        const frame = {
            sequence: ++this.sequence, codec, flags: marks & Mark.FLAGS, ...this.areas[codec],
            captureTime: this.captured * FRAME_TIME_UNIT, captureMicros: capture, encodeMicros: encode, queueMicros: queue,
        };
        return { frame, packet };
    }

    completeBlocks(head, payload, marks) {
        if (!(marks & Mark.BRIEF)) {
            this.blocksHeader = payload.slice(0, measureBlocksHeader(payload));
            return payload;
        }
        if (!this.blocksHeader?.length) throw new Error('a packet without its header');
        const header = this.blocksHeader;
        header[1] = head.u8();
        header[4]++;  // Wraps, as the number does.
        const packet = new Uint8Array(header.length + payload.length);
        packet.set(header);
        packet.set(payload, header.length);
        return packet;
    }
}

export function readStream(head) {
    return {
        width: head.u32(), height: head.u32(), codedWidth: head.u32(), codedHeight: head.u32(), codecs: head.u8(),
        fullRange: head.u8() !== 0, bt709: head.u8() !== 0,
    };
}

export function readStatistics(head) {
    return {
        fps: head.u32() / 100, kilobits: head.u32(), roundTrip: head.u32() / 1000, dropped: head.u32(),
        viewers: head.u16(), window: head.u8(), lane: head.u8(),
    };
}
