// Turns what a person does on the canvas into messages.

import { describeKey, symbolOf } from './keys.js';
import { Message, Writer, pack } from './protocol.js';

const STEP = 60;  // Pixels of scrolling for one step of the wheel.

export class Input {
    // `send(message)` takes a message; `toScreen(event)` gives a place in pixels of the screen.
    constructor(canvas, typed, send, toScreen) {
        this.canvas = canvas;
        this.typed = typed;
        this.send = send;
        this.toScreen = toScreen;
        this.enabled = false;
        this.buttons = 0;
        this.held = new Set();
        this.wheel = { x: 0, y: 0 };
        this.touches = new Map();
        this.listen();
    }

    enable(enabled) {
        if (this.enabled && !enabled) this.releaseAll();
        this.enabled = enabled;
    }

    releaseAll() {
        this.buttons = 0;
        this.held.clear();
        if (this.enabled) this.send(pack(Message.RELEASE_ALL));
    }

    listen() {
        const { canvas, typed } = this;
        for (const name of ['pointerdown', 'pointermove', 'pointerup', 'pointercancel']) {
            canvas.addEventListener(name, (event) => this.point(event));
        }
        canvas.addEventListener('contextmenu', (event) => event.preventDefault());
        canvas.addEventListener('wheel', (event) => this.turn(event), { passive: false });
        for (const target of [canvas, typed]) {
            target.addEventListener('keydown', (event) => this.press(event, true));
            target.addEventListener('keyup', (event) => this.press(event, false));
            target.addEventListener('blur', () => this.releaseAll());
        }
        window.addEventListener('blur', () => this.releaseAll());
        document.addEventListener('visibilitychange', () => { if (document.hidden) this.releaseAll(); });
        typed.addEventListener('beforeinput', (event) => this.type(event));
        typed.addEventListener('input', () => { typed.value = ''; });
        // Says that somebody is there while something is held: the server lets go after a silence.
        setInterval(() => { if (this.enabled && (this.buttons || this.held.size)) this.sendPointer(); }, 1000);
    }

    sendPointer() {
        if (!this.place) return;
        this.send(pack(Message.POINTER, new Writer().i32(this.place.x).i32(this.place.y).u16(this.buttons)));
    }

    point(event) {
        if (!this.enabled) return;
        event.preventDefault();
        if (event.type === 'pointerdown') {
            this.canvas.focus({ preventScroll: true });
            this.canvas.setPointerCapture(event.pointerId);
        }
        if (event.pointerType === 'touch' && this.touch(event)) return;
        this.place = this.toScreen(event);
        // The browser orders its buttons left, right, middle.
        const bits = event.type === 'pointercancel' ? 0 : event.buttons;
        this.buttons = (bits & 1) | (bits & 2) << 1 | (bits & 4) >> 1 | bits & 24;
        this.sendPointer();
    }

    // Two fingers turn the wheel. True when the event is used up by that.
    touch(event) {
        const before = this.touches.get(event.pointerId);
        const isDown = event.type === 'pointerdown' || event.type === 'pointermove';
        if (isDown && (before || event.type === 'pointerdown')) {
            this.touches.set(event.pointerId, { x: event.clientX, y: event.clientY });
        } else {
            this.touches.delete(event.pointerId);
        }
        if (this.touches.size >= 2 && this.buttons) {
            this.buttons = 0;
            this.sendPointer();
        }
        if (this.touches.size === 2 && before && event.type === 'pointermove') {
            this.scroll((before.x - event.clientX) / 2, (before.y - event.clientY) / 2);
        }
        const wasMany = this.many;
        this.many = this.touches.size >= 2 || (this.many && this.touches.size > 0);
        return this.many || wasMany;
    }

    turn(event) {
        if (!this.enabled) return;
        event.preventDefault();
        const factor = event.deltaMode === WheelEvent.DOM_DELTA_LINE ? STEP / 3 : event.deltaMode ? 10 * STEP : 1;
        this.scroll(event.deltaX * factor, event.deltaY * factor);
    }

    scroll(x, y) {
        this.wheel.x += x;
        this.wheel.y += y;
        const limit = (value) => Math.max(-20, Math.min(20, Math.trunc(value / STEP)));
        const steps = { x: limit(this.wheel.x), y: limit(this.wheel.y) };
        if (!steps.x && !steps.y) return;
        this.wheel.x -= steps.x * STEP;
        this.wheel.y -= steps.y * STEP;
        this.send(pack(Message.WHEEL, new Writer().i8(steps.x).i8(steps.y)));
    }

    press(event, down) {
        if (!this.enabled) return;
        if (down && event.ctrlKey && event.altKey && event.shiftKey) {
            // The way out for those without a mouse.
            this.releaseAll();
            document.exitPointerLock?.();
            this.onLetGo?.();
            document.getElementById('full').focus();
            event.preventDefault();
            return;
        }
        // Keyboards on a glass tell no key; what they type comes as text.
        if (event.isComposing || event.key === 'Unidentified' || event.key === 'Process') return;
        event.preventDefault();
        if (event.repeat) return;
        const { symbol, place } = describeKey(event);
        if (!symbol && !place) return;
        this.sendKey(symbol, place, down);
        if (down) this.held.add(event.code); else this.held.delete(event.code);
    }

    sendKey(symbol, place, down) {
        this.send(pack(Message.KEY, new Writer().u32(symbol).u16(place).u8(down ? 1 : 0)));
    }

    tap(symbol) {
        this.sendKey(symbol, 0, true);
        this.sendKey(symbol, 0, false);
    }

    type(event) {
        if (!this.enabled || event.isComposing) return;
        if (event.inputType === 'deleteContentBackward') this.tap(0xff08);
        else if (event.inputType === 'insertLineBreak' || event.inputType === 'insertParagraph') this.tap(0xff0d);
        else if (event.data) for (const character of event.data) this.tap(symbolOf(character));
        event.preventDefault();
    }
}

