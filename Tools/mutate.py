#!/usr/bin/env python3
"""Changes the module in one place at a time and runs its tests: a change that no test notices is a gap in the tests, or
changes nothing. The tests are built once; of a mutant only the changed file is compiled, and linked before the archive.

    mutate.py [--every N] [--jobs N] [--afresh] [--kept] [FILE...]

Without a FILE, all sources and headers of Files/Graphics. --every N takes each Nth mutant, for an estimate. Results are
kept in out/mutation/results.jsonl, and a run goes on where the last one ended: what was killed stays killed while its
file is the same, and what survived is tried again when a test has changed. --afresh forgets them; --kept tells them and
tries nothing.

A mutant whose object files at -O2 are those of the module is left out: the compiler has proved it equivalent. Others that
are equivalent stand in Tools/equivalent_mutants.txt, with the reason."""

import argparse
import concurrent.futures
import glob
import hashlib
import json
import os
import queue
import resource
import shlex
import signal
import subprocess
import sys
import threading
import time

from listed_reasons import read_entries
from mutants import Source, find_mutants

ROOT = os.getcwd()
BUILD = os.path.join(ROOT, "build/mutation")
OUT = "out/mutation"
LIST = "Tools/equivalent_mutants.txt"
INSTANT = 0.02  # seconds
SLOW = 0.005  # tests that take more than this part of the whole time come last
HOUR = 3600  # a test that waits for ever takes no processor time
MEMORY = 6 << 30  # bytes of address space, against mutants that ask for ever more
# Of a header, inline functions that the module does not call are compiled, too: tests call them, and the linker takes
# the first copy.
EVERY_FUNCTION = ("-femit-all-decls",)
# Stops at once where a change makes the module do what is undefined, such as reading behind an array.
TRAPS = ("-fsanitize=undefined", "-fno-sanitize=vptr,function", "-fsanitize-trap=all")
REPEATED = ("refused", "identical", "killed")


def sum_of(*paths):
    total = hashlib.sha256()
    for path in paths:
        with open(path, "rb") as file:
            total.update(file.read())
    return total.hexdigest()[:16]


class Tests:
    """The built program: its tests by source and time, and how it is linked."""

    def __init__(self):
        self.sum = sum_of(*sorted(glob.glob("Tests/Module/*") + glob.glob("Tests/Support/*")))
        commands = subprocess.run(["ninja", "-C", BUILD, "-t", "commands", "Tests/module_tests"], check=True,
                                  capture_output=True, text=True).stdout.strip().split("\n")
        self.link = shlex.split(commands[-1].replace(": &&", "", 1).rsplit("&& :", 1)[0])
        self.times, self.suites = {}, {}
        self.read_times()

    def read_times(self):
        """Runs the tests once without any change, unless that was done since they were built."""
        program, out = os.path.join(BUILD, "Tests/module_tests"), os.path.join(BUILD, "times.json")
        if not os.path.exists(out) or os.path.getmtime(out) < os.path.getmtime(program):
            run = subprocess.run([program, "--gtest_brief=1", f"--gtest_output=json:{out}.new"], capture_output=True,
                                 text=True, check=False)
            if run.returncode != 0:
                raise SystemExit(f"error: the tests fail without any change:\n{run.stdout[-2000:]}")
            os.replace(out + ".new", out)
        with open(out, encoding="utf-8") as file:
            for suite in json.load(file)["testsuites"]:
                for test in suite["testsuite"]:
                    name = f"{suite['name']}.{test['name']}"
                    self.times[name] = float(test["time"].rstrip("s"))
                    self.suites.setdefault(os.path.basename(test["file"]).replace("_test.cpp", ""), set()).add(suite["name"])

    def phases(self, path):
        """Filters of the tests in their order, each with its usual time: the instant ones, which nearly all are; then
        those of the file, the other quick ones, and the slow."""
        stem = os.path.splitext(os.path.basename(path))[0]
        own = {suite for name, suites in self.suites.items() for suite in suites
               if name.startswith(stem) or stem.startswith(name)}
        longest = SLOW * sum(self.times.values())
        left = {name for name, seconds in self.times.items() if seconds >= INSTANT}
        slow = {name for name in left if self.times[name] >= longest}
        of_file = {name for name in left - slow if name.split(".")[0] in own}
        time_of = lambda names: sum(self.times[name] for name in names)
        phases = [("-" + ":".join(sorted(left)), time_of(set(self.times) - left))]
        phases += [(":".join(sorted(names)), time_of(names)) for names in (of_file, left - slow - of_file, slow) if names]
        return phases


