// The page: what its buttons do, and what it shows of the game that runs.

import annotations from "playground:annotations";
import start from "playground:start";
import { archiveName, packGame, unpackGame } from "./archive.js";
import { Controls } from "./controls.js";
import { button, download, element } from "./dom.js";
import { databaseStore, Draft } from "./draft.js";
import { Editor } from "./editor.js";
import { exampleNames, loadExample } from "./examples.js";
import { FilesView } from "./files_view.js";
import { contentOf, GameFault, isScript, LIMITS, pathFault, printable } from "./game_files.js";
import { Messages } from "./messages.js";
import { askText, askWhether, offerText } from "./questions.js";
import { PanelView } from "./panel_view.js";
import { SavesView } from "./saves_view.js";
import { Session } from "./session.js";
import { gameOfLink, linkOf, LINK_LIMIT } from "./share.js";

const at = (id) => document.getElementById(id);
const messages = new Messages({ log: at("log"), failure: at("failure"), status: at("status") }, showLine);
const draft = new Draft(databaseStore(), (line) => messages.tell(line, true));
let game = { main: start.main, files: new Map([[start.main, start.text]]) };
let recording = null; // that came with the game's archive

const editor = new Editor(at("editor"), annotations, textChanged, () => run());
const files = new FilesView({ tabs: at("tabs"), editor: at("editor"), picture: at("picture") }, editor);
const session = new Session(at("stage"), {
    text: (line, kind) => messages.add(line, kind),
    failure: failed,
    frame: () => controls.show(),
    ended: () => controls.show(),
    change: changed,
    saved: () => saves.show(),
});
const controls = new Controls({ bar: at("controls"), timeline: at("timeline"), frame: at("frame") }, session, guarded, showPanel);
const panel = new PanelView(at("panel"), {
    select: (camera) => { selected = camera; showPanel(); },
    change: (camera, field, value) => session.runner?.setValue(camera, field, value) ?? false,
    copy: (lua) => offerText("Lua that makes this camera", lua),
});
const saves = new SavesView(at("saves"), session, guarded, {
    goOn: (content) => run({ load: content }), replay, ofArchive: () => recording,
});
let selected; // camera of the panel; undefined until one is chosen

// ---- running ----

// Runs what may fail, and tells a fault in the one line that it is.
async function guarded(work) {
    try {
        return await work();
    } catch (error) {
        messages.tell(error instanceof Error ? error.message : String(error), true);
        return undefined;
    }
}

function run(more = {}) {
    return guarded(async () => {
        clearFailure();
        await session.run(game, more);
        saves.show();
    });
}

function reload() {
    return guarded(async () => {
        clearFailure();
        await session.reload(game);
    });
}

function replay(content) {
    return guarded(async () => {
        clearFailure();
        try {
            await session.run(game, { replay: content });
        } catch (error) {
            const isOfAnother = /--anyway/.test(error.message);
            if (!isOfAnother) throw error;
            if (!await askWhether("Replay", error.message, "Replay it anyway")) return;
            await session.run(game, { replay: content, anyway: true });
        }
    });
}

function clearFailure() {
    messages.clear();
    editor.mark(null);
}

function failed(failure) {
    messages.fail(failure);
    if (typeof game.files.get(failure.file) === "string" && failure.line > 0) {
        files.show(failure.file);
        editor.mark({ line: failure.line, message: failure.message });
    }
    controls.show();
}

function changed() {
    if (session.dead !== "") messages.tell(`The game's program has ended: ${session.dead}. Run starts another one`, true);
    controls.show();
    showPanel();
}

function showLine(file, line) {
    if (typeof game.files.get(file) !== "string") return;
    files.show(file);
    editor.goTo(line);
}

function showPanel() {
    if (at("panel-box").open && session.runner !== null) panel.show(session.runner.panel(selected));
}

// ---- the game's files ----

function textChanged(path, text) {
    game.files.set(path, text);
    draft.changed(game);
}

// Another game takes the place of this one, which is kept.
async function open(other, told) {
    const before = game;
    game = { main: other.main, files: other.files };
    recording = other.recording ?? null;
    selected = undefined;
    files.setGame(game);
    await draft.replaced(before, game);
    messages.tell(told, false);
    await run();
}

function filesChanged() {
    files.setGame(game);
    draft.changed(game);
}

// A path for a file of the game; null when the user does not want one after all.
async function askPath(title, value) {
    const path = await askText(title, "Name, with folders before it (\"parts/hero.lua\")", value);
    if (path === null || path === value) return null;
    const isTaken = game.files.has(path) || [...game.files.keys()].some((other) => other.startsWith(path + "/") || path.startsWith(other + "/"));
    const fault = isTaken ? `${printable(path)} is there already` : pathFault(path);
    if (fault === "") return path;
    messages.tell(fault, true);
    return null;
}

async function addFile() {
    const path = await askPath("New file", "part.lua");
    if (path === null) return;
    game.files.set(path, "");
    filesChanged();
    files.show(path);
    editor.focus();
}

async function renameFile() {
    const from = files.shown;
    const path = await askPath("Rename", from);
    if (path === null) return;
    if (from === game.main && !isScript(path)) return messages.tell("the file that starts the game is a Lua file", true);
    game.files.set(path, game.files.get(from));
    game.files.delete(from);
    if (from === game.main) game.main = path;
    editor.forget(from);
    filesChanged();
    files.show(path);
}

