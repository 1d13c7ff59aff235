// The files of the game as tabs, and the file that is shown: a text in the editor, or a picture. The arrow keys go from tab
// to tab.

import { button, element } from "./dom.js";
import { isPicture, sizeOf } from "./game_files.js";

export class FilesView {
    #tabs;
    #pictureBox;
    #editorBox;
    #editor;
    #game = null;
    #shown = "";
    #address = null; // of the picture that is shown

    // boxes: { tabs, editor, picture }, elements.
    constructor(boxes, editor) {
        this.#tabs = boxes.tabs;
        this.#editorBox = boxes.editor;
        this.#pictureBox = boxes.picture;
        this.#editor = editor;
        this.#tabs.onkeydown = (event) => this.#moved(event);
    }

    get shown() {
        return this.#shown;
    }

    // Another game, or other files of it.
    setGame(game) {
        if (game !== this.#game) this.#editor.clear();
        this.#game = game;
        this.show(game.files.has(this.#shown) ? this.#shown : game.main);
    }

    show(path) {
        const content = this.#game.files.get(path);
        this.#shown = path;
        this.#showTabs();
        const isText = typeof content === "string";
        this.#editorBox.hidden = !isText;
        this.#pictureBox.hidden = isText;
        if (isText) this.#editor.show(path, content);
        else this.#showBytes(path, content);
    }

    // The file that starts comes first, then scripts, then the rest, each by name.
    #paths() {
        const rank = (path) => (path === this.#game.main ? 0 : path.endsWith(".lua") ? 1 : 2);
        return [...this.#game.files.keys()].sort((a, b) => rank(a) - rank(b) || (a < b ? -1 : 1));
    }

    #showTabs() {
        const hadFocus = this.#tabs.contains(document.activeElement);
        this.#tabs.replaceChildren(...this.#paths().map((path) => button(path, () => this.show(path), {
            role: "tab", "aria-selected": String(path === this.#shown), "aria-controls": "file",
            tabIndex: path === this.#shown ? 0 : -1,
        })));
        if (hadFocus) this.#tabs.querySelector('[aria-selected="true"]')?.focus();
    }

    #moved(event) {
        const step = { ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1 }[event.key];
        if (step === undefined) return;
        const paths = this.#paths();
        event.preventDefault();
        this.show(paths[(paths.indexOf(this.#shown) + step + paths.length) % paths.length]);
    }

    #showBytes(path, bytes) {
        if (this.#address !== null) URL.revokeObjectURL(this.#address);
        this.#address = null;
        const about = element("p", {}, `${path}: ${sizeOf(bytes)} bytes`);
        this.#pictureBox.replaceChildren(about);
        if (!isPicture(path)) return;
        this.#address = URL.createObjectURL(new Blob([bytes]));
        const image = element("img", { alt: `The picture ${path}`, src: this.#address });
        image.onload = () => about.append(`, ${image.naturalWidth} x ${image.naturalHeight}`);
        image.onerror = () => { image.remove(); about.append(". This is no picture that can be shown"); };
        this.#pictureBox.append(image);
    }
}
