// The program in WebAssembly: loading it, calling its functions, and what it prints.
import createCore from "./runner_core.js";
import { kit } from "./runner_kit.js";
import { writeFiles } from "./runner_files.js";

const FLAG_DEAD = 4;
const PROGRAM = "/program"; // where the program believes to stand: it looks for the camera kit beside itself
const decoder = new TextDecoder();

// The smallest program with a vector in it. Browsers have them since 2021 (Safari since 2023).
const WITH_VECTOR = Uint8Array.of(
    0, 97, 115, 109, 1, 0, 0, 0, 1, 5, 1, 96, 0, 1, 123, 3, 2, 1, 0, 10, 10, 1, 8, 0, 65, 0, 253, 15, 253, 98, 11);

let compiling = null;

async function compileHere(url) {
    if (url.protocol === "file:") {
        const fs = "node:fs/promises"; // a variable, so that no bundler looks for it
        const { readFile } = await import(/* @vite-ignore */ fs);
        return WebAssembly.compile(await readFile(url));
    }
    const response = await fetch(url);
    if (!response.ok) throw new Error(`cannot load ${url.pathname}: the server answers ${response.status}`);
    if ((response.headers.get("content-type") ?? "").startsWith("application/wasm"))
        return WebAssembly.compileStreaming(response);
    return WebAssembly.compile(await response.arrayBuffer());
}

// Once for all runners of a page; after a failure another one may try again.
function compiled() {
    if (typeof WebAssembly === "undefined") throw new Error("this browser has no WebAssembly, which the Runner needs");
    if (!WebAssembly.validate(WITH_VECTOR))
        throw new Error("this browser's WebAssembly has no vectors (SIMD), which the Runner needs");
    compiling ??= compileHere(new URL("./runner_core.wasm", import.meta.url));
    compiling.catch(() => (compiling = null));
    return compiling;
}

export class Program {
    // out, err: take a line each of what the program prints.
    static async load(wasm, out, err) {
        const module = wasm ?? (await compiled());
        let failed;
        const failure = new Promise((_, reject) => (failed = reject));
        const core = createCore({
            print: out,
            printErr: err,
            noInitialRun: true,
            instantiateWasm(imports, done) {
                WebAssembly.instantiate(module, imports).then((instance) => done(instance, module), failed);
                return {};
            },
        });
        return new Program(await Promise.race([core, failure]));
    }

    constructor(core) {
        this.core = core;
        this.dead = "";
        core.FS.mkdirTree(PROGRAM);
        core.FS.symlink(`${PROGRAM}/runner`, "/proc/self/exe");
        writeFiles(core.FS, `${PROGRAM}/kit`, new Map(Object.entries(kit)));
    }

    // Calls a function with numbers and texts. A program that has come to its end answers nothing more.
    call(name, ...values) {
        if (this.dead !== "") return 0;
        const texts = [];
        try {
            const numbers = values.map((value) => (typeof value === "string" ? this.store(value, texts) : Number(value)));
            return this.core[`_page_${name}`](...numbers);
        } catch (error) {
            this.die(error);
            return 0;
        } finally {
            if (this.dead === "") texts.forEach((address) => this.core._free(address));
        }
    }

    // Tells whether the program lives after what it has done.
    flags() {
        const flags = this.call("flags");
        if ((flags & FLAG_DEAD) !== 0 && this.dead === "") this.dead = "not enough memory";
        return flags;
    }

    die(error) {
        const said = String(error?.message ?? error);
        const isMemory = error instanceof RangeError || /memory|out of bounds/i.test(said);
        this.dead = isMemory ? `not enough memory (${said})` : `the program has stopped: ${said}`;
    }

    store(text, texts) {
        const size = this.core.lengthBytesUTF8(text) + 1;
        const address = this.core._malloc(size);
        if (address === 0) throw new RangeError("out of memory");
        texts.push(address);
        this.core.stringToUTF8(text, address, size);
        return address;
    }

    bytes(name, ...values) {
        const address = this.call(name, ...values);
        if (address === 0) return new Uint8Array(0);
        const size = this.call("size");
        return this.core.HEAPU8.slice(address, address + size);
    }

    text(name, ...values) {
        return decoder.decode(this.bytes(name, ...values));
    }

    json(name, ...values) {
        const text = this.text(name, ...values);
        return text === "" ? null : JSON.parse(text);
    }
}
