#!/usr/bin/env python3
"""Measures frames a second of 10,000 moving sprites in a window, ours and LÖVE's, and writes the table into
Docs/Performance.md. Needs a display; both programs take turns and neither waits for it.

usage: measure.py [--quick] RUNNER   (--quick: fewer runs, nothing is written)
"""
import os
import re
import statistics
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
BEGIN = "<!-- frames: written by ./bench -->\n"
END = "<!-- end of the frames -->\n"
ROWS = [(8, 1), (8, 4), (32, 1), (32, 4)]  # side of a sprite in pixels, views
SECONDS = 60  # that a run may take


def rate(command):
    result = subprocess.run(command, capture_output=True, text=True, timeout=SECONDS)
    found = re.search(r"frames shown, ([0-9.]+) a second", result.stdout + result.stderr)
    if found is None:
        sys.exit(f"error: '{' '.join(command)}' tells no frames a second:\n{(result.stdout + result.stderr)[-2000:]}")
    return float(found.group(1))


def ours(runner, side, views, frames):
    with tempfile.TemporaryDirectory() as work:
        settings = os.path.join(work, "settings.txt")
        with open(settings, "w") as file:
            file.write(f'settings 1\n"side" = {side}\n"views" = {views}\n')
        return rate([runner, os.path.join(HERE, "sprites.lua"), "--window", "--scale", "1", "--unpaced", "--frames",
                     str(frames), "--out", work, "--settings", settings])


def love(side, views, frames):
    return rate(["love", os.path.join(HERE, "love"), os.path.join(HERE, f"sheet_{side}.png"), str(side), str(views),
                 str(frames)])


def measure(runner, quick):
    lines = ["| Sprites | Views | Ours, frames a second | LÖVE 11.4 | Ratio |\n", "| --- | --- | --- | --- | --- |\n"]
    for side, views in ROWS:
        pairs = [(ours(runner, side, views, 60 if quick else 150), love(side, views, 60 if quick else 150))
                 for _ in range(1 if quick else 5)]
        mine, theirs = (statistics.median(column) for column in zip(*pairs))
        lines.append(f"| 10,000 of {side} x {side} | {views} | {mine:.1f} | {theirs:.1f} | {mine / theirs:.2f} |\n")
        print(lines[-1], end="", flush=True)
    return "".join(lines)


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    if len(arguments) != 1:
        sys.exit("error: " + __doc__.strip().splitlines()[-1])
    load = os.getloadavg()[0]
    table = measure(arguments[0], "--quick" in sys.argv)
    if "--quick" in sys.argv:
        return
    note = os.path.join(HERE, "..", "..", "Docs", "Performance.md")
    with open(note) as file:
        old = file.read()
    begin, end = old.index(BEGIN) + len(BEGIN), old.index(END)
    with open(note, "w") as file:
        file.write(f"{old[:begin]}The machine's load was {load:.1f} when this began.\n\n{table}{old[end:]}")


if __name__ == "__main__":
    main()
