#!/usr/bin/env python3
"""Writes Games/town/town.tmx and tiles.tsx, as the editor writes maps: the town, its people, its views and its zones."""

import os
import random

from make_town_tiles import COLUMNS, TILE, TILES

WIDTH, HEIGHT = 80, 50
MIRRORED, DIAGONAL = 1 << 31, 1 << 29
SOLID = ["water_1", "wall", "window", "door", "wall_edge", "fence", "barrel", "stall", "trunk", "bush", "rock", "lamp_foot",
         "fountain_low", "sign", "stump"]
LAYERS = ["ground", "edges", "walls", "over"]

# Houses: left, top of the roof, width, and which roof.
HOUSES = [(10, 8, 8, "roof"), (40, 7, 9, "blue"), (56, 10, 7, "roof"), (8, 26, 7, "blue"), (42, 28, 8, "roof"),
          (60, 27, 9, "blue"), (19, 8, 6, "roof")]
TREES = [(3, 5), (5, 18), (27, 5), (35, 9), (52, 6), (66, 6), (72, 15), (75, 30), (3, 33), (18, 33), (53, 33), (70, 34),
         (6, 44), (16, 46), (24, 44), (40, 45), (50, 47), (61, 44), (72, 46), (36, 33), (76, 8), (28, 13)]


def number(name, flags=0):
    return (TILES.index(name) + 1) | flags


class Map:
    def __init__(self):
        self.cells = {layer: [0] * (WIDTH * HEIGHT) for layer in LAYERS}

    def put(self, layer, x, y, name, flags=0):
        if 0 <= x < WIDTH and 0 <= y < HEIGHT:
            self.cells[layer][y * WIDTH + x] = number(name, flags)

    def fill(self, layer, left, top, width, height, *names, flags=0, dice=random.Random(3)):
        for y in range(top, top + height):
            for x in range(left, left + width):
                self.put(layer, x, y, dice.choice(names), flags)


def ground(town):
    town.fill("ground", 0, 0, WIDTH, HEIGHT, "grass", "grass", "grass", "tufts", "meadow")
    town.fill("ground", 0, 24, WIDTH, 2, "cobble", "cobble", "cobble_worn")
    town.fill("ground", 30, 0, 2, HEIGHT, "cobble", "cobble", "cobble_worn")
    town.fill("ground", 23, 18, 16, 14, "cobble", "cobble", "cobble", "cobble_worn")
    for x in range(WIDTH):
        town.fill("ground", x, 37, 1, 5, "water_1")
        town.put("edges", x, 37, "shore")
        town.put("ground", x, 42, "sand")
    town.fill("ground", 30, 37, 2, 5, "bridge", flags=DIAGONAL)
    for x in (30, 31):
        town.put("edges", x, 37, "bridge", DIAGONAL)
    dice = random.Random(5)
    for _ in range(110):
        x, y = dice.randrange(WIDTH), dice.randrange(HEIGHT)
        if town.cells["ground"][y * WIDTH + x] in (number("grass"), number("tufts"), number("meadow")):
            town.put("ground", x, y, "flowers")


def house(town, left, top, width, roof):
    """Two rows of roof, one of ridge above, then two of wall."""
    right, ridge = left + width - 1, "ridge" if roof == "roof" else "blue_ridge"
    for row in range(3):
        plain, edge = (ridge, ridge + "_edge") if row == 0 else (roof, roof + "_edge")
        town.fill("over", left, top + row, width, 1, plain)
        town.put("over", left, top + row, edge)
        town.put("over", right, top + row, edge, MIRRORED)
    town.fill("walls", left, top + 2, width, 3, "wall")
    for row in (3, 4):
        town.put("walls", left, top + row, "wall_edge")
        town.put("walls", right, top + row, "wall_edge", MIRRORED)
    for x in range(left + 1, right, 2):
        town.put("walls", x, top + 3, "window")
    door = left + width // 2
    town.put("walls", door, top + 3, "wall")
    town.put("walls", door, top + 4, "door")
    town.fill("ground", door, top + 5, 1, 2, "dirt")


