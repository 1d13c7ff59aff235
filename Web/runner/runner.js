// The Runner in a page. The contract stands in runner.d.ts.
import { checkedFiles, listFiles, replaceFiles, toBytes, writeFiles } from "./runner_files.js";
import { PageInput } from "./runner_input.js";
import { OverlayPainter } from "./runner_overlay.js";
import { Program } from "./runner_program.js";
import { SaveArea, memoryStore } from "./runner_store.js";

export { browserStore, memoryStore } from "./runner_store.js";

const FLAG_FAILED = 1;
const FLAG_AT_END = 2;
const FLAG_PLAYING = 8;
const BUDGET = 16; // milliseconds of work in a turn of the display, after which no further frame is begun
const TURNS_BETWEEN_LOOKS = 30; // at the save area
const INSTRUCTIONS = 100; // millions in a frame
const MEMORY = 256; // megabytes
const LAST_SELECTED = -2147483648;
const CONTEXT = { alpha: false, depth: false, stencil: false, antialias: false, majorVersion: 2, minorVersion: 0 };

const GAME = "/game";
const TRACE = "/trace.txt";
const GIVEN = { replay: "/given.rec", load: "/given.sav", input: "/given.txt" };

const now = () => performance.now();
const hasDisplay = typeof requestAnimationFrame === "function";

// What the program prints on its error output: its own faults have its name in front.
function kindOf(line) {
    return line.startsWith("runner: ") ? "error" : "report";
}

function argumentsOf(main, options, draws) {
    const given = { instructions: INSTRUCTIONS, memory: MEMORY, settings: "settings.txt", ...options };
    const words = [`--out=/save`, `--settings=/save/${given.settings}`, `--memory=${given.memory}`];
    words.push(`--instructions=${given.instructions}`);
    if (given.seed !== undefined) words.push(`--seed=${given.seed}`);
    for (const flag of ["strict", "check", "anyway"]) if (given[flag]) words.push(`--${flag}`);
    for (const [name, file] of Object.entries(GIVEN)) if (given[name] !== undefined) words.push(`--${name}=${file}`);
    if (given.trace) words.push(`--trace=${TRACE}`);
    if (!draws) words.push("--no-draw");
    return [...words, "--", `${GAME}/${main}`].join("\n");
}

class PageRunner {
    constructor({ canvas = null, overlay = null, files, main, saves, options = {}, on = {}, wasm }) {
        this.given = { canvas, overlay, main, options, wasm };
        this.files = checkedFiles(files);
        this.store = saves ?? memoryStore();
        this.on = on;
        this.began = now();
        this.measured = { firstFrame: 0, playing: 0, frames: 0 };
        this.failure = null;
        this.inspecting = false;
        this.overlayPainter = null;
        this.way = null; // { frame, isReload, done } while one is gone
        this.isShown = false; // what the canvas has is what the game shows
        this.context = null; // WebGL's
        this.isLost = false; // the context, until the program has taken it back
        this.hasGame = false; // no turn is taken while one game takes the place of another
        this.isHidden = false; // it would play if the page were seen
        this.isClosed = false;
        this.turn = 0;
        this.wasAtEnd = false;
        this.listeners = new AbortController();
    }

    // ---- life ----

    async open() {
        if (!this.files.has(this.given.main)) throw new Error(`there is no file ${JSON.stringify(this.given.main)}`);
        await this.openProgram(this.given.options);
        this.watchPage();
        return this;
    }

    async openProgram(options) {
        const { canvas, main, wasm } = this.given;
        this.program = await Program.load(
            wasm,
            (line) => this.on.text?.(line, "log"),
            (line) => this.on.text?.(line.replace(/^runner: /, ""), kindOf(line)),
        );
        const { FS } = this.program.core;
        this.area = new SaveArea(FS, this.store, (line) => this.on.text?.(line, "error"), (name) => this.on.saved?.(name));
        await this.area.load();
        writeFiles(FS, GAME, this.files);
        for (const [name, file] of Object.entries(GIVEN))
            if (options[name] !== undefined) FS.writeFile(file, toBytes(options[name]));
        if (canvas !== null) this.openContext(canvas);
        const why = this.program.text("open", argumentsOf(main, options, canvas !== null));
        if (why !== "" || this.program.dead !== "") throw new Error(why !== "" ? why.replace(/^runner: /, "") : this.dead);
        this.input = new PageInput(this.program, options.devices === false ? null : canvas, () => this.wantTurn(false));
        this.overlayPainter = this.given.overlay === null ? null : new OverlayPainter(this.program, this.given.overlay);
        if (this.inspecting) this.program.call("inspect", true);
        this.wasAtEnd = false;
        this.failure = null;
        this.hasGame = true;
        this.look();
        this.wantTurn();
    }

