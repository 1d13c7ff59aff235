// Deflated data unpacked with a bound: a few bytes can claim to be any amount, so it stops where the bound is passed.

import { Inflate } from "fflate";

const PIECE = 4 * 1024; // of what is packed; unpacked at most a thousand times as much before the bound is looked at

// The unpacked bytes; null when the data is damaged, not whole, or more than `limit` bytes.
export function inflateWithin(packed, limit) {
    const pieces = [];
    let size = 0, isWhole = false;
    const inflate = new Inflate((piece, isLast) => {
        size += piece.length;
        if (size > limit) throw new RangeError("too much");
        pieces.push(piece);
        isWhole = isLast;
    });
    try {
        for (let at = 0; at === 0 || at < packed.length; at += PIECE)
            inflate.push(packed.subarray(at, at + PIECE), at + PIECE >= packed.length);
    } catch {
        return null;
    }
    return isWhole ? joined(pieces, size) : null;
}

function joined(pieces, size) {
    const all = new Uint8Array(size);
    let at = 0;
    for (const piece of pieces) {
        all.set(piece, at);
        at += piece.length;
    }
    return all;
}
