// The game that runs beside the text: it makes the Runner, one at a time, and a new one when the program of the last came
// to its end, such as by a script that took all memory.

import { element } from "./dom.js";

const RUNNER = "../runner/runner.js";
const MILLIONS = 100; // instructions of Lua in one frame: an endless loop ends in well under a second

export class Session {
    #stage;
    #events;
    #runner = null;
    #main = "";
    #inspects = false;
    #turn = Promise.resolve(); // one start after the other

    // stage: the element that holds the canvases. events: { text, failure, frame, change, saved }, as the Runner's, each
    // also called for the page's own sake after a start.
    constructor(stage, events) {
        this.#stage = stage;
        this.#events = events;
    }

    get runner() {
        return this.#runner !== null && this.#runner.dead === "" ? this.#runner : null;
    }

    // Why the program is gone; empty while it lives or where there was none.
    get dead() {
        return this.#runner?.dead ?? "";
    }

    // Plays the game from its start, in a Runner of its own. more: its further options, such as a saved game or a recording.
    run(game, more = {}) {
        return this.#next(async () => {
            await this.#make(game, more);
            if (this.runner !== null && this.#runner.failure === null) this.#runner.play();
            this.#events.change();
        });
    }

    // Starts anew from changed files, up to the same frame.
    reload(game) {
        const hasPlayed = this.runner !== null && this.#main === game.main && this.runner.frames > 0;
        if (!hasPlayed) return this.run(game);
        return this.#next(async () => {
            const wasPlaying = this.#runner.playing || this.#runner.failure !== null;
            this.#runner.pause();
            await this.#runner.reload(new Map(game.files));
            if (wasPlaying && this.#runner.failure === null) this.#runner.play();
            this.#events.change();
        });
    }

    // The inspector of this runner and of those after it.
    inspect(on) {
        this.#inspects = on;
        this.runner?.inspect(on);
    }

    #next(work) {
        const mine = this.#turn.then(work);
        this.#turn = mine.catch(() => {});
        return mine;
    }

    async #make(game, more) {
        await this.#close();
        const { createRunner, browserStore } = await import(RUNNER).catch(() => {
            throw new Error("the Runner cannot be loaded: is the page whole, and the server there?");
        });
        const canvas = element("canvas", { tabIndex: 0, role: "application",
            "aria-label": `The game ${game.main}. It takes the keyboard while it is focused` });
        const overlay = element("canvas", { className: "overlay", "aria-hidden": "true" });
        this.#stage.replaceChildren(canvas, overlay);
        this.#main = game.main;
        try {
            this.#runner = await createRunner({
                canvas, overlay, files: new Map(game.files), main: game.main,
                saves: browserStore(`playground/${game.main}`),
                options: { instructions: MILLIONS, size: "css", ...more }, on: this.#events,
            });
        } catch (error) {
            this.#stage.replaceChildren(element("p", {}, error.message));
            throw error;
        }
        if (this.#inspects) this.#runner.inspect(true);
        // Events of the start came before this runner could be asked.
        if (this.#runner.failure !== null) this.#events.failure(this.#runner.failure);
        this.#events.frame(this.#runner.frame);
    }

    async #close() {
        const runner = this.#runner;
        this.#runner = null;
        if (runner !== null && runner.dead === "") await runner.close();
    }
}
