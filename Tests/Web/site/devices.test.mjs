// Touch, a gamepad, a lost drawing context, a full storage, a page that is loaded again; and the games in the pages.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { expectQuiet, launch, openPage, serve, withInPage } from "./browser.mjs";

let server, browser;
before(async () => {
    server = await serve();
    browser = await launch();
});
after(async () => {
    await browser.close();
    server.close();
});

async function inPage(act, options, name = "Docs/Licences.html") {
    const opened = await openPage(browser, server, options);
    await opened.page.goto(server.address + name);
    const call = await withInPage(opened, server);
    await act(opened.page, call, opened);
    expectQuiet(opened);
    await opened.close();
}

const told = (page, kind = "log") => page.evaluate((which) => globalThis.game.told[which], kind);

async function until(page, condition) {
    for (let i = 0; i < 200; ++i) {
        if (await condition()) return;
        await page.waitForTimeout(50);
    }
    assert.fail(`it never came to ${condition}`);
}

test("a finger is the mouse", () => inPage(async (page, call) => {
    const text = `screen_set_size(200, 100) room_add{ step = function()
        if mouse_pressed("left") then log("at " .. mouse_x() .. " " .. mouse_y()) end
    end }`;
    await call("open", { text, width: 400, height: 200, devices: true });
    await page.evaluate(() => globalThis.game.runner.play());
    await page.touchscreen.tap(100, 60);
    await until(page, async () => (await told(page)).length > 0);
    assert.deepEqual(await told(page), ["at 50.0 30.0"]);
}, { hasTouch: true }));

test("a gamepad's button and stick reach the game", () => inPage(async (page, call) => {
    const text = `room_add{ step = function()
        if pad_pressed(0, "a") then log("a, stick " .. pad_axis(0, "left_x")) end
    end }`;
    await page.evaluate(() => {
        const button = (pressed) => ({ pressed, touched: pressed, value: pressed ? 1 : 0 });
        globalThis.pad = { index: 0, id: "a pad", connected: true, mapping: "standard", timestamp: 1, axes: [1, 0, 0, 0],
                           buttons: Array.from({ length: 17 }, () => button(false)) };
        navigator.getGamepads = () => [globalThis.pad, null, null, null];
        globalThis.press = () => { globalThis.pad.buttons[0] = button(true); globalThis.pad.timestamp++; };
    });
    await call("open", { text, devices: true });
    await page.evaluate(() => {
        dispatchEvent(new Event("gamepadconnected"));
        globalThis.game.runner.play();
    });
    await until(page, () => page.evaluate(() => globalThis.game.runner.frame > 5));
    await page.evaluate(() => globalThis.press());
    await until(page, async () => (await told(page)).length > 0);
    assert.deepEqual(await told(page), ["a, stick 1.0"]);
}));

// A number for the picture that was drawn last.
const shown = (page) => page.evaluate(() => globalThis.game.runner.picture().rgba
    .reduce((sum, byte, i) => (sum + byte * (i % 251 + 1)) % 1000000007, 0));

test("a lost drawing context comes back with the same picture", () => inPage(async (page, call) => {
    const game = { id: "your_game-10" }; // has a tileset to be uploaded anew
    await call("open", game);
    await page.evaluate(() => globalThis.game.runner.step(12));
    const undisturbed = await shown(page);
    await call("close");
    await call("open", game);
    await page.evaluate(async () => {
        const { runner } = globalThis.game;
        const canvas = document.querySelector("body > canvas");
        const came = (name) => new Promise((done) => { canvas.addEventListener(name, done, { once: true }); });
        runner.step(10);
        const losing = canvas.getContext("webgl2").getExtension("WEBGL_lose_context");
        const lost = came("webglcontextlost");
        losing.loseContext();
        await lost;
        runner.step(1); // the game goes on meanwhile
        const back = came("webglcontextrestored");
        setTimeout(() => losing.restoreContext(), 50);
        await back;
        runner.step(1);
    });
    assert.equal(await shown(page), undisturbed);
}));

