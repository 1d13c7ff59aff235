#!/usr/bin/env python3
"""Draws the one tile of Docs/Your_Game: earth with grass on it."""

from png import write_png

SIDE, GRASS = 32, 8
picture = bytearray()
for row in range(SIDE):
    for column in range(SIDE):
        edge = GRASS + (column * 5 + 3) % 4  # the grass hangs down unevenly
        speck = (row * 7 + column * 11) % 23 == 0
        picture += bytes((72, 160, 72, 255) if row < edge else (110, 78, 50, 255) if speck else (134, 96, 62, 255))
write_png("Docs/Your_Game/tiles.png", SIDE, SIDE, bytes(picture))
