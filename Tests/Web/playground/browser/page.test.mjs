// The playground in a real browser, with the real Runner: node --test Tests/Web/playground/browser/page.test.mjs, after ./site has built out/site.
//
// SITE: the folder of the site, out/site unless given. RUNNER: a native runner that plays what is downloaded; none: that
// test is left out. SCREENS: a folder for pictures of the page; none: no pictures. CHROMIUM: the browser.

import assert from "node:assert/strict";
import { execFileSync } from "node:child_process";
import { createRequire } from "node:module";
import { mkdtempSync, readFileSync, rmSync, truncateSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { after, before, test } from "node:test";
import { fileURLToPath } from "node:url";
import { packGame } from "../../../../Web/playground/archive.js";
import { linkOf } from "../../../../Web/playground/share.js";
import { serve } from "./serve.mjs";

const fromWeb = createRequire(new URL("../../../../Web/package.json", import.meta.url));
const axe = fromWeb("axe-core");
const { chromium } = fromWeb("playwright-core");
const SITE = process.env.SITE ?? fileURLToPath(new URL("../../../../out/site", import.meta.url));
const folder = mkdtempSync(join(tmpdir(), "playground-"));
let browser, server, page, trouble;

before(async () => {
    server = await serve(SITE);
    browser = await chromium.launch({ executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", args: ["--no-sandbox"] });
});

after(async () => {
    await browser?.close();
    server?.close();
    rmSync(folder, { recursive: true });
});

// A page of a browser that has never been here, with a note of every message and of every request that leaves.
async function visit(fragment = "", more = {}) {
    await page?.context().close();
    const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, acceptDownloads: true, ...more });
    await context.grantPermissions(["clipboard-read", "clipboard-write"]);
    if (more.script) await context.addInitScript(more.script);
    page = await context.newPage();
    trouble = [];
    // A note of the software rasteriser about its own speed is none of the page's.
    page.on("console", (message) => { if (!/GL Driver Message \(OpenGL, Performance/.test(message.text())) trouble.push(message.text()); });
    page.on("pageerror", (error) => trouble.push(String(error)));
    page.on("request", (request) => { if (!/^(http:\/\/127\.0\.0\.1|blob:)/.test(request.url())) trouble.push(request.url()); });
    await page.goto(`${server.address}playground/index.html${fragment}`);
    await ready();
}

const ready = () => page.waitForSelector("body[data-ready=yes]", { timeout: 30000 });
const frame = async () => parseInt(await page.textContent("#frame"), 10);

// Asks until it is so: the page's policy lets no string become a function there.
async function until(test, seconds = 30) {
    for (const end = Date.now() + seconds * 1000; !await test();) {
        if (Date.now() > end) throw new Error(`not so after ${seconds} s: ${test}; the page says "${await status()}" and "${await page.textContent("#failure")}"`);
        await new Promise((done) => { setTimeout(done, 50); });
    }
}

const frameIs = (test) => until(async () => test(await frame()));
const shows = (place, word) => until(async () => (await page.textContent(place)).includes(word));
const status = () => page.textContent("#status");
const press = (name) => page.getByRole("button", { name, exact: true }).click();
const failure = (word) => shows("#failure", word);
const text = () => page.evaluate(() => [...document.getElementById("editor").shadowRoot.querySelectorAll(".cm-line")].map((line) => line.textContent).join("\n"));

// In place of all that stands there. Nothing is completed or closed on the way, so it is put in at once.
async function write(lines) {
    await page.locator("#editor .cm-content").click();
    await page.keyboard.press("Control+a");
    await page.keyboard.insertText(lines);
}

const linked = (files, main = "main.lua") => "#" + linkOf({ main, files: new Map(Object.entries(files)) });
const ROOM = 'room_add{ width = 640, height = 360, background = colours.blue, views = { [0] = { w = 320, h = 180 } } }\n';

test("the first game plays, without a message, a foreign request or a shift of the layout", async () => {
    await visit("", { script: `window.shifts = 0; new PerformanceObserver((list) => {
        for (const { value, hadRecentInput } of list.getEntries()) if (!hadRecentInput) window.shifts += value;
    }).observe({ type: "layout-shift", buffered: true });` });
    await frameIs((frame) => frame > 30);
    assert.match(await text(), /hop: arrow keys move the hero/);
    assert.ok(await page.evaluate("window.shifts") < 0.1, `${await page.evaluate("window.shifts")}`);
    assert.deepEqual(trouble, []);
});

test("an error is underlined in its line and told; mended, the game goes on from the same frame", async () => {
    await visit(linked({ "main.lua": ROOM }));
    await frameIs((frame) => frame > 5);
    await write(ROOM + "\nlocal a = nil + 1\n");
    await page.keyboard.press("Control+Enter");
    await failure("main.lua:3:");
    const line = await page.evaluate(() => document.getElementById("editor").shadowRoot.querySelector(".cm-lintRange-error").textContent);
    assert.equal(line, "local a = nil + 1");
    await write(ROOM + "\nlog('mended')\n");
    await press("Apply changes");
    await shows("#log", "mended");
    assert.equal(await page.textContent("#failure"), "");
    assert.deepEqual(trouble, []);
});

test("an endless loop is stopped by the limit and named, with the text kept", async () => {
    await visit();
    await write(ROOM + "while true do end\n");
    await page.keyboard.press("Control+Enter");
    await failure("the game's file");
    assert.match(await page.textContent("#failure"), /instructions/);
    assert.match(await text(), /while true do end/);
});

test("a script that eats memory is told, and the page lives on", async () => {
    await visit(linked({ "main.lua": ROOM + "local t = {}\nfor i = 1, 1e9 do t[i] = {} end\n" }));
    await failure("memory");
    await write(ROOM + "log('lives')");
    await press("Run");
    await shows("#log", "lives");
});

test("pause, step, back and the slider show the frames that they name", async () => {
    await visit(linked({ "main.lua": ROOM }));
    await frameIs((frame) => frame > 60);
    await press("Pause");
    const there = await frame();
    await press("Step");
    await frameIs((frame) => frame === there + 1);
    await press("Back");
    await frameIs((frame) => frame === there);
    await page.locator("#timeline").fill("10");
    await frameIs((frame) => frame === 10);
    await page.locator("#timeline").press("ArrowRight");
    await frameIs((frame) => frame === 11);
});

test("the inspector's values change by keyboard, and are offered as Lua", async () => {
    await visit();
    await page.locator("#panel-box summary").click();
    await press("Pause");
    const border = page.getByRole("spinbutton", { name: "border_x" });
    await border.fill("60");
    await border.press("Tab");
    await press("Step");
    assert.equal(await border.inputValue(), "60");
    await page.locator("#panel").getByRole("button", { name: "Copy as Lua" }).first().click();
    assert.match(await page.locator("dialog textarea").inputValue(), /camera_create_view\(.*, 60, \d+\)/);
    await page.keyboard.press("Escape");
    assert.deepEqual(trouble, []);
});

test("a link brings the whole game to somebody else", async () => {
    await visit(linked({ "main.lua": ROOM + "include('part.lua')", "part.lua": "log('the part is there')" }));
    await shows("#log", "the part is there");
    await press("Share");
    const link = await page.locator("dialog textarea").inputValue();
    await visit(new URL(link).hash);
    await shows("#log", "the part is there");
    assert.deepEqual(await page.getByRole("tab").allTextContents(), ["main.lua", "part.lua"]);
    assert.equal(new URL(page.url()).hash, "", "the game is the user's now: a reload shows what it became");
});

test("what was typed is there when the page is loaded again; the game before an opened one comes back", async () => {
    await visit();
    await write(ROOM + "-- my own\n");
    await page.waitForTimeout(2000);
    await page.reload();
    await ready();
    assert.match(await text(), /-- my own/);
    await page.evaluate((hash) => { location.hash = hash; }, linked({ "main.lua": ROOM + "-- another" }));
    await shows("#status", "The game of the link");
    assert.match(await text(), /-- another/);
    await press("Game before");
    await shows("#status", "The game before");
    assert.match(await text(), /-- my own/);
});

test("a damaged link is one line, and the own game is there", async () => {
    for (const fragment of [linked({ "main.lua": ROOM }).slice(0, -9), "#game=%%%", "#game=" + "A".repeat(50000), "#example=none"]) {
        await visit(fragment);
        assert.match(await status(), /^(the link|there is no example)/, fragment.slice(0, 30));
        await frameIs((frame) => frame > 0);
    }
});

test("files are refused in one line where they are none or too large, and taken where they are good", async () => {
    await visit(linked({ "main.lua": ROOM }));
    const choose = async (name, content, expected) => {
        const path = join(folder, name);
        writeFileSync(path, content ?? "");
        if (content === null) truncateSync(path, 200 * 1024 * 1024);
        await page.setInputFiles("#chooser", path);
        await shows("body", expected);
    };
    await choose("large.png", null, "this is too much for a game");
    await choose("none.png", "no picture", "This is no picture");
    await choose("bad.zip", "PK", "bad.zip: this is no zip archive");
    await choose("bad.rec", "nothing", "no recording");
    await choose("good.zip", packGame({ main: "good.lua", files: new Map([["good.lua", ROOM + "log('good')"]]) }), "good.zip is open");
    assert.deepEqual(await page.getByRole("tab").allTextContents(), ["good.lua"]);
});

test("a browser without WebGL 2 gets a clear word instead of a blank canvas", async () => {
    await visit("", { script: "const old = HTMLCanvasElement.prototype.getContext; HTMLCanvasElement.prototype.getContext = function (kind, ...more) { return /webgl/.test(kind) ? null : old.call(this, kind, ...more); };" });
    assert.match(await page.textContent("#stage"), /WebGL 2/);
    assert.match(await status(), /WebGL 2/);
});

test("the keyboard leaves the text by Escape, then Tab, and reaches the game", async () => {
    await visit();
    await page.locator("#editor .cm-content").click();
    await page.keyboard.press("Escape");
    await page.keyboard.press("Tab");
    assert.notEqual(await page.evaluate(() => document.activeElement.id), "editor");
});

test("a downloaded game and its recording play in the native Runner", { skip: !process.env.RUNNER }, async () => {
    await visit("#example=town");
    await frameIs((frame) => frame > 90);
    await press("Pause");
    const [download] = await Promise.all([page.waitForEvent("download"), press("Download")]);
    assert.equal(download.suggestedFilename(), "town.zip");
    const path = join(folder, "town.zip");
    await download.saveAs(path);
    const out = ["--no-draw", "--out", join(folder, "out"), "--trace", join(folder, "trace.txt")];
    execFileSync(process.env.RUNNER, [path, ...out, "--frames", "60"]);
    execFileSync(process.env.RUNNER, [path, ...out, "--replay", `${path}/town/recording.rec`]);
    assert.ok(readFileSync(join(folder, "trace.txt"), "utf8").split("\n").length > 90);
});

// The rules of accessibility are asked of both themes and of both widths, though not of each pair of them.
for (const [colorScheme, width] of [["light", 1280], ["dark", 390], ["light", 390], ["dark", 1280]])
    test(`no serious fault of accessibility, and nothing wider than the page: ${colorScheme}, ${width} pixels`, async () => {
        await visit("#example=town", { colorScheme, viewport: { width, height: 900 } });
        await frameIs((frame) => frame > 5);
        await press("Pause"); // a page whose log and panel change is never still enough for a click on a slow machine
        await page.locator("#panel-box summary").click();
        await page.locator("#saves-box summary").click();
        const isAsked = (colorScheme === "light") === (width === 1280);
        assert.deepEqual(isAsked ? await faults() : [], []);
        assert.ok(await page.evaluate(() => document.documentElement.scrollWidth <= innerWidth), "nothing is wider than the page");
        if (process.env.SCREENS)
            await page.screenshot({ path: join(process.env.SCREENS, `playground_${colorScheme}_${width}.png`), fullPage: true });
    });

// Serious faults of accessibility, by rule.
async function faults() {
    await page.evaluate(axe.source);
    const { violations } = await page.evaluate(() => globalThis.axe.run());
    return violations.filter(({ impact }) => impact === "serious" || impact === "critical")
        .map(({ id, nodes }) => [id, nodes.map((node) => node.html.slice(0, 100))]);
}