    openContext(canvas) {
        const { GL } = this.program.core;
        const handle = GL.createContext(canvas, CONTEXT);
        if (!handle) throw new Error("this browser has no WebGL 2, which the Runner draws with");
        GL.makeContextCurrent(handle);
        this.context = GL.currentContext.GLctx;
        if (this.isAway()) throw new Error("the browser has taken the drawing context away: start the game when it is back");
    }

    watchPage() {
        const { canvas, options } = this.given;
        const signal = this.listeners.signal;
        if (canvas !== null) {
            canvas.addEventListener("webglcontextlost", (event) => this.loseContext(event), { signal });
            canvas.addEventListener("webglcontextrestored", () => this.takeContext(), { signal });
        }
        if (canvas !== null && typeof ResizeObserver === "function") {
            this.sizes = new ResizeObserver(() => this.wantTurn());
            this.sizes.observe(canvas);
        }
        if (typeof document !== "undefined" && options.pauseHidden !== false)
            document.addEventListener("visibilitychange", () => this.seePage(), { signal });
    }

    closeProgram() {
        this.input?.close();
        this.hasGame = false;
        if (this.program === undefined) return;
        this.program.call("close");
        this.area?.look();
    }

    async close() {
        if (this.isClosed) return;
        this.isClosed = true;
        this.cutWay();
        this.listeners.abort();
        this.sizes?.disconnect();
        this.closeProgram();
        this.overlayPainter?.clear();
        await this.area?.work;
    }

    // ---- state ----

    get frame() {
        return this.program.call("frame");
    }

    get frames() {
        return this.program.call("frames");
    }

    get flags() {
        return this.isClosed ? FLAG_AT_END : this.program.flags();
    }

    get playing() {
        return (this.flags & FLAG_PLAYING) !== 0;
    }

    get ended() {
        return (this.flags & FLAG_AT_END) !== 0;
    }

    get dead() {
        return this.program.dead;
    }

    get screen() {
        return { width: this.program.call("width"), height: this.program.call("height") };
    }

    get warnings() {
        return this.program.call("warnings");
    }

    // Tells what has happened to the game since the last look.
    look() {
        const flags = this.flags;
        if (this.program.dead === "" && (flags & FLAG_FAILED) === 0) this.failure = null; // somebody has gone back
        if (this.program.dead !== "" && this.failure === null) {
            this.failure = { text: this.program.dead, message: this.program.dead, file: "", line: 0, event: "", object: "" };
            Object.assign(this.failure, { room: "", frame: 0, stack: [] });
            this.on.failure?.(this.failure);
        } else if ((flags & FLAG_FAILED) !== 0 && this.failure === null) {
            this.failure = this.program.json("failure");
            if (this.failure !== null) this.on.failure?.(this.failure);
        }
        const isAtEnd = (flags & FLAG_AT_END) !== 0;
        if (isAtEnd && !this.wasAtEnd && this.failure === null) this.on.ended?.();
        this.wasAtEnd = isAtEnd;
    }

    // ---- turns of the display ----

    // isNew: the canvas does not show what the game shows.
    wantTurn(isNew = true) {
        if (isNew) this.isShown = false;
        if (this.turn !== 0 || this.isClosed) return;
        const take = (time) => {
            this.turn = 0;
            this.takeTurn(time);
        };
        this.turn = hasDisplay ? requestAnimationFrame(take) : setTimeout(() => take(now()), 8);
    }

    takeTurn(time) {
        if (!this.hasGame || this.isAway()) return; // both ask for a turn when they are over
        const before = this.playing;
        if (this.way !== null) this.takeSlice();
        else if (before) this.playDue(time);
        if (!this.isShown) this.show();
        this.look();
        if (this.dead !== "") return this.cutWay();
        if (before && !this.playing) this.on.change?.();
        if (this.playing || this.way !== null) this.wantTurn(false);
    }

