// A static server for tests, on any free port: node's own, of one folder.

import { createReadStream, statSync } from "node:fs";
import { createServer } from "node:http";
import { extname, join, normalize } from "node:path";

const KINDS = {
    ".html": "text/html; charset=utf-8", ".js": "text/javascript", ".css": "text/css", ".svg": "image/svg+xml",
    ".json": "application/json", ".wasm": "application/wasm", ".png": "image/png",
};

// { address, close }; the address ends with a slash.
export async function serve(folder) {
    const server = createServer((request, answer) => {
        const path = normalize(decodeURIComponent(new URL(request.url, "http://here").pathname));
        const file = join(folder, path.endsWith("/") ? path + "index.html" : path);
        if (!statSync(file, { throwIfNoEntry: false })?.isFile()) return answer.writeHead(404).end();
        answer.writeHead(200, { "Content-Type": KINDS[extname(file)] ?? "application/octet-stream" });
        createReadStream(file).pipe(answer);
    });
    await new Promise((done) => server.listen(0, "127.0.0.1", done));
    return {
        address: `http://127.0.0.1:${server.address().port}/`,
        close: () => { server.closeAllConnections?.(); server.close(); },
    };
}
