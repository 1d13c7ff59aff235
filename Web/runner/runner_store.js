// The save area between visits. IndexedDB, because it takes files of any size as bytes and tells when it is full;
// localStorage takes texts of a few megabytes, and the private file system is not in every browser.
import { listFiles, wrongPath, writeFiles } from "./runner_files.js";

const DATABASE = "camera-module-runner";
const FILES = "files";
const FOLDER = "/save";

export function memoryStore() {
    return { load: async () => new Map(), put: async () => {}, remove: async () => {} };
}

function openDatabase() {
    return new Promise((resolve, reject) => {
        if (typeof indexedDB === "undefined") return reject(new Error("this browser has no IndexedDB"));
        const request = indexedDB.open(DATABASE, 1);
        request.onupgradeneeded = () => request.result.createObjectStore(FILES);
        request.onsuccess = () => resolve(request.result);
        request.onerror = () => reject(request.error);
        request.onblocked = () => reject(new Error("another page holds an older version open"));
    });
}

// act: asks for what the transaction is to do, and answers its request.
async function transact(mode, act) {
    const database = await openDatabase();
    try {
        return await new Promise((resolve, reject) => {
            const transaction = database.transaction(FILES, mode);
            const request = act(transaction.objectStore(FILES));
            transaction.oncomplete = () => resolve(request.result);
            transaction.onabort = () => reject(transaction.error ?? new Error("the browser refused it"));
        });
    } finally {
        database.close();
    }
}

// The keys are pairs of area and name, so an area is a range of keys.
export function browserStore(area) {
    const range = () => IDBKeyRange.bound([area], [area, []]);
    return {
        async load() {
            const names = await transact("readonly", (files) => files.getAllKeys(range()));
            const contents = await transact("readonly", (files) => files.getAll(range()));
            return new Map(names.map((key, i) => [key[1], contents[i]]));
        },
        put: (name, content) => transact("readwrite", (files) => files.put(content, [area, name])),
        remove: (name) => transact("readwrite", (files) => files.delete([area, name])),
    };
}

// Keeps a store equal to the program's save area.
export class SaveArea {
    constructor(FS, store, tell, onSaved) {
        this.FS = FS;
        this.store = store;
        this.tell = tell; // one line about what could not be stored
        this.onSaved = onSaved;
        this.known = new Map(); // name -> what tells that the file is still the stored one
        this.work = Promise.resolve();
    }

    static stamp(node) {
        return `${node.id} ${node.timestamp} ${node.usedBytes}`;
    }

    // A store that cannot be read leaves the area empty: the game can be played, and says that nothing is kept.
    async load() {
        this.FS.mkdirTree(FOLDER);
        try {
            const files = await this.store.load();
            for (const name of files.keys()) if (wrongPath(name) !== "") files.delete(name);
            writeFiles(this.FS, FOLDER, files);
        } catch (error) {
            this.tell(`the saves cannot be read, so none are kept: ${error.message ?? error}`);
            this.store = memoryStore();
        }
        for (const [name, node] of this.files()) this.known.set(name, SaveArea.stamp(node));
    }

    files() {
        const files = listFiles(this.FS, FOLDER);
        for (const name of files.keys()) if (name.endsWith(".part")) files.delete(name);
        return files;
    }

    // Sends what has changed since the last look into the store; one after the other, in the order of the changes.
    look() {
        const files = this.files();
        for (const [name, node] of files) {
            const stamp = SaveArea.stamp(node);
            if (this.known.get(name) === stamp) continue;
            this.known.set(name, stamp);
            const content = this.read(name);
            this.enqueue(name, () => this.store.put(name, content));
        }
        for (const name of [...this.known.keys()])
            if (!files.has(name)) {
                this.known.delete(name);
                this.enqueue(name, () => this.store.remove(name));
            }
        return this.work;
    }

    enqueue(name, act) {
        this.work = this.work.then(act).then(
            () => this.onSaved(name),
            (error) => {
                const why = error?.name === "QuotaExceededError" ? "the browser's storage is full" : (error?.message ?? error);
                this.tell(`"${name}" is kept only until the page is closed: ${why}`);
            },
        );
    }

    read(name) {
        return this.FS.readFile(`${FOLDER}/${name}`).slice();
    }

    has(name) {
        return wrongPath(name) === "" && this.files().has(name);
    }

    write(name, content) {
        const why = wrongPath(name);
        if (why !== "") throw new Error(`${JSON.stringify(name)} is no name in the save area: ${why}`);
        writeFiles(this.FS, FOLDER, new Map([[name, content]]));
        this.look();
    }

    remove(name) {
        if (!this.has(name)) return;
        this.FS.unlink(`${FOLDER}/${name}`);
        this.look();
    }
}