const SAVER = `vars.frames = 0 room_add{ step = function()
    vars.frames = vars.frames + 1
    if vars.frames == 3 then game_save("one.sav") end
end }`;

test("saves are there when the page is loaded again", () => inPage(async (page, call, opened) => {
    await call("open", { text: SAVER, store: "kept" });
    await page.evaluate(async () => {
        globalThis.game.runner.step(5);
        await globalThis.game.runner.stored();
    });
    await page.reload();
    await (await withInPage(opened, server))("open", { text: SAVER, store: "kept" });
    assert.deepEqual(await page.evaluate(() => globalThis.game.runner.saves().map((file) => file.name)), ["one.sav"]);
}));

test("a full storage is one line, and the game goes on", () => inPage(async (page, call) => {
    await page.evaluate(() => {
        IDBObjectStore.prototype.put = () => { throw new DOMException("no room", "QuotaExceededError"); };
    });
    await call("open", { text: SAVER, store: "full" });
    await page.evaluate(async () => {
        globalThis.game.runner.step(5);
        await globalThis.game.runner.stored();
        globalThis.game.runner.step(5);
    });
    const errors = await told(page, "error");
    assert.equal(errors.length, 1, errors.join("\n"));
    assert.match(errors[0], /one\.sav.*full/);
    assert.equal(await page.evaluate(() => globalThis.game.runner.frame), 10);
}));

// ---- in the pages ----

const example = (page, id) => page.locator(`[data-example="${id}"]`);
const button = (page, id, name) => example(page, id).getByRole("button", { name });

test("a game in a page runs, pauses and starts again; the next one takes its place and leaves its picture", () =>
    inPage(async (page) => {
        const first = "camera_create", second = "camera_set_view_angle";
        await button(page, first, "Run").click();
        await button(page, first, "Pause").waitFor();
        await button(page, first, "Pause").click();
        await button(page, first, "Run").waitFor();
        await button(page, first, "Restart").click();
        await button(page, first, "Pause").waitFor();
        await button(page, second, "Run").click();
        await button(page, second, "Pause").waitFor();
        assert.equal(await button(page, first, "Restart").isDisabled(), true);
        const colours = await example(page, first).locator("canvas").evaluate((canvas) =>
            new Set(canvas.getContext("2d").getImageData(0, 0, canvas.width, canvas.height).data).size);
        assert.ok(colours > 3, `the picture that stays has ${colours} values`);
    }, {}, "Docs/Built_Ins.html"));

test("twenty games of a page run one after the other: each gives its drawing context back", () =>
    inPage(async (page) => {
        const ids = await page.locator(".example").evaluateAll((all) => all.slice(0, 20).map((each) => each.dataset.example));
        for (const id of ids) {
            await button(page, id, "Run").click();
            await button(page, id, "Pause").waitFor();
            assert.equal(await example(page, id).locator(".status").innerText(), "", id);
        }
    }, {}, "Docs/Built_Ins.html"));

test("a game that is scrolled out of sight pauses", () => inPage(async (page) => {
    await button(page, "camera_create", "Run").click();
    await button(page, "camera_create", "Pause").waitFor();
    await page.evaluate(() => scrollTo(0, document.body.scrollHeight));
    await button(page, "camera_create", "Run").waitFor();
}, {}, "Docs/Built_Ins.html"));

test("a browser without WebGL 2 is told so in the page", () => inPage(async (page) => {
    await page.evaluate(() => {
        const { getContext } = HTMLCanvasElement.prototype;
        HTMLCanvasElement.prototype.getContext = function(kind, ...more) {
            return kind === "webgl2" ? null : getContext.call(this, kind, ...more);
        };
    });
    await button(page, "camera_create", "Run").click();
    await page.locator('[data-example="camera_create"] .status:has-text("WebGL 2")').waitFor();
}, {}, "Docs/Built_Ins.html"));
