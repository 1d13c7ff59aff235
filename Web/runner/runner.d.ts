// The Runner in a browser, or in Node without drawing: what a page programs against. `runner.js` implements it.
//
//   import { createRunner, browserStore } from "./runner.js";
//   const runner = await createRunner({
//       canvas, files: new Map([["game.lua", text]]), main: "game.lua",
//       saves: browserStore("my-game"),
//       on: { text: (line, kind) => log(line, kind), failure: (failure) => underline(failure.file, failure.line) },
//   });
//   runner.play();
//
// The scripts of this folder, runner_kit.js (the camera kit), runner_core.js and runner_core.wasm stand side by side on
// the server, as in build/web/runner. All are loaded from the folder of runner.js. The page's policy needs script-src 'self'
// 'wasm-unsafe-eval' and, unless `wasm` is given, connect-src 'self'. Nothing else is asked of any server.
//
// A runner is one program with memory of its own: several may live in a page, each with a canvas. A runner whose program
// came to its end (`dead`) answers with its last state and plays no more; the page makes a new one.

// A game's files, by path from the folder that a `.lua` file includes from: "game.lua", "maps/cave.tmx". Texts are
// stored as UTF-8. Paths that are empty, absolute, that climb ("..") or that have control characters or backslashes are
// refused with an Error, and so are more than 4096 files, and more than 256 MB in all.
export type GameFiles = Map<string, Uint8Array | string>;

// Why the game stopped. A fault outside of any script has an empty event and stack, and often no file.
export interface Failure {
    text: string; // the whole line, as the native Runner prints it: "game.lua:12: attempt to ..."
    message: string; // without file and line
    file: string; // as named by the game; empty when unknown
    line: number; // from 1; 0 when unknown
    event: string; // "player: step", "room cave: draw", "camera 1: update", "the game's file"
    object: string; // of the event; empty for none
    room: string; // empty for none
    frame: number;
    stack: { place: string; locals: { name: string; value: string }[] }[]; // the innermost function first
}

// log: what the game prints. report: what the Runner has to say, such as a warning. error: a fault of the Runner's own,
// such as a full storage; the game goes on.
export type TextKind = "log" | "report" | "error";

export interface RunnerEvents {
    text?(line: string, kind: TextKind): void; // without a line end
    failure?(failure: Failure): void; // once; the game stands, with its last picture
    frame?(frame: number): void; // after each turn of the display in which frames were played: their number so far
    ended?(): void; // the game has ended itself, or a replay its last frame
    change?(): void; // `playing` changed otherwise than by a call: the page was hidden, the game failed or ended
    saved?(name: string): void; // a file of the save area was written into the store
}

// Where the save area is kept between visits: files by their path. A put that rejects (a full storage) gives one line
// of kind "error", the game goes on and its file is kept in memory; it is tried again when the file next changes.
export interface SaveStore {
    load(): Promise<Map<string, Uint8Array>>;
    put(name: string, content: Uint8Array): Promise<void>;
    remove(name: string): Promise<void>;
}

export function browserStore(area: string): SaveStore; // IndexedDB, one area for each name
export function memoryStore(): SaveStore; // gone with the page

export interface RunnerOptions {
    canvas?: HTMLCanvasElement | null; // none: the game runs and nothing is drawn
    // Lies over the canvas, as large as it; the page lets pointers through (pointer-events: none). The inspector draws
    // its lines into it. None: the panel alone.
    overlay?: HTMLCanvasElement | null;
    files: GameFiles;
    main: string;
    saves?: SaveStore; // memoryStore() unless given
    options?: {
        seed?: number | bigint; // 1
        instructions?: number; // millions of Lua's in one frame, at most: 100; 0: no limit, which freezes the page
        memory?: number; // megabytes of Lua, at most: 256
        strict?: boolean; // warns of variables that nobody set
        check?: boolean; // walks all structures after each frame
        trace?: boolean; // keeps what trace() answers
        settings?: string; // name in the save area of the game's settings: "settings.txt"
        size?: "css" | "game"; // the canvas has the pixels that the page gives it ("css"), or those of the game
        replay?: Uint8Array; // a recording to be played again
        anyway?: boolean; // of a game that has changed since
        load?: Uint8Array; // a saved game to go on from
        input?: string; // a text of what is pressed and moved, in place of the devices (Docs/Input.md)
        devices?: boolean; // false: keyboard, mouse, touch and gamepads are not listened to
        pauseHidden?: boolean; // false: a hidden page does not pause the game
    };
    on?: RunnerEvents;
    wasm?: WebAssembly.Module; // runner_core.wasm, where the page compiles it itself
}

export interface PanelRow {
    name: string;
    value: string;
    unit: string; // empty for none, as the next four
    range: string;
    meaning: string;
    setBy: string; // the function of scripts
    field: string; // for setValue; empty for what cannot be changed by hand
    number: number; // of a field: its value; otherwise NaN
}