def things(town):
    for left, top, width, roof in HOUSES:
        house(town, left, top, width, roof)
    for x, y in TREES:
        town.put("walls", x, y, "trunk")
        town.put("over", x, y - 1, "crown_low")
        town.put("over", x, y - 2, "crown_high")
    for x, y in ((26, 20), (35, 20), (26, 29), (35, 29), (16, 23), (48, 23), (62, 23), (8, 23)):
        town.put("walls", x, y, "lamp_foot")
        town.put("over", x, y - 1, "lamp_head")
    town.put("walls", 28, 22, "fountain_low")
    town.put("over", 28, 21, "fountain_high")
    for x in (33, 34, 35, 36):
        town.put("walls", x, 27, "stall")
    for x, y in ((40, 13), (41, 13), (18, 14), (63, 16), (32, 27), (37, 27)):
        town.put("walls", x, y, "barrel")
    for x in range(66, 76):
        town.put("walls", x, 18, "fence")
        town.put("walls", x, 22, "fence")
    for x, y in ((12, 43), (45, 44), (66, 43), (2, 22), (77, 22), (50, 36), (21, 36)):
        town.put("walls", x, y, "rock")


# ---- the file ----

def properties(indent, values):
    """values: (name, type, value); the type string is not written, as the editor does."""
    if not values:
        return ""
    lines = []
    for name, kind, value in sorted(values):
        kind = "" if kind == "string" else f' type="{kind}"'
        lines.append(f'{indent} <property name="{name}"{kind} value="{value}"/>\n')
    return f"{indent}<properties>\n" + "".join(lines) + f"{indent}</properties>\n"


