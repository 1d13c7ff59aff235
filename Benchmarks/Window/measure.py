#!/usr/bin/env python3
"""Measures what a window shows, and writes the tables into Docs/Performance.md: frames a second of 10,000 moving sprites,
ours and LÖVE's; how evenly canyon is shown; what the inspector adds; what going back in time takes. Needs a display;
programs that are compared take turns, and neither waits for the display.

usage: measure.py [--quick] RUNNER TIMELINE_TIMES   (--quick: fewer runs, nothing is written)
"""
import os
import re
import statistics
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.dirname(os.path.dirname(HERE))
CANYON = os.path.join(ROOT, "Games", "canyon", "canyon.lua")
ROWS = [(8, 1), (8, 4), (32, 1), (32, 4)]  # side of a sprite in pixels, views
SECONDS = 120  # that a run may take
SHOWN = r"frames shown, ([0-9.]+) a second"


def told(command, pattern):
    """The groups of the pattern in what the command prints."""
    result = subprocess.run(command, capture_output=True, text=True, timeout=SECONDS)
    found = re.search(pattern, result.stdout + result.stderr)
    if found is None or result.returncode != 0:
        sys.exit(f"error: '{' '.join(command)}' does not tell what is measured:\n"
                 f"{(result.stdout + result.stderr)[-2000:]}")
    return found.groups()


def told_in_window(pattern, runner, game, *options, settings=""):
    with tempfile.TemporaryDirectory() as work:
        file = os.path.join(work, "settings.txt")
        with open(file, "w") as written:
            written.write("settings 1\n" + settings)
        return told([runner, game, "--window", "--scale", "1", "--out", work, "--settings", file, *options], pattern)


def rate_in_window(runner, game, frames, *options, settings=""):
    return float(told_in_window(SHOWN, runner, os.path.join(HERE, game), "--unpaced", "--frames", str(frames), *options,
                                settings=settings)[0])


def ours(runner, side, views, frames):
    return rate_in_window(runner, "sprites.lua", frames, settings=f'"side" = {side}\n"views" = {views}\n')


def love(side, views, frames):
    return float(told(["love", os.path.join(HERE, "love"), os.path.join(HERE, f"sheet_{side}.png"), str(side),
                       str(views), str(frames)], SHOWN)[0])


class Table:
    def __init__(self, *columns):
        self.text = ""
        self.row(*columns)
        self.row(*["---"] * len(columns))

    def row(self, *cells):
        line = "| " + " | ".join(cells) + " |\n"
        self.text += line
        print(line, end="", flush=True)


def measure_sprites(runner, quick):
    table = Table("Sprites", "Views", "Ours, frames a second", "LÖVE 11.4", "Ratio")
    for side, views in ROWS:
        pairs = [(ours(runner, side, views, 60 if quick else 150), love(side, views, 60 if quick else 150))
                 for _ in range(1 if quick else 5)]
        mine, theirs = (statistics.median(column) for column in zip(*pairs))
        table.row(f"10,000 of {side} x {side}", str(views), f"{mine:.1f}", f"{theirs:.1f}", f"{mine / theirs:.2f}")
    return table.text


def measure_inspector(runner, quick, table):
    frames = 60 if quick else 300
    pairs = []
    for _ in range(1 if quick else 5):
        plain, inspected = (1000.0 / rate_in_window(runner, "cameras.lua", frames, *more)
                            for more in ([], ["--inspect"]))
        pairs.append((inspected - plain, plain, inspected))
    added, plain, inspected = (statistics.median(column) for column in zip(*pairs))
    table.row("the inspector with 1,000 cameras, a frame", f"{added:+.2f} ms", "at most 2 ms",
              f"{plain:.2f} ms without, {inspected:.2f} ms with it")


def measure_window(runner, timeline_times, quick):
    table = Table("What", "Measured", "Wanted", "Remark")
    seconds = "3" if quick else "10"
    for name, game, wanted in [("A thousand cameras", os.path.join(HERE, "cameras.lua"), "99 %"),
                               ("`canyon`, which takes all of both cores,", CANYON, "")]:
        frames, mean, within, longest = told_in_window(
            r"(\d+) frames, ([0-9.]+) ms each; ([0-9.]+) % within 2 ms of that, the longest ([0-9.]+) ms", runner, game,
            "--pace", seconds)
        table.row(f"{name} shown for {seconds} s: frames within 2 ms of the mean", f"{within} %", wanted,
                  f"{frames} frames, {mean} ms each, the longest {longest} ms")
    measure_inspector(runner, quick, table)
    reload, speed, middle, longest, kept = told(
        [timeline_times, CANYON],
        r"frame 3600: ([0-9.]+) s \((\d+) .*\n.*: ([0-9.]+) s in the middle .* longest ([0-9.]+) s\nkept states: (.*)")
    table.row("`canyon` starts anew up to the end of its first minute", f"{reload} s", "at most 1.5 s",
              f"{speed} frames a second, the last three painted")
    table.row("going to any frame of five minutes of `canyon`", f"{longest} s", "at most 0.5 s",
              f"the longest of 40 ways, {middle} s in the middle; kept states: {kept}")
    return table.text


def write(name, text):
    begin, end = f"<!-- {name}: written by ./bench -->\n", f"<!-- end of the {name} -->\n"
    note = os.path.join(ROOT, "Docs", "Performance.md")
    with open(note) as file:
        old = file.read()
    first, last = old.index(begin) + len(begin), old.index(end)
    with open(note, "w") as file:
        file.write(old[:first] + text + old[last:])


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    quick = "--quick" in sys.argv
    if len(arguments) != 2:
        sys.exit("error: " + __doc__.strip().splitlines()[-1])
    load = f"The machine's load was {os.getloadavg()[0]:.1f} when this began.\n\n"
    sprites = measure_sprites(arguments[0], quick)
    window = measure_window(*arguments, quick)
    if not quick:
        write("frames", load + sprites)
        write("times", load + window)


if __name__ == "__main__":
    main()
