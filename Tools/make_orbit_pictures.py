#!/usr/bin/env python3
"""Draws the pictures of Games/orbit: ground.png and walls.png with squares of 32 x 32 pixels beside each other, and
sky.png, a panorama of 16 parts of 64 x 128 pixels that closes to a ring.

ground.png  0 grass, 1 grass with flowers, 2 road, 3 square, 4 water, 5 field
walls.png   0 plaster with a window, 1 plaster with a door, 2 brick with a window, 3 stone, 4 red tiles, 5 slate,
            6 leaves, 7 bark, 8 planks, 9 sail
"""

import os
import random

from canvas import Canvas, mix, rgb, sheet

SIDE = 32
FOLDER = os.path.join(os.path.dirname(__file__), "..", "Games", "orbit")


def speckled(colour, other, share, seed):
    dice = random.Random(seed)
    tile = Canvas(SIDE, SIDE, rgb(colour))
    for _ in range(int(SIDE * SIDE * share)):
        tile.set(dice.randrange(SIDE), dice.randrange(SIDE), rgb(other))
    return tile


# ---- ground ----

def grass(seed):
    tile = speckled("74b04e", "68a248", 0.16, seed)
    dice = random.Random(seed + 1)
    for _ in range(14):
        x, y = dice.randrange(1, SIDE - 1), dice.randrange(2, SIDE)
        for dx, dy, colour in ((0, 0, "4f8a3e"), (0, -1, "8cc85c"), (1, 0, "5c9844")):
            tile.set(x + dx, y + dy, rgb(colour))
    return tile


def flowers():
    tile = grass(31)
    dice = random.Random(32)
    for colour in ("f4e06a", "f0f0e8", "e88aa0", "f4e06a", "f0f0e8", "e88aa0"):
        x, y = dice.randrange(2, SIDE - 2), dice.randrange(2, SIDE - 2)
        for dx, dy in ((0, -1), (-1, 0), (1, 0), (0, 1)):
            tile.set(x + dx, y + dy, rgb(colour))
        tile.set(x, y, rgb("d09030"))
    return tile


