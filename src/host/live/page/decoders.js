// Decodes frames of both codecs onto one canvas, in the order in which they came.

import { BlocksDecoder } from './zyr_blocks_decoder.js';
import { Codec, Flag } from './protocol.js';

const VP9_CONFIGURATION = 'vp09.00.41.08';

// The codecs that this browser decodes: a bit for each.
export async function findCodecs() {
    let codecs = 1 << Codec.BLOCKS;
    if (typeof VideoDecoder !== 'undefined') {
        try {
            const { supported } = await VideoDecoder.isConfigSupported({ codec: VP9_CONFIGURATION });
            if (supported) codecs |= 1 << Codec.VP9;
        } catch { /* It has none. */ }
    }
    return codecs;
}

// `onDrawn(frame, decodeMillis, drawMillis)` follows each frame; `onBroken(text)` asks for a key frame.
export class Screen {
    constructor(canvas, onDrawn, onBroken) {
        this.canvas = canvas;
        this.context = canvas.getContext('2d', { alpha: false, desynchronized: true });
        this.onDrawn = onDrawn;
        this.onBroken = onBroken;
        this.stream = null;
        this.blocks = new BlocksDecoder();
        this.resizeAt = null; // The frame behind which the canvas takes its new size.
        this.shown = null;    // The pixels that the canvas shows around the video, when they are the decoder of blocks'.
        this.video = null;
        this.videoArea = null; // What of the canvas shows the video's picture.
        this.waiting = [];  // Frames whose turn has not come: [{frame, picture}], the picture null until it is decoded.
        this.needsKey = [true, true];
    }

    reset() {
        this.closeVideo();
        this.blocks = new BlocksDecoder();
        this.waiting = [];
        this.shown = null;
        this.videoArea = null;
        this.needsKey = [true, true];
        if (this.resizeAt !== null) this.resize();
    }

    setStream(stream) {
        const old = this.stream;
        this.stream = stream;
        if (old && (old.fullRange !== stream.fullRange || old.bt709 !== stream.bt709)) this.closeVideo();
        if (this.canvas.width !== stream.codedWidth || this.canvas.height !== stream.codedHeight) {
            this.resizeAt = this.waiting.length ? this.waiting.at(-1).frame.sequence : null;
            if (this.resizeAt === null) this.resize();
        }
    }

    resize() {
        this.resizeAt = null;
        this.shown = null;
        this.videoArea = null;
        this.canvas.width = this.stream.codedWidth;
        this.canvas.height = this.stream.codedHeight;
        this.canvas.dispatchEvent(new Event('resize'));
    }

    add(frame, packet) {
        const isKey = (frame.flags & Flag.KEY) !== 0;
        const failed = this.needsKey[frame.codec] && !isKey;
        frame.startTime = performance.now();
        // What cannot be decoded is told as drawn all the same, or the server would wait for it.
        this.waiting.push({ frame, packet, picture: null, failed, decodedTime: null });
        if (failed) {
            this.onBroken('a frame without its key frame');
        } else {
            this.needsKey[frame.codec] = false;
            if (frame.codec === Codec.VP9) this.decodeVideo(this.waiting.at(-1), isKey);
        }
        this.drawReady();
    }

    break_(codec, text) {
        this.needsKey[codec] = true;
        if (codec === Codec.VP9) this.closeVideo();
        this.onBroken(text);
    }

    closeVideo() {
        if (this.video && this.video.state !== 'closed') this.video.close();
        this.video = null;
        for (const entry of this.waiting) {
            entry.picture?.close();
            if (entry.frame.codec === Codec.VP9) entry.failed = true;
        }
    }

