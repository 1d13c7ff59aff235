import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { test } from "node:test";
import { archiveName, packGame, readZip, unpackGame } from "../../../Web/playground/archive.js";
import { GameFault, gameOf } from "../../../Web/playground/game_files.js";

const { zipSync } = createRequire(new URL("../../../Web/package.json", import.meta.url))("fflate");

const game = () => ({
    main: "hop.lua",
    files: new Map([["hop.lua", "log('hop')"], ["parts/a.lua", "--\n".repeat(500)], ["a.png", Uint8Array.of(1, 2)]]),
});
const record = Uint8Array.of(0x89, 1, 2, 3);
const text = (string) => new TextEncoder().encode(string);
const refused = (bytes, word) =>
    assert.throws(() => readZip(bytes), (error) =>
        error instanceof GameFault && error.message.includes(word) && !error.message.includes("\n"));

// The place of the first of these bytes.
const find = (bytes, ...signs) => bytes.findIndex((_, i) => signs.every((sign, k) => bytes[i + k] === sign));
const recordAt = (bytes) => find(bytes, 0x50, 0x4b, 1, 2);

function changed(bytes, place, value) {
    const copy = bytes.slice();
    copy[place] = value;
    return copy;
}

test("a game comes back from its archive, with its recording", () => {
    const back = unpackGame(packGame(game(), record));
    assert.equal(back.main, "hop.lua");
    assert.deepEqual([...back.files].sort(), [...game().files].sort());
    assert.deepEqual(back.recording, record);
    assert.equal(unpackGame(packGame(game())).recording, null);
    assert.equal(archiveName(game()), "hop.zip");
});

test("the folder in the archive tells which of several scripts starts", () => {
    assert.ok(readZip(packGame(game())).has("hop/hop.lua"));
});

test("the same game makes the same archive", () => {
    assert.deepEqual(packGame(game(), record), packGame(game(), record));
});

test("Info-ZIP reads the archive and finds no fault", (t) => {
    const folder = mkdtempSync(join(tmpdir(), "playground-"));
    t.after(() => rmSync(folder, { recursive: true }));
    writeFileSync(join(folder, "hop.zip"), packGame(game(), record));
    try {
        execFileSync("unzip", ["-q", "hop.zip"], { cwd: folder });
    } catch (error) {
        return error.code === "ENOENT" ? t.skip("there is no unzip") : assert.fail(error);
    }
    assert.equal(readFileSync(join(folder, "hop/hop.lua"), "utf8"), "log('hop')");
    assert.deepEqual(new Uint8Array(readFileSync(join(folder, "hop/recording.rec"))), record);
});

test("names that lead out, and names that stand there twice, are refused", () => {
    for (const name of ["../a", "/a", "a/../b", "a\\b", "C:a", "a//b", "a\nb"])
        refused(zipSync({ [name]: text("x") }), "is no name of a file");
    const twice = zipSync({ aa: text("1"), ab: text("2") });
    refused(Uint8Array.from(Buffer.from(Buffer.from(twice).toString("latin1").replaceAll("ab", "aa"), "latin1")), "two files");
    refused(zipSync({ "a": text("1"), "a/b": text("2") }), "two files");
});

test("links, passwords and other ways of packing are refused", () => {
    refused(zipSync({ a: [text("/etc/passwd"), { os: 3, attrs: 0o120777 << 16 }] }), "link");
    const plain = zipSync({ a: text("x") });
    refused(changed(plain, recordAt(plain) + 8, 1), "encrypted");
    refused(changed(plain, recordAt(plain) + 10, 12), "packed in a way");
});

test("a bomb is refused: what is more than it claims, and what claims too much", () => {
    const bomb = zipSync({ a: [new Uint8Array(1 << 20), { level: 1 }] });
    const size = recordAt(bomb) + 24;
    refused(changed(bomb, size + 2, 1), "damaged"); // claims 1 << 16
    refused(changed(bomb, size + 3, 0xff), "MB unpacked");
});

test("every cut and every changed byte is refused in one line, or changes nothing that is read", () => {
    const whole = packGame(game(), record), content = [...readZip(whole)];
    for (let size = 0; size < whole.length; ++size) refused(whole.slice(0, size), "");
    for (let place = 0; place < whole.length; ++place) {
        try {
            assert.deepEqual([...readZip(changed(whole, place, whole[place] ^ 0xff))], content, `${place}`);
        } catch (error) {
            assert.ok(error instanceof GameFault && !error.message.includes("\n"), `${place}: ${error}`);
        }
    }
});

test("the file that starts is main.lua, else the one of the folder's name, else the only one", () => {
    const mainOf = (...paths) => gameOf(new Map(paths.map((path) => [path, ""]))).main;
    assert.equal(mainOf("a.lua", "main.lua"), "main.lua");
    assert.equal(mainOf("hop/hop.lua", "hop/level.lua"), "hop.lua");
    assert.equal(mainOf("hop/hop.lua", "hop/main.lua"), "main.lua");
    assert.equal(mainOf("one.lua", "parts/two.lua"), "one.lua");
    assert.equal(mainOf("__MACOSX/a", "hop/one.lua"), "one.lua");
    assert.throws(() => mainOf("a.lua", "b.lua"), /several Lua files/);
    assert.throws(() => mainOf("a.png"), /no Lua file/);
    assert.throws(() => mainOf(), /no Lua file/);
});
