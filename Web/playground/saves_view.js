// The game's save area and its recording, as files that can be taken out, brought back and gone on from.

import { button, download, element } from "./dom.js";
import { printable } from "./game_files.js";

export class SavesView {
    #list = element("ul");
    #actions = element("p", { className: "actions" });
    #session;
    #guarded;
    #page;

    // page: { goOn(save), replay(recording), ofArchive() -> the recording that came with the game, null for none }.
    constructor(parent, session, guarded, page) {
        this.#session = session;
        this.#guarded = guarded;
        this.#page = page;
        parent.append(this.#actions, this.#list);
    }

    show() {
        const runner = this.#session.runner;
        const action = (text, work) => button(text, () => this.#guarded(work));
        const recording = this.#page.ofArchive();
        this.#actions.replaceChildren(
            action("Download the recording", () => download("recording.rec", this.#running().recording())),
            action("Download the game as it stands", () => download("state.sav", this.#running().save())),
            action("Replay from the start", () => this.#page.replay(this.#running().recording())),
            ...(recording !== null ? [action("Replay the archive's recording", () => this.#page.replay(recording))] : []));
        const rows = (runner?.saves() ?? []).map(({ name, size }) => element("li", {}, `${name}, ${size} bytes `,
            action("Download", () => download(name, this.#content(name))),
            ...(/\.sav$/i.test(name) ? [action("Go on from it", () => this.#page.goOn(this.#content(name)))] : []),
            action("Remove", () => { this.#running().removeSave(name); this.show(); })));
        this.#list.replaceChildren(...(rows.length > 0 ? rows : [element("li", {}, "The game has saved nothing.")]));
    }

    // A saved game from outside becomes a file of the save area.
    take(name, content) {
        this.#running().writeSave(name, content);
        this.show();
        return this.#page.goOn(content);
    }

    #running() {
        const { runner } = this.#session;
        if (runner === null) throw new Error("no game runs: run one first");
        return runner;
    }

    #content(name) {
        const content = this.#running().readSave(name);
        if (content === null) throw new Error(`${printable(name)} is not there any more`);
        return content;
    }
}
