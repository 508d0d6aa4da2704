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
        this.video = null;
        this.resizeAt = null; // The frame behind which the canvas takes its new size.
        this.shown = null;    // The pixels that the canvas shows, when they are the decoder of blocks'.
        this.waiting = [];  // Frames whose turn has not come: [{frame, picture}], the picture null until it is decoded.
        this.needsKey = [true, true];
    }

    reset() {
        this.closeVideo();
        this.blocks = new BlocksDecoder();
        this.waiting = [];
        this.shown = null;
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
        const { frame, picture, packet } = entry;
        if (frame.codec === Codec.VP9) {
            // Odd sizes come padded to even ones: only the true size counts.
            this.context.drawImage(picture, 0, 0, frame.width, frame.height, frame.x, frame.y, frame.width, frame.height);
            picture.close();
            this.shown = null;
            return;
        }
        try {
            this.blocks.decode(packet);
        } catch (error) {
            this.break_(Codec.BLOCKS, error.message);
            return;
        }
        entry.decodedTime = performance.now();
        const { pixels, width, height } = this.blocks;
        const image = new ImageData(pixels, width, height);
        // Where the canvas shows the decoder's last picture, only what has changed is put there.
        if (this.shown === pixels) {
            for (const area of this.blocks.changed) {
                this.context.putImageData(image, frame.x, frame.y, area.x, area.y, area.width, area.height);
            }
        } else {
            this.context.putImageData(image, frame.x, frame.y);
        }
        this.shown = pixels;
    }
}
