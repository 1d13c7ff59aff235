import assert from "node:assert/strict";
import { test } from "node:test";
import { deflateRawSync as deflateSync } from "node:zlib"; // somebody else's code
import { crc32 } from "../../../Web/playground/crc32.js";
import { GameFault } from "../../../Web/playground/game_files.js";
import { gameOfLink, linkOf, LINK_LIMIT } from "../../../Web/playground/share.js";

const game = () => ({
    main: "game.lua",
    files: new Map([
        ["parts/über.lua", "return 'ä'\n"],
        ["game.lua", "include('parts/über.lua')"],
        ["a.png", Uint8Array.of(0x89, 0x50, 0, 255)],
        ["empty.txt", ""],
    ]),
});

const encode = (content) => "game=" + Buffer.from(content).toString("base64url");

// A link of these bytes with their right checksum.
function linkOfBytes(bytes) {
    const sum = crc32(Uint8Array.from(bytes));
    return encode(deflateSync(Uint8Array.from([...bytes, sum, sum >>> 8, sum >>> 16, sum >>> 24])));
}

const number = (value, bytes) => Array.from({ length: bytes }, (_, i) => Math.floor(value / 2 ** (8 * i)) & 0xff);
const file = (path, content) => [...number(path.length, 2), ...Buffer.from(path), ...number(content.length, 4), ...Buffer.from(content)];
const MARK = [0x43, 0x47, 1];

test("the checksum is CRC-32", () => {
    assert.equal(crc32(Buffer.from("123456789")), 0xcbf43926); // the check value of its definition
    assert.equal(crc32(new Uint8Array()), 0);
});

test("a game comes back from its link with its paths, texts and bytes, the starting file known", () => {
    const back = gameOfLink("#" + linkOf(game()));
    assert.equal(back.main, "game.lua");
    assert.deepEqual([...back.files].sort(), [...game().files].sort());
});

test("a link has only signs that need no escape in a fragment", () => {
    assert.match(linkOf(game()), /^game=[A-Za-z0-9_-]+$/);
});

test("a fragment without a game is none", () => {
    assert.equal(gameOfLink(""), null);
    assert.equal(gameOfLink("#chapter"), null);
});

test("a game that would make too long a link makes none", () => {
    let seed = 1;
    const noise = (size) => Uint8Array.from({ length: size }, () => (seed = (Math.imul(seed, 1103515245) + 12345) >>> 0) >>> 16);
    const large = (size) => ({ main: "a.lua", files: new Map([["a.lua", ""], ["b.png", noise(size)]]) });
    assert.ok(linkOf(large(30000)) === null); // noise does not shrink, and base64 makes 4 signs of 3 bytes
    const near = linkOf(large(21000));
    assert.ok(near.length <= LINK_LIMIT && near.length > 28000, `${near.length}`);
    assert.equal(gameOfLink(near).files.get("b.png").length, 21000);
});

test("every cut and every changed sign of a link is refused in one line", () => {
    const link = linkOf(game());
    for (let size = "game=".length; size < link.length; ++size)
        assert.throws(() => gameOfLink(link.slice(0, size)), GameFault, `${size}`);
    for (let place = "game=".length; place < link.length; ++place) {
        const damaged = link.slice(0, place) + (link[place] === "A" ? "B" : "A") + link.slice(place + 1);
        try {
            assert.deepEqual([...gameOfLink(damaged).files], [...gameOfLink(link).files]); // bits behind the end
        } catch (error) {
            assert.ok(error instanceof GameFault && !error.message.includes("\n"), `${place}: ${error}`);
        }
    }
});

test("signs that are no base64url, and a fragment of any length, are refused", () => {
    for (const text of ["game=%%%", "game=a b", "game=ä", "game=" + "A".repeat(1000001)])
        assert.throws(() => gameOfLink(text), GameFault);
});

test("a link that unpacks to more than the bound is refused before it is unpacked whole", () => {
    const bomb = encode(deflateSync(new Uint8Array(20 * 1024 * 1024), { level: 9 }));
    assert.ok(bomb.length < LINK_LIMIT);
    assert.throws(() => gameOfLink(bomb), /damaged/);
});

test("contents that lie about themselves are refused", () => {
    const good = [...MARK, ...number(1, 2), ...file("a.lua", "x")];
    assert.equal(gameOfLink(linkOfBytes(good)).main, "a.lua");
    const lies = {
        "another version": [0x43, 0x47, 9, ...good.slice(3)],
        "a file too many": [...MARK, ...number(2, 2), ...file("a.lua", "x")],
        "65535 files": [...MARK, ...number(65535, 2), ...file("a.lua", "x")],
        "bytes behind the end": [...good, 0],
        "no file": [...MARK, 0, 0],
        "a size beyond the end": [...MARK, 1, 0, 5, 0, ...Buffer.from("a.lua"), 255, 255, 255, 255],
        "a start that is no script": [...MARK, 1, 0, ...file("a.png", "x")],
        "a path that climbs": [...MARK, 1, 0, ...file("../a.lua", "x")],
        "a path that is absolute": [...MARK, 1, 0, ...file("/a.lua", "x")],
        "a path too deep": [...MARK, 1, 0, ...file("a/".repeat(16) + "a.lua", "x")],
        "one name twice": [...MARK, 2, 0, ...file("a.lua", "x"), ...file("a.lua", "y")],
    };
    for (const [what, bytes] of Object.entries(lies))
        assert.throws(() => gameOfLink(linkOfBytes(bytes)), GameFault, what);
});
