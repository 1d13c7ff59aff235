// Elements made in one expression. Texts are texts: nothing that a game or a file says becomes markup.

// element("button", { type: "button", onclick: run }, "Run"): properties (names with "-", "for" and "role" are attributes),
// then content.
export function element(name, properties = {}, ...content) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(properties)) {
        if (key.includes("-") || key === "for" || key === "role") made.setAttribute(key, value);
        else made[key] = value;
    }
    made.append(...content);
    return made;
}

export const button = (text, onclick, more = {}) => element("button", { type: "button", onclick, ...more }, text);

// Hands a file to the user.
export function download(name, bytes) {
    const address = URL.createObjectURL(new Blob([bytes], { type: "application/octet-stream" }));
    element("a", { href: address, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(address), 60000);
}
