// Builds the page: node build.js OUT. OUT gets index.html and what it loads but the Runner, which stands in OUT/../runner,
// and the examples, in OUT/../examples.

import { copyFileSync, mkdirSync, readdirSync, readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import { build } from "esbuild";
import { readAnnotations } from "./completions.js";

const own = (name) => fileURLToPath(new URL(name, import.meta.url));
const read = (name) => readFileSync(own("../../" + name), "utf8");

// The game that a new page shows: the first one of the tutorial, which `runner --new` makes, too.
function startingGame() {
    const block = /```lua hop\.lua\n([\s\S]*?)```/.exec(read("Docs/Your_Game.md"));
    if (block === null) throw new Error("Docs/Your_Game.md has no first block of hop.lua");
    return { main: "hop.lua", text: block[1] };
}

const CONTENTS = {
    "playground:annotations": () => readAnnotations(read("Docs/api.lua")),
    "playground:start": startingGame,
};

const contents = {
    name: "contents",
    setup(made) {
        made.onResolve({ filter: /^playground:/ }, ({ path }) => ({ path, namespace: "contents" }));
        made.onLoad({ filter: /.*/, namespace: "contents" }, ({ path }) => ({ contents: JSON.stringify(CONTENTS[path]()), loader: "json" }));
    },
};

// The licences of the packages that the page holds.
function licencesOf(inputs) {
    const packages = new Set(inputs.map((path) => /node_modules\/((?:@[^/]+\/)?[^/]+)/.exec(path)?.[1]).filter(Boolean));
    return [...packages].sort().map((name) => {
        const folder = own(`../node_modules/${name}/`);
        const { version, license } = JSON.parse(readFileSync(folder + "package.json", "utf8"));
        const file = readdirSync(folder).find((entry) => /^licen[cs]e/i.test(entry));
        if (file === undefined) throw new Error(`${name} has no text of its licence`);
        return `${name} ${version}, ${license}\n\n${readFileSync(folder + file, "utf8").trim()}\n`;
    }).join("\n----\n\n");
}

const out = process.argv[2];
if (out === undefined) {
    console.error("usage: node build.js OUT");
    process.exit(2);
}
mkdirSync(out, { recursive: true });
const { metafile } = await build({
    entryPoints: [own("playground.js")], outfile: join(out, "playground.js"), bundle: true, format: "esm", minify: true,
    target: ["es2022"], plugins: [contents], metafile: true, logLevel: "warning",
});
for (const name of ["index.html", "playground.css"]) copyFileSync(own(name), join(out, name));
for (const name of ["theme.js", "icon.svg"]) copyFileSync(own("../site/theme/assets/" + name), join(out, name)); // the manual's
writeFileSync(join(out, "licences.txt"), licencesOf(Object.keys(metafile.inputs)));
