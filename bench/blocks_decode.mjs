// How long the decoder for pages takes: node bench/blocks_decode.mjs FOLDER, the folder that bench_blocks was given.
import { readdirSync, readFileSync } from 'node:fs';
import { BlocksDecoder } from '../src/plugin_blocks/js/zyr_blocks_decoder.js';

for (const name of readdirSync(process.argv[2]).filter((file) => file.endsWith('.blocks')).sort()) {
    const data = readFileSync(`${process.argv[2]}/${name}`);
    const times = [];
    // The first turns are for the compiler.
    for (let turn = 0; turn < 5; turn++) {
        const decoder = new BlocksDecoder();
        times.length = 0;
        for (let at = 0; at < data.length;) {
            const size = data.readUInt32LE(at);
            const start = performance.now();
            decoder.decode(data.subarray(at + 4, at + 4 + size));
            times.push(performance.now() - start);
            at += 4 + size;
        }
    }
    const first = times.shift();
    times.sort((a, b) => a - b);
    console.log(`${name}: first frame ${first.toFixed(2)} ms, others ${times[times.length >> 1]?.toFixed(2)} ms`);
}
