// What the tests run inside a page of the site. The page loads it from its own origin, as it does its own scripts.
const base = new URL("../", import.meta.url);
const { loadGame } = await import(new URL("assets/examples.js", base));
const { browserStore, createRunner, memoryStore } = await import(new URL("runner/runner.js", base));

// A canvas of the given pixels, drawn in one corner of the page.
function newCanvas(width, height) {
    const canvas = document.createElement("canvas");
    Object.assign(canvas.style, { position: "fixed", left: "0", top: "0", zIndex: 9, width: `${width}px`, height: `${height}px` });
    document.body.append(canvas);
    return canvas;
}

const fromText = (text) => ({ main: "game.lua", files: new Map([["game.lua", text]]) });

// Bytes go between the test and the page as text, which is many times as fast as a list of numbers.
const fromBase64 = (text) => Uint8Array.from(atob(text), (sign) => sign.charCodeAt(0));

function toBase64(bytes) {
    let text = "";
    for (let at = 0; at < bytes.length; at += 0x8000) text += String.fromCharCode(...bytes.subarray(at, at + 0x8000));
    return btoa(text);
}

// Opens a game of the site by its id, or a text, and keeps it as globalThis.game: { runner, told }. width 0: not drawn.
export async function open({ id, text, width = 160, height = 90, store, ...options }) {
    const told = { log: [], report: [], error: [], ended: 0 };
    const runner = await createRunner({
        canvas: width > 0 ? newCanvas(width, height) : null, ...(text ? fromText(text) : await loadGame(id)),
        saves: store ? browserStore(store) : memoryStore(),
        options: { pauseHidden: false, devices: false, ...options, replay: options.replay && fromBase64(options.replay) },
        on: { text: (line, kind) => told[kind].push(line), ended: () => told.ended++ },
    });
    globalThis.game = { runner, told };
} // a test gets no runner: all of its memory would be copied out of the page

export async function close() {
    const { runner } = globalThis.game;
    await runner.close();
    document.querySelectorAll("body > canvas").forEach((canvas) => canvas.remove());
}

// What a game shows in so many frames, drawn into a small canvas unless width is 0: { trace, told, failure }.
export async function played(id, frames, width) {
    await open({ id, trace: true, width });
    const { runner, told } = globalThis.game;
    runner.step(frames);
    const result = { trace: runner.trace(), told, failure: runner.failure?.text ?? "" };
    await close();
    return result;
}

// The first so many frames with the input of a text, or of a recording: { recording, save } in base64, { frame }.
export async function recorded(id, frames, { input, replay }) {
    await open({ id, input, replay, width: 0 });
    const { runner } = globalThis.game;
    runner.step(frames);
    const result = { recording: toBase64(runner.recording()), save: toBase64(runner.save()), frame: runner.frame };
    await close();
    return result;
}
