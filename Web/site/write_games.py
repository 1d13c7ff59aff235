"""Writes the manual's games as files: python3 write_games.py ROOT OUT

OUT/index.json lists them in the order of the pages: [{ "id", "page", "main", "files" }]; OUT/ID/FILE holds each file. The
games' pages, the playground (#example=ID) and the tests read these.
"""
import json
import pathlib
import shutil
import sys

import games


def write(root, out):
    shutil.rmtree(out, ignore_errors=True)
    rows = []
    for game in games.all_games(root):
        if any(row["id"] == game.id for row in rows):
            sys.exit(f"error: two games are named {game.id}")
        rows.append({"id": game.id, "page": game.page, "main": game.main, "files": list(game.files)})
        for name, content in game.files.items():
            path = out / game.id / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(content)
    (out / "index.json").write_text(json.dumps(rows, indent=1) + "\n")
    return len(rows)


if __name__ == "__main__":
    print(write(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])), "games")
