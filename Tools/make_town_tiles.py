#!/usr/bin/env python3
"""Draws Games/town/tiles.png, notice.png, people.png and clouds.png: what the map Games/town/town.tmx is made of.

Tiles are 16 x 16 pixels, 8 to a row, with a margin and a spacing of one pixel. TILES names them in their order.
"""

import os
import random

from canvas import Canvas, mix, rgb

TILE, COLUMNS = 16, 8

TILES = ["grass", "tufts", "flowers", "meadow", "dirt", "cobble", "cobble_worn", "sand",
         "water_1", "water_2", "water_3", "water_4", "shore", "bridge", "fence", "sign",
         "wall", "window", "door", "wall_edge", "lamp_foot", "lamp_head", "barrel", "stall",
         "roof_edge", "roof", "ridge_edge", "ridge", "blue_edge", "blue", "blue_ridge_edge", "blue_ridge",
         "trunk", "bush", "stump", "rock", "crown_low", "crown_high", "fountain_low", "fountain_high"]

GRASS, GRASS_DARK, GRASS_LIGHT = rgb("5f9e4a"), rgb("4c8640"), rgb("7cb95c")
DIRT, STONE, STONE_DARK, MORTAR = rgb("b08a5a"), rgb("a8a496"), rgb("8b877c"), rgb("6f6b63")
WATER, WATER_LIGHT, WATER_DARK = rgb("3f86b8"), rgb("7cb8d8"), rgb("326f9e")
WOOD, WOOD_DARK, WOOD_LIGHT = rgb("8a5a34"), rgb("5e3b22"), rgb("b37a48")
PLASTER, PLASTER_DARK = rgb("e6d8b8"), rgb("c4b08a")
RED, RED_DARK, RED_LIGHT = rgb("b8503c"), rgb("8c382c"), rgb("d8785c")
BLUE, BLUE_DARK, BLUE_LIGHT = rgb("4c6a9a"), rgb("364e78"), rgb("7490bc")
LEAF, LEAF_DARK, LEAF_LIGHT = rgb("3f7a3a"), rgb("2c5a2e"), rgb("62a04c")
GLOW, NIGHT = rgb("ffe49a"), rgb("2e3a52")


def speckled(base, colours, count, seed):
    tile, dice = Canvas(TILE, TILE, base), random.Random(seed)
    for _ in range(count):
        tile.set(dice.randrange(TILE), dice.randrange(TILE), dice.choice(colours))
    return tile


def grass(seed=1):
    return speckled(GRASS, [GRASS_DARK, GRASS_LIGHT], 22, seed)


def tufts():
    tile = grass(2)
    for x, y in ((3, 4), (11, 6), (6, 12)):
        for dx, dy in ((0, 0), (-1, -1), (1, -1), (0, -2)):
            tile.set(x + dx, y + dy, GRASS_DARK if dy == 0 else GRASS_LIGHT)
    return tile


def flowers():
    tile = grass(3)
    for x, y, colour in ((3, 3, "f0e060"), (11, 5, "e88ab0"), (6, 11, "f4f4f4"), (13, 13, "f0e060")):
        for dx, dy in ((0, -1), (-1, 0), (1, 0), (0, 1)):
            tile.set(x + dx, y + dy, rgb(colour))
        tile.set(x, y, rgb("c88a30"))
    return tile


def cobble(worn):
    tile, dice = Canvas(TILE, TILE, MORTAR), random.Random(7 + worn)
    for row in range(4):
        for column in range(-1, 4):
            left, shade = column * 5 + (row % 2) * 2, dice.choice([STONE, STONE_DARK, mix(STONE, STONE_DARK, 0.5)])
            tile.fill(left, row * 4, 4, 3, shade)
            tile.set(left, row * 4, mix(shade, (255, 255, 255), 0.2))
    if worn:
        for x, y in ((4, 5), (9, 10), (13, 2)):
            tile.set(x, y, GRASS_LIGHT)
    return tile


def water(phase):
    tile = Canvas(TILE, TILE, WATER)
    for row, start in ((2, 1), (6, 9), (10, 4), (14, 12)):
        for x in range(5):
            tile.set((start + x + phase * 4) % TILE, row, WATER_LIGHT)
            tile.set((start + x + 1 + phase * 4) % TILE, row + 1, WATER_DARK)
    return tile


def shore():
    """The grass above water: its lower edge."""
    tile = Canvas(TILE, TILE)
    for x in range(TILE):
        depth = (4, 5, 5, 4, 3, 4, 5, 4)[x % 8]
        for y in range(depth):
            tile.set(x, y, GRASS if y < depth - 2 else rgb("4a6b3a"))
        tile.set(x, depth, (50, 80, 60, 120))
    return tile


def planks(upright):
    tile = Canvas(TILE, TILE, WOOD)
    for i in range(0, TILE, 4):
        for j in range(TILE):
            tile.set(*((i, j) if upright else (j, i)), WOOD_DARK)
            tile.set(*((i + 1, j) if upright else (j, i + 1)), WOOD_LIGHT)
    return tile


