import assert from "node:assert/strict";
import { readFileSync } from "node:fs";
import { test } from "node:test";
import { readAnnotations } from "../../../Web/playground/completions.js";

const read = (name) => readFileSync(new URL("../../../" + name, import.meta.url), "utf8");

test("a function has its arguments, result and meaning", () => {
    const entries = readAnnotations(`---@meta
-- A comment.

---Makes it.
---Twice.
---@param x number left edge
---@param angle? number
---@return integer camera the camera
function camera_create_view(x, angle) end

function plain() end
`);
    assert.deepEqual(entries, [
        {
            label: "camera_create_view", kind: "function", detail: "(x, angle) -> camera",
            info: "Makes it.\nTwice.\nx: number, left edge\nangle, may be left out: number",
        },
        { label: "plain", kind: "function", detail: "()", info: "" },
    ]);
});

test("globals and methods are told as such", () => {
    const entries = readAnnotations("---What is kept\n---@type table\nvars = {}\n\n---Moves\nfunction Shot:move(x) end\n");
    assert.deepEqual(entries.map((entry) => [entry.label, entry.kind, entry.info]),
        [["vars", "variable", "What is kept"], ["move", "method", "Moves"]]);
});

test("every function of the script page is offered, with a meaning", () => {
    const entries = readAnnotations(read("Docs/api.lua"));
    const offered = new Set(entries.map((entry) => entry.label));
    const functions = new Set([...read("Docs/Built_Ins.md").matchAll(/^### (\w+)$/gm)].map((found) => found[1]));
    for (const name of functions) assert.ok(offered.has(name), name);
    for (const name of ["room_add", "object_add", "key_down", "draw_sprite", "vars", "colours"]) assert.ok(offered.has(name), name);
    const silent = entries.filter(({ label, info }) => functions.has(label) && info === "").map(({ label }) => label);
    assert.deepEqual(silent, []);
    assert.equal(functions.size, 47);
});
