// What is kept: recordings, the save area, changes by hand; and what is refused.
import assert from "node:assert/strict";
import test from "node:test";
import { createRunner, memoryStore, open, valueOf, walk } from "./support.mjs";

// Saves in its third frame, and logs what the settings held.
const SAVER = `settings.visits = (settings.visits or 0) + 1
log("visit " .. settings.visits)
vars.frames = 0
room_add{ step = function()
    vars.frames = vars.frames + 1
    if vars.frames == 3 then game_save("slots/one.sav") end
end }`;

test("a recording replays to the same place, says when it has ended, and is the same recording again", async () => {
    const { runner } = await open(walk());
    runner.key("ArrowRight", true);
    runner.step(70);
    runner.key("ArrowRight", false);
    runner.step(5);
    const recording = runner.recording();
    const { runner: other, told } = await open(walk(), { options: { replay: recording } });
    other.step(200);
    assert.deepEqual([other.frame, valueOf(other, "x"), told.ended], [75, 1000, 1]);
    assert.deepEqual(other.recording(), recording);
    await other.goTo(70);
    await runner.restart();
    assert.equal(runner.frame, 0);
    await runner.replay(recording);
    runner.step(75);
    assert.equal(valueOf(runner, "x"), 1000);
    await Promise.all([runner.close(), other.close()]);
});

test("a recording of another game is refused in one line, and anyway is played", async () => {
    const { runner } = await open(walk());
    runner.step(3);
    const recording = runner.recording();
    const files = new Map([["game.lua", walk(20)]]);
    await assert.rejects(createRunner({ files, main: "game.lua", options: { replay: recording } }), /has changed/);
    const other = await createRunner({ files, main: "game.lua", options: { replay: recording, anyway: true } });
    other.step(9);
    assert.equal(other.frame, 3);
    await Promise.all([runner.close(), other.close()]);
});

test("what is no recording is refused in one line", async () => {
    for (const bytes of [new Uint8Array(0), new TextEncoder().encode("not a recording"), new Uint8Array(5000).fill(255)])
        await assert.rejects(createRunner({ files: new Map([["game.lua", walk()]]), main: "game.lua", options: { replay: bytes } }),
            (error) => error.message.length > 10 && !error.message.includes("\n"));
});

test("saves and settings are stored, and found at the next visit", async () => {
    const kept = new Map();
    const store = {
        load: async () => new Map(kept),
        put: async (name, content) => void kept.set(name, content),
        remove: async (name) => void kept.delete(name),
    };
    const { runner, told } = await open(SAVER, { saves: store });
    runner.step(5);
    await runner.close();
    assert.deepEqual([...kept.keys()].sort(), ["settings.txt", "slots/one.sav"]);
    const { runner: again, told: toldAgain } = await open(SAVER, { saves: store });
    assert.deepEqual([told.log, toldAgain.log], [["visit 1"], ["visit 2"]]);
    assert.deepEqual(again.saves().map((file) => file.name), ["settings.txt", "slots/one.sav"]);
    again.removeSave("slots/one.sav");
    await again.stored();
    assert.deepEqual([...kept.keys()], ["settings.txt"]);
    await again.close();
});

test("a full store is told in one line for each file, and the game goes on with its save in memory", async () => {
    const full = Object.assign(new Error("no room"), { name: "QuotaExceededError" });
    const store = { ...memoryStore(), put: async () => { throw full; } };
    const { runner, told } = await open(SAVER, { saves: store });
    runner.step(5);
    await runner.stored();
    assert.deepEqual(told.error.filter((line) => line.startsWith('"slots/one.sav"')),
        ['"slots/one.sav" is kept only until the page is closed: the browser\'s storage is full']);
    runner.step(5);
    await runner.stored();
    assert.deepEqual([runner.frame, runner.failure, runner.readSave("slots/one.sav").length > 100], [10, null, true]);
    assert.equal(told.error.filter((line) => line.startsWith('"slots/one.sav"')).length, 1);
    await runner.close();
});

test("a store that cannot be read is told, and the game is played without it", async () => {
    const store = { ...memoryStore(), load: async () => { throw new Error("damaged"); } };
    const { runner, told } = await open(walk(), { saves: store });
    runner.step();
    assert.deepEqual([told.error, runner.frame], [["the saves cannot be read, so none are kept: damaged"], 1]);
    await runner.close();
});

test("a game that fails at its start takes the place of a running one, however slow the store is", async () => {
    const store = { ...memoryStore(), load: () => new Promise((done) => { setTimeout(() => done(new Map()), 60); }) };
    const { runner, told } = await open(walk(), { saves: store });
    runner.play();
    await runner.restart(new Map([["game.lua", "x = = 3"]]));
    assert.deepEqual([runner.dead, runner.failure.file, told.failures.map((failure) => failure.line)], ["", "game.lua", [1]]);
    await runner.restart(new Map([["game.lua", walk()]]));
    runner.step(2);
    assert.deepEqual([runner.dead, runner.failure, runner.frame, told.failures.length], ["", null, 2, 1]);
    await runner.close();
});

test("a saved game goes on in another runner, and imports and exports are files", async () => {
    const { runner } = await open(walk());
    runner.key("ArrowRight", true);
    runner.step(20);
    const { runner: other } = await open(walk(), { options: { load: runner.save() } });
    other.step();
    assert.deepEqual([other.frame, valueOf(other, "x")], [1, 500]);
    other.writeSave("slots/copy.sav", runner.save());
    assert.deepEqual(other.readSave("slots/copy.sav"), runner.save());
    assert.equal(other.readSave("slots/none.sav"), null);
    for (const name of ["", "../out", "/abs", "a/../../b", "a//b", "a\n"]) assert.throws(() => other.writeSave(name, new Uint8Array(1)));
    await Promise.all([runner.close(), other.close()]);
});

test("a change by hand shows in the panel and is part of the recording", async () => {
    const { runner } = await open(walk());
    runner.step(2);
    const camera = runner.panel().selected;
    assert.equal(runner.setValue(camera, "border_x", 50), true);
    assert.equal(runner.setValue(camera, "no_such_field", 1), false);
    assert.equal(runner.setValue(12345, "x", 1), false);
    assert.equal(valueOf(runner, "border_x"), 50);
    assert.match(runner.copyAsLua(camera), /50/);
    runner.step(2);
    const { runner: other } = await open(walk(), { options: { replay: runner.recording() } });
    other.step(2);
    assert.equal(valueOf(other, "border_x"), 200);
    other.step(2);
    assert.equal(valueOf(other, "border_x"), 50);
    await Promise.all([runner.close(), other.close()]);
});

test("files that lead out of the game's folder, or are no files, are refused", async () => {
    const wrong = [["../game.lua", ""], ["/game.lua", ""], ["a/./b", ""], ["a\\b", ""], ["", ""], ["a/", ""], ["c:/x", ""],
        ["tab\there", ""], ["number", 7]];
    for (const [path, content] of wrong)
        await assert.rejects(createRunner({ files: new Map([["game.lua", walk()], [path, content]]), main: "game.lua" }), /is refused/, path);
    const both = new Map([["game.lua", walk()], ["a", ""], ["a/b", ""]]);
    await assert.rejects(createRunner({ files: both, main: "game.lua" }), /"a" is a file/);
    await assert.rejects(createRunner({ files: new Map([["x.lua", ""]]), main: "game.lua" }), /there is no file "game\.lua"/);
});