def fence():
    tile = Canvas(TILE, TILE)
    for x in (2, 10):
        tile.fill(x, 4, 3, 10, WOOD)
        tile.fill(x, 4, 1, 10, WOOD_LIGHT)
    tile.fill(0, 6, TILE, 2, WOOD_LIGHT)
    tile.fill(0, 10, TILE, 2, WOOD)
    return tile


def sign():
    tile = Canvas(TILE, TILE)
    tile.fill(7, 8, 2, 8, WOOD_DARK)
    tile.fill(2, 2, 12, 7, WOOD_LIGHT)
    tile.fill(3, 4, 9, 1, WOOD_DARK)
    tile.fill(3, 6, 7, 1, WOOD_DARK)
    tile.outline((40, 26, 18))
    return tile


def wall(kind):
    tile = speckled(PLASTER, [PLASTER_DARK], 8, 11)
    tile.fill(0, 14, TILE, 2, STONE_DARK)
    if kind == "edge":
        tile.fill(0, 0, 3, TILE, WOOD)
        tile.fill(0, 0, 1, TILE, WOOD_DARK)
    elif kind == "window":
        tile.fill(3, 3, 10, 9, WOOD_DARK)
        tile.fill(4, 4, 8, 7, NIGHT)
        tile.fill(4, 4, 4, 3, rgb("6a86b0"))
        tile.fill(7, 4, 2, 7, WOOD)
        tile.fill(3, 12, 10, 2, rgb("c8505c"))
    elif kind == "door":
        tile.fill(3, 1, 10, 15, WOOD_DARK)
        tile.fill(4, 2, 8, 14, WOOD)
        tile.fill(6, 2, 1, 14, WOOD_DARK)
        tile.fill(9, 2, 1, 14, WOOD_DARK)
        tile.set(10, 9, GLOW)
    return tile


def roof(base, dark, light, is_ridge, is_edge):
    tile = Canvas(TILE, TILE, base)
    for row in range(4):
        for x in range(TILE):
            tile.set(x, row * 4 + 3, dark)
            if (x + row * 2) % 4 == 0:
                tile.fill(x, row * 4, 1, 3, mix(base, dark, 0.6))
            elif (x + row * 2) % 4 == 1:
                tile.set(x, row * 4, light)
    if is_ridge:
        tile.fill(0, 0, TILE, 3, light)
        tile.fill(0, 3, TILE, 1, dark)
    if is_edge:
        for y in range(TILE):
            for x in range(2):
                tile.set(x, y, dark if x == 1 else (0, 0, 0, 0))
    return tile


def lamp(is_head):
    tile = Canvas(TILE, TILE)
    if is_head:
        tile.fill(5, 5, 6, 8, rgb("3a3f46"))
        tile.fill(6, 6, 4, 6, GLOW)
        tile.fill(6, 3, 4, 2, rgb("3a3f46"))
        tile.fill(7, 13, 2, 3, rgb("3a3f46"))
    else:
        tile.fill(7, 0, 2, 13, rgb("3a3f46"))
        tile.fill(5, 12, 6, 3, rgb("2a2e34"))
    return tile


def ball(colours, left, top, width, height, seed):
    """A round thing, lit from the top left."""
    dark, base, light = colours
    tile, dice = Canvas(TILE, TILE), random.Random(seed)
    for y in range(TILE):
        for x in range(TILE):
            u, v = (x + 0.5 - left) / width * 2 - 1, (y + 0.5 - top) / height * 2 - 1
            if u * u + v * v <= 1:
                side = u + v + dice.uniform(-0.35, 0.35)
                tile.set(x, y, light if side < -0.5 else dark if side > 0.6 else base)
    return tile


def barrel():
    tile = ball((WOOD_DARK, WOOD, WOOD_LIGHT), 3, 2, 10, 13, 5)
    tile.fill(3, 5, 10, 1, rgb("555a60"))
    tile.fill(3, 11, 10, 1, rgb("555a60"))
    return tile


def stall():
    tile = planks(False)
    for x in range(0, TILE, 4):
        tile.fill(x, 0, 2, 6, rgb("e8e4da"))
        tile.fill(x + 2, 0, 2, 6, RED)
    for x, colour in ((2, "e0a030"), (6, "d05040"), (10, "70a840"), (13, "e0a030")):
        tile.fill(x, 9, 2, 2, rgb(colour))
    return tile


def trunk():
    tile = Canvas(TILE, TILE)
    tile.fill(5, 0, 6, 14, WOOD)
    tile.fill(5, 0, 2, 14, WOOD_LIGHT)
    tile.fill(9, 0, 2, 14, WOOD_DARK)
    tile.fill(3, 13, 10, 2, WOOD_DARK)
    return tile


def fountain(is_high):
    tile = Canvas(TILE, TILE)
    if is_high:
        for x, y in ((7, 6), (8, 5), (6, 8), (9, 8), (4, 10), (11, 10), (3, 13), (12, 13), (7, 3)):
            tile.fill(x, y, 1, 2, WATER_LIGHT)
        tile.fill(7, 8, 2, 8, STONE)
        return tile
    tile.paste(ball((STONE_DARK, STONE, rgb("c8c4b6")), 0, 2, 16, 13, 9), 0, 0)
    tile.paste(ball((WATER, WATER, WATER_LIGHT), 2, 3, 12, 8, 9), 0, 0)
    tile.fill(7, 0, 2, 7, STONE)
    return tile


