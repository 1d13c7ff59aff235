import assert from "node:assert/strict";
import { test } from "node:test";
import { setTimeout as wait } from "node:timers/promises";
import { Draft, QUIET_MILLISECONDS } from "../../../Web/playground/draft.js";

const game = (text) => ({ main: "a.lua", files: new Map([["a.lua", text]]) });

function memoryStore() {
    const kept = new Map();
    return { kept, get: async (name) => kept.get(name) ?? null, put: async (name, value) => void kept.set(name, value) };
}

test("the last text is kept, and what changes on the way is not written each time", async () => {
    let writes = 0;
    const store = memoryStore(), put = store.put;
    store.put = (...all) => (++writes, put(...all));
    const draft = new Draft(store, assert.fail);
    for (const text of ["1", "12", "123"]) draft.changed(game(text));
    assert.equal(writes, 0);
    await wait(QUIET_MILLISECONDS + 100);
    assert.equal(writes, 1);
    assert.equal((await draft.last()).files.get("a.lua"), "123");
});

test("a flush stores at once what is due", async () => {
    const draft = new Draft(memoryStore(), assert.fail);
    draft.changed(game("new"));
    await draft.flush();
    assert.equal((await draft.last()).files.get("a.lua"), "new");
});

test("another game does not lose the one before", async () => {
    const draft = new Draft(memoryStore(), assert.fail);
    draft.changed(game("mine"));
    await draft.replaced(game("mine"), game("example"));
    assert.equal((await draft.before()).files.get("a.lua"), "mine");
    assert.equal((await draft.last()).files.get("a.lua"), "example");
});

test("a store that refuses is told once, until it works again", async () => {
    const told = [];
    let isFull = true;
    const store = memoryStore(), put = store.put;
    store.put = async (...all) => {
        if (isFull) throw new Error("the quota is exceeded");
        return put(...all);
    };
    const draft = new Draft(store, (line) => told.push(line));
    const write = async (text) => (draft.changed(game(text)), draft.flush());
    await write("1");
    await write("2");
    assert.equal(told.length, 1);
    assert.match(told[0], /does not keep the text \(the quota is exceeded\)/);
    isFull = false;
    await write("3");
    isFull = true;
    await write("4");
    assert.equal(told.length, 2);
    assert.equal((await draft.last()).files.get("a.lua"), "3");
});

test("a store that cannot be read has no draft", async () => {
    const draft = new Draft({ get: async () => { throw new Error("denied"); }, put: async () => {} }, assert.fail);
    assert.equal(await draft.last(), null);
});
