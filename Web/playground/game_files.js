// A game as the playground holds it: files by path, texts as strings and all else as bytes, and which file starts.
// What comes from outside (archives, links, dropped files) passes these checks before it becomes part of a game. They are
// those of the native Runner's archives, so that what is made here can be played there.

export const LIMITS = Object.freeze({
    files: 4096, // of a game
    bytes: 64 * 1024 * 1024, // of a game, unpacked
    file: 32 * 1024 * 1024, // of one file that is opened
    path: 240, // bytes of UTF-8
    depth: 16, // folders above a file
});

const TEXTS = /\.(lua|tmx|tsx|tmj|tsj|json|txt|md|xml)$/i;
const PICTURES = /\.(png|jpe?g|gif|webp|bmp)$/i;

// A fault that is told to the user in one line.
export class GameFault extends Error {}

export const isScript = (path) => /\.lua$/i.test(path);
export const isText = (path) => TEXTS.test(path);
export const isPicture = (path) => PICTURES.test(path);

// One line for a message: without control characters, and not too long.
export function printable(text, limit = 60) {
    // eslint-disable-next-line no-control-regex
    const line = String(text).replace(/[\u0000-\u001f\u007f-\u009f\u2028\u2029\u202a-\u202e]/g, "?");
    return line.length <= limit ? line : line.slice(0, limit - 3) + "...";
}

// Why a path can be no file of a game; empty when it can.
export function pathFault(path) {
    const parts = path.split("/");
    // eslint-disable-next-line no-control-regex
    const isPlain = !/[\u0000-\u001f\u007f\\]/.test(path) && path[1] !== ":";
    const isBelow = parts.every((part) => part !== "" && part !== "." && part !== "..");
    if (!isPlain || !isBelow || sizeOf(path) > LIMITS.path || parts.length > LIMITS.depth)
        return `"${printable(path)}" is no name of a file in a game: names are relative, without ".." and "\\"`;
    return "";
}

// Bytes of a file's content.
export function sizeOf(content) {
    return typeof content === "string" ? new TextEncoder().encode(content).length : content.length;
}

// Texts as text, so that they can be edited; bytes that are no UTF-8 stay bytes.
export function contentOf(path, bytes) {
    if (!isText(path)) return bytes;
    try {
        return new TextDecoder("utf-8", { fatal: true }).decode(bytes);
    } catch {
        return bytes;
    }
}

// Collects files under the limits; the first fault throws.
export class GameCollector {
    #files = new Map();
    #bytes = 0;

    // content: of the file, or its size alone, for what is to be checked before it is unpacked.
    check(path, size) {
        const fault = pathFault(path);
        if (fault !== "") throw new GameFault(fault);
        if (this.#isTaken(path)) throw new GameFault(`${printable(path)}: two files have this name`);
        if (this.#files.size >= LIMITS.files) throw new GameFault(`a game has at most ${LIMITS.files} files`);
        if (size > LIMITS.bytes - this.#bytes)
            throw new GameFault(`its files have more than ${LIMITS.bytes / 1024 / 1024} MB unpacked`);
    }

    add(path, bytes) {
        this.check(path, bytes.length);
        this.#bytes += bytes.length;
        this.#files.set(path, contentOf(path, bytes));
    }

    // The same name, or a file where another one needs a folder.
    #isTaken(path) {
        const parts = path.split("/");
        const above = parts.slice(1).map((_, i) => parts.slice(0, i + 1).join("/"));
        return above.some((folder) => this.#files.has(folder)) ||
            [...this.#files.keys()].some((other) => other === path || other.startsWith(path + "/"));
    }

    files() {
        return this.#files;
    }
}

// The folder that all files stand in, with a slash at its end; empty for none.
export function commonFolder(paths) {
    const first = paths[0] ?? "";
    const folder = first.slice(0, first.indexOf("/") + 1);
    return paths.every((path) => path.startsWith(folder)) ? folder : "";
}

// The game's files without a folder around them, and the file that starts it: "main.lua", else the one of the folder's
// name, else the only script beside it. The native Runner has the same rule. Throws where there is none.
export function gameOf(files) {
    const own = new Map([...files].filter(([path]) => !path.startsWith("__MACOSX/")));
    const folder = commonFolder([...own.keys()]);
    const inner = new Map([...own].map(([path, content]) => [path.slice(folder.length), content]));
    const scripts = [...inner.keys()].filter((path) => isScript(path) && !path.includes("/"));
    const main = ["main.lua", folder.slice(0, -1) + ".lua"].find((path) => inner.has(path)) ??
        (scripts.length === 1 ? scripts[0] : "");
    if (main === "" && scripts.length === 0) throw new GameFault("there is no Lua file in it: pack the game's folder");
    if (main === "") throw new GameFault('it has several Lua files and no "main.lua": rename the one that starts the game');
    return { files: inner, main };
}
