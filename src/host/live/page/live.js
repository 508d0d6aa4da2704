// The page of a live screen: connection, buttons and figures.

import { Screen, findCodecs } from './decoders.js';
import { Input } from './input.js';
import {
    CODEC_NAMES, Codec, Control, Flag, FrameReader, Message, Refusal, VERSION, Writer, pack, readStatistics, readStream, unpack,
} from './protocol.js';

const FIRST_WAIT = 500;
const LONGEST_WAIT = 15000;
const LONGEST_SILENCE = 8000;
const WANTS_CONTROL = 1;
const VIEW_ONLY = 1;

const byId = (id) => document.getElementById(id);
const canvas = byId('screen');
const pointer = byId('pointer');

const state = {
    socket: null, frames: null, secret: null, user: '', codecs: 0, stream: null, control: Control.FREE, viewOnly: false,
    wait: FIRST_WAIT, heard: 0, offset: null, roundTrip: 0, shortest: LONGEST_WAIT, drawn: 0, stopped: false,
    isIn: false, awaitsPicture: false,
    figures: { fps: 0, decode: 0, draw: 0, total: 0, capture: 0, encode: 0, queue: 0 }, statistics: null, last: null,
};

// Browsers that keep no cookies refuse this as well: then the token lasts as long as the page.
const storage = {
    get() { try { return sessionStorage.getItem('token'); } catch { return null; } },
    set(token) { try { sessionStorage.setItem('token', token); } catch { /* Asked for again after a reload. */ } },
};

function tell(text) { byId('state').textContent = text; }

function send(message) {
    if (state.socket?.readyState === WebSocket.OPEN) state.socket.send(message);
}

// ---- drawing ---------------------------------------------------------------------------------------------------------

function noteDrawn(frame, decode, draw) {
    send(pack(Message.ACKNOWLEDGE, new Writer().u32(frame.sequence).u32(Math.round(decode * 1000))
        .u32(Math.round(draw * 1000))));
    const { figures } = state;
    const mix = (name, value) => { figures[name] += (value - figures[name]) * 0.2; };
    mix('capture', frame.captureMicros / 1000);
    mix('encode', frame.encodeMicros / 1000);
    mix('queue', frame.queueMicros / 1000);
    mix('decode', decode);
    mix('draw', draw);
    if (state.offset !== null) mix('total', performance.now() + state.offset - frame.captureTime / 1000);
    state.drawn++;
    state.last = frame;
    document.documentElement.dataset.frames = state.drawn;  // For those who test the page.
    if (state.awaitsPicture) {
        state.awaitsPicture = false;
        tellControl();
    }
}

const screen = new Screen(canvas, noteDrawn, (text) => {
    console.warn(`live screen: ${text}`);
    send(pack(Message.NEED_KEY, new Writer().u32(0xffffffff)));
});

function place() {
    const { stream } = state;
    if (!stream) return;
    const stage = byId('stage');
    const fits = stage.classList.contains('fit');
    const ratio = window.devicePixelRatio || 1;
    const scale = fits ? Math.min(stage.clientWidth / stream.width, stage.clientHeight / stream.height) : 1 / ratio;
    canvas.style.width = `${stream.width * scale}px`;
    canvas.style.height = `${stream.height * scale}px`;
    canvas.style.imageRendering = scale * ratio >= 1 && Number.isInteger(scale * ratio) ? 'pixelated' : 'auto';
    pointer.style.transform = `scale(${scale})`;
    movePointer();
}

function toScreen(event) {
    const area = canvas.getBoundingClientRect();
    const limit = (value, size) => Math.max(0, Math.min(size - 1, Math.floor(value)));
    return {
        x: limit((event.clientX - area.left) * state.stream.width / area.width, state.stream.width),
        y: limit((event.clientY - area.top) * state.stream.height / area.height, state.stream.height),
    };
}

const input = new Input(canvas, byId('typed'), send, toScreen);

// ---- the pointer's picture -------------------------------------------------------------------------------------------

function takeCursor(head, pixels) {
    const cursor = { width: head.u16(), height: head.u16(), hotX: head.u16(), hotY: head.u16() };
    pointer.width = Math.max(1, cursor.width);
    pointer.height = Math.max(1, cursor.height);
    if (cursor.width && cursor.height) {
        const image = new ImageData(new Uint8ClampedArray(pixels), cursor.width, cursor.height);
        pointer.getContext('2d').putImageData(image, 0, 0);
    }
    state.cursor = cursor;
    showCursor();
}

function showCursor() {
    const { cursor } = state;
    const mine = state.control === Control.YOURS;
    // The one who steers sees the pointer at once, as the browser's own.
    canvas.style.cursor = mine && cursor
        ? `url(${pointer.toDataURL()}) ${cursor.hotX} ${cursor.hotY}, default` : 'default';
    pointer.hidden = mine || !cursor || !state.pointerAt;
    movePointer();
}

