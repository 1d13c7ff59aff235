#!/usr/bin/env python3
"""Makes first inputs for the fuzz targets out of the tests and games: make_seeds.py FOLDER

RUNNER in the environment is the Runner's program. Each target gets a folder; ./fuzz --keep then takes into Fuzz/Corpus
what reaches something new.
"""

import base64
import os
import pathlib
import random
import re
import struct
import subprocess
import sys
import tempfile
import zlib

ROOT = pathlib.Path(__file__).resolve().parent.parent
RUNNER = pathlib.Path(os.environ["RUNNER"]).resolve()
OUT = pathlib.Path(sys.argv[1]).resolve()


def write(target, name, content):
    folder = OUT / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / ("seed-" + name)).write_bytes(content if isinstance(content, bytes) else content.encode())


def text_of(path):
    return (ROOT / path).read_text()


# ---- saved games and recordings: made by the Runner itself, from the games in Fuzz/Games ----

INPUT = """0 key space tap
1 mouse 10 20.5
2 button left down
2 wheel 1 -2
3 text ab
4 pad 0 on
5 pad 0 axis left_x 0.5
6 pad 0 button a tap
7 key a down
9 pad 0 off
"""


def run(folder, *arguments):
    subprocess.run([RUNNER, "--no-draw", "--quiet", "--out", folder / "out", *map(str, arguments)], check=True, cwd=folder)


def saved_games(folder):
    game = folder / "saved.lua"
    (folder / "tiles.png").write_bytes((ROOT / "Fuzz/Games/tiles.png").read_bytes())
    plain, later = text_of("Fuzz/Games/saved.lua"), text_of("Fuzz/Games/later.lua")
    for name, text in (("plain", plain), ("later", later + plain)):
        game.write_text(text)
        for frames in (1, 2, 40):
            file = folder / "state.sav"
            run(folder, game, "--frames", frames + 1, "--save-at", frames, file)
            for target in ("saved_game", "older_save"):
                write(target, f"{name}-{frames}", file.read_bytes())


def recordings(folder):
    game, file = folder / "recorded.lua", folder / "run.rec"
    game.write_text(text_of("Fuzz/Games/recorded.lua"))
    (folder / "input.txt").write_text(INPUT)
    for frames in (1, 12, 70):
        run(folder, game, "--frames", frames, "--input", "input.txt", "--record", file)
        write("recording", str(frames), file.read_bytes())


# ---- maps: the tests' town in all its encodings, and the game's ----

def raw_strings(path):
    return dict(re.findall(r'(\w+) = R"\((.*?)\)";', text_of(path), re.S))


def maps():
    town = raw_strings("Tests/Runner/World/Map_Town.h")
    cells = struct.pack("<6I", 1, 2, 2147483651, 0, 1610612740, 6)
    packed = base64.b64encode(zlib.compress(cells)).decode()
    encodings = {
        "csv": ('<data encoding="csv">1,2,2147483651,0,1610612740,6</data>', '"data":[1,2,2147483651,0,1610612740,6]'),
        "zlib": (f'<data encoding="base64" compression="zlib">{packed}</data>',
                 f'"encoding":"base64","compression":"zlib","data":"{packed}"'),
        "plain": (f'<data encoding="base64">{base64.b64encode(cells).decode()}</data>',
                  f'"encoding":"base64","data":"{base64.b64encode(cells).decode()}"'),
        "elements": ('<data><tile gid="1"/><tile gid="2"/><tile/><tile/><tile gid="4"/><tile gid="6"/></data>',
                     '"data":[1,2,3,0,4,6]'),
    }
    others = {name: text for name, text in town.items() if name not in ("TOWN_XML", "TOWN_JSON")}
    for name, (xml, json) in encodings.items():
        for kind, ending in (("XML", ("tmx", "tsx", "tx")), ("JSON", ("tmj", "tsj", "tj"))):
            text = f"@@ maps/town.{ending[0]}\n{town['TOWN_' + kind]}"
            for other, content in others.items():
                if other.endswith(kind):
                    path = "sets/things." + ending[1] if "THINGS" in other else "sets/barrel." + ending[2]
                    text += f"\n@@ {path}\n{content}"
            text = text.replace("@DATA@", xml).replace("@CELLS@", json).replace("@TYPE@", "type").replace("@VERSION@", "1.8")
            write("map", f"{kind}-{name}", text)
    features = text_of("Tests/Maps/features.tmx")
    if len(features) < 8000:
        write("map", "features", "@@ features.tmx\n" + features + "\n@@ tiles.tsx\n" + text_of("Games/town/tiles.tsx"))


