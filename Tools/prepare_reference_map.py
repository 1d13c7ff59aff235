#!/usr/bin/env python3
"""Writes a copy of a TMX map for tmxrasterizer, which draws what a game does not and leaves out what it does:
objects that show no tile are taken out (their outlines would be drawn), templates are filled in (they would show as
grey squares), and an opaque picture lies below everything, so that it rounds as often as a game does. The copy must
stand in the map's folder; the picture stands beside it, as COPY.png. Prints what was changed, where it is the map's own.

    prepare_reference_map.py MAP COPY RRGGBB
"""

import os
import sys
import xml.etree.ElementTree as ET

from canvas import rgb
from png import write_png


def first_number(root, source, folder):
    """The number of the tileset's first tile in the map."""
    for tileset in root.findall("tileset"):
        if os.path.normpath(os.path.join(folder, tileset.get("source", ""))) == source:
            return int(tileset.get("firstgid"))
    raise SystemExit(f"the map does not use the tileset {source} of a template")


def fill_in(item, root, folder):
    path = os.path.join(folder, item.attrib.pop("template"))
    template = ET.parse(path).getroot()
    tileset, pattern = template.find("tileset"), template.find("object")
    for name, value in pattern.attrib.items():
        item.attrib.setdefault(name, value)
    if tileset is not None:
        source = os.path.normpath(os.path.join(os.path.dirname(path), tileset.get("source")))
        number = int(item.get("gid")) - int(tileset.get("firstgid")) + first_number(root, source, folder)
        item.set("gid", str(number))


def lay_colour_below(root, copy, colour):
    width, height = (int(root.get(side)) * int(root.get("tile" + side)) for side in ("width", "height"))
    write_png(copy + ".png", width, height, bytes((*colour, 255)) * (width * height))
    layer = ET.Element("imagelayer", {"name": "below"})
    ET.SubElement(layer, "image", {"source": os.path.basename(copy) + ".png"})
    first = next(i for i, item in enumerate(root) if item.tag in ("layer", "objectgroup", "imagelayer", "group"))
    root.insert(first, layer)


def prepare(source, copy, colour):
    tree, folder = ET.parse(source), os.path.dirname(source)
    outlines = templates = 0
    for group in tree.getroot().iter("objectgroup"):
        for item in list(group.findall("object")):
            if "template" in item.attrib:
                fill_in(item, tree.getroot(), folder)
                templates += 1
            if "gid" not in item.attrib:
                group.remove(item)
                outlines += 1
    lay_colour_below(tree.getroot(), copy, colour)
    tree.write(copy, encoding="UTF-8", xml_declaration=True)
    notes = [f"{count} {what}" for count, what in ((outlines, "outlines taken out"), (templates, "templates filled in"))
             if count]
    if tree.getroot().get("backgroundcolor"):
        notes.append("over our colour instead of its own")
    return ", ".join(notes)


if __name__ == "__main__":
    print(prepare(sys.argv[1], sys.argv[2], rgb(sys.argv[3])))
