// Sizes and times of the Runner in WebAssembly beside the native one, on the same machine and software rasteriser:
//
//   node Benchmarks/Web/measure.mjs [FILE]       prints a table of Markdown; FILE keeps the figures as JSON
//
// First: the presets web (targets web_runner and module_step), bench (module_step) and optimised (runner); npm ci in Web.
import { execFileSync } from "node:child_process";
import { readFileSync, readdirSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { brotliCompressSync, gzipSync } from "node:zlib";
import { ROOT, gamePage, launch, openGame, serve, until } from "../../Tests/Web/runner/page.mjs";

const OUT = join(ROOT, "build/web/runner");
const FRAMES = 300; // of a measurement of drawing
const ROUNDS = 5; // the middle one counts

const middle = (numbers) => [...numbers].sort((a, b) => a - b)[Math.floor(numbers.length / 2)];
const repeat = async (act) => {
    const all = [];
    for (let i = 0; i < ROUNDS; ++i) all.push(await act());
    return middle(all);
};

function sizes() {
    const sum = { plain: 0, gzip: 0, brotli: 0 };
    for (const name of readdirSync(OUT).filter((file) => /^runner.*\.(js|wasm)$/.test(file))) {
        const content = readFileSync(join(OUT, name));
        sum.plain += content.length;
        sum.gzip += gzipSync(content, { level: 9 }).length;
        sum.brotli += brotliCompressSync(content).length;
    }
    return sum;
}

// Milliseconds of a frame of canyon at 1280 x 720: stepped, drawn, shown, and waited for.
async function pageFrame(browser, server) {
    const { page } = await openGame(browser, server, gamePage(server, "canyon", { paused: "" }));
    const time = await page.evaluate((frames) => {
        const gl = document.querySelector("canvas").getContext("webgl2");
        const pixel = new Uint8Array(4);
        const play = (count) => {
            const start = performance.now();
            for (let i = 0; i < count; ++i) {
                runner.step();
                runner.show();
                gl.readPixels(0, 0, 1, 1, gl.RGBA, gl.UNSIGNED_BYTE, pixel); // the frame is done when it answers
            }
            return (performance.now() - start) / count;
        };
        play(60);
        return play(frames);
    }, FRAMES);
    await page.close();
    return time;
}

// The same natively: a frame waits for its drawing when it plays without a window, too.
function nativeFrame() {
    const time = (frames) => {
        const start = process.hrtime.bigint();
        const out = join(ROOT, "build/measure-out");
        execFileSync(join(ROOT, "build/optimised/Runner/runner"),
            ["Games/canyon/canyon.lua", "--quiet", "--frames", String(frames), "--out", out], { cwd: ROOT });
        return Number(process.hrtime.bigint() - start) / 1e6;
    };
    return (time(60 + FRAMES) - time(60)) / FRAMES; // what start and end take is left out
}

// Milliseconds from the page's address on: its files, the program's compilation, the game's pictures, a frame.
async function firstFrame(browser, server) {
    const { page } = await openGame(browser, server, gamePage(server, "canyon", {}));
    await until(page, () => runner.frame > 0 && runner.times().firstFrame > 0);
    const time = await page.evaluate(() => runner.began + runner.times().firstFrame);
    await page.close();
    return time;
}

async function shownRate(browser, server) {
    const { page } = await openGame(browser, server, gamePage(server, "canyon", {}));
    const rate = await page.evaluate(async () => {
        const from = runner.frame;
        const start = performance.now();
        await new Promise((done) => setTimeout(done, 5000));
        return ((runner.frame - from) * 1000) / (performance.now() - start);
    });
    await page.close();
    return rate;
}

const step = (program) => Number(execFileSync(program[0], program.slice(1), { encoding: "utf8" }));

const server = await serve();
const figures = { sizes: sizes() };
figures.nativeStep = await repeat(() => step([join(ROOT, "build/bench/Benchmarks/module_step")]));
figures.webStep = await repeat(() => step(["node", "--no-experimental-fetch", join(ROOT, "build/web/Web/runner/module_step.js")]));
figures.nativeFrame = await repeat(nativeFrame);
for (const rasteriser of ["llvmpipe", "swiftshader"]) {
    const browser = await launch(rasteriser);
    figures[`${rasteriser}Frame`] = await repeat(() => pageFrame(browser, server));
    figures[`${rasteriser}First`] = await repeat(() => firstFrame(browser, server));
    figures[`${rasteriser}Rate`] = await shownRate(browser, server);
    await browser.close();
}
server.close();

const kilobytes = (bytes) => `${Math.round(bytes / 1024)} KB`;
const ratio = (a, b) => `${(a / b).toFixed(2)} times`;
console.log("| What | In the page | Native | Ratio |\n|---|---|---|---|");
console.log(`| Size as it is, gzip, brotli | ${Object.values(figures.sizes).map(kilobytes).join(", ")} | | |`);
console.log(`| The module's step | ${figures.webStep} ns | ${figures.nativeStep} ns | ${ratio(figures.webStep, figures.nativeStep)} |`);
for (const rasteriser of ["llvmpipe", "swiftshader"]) {
    const frame = figures[`${rasteriser}Frame`];
    console.log(`| A frame of canyon, ${rasteriser} | ${frame.toFixed(2)} ms | ${figures.nativeFrame.toFixed(2)} ms (llvmpipe) | ${ratio(frame, figures.nativeFrame)} |`);
    console.log(`| First frame, ${rasteriser} | ${Math.round(figures[`${rasteriser}First`])} ms | | |`);
    console.log(`| Frames a second, ${rasteriser} | ${figures[`${rasteriser}Rate`].toFixed(1)} | | |`);
}
if (process.argv[2]) writeFileSync(process.argv[2], `${JSON.stringify(figures, null, 1)}\n`);