def tileset():
    rows = -(-len(TILES) // COLUMNS)
    text = ('<?xml version="1.0" encoding="UTF-8"?>\n'
            f'<tileset version="1.8" tiledversion="1.8.2" name="tiles" tilewidth="{TILE}" tileheight="{TILE}" '
            f'spacing="1" margin="1" tilecount="{rows * COLUMNS}" columns="{COLUMNS}">\n'
            f' <image source="tiles.png" width="{COLUMNS * (TILE + 1) + 1}" height="{rows * (TILE + 1) + 1}"/>\n')
    for tile, name in enumerate(TILES):
        inside = properties("  ", [("solid", "bool", "true")]) if name in SOLID else ""
        if name == "flowers":
            inside = properties("  ", [("pick", "bool", "true")])
        if name == "water_1":
            frames = "".join(f'   <frame tileid="{tile + step}" duration="200"/>\n' for step in range(4))
            inside += f"  <animation>\n{frames}  </animation>\n"
        if inside:
            text += f' <tile id="{tile}">\n{inside} </tile>\n'
    return text + "</tileset>\n"


class Objects:
    """Objects of a layer, with ids that count through the map."""
    last = 0

    def __init__(self):
        self.text = ""

    def add(self, inside="", **attributes):
        Objects.last += 1
        known = {"class_": "type"}
        words = "".join(f' {known.get(name, name)}="{value}"' for name, value in attributes.items())
        end = f">\n{inside}  </object>\n" if inside else "/>\n"
        self.text += f'  <object id="{Objects.last}"{words}{end}'
        return Objects.last

    def line(self, name, points):
        """A way: tiles, whose middles it joins."""
        x, y = (points[0][0] + 0.5) * TILE, (points[0][1] + 0.5) * TILE
        way = " ".join(f"{(px - points[0][0]) * TILE},{(py - points[0][1]) * TILE}" for px, py in points)
        return self.add(f'   <polyline points="{way}"/>\n', name=name, class_="way", x=x, y=y)

    def point(self, name, kind, at, values):
        inside = properties("   ", values) + "   <point/>\n"
        return self.add(inside, name=name, class_=kind, x=(at[0] + 0.5) * TILE, y=(at[1] + 0.5) * TILE)

    def zone(self, name, left, top, width, height, zoom):
        return self.add(properties("   ", [("frames", "int", 45), ("zoom", "float", zoom)]), name=name, class_="zone",
                        x=left * TILE, y=top * TILE, width=width * TILE, height=height * TILE)


def people_and_ways():
    ways, people = Objects(), Objects()
    stroll = ways.line("stroll", [(31, 34), (31, 26), (24, 26), (24, 19), (37, 19), (37, 25), (64, 25), (64, 20), (70, 20),
                                  (70, 25), (31, 25), (31, 45), (20, 45), (31, 45), (31, 40)])
    rounds = [ways.line("round", way) for way in (
        [(12, 24), (22, 24), (22, 16), (14, 16)], [(41, 25), (41, 15), (50, 15), (50, 25)],
        [(67, 20), (74, 20)], [(25, 30), (37, 30), (37, 23), (25, 23)])]
    people.point("Ada", "walker", (31, 34), [("way", "object", stroll), ("look", "int", 0)])
    names = ("Ben", "Cleo", "Dora", "Emil")
    tour = [people.point(name, "villager", at, [("way", "object", rounds[i]), ("look", "int", 1 + i % 3)])
            for i, (name, at) in enumerate(zip(names, ((12, 24), (41, 25), (67, 20), (25, 30))))]
    sign = number("sign")
    for x, y, text in ((33, 35, "The bridge"), (39, 22, "Market on Saturdays"), (66, 24, "Dora's meadow"), (6, 23, "To the sea")):
        people.add(properties("   ", [("text", "string", text)]), class_="notice", gid=sign, x=x * TILE, y=y * TILE,
                   width=TILE, height=TILE)
    for x, y, name, flags in ((21.5, 30.4, "bush", 0), (40.2, 19.6, "bush", MIRRORED), (22.3, 19.2, "stump", 0)):
        people.add(gid=number(name, flags), x=x * TILE, y=y * TILE, width=TILE * 1.25, height=TILE * 1.25)
    return ways, people, tour


def zones():
    made = Objects()
    made.zone("market", 22, 17, 18, 16, 1.25)
    made.zone("bridge", 26, 35, 10, 9, 1.6)
    made.zone("meadow", 64, 16, 14, 8, 1.4)
    return made


def csv(cells):
    rows = [",".join(map(str, cells[y * WIDTH:(y + 1) * WIDTH])) for y in range(HEIGHT)]
    return ",\n".join(rows) + "\n"


def tile_layer(town, name, layer_id):
    return (f' <layer id="{layer_id}" name="{name}" width="{WIDTH}" height="{HEIGHT}">\n  <data encoding="csv">\n'
            f'{csv(town.cells[name])}</data>\n </layer>\n')


def object_layer(objects, name, layer_id, attributes=""):
    return f' <objectgroup id="{layer_id}" name="{name}"{attributes}>\n{objects.text} </objectgroup>\n'


def town_map():
    town = Map()
    ground(town)
    things(town)
    ways, people, tour = people_and_ways()
    areas = zones()
    views = [("view0.w", "int", 640), ("view0.h", "int", 360), ("view0.hborder", "int", 260),
             ("view0.vborder", "int", 150), ("view0.target", "string", "walker"),
             ("view1.w", "int", 256), ("view1.h", "int", 144), ("view1.xport", "int", 1004), ("view1.yport", "int", 20),
             ("view1.wport", "int", 256), ("view1.hport", "int", 144), ("view1.hborder", "int", 128),
             ("view1.vborder", "int", 72), ("view1.target", "object", tour[2])]
    body = (tile_layer(town, "ground", 1) + tile_layer(town, "edges", 2) + tile_layer(town, "walls", 3) +
            object_layer(ways, "ways", 4, ' visible="0"') + object_layer(areas, "zones", 5, ' visible="0"') +
            object_layer(people, "people", 6) + tile_layer(town, "over", 7) +
            ' <imagelayer id="8" name="clouds" opacity="0.16" parallaxx="1.3" parallaxy="1.3" repeatx="1" repeaty="1">\n'
            '  <image source="clouds.png" width="256" height="256"/>\n </imagelayer>\n')
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<map version="1.8" tiledversion="1.8.2" orientation="orthogonal" renderorder="right-down" '
            f'width="{WIDTH}" height="{HEIGHT}" tilewidth="{TILE}" tileheight="{TILE}" infinite="0" '
            f'backgroundcolor="#2e3a52" nextlayerid="9" nextobjectid="{Objects.last + 1}">\n' +
            properties(" ", views) + ' <tileset firstgid="1" source="tiles.tsx"/>\n' + body + "</map>\n")


if __name__ == "__main__":
    game = os.path.join(os.path.dirname(os.path.dirname(os.path.abspath(__file__))), "Games", "town")
    for name, text in (("town.tmx", town_map()), ("tiles.tsx", tileset())):
        with open(os.path.join(game, name), "w", encoding="utf-8") as file:
            file.write(text)