def paved(stones, joint, width, height, shift, seed):
    """Stones in rows; every other row is moved aside."""
    dice = random.Random(seed)
    shades = {}
    tile = Canvas(SIDE, SIDE)
    for y in range(SIDE):
        for x in range(SIDE):
            row = y // height
            along = (x + row % 2 * shift) % SIDE
            shade = shades.setdefault((row, along // width), dice.uniform(-0.12, 0.12))
            colour = mix(rgb(stones), (255, 255, 255) if shade > 0 else (0, 0, 0), abs(shade))
            if along % width == 0 or y % height == 0:
                colour = rgb(joint)
            elif along % width == 1 or y % height == 1:
                colour = mix(colour, (255, 255, 255), 0.16)
            tile.set(x, y, colour)
    return tile


def water():
    tile = Canvas(SIDE, SIDE, rgb("3f86c0"))
    for x, y, length in ((3, 4, 8), (18, 9, 9), (8, 15, 6), (24, 19, 6), (2, 24, 7), (15, 28, 10)):
        tile.fill(x, y, length, 1, rgb("6fb2dc"))
        tile.fill(x + 2, y + 1, length - 3, 1, rgb("3676ac"))
    return tile


def field():
    tile = speckled("b08a50", "a47e46", 0.2, 41)
    for x in range(0, SIDE, 8):
        tile.fill(x, 0, 2, SIDE, rgb("8a6438"))
        for y in range(0, SIDE, 4):
            tile.fill(x + 4, y, 2, 2, rgb("d8c04c"))
            tile.set(x + 4, y, rgb("f0dc74"))
    return tile


# ---- walls ----

def frame(tile, left, top, width, height, colour):
    for edge in ((left, top, width, 2), (left, top + height - 2, width, 2), (left, top, 2, height),
                 (left + width - 2, top, 2, height)):
        tile.fill(*edge, colour)


def window(tile, left, top, wood):
    tile.fill(left, top, 12, 13, rgb("5f9ac4"))
    for step in range(5):
        tile.fill(left + 2 + step, top + 8 - step, 2, 1, rgb("b4dcee"))
    frame(tile, left, top, 12, 13, rgb(wood))
    tile.fill(left + 5, top, 2, 13, rgb(wood))
    tile.fill(left - 1, top + 13, 14, 2, rgb("d8cdb8"))


def plaster():
    tile = speckled("ecdcb8", "e2d0a8", 0.18, 51)
    frame(tile, 0, 0, SIDE, SIDE, rgb("7a5236"))
    return tile


def plaster_window():
    tile = plaster()
    window(tile, 10, 8, "7a5236")
    return tile


def plaster_door():
    tile = plaster()
    tile.fill(10, 9, 12, 23, rgb("8a4a34"))
    tile.fill(15, 11, 1, 20, rgb("74402e"))
    frame(tile, 9, 8, 14, 24, rgb("6a4630"))
    tile.fill(19, 20, 2, 2, rgb("f0c860"))
    return tile


def brick_window():
    tile = paved("b4604a", "d4b8a0", 8, 4, 4, 61)
    window(tile, 10, 8, "f0e8d8")
    return tile


def roof(light, dark, seed):
    tile = Canvas(SIDE, SIDE)
    dice = random.Random(seed)
    for y in range(SIDE):
        for x in range(SIDE):
            row = y // 6
            along = (x + row % 2 * 4) % 8
            deep = y % 6 == 5 or along == 0
            tile.set(x, y, rgb(dark) if deep else mix(rgb(light), rgb(dark), y % 6 * 0.1 + dice.random() * 0.08))
    return tile


def leaves():
    dice = random.Random(71)
    tile = Canvas(SIDE, SIDE, rgb("3f8a4a"))
    for _ in range(70):
        x, y = dice.randrange(SIDE), dice.randrange(SIDE)
        light = dice.random() < 0.5
        for dx, dy in ((0, 0), (1, 0), (0, 1)):
            tile.set((x + dx) % SIDE, (y + dy) % SIDE, rgb("62b050" if light else "2e6c40"))
    return tile


def bark():
    tile = speckled("7a5438", "684428", 0.25, 81)
    for x in range(2, SIDE, 6):
        tile.fill(x, 0, 1, SIDE, rgb("583820"))
    return tile


def planks():
    tile = speckled("b0804c", "a47644", 0.15, 91)
    for x in range(0, SIDE, 8):
        tile.fill(x, 0, 1, SIDE, rgb("74502c"))
    frame(tile, 0, 0, SIDE, SIDE, rgb("8a6238"))
    return tile


def sail():
    tile = Canvas(SIDE, SIDE, rgb("f4ecd8"))
    for place in range(0, SIDE, 8):
        tile.fill(place, 0, 1, SIDE, rgb("a07c54"))
        tile.fill(0, place, SIDE, 1, rgb("a07c54"))
    frame(tile, 0, 0, SIDE, SIDE, rgb("7a5236"))
    return tile


# ---- sky ----

SKY_WIDTH, SKY_HEIGHT = 1024, 128
HORIZON = 112


def skyline(seed, low, high, step):
    """Heights that go round: the last fits the first."""
    dice = random.Random(seed)
    points = [dice.uniform(low, high) for _ in range(SKY_WIDTH // step)]
    line = []
    for x in range(SKY_WIDTH):
        at, part = x // step, x % step / step
        part = part * part * (3 - 2 * part)
        line.append(points[at] + (points[(at + 1) % len(points)] - points[at]) * part)
    return line


def clouds():
    dice = random.Random(7)
    puffs = []
    for _ in range(15):
        x, y = dice.uniform(0, SKY_WIDTH), dice.uniform(22, 66)
        puffs += [(x + i * 13, y - 5 * (i % 2), dice.uniform(7, 12), y + 5) for i in range(dice.randint(2, 4))]
    return puffs


def sky():
    picture = Canvas(SKY_WIDTH, SKY_HEIGHT)
    far, near = skyline(3, 12, 44, 32), skyline(5, 4, 20, 16)
    puffs = clouds()
    for x in range(SKY_WIDTH):
        for y in range(SKY_HEIGHT):
            colour = mix(rgb("4a94d0"), rgb("d4ecf4"), min(1, y / HORIZON) ** 1.3)
            for cx, cy, radius, floor in puffs:
                away = (x - cx + SKY_WIDTH / 2) % SKY_WIDTH - SKY_WIDTH / 2
                if abs(away) < radius and y < floor and away * away + (y - cy) ** 2 < radius * radius:
                    colour = rgb("ffffff") if y < cy + 1 else rgb("dfeaf4")
            above = HORIZON - y
            if above < far[x]:
                colour = mix(rgb("8fb4c8"), rgb("6f9ab8"), above / 44)
                if above > 34:
                    colour = rgb("f4f8fc")
            if above < near[x]:
                colour = mix(rgb("7fb87a"), rgb("5c9c68"), max(0, above) / 20)
            picture.set(x, y, colour)
    return picture


def main():
    ground = [grass(21), flowers(), paved("b8a88c", "8a7a62", 8, 8, 4, 11), paved("d0c4ac", "a4967c", 16, 16, 8, 12),
              water(), field()]
    walls = [plaster_window(), plaster_door(), brick_window(), paved("9a98a0", "6a6874", 16, 8, 8, 13),
             roof("c8553d", "7e3028", 1), roof("5c7290", "36445e", 2), leaves(), bark(), planks(), sail()]
    sheet(ground, len(ground)).save(os.path.join(FOLDER, "ground.png"))
    sheet(walls, len(walls)).save(os.path.join(FOLDER, "walls.png"))
    sky().save(os.path.join(FOLDER, "sky.png"))


if __name__ == "__main__":
    main()
