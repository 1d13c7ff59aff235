// What is told to the user: the game's log, the failure of a game with its stack, and one line about what the page does.

import { button, element } from "./dom.js";

const LINES = 300; // of the log that stay
const LINE_LENGTH = 2000; // characters that are shown of one

export class Messages {
    #log;
    #failure;
    #status;
    #showLine;
    #waiting = []; // lines until the next picture: a game may log thousands in a frame

    // places: elements. showLine(file, line): brings a line of the text into sight.
    constructor(places, showLine) {
        this.#log = places.log;
        this.#failure = places.failure;
        this.#status = places.status;
        this.#showLine = showLine;
    }

    // A line of the game or of the Runner. kind: "log", "report" or "error".
    add(line, kind) {
        if (this.#waiting.length === 0) requestAnimationFrame(() => this.#flush());
        this.#waiting.push([line.length > LINE_LENGTH ? line.slice(0, LINE_LENGTH) + "..." : line, kind]);
        if (this.#waiting.length > LINES) this.#waiting.shift();
    }

    #flush() {
        const isAtEnd = this.#log.scrollTop + this.#log.clientHeight >= this.#log.scrollHeight - 4;
        this.#log.append(...this.#waiting.map(([line, kind]) => element("div", { className: kind }, line)));
        this.#waiting = [];
        while (this.#log.childElementCount > LINES) this.#log.firstElementChild.remove();
        if (isAtEnd) this.#log.scrollTop = this.#log.scrollHeight;
    }

    // Before a game starts.
    clear() {
        this.#waiting = [];
        this.#log.replaceChildren();
        this.#failure.replaceChildren();
    }

    // Why a game stopped, with a button for its line.
    fail(failure) {
        const where = [failure.event, failure.room && `room ${failure.room}`, `frame ${failure.frame}`].filter(Boolean).join(", ");
        const stack = failure.stack.map(({ place, locals }) =>
            [place, ...locals.map(({ name, value }) => `    ${name} = ${value}`)].join("\n")).join("\n");
        this.#failure.replaceChildren(element("div", {}, element("strong", {}, failure.text), element("p", {}, where),
            ...(failure.line > 0 ? [button(`Show line ${failure.line}`, () => this.#showLine(failure.file, failure.line))] : []),
            ...(stack !== "" ? [element("pre", {}, stack)] : [])));
    }

    // One line about what the page does; isFault: in red.
    tell(line, isFault) {
        this.#status.className = isFault ? "error" : "";
        this.#status.textContent = line;
    }
}
