// Questions to the user, each a dialog of the page; Escape and "Cancel" answer null.

import { button, element } from "./dom.js";

function ask(title, fields, actions) {
    return new Promise((answered) => {
        const dialog = element("dialog", { "aria-label": title });
        let answer = null;
        const buttons = actions.map(({ text, result }) => button(text, () => { answer = result(); dialog.close(); }));
        const form = element("form", { method: "dialog", onsubmit: (event) => { event.preventDefault(); buttons[0]?.click(); } },
            element("h2", {}, title), ...fields, element("p", { className: "actions" }, ...buttons,
                button(actions.length === 0 ? "Close" : "Cancel", () => dialog.close())));
        dialog.append(form);
        dialog.onclose = () => { dialog.remove(); answered(answer); };
        document.body.append(dialog);
        dialog.showModal();
    });
}

// A line of text.
export function askText(title, label, value) {
    const input = element("input", { id: "question", value, autocomplete: "off", spellcheck: false });
    return ask(title, [element("p", {}, element("label", { for: "question" }, label)), input],
        [{ text: "OK", result: () => input.value.trim() }]);
}

// Whether to go on.
export async function askWhether(title, text, yes) {
    return (await ask(title, [element("p", {}, text)], [{ text: yes, result: () => true }])) === true;
}

// Shows a text to be taken, and puts it into the clipboard where the browser allows it.
export async function offerText(title, text) {
    let isCopied = true;
    await Promise.resolve(navigator.clipboard?.writeText(text) ?? Promise.reject()).catch(() => { isCopied = false; });
    const area = element("textarea", { readOnly: true, value: text, rows: Math.min(12, text.split("\n").length + 1),
        "aria-label": title, onfocus: () => area.select() });
    const told = isCopied ? "It is in the clipboard." : "This browser lets pages write to no clipboard: copy it here.";
    await ask(title, [element("p", {}, told), area], []);
}
