// A recording made here is played there: natively and in Chromium, to the same final save.
import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import { EXAMPLES, expectQuiet, gameFile, games, native, openPlayer } from "./browser.mjs";

const FRAMES = 200;
// Right Ctrl and Start join where players must join before they steer.
const INPUT = "0 mouse 100 40\n2 key right_ctrl tap\n10 key right down\n60 key space tap\n90 button left down\n" +
    "95 mouse 500.5 210.25\n130 button left up\n131 wheel 0 1\n140 key right up\n145 key left down\n150 pad 0 on\n" +
    "152 pad 0 button start tap\n155 pad 0 axis left_x 0.7\n180 pad 0 button a tap\n";

let opened, folder, call, close;
before(async () => {
    ({ opened, folder, call, close } = await openPlayer());
    fs.writeFileSync(at("input.txt"), INPUT);
});
after(() => close());

const at = (name) => path.join(folder, name);
const read = (name) => fs.readFileSync(at(name));
const write = (name, base64) => fs.writeFileSync(at(name), Buffer.from(base64, "base64"));
// Leaves native.sav, of the state after the last frame.
const play = (game, ...more) =>
    native(gameFile(game), "--no-draw", "--quiet", "--out", at("out"), "--save-at", String(FRAMES), at("native.sav"), ...more);

for (const id of EXAMPLES) {
    const game = () => games().find((each) => each.id === id);

    test(`${id}: recorded natively, replayed in the browser`, async () => {
        await play(game(), "--frames", String(FRAMES), "--input", at("input.txt"), "--record", at("native.rec"));
        const { save, frame } = await call("recorded", id, FRAMES + 50, { replay: read("native.rec").toString("base64") });
        assert.equal(frame, FRAMES, "it ends where the recording ends");
        assert.deepEqual(Buffer.from(save, "base64"), read("native.sav"));
    });

    test(`${id}: recorded in the browser, replayed natively`, async () => {
        const { recording, save } = await call("recorded", id, FRAMES, { input: INPUT });
        write("browser.rec", recording);
        await play(game(), "--replay", at("browser.rec"));
        assert.deepEqual(read("native.sav"), Buffer.from(save, "base64"));
        const undisturbed = await call("recorded", id, FRAMES, {});
        assert.notEqual(undisturbed.save, save, "the input steers the game");
    });
}

test("nothing was said and nothing left the site", () => expectQuiet(opened));
