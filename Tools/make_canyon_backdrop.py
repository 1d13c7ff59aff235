#!/usr/bin/env python3
"""Draws Games/canyon/far.png: two strips of 256 x 96 pixels, one above the other, that repeat sideways: table
mountains far away and buttes nearer by; and cloud.png: two clouds of 64 x 24 pixels beside each other."""

import os
import random

from canvas import Canvas, mix, rgb

FOLDER = os.path.join(os.path.dirname(__file__), "..", "Games", "canyon")
WIDTH, HEIGHT = 256, 96
HAZE = rgb("e8b8a0")

# Table mountains: left edge of the flat top, its width, its height above the strip's bottom, slope of the flanks.
FAR = [(8, 44, 62, 0.5), (70, 26, 74, 0.4), (112, 60, 54, 0.7), (186, 34, 68, 0.45), (232, 14, 50, 0.6)]
NEAR = [(20, 30, 56, 0.25), (62, 12, 68, 0.15), (120, 50, 44, 0.35), (150, 14, 76, 0.12), (206, 26, 60, 0.2)]


def heights(mountains, floor):
    """The skyline, a height a column: a cliff under each flat top, then scree that is less steep."""
    line = []
    for x in range(WIDTH):
        best = floor
        for left, width, top, slope in mountains:
            middle = left + width / 2
            away = abs((x - middle + WIDTH / 2) % WIDTH - WIDTH / 2) - width / 2
            cliff = top - max(away, 0) / slope
            scree = top * 0.66 - away * 0.8
            best = max(best, cliff if away <= 0 else max(cliff, scree))
        line.append(round(best))
    return line


def strip(mountains, floor, lit, dark, seed):
    """Lit from the left, paler towards the bottom where the haze is."""
    dice = random.Random(seed)
    line = heights(mountains, floor)
    picture = Canvas(WIDTH, HEIGHT)
    bands = [dice.random() * 0.25 for _ in range(HEIGHT // 4 + 1)]
    for x in range(WIDTH):
        slope = line[(x + 2) % WIDTH] - line[x - 2]
        shade = 0.15 if slope > 3 else 0.75 if slope < -3 else 0.42
        for above in range(line[x]):
            colour = mix(lit, dark, min(1, shade + bands[(above + (x // 37) % 2) // 4]))
            picture.set(x, HEIGHT - 1 - above, mix(colour, HAZE, max(0, 0.55 - above / 70)))
        picture.set(x, HEIGHT - line[x], mix(lit, (255, 240, 214), 0.35))
    return picture


def cloud(puffs):
    picture = Canvas(64, 24)
    for y in range(24):
        for x in range(64):
            inside = [(x - cx) ** 2 + ((y - 18) * 1.3 + lift) ** 2 < r * r for cx, lift, r in puffs]
            if any(inside) and y < 20:
                lit = any((x - cx + 1) ** 2 + ((y - 16) * 1.3 + lift) ** 2 < (r - 2) ** 2 for cx, lift, r in puffs)
                picture.set(x, y, rgb("fff3df") if lit else rgb("f3cdb8"))
    return picture


def main():
    far = Canvas(WIDTH, HEIGHT * 2)
    far.paste(strip(FAR, 26, rgb("c98a9a"), rgb("8d6a94"), 3), 0, 0)
    far.paste(strip(NEAR, 14, rgb("c4785c"), rgb("83465a"), 4), 0, HEIGHT)
    far.save(os.path.join(FOLDER, "far.png"))
    clouds = Canvas(128, 24)
    clouds.paste(cloud([(14, 0, 9), (27, 5, 13), (42, 3, 11), (53, 0, 7)]), 0, 0)
    clouds.paste(cloud([(10, 0, 6), (24, 2, 9), (38, 0, 8)]), 64, 0)
    clouds.save(os.path.join(FOLDER, "cloud.png"))


if __name__ == "__main__":
    main()
