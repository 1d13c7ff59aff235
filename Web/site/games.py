"""The games that the manual shows: Lua blocks of its pages, Docs/Examples, the steps of Docs/Your_Game.md, and Games.

A Lua block of a page is a game when it adds a room or includes another block of its page. A block whose first line is
"-- NAME.lua" is the file NAME.lua for the blocks below it. Each game gets an id, by which pages, tests and the playground
name it.
"""
import dataclasses
import pathlib
import re

import tutorial

BLOCK = re.compile(r"^```lua\n(.*?)^```\n", re.S | re.M)
NAME = re.compile(r"-- (\w+\.lua)\n")
INCLUDE = re.compile(r'include\("([^"]+)"\)')
TO_PLAY = re.compile(r"^To play: \[[^\]]*\]\((Examples/(\w+)\.lua)\)\n", re.M)
PAGES = ["README.md", "Docs/*.md"]


@dataclasses.dataclass
class Game:
    id: str
    page: str  # the Markdown file that shows it; empty for the games of Games
    main: str
    files: dict  # name in the game's folder: content as bytes


def _text(content):
    return content.encode()


def _parts_of(text, known):
    """The files of a page's blocks that a block includes."""
    return {name: _text(known[name]) for name in INCLUDE.findall(text) if name in known}


def block_id(page, text, number):
    """Of the block with this number, counted from 1 over the games of its page."""
    name = NAME.match(text)
    return pathlib.Path(page).stem.lower() + "-" + (name[1][:-4] if name else str(number))


def blocks(page, markdown):
    """The games among a page's Lua blocks: the start of each in the text, and the game."""
    included = set(INCLUDE.findall(markdown))
    known, number = {}, 0
    for found in BLOCK.finditer(markdown):
        text = found[1]
        name = NAME.match(text)
        if name and name[1] in included:
            known[name[1]] = text
            continue
        parts = _parts_of(text, known)
        if not parts and "room_add{" not in text:
            continue
        number += 1
        main = name[1] if name else "game.lua"
        yield found, Game(block_id(page, text, number), page, main, {main: _text(text), **parts})


def example(root, name):
    """The game of Docs/Examples that shows a built-in."""
    folder = root / "Docs/Examples"
    return Game(name, "Docs/Built_Ins.md", name + ".lua",
                {file: (folder / file).read_bytes() for file in (name + ".lua", "field.lua")})


def of_folder(folder):
    """A game of Games, without the picture of the menu."""
    files = {str(file.relative_to(folder)): file.read_bytes()
             for file in sorted(folder.rglob("*")) if file.is_file() and file.name != "menu.png"}
    return Game(folder.name, "", folder.name + ".lua", files)


def all_games(root):
    for pattern in PAGES:
        for path in sorted(root.glob(pattern)):
            page, markdown = str(path.relative_to(root)), path.read_text()
            for _, game in blocks(page, markdown):
                yield game
            for found in TO_PLAY.finditer(markdown):
                yield example(root, found[2])
    for step, files in tutorial.steps(root):
        yield Game(f"your_game-{step}", "Docs/Your_Game.md", "hop.lua", files)
    for folder in sorted((root / "Games").iterdir()):
        if (folder / (folder.name + ".lua")).exists():
            yield of_folder(folder)
