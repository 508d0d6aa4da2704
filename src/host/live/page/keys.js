// What the keys of a browser's keyboard events are called at the server: X's numbers of symbols, the kernel's of keys.

const SYMBOLS = {
    Backspace: 0xff08, Tab: 0xff09, Enter: 0xff0d, Pause: 0xff13, ScrollLock: 0xff14, Escape: 0xff1b, Delete: 0xffff,
    Home: 0xff50, ArrowLeft: 0xff51, ArrowUp: 0xff52, ArrowRight: 0xff53, ArrowDown: 0xff54, PageUp: 0xff55,
    PageDown: 0xff56, End: 0xff57, Insert: 0xff63, ContextMenu: 0xff67, NumLock: 0xff7f, CapsLock: 0xffe5,
    AltGraph: 0xfe03, PrintScreen: 0xff61, Help: 0xff6a, Undo: 0xff65, Clear: 0xff0b,
};
const SIDED = { Shift: [0xffe1, 0xffe2], Control: [0xffe3, 0xffe4], Alt: [0xffe9, 0xffea], Meta: [0xffeb, 0xffec] };

const ROWS = [
    [1, 'Escape'], [2, 'Digit1 Digit2 Digit3 Digit4 Digit5 Digit6 Digit7 Digit8 Digit9 Digit0 Minus Equal Backspace'],
    [15, 'Tab KeyQ KeyW KeyE KeyR KeyT KeyY KeyU KeyI KeyO KeyP BracketLeft BracketRight Enter ControlLeft'],
    [30, 'KeyA KeyS KeyD KeyF KeyG KeyH KeyJ KeyK KeyL Semicolon Quote Backquote ShiftLeft Backslash'],
    [44, 'KeyZ KeyX KeyC KeyV KeyB KeyN KeyM Comma Period Slash ShiftRight NumpadMultiply AltLeft Space CapsLock'],
    [59, 'F1 F2 F3 F4 F5 F6 F7 F8 F9 F10 NumLock ScrollLock Numpad7 Numpad8 Numpad9 NumpadSubtract Numpad4 Numpad5 ' +
        'Numpad6 NumpadAdd Numpad1 Numpad2 Numpad3 Numpad0 NumpadDecimal'],
    [86, 'IntlBackslash F11 F12 IntlRo'], [96, 'NumpadEnter ControlRight NumpadDivide PrintScreen AltRight'],
    [102, 'Home ArrowUp PageUp ArrowLeft ArrowRight End ArrowDown PageDown Insert Delete'], [119, 'Pause'],
    [124, 'IntlYen MetaLeft MetaRight ContextMenu'],
];
const PLACES = {};
for (const [first, names] of ROWS) names.split(' ').forEach((name, i) => { PLACES[name] = first + i; });

// The symbol of one character.
export function symbolOf(character) {
    if (character === '\n') return SYMBOLS.Enter;
    if (character === '\t') return SYMBOLS.Tab;
    const point = character.codePointAt(0);
    return point >= 0x20 && point < 0x100 ? point : 0x1000000 + point;
}

export function describeKey(event) {
    const place = PLACES[event.code] ?? 0;
    const { key } = event;
    let symbol = 0;
    if (SIDED[key]) symbol = SIDED[key][event.location === KeyboardEvent.DOM_KEY_LOCATION_RIGHT ? 1 : 0];
    else if (SYMBOLS[key]) symbol = SYMBOLS[key];
    else if (/^F\d{1,2}$/.test(key)) symbol = 0xffbd + Number(key.slice(1));
    else if ([...key].length === 1) symbol = symbolOf(key);
    if (event.location === KeyboardEvent.DOM_KEY_LOCATION_NUMPAD && place) symbol = 0; // Its place says what it is.
    return { symbol, place };
}

