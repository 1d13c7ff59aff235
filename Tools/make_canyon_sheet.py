#!/usr/bin/env python3
"""Draws Games/canyon/tiles.png: rock, what grows on it, and water, in tiles of 16 x 16 pixels, 16 to a row.

Rows 0-11   a layer of rock (4) with a top of rock, grass or sand (3): row = layer * 3 + top. The column tells which
            sides are open air: 1 above, 2 right, 4 below, 8 left, added.
Row  12     rock without an open side: column = layer * 4 + variant.
Rows 13-16  rock whose sides are covered, a row a layer. The column tells which corners are open: 1 top right,
            2 bottom right, 4 bottom left, 8 top left, added.
Row  17     things that stand on the ground.
Row  18     water: four frames of its surface, then its body.
"""

import os
import random

import canyon_props
from canvas import Canvas, from_text, mix
from canyon_palette import GRASS, OUTLINE, SAND, STRATA, WATER

TILE = 16
ABOVE, RIGHT, BELOW, LEFT = 1, 2, 4, 8
ROCK_TOP, GRASS_TOP, SAND_TOP = range(3)

# Stones of the texture, as points that each stone gathers around. The texture repeats at the tile's edges.
STONES = [(2, 2), (8, 1), (13, 4), (4, 7), (10, 8), (15, 11), (1, 12), (6, 13), (11, 14)]
GRASS_LENGTH = [4, 5, 4, 3, 4, 6, 5, 3, 4, 5, 6, 4, 3, 5, 4, 3]
SAND_LENGTH = [2, 2, 3, 3, 3, 2, 2, 2, 3, 3, 4, 3, 3, 2, 2, 2]


