// The messages of a live screen (docs/live.md), as they travel in a WebSocket's binary messages.

export const VERSION = 1;
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

export function readFrame(head) {
    return {
        sequence: head.u32(), codec: head.u8(), flags: head.u8(), x: head.u16(), y: head.u16(), width: head.u16(),
        height: head.u16(), captureTime: head.u64(), captureMicros: head.u32(), encodeMicros: head.u32(),
        queueMicros: head.u32(),
    };
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
