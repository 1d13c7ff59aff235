// Games as zip archives, the ones that `runner GAME.zip` plays. They are written by a library, and read by our own walk
// over the directory: what is refused, and in which words, is the same as in the native Runner.

import { strToU8, zipSync } from "fflate";
import { crc32 } from "./crc32.js";
import { GameCollector, GameFault, gameOf, LIMITS, printable } from "./game_files.js";
import { inflateWithin } from "./inflate.js";

const FILE_HEADER = 0x04034b50, RECORD = 0x02014b50, END_RECORD = 0x06054b50;
const FILE_HEADER_SIZE = 30, RECORD_SIZE = 46, END_RECORD_SIZE = 22, COMMENT_MAX = 0xffff;
const STORED = 0, DEFLATED = 8, MADE_BY_UNIX = 3;
const KIND = 0o170000, ORDINARY = 0o100000, FOLDER = 0o040000;
const RECORDING = "recording.rec";
const DATE = "2020-01-01T00:00:00"; // of every file: the same game gives the same archive

// The archive of a game: a folder with the name of the file that starts it, which tells the Runner where to start.
// recording: bytes, or null for none.
export function packGame(game, recording = null) {
    const folder = game.main.replace(/\.lua$/i, "").replace(/.*\//, "");
    const entries = {};
    for (const [path, content] of game.files)
        entries[`${folder}/${path}`] = typeof content === "string" ? strToU8(content) : content;
    if (recording !== null) entries[`${folder}/${RECORDING}`] = recording;
    return zipSync(entries, { level: 9, mtime: DATE, os: MADE_BY_UNIX, attrs: 0o100644 << 16 });
}

export const archiveName = (game) => game.main.replace(/\.lua$/i, "").replace(/.*\//, "") + ".zip";

// The game in an archive, and its recording, null for none. Throws a GameFault of one line.
export function unpackGame(bytes) {
    const game = gameOf(readZip(bytes));
    const recording = game.files.get(RECORDING) ?? null;
    game.files.delete(RECORDING);
    return { ...game, recording };
}

// All files of an archive by name. Throws a GameFault of one line.
export function readZip(bytes) {
    const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
    const end = endOf(view);
    const count = view.getUint16(end + 10, true);
    let place = view.getUint32(end + 16, true);
    const isInParts = view.getUint16(end + 4, true) !== 0 || view.getUint16(end + 6, true) !== 0 ||
        view.getUint16(end + 8, true) !== count;
    if (isInParts || place > end || view.getUint32(end + 12, true) !== end - place) throw new GameFault(DAMAGED);
    if (count > LIMITS.files) throw new GameFault(`a game has at most ${LIMITS.files} files, and it holds ${count}`);
    const archive = { bytes, view, directory: place, end, files: new GameCollector() };
    for (let i = 0; i < count; ++i) place = readRecord(archive, place);
    if (place !== end) throw new GameFault(DAMAGED);
    return archive.files.files();
}

const DAMAGED = "its directory is damaged";

// A comment of any content may follow the end record, so the last one counts whose comment ends with the archive.
function endOf(view) {
    const size = view.byteLength;
    for (let end = size - END_RECORD_SIZE; end >= Math.max(0, size - END_RECORD_SIZE - COMMENT_MAX); --end)
        if (view.getUint32(end, true) === END_RECORD && end + END_RECORD_SIZE + view.getUint16(end + 20, true) === size)
            return end;
    throw new GameFault("this is no zip archive, or its end is missing");
}

// Takes the file of the record, and answers where the next record is.
function readRecord(archive, place) {
    const { bytes, view, end } = archive;
    if (end - place < RECORD_SIZE || view.getUint32(place, true) !== RECORD) throw new GameFault(DAMAGED);
    const nameSize = view.getUint16(place + 28, true);
    const size = RECORD_SIZE + nameSize + view.getUint16(place + 30, true) + view.getUint16(place + 32, true);
    if (size > end - place) throw new GameFault(DAMAGED);
    take(archive, {
        name: textOf(bytes.subarray(place + RECORD_SIZE, place + RECORD_SIZE + nameSize)),
        nameSize,
        flags: view.getUint16(place + 8, true),
        method: view.getUint16(place + 10, true),
        checksum: view.getUint32(place + 16, true),
        packedSize: view.getUint32(place + 20, true),
        size: view.getUint32(place + 24, true),
        mode: view.getUint8(place + 5) === MADE_BY_UNIX ? view.getUint16(place + 40, true) : 0,
        header: view.getUint32(place + 42, true),
    });
    return place + size;
}

const textOf = (bytes) => new TextDecoder("utf-8").decode(bytes);

function take(archive, record) {
    const isFolder = record.name.endsWith("/");
    const kind = record.mode & KIND;
    const refuse = (why) => { throw new GameFault(`${printable(record.name)}: ${why}`); };
    if (kind !== 0 && kind !== (isFolder ? FOLDER : ORDINARY))
        refuse("this is a link or a device: put the file itself into the archive");
    if ((record.flags & 1) !== 0) refuse("it is encrypted: pack the game without a password");
    if (record.method !== STORED && record.method !== DEFLATED)
        refuse('it is packed in a way that is not read: pack it with "deflate"');
    if (isFolder) return archive.files.check(record.name.slice(0, -1), 0);
    archive.files.check(record.name, record.size);
    const content = unpack(archive, record);
    if (content === null || content.length !== record.size || crc32(content) !== record.checksum)
        refuse("it is damaged");
    archive.files.add(record.name, content);
}

// The header repeats what the record says, but for its own length; only that is taken from it.
function unpack({ bytes, view, directory }, record) {
    if (record.header + FILE_HEADER_SIZE > directory || view.getUint32(record.header, true) !== FILE_HEADER) return null;
    const nameSize = view.getUint16(record.header + 26, true);
    const name = record.header + FILE_HEADER_SIZE;
    const data = name + nameSize + view.getUint16(record.header + 28, true);
    const packed = bytes.subarray(data, data + record.packedSize);
    if (data + record.packedSize > directory || textOf(bytes.subarray(name, name + nameSize)) !== record.name)
        return null;
    return record.method === STORED ? packed.slice() : inflateWithin(packed, record.size);
}
