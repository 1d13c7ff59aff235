// What the user has written, kept in the browser between visits: the game as it stands, and the one before the last that
// was opened, so that opening one loses none.

const DATABASE = "camera-playground", STORE = "drafts", CURRENT = "current", BEFORE = "before";
export const QUIET_MILLISECONDS = 400; // after the last change, until it is stored

// A store is { get(name), put(name, game) }, both promises; get answers null for none.
export class Draft {
    #store;
    #told;
    #timer = null;
    #due = null;
    #writing = Promise.resolve();

    // told(line): what to tell the user when nothing can be kept; once until it works again.
    constructor(store, told) {
        this.#store = store;
        this.#told = told;
    }

    // The game that was edited last; null for none, or where nothing can be read.
    async last() {
        return this.#read(CURRENT);
    }

    async before() {
        return this.#read(BEFORE);
    }

    async #read(name) {
        try {
            return await this.#store.get(name);
        } catch {
            return null;
        }
    }

    // The game has changed; it is stored when changes rest.
    changed(game) {
        this.#due = game;
        clearTimeout(this.#timer);
        this.#timer = setTimeout(() => this.flush(), QUIET_MILLISECONDS);
    }

    // Another game takes the place of this one.
    async replaced(game, by) {
        await this.flush();
        await this.#put(BEFORE, game);
        await this.#put(CURRENT, by);
    }

    // Stores at once what is not yet stored: the page may go.
    flush() {
        clearTimeout(this.#timer);
        const due = this.#due;
        this.#due = null;
        return due === null ? this.#writing : this.#put(CURRENT, due);
    }

    #isFailing = false;

    // One write after the other, so that the last one stays. The content is taken now, not when its turn comes.
    #put(name, game) {
        const copy = { main: game.main, files: new Map(game.files) };
        this.#writing = this.#writing.then(() => this.#store.put(name, copy)).then(
            () => { this.#isFailing = false; },
            (error) => {
                if (!this.#isFailing)
                    this.#told(`the browser does not keep the text (${error.message}): download the game to keep it`);
                this.#isFailing = true;
            });
        return this.#writing;
    }
}

const asPromise = (request) => new Promise((done, failed) => {
    request.onsuccess = () => done(request.result);
    request.onerror = () => failed(request.error);
});

// In IndexedDB: pictures do not fit into localStorage.
export function databaseStore() {
    let opened = null;
    const database = () => {
        opened ??= new Promise((done, failed) => {
            const request = indexedDB.open(DATABASE, 1);
            request.onupgradeneeded = () => request.result.createObjectStore(STORE);
            request.onsuccess = () => done(request.result);
            request.onerror = () => failed(request.error);
        });
        return opened;
    };
    return {
        async get(name) {
            return (await asPromise((await database()).transaction(STORE).objectStore(STORE).get(name))) ?? null;
        },
        async put(name, game) {
            const transaction = (await database()).transaction(STORE, "readwrite");
            transaction.objectStore(STORE).put(game, name);
            await new Promise((done, failed) => {
                transaction.oncomplete = done;
                transaction.onerror = transaction.onabort = () => failed(transaction.error ?? new Error("refused"));
            });
        },
    };
}
