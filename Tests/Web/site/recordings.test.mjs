// A recording made here is played there: natively and in Chromium, to the same final save.
import assert from "node:assert/strict";
import fs from "node:fs";
import path from "node:path";
import { after, before, test } from "node:test";
import { expectQuiet, gameFile, games, launch, native, openPage, serve, temporaryFolder, withInPage } from "./browser.mjs";

const FRAMES = 300;
const INPUT = "0 mouse 100 40\n10 key right down\n60 key space tap\n90 button left down\n95 mouse 500.5 210.25\n" +
    "130 button left up\n150 key right up\n155 key left down\n200 pad 0 on\n205 pad 0 axis left_x 0.7\n230 pad 0 button a tap\n";
const folder = temporaryFolder();
const at = (name) => path.join(folder, name);

let server, browser, opened, call;
before(async () => {
    server = await serve();
    browser = await launch();
    opened = await openPage(browser, server);
    await opened.page.goto(`${server.address}Docs/Licences.html`);
    call = await withInPage(opened, server);
    fs.writeFileSync(at("input.txt"), INPUT);
});
after(async () => {
    await browser.close();
    server.close();
    fs.rmSync(folder, { recursive: true });
});

// Rejects when the saves differ.
const expectSameSaves = (a, b) => native("--compare-saves", at(a), at(b));

function play(game, ...more) {
    return native(gameFile(game), "--no-draw", "--quiet", "--out", at("out"), ...more);
}

for (const id of ["canyon", "shake", "kit"]) {
    const game = () => games().find((each) => each.id === id);

    test(`${id}: recorded natively, replayed in the browser`, async () => {
        await play(game(), "--frames", String(FRAMES), "--input", at("input.txt"), "--record", at("native.rec"),
            "--save-at", String(FRAMES), at("native.sav"));
        const { save, frame } = await call("recorded", id, FRAMES + 50, { replay: [...fs.readFileSync(at("native.rec"))] });
        assert.equal(frame, FRAMES);
        fs.writeFileSync(at("browser.sav"), Buffer.from(save));
        await expectSameSaves("native.sav", "browser.sav");
    });

    test(`${id}: recorded in the browser, replayed natively`, async () => {
        const { recording, save } = await call("recorded", id, FRAMES, { input: INPUT });
        fs.writeFileSync(at("browser.rec"), Buffer.from(recording));
        fs.writeFileSync(at("browser.sav"), Buffer.from(save));
        await play(game(), "--replay", at("browser.rec"), "--save-at", String(FRAMES), at("native.sav"));
        await expectSameSaves("native.sav", "browser.sav");
    });
}

test("nothing was said and nothing left the site", () => expectQuiet(opened));
