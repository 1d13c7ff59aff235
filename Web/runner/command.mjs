// The Runner's command line in Node: node command.mjs GAME OPTION..., from the project's root. It plays without
// drawing. Paths are relative; files that are named there go into the program's memory, and what it writes comes back.
import { existsSync, mkdirSync, readFileSync, readdirSync, statSync, writeFileSync } from "node:fs";
import { dirname, join } from "node:path";
import { runCommand } from "./runner.js";

const args = process.argv.slice(2);
const files = new Map();

function add(path) {
    if (statSync(path).isDirectory()) readdirSync(path).forEach((name) => add(join(path, name)));
    else files.set(path, readFileSync(path));
}

for (const path of args.filter((arg) => arg.includes("/"))) {
    if (path.endsWith(".lua")) add(dirname(path)); // a game's files stand beside its main one
    else if (existsSync(path) && statSync(path).isFile()) add(path);
    files.set(join(dirname(path), ".folder"), ""); // what is written there finds it
}
const run = await runCommand({ files, args });
for (const [path, content] of run.written) {
    mkdirSync(dirname(path), { recursive: true });
    writeFileSync(path, content);
}
process.stdout.write(run.out);
process.stderr.write(run.err);
process.exitCode = run.status;
