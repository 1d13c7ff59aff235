#!/usr/bin/env python3
"""Writes a map of 1,000 x 1,000 tiles with six layers into a folder, in each format and encoding, and for each a game
that plays it: csv_tmx.lua, csv_tmj.lua, zlib_tmx.lua and so on. Takes the program zstd.

    make_large_map.py FOLDER
"""

import base64
import gzip
import json
import os
import random
import struct
import subprocess
import sys
import zlib

from png import write_png

SIDE, LAYERS, TILE = 1000, 6, 16
PICTURE = 512  # 1,024 tiles
GAME = 'room_from_map("{file}", {{ views = {{ [0] = {{ w = 640, h = 360 }} }} }})\n'


def layer_cells(numbers):
    """Runs of one to four tiles, a twentieth of them mirrored, some places empty."""
    cells = []
    while len(cells) < SIDE * SIDE:
        tile = numbers.randint(0, 1024)
        flag = 0x80000000 if tile and numbers.random() < 0.05 else 0
        cells += [tile | flag] * numbers.randint(1, 4)
    return cells[: SIDE * SIDE]


def zstd(raw):
    return subprocess.run(["zstd", "-q", "-c"], input=raw, stdout=subprocess.PIPE, check=True).stdout


PACKERS = {"base64": bytes, "zlib": zlib.compress, "gzip": gzip.compress, "zstd": zstd}


def packed(cells, encoding):
    raw = struct.pack(f"<{len(cells)}I", *cells)
    return base64.b64encode(PACKERS[encoding](raw)).decode()


def attributes(encoding):
    if encoding == "csv":
        return {"encoding": "csv"}
    return {"encoding": "base64", "compression": "" if encoding == "base64" else encoding}


def tmx(layers, encoding):
    size = f'width="{SIDE}" height="{SIDE}"'
    tile = f'tilewidth="{TILE}" tileheight="{TILE}"'
    text = f'<?xml version="1.0" encoding="UTF-8"?>\n<map version="1.8" orientation="orthogonal" {size} {tile}>\n'
    text += f'<tileset firstgid="1" name="t" {tile}><image source="t.png"/></tileset>\n'
    how = " ".join(f'{name}="{value}"' for name, value in attributes(encoding).items() if value)
    for number, cells in enumerate(layers):
        data = ",".join(map(str, cells)) if encoding == "csv" else packed(cells, encoding)
        text += f'<layer id="{number + 1}" name="l{number}" {size}><data {how}>{data}</data></layer>\n'
    return text + "</map>\n"


def tmj(layers, encoding):
    tile = {"tilewidth": TILE, "tileheight": TILE}
    size = {"width": SIDE, "height": SIDE}
    written = []
    for number, cells in enumerate(layers):
        data = cells if encoding == "csv" else packed(cells, encoding)
        written.append({"type": "tilelayer", "id": number + 1, "name": f"l{number}", "data": data, **size,
                        **attributes(encoding)})
    tileset = {"firstgid": 1, "name": "t", "image": "t.png", **tile}
    return json.dumps({"type": "map", "version": "1.8", **size, **tile, "tilesets": [tileset], "layers": written})


def make(folder):
    os.makedirs(folder, exist_ok=True)
    numbers = random.Random(1)
    layers = [layer_cells(numbers) for _ in range(LAYERS)]
    pixels = bytes(channel for _ in range(PICTURE * PICTURE) for channel in (90, 140, 70, 255))
    write_png(os.path.join(folder, "t.png"), PICTURE, PICTURE, pixels)
    for encoding in ["csv", *PACKERS]:
        for kind, write in (("tmx", tmx), ("tmj", tmj)):
            name = f"{encoding}.{kind}"
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write(write(layers, encoding))
            with open(os.path.join(folder, f"{encoding}_{kind}.lua"), "w", encoding="utf-8") as file:
                file.write(GAME.format(file=name))


if __name__ == "__main__":
    make(sys.argv[1])