class Units:
    """The module's translation units: how each is compiled, and which files it reads."""

    def __init__(self):
        with open(os.path.join(BUILD, "compile_commands.json"), encoding="utf-8") as file:
            commands = json.load(file)
        self.commands, self.reads = {}, {}
        for command in commands:
            name = os.path.relpath(command["file"], ROOT)
            if name.startswith("Files/Graphics/") and "camera_module" in command["command"]:
                self.commands[name] = self.without_output(shlex.split(command["command"]))
        if not self.commands:
            raise SystemExit("error: the build has no source of the module")

    @staticmethod
    def without_output(words):
        kept, skip = [], False
        for word in words:
            if skip:
                skip = False
            elif word in ("-o", "-c"):
                skip = True
            elif not word.startswith(("-O", "-W")):
                kept.append(word)
        return [*kept, "-w"]

    def find(self, files):
        """The mutants of the files in their order, and in self.reads the files of each unit."""
        sources = {}
        for name in files:
            with open(name, "rb") as file:
                sources[os.path.join(ROOT, name)] = Source(name, file.read())
        for unit, command in self.commands.items():
            read = find_mutants(os.path.join(ROOT, unit), command[1:], sources)
            self.reads[unit] = {os.path.relpath(name, ROOT) for name in read}
        return [mutant for source in sources.values() for mutant in source.sorted_mutants()]

    def of(self, path):
        return [unit for unit, read in self.reads.items() if path in read]


class Workplace:
    """A folder in which one mutant at a time is compiled, linked and tested."""

    def __init__(self, number, units, tests):
        self.folder = os.path.join(BUILD, f"work/{number}")
        self.units, self.tests, self.originals, self.path = units, tests, {}, ""
        os.makedirs(os.path.join(self.folder, "Files/Graphics"), exist_ok=True)
        for old in glob.glob(os.path.join(self.folder, "Files/Graphics/*")):
            os.remove(old)

    def put(self, name, content):
        with open(os.path.join(self.folder, name), "wb") as file:
            file.write(content)

    def compile(self, unit, level):
        """The unit's object file; None when it does not compile. Compiled by a relative name, which objects hold."""
        target = os.path.join(self.folder, os.path.basename(unit) + level + ".o")
        words = self.units.commands[unit]
        options = [level, "-g0", *(EVERY_FUNCTION if self.path.endswith(".h") else ()), *(TRAPS if level == "-O0" else ())]
        run = subprocess.run([words[0], f"-I{self.folder}", *words[1:], *options, "-c", unit, "-o", target],
                             cwd=self.folder, capture_output=True, check=False)
        return target if run.returncode == 0 else None

    def bytes_of(self, unit):
        target = self.compile(unit, "-O2")
        with open(target, "rb") as file:
            return file.read()

    def prepare(self, path, content):
        """Every unit that reads the file stands in the folder, and compiles without a change."""
        self.path = path
        for old in glob.glob(os.path.join(self.folder, "Files/Graphics/*")):
            os.remove(old)
        for unit in self.units.of(path):
            with open(unit, "rb") as file:
                self.put(unit, file.read())
        self.put(path, content)
        if None in [self.compile(unit, "-O0") for unit in self.units.of(path)]:
            raise SystemExit(f"error: {path} does not compile here without any change")
        self.originals = {}

    def is_identical(self, mutant, content):
        units = self.units.of(mutant.file)
        for unit in units:
            if unit not in self.originals:
                self.put(mutant.file, content)
                self.originals[unit] = self.bytes_of(unit)
        self.put(mutant.file, mutant.applied(content))
        return all(self.bytes_of(unit) == self.originals[unit] for unit in units)

    def link(self, objects):
        words = list(self.tests.link)
        words[words.index("-o") + 1] = program = os.path.join(self.folder, "module_tests")
        first = next(at for at, word in enumerate(words) if word.endswith(".o"))
        run = subprocess.run([*words[:first], *objects, *words[first:]], cwd=BUILD, capture_output=True, check=False)
        return program if run.returncode == 0 else None

    def run_tests(self, program, tests, usual):
        """What ended the tests: the name of the first that failed, "a crash", "no end", or None when all passed."""
        limit = 2 * usual + 2  # seconds of processor time: a machine that has other work makes no mutant slow

        def bound():
            resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
            resource.setrlimit(resource.RLIMIT_CPU, (int(limit), int(limit) + 1))

        try:
            run = subprocess.run([program, "--gtest_brief=1", "--gtest_fail_fast"], env={**os.environ, "GTEST_FILTER": tests},
                                 cwd=self.folder, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=HOUR,
                                 preexec_fn=bound, check=False)
        except subprocess.TimeoutExpired:
            return "no end"
        if run.returncode == 0:
            return None
        if run.returncode in (-signal.SIGXCPU, -signal.SIGKILL):
            return "no end"
        failed = [line for line in run.stdout.decode(errors="replace").split("\n") if line.startswith("[  FAILED  ] ")]
        return failed[0].split()[3].rstrip(",") if failed else "a crash"

    def judge(self, mutant, content):
        if self.path != mutant.file:
            self.prepare(mutant.file, content)
        self.put(mutant.file, mutant.applied(content))
        objects = [self.compile(unit, "-O0") for unit in self.units.of(mutant.file)]
        if None in objects:
            return "refused", "by the compiler"
        program = self.link(objects)
        if program is None:
            return "refused", "by the linker"
        for number, (tests, usual) in enumerate(self.tests.phases(mutant.file)):
            if number == 1 and self.is_identical(mutant, content):
                return "identical", "at -O2"
            ended = self.run_tests(program, tests, usual)
            if ended is not None:
                return "killed", ended
        return "survived", ""


