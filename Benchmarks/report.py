#!/usr/bin/env python3
"""Prints the table of a measurement and writes it into Docs/Performance.md and Docs/performance.svg.

usage: report.py [--quick] MEASURED   (--quick: prints only)
"""
import json
import os
import sys
from html import escape

MATRIX_PEERS = ["cglm", "Eigen", "glm", "glm SIMD"]
ALL = 256  # matrices of one iteration

# subject, how many things one iteration does, the peers that the ratio goes by, others that are shown
SUBJECTS = [
    ("rebuild of a flat camera", 1, MATRIX_PEERS, ["scalar"]),
    ("inverse, general", ALL, MATRIX_PEERS, ["scalar"]),
    ("inverse, view", ALL, MATRIX_PEERS, ["scalar"]),
    ("inverse, parallel projection", ALL, MATRIX_PEERS, ["scalar"]),
    ("inverse, flat view and projection", ALL, MATRIX_PEERS, ["scalar"]),
    ("step after a moving target", 1, ["glm", "glm SIMD"], []),
    ("step of an unchanged view", 1, ["glm", "glm SIMD"], []),
    ("camera by identifier, 8 cameras", 1, ["hash map"], ["array"]),
    ("camera by identifier, 1024 cameras", 1, ["hash map"], ["array"]),
    ("camera by identifier, 32768 cameras", 1, ["hash map"], ["array"]),
    ("camera by identifier, 262144 cameras", 1, ["hash map"], ["array"]),
    ("update around a script, 8 cameras", 1, [], []),
    ("update around a script, 10000 cameras", 1, [], []),
    ("getter built-in", 1, ["direct"], []),
    ("create and destroy, table of 8", 1, ["malloc"], []),
    ("create and destroy, table of 100000", 1, ["malloc"], []),
    ("save a camera", 1, ["naive"], ["memcpy"]),
    ("load a camera", 1, ["naive"], ["memcpy"]),
    ("BMP of 1920 x 1080", 1, ["libyuv"], ["naive"]),
    ("BMP of 64 x 64", 1, ["libyuv"], ["naive"]),
    ("BMP of 1920 x 1080, baseline", 1, ["naive"], []),
    ("BMP of 64 x 64, baseline", 1, ["naive"], []),
    ("PNG of 1920 x 1080", 1, ["libpng"], ["libspng", "lodepng", "stb"]),
    ("collection with 10,000 callbacks", 1, [], []),
    ("frame, 100,000 instances, 8 views", 1, [], []),
]

BEGIN = "<!-- table: written by ./bench -->\n"
END = "<!-- end of the table -->\n"


def fastest(figures, subject, rivals):
    return min(rivals, key=lambda who: figures[f"{subject}/{who}"])


class Row:
    def __init__(self, measured, subject, times, rivals, others):
        self.subject = subject
        self.measured = measured
        self.times = times
        self.peers = rivals + others
        self.ours = self.of("baseline", "ours")
        self.rival = fastest(measured["baseline"], subject, rivals) if rivals else None
        self.ratio = self.ratio_in("baseline", rivals)
        self.ratio_v3 = self.ratio_in("v3", rivals)

    def of(self, figures, who):
        return self.measured[figures][f"{self.subject}/{who}"] / self.times

    def ratio_in(self, build, rivals):
        if not rivals:
            return None
        return self.of(build, "ours") / self.of(build, fastest(self.measured[build], self.subject, rivals))

    def instructions(self, counts):
        if f"{self.subject}/ours" not in self.measured[counts]:
            return ""
        return f"{self.of(counts, 'ours'):.0f} / {self.of(counts, self.rival):.0f}"

    def cells(self):
        peers = ", ".join(f"{who} {duration(self.of('baseline', who))}" for who in self.peers)
        return [self.subject, duration(self.ours), peers, self.rival or "", ratio(self.ratio), ratio(self.ratio_v3),
                self.instructions("instructions"), self.instructions("arm")]


def duration(ns):
    for unit, size in (("ms", 1e6), ("us", 1e3)):
        if ns >= size:
            return f"{ns / size:.3g} {unit}" if ns < 1000 * size else f"{ns / size:.0f} {unit}"
    return f"{ns:.3g} ns"


def ratio(value):
    return "" if value is None else f"{value:.2f}" if value < 100 else f"{value:.0f}"


def table(rows):
    head = ["Row", "Ours", "Peers", "Against", "Ratio", "Ratio, v3", "Instructions", "ARM instructions"]
    lines = [head, ["---"] * len(head)] + [row.cells() for row in rows]
    return "".join("| " + " | ".join(line) + " |\n" for line in lines)


def stated(measured):
    return (f"Measured on one core of {measured['cores']} of an {measured['processor']}; the machine's load was "
            f"{measured['load']:.1f} when the run began.\n\n")


# ---- the chart ----

STYLE = """text { font: 13px sans-serif; fill: #24292f } .faint { fill: #6e7781 } .line { stroke: #6e7781 }
.faster { fill: #2f81f7 } .slower { fill: #d4762c }
@media (prefers-color-scheme: dark) { text { fill: #e6edf3 } .faint { fill: #9198a1 } .line { stroke: #9198a1 } }"""
LEFT, WIDTH, STEP, TOP, MOST = 270, 400, 24, 46, 2.0  # pixels, and the longest bar's ratio


def bar(row, y):
    length = min(row.ratio, MOST) / MOST * WIDTH
    kind = "faster" if row.ratio <= 1.0 else "slower"
    more = " ..." if row.ratio > MOST else ""
    label = LEFT + max(length, WIDTH / MOST) + 6  # never across the line
    return (f'<text x="{LEFT - 8}" y="{y + 12}" text-anchor="end">{escape(row.subject)}</text>'
            f'<rect class="{kind}" x="{LEFT}" y="{y}" width="{length:.1f}" height="16" rx="2"/>'
            f'<text x="{label:.1f}" y="{y + 12}">{ratio(row.ratio)}{more} '
            f'<tspan class="faint">of {escape(row.rival)}</tspan></text>\n')


def chart(rows):
    compared = [row for row in rows if row.ratio is not None]
    height = TOP + STEP * len(compared) + 8
    one = LEFT + WIDTH / MOST
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" width="840" height="{height}" viewBox="0 0 840 {height}">\n'
             f'<style>{STYLE}</style>\n'
             f'<text x="{LEFT}" y="18">Time of ours over the fastest peer\'s: shorter is faster, 1 is equal</text>\n'
             f'<line class="line" x1="{one}" y1="{TOP - 18}" x2="{one}" y2="{height - 8}" stroke-dasharray="3 3"/>\n']
    parts += [bar(row, TOP + STEP * i) for i, row in enumerate(compared)]
    return "".join(parts) + "</svg>\n"


def write(path, text):
    with open(path, "w") as file:
        file.write(text)


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    if len(arguments) != 1:
        sys.exit("error: " + __doc__.strip().splitlines()[-1])
    with open(arguments[0]) as file:
        measured = json.load(file)
    rows = [Row(measured, *subject) for subject in SUBJECTS]
    text = stated(measured) + table(rows)
    print(text, end="")
    if "--quick" in sys.argv:
        return
    docs = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "Docs")
    note = os.path.join(docs, "Performance.md")
    with open(note) as file:
        old = file.read()
    begin, end = old.index(BEGIN) + len(BEGIN), old.index(END)
    write(note, old[:begin] + text + old[end:])
    write(os.path.join(docs, "performance.svg"), chart(rows))


if __name__ == "__main__":
    main()