def wrapped(difference):
    return (difference + TILE // 2) % TILE - TILE // 2


def stone_at(x, y):
    """How far from a stone's edge the pixel is, and where it lies on the stone: negative is towards the light."""
    near = sorted((wrapped(x - sx) ** 2 + (1.7 * wrapped(y - sy)) ** 2, wrapped(x - sx) + 2 * wrapped(y - sy))
                  for sx, sy in STONES)
    return near[1][0] ** 0.5 - near[0][0] ** 0.5, near[0][1]


def rock(layer):
    """Flat stones, lit from the top left."""
    crevice, shade, base, light = STRATA[layer]
    tile = Canvas(TILE, TILE)
    for y in range(TILE):
        for x in range(TILE):
            inside, side = stone_at(x, y)
            if inside < 0.9:
                colour = mix(crevice, shade, 0.75)
            elif side < -3:
                colour = mix(base, light, 0.45)
            elif side > 4:
                colour = mix(shade, base, 0.35)
            else:
                colour = base
            tile.set(x, y, colour)
    return tile


def varied(tile, layer, variant):
    """Pebbles and cracks away from the tile's border, so that variants fit beside each other."""
    crevice, _, _, light = STRATA[layer]
    dice = random.Random(layer * 10 + variant)
    for _ in range(variant * 2):
        x, y = dice.randint(3, 11), dice.randint(3, 11)
        tile.fill(x, y, 2, 1, mix(light, (255, 255, 255), 0.1))
        tile.fill(x, y + 1, 2, 1, crevice)
    if variant == 3:
        for step, (x, y) in enumerate(((5, 4), (6, 5), (6, 6), (7, 7), (8, 7), (9, 8))):
            tile.set(x, y, crevice)
            tile.set(x + 1, y, light if step % 2 else None)
    return tile


def distances(x, y, sides):
    """To each open side, in pixels."""
    return [d for side, d in ((ABOVE, y), (RIGHT, TILE - 1 - x), (BELOW, TILE - 1 - y), (LEFT, x)) if sides & side]


def cut_sides(tile, layer, sides):
    """Rounds open corners off, draws the outline, light along the top and left, shade along the others."""
    crevice, _, _, light = STRATA[layer]
    for y in range(TILE):
        for x in range(TILE):
            near = sorted(distances(x, y, sides)) + [TILE, TILE]
            if near[0] + near[1] <= 1:
                tile.set(x, y, (0, 0, 0, 0))
            elif near[0] == 0 or near[0] + near[1] <= 3 and near[1] <= 2:
                tile.set(x, y, OUTLINE)
            elif near[0] == 1:
                lit = sides & ABOVE and y == 1 or sides & LEFT and x == 1
                tile.set(x, y, light if lit else crevice)


def grow(tile, sides, shades, lengths):
    """Covers the top: bright at the edge, with a fringe that hangs down and a shadow under it."""
    dark, middle, bright, tip = shades
    for x in range(TILE):
        if not tile.opaque(x, 1):
            continue
        length = lengths[x]
        for y in range(length + 1):
            if tile.get(x, y)[:3] == OUTLINE and y > 0:
                continue
            colour = tip if y == 0 else bright if y == 1 else dark if y == length else middle
            tile.set(x, y, colour if tile.opaque(x, y) else None)
        tile.set(x, length + 1, mix(tile.get(x, length + 1)[:3], OUTLINE, 0.6))
    for x, side in ((0, LEFT), (TILE - 1, RIGHT)):
        for y in range(1, 5 if sides & side else 0):
            tile.set(x, y, dark if tile.opaque(x, y) else None)


def surface_tile(layer, top, sides):
    tile = rock(layer)
    cut_sides(tile, layer, sides)
    if sides & ABOVE and top == GRASS_TOP:
        grow(tile, sides, GRASS, GRASS_LENGTH)
    if sides & ABOVE and top == SAND_TOP:
        grow(tile, sides, SAND, SAND_LENGTH)
    return tile


def corner_tile(layer, corners):
    tile = rock(layer)
    light = STRATA[layer][3]
    for bit, x, y, dx, dy in ((1, 15, 0, -1, 1), (2, 15, 15, -1, -1), (4, 0, 15, 1, -1), (8, 0, 0, 1, 1)):
        if corners & bit:
            tile.set(x, y, OUTLINE)
            tile.set(x + dx, y, light if y == 0 else OUTLINE)
            tile.set(x, y + dy, light if x == 0 else OUTLINE)
    return tile


def standing(text, tiles_high):
    """A picture from its rows of text, moved down to the ground."""
    rows = text.split()
    picture = Canvas(TILE, TILE * tiles_high)
    picture.paste(from_text(rows, canyon_props.COLOURS), 0, picture.height - len(rows))
    return picture


def tall_cactus():
    """Its upper and its lower tile."""
    whole = standing(canyon_props.TALL_CACTUS, 2)
    upper, lower = Canvas(TILE, TILE), Canvas(TILE, TILE)
    upper.paste(whole, 0, 0)
    lower.paste(whole, 0, -TILE)
    return [upper, lower]


WAVE = [3, 3, 2, 2, 2, 3, 3, 4, 4, 5, 5, 5, 4, 4, 3, 3]


def water_surface(frame):
    tile = water_body()
    for x in range(TILE):
        top = WAVE[(x + frame * 4) % TILE]
        tile.fill(x, 0, 1, top, (0, 0, 0, 0))
        tile.set(x, top, WATER[3])
        tile.set(x, top + 1, WATER[2])
    return tile


def water_body():
    tile = Canvas(TILE, TILE, WATER[1])
    for x, y, length in ((2, 9, 4), (10, 6, 3), (8, 13, 5)):
        tile.fill(x, y, length, 1, mix(WATER[1], WATER[2], 0.45))
    return tile


def main():
    picture = Canvas(TILE * 16, TILE * 19)

    def put(tile, column, row):
        picture.paste(tile, column * TILE, row * TILE)

    for layer in range(4):
        for column in range(16):
            for top in (ROCK_TOP, GRASS_TOP, SAND_TOP):
                put(surface_tile(layer, top, column), column, layer * 3 + top)
            put(corner_tile(layer, column), column, 13 + layer)
        for variant in range(4):
            put(varied(rock(layer), layer, variant), layer * 4 + variant, 12)
    props = [standing(text, 1) for text in canyon_props.ONE_TILE_HIGH] + tall_cactus()
    for column, prop in enumerate(props):
        put(prop, column, 17)
    for frame in range(4):
        put(water_surface(frame), frame, 18)
    put(water_body(), 4, 18)
    picture.save(os.path.join(os.path.dirname(__file__), "..", "Games", "canyon", "tiles.png"))


if __name__ == "__main__":
    main()