async function removeFile() {
    const path = files.shown;
    if (path === game.main) return messages.tell(`${path} starts the game and stays`, true);
    if (!await askWhether("Delete", `Delete ${path}?`, "Delete it")) return;
    game.files.delete(path);
    editor.forget(path);
    filesChanged();
}

// ---- from outside ----

async function openFile(file) {
    if (file.size > LIMITS.file)
        throw new GameFault(`${printable(file.name)} has more than ${LIMITS.file / 1024 / 1024} MB: this is too much for a game`);
    const bytes = new Uint8Array(await file.arrayBuffer());
    if (/\.zip$/i.test(file.name)) {
        try {
            return await open(unpackGame(bytes), `${printable(file.name)} is open`);
        } catch (error) {
            throw error instanceof GameFault ? new GameFault(`${printable(file.name)}: ${error.message}`) : error;
        }
    }
    if (/\.rec$/i.test(file.name)) return replay(bytes);
    if (/\.sav$/i.test(file.name)) return saves.take(file.name, bytes);
    return takeFile(file.name, bytes);
}

// A file becomes one of the game, beside the file that starts it.
function takeFile(name, bytes) {
    const fault = pathFault(name);
    if (fault !== "") throw new GameFault(fault);
    if (!game.files.has(name) && game.files.size >= LIMITS.files) throw new GameFault(`a game has at most ${LIMITS.files} files`);
    game.files.set(name, contentOf(name, bytes));
    editor.forget(name);
    filesChanged();
    files.show(name);
    messages.tell(`${printable(name)} is a file of the game now`, false);
}

const openFiles = (list) => guarded(async () => { for (const file of list) await openFile(file); });

async function openExample(name) {
    await open(await loadExample(name), `The example ${printable(name)} is open. "Game before" brings yours back`);
}

// Once it is open, the game belongs to the user: a page that is loaded again shows what it was changed into, which is kept.
function forgetAddress() {
    history.replaceState(null, "", location.pathname + location.search);
}

// What the address names: a game in a link, or an example. False: neither.
async function openAddress() {
    const address = location.hash;
    forgetAddress();
    const linked = gameOfLink(address);
    if (linked !== null) await open(linked, 'The game of the link is open. "Game before" brings yours back');
    const example = /^#example=([\w.-]+)$/.exec(address);
    if (example !== null) await openExample(example[1]);
    return linked !== null || example !== null;
}

async function openBefore() {
    const before = await draft.before();
    if (before === null) messages.tell("there is no game before this one", true);
    else await open(before, "The game before is open again");
}

// ---- handing it on ----

function share() {
    const link = linkOf(game);
    if (link !== null)
        return offerText("Link to this game", location.origin + location.pathname + location.search + "#" + link);
    messages.tell(`the game is too large for a link of ${LINK_LIMIT} characters: here it is as a file`, false);
    return save();
}

function save() {
    const played = session.runner?.frames > 0 ? session.runner.recording() : null;
    download(archiveName(game), packGame(game, played));
}

// ---- the page ----

function makeActions() {
    const chooser = element("input", { type: "file", multiple: true, className: "hidden", id: "chooser", tabIndex: -1, "aria-label": "Files to open" });
    chooser.onchange = () => openFiles([...chooser.files]).then(() => { chooser.value = ""; });
    const action = (text, work, more) => button(text, () => { messages.tell("", false); return guarded(work); }, more);
    at("actions").append(
        action("Run", () => run(), { className: "main", title: "From the start (Ctrl+Enter)" }),
        action("Apply changes", reload, { title: "Starts anew from the changed text, up to the same frame" }),
        action("Share", share), action("Download", save, { title: "A zip archive that the native Runner plays" }),
        action("Open files", () => chooser.click()), chooser, action("Game before", openBefore));
    at("file").before(element("p", { className: "actions" }, action("New file", addFile), action("Rename", renameFile), action("Delete", removeFile)));
}

function takeDrops() {
    addEventListener("dragover", (event) => { event.preventDefault(); document.body.classList.add("dropping"); });
    addEventListener("dragleave", (event) => { if (event.relatedTarget === null) document.body.classList.remove("dropping"); });
    addEventListener("drop", (event) => {
        event.preventDefault();
        document.body.classList.remove("dropping");
        openFiles([...event.dataTransfer.files]);
    });
}

async function listExamples() {
    const names = await exampleNames();
    const chooser = at("example");
    chooser.append(...names.map((name) => element("option", { value: name }, name)));
    chooser.onchange = () => {
        const name = chooser.value;
        chooser.value = "";
        if (name !== "") guarded(() => openExample(name));
    };
}

async function begin() {
    makeActions();
    takeDrops();
    at("panel-box").ontoggle = () => { session.inspect(at("panel-box").open); showPanel(); };
    addEventListener("hashchange", () => guarded(openAddress));
    addEventListener("pagehide", () => draft.flush());
    document.addEventListener("visibilitychange", () => draft.flush());
    game = await draft.last() ?? game;
    files.setGame(game);
    guarded(listExamples);
    if (!await guarded(openAddress)) await run();
    document.body.dataset.ready = "yes"; // for who waits for it
}

begin();
