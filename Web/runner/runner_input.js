// Keyboard, mouse, touch and gamepads of a page, as the program's devices.

// KeyboardEvent.code -> the number of the key's place (usage of the USB HID keyboard page).
const KEYS = new Map();
for (let i = 0; i < 26; ++i) KEYS.set(`Key${String.fromCharCode(65 + i)}`, 0x04 + i);
for (let i = 1; i <= 10; ++i) KEYS.set(`Digit${i % 10}`, 0x1d + i);
for (let i = 1; i <= 12; ++i) KEYS.set(`F${i}`, 0x39 + i);
for (let i = 1; i <= 10; ++i) KEYS.set(`Numpad${i % 10}`, 0x58 + i);
const NAMED = [
    [0x28, "Enter Escape Backspace Tab Space Minus Equal BracketLeft BracketRight Backslash"],
    [0x33, "Semicolon Quote Backquote Comma Period Slash CapsLock"],
    [0x46, "PrintScreen ScrollLock Pause Insert Home PageUp Delete End PageDown ArrowRight ArrowLeft ArrowDown ArrowUp"],
    [0x53, "NumLock NumpadDivide NumpadMultiply NumpadSubtract NumpadAdd NumpadEnter"],
    [0x63, "NumpadDecimal IntlBackslash ContextMenu"],
    [0xe0, "ControlLeft ShiftLeft AltLeft MetaLeft ControlRight ShiftRight AltRight MetaRight"],
];
for (const [first, names] of NAMED) names.split(" ").forEach((name, i) => KEYS.set(name, first + i));

// Buttons of a gamepad in the standard layout, by the program's numbers; the two triggers are axes.
const PAD_BUTTONS = [0, 1, 2, 3, 9, 10, -1, -1, 4, 6, 7, 8, 11, 12, 13, 14, 5];
const TRIGGERS = [6, 7];
const FULL_AXIS = 32767;
const PADS = 8;
const WHEEL_PIXELS = 100; // of a notch
const TOUCH_NOTCH = 40; // pixels that two fingers move for a notch

export class PageInput {
    constructor(program, canvas, beforePointer) {
        this.program = program;
        this.canvas = canvas;
        this.beforePointer = beforePointer; // something happens: the page may have to be shown
        this.layout = new Map(); // code -> what it writes without Shift
        this.touches = new Map(); // identifier -> { x, y } of the fingers that are down
        this.wheel = { x: 0, y: 0 }; // parts of a notch
        this.pads = new Set();
        this.listeners = new AbortController();
        if (canvas !== null) this.listen();
    }

    close() {
        this.listeners.abort();
    }

    listen() {
        const on = (kind, act, options = {}) =>
            this.canvas.addEventListener(kind, act, { signal: this.listeners.signal, ...options });
        if (!this.canvas.hasAttribute("tabindex")) this.canvas.tabIndex = 0;
        this.canvas.style.touchAction = "none"; // fingers are the game's, not the page's
        on("keydown", (event) => this.key(event, true));
        on("keyup", (event) => this.key(event, false));
        on("paste", (event) => this.program.call("type", event.clipboardData?.getData("text") ?? ""));
        on("blur", () => this.program.call("release"));
        on("pointerdown", (event) => this.press(event));
        on("pointermove", (event) => this.move(event));
        on("pointerup", (event) => this.lift(event));
        on("pointercancel", (event) => this.lift(event));
        on("contextmenu", (event) => event.preventDefault()); // the right button is the game's
        on("wheel", (event) => this.turn(event), { passive: false });
        navigator.keyboard?.getLayoutMap?.().then((map) => (this.layout = new Map(map)), () => {});
    }

    // ---- keyboard ----

    // A key is named by what the layout writes on it without Shift, as far as the browser tells; one of the number block
    // by its place.
    written(event) {
        if (event.code.startsWith("Numpad")) return 0;
        const known = this.layout.get(event.code);
        const typed = event.shiftKey || event.altKey ? undefined : event.key;
        const text = known ?? (typed === undefined || [...typed].length !== 1 ? "" : typed);
        const character = text.toLowerCase().codePointAt(0) ?? 0;
        return character > 32 ? character : 0;
    }

    key(event, isDown) {
        const place = KEYS.get(event.code);
        const isShortcut = event.ctrlKey || event.metaKey;
        if (place !== undefined && !event.repeat) this.program.call("key", place, this.written(event), isDown);
        if (isDown && !isShortcut && !event.isComposing && [...event.key].length === 1) this.program.call("type", event.key);
        const isPages = isShortcut || event.altKey || event.code === "Tab" || /^F\d+$/.test(event.code);
        if (place !== undefined && !isPages) event.preventDefault(); // arrows and the space key would scroll the page
    }

