"""The game of Docs/Your_Game.md after each of its steps, built up from the page's blocks as the page tells its readers.

A block's pieces stand between empty lines. A piece whose first line begins as one that is there already takes its place;
a new one goes in front of the one that follows it in the block, or else in front of the file's last one.
"""
import re

FENCE = re.compile(r"^```(\w+) ([\w./]+)(?: instead of (.*))?$")
STEP = re.compile(r"^## (\d+)\. ")
PICTURE = re.compile(r"^cp (Docs/Your_Game/\S+) hop/(\S+)$")


def key_of(piece):
    """The first line of code up to its value, arguments or fields."""
    line = next(line for line in piece.split("\n") if not line.startswith("--"))
    return re.split(r"[=({]", line)[0].rstrip()


def pieces_of(text):
    pieces, is_new = [], True
    for line in text.split("\n")[:-1]:
        if is_new and line and not line.startswith(" "):
            pieces.append("")
        is_new = not line
        if line and pieces:
            pieces[-1] += line + "\n"
    return pieces


def _index(pieces, key):
    return next((i for i, piece in enumerate(pieces) if key_of(piece) == key), None)


def _take_out(pieces, keys):
    """Where the first of these pieces stood; None for no keys."""
    place = None
    for key in filter(None, (key.strip() for key in keys.split(","))):
        index = _index(pieces, key)
        if index is None:
            raise ValueError(f"there is no {key}")
        place = index if place is None else place - (index < place)
        del pieces[index]
    return place


def put_into(pieces, block, instead):
    taken = _take_out(pieces, instead)
    place = max(len(pieces) - 1, 0) if taken is None else taken
    for piece in reversed(pieces_of(block)):
        index = _index(pieces, key_of(piece))
        if index is None:
            pieces.insert(place, piece)
        else:
            pieces[index] = piece
            place = index


def _content(files):
    return {name: ("\n".join(pieces) if isinstance(pieces, list) else pieces) for name, pieces in files.items()}


def _blocks(lines):
    """The page's steps, named blocks and copied pictures, in their order: (kind, ...)."""
    for line in lines:
        step, fence, picture = STEP.match(line), FENCE.match(line), PICTURE.match(line)
        if step:
            yield "step", int(step[1])
        elif picture:
            yield "picture", picture[2], picture[1]
        elif fence:
            text = "".join(line + "\n" for line in iter(lambda: next(lines), "```"))
            yield fence[1], fence[2], text, fence[3] or ""


def steps(root):
    """The number of each step, and the files of the game at its end: {name: bytes}."""
    files, step, last = {}, 0, None
    for kind, *rest in _blocks(iter((root / "Docs/Your_Game.md").read_text().split("\n"))):
        if kind == "step":
            if step:
                last = {name: text.encode() if isinstance(text, str) else text for name, text in _content(files).items()}
                yield step, last
            step = rest[0]
        elif kind == "picture":
            files[rest[0]] = (root / rest[1]).read_bytes()
        elif kind == "lua":
            put_into(files.setdefault(rest[0], []), rest[1], rest[2])
        elif kind == "text" and rest[0].startswith("hop/"):
            files[rest[0][4:]] = rest[1]
    check_finished(root, last)


def check_finished(root, files):
    """The finished game stands beside the page, too."""
    for file in (root / "Docs/Your_Game").iterdir():
        if files.get(file.name) != file.read_bytes():
            raise ValueError(f"{file} is not what the steps of Docs/Your_Game.md lead to")
