"""Writes PNG files with nothing but the standard library."""

import struct
import zlib


def _chunk(kind, body):
    return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))


def write_png(path, width, height, rgba):
    """rgba: width * height * 4 bytes, the top row first. The same picture gives the same file."""
    stride = width * 4
    rows = b"".join(b"\0" + rgba[top:top + stride] for top in range(0, height * stride, stride))
    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    with open(path, "wb") as file:
        file.write(b"\x89PNG\r\n\x1a\n" + _chunk(b"IHDR", header) + _chunk(b"IDAT", zlib.compress(rows, 9)) +
                   _chunk(b"IEND", b""))
