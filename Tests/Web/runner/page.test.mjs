// The Runner in Chromium, through WebGL 2: pictures, devices, the lost context, the browser's storage.
//   node --test Tests/Web/runner/page.test.mjs        first: the preset web; npm ci in Web
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { gamePage, launch, openGame, serve } from "./page.mjs";
import { textOf, walk } from "./support.mjs";

const GOLDEN_LINES = 100; // of a golden trace; its last line is a hash of the rest

let server, browser;
before(async () => {
    server = await serve();
    browser = await launch();
});
after(async () => {
    await browser?.close();
    server?.close();
});

// A page with a game of its own; `create` runs there with the game's text and the module.
async function openOwn(text, more = {}) {
    const opened = await openGame(browser, server, gamePage(server, "shake", { paused: "" }));
    await opened.page.evaluate(async ([game, options]) => {
        const { createRunner, browserStore } = await import("/build/web/runner/runner.js");
        await runner.close();
        told.length = 0;
        globalThis.runner = await createRunner({
            canvas: document.querySelector("canvas"), files: new Map([["game.lua", game]]), main: "game.lua",
            saves: options.area ? browserStore(options.area) : undefined, options: { trace: true, ...options },
            on: { text: (line, kind) => told.push(`${kind}: ${line}`), failure: (failure) => told.push(failure.text) },
        });
    }, [text, more]);
    return opened;
}

const seen = (page) => page.evaluate(() => runner.trace().map((line) => Number(line.split(" ")[3])));

function expectQuiet({ said, left }) {
    assert.deepEqual([said, left], [[], []]);
}

for (const [game, frames] of [["canyon", 100], ["shake", 50], ["orbit", 100], ["split", 50]])
    test(`${game} draws, and has the native Runner's trace`, async () => {
        const opened = await openGame(browser, server, gamePage(server, game, { paused: "", trace: "" }));
        const golden = textOf(`Tests/Golden/${game}_trace.txt`).split("\n").slice(0, GOLDEN_LINES);
        const result = await opened.page.evaluate((count) => {
            runner.step(count);
            const { rgba } = runner.picture();
            const colours = new Set(new Uint32Array(rgba.buffer, rgba.byteOffset, rgba.length / 4)).size;
            return { lines: runner.trace(), colours, failure: runner.failure };
        }, frames);
        assert.equal(result.failure, null);
        assert.deepEqual(result.lines.slice(0, GOLDEN_LINES), golden);
        assert.ok(result.colours > 10, `${result.colours} colours`);
        expectQuiet(opened);
        await opened.page.close();
    });

test("keyboard, mouse and wheel reach the game", async () => {
    const opened = await openOwn(`screen_set_size(400, 300)
        room_add{ step = function()
            if key_pressed("d") then log("d") end
            if mouse_pressed("left") then log("left " .. mouse_x() .. " " .. mouse_y()) end
            if mouse_wheel() ~= 0 then log("wheel " .. mouse_wheel()) end
        end }`, { size: "game" });
    const { page } = opened;
    await page.evaluate(() => runner.play());
    await page.locator("canvas").click({ position: { x: 100, y: 60 } });
    await page.keyboard.press("d");
    await page.mouse.wheel(0, -200);
    await page.waitForFunction(() => told.length >= 3);
    assert.deepEqual((await page.evaluate(() => told)).sort(), ["log: d", "log: left 100.0 60.0", "log: wheel 2"]);
    expectQuiet(opened);
    await page.close();
});

test("the first finger is the mouse, two fingers are the wheel, and a gamepad is one", async () => {
    const opened = await openOwn(`screen_set_size(400, 300)
        room_add{ step = function()
            if mouse_pressed("left") then log("press") end
            if mouse_released("left") then log("release") end
            if mouse_wheel() ~= 0 then log("wheel " .. mouse_wheel()) end
            if pad_pressed(0, "a") then log("pad a " .. pad_axis(0, "left_x")) end
        end }`, { size: "game" });
    const { page } = opened;
    await page.evaluate(() => {
        const send = (kind, id, y) => document.querySelector("canvas").dispatchEvent(
            new PointerEvent(kind, { pointerId: id, pointerType: "touch", clientX: 100, clientY: y, bubbles: true }));
        send("pointerdown", 21, 100);
        runner.step();
        send("pointerdown", 22, 150);
        runner.step();
        send("pointermove", 21, 180);
        send("pointermove", 22, 230);
        runner.step();
        send("pointerup", 21, 180);
        send("pointerup", 22, 230);
        runner.step();
        const buttons = Array.from({ length: 17 }, (_, i) => ({ pressed: i === 0, value: i === 0 ? 1 : 0 }));
        navigator.getGamepads = () => [{ connected: true, index: 0, axes: [1, 0, 0, 0], buttons }];
        runner.play();
    });
    await page.waitForFunction(() => told.length >= 4);
    assert.deepEqual(await page.evaluate(() => told), ["log: press", "log: release", "log: wheel 2", "log: pad a 1.0"]);
    expectQuiet(opened);
    await page.close();
});

