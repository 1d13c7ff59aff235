// What a reader does with the manual: search, dark and light, a phone's list of pages, a site in a folder of its server.
import assert from "node:assert/strict";
import { after, before, test } from "node:test";
import { expectQuiet, launch, openPage, serve } from "./browser.mjs";

let server, browser;
before(async () => {
    server = await serve("/a/folder/of/it/");
    browser = await launch();
});
after(async () => {
    await browser.close();
    server.close();
});

async function inPage(name, act, options) {
    const opened = await openPage(browser, server, options);
    await opened.page.goto(server.address + name);
    await act(opened.page, opened);
    expectQuiet(opened);
    await opened.close();
}

test("a part of a function's name finds its section, from any page, without any other host", () =>
    inPage("Docs/Kit.html", async (page) => {
        await page.fill("#query", "view_border_x");
        const first = page.locator("#found a").first();
        assert.match(await first.innerText(), /^camera_get_view_border_x/);
        await first.click();
        assert.ok(page.url().endsWith("/a/folder/of/it/Docs/Built_Ins.html#camera_get_view_border_x"), page.url());
    }));

test("what is nowhere is said to be nowhere, and Escape closes the results", () =>
    inPage("index.html", async (page) => {
        await page.fill("#query", "zebra crossing");
        await page.waitForFunction(() => document.getElementById("found").textContent === "Nothing found");
        await page.keyboard.press("Escape");
        assert.equal(await page.locator("#found").innerText(), "");
    }));

test("dark is kept on the next page, and no cookie is set", () =>
    inPage("index.html", async (page, { context }) => {
        const theme = () => page.evaluate(() => document.documentElement.dataset.theme);
        assert.equal(await theme(), "light");
        await page.click("#theme");
        assert.equal(await theme(), "dark");
        await page.goto(server.address + "Docs/Maps.html");
        assert.equal(await theme(), "dark");
        assert.deepEqual(await context.cookies(), []);
    }, { colorScheme: "light" }));

test("on a phone the list of pages opens and leads on", () =>
    inPage("index.html", async (page) => {
        assert.equal(await page.locator("#pages").isVisible(), false);
        await page.click("#menu");
        assert.equal(await page.getAttribute("#menu", "aria-expanded"), "true");
        await page.click("#pages >> text=shots and cut-scenes");
        assert.ok(page.url().endsWith("Docs/Kit_Shots.html"), page.url());
    }, { viewport: { width: 375, height: 700 } }));

test("without scripts a page can be read and its links lead on", () =>
    inPage("Docs/Built_Ins.html", async (page) => {
        assert.match(await page.locator("main").innerText(), /camera_set_view_border/);
        await page.click("nav >> text=What a camera does");
        assert.ok(page.url().endsWith("Docs/Cameras.html"));
    }, { javaScriptEnabled: false }));
