// Decodes the stored streams (an argument: their folder) with the decoder for pages, and then a hundred thousand damaged
// packets: each is taken or refused with an Error, and the next key frame is decoded.
import { createHash } from 'node:crypto';
import { readdirSync, readFileSync } from 'node:fs';
import { BlocksDecoder } from '../../src/plugin_blocks/js/zyr_blocks_decoder.js';

const folder = process.argv[2];
const digestOf = (decoder) => createHash('sha1').update(decoder.pixels).digest('hex');
const check = (holds, text) => { if (!holds) throw new Error(text); };

let seed = 7;
const roll = (limit) => {
    seed = Math.imul(seed, 1103515245) + 12345 >>> 0;
    return (seed >>> 8) % limit;
};

const names = readdirSync(folder).filter((name) => name.endsWith('.blocks')).sort();
check(names.length > 0, 'no stored streams');
for (const name of names) {
    const data = readFileSync(`${folder}/${name}`);
    const digests = readFileSync(`${folder}/${name.replace('.blocks', '.sha1')}`, 'utf8').split('\n').filter(Boolean);
    const packets = [];
    for (let at = 0; at < data.length;) {
        const size = data.readUInt32LE(at);
        packets.push(new Uint8Array(data.subarray(at + 4, at + 4 + size)));
        at += 4 + size;
    }
    check(packets.length === digests.length, `${name}: packets and digests differ in number`);
    const decoder = new BlocksDecoder();
    packets.forEach((packet, i) => {
        decoder.decode(packet);
        check(digestOf(decoder) === digests[i], `${name}: picture ${i} is another one`);
    });

    // The last one is a small key frame.
    const key = packets[packets.length - 1], keyDigest = digests[digests.length - 1];
    let refused = 0;
    for (let i = 0; i < 100000 / names.length; i++) {
        const bad = (i % 50 === 0 ? packets[roll(packets.length)] : key).slice();
        for (let count = 1 + roll(4); count > 0; count--) bad[roll(i % 2 === 0 ? Math.min(24, bad.length) : bad.length)] = roll(256);
        try {
            decoder.decode(roll(8) === 0 ? bad.subarray(0, roll(bad.length)) : bad);
        } catch (error) {
            check(error.constructor === Error, `${name}: ${error.stack}`);
            refused++;
        }
        if (i % 500 === 0) {
            decoder.decode(key);
            check(digestOf(decoder) === keyDigest, `${name}: the key frame behind damaged packets is another one`);
        }
    }
    check(refused > 100000 / names.length / 2, `${name}: too few packets were refused: ${refused}`);
}

// Packets at the edges of the format: a name, what becomes of the last packet, and all in hexadecimal.
const edges = readFileSync(`${folder}/edges.txt`, 'utf8').split('\n').filter(Boolean);
check(edges.length > 0, 'no packets at the edges');
for (const line of edges) {
    const [name, verdict, ...packets] = line.split(' ');
    const decoder = new BlocksDecoder(), last = packets.pop();
    for (const packet of packets) decoder.decode(new Uint8Array(Buffer.from(packet, 'hex')));
    let found = 'refused';
    try {
        decoder.decode(new Uint8Array(Buffer.from(last, 'hex')));
        found = digestOf(decoder);
    } catch (error) {
        check(error.constructor === Error, `${name}: ${error.stack}`);
    }
    check(found === verdict, `${name}: ${found}`);
}

// 32768 x 2048, and a stream of kinds that could never hold that many: no memory is asked for.
const small = new BlocksDecoder();
let text = '';
try {
    small.decode(new Uint8Array([1, 5, 2, 0, 0, 0x80, 0x80, 2, 0x80, 0x10, 1, 0, 0x81, 0x80, 4, 9, 1, 2, 3, 4, 5, 6, 7, 8, 9]));
} catch (error) {
    text = error.message;
}
check(text === 'damaged streams' && small.pixels === null, `a small packet got a large picture, or: ${text}`);

// A block whose streams are each small enough, and hold more together than it could use up: none is unpacked.
try {
    small.decode(new Uint8Array([2, 5, 3, 0, 0, 16, 16, 5, 0x20, 2, 7, 0xC1, 12, 2, 1, 2, 0xC1, 12, 2, 1, 2]));
    text = 'decoded';
} catch (error) {
    text = error.message;
}
check(text === 'damaged streams' && small.pixels === null, `a small packet was unpacked, or: ${text}`);

// Without memory for a picture the next key frame of its size is decoded all the same.
const one = new Uint8Array([2, 5, 2, 0, 0, 1, 1, 5, 0, 2, 0, 6, 10, 20, 30]), Pixels = globalThis.Uint8ClampedArray;
globalThis.Uint8ClampedArray = class { constructor() { throw new RangeError('no memory'); } };
try {
    small.decode(one);
    text = 'decoded';
} catch (error) {
    text = error.message;
}
globalThis.Uint8ClampedArray = Pixels;
check(text === 'no memory', `a picture without memory: ${text}`);
small.decode(one);
check(small.pixels.join() === '10,20,30,255', `behind a picture without memory: ${small.pixels}`);
console.log(`${names.length} streams decoded`);
