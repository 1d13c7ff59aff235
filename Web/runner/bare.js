// The smallest page around a game, for tests and measurements: bare.html?game=/Games/canyon/canyon.lua&files=hud.lua,...
// `files` stand beside the game. The runner is globalThis.runner, what it tells globalThis.told.
import { browserStore, createRunner } from "./runner.js";

const wanted = new URLSearchParams(location.search);
const game = wanted.get("game");
const folder = game.slice(0, game.lastIndexOf("/") + 1);
const main = game.slice(folder.length);
const names = [main, ...(wanted.get("files") ?? "").split(",").filter((name) => name !== "")];

async function fetched(name) {
    const response = await fetch(folder + name);
    if (!response.ok) throw new Error(`${folder}${name}: ${response.status}`);
    return [name, new Uint8Array(await response.arrayBuffer())];
}

globalThis.told = [];
const options = { trace: wanted.has("trace"), size: "game", ...JSON.parse(wanted.get("options") ?? "{}") };
const runner = await createRunner({
    canvas: document.querySelector("canvas"),
    files: new Map(await Promise.all(names.map(fetched))),
    main,
    saves: wanted.has("area") ? browserStore(wanted.get("area")) : undefined,
    options,
    on: {
        text: (line, kind) => told.push(`${kind}: ${line}`),
        failure: (failure) => told.push(`failure: ${failure.text}`),
        ended: () => told.push("ended"),
    },
});
globalThis.runner = runner;
if (!wanted.has("paused")) runner.play();