    openVideo() {
        const decoder = new VideoDecoder({
            output: (picture) => {
                const entry = this.waiting.find((e) => e.frame.sequence === picture.timestamp && e.picture === null);
                if (!entry || decoder !== this.video) { picture.close(); return; }
                entry.picture = picture;
                entry.decodedTime = performance.now();
                this.drawReady();
            },
            error: (error) => {
                if (decoder !== this.video) return;
                this.break_(Codec.VP9, error.message);
                this.drawReady();
            },
        });
        decoder.configure({
            codec: VP9_CONFIGURATION,
            optimizeForLatency: true,
            colorSpace: {
                matrix: this.stream.bt709 ? 'bt709' : 'smpte170m', primaries: 'bt709', transfer: 'iec61966-2-1',
                fullRange: this.stream.fullRange,
            },
        });
        this.video = decoder;
    }

    decodeVideo(entry, isKey) {
        try {
            if (!this.video) this.openVideo();
            this.video.decode(new EncodedVideoChunk({
                type: isKey ? 'key' : 'delta', timestamp: entry.frame.sequence, data: entry.packet,
            }));
        } catch (error) {
            this.break_(Codec.VP9, error.message);
            entry.failed = true;
        }
    }

    drawReady() {
        while (this.waiting.length) {
            const entry = this.waiting[0];
            if (!entry.failed && entry.frame.codec === Codec.VP9 && entry.picture === null) return;
            this.waiting.shift();
            const decoded = performance.now();
            if (!entry.failed) this.draw(entry);
            if (this.resizeAt === entry.frame.sequence) this.resize();
            if (entry.frame.flags & Flag.LAST) {
                const start = entry.frame.startTime;
                this.onDrawn(entry.frame, (entry.decodedTime ?? decoded) - start,
                    performance.now() - (entry.decodedTime ?? decoded));
            }
        }
    }

    draw(entry) {
        if (entry.frame.codec === Codec.VP9) this.drawVideo(entry);
        else this.drawBlocks(entry);
    }

    drawVideo({ frame, picture }) {
        const { x, y, width, height } = frame;
        const old = this.videoArea;
        if (old && this.shown && !covers(frame, old)) this.putBlocks([old]);
        // Odd sizes come padded to even ones: only the true size counts.
        this.context.drawImage(picture, 0, 0, width, height, x, y, width, height);
        picture.close();
        this.videoArea = { x, y, width, height };
    }

    drawBlocks(entry) {
        const { frame, packet } = entry;
        try {
            this.blocks.decode(packet);
        } catch (error) {
            this.break_(Codec.BLOCKS, error.message);
            return;
        }
        entry.decodedTime = performance.now();
        // An exact picture has no video in it; until it comes, the video lies over the blocks.
        const over = frame.flags & Flag.EXACT ? null : this.videoArea;
        const isFresh = this.shown !== this.blocks.pixels || (over === null && this.videoArea !== null);
        this.shown = this.blocks.pixels;
        this.videoArea = over;
        // Where the canvas shows the decoder's last picture, only what has changed is put there.
        const all = { x: 0, y: 0, width: this.blocks.width, height: this.blocks.height };
        const areas = isFresh ? [all] : this.blocks.changed;
        this.putBlocks(over ? areas.flatMap((area) => subtract(area, over)) : areas);
    }

    putBlocks(areas) {
        const { pixels, width, height } = this.blocks;
        const image = new ImageData(pixels, width, height);
        for (const area of areas) this.context.putImageData(image, 0, 0, area.x, area.y, area.width, area.height);
    }
}

function covers(area, other) {
    return area.x <= other.x && area.y <= other.y && area.x + area.width >= other.x + other.width &&
        area.y + area.height >= other.y + other.height;
}

// What of an area lies outside of another one.
export function subtract(area, other) {
    const right = area.x + area.width, bottom = area.y + area.height;
    const left = Math.max(area.x, other.x), top = Math.max(area.y, other.y);
    const end = Math.min(right, other.x + other.width), low = Math.min(bottom, other.y + other.height);
    if (left >= end || top >= low) return [area];
    return [
        { x: area.x, y: area.y, width: area.width, height: top - area.y },
        { x: area.x, y: low, width: area.width, height: bottom - low },
        { x: area.x, y: top, width: left - area.x, height: low - top },
        { x: end, y: top, width: right - end, height: low - top },
    ].filter((part) => part.width > 0 && part.height > 0);
}