// What the inspector tells of one camera, the same as in the native Runner's window.
export interface Panel {
    frame: number;
    cameras: { id: number; slot: number; text: string }[]; // all
    selected: number; // identifier; -1 for none
    sections: { title: string; rows: PanelRow[] }[]; // of the selected one
    reason: string[]; // why it moved in the last frame
    lua: string; // the lines that make it
    // Changes by hand that a reload has left out: offer to make them again (setValue) or to copy the lines.
    aside: { changes: { camera: number; field: string; value: number; text: string }[]; lua: string };
}

export interface SavedFile {
    name: string;
    size: number;
}

export interface Runner {
    // ---- state ----
    readonly frame: number; // that the game stands at: so many have been played
    readonly frames: number; // that are known: goTo reaches them
    readonly playing: boolean;
    readonly ended: boolean;
    readonly failure: Failure | null;
    readonly dead: string; // why the program is gone, such as a refused memory; empty while it lives
    readonly screen: { width: number; height: number }; // of the game, pixels
    readonly warnings: number;

    // ---- time: 60 frames a second, whatever the display's rate; frames that are long overdue are dropped ----
    play(): void; // a game that has failed or ended stays
    pause(): void;
    // Pauses, and plays one frame, or so many, at once; none while the browser has taken the drawing context away.
    step(frames?: number): void;
    slow(on: boolean): void; // a quarter of the speed
    // Pauses and goes to a frame, 0 to frames; out of range: as far as it goes. Long ways are gone in slices, so that
    // the page lives. Answers where it stands then: another frame when a later goTo, play or step cut it short.
    goTo(frame: number): Promise<number>;
    // From the start, with other files where they are given. The save area stays.
    restart(files?: GameFiles, main?: string): Promise<void>;
    // Starts the game anew from changed files and plays the known input up to the same frame. After a failure too.
    reload(files: GameFiles): Promise<void>;
    // Stores what is not yet stored, and frees what was drawn with. Nothing may be called after it; the canvas may be
    // given to another runner.
    close(): Promise<void>;

    // ---- inspector ----
    // While it is on, pointers over the canvas are its own: they drag views and dead zones.
    inspect(on: boolean): void;
    readonly inspecting: boolean;
    // camera: an identifier; omitted, or of no camera: the one selected last, or else the first that drew.
    panel(camera?: number): Panel;
    // false: there is no such camera or field, or it is not a number. Shows at once. A recording holds it.
    setValue(camera: number, field: string, value: number): boolean;
    copyAsLua(camera: number): string; // the lines; the page puts them into the clipboard
    profile(): string; // where the frames' time goes, since the inspector was turned on; as `--profile` writes it

    // ---- recordings ----
    recording(): Uint8Array; // of the frames that are known, as `--record` writes it
    replay(recording: Uint8Array, anyway?: boolean): Promise<void>; // starts anew, and plays it; rejects what is none

    // ---- save area ----
    saves(): SavedFile[];
    readSave(name: string): Uint8Array | null; // null: there is none
    writeSave(name: string, content: Uint8Array): void; // for imports. A name that leads out of the area: an Error
    removeSave(name: string): void;
    stored(): Promise<void>; // when everything so far is in the store, or was refused by it
    save(): Uint8Array; // the game as it stands, as a saved game of the native Runner. Throws where none can be made

    // ---- for tests and measurements ----
    trace(): string[]; // the lines of `--trace`; needs the option
    picture(): { width: number; height: number; rgba: Uint8Array } | null; // what the last frame drew, top row first
    key(code: string, down: boolean): void; // as if pressed: a KeyboardEvent.code
    times(): { firstFrame: number; playing: number; frames: number }; // ms from createRunner on, ms of work, frames
}

// Resolves once the game stands at its start, paused, or has failed there (see failure). Rejects with one line for
// files that are refused, a browser without WebGL 2 ("this browser has no WebGL 2 ..."), WebAssembly or its vectors. A
// drawing context that the browser takes away, and gives back, is the runner's affair: the game stands meanwhile.
export function createRunner(options: RunnerOptions): Promise<Runner>;

// The native Runner's command line in a program of its own, for tests: nothing is drawn. The game's files stand in the
// working directory, and what was written into it comes back. args: without the program's name.
export function runCommand(command: {
    files: GameFiles;
    args: string[]; // ["game.lua", "--no-draw", "--frames", "120", "--trace", "trace.txt"]
    wasm?: WebAssembly.Module;
}): Promise<{ status: number; out: string; err: string; written: Map<string, Uint8Array> }>;

// The lines of `runner GAME --no-draw --frames N --trace FILE`. Rejects with the game's failure.
export function headless(files: GameFiles, main: string, frames: number, wasm?: WebAssembly.Module): Promise<string[]>;