# ---- pictures: every kind of PNG, small ----

def chunk(kind, content):
    return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))


def png(width, height, depth, colour, interlaced, extra=b""):
    samples = {0: 1, 2: 3, 3: 1, 4: 2, 6: 4}[colour]
    row = b"\x01" + bytes(range(1, 256)) * 4
    length = 1 + (width * samples * depth + 7) // 8
    rows = b"".join(row[:length] for _ in range(height * (2 if interlaced else 1)))
    head = struct.pack(">IIBBBBB", width, height, depth, colour, 0, 0, interlaced)
    palette = chunk(b"PLTE", bytes(range(48))) if colour == 3 else b""
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + palette + extra + chunk(b"IDAT", zlib.compress(rows)) +
            chunk(b"IEND", b""))


def pictures():
    for colour, depths in ((0, (1, 2, 4, 8, 16)), (2, (8, 16)), (3, (1, 2, 4, 8)), (4, (8, 16)), (6, (8, 16))):
        for depth in depths:
            for interlaced in (0, 1):
                write("picture", f"{colour}-{depth}-{interlaced}", png(9, 5, depth, colour, interlaced))
    write("picture", "transparent", png(9, 5, 8, 3, 0, chunk(b"tRNS", b"\0\x80\xff")))
    write("picture", "gamma", png(9, 5, 8, 2, 0, chunk(b"gAMA", struct.pack(">I", 45455))))


# ---- texts ----

def command_lines():
    said = subprocess.run([RUNNER, "--help"], check=True, capture_output=True, text=True).stdout
    options = re.findall(r"^ +(--[a-z-]+)(?: ([A-Z][A-Z=.,]*(?: [A-Z]+)*))?", said, re.M)
    words = {"FRAME FILE": "3\na.sav", "A B": "a.sav\nb.sav", "NAME=KEY,...": "menu=f1", "WIDTHxHEIGHT": "320x240"}
    for option, values in options:
        value = words.get(values, "7" if values in ("COUNT", "NUMBER", "MILLIONS", "MEGABYTES", "FRAMES") else "name")
        write("command_line", option.strip("-"), "game.lua\n" + option + ("\n" + value if values else ""))
    write("command_line", "values", "game.lua\n--replay\nr\n--compare-values\n0.border_x=200,1.x=-2.5e3")
    tokens = sorted({option for option, _ in options} | {"\\x0A", "game.lua", "320x240", "a.sav", "0.border_x=200", "="})
    dictionary = "# Written by Fuzz/make_seeds.py.\n" + "".join(f'"{token}"\n' for token in tokens)
    (ROOT / "Fuzz/Dictionaries/command_line.txt").write_text(dictionary)


def texts():
    write("text_files", "input", INPUT)
    write("text_files", "settings", 'settings 1\n"calm" = true\n"jump" = "@w"\n"seen" = -3\n"volume" = real 0.5\n')


# ---- decisions: a target that reads them turns any bytes into something ----

def decisions():
    source = random.Random(17)
    for target, length, count in (("camera_stream", 900, 2), ("built_ins", 400, 24), ("fast_paths", 300, 24),
                                  ("lua_program", 300, 24)):
        for number in range(count):
            write(target, f"random-{number}", bytes([number % 6]) + source.randbytes(length))
    record = b"".join(struct.pack("<f", 100 + 0.5 * i) for i in range(96)) + struct.pack("<9f", *range(9))
    camera = record + struct.pack("<6i", 100017, 0, 1, -1, 0, 1)
    stream = struct.pack("<i", 4) + b"".join(
        struct.pack("<i", 1) + struct.pack("<i", slot) + camera if slot != 1 else struct.pack("<i", 0) for slot in range(4))
    write("camera_stream", "three", b"\x02\x00" + stream)
    write("camera_stream", "refused", b"\x05\x03" + stream)


with tempfile.TemporaryDirectory() as temporary:
    saved_games(pathlib.Path(temporary))
    recordings(pathlib.Path(temporary))
maps()
pictures()
command_lines()
texts()
decisions()