    playDue(time) {
        this.input.pollPads();
        const start = now();
        const played = this.program.call("tick", time, BUDGET);
        if (played === 0) return;
        this.isShown = false;
        this.measured.playing += now() - start;
        this.measured.frames += played;
        this.lookAtSaves();
        this.on.frame?.(this.frame);
    }

    lookAtSaves() {
        this.turns = (this.turns ?? 0) + 1;
        if (this.turns % TURNS_BETWEEN_LOOKS === 0) this.area.look();
    }

    show() {
        const { canvas, options } = this.given;
        this.isShown = true;
        if (canvas === null) return;
        const size = this.sizeCanvas(canvas, options.size ?? "css");
        this.program.call("show", size.width, size.height);
        if (this.inspecting && this.overlayPainter !== null) this.overlayPainter.paint(size, this.screen);
        if (this.measured.firstFrame === 0) this.measured.firstFrame = now() - this.began;
    }

    sizeCanvas(canvas, kind) {
        const size = this.screen;
        if (kind === "css" && canvas.clientWidth > 0 && canvas.clientHeight > 0) {
            size.width = Math.max(1, Math.round(canvas.clientWidth * devicePixelRatio));
            size.height = Math.max(1, Math.round(canvas.clientHeight * devicePixelRatio));
        }
        if (canvas.width !== size.width) canvas.width = size.width;
        if (canvas.height !== size.height) canvas.height = size.height;
        return size;
    }

    // ---- the page ----

    seePage() {
        if (document.hidden && this.playing) {
            this.pause();
            this.isHidden = true;
            this.on.change?.();
        } else if (!document.hidden && this.isHidden) {
            this.play();
            this.on.change?.();
        }
    }

    loseContext(event) {
        event.preventDefault(); // or the browser never gives it back
        this.isLost = true;
    }

    // The game stands while nothing can be drawn. The browser tells of a loss only some time after it.
    isAway() {
        return this.isLost || (this.context?.isContextLost() ?? false);
    }

    // A game that stands is played again up to where it stands: its picture is gone. One that plays draws the next.
    takeContext() {
        this.isLost = false;
        if (!this.hasGame) return;
        this.program.call("restore_context");
        if (this.playing) {
            this.program.call("play", true, now());
            this.wantTurn();
            return;
        }
        const frame = this.frame;
        if (frame > 0 && this.failure === null && this.way === null)
            this.goTo(frame - 1).then((at) => (at === frame - 1 ? this.goTo(frame) : at));
        else this.wantTurn();
    }

    // ---- time ----

    play() {
        this.isHidden = false;
        this.cutWay();
        if (this.failure !== null || this.ended) return;
        this.program.call("play", true, now());
        this.wantTurn(false);
    }

    pause() {
        this.isHidden = false;
        this.program.call("play", false, now());
        this.area.look();
    }

    step(frames = 1) {
        this.cutWay();
        this.pause();
        if (this.isAway()) return;
        const start = now();
        for (let i = 0; i < frames && this.program.call("step") === 1; ++i) this.measured.frames++;
        this.measured.playing += now() - start;
        this.look();
        this.wantTurn();
        this.on.frame?.(this.frame);
    }

    slow(on) {
        this.program.call("slow", on);
    }

    goTo(frame) {
        this.pause();
        return this.begin(Math.max(0, Math.min(Math.trunc(frame), this.frames)), false);
    }

    begin(frame, isReload) {
        this.cutWay();
        return new Promise((done) => {
            this.way = { frame, isReload, done };
            this.wantTurn();
        });
    }

    takeSlice() {
        const way = this.way;
        const isThere = this.program.call("approach", way.frame, way.isReload) !== 0 || this.program.dead !== "";
        way.isReload = false;
        this.isShown = false;
        if (!isThere) return;
        this.way = null;
        this.wasAtEnd = (this.flags & FLAG_AT_END) !== 0; // has been told
        way.done(this.frame);
        this.on.frame?.(this.frame);
    }

    cutWay() {
        const way = this.way;
        this.way = null;
        way?.done(this.frame);
    }

    // A program of its own, so that nothing of the one before is left.
    async startAnew(options) {
        this.cutWay();
        this.closeProgram();
        await this.area.work;
        await this.openProgram(options);
    }