class Results:
    """What was found so far, kept in a file, a line for each mutant."""

    def __init__(self, tests_sum, afresh):
        os.makedirs(OUT, exist_ok=True)
        self.path, self.tests_sum, self.known, self.lock = os.path.join(OUT, "results.jsonl"), tests_sum, {}, threading.Lock()
        if afresh and os.path.exists(self.path):
            os.remove(self.path)
        if os.path.exists(self.path):
            with open(self.path, encoding="utf-8") as file:
                for line in file:
                    if line.endswith("\n"):
                        record = json.loads(line)
                        self.known[tuple(record["key"])] = record

    @staticmethod
    def key(mutant, content_sum):
        return (mutant.file, content_sum, *mutant.key())

    def get(self, mutant, content_sum):
        record = self.known.get(self.key(mutant, content_sum))
        if record is not None and (record["result"] in REPEATED or record["tests"] == self.tests_sum):
            return record["result"], record["by"]
        return None

    def keep(self, mutant, content_sum, result, by):
        record = {"key": self.key(mutant, content_sum), "tests": self.tests_sum, "result": result, "by": by}
        with self.lock, open(self.path, "a", encoding="utf-8") as file:
            file.write(json.dumps(record) + "\n")


def listed_entry(entries, mutant):
    for entry in entries:
        if entry["file"] == mutant.file and entry["line"] == mutant.text and entry["change"] == mutant.change():
            return entry
    return None


def run(mutants, contents, sums, results, units, tests, jobs):
    """Judges every mutant that has no result yet; without jobs, leaves it out. Yields each with its result."""
    if jobs == 0:
        for mutant in mutants:
            known = results.get(mutant, sums[mutant.file])
            if known is not None:
                yield mutant, known
        return
    places = queue.Queue()
    for number in range(jobs):
        places.put(Workplace(number, units, tests))

    def judge(mutant):
        known = results.get(mutant, sums[mutant.file])
        if known is not None:
            return mutant, known
        place = places.get()
        try:
            result = place.judge(mutant, contents[mutant.file])
        finally:
            places.put(place)
        results.keep(mutant, sums[mutant.file], *result)
        return mutant, result

    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        yield from pool.map(judge, mutants)