test("a lost context comes back with the same picture, while the game stands and while it plays", async () => {
    const { page } = await openGame(browser, server, gamePage(server, "canyon", { paused: "" }));
    const pictures = await page.evaluate(async () => {
        const sum = () => runner.picture().rgba.reduce((all, byte) => (Math.imul(all, 31) + byte) | 0, 7);
        runner.step(40);
        const before = sum();
        const canvas = document.querySelector("canvas");
        const extension = canvas.getContext("webgl2").getExtension("WEBGL_lose_context");
        const came = (kind) => new Promise((done) => canvas.addEventListener(kind, done, { once: true }));
        const lost = came("webglcontextlost");
        extension.loseContext();
        await lost;
        const restored = came("webglcontextrestored");
        setTimeout(() => extension.restoreContext(), 50);
        await restored;
        while (runner.way !== null || runner.frame !== 40) await new Promise((done) => setTimeout(done, 20));
        const standing = sum();
        runner.play();
        const again = came("webglcontextlost");
        extension.loseContext();
        await again;
        const back = came("webglcontextrestored");
        setTimeout(() => extension.restoreContext(), 50);
        await back;
        const at = runner.frame;
        while (runner.frame < at + 10) await new Promise((done) => setTimeout(done, 20));
        return { before, standing, colours: new Set(runner.picture().rgba).size, failure: runner.failure };
    });
    assert.equal(pictures.standing, pictures.before);
    assert.ok(pictures.colours > 20);
    assert.equal(pictures.failure, null);
    await page.close();
});

test("a hidden page pauses, and goes on when it is seen again", async () => {
    const { page } = await openOwn(walk());
    const states = await page.evaluate(() => {
        const see = (hidden) => {
            Object.defineProperty(document, "hidden", { value: hidden, configurable: true });
            document.dispatchEvent(new Event("visibilitychange"));
            return runner.playing;
        };
        runner.play();
        return [runner.playing, see(true), see(false)];
    });
    assert.deepEqual(states, [true, false, true]);
    await page.close();
});

test("saves are there after the page was loaded again, and a full storage is told while the game goes on", async () => {
    const saver = `settings.visits = (settings.visits or 0) + 1
        room_add{ step = function() if frame_number() == 2 then game_save("one.sav") end end }`;
    const opened = await openOwn(saver, { area: "test area" });
    const { page } = opened;
    await page.evaluate(async () => {
        runner.step(5);
        await runner.close();
    });
    const names = await page.evaluate(async (game) => {
        const { createRunner, browserStore } = await import("/build/web/runner/runner.js");
        const canvas = document.querySelector("canvas");
        const open = () => createRunner({ canvas, files: new Map([["game.lua", game]]), main: "game.lua",
            saves: browserStore("test area"), on: { text: (line, kind) => told.push(`${kind}: ${line}`) } });
        globalThis.runner = await open();
        const saved = runner.saves().map((file) => file.name);
        IDBObjectStore.prototype.put = () => { throw new DOMException("no room", "QuotaExceededError"); };
        runner.step(5);
        await runner.stored();
        runner.step(5);
        return { saved, frame: runner.frame };
    }, saver);
    assert.deepEqual(names, { saved: ["one.sav", "settings.txt"], frame: 10 });
    const errors = (await page.evaluate(() => told)).filter((line) => line.includes("one.sav"));
    assert.deepEqual(errors, ["error: \"one.sav\" is kept only until the page is closed: the browser's storage is full"]);
    await page.close();
});

test("dragging the dead zone's margin in the inspector changes the camera's border", async () => {
    const { page } = await openOwn(walk().replace("hborder = 200", "hborder = 100"), { size: "game" });
    const border = await page.evaluate(() => {
        const canvas = document.querySelector("canvas");
        const send = (kind, x) => {
            const box = canvas.getBoundingClientRect();
            canvas.dispatchEvent(new PointerEvent(kind, { pointerId: 1, pointerType: "mouse", button: 0, buttons: 1,
                clientX: box.left + x, clientY: box.top + 120, bubbles: true }));
        };
        runner.inspect(true);
        runner.step(2);
        runner.show();
        const find = () => runner.panel().sections.flatMap((section) => section.rows).find((row) => row.field === "border_x").number;
        const before = find();
        send("pointermove", 100);
        send("pointerdown", 100);
        send("pointermove", 60);
        send("pointerup", 60);
        return [before, find()];
    });
    assert.equal(border[0], 100);
    assert.ok(Math.abs(border[1] - 60) < 1.5, `${border[1]}`);
    await page.close();
});

test("a canvas without WebGL 2 is refused in one line", async () => {
    const { page } = await openGame(browser, server, gamePage(server, "shake", { paused: "" }));
    const why = await page.evaluate(async () => {
        const { createRunner } = await import("/build/web/runner/runner.js");
        const canvas = document.createElement("canvas");
        canvas.getContext("2d");
        return createRunner({ canvas, files: new Map([["game.lua", "room_add{}"]]), main: "game.lua" }).catch((error) => error.message);
    });
    assert.equal(why, "this browser has no WebGL 2, which the Runner draws with");
    await page.close();
});
