// A server for the project's files on a free port of this machine, and Chromium without a display.
import { readFile } from "node:fs/promises";
import { readdirSync } from "node:fs";
import { createServer } from "node:http";
import { createRequire } from "node:module";
import { extname, join, normalize } from "node:path";
import { fileURLToPath } from "node:url";

export const ROOT = fileURLToPath(new URL("../../..", import.meta.url));
const TYPES = { ".html": "text/html", ".js": "text/javascript", ".wasm": "application/wasm" };

export async function serve() {
    const server = createServer(async (request, response) => {
        const path = normalize(decodeURIComponent(new URL(request.url, "http://x").pathname));
        try {
            const content = await readFile(join(ROOT, path));
            response.writeHead(200, { "content-type": TYPES[extname(path)] ?? "application/octet-stream" });
            response.end(content);
        } catch {
            response.writeHead(path === "/favicon.ico" ? 204 : 404).end();
        }
    });
    await new Promise((done) => server.listen(0, "127.0.0.1", done));
    return { address: `http://127.0.0.1:${server.address().port}`, close: () => server.close() };
}

// rasteriser: "swiftshader", Chromium's own, or "llvmpipe", the one that native programs draw with.
export function launch(rasteriser = "swiftshader") {
    const { chromium } = createRequire(join(ROOT, "Web/package.json"))("playwright-core");
    const llvmpipe = ["--use-gl=angle", "--use-angle=gl-egl", "--ignore-gpu-blocklist"];
    return chromium.launch({
        executablePath: process.env.CHROMIUM ?? "/usr/bin/chromium",
        args: ["--no-sandbox", ...(rasteriser === "llvmpipe" ? llvmpipe : [])],
    });
}

// The address of a game's bare page. more: further parts of the query.
export function gamePage(server, name, more = {}) {
    const files = readdirSync(join(ROOT, "Games", name)).filter((file) => file !== `${name}.lua`);
    const query = new URLSearchParams({ game: `/Games/${name}/${name}.lua`, files: files.join(","), ...more });
    return `${server.address}/build/web/runner/bare.html?${query}`;
}

// Asks until it is so: the pages' policy refuses the strings that Playwright's own waiting evaluates there.
export async function until(page, condition, value, seconds = 60) {
    for (const end = Date.now() + seconds * 1000; !await page.evaluate(condition, value);) {
        if (Date.now() > end) throw new Error(`not so after ${seconds} s: ${condition}`);
        await new Promise((done) => { setTimeout(done, 20); });
    }
}

// A page that has its runner. said: words on the console and errors; left: requests to anywhere else.
export async function openGame(browser, server, address) {
    const page = await browser.newPage({ viewport: { width: 1400, height: 900 } });
    const said = [];
    const left = [];
    // Without a graphics card Chromium itself reads the canvas back to show it, and says that this is slow.
    const isDrivers = (text) => text.includes("GPU stall due to ReadPixels");
    page.on("console", (message) => isDrivers(message.text()) || said.push(`${message.type()}: ${message.text()}`));
    page.on("pageerror", (error) => said.push(`error: ${error.message}`));
    page.on("request", (request) => request.url().startsWith(server.address) || left.push(request.url()));
    await page.goto(address);
    await until(page, () => globalThis.runner !== undefined).catch((error) => {
        throw new Error(`the page has no runner: ${said.join("; ") || error.message}`);
    });
    return { page, said, left };
}