    pressKey(code, isDown) {
        const place = KEYS.get(code);
        if (place === undefined) throw new Error(`there is no key "${code}": give a KeyboardEvent.code`);
        const written = /^(Key|Digit)(.)$/.exec(code);
        this.program.call("key", place, written === null ? 0 : written[2].toLowerCase().codePointAt(0), isDown);
    }

    // ---- mouse and touch: the first finger is the mouse, two fingers are the wheel ----

    point(event) {
        const box = this.canvas.getBoundingClientRect();
        const x = ((event.clientX - box.left) * this.canvas.width) / Math.max(1, box.width);
        const y = ((event.clientY - box.top) * this.canvas.height) / Math.max(1, box.height);
        this.program.call("pointer", x, y);
        this.beforePointer();
    }

    press(event) {
        this.canvas.focus({ preventScroll: true });
        event.preventDefault();
        try {
            this.canvas.setPointerCapture(event.pointerId);
        } catch {
            // a pointer that is up again by now: the page made the event itself
        }
        if (event.pointerType !== "touch") {
            this.point(event);
            this.program.call("button", event.button, true);
            return;
        }
        this.touches.set(event.pointerId, { x: event.clientX, y: event.clientY });
        if (this.touches.size === 1) {
            this.point(event);
            this.program.call("button", 0, true);
        } else if (this.touches.size === 2) this.program.call("button", 0, false);
    }

    move(event) {
        const touch = this.touches.get(event.pointerId);
        if (touch === undefined) {
            if (event.pointerType === "touch") return;
            this.point(event);
            // A button that is pressed while another one is held comes as a move.
            if (event.button > 0 || (event.button === 0 && event.buttons !== 0))
                this.program.call("button", event.button, (event.buttons & [1, 4, 2, 8, 16][event.button]) !== 0);
            return;
        }
        if (this.touches.size === 1) this.point(event);
        else this.roll((event.clientX - touch.x) / TOUCH_NOTCH / 2, (event.clientY - touch.y) / TOUCH_NOTCH / 2);
        touch.x = event.clientX;
        touch.y = event.clientY;
    }

    lift(event) {
        const wasTouch = this.touches.delete(event.pointerId);
        if (!wasTouch) this.program.call("button", event.button, false);
        else if (this.touches.size === 0) this.program.call("button", 0, false);
        this.beforePointer();
    }

    turn(event) {
        event.preventDefault();
        const unit = event.deltaMode === 0 ? WHEEL_PIXELS : event.deltaMode === 1 ? 3 : 1;
        this.roll(event.deltaX / unit, -event.deltaY / unit);
    }

    // Whole notches go to the right and away from the user; what is left over waits.
    roll(x, y) {
        this.wheel.x += x;
        this.wheel.y += y;
        const whole = { x: Math.trunc(this.wheel.x), y: Math.trunc(this.wheel.y) };
        if (whole.x === 0 && whole.y === 0) return;
        this.wheel.x -= whole.x;
        this.wheel.y -= whole.y;
        this.program.call("wheel", whole.x, whole.y);
    }

    // ---- gamepads: browsers report them only when they are asked ----

    pollPads() {
        const pads = typeof navigator === "undefined" ? [] : [...(navigator.getGamepads?.() ?? [])].slice(0, PADS);
        for (const known of [...this.pads])
            if (!pads.some((pad) => pad?.connected && pad.index === known)) {
                this.pads.delete(known);
                this.program.call("pad", known, false);
            }
        for (const pad of pads) if (pad?.connected) this.pollPad(pad);
    }

    pollPad(pad) {
        if (!this.pads.has(pad.index)) this.program.call("pad", pad.index, true);
        this.pads.add(pad.index);
        for (let axis = 0; axis < 4; ++axis)
            this.program.call("pad_axis", pad.index, axis, Math.round((pad.axes[axis] ?? 0) * FULL_AXIS));
        TRIGGERS.forEach((button, i) =>
            this.program.call("pad_axis", pad.index, 4 + i, Math.round((pad.buttons[button]?.value ?? 0) * FULL_AXIS)),
        );
        PAD_BUTTONS.forEach((button, i) => {
            if (button >= 0 && pad.buttons[i] !== undefined)
                this.program.call("pad_button", pad.index, button, pad.buttons[i].pressed);
        });
    }
}
