// The manual's games, which stand beside the page: examples/index.json lists them.

import { GameCollector, GameFault, isScript, printable } from "./game_files.js";

const FOLDER = "../examples/";

async function fetched(path) {
    const answer = await fetch(new URL(FOLDER + path, location.href)).catch(() => null);
    if (answer === null || !answer.ok) throw new GameFault(`the example's file ${printable(path)} cannot be loaded`);
    return answer;
}

let index = null; // a promise

function list() {
    index ??= fetched("index.json").then((answer) => answer.json());
    return index;
}

export async function exampleNames() {
    return (await list()).map(({ id }) => id);
}

export async function loadExample(name) {
    const found = (await list()).find(({ id }) => id === name);
    if (found === undefined) throw new GameFault(`there is no example ${printable(name)}`);
    const contents = await Promise.all(found.files.map(async (path) =>
        new Uint8Array(await (await fetched(`${name}/${path}`)).arrayBuffer())));
    const files = new GameCollector();
    found.files.forEach((path, i) => files.add(path, contents[i]));
    if (!isScript(found.main)) throw new GameFault(`the example ${printable(name)} has no script that starts it`);
    return { main: found.main, files: files.files() };
}
