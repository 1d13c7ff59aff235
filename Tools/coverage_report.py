#!/usr/bin/env python3
"""Writes the table of lines and branches that the tests run, from what `llvm-cov export` says, and holds it against
limits. What may stay unrun stands in a list with its reason; an entry that matches nothing unrun any more is an error.

    coverage_report.py EXPORT.json REPORT.txt EXCEPTIONS.txt FOLDER=LINES,BRANCHES...

FOLDER=100,100 asks for all lines and branches of the sources in that folder but the listed ones. The percentages of the
table are those of what is left when the listed ones are taken out.
"""

import json
import os
import sys

from listed_reasons import read_entries


class Source:
    """One source file: its lines, the count of each line that has code, the counts of both sides of each condition."""

    def __init__(self, name, exported):
        self.name = name
        with open(name, encoding="utf-8") as file:
            self.text = file.read().split("\n")
        self.lines = line_counts(exported["segments"])
        self.branches = branch_counts(exported["branches"], self)
        self.excused = []  # texts for the report

    def line(self, number):
        return self.text[number - 1].strip()

    def condition(self, key):
        first, left, last, right = key
        if first == last:
            return self.text[first - 1][left - 1 : right - 1]
        middle = [line.strip() for line in self.text[first : last - 1]]
        return " ".join([self.text[first - 1][left - 1 :].strip(), *middle, self.text[last - 1][: right - 1].strip()])

    def unrun_lines(self):
        return [number for number, count in sorted(self.lines.items()) if count == 0]

    def unrun_sides(self):
        return [(key, side) for key, counts in sorted(self.branches.items()) for side in (0, 1) if counts[side] == 0]


def line_counts(segments):
    """The counts by line, as llvm-cov reckons them: a line's count is the highest of the regions that begin on it and of
    the one that goes on from the line before. A segment is [line, column, count, has count, begins a region, is a gap]."""
    counts, wrapped, at = {}, None, 0
    last = segments[-1][0] if segments else 0
    for line in range(segments[0][0] if segments else 1, last + 1):
        here = []
        while at < len(segments) and segments[at][0] == line:
            here.append(segments[at])
            at += 1
        begins = [s for s in here if s[3] and s[4] and not s[5]]
        skipped = here and not here[0][3] and here[0][4]
        if not skipped and ((wrapped is not None and wrapped[3]) or begins):
            count = wrapped[2] if wrapped is not None and wrapped[3] else 0
            counts[line] = max([count, *(s[2] for s in begins)])
        if here:
            wrapped = here[-1]
    return counts


def branch_counts(exported, source):
    """How often each condition was true and false, over all instances of a template. What the compiler itself decides,
    such as a constant of a template, has no count and is left out."""
    counts = {}
    for branch in exported:
        key = tuple(branch[:4])
        true, false = counts.get(key, (0, 0))
        counts[key] = (true + branch[4], false + branch[5])
    return {key: sides for key, sides in counts.items() if not is_decided_by_compiler(key, sides, source)}


def is_decided_by_compiler(key, sides, source):
    return sides == (0, 0) and "constexpr" in source.line(key[0])


SIDES = ("true", "false")


def function_lines(source, head):
    """The numbers of a function's lines: from the line that begins with its head to the next closing brace in the same
    column."""
    for number, line in enumerate(source.text, 1):
        if line.strip().startswith(head):
            end = line[: len(line) - len(line.lstrip())] + "}"
            for last in range(number, len(source.text) + 1):
                if source.text[last - 1].startswith(end):
                    return range(number, last + 1)
    return range(0)


def unmeasured(folder, sources, entries):
    """The folder's sources that were not compiled for this measurement and are not listed. An entry without a line or a
    function lists one."""
    measured = {source.name for source in sources}
    for path, _, names in sorted(os.walk(folder)):
        for name in sorted(names):
            name = os.path.join(path, name)
            if not name.endswith(".cpp") or name in measured:
                continue
            entry = next((entry for entry in entries if entry["file"] == name and not {"line", "function"} & set(entry)), None)
            if entry is None:
                yield f"{name}: was not measured"
            else:
                entry.used = True


