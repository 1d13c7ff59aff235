// Touch, a gamepad, a full storage, a page that is loaded again.
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
