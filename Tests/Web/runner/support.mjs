// What the tests of the Runner in WebAssembly share. They run in Node, without drawing: node --test Tests/Web/runner
import { readFileSync, readdirSync } from "node:fs";

export const { createRunner, headless, memoryStore, runCommand } = await import("../../../build/web/runner/runner.js");

const ROOT = new URL("../../../", import.meta.url);

export function gameFiles(name) {
    const folder = new URL(`Games/${name}/`, ROOT);
    return new Map(readdirSync(folder).map((file) => [file, readFileSync(new URL(file, folder))]));
}

export function textOf(path) {
    return readFileSync(new URL(path, ROOT), "utf8");
}

// A runner without drawing and the lines that it has told, by kind.
export async function open(game, more = {}) {
    const told = { log: [], report: [], error: [], failures: [], ended: 0 };
    const files = typeof game === "string" ? new Map([["game.lua", game]]) : game;
    const runner = await createRunner({
        files,
        main: "game.lua",
        on: {
            text: (line, kind) => told[kind].push(line),
            failure: (failure) => told.failures.push(failure),
            ended: () => told.ended++,
        },
        ...more,
    });
    return { runner, told };
}

// A walker in the middle of its view: the view's x is the walker's x less 200. It starts at 300, and each frame with the
// right arrow key held adds `speed`.
export function walk(speed = 10) {
    return `screen_set_size(400, 300)
local walker = object_add{ name = "walker", step = function(self)
    if key_down("right") then self.x = self.x + ${speed} end
end }
room_add{ name = "field", width = 9000, height = 300, instances = { {walker, 500, 150} },
    views = { [0] = { w = 400, h = 300, hborder = 200, target = walker } } }
`;
}

// The number of a field of the shown camera.
export function valueOf(runner, field) {
    return runner.panel().sections.flatMap((section) => section.rows).find((row) => row.field === field).number;
}