def excuse(source, entry):
    """Takes out of the source what an entry names."""
    if "function" in entry:
        numbers = function_lines(source, entry["function"])
        wanted = lambda number: number in numbers
    else:
        wanted = lambda number: source.line(number) == entry.get("line")
    if "never" in entry:
        sides = [(key, side) for key, side in source.unrun_sides()
                 if wanted(key[0]) and f"{source.condition(key)} is {SIDES[side]}" == entry["never"]]
    else:
        sides = [(key, side) for key, side in source.unrun_sides() if wanted(key[0])]
        for number in [number for number in source.unrun_lines() if wanted(number)]:
            del source.lines[number]
            entry.used = True
    for key, side in sides:
        true, false = source.branches[key]
        source.branches[key] = (None, false) if side == 0 else (true, None)
        entry.used = True
    if entry.used:
        what = entry.get("never") or entry.get("function") or entry.get("line")
        source.excused.append(f"{source.name}: {what}\n    {entry['reason']}")


def tally(sources):
    """Lines, lines run, branches, branches run."""
    lines = [count for source in sources for count in source.lines.values()]
    sides = [count for source in sources for pair in source.branches.values() for count in pair if count is not None]
    return len(lines), sum(1 for count in lines if count), len(sides), sum(1 for count in sides if count)


def percent(part, whole):
    return 100.0 * part / whole if whole else 100.0


def row(name, figures):
    lines, lines_run, sides, sides_run = figures
    return (f"{name:<52} {lines_run:>6} of {lines:>6} {percent(lines_run, lines):>7.2f} %"
            f" {sides_run:>6} of {sides:>6} {percent(sides_run, sides):>7.2f} %")


def gaps(source):
    for number in source.unrun_lines():
        yield f"{source.name}:{number}: not run: {source.line(number)}"
    for key, side in source.unrun_sides():
        if source.lines.get(key[0], 0):
            yield f"{source.name}:{key[0]}: never {SIDES[side]}: {source.condition(key)}"


def load_sources(path, folders):
    with open(path, encoding="utf-8") as file:
        exported = json.load(file)["data"][0]["files"]
    sources = []
    for item in exported:
        name = os.path.relpath(item["filename"])
        if any(name.startswith(folder + "/") for folder in folders):
            sources.append(Source(name, item))
    return sorted(sources, key=lambda source: source.name)


def write_report(path, sources, folders):
    with open(path, "w", encoding="utf-8") as report:
        report.write(f"{'':<52} {'lines run':>24} {'branches taken':>26}\n")
        for folder in folders:
            inside = [source for source in sources if source.name.startswith(folder + "/")]
            report.write("".join(row(source.name, tally([source])) + "\n" for source in inside))
            report.write(row(f"all of {folder}", tally(inside)) + "\n\n")
        report.write("Left out of the figures, with the reason:\n")
        report.write("".join(text + "\n" for source in sources for text in source.excused))
        report.write("\nNot run, and not left out:\n")
        report.write("".join(text + "\n" for source in sources for text in gaps(source)))


def main(export, report, exceptions, *limits):
    folders = {}
    for limit in limits:
        folder, _, figures = limit.partition("=")
        folders[folder] = tuple(float(figure) for figure in figures.split(","))
    sources = load_sources(export, folders)
    failures = []
    entries = read_entries(exceptions, ("file", "reason"), ("line", "function", "never"))
    for folder in folders:
        failures += unmeasured(folder, sources, entries)
    for entry in entries:
        for source in sources:
            if source.name == entry["file"]:
                excuse(source, entry)
        if not entry.used and any(entry["file"].startswith(folder + "/") for folder in folders):
            failures.append(f"{entry.place}: nothing of {entry['file']} that is not run matches this entry: take it out")
    write_report(report, sources, folders)
    for folder, (least_lines, least_sides) in folders.items():
        inside = [source for source in sources if source.name.startswith(folder + "/")]
        figures = tally(inside)
        print(row(f"all of {folder}", figures))
        if percent(figures[1], figures[0]) < least_lines or percent(figures[3], figures[2]) < least_sides:
            failures.append(f"{folder}: below {least_lines:g} % of lines or {least_sides:g} % of branches; {report} says where")
            failures += [text for source in inside for text in gaps(source)][:20]
    for failure in failures:
        print(failure, file=sys.stderr)
    return 1 if failures else 0


if __name__ == "__main__":
    if len(sys.argv) < 5:
        raise SystemExit(__doc__)
    sys.exit(main(*sys.argv[1:]))
