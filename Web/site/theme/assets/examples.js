// The games in the manual's pages. Each stands still until somebody starts it; one runs at a time, since each takes a
// drawing context, of which a browser has few. The one before keeps its last picture.
const base = new URL("../", import.meta.url);

let running = null; // the Example that has a runner
let starts = Promise.resolve(); // one after the other, however fast somebody presses

async function fetched(url, read) {
    const answer = await fetch(url);
    if (!answer.ok) throw new Error(`${url.pathname} cannot be read: ${answer.status}`);
    return read(answer);
}

// A game of examples/index.json: { main, files } as createRunner() takes them.
export async function loadGame(id) {
    const games = await fetched(new URL("examples/index.json", base), (answer) => answer.json());
    const game = games.find((each) => each.id === id);
    if (!game) throw new Error(`there is no example ${id}`);
    const contents = await Promise.all(game.files.map((file) =>
        fetched(new URL(`examples/${id}/${file}`, base), (answer) => answer.arrayBuffer())));
    return { main: game.main, files: new Map(game.files.map((file, i) => [file, new Uint8Array(contents[i])])) };
}

function made(tag, properties, ...children) {
    const element = Object.assign(document.createElement(tag), properties);
    element.append(...children);
    return element;
}

class Example {
    constructor(place) {
        this.id = place.dataset.example;
        this.runner = null;
        this.canvas = made("canvas", { width: 640, height: 360 });
        this.run = made("button", { type: "button", textContent: "Run", onclick: () => this.toggle() });
        this.again = made("button", { type: "button", textContent: "Restart", disabled: true,
                                      onclick: () => this.restart() });
        const open = made("a", { href: new URL(`playground/index.html#example=${this.id}`, base).href,
                                 textContent: "Open in the playground" });
        open.setAttribute("aria-label", `Open in the playground: ${this.id}`);
        this.run.setAttribute("aria-label", `Run ${this.id}`);
        this.again.setAttribute("aria-label", `Restart ${this.id}`);
        this.status = made("p", { className: "status" });
        this.status.setAttribute("role", "status");
        place.append(this.canvas, made("div", { className: "controls" }, this.run, this.again, open), this.status);
        this.place = place;
        // Out of sight it pauses, and goes on only when asked to.
        new IntersectionObserver((entries) => {
            if (!entries[0].isIntersecting && this.runner?.playing) this.pause();
        }).observe(place);
    }

    toggle() {
        if (this.runner?.playing) return this.pause();
        if (this.runner && !this.runner.ended && !this.runner.failure) return this.play();
        return this.start();
    }

    async restart() {
        if (!this.runner || this.runner.dead) return this.start();
        await this.runner.restart();
        this.say("");
        this.play();
    }

    play() {
        this.runner.play();
        this.canvas.focus({ preventScroll: true });
        this.name();
    }

    pause() {
        this.runner.pause();
        this.name();
    }

    start() {
        this.run.disabled = true;
        this.say("");
        starts = starts.then(() => this.takeOver());
        return starts;
    }

    // From the start, in place of the example that ran before.
    async takeOver() {
        try {
            await running?.stop();
            running = this;
            const [{ createRunner, memoryStore }, game] = await Promise.all([
                import(new URL("runner/runner.js", base).href), loadGame(this.id),
            ]);
            this.renewCanvas();
            this.runner = await createRunner({
                canvas: this.canvas, ...game, saves: memoryStore(), options: { size: "game" }, on: this.events(),
            });
            this.again.disabled = false;
            if (!this.runner.failure) this.play();
        } catch (error) {
            this.say(error.message);
        }
        this.run.disabled = false;
        this.name();
    }

    events() {
        return {
            text: (line, kind) => kind === "error" && this.say(line),
            failure: (failure) => this.say(failure.text),
            ended: () => this.name(),
            change: () => this.name(),
        };
    }

    // Gives the drawing context back and leaves the last picture.
    async stop() {
        const runner = this.runner;
        if (!runner) return;
        const picture = runner.picture();
        this.runner = null;
        await runner.close();
        this.renewCanvas();
        if (picture) {
            this.canvas.width = picture.width;
            this.canvas.height = picture.height;
            this.canvas.getContext("2d").putImageData(
                new ImageData(new Uint8ClampedArray(picture.rgba), picture.width, picture.height), 0, 0);
        }
        this.again.disabled = true;
        this.name();
    }

    renewCanvas() { // a canvas never changes its kind of context
        const canvas = made("canvas", { width: this.canvas.width, height: this.canvas.height, tabIndex: 0 });
        canvas.setAttribute("role", "img");
        canvas.setAttribute("aria-label", `The game ${this.id}`);
        this.canvas.replaceWith(canvas);
        this.canvas = canvas;
    }

    name() {
        this.run.textContent = this.runner?.playing ? "Pause" : "Run";
        this.run.setAttribute("aria-label", `${this.run.textContent} ${this.id}`);
    }

    say(text) {
        this.status.textContent = text;
    }
}

for (const place of document.querySelectorAll(".example")) new Example(place);
