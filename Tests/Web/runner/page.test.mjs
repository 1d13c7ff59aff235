// The Runner in Chromium, through WebGL 2: keyboard and mouse, the lost context, a hidden page, the inspector's drags. Touch,
// gamepads, the browser's storage and the traces of games are tested in the pages of the site.
//   node --test Tests/Web/runner/page.test.mjs        first: the preset web; npm ci in Web
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { gamePage, launch, openGame, serve, until } from "./page.mjs";
import { walk } from "./support.mjs";

let server, browser;
before(async () => {
    server = await serve();
    browser = await launch();
});
after(async () => {
    await browser?.close();
    server?.close();
});

// A page with a game of its own text.
async function openOwn(text, more = {}) {
    const opened = await openGame(browser, server, gamePage(server, "shake", { paused: "" }));
    await opened.page.evaluate(async ([game, options]) => {
        const { createRunner } = await import("/build/web/runner/runner.js");
        await runner.close();
        told.length = 0;
        globalThis.runner = await createRunner({
            canvas: document.querySelector("canvas"), files: new Map([["game.lua", game]]), main: "game.lua",
            options,
            on: { text: (line, kind) => told.push(`${kind}: ${line}`), failure: (failure) => told.push(failure.text) },
        });
    }, [text, more]);
    return opened;
}

function expectQuiet({ said, left }) {
    assert.deepEqual([said, left], [[], []]);
}

// The browser itself says on the console that a context is lost.
function assertOnlyLoss({ said, left }) {
    expectQuiet({ said: said.filter((line) => !line.includes("CONTEXT_LOST_WEBGL")), left });
}

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
    await until(page, () => told.length >= 3);
    assert.deepEqual((await page.evaluate(() => told)).sort(), ["log: d", "log: left 100.0 60.0", "log: wheel 2"]);
    expectQuiet(opened);
    await page.close();
});

// How many objects the program holds in the drawing context.
const objects = (page) => page.evaluate(() => {
    const { GL } = runner.program.core;
    return ["textures", "buffers", "framebuffers", "renderbuffers", "programs", "shaders"]
        .map((kind) => GL[kind].filter((object) => object !== null && object !== undefined).length);
});

// What the game shows, as one number.
const shown = (page) => page.evaluate(() => runner.picture().rgba.reduce((all, byte) => (Math.imul(all, 31) + byte) | 0, 7));

// Loses the context; while it is away, `meanwhile` runs in the page. It is there again afterwards, and the game stands.
async function loseContext(page, meanwhile = () => {}) {
    await page.evaluate(() => {
        const canvas = document.querySelector("canvas");
        const came = (kind) => new Promise((done) => { canvas.addEventListener(kind, done, { once: true }); });
        globalThis.losing = canvas.getContext("webgl2").getExtension("WEBGL_lose_context");
        globalThis.gone = came("webglcontextlost");
        globalThis.back = came("webglcontextrestored");
        losing.loseContext();
    });
    await page.evaluate(meanwhile);
    await page.evaluate(async () => {
        await gone;
        setTimeout(() => losing.restoreContext(), 20); // refused as long as the event is being told
        await back;
    });
}

const openTown = () => openGame(browser, server, gamePage(server, "town", { paused: "" }));

test("a lost context comes back with the picture of before, and a game that is stepped stands meanwhile", async () => {
    const opened = await openTown();
    const { page } = opened;
    await page.evaluate(() => runner.step(40));
    const before = [await shown(page), await objects(page)];
    await loseContext(page, () => runner.step());
    await until(page, () => runner.way === null && runner.frame === 40);
    assert.deepEqual([await shown(page), await objects(page)], before);
    assert.deepEqual(await page.evaluate(() => [runner.failure, told.filter((line) => line.startsWith("error"))]), [null, []]);
    assertOnlyLoss(opened);
    await page.close();
});

test("a game that plays when its context is lost goes on with the pictures of an undisturbed one", async () => {
    const opened = await openTown();
    const { page } = opened;
    await page.evaluate(() => runner.step(60));
    const undisturbed = await shown(page);
    await page.evaluate(async () => {
        await runner.goTo(30);
        runner.play();
    });
    await until(page, () => runner.frame > 31);
    await loseContext(page, async () => {
        const at = runner.frame;
        await new Promise((done) => { setTimeout(done, 100); });
        if (runner.frame !== at) throw new Error(`it went on from ${at} to ${runner.frame}`);
    });
    const at = await page.evaluate(() => runner.frame);
    await until(page, (frame) => runner.frame > frame, at);
    const { playing, failure, frame } = await page.evaluate(() => {
        const { playing, failure } = runner;
        runner.pause();
        return { playing, failure, frame: runner.frame };
    });
    assert.deepEqual([playing, failure], [true, null]);
    assert.ok(frame < 60, `it is at frame ${frame} already`);
    await page.evaluate((frames) => runner.step(frames), 60 - frame);
    assert.equal(await shown(page), undisturbed);
    assertOnlyLoss(opened);
    await page.close();
});

test("going to another frame leaves nothing behind in the drawing context", async () => {
    const { page } = await openTown();
    await page.evaluate(() => runner.step(10));
    const before = await objects(page);
    for (const frame of [4, 9, 2, 10]) await page.evaluate((wanted) => runner.goTo(wanted), frame);
    assert.deepEqual(await objects(page), before);
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