    async restart(files = this.files, main = this.given.main) {
        const checked = checkedFiles(files);
        if (!checked.has(main)) throw new Error(`there is no file ${JSON.stringify(main)}`);
        this.files = checked;
        this.given.main = main;
        await this.startAnew({ ...this.given.options, replay: undefined });
    }

    async reload(files) {
        const checked = checkedFiles(files);
        if (!checked.has(this.given.main)) throw new Error(`there is no file ${JSON.stringify(this.given.main)}`);
        if (this.dead !== "") return this.restart(files);
        const wasPlaying = this.playing || (this.failure !== null && this.frames > 0);
        this.files = checked;
        replaceFiles(this.program.core.FS, GAME, checked);
        const frame = this.failure === null ? this.frame : Math.max(this.frame, this.frames); // the one that failed
        this.failure = null;
        await this.begin(frame, true);
        this.look();
        if (wasPlaying && this.failure === null) this.play();
    }

    // ---- inspector ----

    inspect(on) {
        this.inspecting = Boolean(on);
        this.program.call("inspect", this.inspecting);
        if (!this.inspecting) this.overlayPainter?.clear();
        this.wantTurn();
    }

    panel(camera = LAST_SELECTED) {
        const panel = this.program.json("panel", camera);
        for (const section of panel?.sections ?? []) for (const row of section.rows) row.number ??= NaN;
        return panel;
    }

    setValue(camera, field, value) {
        const isDone = this.program.call("set", camera, field, value) === 1;
        if (isDone) this.wantTurn();
        return isDone;
    }

    copyAsLua(camera) {
        return this.panel(camera)?.lua ?? "";
    }

    profile() {
        return this.program.text("profile");
    }

    // ---- recordings and saves ----

    recording() {
        return this.program.bytes("recording");
    }

    async replay(recording, anyway = false) {
        await this.startAnew({ ...this.given.options, seed: undefined, load: undefined, input: undefined, replay: recording, anyway });
    }

    saves() {
        return [...this.area.files()].map(([name, node]) => ({ name, size: node.usedBytes }));
    }

    readSave(name) {
        return this.area.has(name) ? this.area.read(name) : null;
    }

    writeSave(name, content) {
        this.area.write(name, content);
    }

    removeSave(name) {
        this.area.remove(name);
    }

    stored() {
        return this.area.look();
    }

    save() {
        const file = this.program.bytes("save");
        if (file.length === 0) throw new Error("the game cannot be saved now");
        return file;
    }

    // ---- tests and measurements ----

    trace() {
        this.program.call("flush");
        const text = this.program.core.FS.readFile(TRACE, { encoding: "utf8" });
        return text.split("\n").slice(0, -1);
    }

    picture() {
        const rgba = this.program.bytes("picture");
        return rgba.length === 0 ? null : { ...this.screen, rgba };
    }

    key(code, isDown) {
        this.input.pressKey(code, isDown);
    }

    times() {
        return { ...this.measured };
    }
}

export async function createRunner(options) {
    const runner = new PageRunner(options);
    try {
        return await runner.open();
    } catch (error) {
        await runner.close().catch(() => {});
        throw error;
    }
}

export async function runCommand({ files, args, wasm }) {
    const checked = checkedFiles(files);
    const out = [];
    const err = [];
    const program = await Program.load(wasm, (line) => out.push(line), (line) => err.push(line));
    const { FS } = program.core;
    writeFiles(FS, "/run", checked);
    FS.chdir("/run");
    const before = new Map([...listFiles(FS, "/run")].map(([name, node]) => [name, `${node.id} ${node.timestamp}`]));
    const status = program.call("command", args.join("\n"));
    if (program.dead !== "") throw new Error(program.dead);
    const written = new Map();
    for (const [name, node] of listFiles(FS, "/run"))
        if (before.get(name) !== `${node.id} ${node.timestamp}`) written.set(name, FS.readFile(`/run/${name}`).slice());
    const text = (lines) => lines.map((line) => `${line}\n`).join("");
    return { status, out: text(out), err: text(err), written };
}

export async function headless(files, main, frames, wasm) {
    const args = [main, "--no-draw", "--frames", String(frames), "--trace", "trace.txt", "--quiet"];
    const run = await runCommand({ files, args, wasm });
    if (run.status !== 0) throw new Error(run.err.trim().replace(/^runner: /, ""));
    return new TextDecoder().decode(run.written.get("trace.txt")).split("\n").slice(0, -1);
}
