#!/usr/bin/env python3
"""Runs the benchmarks' two builds and counts instructions; writes what came out as one JSON file.

usage: measure.py [--quick] BASELINE_PROGRAM V3_PROGRAM OUTPUT
"""
import json
import os
import platform
import re
import subprocess
import sys
import tempfile

# Rows where a difference of a few nanoseconds matters: counted, too. With the iterations that one count takes.
COUNTED = {
    "rebuild of a flat camera": 1600,
    "inverse, general": 20,
    "inverse, view": 20,
    "inverse, parallel projection": 20,
    "inverse, flat view and projection": 20,
    "step after a moving target": 1600,
    "step of an unchanged view": 1600,
    "camera by identifier, 1024 cameras": 16384,
    "getter built-in": 10000,
    "create and destroy, table of 8": 5000,
    "save a camera": 1000,
    "load a camera": 1000,
    "BMP of 64 x 64": 200,
}


def fail(text):
    sys.exit(f"error: {text}")


def run(command):
    result = subprocess.run(command, capture_output=True, text=True)
    if result.returncode != 0:
        fail(f"'{' '.join(command)}' failed:\n{result.stderr.strip()[-2000:]}")
    return result


def last_core():
    return str(max(os.sched_getaffinity(0)))


def measure(program, save_area, quick):
    """Medians of processor time in nanoseconds, by row."""
    out = os.path.join(save_area, "out.json")
    run(["taskset", "-c", last_core(), program, f"--save-area={save_area}", f"--benchmark_out={out}",
         "--benchmark_out_format=json", "--benchmark_enable_random_interleaving=true",
         f"--benchmark_repetitions={3 if quick else 9}", f"--benchmark_min_time={0.01 if quick else 0.05}"])
    with open(out) as file:
        rows = json.load(file)["benchmarks"]
    to_ns = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    return {row["run_name"]: row["cpu_time"] * to_ns[row["time_unit"]] for row in rows
            if row.get("aggregate_name") == "median"}


def count_once(program, save_area, row, iterations):
    result = run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={save_area}/callgrind", program,
                  f"--save-area={save_area}", f"--iterations={iterations}",
                  f"--benchmark_filter=^{row}/iterations:"])
    return int(re.search(r"Collected : (\d+)", result.stderr).group(1))


def count(program, save_area, rows):
    """Instructions of one iteration, by row: the difference between two lengths of the same run."""
    counts = {}
    for row in rows:
        iterations = COUNTED.get(row.rsplit("/", 1)[0])
        if iterations:
            once, twice = (count_once(program, save_area, row, n * iterations) for n in (1, 2))
            if twice <= once:
                fail(f"no instructions were counted for the row '{row}'")
            counts[row] = (twice - once) / iterations
    return counts


def processor():
    with open("/proc/cpuinfo") as file:
        match = re.search(r"model name\s*: (.*)", file.read())
    return match.group(1) if match else platform.machine()


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    quick = "--quick" in sys.argv
    if len(arguments) != 3:
        fail(__doc__.strip().splitlines()[-1])
    baseline, v3, output = arguments
    load = os.getloadavg()[0]
    with tempfile.TemporaryDirectory() as save_area:
        measured = {"processor": processor(), "cores": os.cpu_count(), "load": load,
                    "baseline": measure(baseline, save_area, quick), "v3": measure(v3, save_area, quick)}
        measured["instructions"] = {} if quick else count(baseline, save_area, measured["baseline"])
    with open(output, "w") as file:
        json.dump(measured, file, indent=1)


if __name__ == "__main__":
    main()