COLUMNS = ("mutants", "refused", "identical", "listed", "killed", "survived")


def table(found):
    """Counts by file, and the share killed of those that compile and are not identical."""
    counts = {}
    for mutant, result in found:
        for name in (mutant.file, "all"):
            row = counts.setdefault(name, dict.fromkeys(COLUMNS, 0))
            row["mutants"] += 1
            row[result] += 1
    lines = [f"{'':<40}" + "".join(f"{column:>10}" for column in COLUMNS) + "  killed of all   of those not listed"]
    for name, row in counts.items():
        tried = row["killed"] + row["survived"]
        share = lambda whole: f"{100.0 * row['killed'] / whole:.1f} %" if whole else "-"
        lines.append(f"{name:<40}" + "".join(f"{row[column]:>10}" for column in COLUMNS) +
                     f"{share(tried + row['listed']):>15} {share(tried):>15}")
    return lines, counts.get("all", dict.fromkeys(COLUMNS, 0))


def as_entry(mutant):
    return f"file: {mutant.file}\nline: {mutant.text}\nchange: {mutant.change()}\n"


def judged_by_list(found, entries):
    """The results, with what the list calls equivalent told apart; and the faults of the list."""
    told, faults = [], []
    for mutant, (result, by) in found:
        entry = listed_entry(entries, mutant)
        if entry is not None:
            entry.used = True
            if result == "killed":
                faults.append(f"{entry.place}: is not equivalent: {by} notices it: take the entry out")
            elif result == "survived":
                result = "listed"
            else:
                faults.append(f"{entry.place}: is {result} and needs no entry: take it out")
        told.append((mutant, result))
    return told, faults


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--every", type=int, default=1)
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--afresh", action="store_true")
    parser.add_argument("--kept", action="store_const", dest="jobs", const=0)
    parser.add_argument("files", nargs="*")
    options = parser.parse_args()

    files = options.files or sorted(glob.glob("Files/Graphics/*.cpp") + glob.glob("Files/Graphics/*.h"))
    missing = [name for name in files if not os.path.exists(name)]
    if missing:
        raise SystemExit(f"error: {missing[0]}: there is no such file")
    start, tests, units = time.monotonic(), Tests(), Units()
    mutants = units.find(files)
    entries = [entry for entry in read_entries(LIST, ("file", "line", "change", "reason")) if entry["file"] in files]
    stale = [f"{entry.place}: no mutant is this change of this line: take the entry out" for entry in entries
             if not any(listed_entry([entry], mutant) for mutant in mutants)]
    mutants = mutants[:: options.every]

    contents = {}
    for name in {mutant.file for mutant in mutants}:
        with open(name, "rb") as file:
            contents[name] = file.read()
    sums = {name: sum_of(name) for name in contents}
    results = Results(tests.sum, options.afresh)
    found = []
    for mutant, result in run(mutants, contents, sums, results, units, tests, options.jobs):
        found.append((mutant, result))
        if result[0] == "survived":
            print(f"survived: {mutant.file}:{mutant.line}:{mutant.column}: {mutant.change()}", flush=True)

    told, faults = judged_by_list(found, entries)
    lines, all_of_them = table(told)
    survivors = [as_entry(mutant) for mutant, result in told if result == "survived"]
    with open(os.path.join(OUT, "report.txt"), "w", encoding="utf-8") as report:
        report.write("\n".join(lines) + "\n\nSurvivors:\n\n" + "\n".join(survivors))
    print("\n".join(lines))
    print(f"{time.monotonic() - start:.0f} s; {OUT}/report.txt has the survivors, written as {LIST} would have them")
    for fault in stale + faults:
        print(fault, file=sys.stderr)
    tried = all_of_them["killed"] + all_of_them["survived"] + all_of_them["listed"]
    return 1 if stale or faults or survivors or all_of_them["killed"] < 0.95 * tried else 0


if __name__ == "__main__":
    sys.exit(main())