function movePointer() {
    if (!state.pointerAt || !state.stream || !state.cursor) return;
    const scale = canvas.clientWidth / state.stream.width;
    pointer.style.left = `${(state.pointerAt.x - state.cursor.hotX) * scale}px`;
    pointer.style.top = `${(state.pointerAt.y - state.cursor.hotY) * scale}px`;
}

// ---- messages --------------------------------------------------------------------------------------------------------

function showControl() {
    const mine = state.control === Control.YOURS;
    input.enable(mine);
    byId('control').hidden = state.viewOnly;
    byId('control').textContent = mine ? 'Give up control' : 'Take control';
    for (const id of ['keys', 'type', 'copy', 'paste']) byId(id).hidden = !mine;
    byId('keys').hidden ||= !navigator.keyboard?.lock;
    if (!state.awaitsPicture) tellControl();
    showCursor();
}

function tellControl() {
    tell({
        [Control.FREE]: 'Looking on. Nobody is in control.', [Control.YOURS]: 'You are in control.',
        [Control.ANOTHERS]: 'Looking on. Somebody else is in control.', [Control.VIEW_ONLY]: 'Looking on (view only).',
    }[state.control]);
}

function takeMessage({ type, head, payload }) {
    switch (type) {
    case Message.WELCOME:
        head.u32();
        head.u32();
        state.viewOnly = (head.u32() & VIEW_ONLY) !== 0;
        state.wait = FIRST_WAIT;
        byId('login').hidden = true;
        state.isIn = true;
        state.awaitsPicture = true;
        tell('Waiting for the first picture…');
        canvas.focus({ preventScroll: true });
        break;
    case Message.STREAM:
        state.stream = readStream(head);
        screen.setStream(state.stream);
        place();
        break;
    case Message.FRAME: {
        const { frame, packet } = state.frames.read(head, payload);
        screen.add(frame, packet);
        break;
    }
    case Message.CURSOR: takeCursor(head, payload); break;
    case Message.POINTER_AT:
        state.pointerAt = { x: head.i32(), y: head.i32() };
        showCursor();
        break;
    case Message.CONTROL_STATE:
        state.control = head.u8();
        showControl();
        break;
    case Message.CLIPBOARD: keepClipboard(new TextDecoder().decode(payload)); break;
    case Message.PONG: {
        const sent = head.u64() / 1000;
        state.roundTrip = performance.now() - sent;
        // The shortest way of late tells best how far the clocks are apart.
        state.shortest = Math.min(state.shortest * 1.02, LONGEST_WAIT);
        if (state.roundTrip <= state.shortest) {
            state.shortest = state.roundTrip;
            state.offset = head.u64() / 1000 - (sent + state.roundTrip / 2);
        }
        break;
    }
    case Message.STATISTICS:
        state.statistics = readStatistics(head);
        showFigures();
        break;
    case Message.REFUSED: refuse(head.u16(), head.text()); break;
    default: break;  // Of a later version.
    }
}

function refuse(reason, text) {
    if (reason === Refusal.ENDING) return;  // It may come back.
    state.stopped = true;
    if (reason === Refusal.WRONG_SECRET) askForSecret(`Refused: ${text}.`);
    else if (reason === Refusal.NO_COMMON_CODEC) tell(`Refused: ${explainCodecs()}.`);
    else tell(`Refused: ${text}. Reload the page to try again.`);
}

function explainCodecs() {
    if (state.codecs & (1 << Codec.VP9)) return 'this browser and the other viewers have no codec in common';
    const why = typeof VideoDecoder === 'undefined' ? 'has no WebCodecs, or they are switched off'
        : 'does not decode VP9';
    return `this server shows VP9 only, and this browser ${why}. Another or a newer browser can, ` +
        "and 'zyr-host serve --codec auto' does without";
}

function connect() {
    state.stopped = false;
    state.isIn = false;
    tell('Connecting…');
    const scheme = location.protocol === 'https:' ? 'wss' : 'ws';
    const socket = new WebSocket(`${scheme}://${location.host}/live`);
    socket.binaryType = 'arraybuffer';
    state.socket = socket;
    state.heard = performance.now();
    socket.onopen = () => {
        if (state.socket !== socket) return;
        state.heard = performance.now();
        screen.reset();
        state.frames = new FrameReader();
        state.shortest = LONGEST_WAIT;
        send(pack(Message.HELLO, new Writer().u32(VERSION).u32(WANTS_CONTROL).u8(state.codecs).text(state.user)
            .text(state.secret)));
    };
    socket.onmessage = (event) => {
        if (state.socket !== socket) return;
        state.heard = performance.now();
        takeMessage(unpack(event.data));
    };
    socket.onclose = () => { if (state.socket === socket) lose(); };
}

function lose() {
    state.socket = null;
    state.isIn = false;
    input.enable(false);
    if (state.stopped) return;
    const seconds = state.wait / 1000;
    tell(`The connection is gone; trying again in ${seconds.toFixed(1)} s.`);
    setTimeout(() => { if (!state.socket && !state.stopped) connect(); }, state.wait);
    state.wait = Math.min(LONGEST_WAIT, state.wait * (1.6 + Math.random() * 0.4));
}

