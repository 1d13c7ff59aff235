// What scripts can call, for the editor, out of the annotations that other editors read too (Docs/api.lua). Those are
// made from the tables of functions, so there is one source.

// [{ label, kind, detail, info }]: a function with its arguments and result in detail, or a global table.
export function readAnnotations(text) {
    const entries = [];
    let notes = [];
    for (const line of text.split("\n")) {
        if (line.startsWith("---")) {
            notes.push(line.slice(3));
            continue;
        }
        const entry = entryOf(line, notes);
        if (entry !== null) entries.push(entry);
        notes = [];
    }
    return entries;
}

function entryOf(line, notes) {
    const made = /^function (\w+(?:[:.]\w+)?)\(([^)]*)\)/.exec(line);
    const global = /^(\w+) = \{\}/.exec(line);
    if (made === null && global === null) return null;
    const told = notes.filter((note) => !note.startsWith("@")).join("\n").trim();
    if (global !== null) return { label: global[1], kind: "variable", detail: "", info: told };
    const method = made[1].split(/[:.]/);
    return {
        label: method[method.length - 1],
        kind: method.length > 1 ? "method" : "function",
        detail: `(${made[2]})${resultOf(notes)}`,
        info: [told, ...notes.map(argumentOf).filter((text) => text !== "")].join("\n").trim(),
    };
}

// "@param speed_x? number largest step" as "speed_x, may be left out: number, largest step".
function argumentOf(note) {
    const found = /^@param (\w+)(\??) (\S+) ?(.*)$/.exec(note);
    if (found === null) return "";
    const [, name, mayMiss, kind, meaning] = found;
    return `${name}${mayMiss && ", may be left out"}: ${kind}${meaning && ", " + meaning}`;
}

function resultOf(notes) {
    const names = notes.map((note) => /^@return \S+ (\w+)/.exec(note)?.[1]).filter((name) => name !== undefined);
    return names.length === 0 ? "" : " -> " + names.join(", ");
}
