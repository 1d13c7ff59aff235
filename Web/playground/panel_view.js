// The camera inspector's panel as elements of the page, out of the Runner's description: the same content as in the native
// window. Elements stay while what they show stays, so that a focus or a half-typed number survives each frame.

import { button, element } from "./dom.js";

export class PanelView {
    #parent;
    #actions;
    #shape = ""; // which sections and rows the elements were made for
    #rows = []; // of elements, in the order of the panel's rows
    #camera = null;
    #reason = element("ul", { className: "reason" });
    #aside = element("div", { className: "aside" });
    #body = element("div");
    #chooser = element("select", { id: "panel-camera" });
    #panel = null;

    // actions: select(camera), change(camera, field, number) -> whether it was taken, copy(lua).
    constructor(parent, actions) {
        this.#parent = parent;
        this.#actions = actions;
        this.#chooser.onchange = () => actions.select(Number(this.#chooser.value));
        parent.append(
            element("p", { className: "chooser" }, element("label", { for: "panel-camera" }, "Camera "), this.#chooser,
                button("Copy as Lua", () => this.#panel !== null && actions.copy(this.#panel.lua))),
            element("section", { "aria-label": "Why it moved" }, element("h3", {}, "Why it moved"), this.#reason),
            this.#aside, this.#body);
    }

    show(panel) {
        this.#panel = panel;
        this.#showCameras(panel);
        this.#showLines(this.#reason, panel.reason.length > 0 ? panel.reason : ["It has not moved in this frame."]);
        this.#showAside(panel.aside);
        const shape = JSON.stringify([panel.selected, panel.sections.map(({ title, rows }) => [title, rows.map((row) => row.name)])]);
        if (shape !== this.#shape) this.#make(panel);
        this.#shape = shape;
        panel.sections.flatMap((section) => section.rows).forEach((row, i) => this.#fill(this.#rows[i], row));
    }

    #showCameras({ cameras, selected }) {
        const wanted = JSON.stringify(cameras);
        if (this.#camera !== wanted)
            this.#chooser.replaceChildren(...cameras.map(({ id, text }) => element("option", { value: String(id) }, text)));
        this.#camera = wanted;
        if (this.#chooser.value !== String(selected)) this.#chooser.value = String(selected);
    }

    #showLines(list, lines) {
        if (list.childElementCount !== lines.length)
            list.replaceChildren(...lines.map(() => element("li")));
        lines.forEach((line, i) => setText(list.children[i], line));
    }

    #showAside({ changes, lua }) {
        const key = JSON.stringify(changes);
        if (this.#aside.dataset.key === key) return;
        this.#aside.dataset.key = key;
        if (changes.length === 0) return this.#aside.replaceChildren();
        const again = () => changes.forEach(({ camera, field, value }) => this.#actions.change(camera, field, value));
        this.#aside.replaceChildren(element("p", {}, "Changed by hand before the game started anew:"),
            element("ul", {}, ...changes.map(({ text }) => element("li", {}, text))),
            button("Change it again", again), button("Copy as Lua", () => this.#actions.copy(lua)));
    }

    #make(panel) {
        this.#rows = [];
        this.#body.replaceChildren(...panel.sections.map(({ title, rows }, section) =>
            element("fieldset", {}, element("legend", {}, title),
                ...rows.map((row, i) => this.#makeRow(row, `panel-${section}-${i}`)))));
    }

    // A number that can be changed is an input; all else is text. What it means stands in a description.
    #makeRow(row, id) {
        const about = [row.meaning, row.range && `Range: ${row.range}`, row.setBy && `Set by ${row.setBy}`]
            .filter((part) => part !== "").join(". ");
        const value = row.field === ""
            ? element("output", { id })
            : element("input", { id, type: "number", step: "any", "aria-describedby": `${id}-about` });
        const parts = { value, row: null };
        if (row.field !== "") {
            value.oninput = () => this.#take(parts);
            value.onblur = () => { value.removeAttribute("aria-invalid"); this.#fill(parts, parts.row, true); };
        }
        this.#rows.push(parts);
        return element("div", { className: "row", title: about }, element("label", { for: id }, row.name), value,
            element("span", { className: "unit" }, row.unit),
            element("span", { id: `${id}-about`, className: "hidden" }, [row.unit, about].filter(Boolean).join(". ")));
    }

    // What is no number yet, such as "-", waits for the next key.
    #take({ value, row }) {
        const isNumber = value.value !== "" && Number.isFinite(value.valueAsNumber);
        const isTaken = isNumber && this.#actions.change(this.#panel.selected, row.field, value.valueAsNumber);
        if (isTaken) value.removeAttribute("aria-invalid");
        else value.setAttribute("aria-invalid", "true");
    }

    // The input that is being typed into keeps what was typed.
    #fill(parts, row, always = false) {
        parts.row = row;
        if (parts.value.tagName === "OUTPUT") return setText(parts.value, row.value);
        const isTyped = parts.value.getRootNode().activeElement === parts.value;
        const text = String(roundedOf(row.number));
        if ((always || !isTyped) && parts.value.value !== text) parts.value.value = text;
    }
}

// A 32-bit float with the digits that tell it from its neighbours, not those of the 64-bit number.
export function roundedOf(number) {
    for (let digits = 1; digits <= 9; ++digits) {
        const text = Number(number.toPrecision(digits));
        if (Math.fround(text) === number) return text;
    }
    return number;
}

function setText(node, text) {
    if (node.textContent !== text) node.textContent = text;
}
