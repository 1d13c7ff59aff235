// Each page of the manual, in dark and light, on a desk and on a phone.
import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import { expectQuiet, fromWeb, launch, openPage, ROOT, serve, SITE } from "./browser.mjs";

const AXE = fs.readFileSync(fromWeb.resolve("axe-core/axe.min.js"), "utf8");
const SCREENS = process.env.SCREENS ?? path.join(ROOT, "out/screens");
const WIDTHS = { desk: { width: 1280, height: 900 }, phone: { width: 375, height: 700 } };

let server, browser;
before(async () => {
    server = await serve();
    browser = await launch();
});
after(async () => {
    await browser.close();
    server.close();
});

function pages(folder = SITE) {
    return fs.readdirSync(folder, { withFileTypes: true }).flatMap((entry) => {
        const file = path.join(folder, entry.name);
        if (entry.isDirectory()) return entry.name === "playground" || entry.name === "runner" ? [] : pages(file);
        return entry.name.endsWith(".html") ? [path.relative(SITE, file)] : [];
    });
}

// What is asked of a page in one look: all rules once, and of the other looks, which differ in colours and widths alone, the
// rule of colours in the dark, and all rules of the first page on a phone. Null: nothing.
function rulesOf(name, device, colorScheme) {
    if (device === "desk") return colorScheme === "light" ? {} : { runOnly: ["color-contrast"] };
    return name === "index.html" ? {} : null;
}

// Serious faults, a line each.
async function faults(page, name, rules) {
    if (rules === null) return [];
    await page.evaluate(AXE);
    const { violations } = await page.evaluate((given) => axe.run(document, { resultTypes: ["violations"], ...given }), rules);
    return violations.filter((each) => ["serious", "critical"].includes(each.impact))
        .flatMap((each) => each.nodes.map((node) => `${name}: ${each.id}: ${node.html.slice(0, 160)}`));
}

function tooWide(page) { // pixels by which the page, not a part that scrolls by itself, is wider than the screen
    return page.evaluate(() => document.documentElement.scrollWidth - document.documentElement.clientWidth);
}

for (const [device, viewport] of Object.entries(WIDTHS)) {
    for (const colorScheme of ["light", "dark"]) {
        test(`every page is quiet, whole and accessible: ${device}, ${colorScheme}`, async () => {
            const names = pages();
            assert.ok(names.length > 25, `only ${names.length} pages`);
            const opened = await openPage(browser, server, { viewport, colorScheme, isMobile: device === "phone" });
            const { page } = opened, wrong = [];
            for (const name of names) {
                await page.goto(server.address + name, { waitUntil: "load" });
                assert.equal(await page.evaluate(() => document.documentElement.dataset.theme), colorScheme);
                if (await tooWide(page) > 0) wrong.push(`${name} is wider than the screen`);
                wrong.push(...await faults(page, name, rulesOf(name, device, colorScheme)));
                const picture = path.join(SCREENS, device, colorScheme, name.replaceAll("/", "_").replace(".html", ".png"));
                await page.screenshot({ path: picture });
            }
            assert.deepEqual(wrong, []);
            expectQuiet(opened);
            await opened.close();
        });
    }
}

test("each page names the strict policy, the playground's too", () => {
    for (const name of [...pages(), "playground/index.html"]) {
        const text = fs.readFileSync(path.join(SITE, name), "utf8");
        const policy = text.match(/http-equiv="Content-Security-Policy" content="([^"]*)"/)?.[1] ?? "none";
        assert.match(policy.replaceAll("&#39;", "'"), /^default-src 'none'; script-src 'self' 'wasm-unsafe-eval'; style-src 'self';/, name);
        assert.doesNotMatch(policy, /unsafe-inline|unsafe-eval'?(?<!wasm-unsafe-eval'?)|https?:|\*/, name);
    }
});
