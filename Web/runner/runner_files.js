// The files of a game and of its save area, in the program's memory.

const MOST_FILES = 4096;
const MOST_BYTES = 256 * 1024 * 1024;
const LONGEST_PATH = 1024;

const encoder = new TextEncoder();

export function toBytes(content) {
    return typeof content === "string" ? encoder.encode(content) : content;
}

// Why a path is no name of a file in a folder; empty when it is one.
export function wrongPath(path) {
    if (typeof path !== "string" || path === "") return "the name is empty";
    if (path.length > LONGEST_PATH) return "the name is too long";
    // eslint-disable-next-line no-control-regex
    if (/[\u0000-\u001f\u007f\\]/.test(path)) return "the name has a control character or a backslash in it";
    if (path.startsWith("/") || /^[A-Za-z]:/.test(path)) return "the name is an absolute path";
    const parts = path.split("/");
    if (parts.includes("..") || parts.includes(".")) return "the name has a \"..\" or \".\" in it";
    return parts.includes("") ? "the name is that of a folder" : "";
}

function refuse(path, why) {
    throw new Error(`the file ${JSON.stringify(String(path).slice(0, 80))} is refused: ${why}`);
}

// A copy with bytes, checked. A name that is a file and a folder at once is refused.
export function checkedFiles(files) {
    const checked = new Map();
    let bytes = 0;
    if (files.size > MOST_FILES) throw new Error(`a game has at most ${MOST_FILES} files, and these are ${files.size}`);
    for (const [path, content] of files) {
        const why = wrongPath(path);
        if (why !== "") refuse(path, why);
        const content8 = toBytes(content);
        if (!(content8 instanceof Uint8Array)) refuse(path, "its content is neither a text nor a Uint8Array");
        bytes += content8.length;
        checked.set(path, content8);
    }
    if (bytes > MOST_BYTES) throw new Error(`a game has at most ${MOST_BYTES >> 20} MB of files, and these have more`);
    for (const path of checked.keys())
        for (let slash = path.indexOf("/"); slash > 0; slash = path.indexOf("/", slash + 1))
            if (checked.has(path.slice(0, slash))) refuse(path, `${JSON.stringify(path.slice(0, slash))} is a file`);
    return checked;
}

export function writeFiles(FS, folder, files) {
    FS.mkdirTree(folder);
    for (const [path, content] of files) {
        const whole = `${folder}/${path}`;
        FS.mkdirTree(whole.slice(0, whole.lastIndexOf("/")));
        FS.writeFile(whole, content);
    }
}

// The files below a folder: path -> node of the file system.
export function listFiles(FS, folder, prefix = "", found = new Map()) {
    const node = FS.lookupPath(folder).node;
    for (const name of Object.keys(node.contents).sort()) {
        const child = node.contents[name];
        if (FS.isDir(child.mode)) listFiles(FS, `${folder}/${name}`, `${prefix}${name}/`, found);
        else if (FS.isFile(child.mode)) found.set(prefix + name, child);
    }
    return found;
}

// Makes a folder hold these files and no others.
export function replaceFiles(FS, folder, files) {
    for (const path of listFiles(FS, folder).keys()) if (!files.has(path)) FS.unlink(`${folder}/${path}`);
    writeFiles(FS, folder, files);
}
