import assert from "node:assert/strict";
import test from "node:test";
import { gameFiles, headless, open, runCommand, textOf, valueOf, walk } from "./support.mjs";

const GOLDEN_LINES = 100; // of a golden trace; its last line is a hash of the rest

for (const [game, frames] of [["canyon", 120], ["shake", 120], ["orbit", 120], ["split", 60]])
    test(`${game} has the native Runner's trace`, async () => {
        const golden = textOf(`Tests/Golden/${game}_trace.txt`).split("\n").slice(0, GOLDEN_LINES);
        const lines = await headless(gameFiles(game), `${game}.lua`, frames);
        assert.deepEqual(lines.slice(0, GOLDEN_LINES), golden);
    });

test("a held key reaches the game in each frame, and the trace tells of it", async () => {
    const { runner } = await open(walk(), { options: { trace: true } });
    runner.key("ArrowRight", true);
    runner.step(3);
    runner.key("ArrowRight", false);
    runner.step();
    assert.deepEqual(runner.trace().map((line) => line.split(" ")[3]), ["310", "320", "330", "330"]);
    await runner.close();
});

test("going back and on again comes to the same places, and playing on forgets what was known", async () => {
    const { runner } = await open(walk());
    runner.key("ArrowRight", true);
    runner.step(500);
    assert.equal(valueOf(runner, "x"), 5300);
    assert.equal(await runner.goTo(100), 100);
    assert.equal(valueOf(runner, "x"), 1300);
    assert.equal(await runner.goTo(499), 499);
    assert.equal(valueOf(runner, "x"), 5290);
    assert.equal(await runner.goTo(100000), 500);
    assert.equal(await runner.goTo(-3), 0);
    runner.step();
    assert.deepEqual([runner.frame, runner.frames], [1, 1]);
    await runner.close();
});

test("a reload plays the known input with the changed file up to the same frame", async () => {
    const { runner } = await open(walk());
    runner.key("ArrowRight", true);
    runner.step(90);
    await runner.reload(new Map([["game.lua", walk(20)]]));
    assert.deepEqual([runner.frame, valueOf(runner, "x")], [90, 2100]);
    await runner.close();
});

test("an error is told with its place, and a reload of the mended file goes on", async () => {
    const broken = walk().replace("self.x = self.x + 10", "self.x = self.x + nothing");
    const { runner, told } = await open(broken);
    runner.step(2);
    runner.key("ArrowRight", true);
    runner.step();
    const [failure] = told.failures;
    assert.deepEqual([failure.file, failure.line, failure.event, failure.object, failure.room, failure.frame],
        ["game.lua", 3, "walker: step", "walker", "field", 2]);
    assert.match(failure.message, /^attempt to perform arithmetic on a nil value \(global 'nothing'\)$/);
    assert.match(failure.stack[0].place, /^game\.lua:3/);
    runner.step();
    assert.equal(told.failures.length, 1);
    await runner.reload(new Map([["game.lua", walk()]]));
    assert.equal(runner.failure, null);
    assert.deepEqual([runner.frame, valueOf(runner, "x")], [3, 310]);
    await runner.close();
});

test("an error in the main file is told before the first frame", async () => {
    const { runner, told } = await open("x = = 3");
    assert.deepEqual([told.failures[0].file, told.failures[0].line], ["game.lua", 1]);
    await runner.reload(new Map([["game.lua", walk()]]));
    runner.step();
    assert.deepEqual([runner.failure, runner.frame], [null, 1]);
    await runner.close();
});

test("a loop without an end is ended by the limit of instructions, which is named", async () => {
    const { runner, told } = await open("room_add{ step = function() while true do end end }", { options: { instructions: 1 } });
    runner.step();
    assert.match(told.failures[0].text, /^game\.lua:1: .*instructions/);
    await runner.close();
});

test("a script that eats memory fails, and the program lives", async () => {
    const eater = `room_add{ step = function() local t = {} while true do t[#t + 1] = string.rep("x", 100000) .. #t end end }`;
    const { runner, told } = await open(eater, { options: { memory: 64 } });
    runner.step();
    assert.match(told.failures[0].text, /memory/);
    assert.equal(runner.dead, "");
    await runner.reload(new Map([["game.lua", walk()]]));
    runner.step();
    assert.equal(runner.failure, null);
    await runner.close();
});

test("a browser without vectors is told in one line", async () => {
    const { validate } = WebAssembly;
    WebAssembly.validate = () => false;
    try {
        await assert.rejects(open("orbit"), {
            message: "this browser's WebAssembly has no vectors (SIMD), which the Runner needs",
        });
    } finally {
        WebAssembly.validate = validate;
    }
});

test("errors unwind through pcall, coroutines and functions of the Runner", async () => {
    const { runner, told } = await open(`
        local function deep(n) return n == 0 and error("bottom") or 1 + deep(n - 1) end
        log(select(2, pcall(deep, 100)))
        local made = coroutine.wrap(function() local good, why = pcall(coroutine.yield, 1) error("inside") end)
        made()
        log(select(2, pcall(made)))
        log(select(2, pcall(camera_create_view, "x")))
        log(tostring(select(2, pcall(string.rep, "x", -1))))
        local function endless() return 1 + endless() end
        log(select(2, pcall(endless)))
        local function matching(n) return (string.gsub("x", "x", function() return matching(n + 1) end)) end
        log(select(2, pcall(matching, 0)))
        log(select(2, load(string.rep("(", 5000) .. "1" .. string.rep(")", 5000))))
        room_add{}`);
    const [bottom, inside, call, , overflow, nested, parsed] = told.log;
    assert.match(bottom, /bottom$/);
    assert.match(inside, /inside$/);
    assert.match(call, /camera_create_view/);
    assert.match(overflow, /stack overflow/);
    assert.match(nested, /overflow/);
    assert.match(parsed, /overflow|too many/);
    assert.deepEqual([runner.failure, runner.dead], [null, ""]);
    await runner.close();
});

test("the command line answers as the native one does", async () => {
    const files = new Map([["game.lua", walk()], ["input.txt", "0 key right down\n"]]);
    const run = await runCommand({ files, args: ["game.lua", "--no-draw", "--frames", "5", "--input", "input.txt", "--trace", "t"] });
    const lines = new TextDecoder().decode(run.written.get("t")).split("\n");
    assert.deepEqual([run.status, run.err, lines.length, lines[4].split(" ")[3]], [0, "", 6, "350"]);
    const wrong = await runCommand({ files, args: ["game.lua", "--frames", "none"] });
    assert.equal(wrong.status, 2);
    assert.match(wrong.err, /^runner: --frames: "none"/);
});