def drawing(name):
    leaves = (LEAF_DARK, LEAF, LEAF_LIGHT)
    roofs = {"roof": (RED, RED_DARK, RED_LIGHT), "ridge": (RED, RED_DARK, RED_LIGHT),
             "blue": (BLUE, BLUE_DARK, BLUE_LIGHT)}
    makers = {
        "grass": grass, "tufts": tufts, "flowers": flowers,
        "meadow": lambda: speckled(GRASS_LIGHT, [GRASS, rgb("94cc70")], 30, 4),
        "dirt": lambda: speckled(DIRT, [mix(DIRT, WOOD, 0.4), rgb("c8a474")], 24, 5),
        "cobble": lambda: cobble(False), "cobble_worn": lambda: cobble(True),
        "sand": lambda: speckled(rgb("dcc88c"), [rgb("c8b074"), rgb("ecdca8")], 24, 6),
        "shore": shore, "bridge": lambda: planks(True), "fence": fence, "sign": sign,
        "wall": lambda: wall(""), "window": lambda: wall("window"), "door": lambda: wall("door"),
        "wall_edge": lambda: wall("edge"), "lamp_foot": lambda: lamp(False), "lamp_head": lambda: lamp(True),
        "barrel": barrel, "stall": stall, "trunk": trunk,
        "bush": lambda: ball(leaves, 1, 4, 14, 11, 8), "stump": lambda: ball((WOOD_DARK, WOOD, WOOD_LIGHT), 3, 7, 10, 7, 3),
        "rock": lambda: ball((MORTAR, STONE_DARK, STONE), 2, 5, 12, 10, 4),
        "crown_low": lambda: ball(leaves, -0.5, -13, 17, 26, 12), "crown_high": lambda: ball(leaves, -0.5, 2, 17, 28, 12),
        "fountain_low": lambda: fountain(False), "fountain_high": lambda: fountain(True),
    }
    if name.startswith("water"):
        return water(int(name[-1]) - 1)
    if name.startswith(("roof", "ridge", "blue")):
        colours = roofs[name.split("_")[0]]
        return roof(*colours, "ridge" in name, name.endswith("edge"))
    return makers[name]()


def tiles():
    rows = -(-len(TILES) // COLUMNS)
    picture = Canvas(COLUMNS * (TILE + 1) + 1, rows * (TILE + 1) + 1)
    for number, name in enumerate(TILES):
        picture.paste(drawing(name), 1 + number % COLUMNS * (TILE + 1), 1 + number // COLUMNS * (TILE + 1))
    return picture


def person(coat, hair, step, is_back):
    picture = Canvas(12, 18)
    skin = rgb("e8b88c")
    picture.fill(3, 1, 6, 6, hair if is_back else skin)
    picture.fill(3, 1, 6, 2, hair)
    picture.fill(3, 1, 1, 4, hair)
    if not is_back:
        picture.set(4, 4, NIGHT)
        picture.set(7, 4, NIGHT)
    picture.fill(2, 7, 8, 6, coat)
    picture.fill(2, 7, 1, 5, mix(coat, (255, 255, 255), 0.3))
    picture.fill(9, 7, 1, 5, mix(coat, (0, 0, 0), 0.3))
    left, right = ((4, 4), (5, 3), (4, 4), (3, 5))[step]
    picture.fill(3, 13, 2, left, NIGHT)
    picture.fill(7, 13, 2, right, NIGHT)
    picture.outline((30, 24, 30))
    return picture


def people():
    """A row a person: four steps towards the eye, four away."""
    coats = [("c8643c", "5a3820"), ("4878b0", "302820"), ("6a9a4c", "b08850"), ("9a5c9a", "202020")]
    picture = Canvas(12 * 8, 18 * len(coats))
    for row, (coat, hair) in enumerate(coats):
        for step in range(8):
            picture.paste(person(rgb(coat), rgb(hair), step % 4, step >= 4), step * 12, row * 18)
    return picture


def clouds():
    """Shadows of clouds; the picture repeats at its edges."""
    side, dice = 256, random.Random(21)
    picture = Canvas(side, side)
    for _ in range(26):
        x, y, radius = dice.randrange(side), dice.randrange(side), dice.randrange(10, 30)
        for dy in range(-radius, radius + 1):
            for dx in range(-radius, radius + 1):
                if dx * dx + 3 * dy * dy <= radius * radius:
                    picture.set((x + dx) % side, (y + dy) % side, (20, 30, 60, 255))
    return picture


if __name__ == "__main__":
    game = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "Games", "town")
    tiles().save(os.path.join(game, "tiles.png"))
    drawing("sign").save(os.path.join(game, "notice.png"))
    people().save(os.path.join(game, "people.png"))
    clouds().save(os.path.join(game, "clouds.png"))
