// The time of the game: play, pause, step, back, slow, and the frames that are known as a slider.

import { button } from "./dom.js";

const PANEL_MILLISECONDS = 100; // between two looks at the inspector while the game plays

export class Controls {
    #timeline;
    #frame;
    #session;
    #guarded;
    #showPanel;
    #play;
    #slow;
    #isSlow = false;
    #shownAt = 0; // when the panel was shown last
    #wanted = null; // a frame that the slider asks for, while the Runner goes to another one
    #isGoing = false;

    // places: { bar, timeline, frame }, elements. guarded(work): runs what may fail.
    constructor(places, session, guarded, showPanel) {
        this.#timeline = places.timeline;
        this.#frame = places.frame;
        this.#session = session;
        this.#guarded = guarded;
        this.#showPanel = showPanel;
        const action = (text, work, more) => button(text, () => guarded(() => this.#on(work)), more);
        this.#play = action("Play", (runner) => (runner.playing ? runner.pause() : runner.play()));
        this.#slow = action("Slow", (runner) => runner.slow(this.#isSlow = !this.#isSlow), { "aria-pressed": "false", title: "A quarter of the speed" });
        places.bar.append(this.#play, action("Back", (runner) => runner.goTo(runner.frame - 1), { title: "One frame" }),
            action("Step", (runner) => runner.step(), { title: "One frame" }), this.#slow,
            action("To the start", (runner) => runner.goTo(0)));
        this.#timeline.oninput = () => this.#scrub(Number(this.#timeline.value));
    }

    async #on(work) {
        const runner = this.#session.runner;
        if (runner === null) return;
        await work(runner);
        this.show();
        this.#showPanel();
    }

    // Goes to the frame of the slider; on the way, the last one that was asked for is the next one.
    #scrub(frame) {
        this.#wanted = frame;
        if (this.#isGoing) return;
        this.#isGoing = true;
        this.#guarded(async () => {
            while (this.#wanted !== null) {
                const next = this.#wanted;
                this.#wanted = null;
                await this.#on((runner) => runner.goTo(next));
            }
        }).finally(() => { this.#isGoing = false; this.show(); });
    }

    // What the game does now.
    show() {
        const runner = this.#session.runner;
        const isPlaying = runner?.playing ?? false;
        const frame = runner?.frame ?? 0, frames = runner?.frames ?? 0;
        setText(this.#play, isPlaying ? "Pause" : "Play");
        this.#play.disabled = runner === null || (!isPlaying && (runner.failure !== null || runner.ended));
        this.#slow.setAttribute("aria-pressed", String(this.#isSlow));
        if (!this.#isGoing) {
            this.#timeline.max = String(Math.max(frames, frame));
            this.#timeline.value = String(frame);
        }
        this.#timeline.disabled = runner === null;
        setText(this.#frame, `${frame} / ${Math.max(frames, frame)}`);
        if (isPlaying && performance.now() - this.#shownAt < PANEL_MILLISECONDS) return;
        this.#shownAt = performance.now();
        this.#showPanel();
    }
}

function setText(node, text) {
    if (node.textContent !== text) node.textContent = text;
}
