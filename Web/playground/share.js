// A game as the fragment of a link: "#game=...". Browsers send a fragment to no server.
//
// The text is base64url of deflated bytes: a mark with a version, the number of files (16 bits), for each file the length
// of its path (16 bits), the path, the length of its content (32 bits), the content, and at the end the CRC-32 of all that
// stands before it. Numbers have their lowest byte first. The first file starts the game.

import { deflateSync } from "fflate";
import { crc32 } from "./crc32.js";
import { GameCollector, GameFault, isScript } from "./game_files.js";
import { inflateWithin } from "./inflate.js";

const KEY = "game=";
const MARK = [0x43, 0x47, 1]; // "CG", version 1
const CHECKSUM_SIZE = 4;
export const LINK_LIMIT = 30000; // characters of the fragment: longer links are cut by mail and chat programs
const UNPACKED_LIMIT = 8 * 1024 * 1024;
const DAMAGED = "the link is damaged: a part of it may be missing";

class Writer {
    #pieces = [];

    number(value, bytes) {
        for (let i = 0; i < bytes; ++i) this.#pieces.push(Uint8Array.of((value >>> (8 * i)) & 0xff));
    }

    bytes(bytes, lengthBytes) {
        this.number(bytes.length, lengthBytes);
        this.#pieces.push(bytes);
    }

    all() {
        const all = new Uint8Array(this.#pieces.reduce((size, piece) => size + piece.length, 0));
        let at = 0;
        for (const piece of this.#pieces) {
            all.set(piece, at);
            at += piece.length;
        }
        return all;
    }
}

// Reads nothing behind the end: what is missing is damage.
class Reader {
    #at = 0;

    constructor(content) {
        this.content = content;
    }

    number(bytes) {
        let value = 0;
        for (let i = 0; i < bytes; ++i) value += this.#taken(1)[0] * 2 ** (8 * i);
        return value;
    }

    bytes(lengthBytes) {
        return this.#taken(this.number(lengthBytes));
    }

    isAtEnd() {
        return this.#at === this.content.length;
    }

    #taken(size) {
        if (size > this.content.length - this.#at) throw new GameFault(DAMAGED);
        this.#at += size;
        return this.content.subarray(this.#at - size, this.#at);
    }
}

const bytesOf = (content) => (typeof content === "string" ? new TextEncoder().encode(content) : content);

// The fragment without "#"; null when it would be longer than LINK_LIMIT, and the game goes as a file instead.
export function linkOf(game) {
    const writer = new Writer();
    const others = [...game.files].filter(([path]) => path !== game.main);
    for (const byte of MARK) writer.number(byte, 1);
    writer.number(1 + others.length, 2);
    for (const [path, content] of [[game.main, game.files.get(game.main)], ...others]) {
        writer.bytes(bytesOf(path), 2);
        writer.bytes(bytesOf(content), 4);
    }
    const content = writer.all();
    if (content.length + CHECKSUM_SIZE > UNPACKED_LIMIT) return null;
    writer.number(crc32(content), CHECKSUM_SIZE);
    const text = KEY + base64url(deflateSync(writer.all(), { level: 9 }));
    return text.length <= LINK_LIMIT ? text : null;
}

// The game in a fragment, with or without "#"; null when it has none. Throws a GameFault of one line for one that is
// damaged or too much.
export function gameOfLink(fragment) {
    const text = fragment.replace(/^#/, "");
    if (!text.startsWith(KEY)) return null;
    if (text.length > LINK_LIMIT) throw new GameFault("the link is too long to be a game of this page");
    const packed = fromBase64url(text.slice(KEY.length));
    const content = packed === null ? null : inflateWithin(packed, UNPACKED_LIMIT);
    if (content === null || content.length < CHECKSUM_SIZE) throw new GameFault(DAMAGED);
    const reader = new Reader(content.subarray(0, -CHECKSUM_SIZE));
    const checksum = new Reader(content.subarray(-CHECKSUM_SIZE)).number(CHECKSUM_SIZE);
    if (crc32(reader.content) !== checksum) throw new GameFault(DAMAGED);
    return readGame(reader);
}

function readGame(reader) {
    if (MARK.some((byte) => reader.number(1) !== byte))
        throw new GameFault("the link is of another version of this page");
    const files = new GameCollector();
    let main = null;
    for (let left = reader.number(2); left > 0; --left) {
        const path = new TextDecoder("utf-8").decode(reader.bytes(2));
        files.add(path, reader.bytes(4).slice());
        main ??= path;
    }
    if (!reader.isAtEnd() || main === null || !isScript(main)) throw new GameFault(DAMAGED);
    return { files: files.files(), main };
}

function base64url(bytes) {
    let text = "";
    for (let at = 0; at < bytes.length; at += 0x8000) text += String.fromCharCode(...bytes.subarray(at, at + 0x8000));
    return btoa(text).replaceAll("+", "-").replaceAll("/", "_").replace(/=+$/, "");
}

// null for what is none.
function fromBase64url(text) {
    if (!/^[A-Za-z0-9_-]*$/.test(text)) return null;
    try {
        return Uint8Array.from(atob(text.replaceAll("-", "+").replaceAll("_", "/")), (sign) => sign.charCodeAt(0));
    } catch {
        return null;
    }
}