setInterval(() => {
    const now = performance.now();
    if (state.isIn) send(pack(Message.PING, new Writer().u64(Math.round(now * 1000))));
    if (state.socket && now - state.heard > LONGEST_SILENCE) {
        // Its farewell is not waited for: that takes half a minute in some browsers.
        state.socket.close();
        lose();
    }
}, 1000);

// ---- the secret ------------------------------------------------------------------------------------------------------

function askForSecret(reason) {
    byId('reason').textContent = reason;
    byId('login').hidden = false;
    byId('secret').value = '';
    byId('secret').focus();
    tell('Not connected.');
}

byId('login').addEventListener('submit', (event) => {
    event.preventDefault();
    state.user = byId('user').value;
    state.secret = byId('secret').value;
    if (!state.user) storage.set(state.secret);
    byId('login').hidden = true;
    connect();
});

// ---- buttons ---------------------------------------------------------------------------------------------------------

const press = (id, on) => byId(id).setAttribute('aria-pressed', String(on));

byId('control').addEventListener('click', () => {
    send(pack(Message.CONTROL, new Writer().u8(state.control === Control.YOURS ? 0 : 1)));
    canvas.focus();
});
byId('fit').addEventListener('click', () => {
    const fits = byId('stage').classList.toggle('fit');
    byId('fit').textContent = fits ? 'Fit' : '1:1';
    press('fit', fits);
    place();
});
byId('figures').addEventListener('click', () => {
    byId('overlay').hidden = !byId('overlay').hidden;
    press('figures', !byId('overlay').hidden);
    showFigures();
});
byId('full').addEventListener('click', () => {
    if (document.fullscreenElement) document.exitFullscreen();
    else document.documentElement.requestFullscreen?.().catch((error) => tell(`No full screen: ${error.message}`));
    canvas.focus();
});
byId('keys').addEventListener('click', async () => {
    // Browsers hand all keys over only while they fill the screen.
    if (!document.fullscreenElement) await document.documentElement.requestFullscreen();
    await navigator.keyboard.lock();
    press('keys', true);
    canvas.focus();
});
input.onLetGo = () => {
    navigator.keyboard?.unlock?.();
    press('keys', false);
};
document.addEventListener('fullscreenchange', () => { if (!document.fullscreenElement) input.onLetGo(); });
byId('type').addEventListener('click', () => byId('typed').focus());
byId('copy').addEventListener('click', () => send(pack(Message.CLIPBOARD_GET)));
byId('paste').addEventListener('click', async () => {
    try {
        const text = await navigator.clipboard.readText();
        send(pack(Message.CLIPBOARD_SET, new Writer(), new TextEncoder().encode(text)));
        tell('The clipboard is on the screen.');
    } catch (error) {
        tell(`This browser does not give its clipboard: ${error.message}`);
    }
});

async function keepClipboard(text) {
    try {
        await navigator.clipboard.writeText(text);
        tell("The screen's clipboard is on this device.");
    } catch (error) {
        tell(`This browser does not take a clipboard: ${error.message}`);
    }
}

function showFigures() {
    const { figures, statistics, stream, last } = state;
    if (byId('overlay').hidden || !statistics || !stream || !last) return;
    const ms = (value) => `${value.toFixed(1)} ms`;
    const isRegion = last.width < stream.codedWidth || last.height < stream.codedHeight;
    const codec = isRegion ? `blocks, ${CODEC_NAMES[last.codec]} in ${last.width}x${last.height} at ${last.x},${last.y}`
        : CODEC_NAMES[last.codec] + (last.flags & Flag.EXACT ? ', exact' : '');
    byId('overlay').textContent = [
        `${statistics.fps.toFixed(1)} fps   ${(statistics.kilobits / 8).toFixed(0)} kB/s   ${codec}`,
        `${stream.width}x${stream.height} in ${stream.codedWidth}x${stream.codedHeight}   lane ${statistics.lane}`,
        `capture ${ms(figures.capture)}  encode ${ms(figures.encode)}  queue ${ms(figures.queue)}`,
        `network ${ms(state.roundTrip / 2)}  decode ${ms(figures.decode)}  draw ${ms(figures.draw)}`,
        `in all ${ms(figures.total)}   window ${statistics.window}   dropped ${statistics.dropped}   viewers ${statistics.viewers}`,
    ].join('\n');
}

// ---- start -----------------------------------------------------------------------------------------------------------

new ResizeObserver(place).observe(byId('stage'));

// An address with another token, put into the tab that shows this page already.
window.addEventListener('hashchange', () => { if (location.hash) location.reload(); });

async function start() {
    if (!window.isSecureContext) {
        tell('This browser decodes video only on pages that came by https or from this machine itself.');
        return;
    }
    state.codecs = await findCodecs();
    const given = new URLSearchParams(location.hash.slice(1)).get('token');
    if (given) {
        // Kept for a reload in this tab, and out of sight.
        storage.set(given);
        history.replaceState(null, '', location.pathname);
    }
    state.secret = given || storage.get();
    if (state.secret) connect();
    else askForSecret('');
}

start();
