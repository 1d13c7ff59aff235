// Each game of the manual in Chromium and in the native Runner: the same bits.
import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import { EXAMPLES, expectQuiet, gameFile, games, native, openPlayer, ROOT, SITE } from "./browser.mjs";

const FRAMES = 120;

let opened, folder, call, close;
before(async () => { ({ opened, folder, call, close } = await openPlayer()); });
after(() => close());

async function nativeTrace(game, frames) {
    const file = path.join(folder, `${game.id}.txt`);
    await native(gameFile(game), "--no-draw", "--frames", String(frames), "--trace", file, "--out", folder);
    return fs.readFileSync(file, "utf8").split("\n").slice(0, -1);
}

// One after the other in the page, while the native Runner plays the next one.
test(`each game plays ${FRAMES} frames without a word, and its trace is the native one, line by line`, async (t) => {
    const all = games();
    assert.ok(all.length >= 90, `only ${all.length} games`);
    let lines = 0;
    const next = (i) => (i < all.length ? nativeTrace(all[i], FRAMES) : null);
    let coming = next(0);
    for (const [i, game] of all.entries()) {
        const expected = await coming;
        coming = next(i + 1);
        const { trace, told, failure } = await call("played", game.id, FRAMES);
        assert.equal(failure, "", game.id);
        assert.deepEqual([told.error, told.report], [[], []], game.id);
        assert.ok(trace.length >= FRAMES, `${game.id} has a trace of ${trace.length} lines`);
        assert.deepEqual(trace, expected, game.id);
        lines += trace.length;
    }
    t.diagnostic(`${all.length} games, ${lines} equal lines`);
    expectQuiet(opened);
});

// What they draw, the test before this one has seen: six hundred frames of it would take minutes.
test("the golden traces are the browser's, too", async () => {
    for (const id of EXAMPLES) {
        const { trace } = await call("played", id, 600, 0);
        const text = trace.map((line) => line + "\n").join("");
        const golden = fs.readFileSync(path.join(ROOT, `Tests/Golden/${id}_trace.txt`), "utf8");
        assert.equal(trace.slice(0, 100).map((line) => line + "\n").join("") + fingerprint(text), golden, id);
    }
});

// As the golden files end: the number of bytes, and their FNV-1a hash of 64 bits.
function fingerprint(text) {
    let hash = 0xcbf29ce484222325n;
    for (const byte of Buffer.from(text)) hash = BigInt.asUintN(64, (hash ^ BigInt(byte)) * 0x100000001b3n);
    return `${Buffer.byteLength(text)} bytes, hash ${hash.toString(16).padStart(16, "0")}\n`;
}

test("each game stands on the page that index.json names", () => {
    for (const game of games().filter((each) => each.page !== "")) {
        const page = game.page === "README.md" ? "index.html" : game.page.replace(".md", ".html");
        const text = fs.readFileSync(path.join(SITE, page), "utf8");
        assert.equal(text.split(`data-example="${game.id}"`).length, 2, `${game.id} on ${page}`);
    }
});
