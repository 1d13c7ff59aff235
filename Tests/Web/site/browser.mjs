// What the tests of the site share: a server for out/site, Chromium without a display, and pages that note each word on
// the console and each request that leaves the site.
import assert from "node:assert/strict";
import { spawn } from "node:child_process";
import fs from "node:fs";
import { createRequire } from "node:module";
import os from "node:os";
import path from "node:path";
import { fileURLToPath } from "node:url";

export const ROOT = fileURLToPath(new URL("../../..", import.meta.url));
export const SITE = path.join(ROOT, "out/site");
export const fromWeb = createRequire(path.join(ROOT, "Web/package.json"));

// ---- server ----

// Serves the site under a path of a free port: { address, close() }.
export async function serve(prefix = "/") {
    const server = spawn("python3", [path.join(ROOT, "Web/site/serve.py"), SITE, "0", prefix],
        { stdio: ["ignore", "pipe", "inherit"] });
    const address = await new Promise((resolve, reject) => {
        server.stdout.once("data", (line) => resolve(String(line).trim()));
        server.once("exit", (code) => reject(new Error(`the server ended with ${code}`)));
    });
    return { address, close: () => server.kill() };
}

// ---- browser ----

export function launch() {
    return fromWeb("playwright-core").chromium.launch({
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium", args: ["--no-sandbox"],
    });
}

// A page in a context of its own. `said`: words on the console and errors; `left`: requests to anywhere else.
export async function openPage(browser, server, options = {}) {
    const context = await browser.newContext({ viewport: { width: 1280, height: 900 }, ...options });
    const page = await context.newPage();
    page.setDefaultTimeout(60000);
    const said = [], left = [];
    const own = new URL(server.address).origin;
    // The driver's word on a picture that is read back is about speed, and not the page's.
    const isDrivers = (message) => message.text().includes("GL Driver Message (OpenGL, Performance");
    page.on("console", (message) => isDrivers(message) || said.push(`${message.type()}: ${message.text()} (${page.url()})`));
    page.on("pageerror", (error) => said.push(`error: ${error.message} (${page.url()})`));
    page.on("request", (request) => {
        const url = new URL(request.url());
        if (url.protocol !== "blob:" && url.origin !== own) left.push(request.url());
    });
    return { page, context, said, left, close: () => context.close() };
}

// A page in which a file of tests plays its games: `call` is withInPage's, `folder` takes files, close() ends all of it.
export async function openPlayer() {
    const server = await serve();
    const browser = await launch();
    const opened = await openPage(browser, server);
    await opened.page.goto(`${server.address}Docs/Licences.html`);
    const folder = temporaryFolder();
    const close = async () => {
        await browser.close();
        server.close();
        fs.rmSync(folder, { recursive: true });
    };
    return { opened, folder, call: await withInPage(opened, server), close };
}

export function expectQuiet({ said, left }) {
    assert.deepEqual(said, [], "words on the console");
    assert.deepEqual(left, [], "requests to other hosts");
}

// ---- the native Runner ----

export const RUNNER = process.env.RUNNER ?? path.join(ROOT, "build/optimised/Runner/runner");

function temporaryFolder() {
    return fs.mkdtempSync(path.join(os.tmpdir(), "site_test_"));
}

// Plays with the native Runner; rejects with what it says when it fails.
export function native(...options) {
    return new Promise((resolve, reject) => {
        const runner = spawn(RUNNER, [...options, "--kit", path.join(ROOT, "kit")], { stdio: ["ignore", "pipe", "pipe"] });
        let text = "";
        for (const stream of [runner.stdout, runner.stderr]) stream.on("data", (part) => text += part);
        runner.on("error", reject);
        runner.on("close", (status) => status === 0 ? resolve(text) : reject(new Error(text)));
    });
}

// The games that the repository has as examples, by their names in the site, too.
export const EXAMPLES = ["canyon", "shake", "orbit", "split", "kit", "town"];

// The games of the site: [{ id, page, main, files }].
export function games() {
    return JSON.parse(fs.readFileSync(path.join(SITE, "examples/index.json"), "utf8"));
}

export function gameFile(game) {
    return path.join(SITE, "examples", game.id, game.main);
}

// Calls a function of in_page.js, which the site does not hold, in a page of the site.
export async function withInPage({ page }, server) {
    const address = `${server.address}tests/in_page.js`;
    await page.route(address, (route) =>
        route.fulfill({ path: fileURLToPath(new URL("in_page.js", import.meta.url)), contentType: "text/javascript" }));
    return (name, ...values) => page.evaluate(
        async ([from, called, given]) => (await import(from))[called](...given), [address, name, values]);
}
