// Writes the camera kit as a module: node write_kit.mjs FOLDER FILE
import { readFileSync, readdirSync, writeFileSync } from "node:fs";

const [folder, file] = process.argv.slice(2);
const names = readdirSync(folder).filter((name) => name.endsWith(".lua")).sort();
const parts = names.map((name) => `    ${JSON.stringify(name)}: ${JSON.stringify(readFileSync(`${folder}/${name}`, "utf8"))},\n`);
writeFileSync(file, `// The camera kit, by file.\nexport const kit = {\n${parts.join("")}};\n`);
