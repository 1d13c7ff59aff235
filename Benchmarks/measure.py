#!/usr/bin/env python3
"""Runs the benchmarks' builds and counts instructions; writes what came out as one JSON file.

usage: measure.py [--quick] BASELINE V3 OUTPUT [ARM]   (build folders; --quick: fewer repetitions, nothing is counted)
"""
import json
import os
import platform
import re
import subprocess
import sys
import tempfile
from collections import Counter
from concurrent.futures import ThreadPoolExecutor

from report import SUBJECTS, fastest

PROGRAMS = ["camera_bench", "camera_step_bench"]

# Rows where a difference of a few nanoseconds matters: counted, too. With the iterations that one count takes: whole
# rounds of what a row goes through; enough that some hundred instructions of the start do not show; and as many digits
# as twice the number, because the number is part of the names that a run searches through.
COUNTED = {
    "rebuild of a flat camera": 1600,
    "inverse, general": 20,
    "inverse, view": 20,
    "inverse, parallel projection": 20,
    "inverse, flat view and projection": 20,
    "step after a moving target": 1600,
    "step of an unchanged view": 1600,
    "camera by identifier, 1024 cameras": 4096,
    "getter built-in": 4000,
    "create and destroy, table of 8": 1000,
    "save a camera": 300,
    "load a camera": 300,
    "BMP of 64 x 64": 100,
}


def fail(text):
    sys.exit(f"error: {text}")


def check(command, status, said):
    if status != 0:
        fail(f"'{' '.join(command)}' failed:\n{said.strip()[-2000:]}")


def run(command):
    result = subprocess.run(command, capture_output=True, text=True)
    check(command, result.returncode, result.stderr)
    return result


def programs(build):
    return [f"{build}/Benchmarks/{name}" for name in PROGRAMS]


def last_core():
    return str(max(os.sched_getaffinity(0)))


def measure(build, quick):
    """Medians of processor time in nanoseconds, by row."""
    to_ns = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
    medians = {}
    for program in programs(build):
        with tempfile.NamedTemporaryFile("r") as out:
            run(["taskset", "-c", last_core(), program, f"--benchmark_out={out.name}", "--benchmark_out_format=json",
                 "--benchmark_enable_random_interleaving=true", f"--benchmark_repetitions={3 if quick else 9}",
                 f"--benchmark_min_time={0.01 if quick else 0.05}"])
            medians.update({row["run_name"]: row["cpu_time"] * to_ns[row["time_unit"]]
                            for row in json.load(out)["benchmarks"] if row.get("aggregate_name") == "median"})
    return medians


# ---- instructions ----


def callgrind(command):
    result = run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command])
    return int(re.search(r"Collected : (\d+)", result.stderr).group(1))


def logged(lines):
    """What ran under the emulator: its log lists each block of instructions, and has a line whenever a block runs."""
    runs, sizes, block = Counter(), Counter(), None
    for line in lines:
        if line.startswith(b"Trace"):  # Trace 0: HOST_ADDRESS [FLAGS/ADDRESS/FLAGS/FLAGS]
            runs[line.split(b"/")[1]] += 1
        elif line.startswith(b"IN:"):
            block = None
        elif line.startswith(b"0x"):  # 0xADDRESS:  CODE  INSTRUCTION
            if block is None:
                block = line[2:10]
                sizes[block] = 0
            sizes[block] += 1
    if not runs.keys() <= sizes.keys():
        fail("the emulator's log is not understood: it does not list each block that ran")
    return sum(sizes[block] * times for block, times in runs.items())


def emulated(command):
    log, end = os.pipe()
    command = [command[0], "-d", "in_asm,exec,nochain", "-D", f"/dev/fd/{end}", *command[1:]]
    with tempfile.TemporaryFile("w+") as said:
        with subprocess.Popen(command, stdout=said, stderr=said, pass_fds=[end]) as process, open(log, "rb") as lines:
            os.close(end)
            counted = logged(lines)
        said.seek(0)
        check(command, process.returncode, said.read())
    return counted


def count(build, medians, counter, emulator=()):
    """Instructions of one iteration, of ours and of the peer that the ratio goes by: the difference between two lengths
    of the same run."""
    # A program compares its peers with ours before it lists its rows.
    place = {row: program for program in programs(build)
             for row in run([*emulator, program, "--benchmark_list_tests"]).stdout.splitlines()}

    def count_row(row):
        iterations = COUNTED[row.rsplit("/", 1)[0]]
        once, twice = (counter([*emulator, place[row], f"--iterations={n * iterations}",
                                f"--benchmark_filter=^{row}/iterations:"]) for n in (1, 2))
        if twice <= once:
            fail(f"no instructions were counted for the row '{row}'")
        return row, (twice - once) / iterations

    rows = [f"{subject}/{who}" for subject, _, rivals, _ in SUBJECTS if subject in COUNTED
            for who in ("ours", fastest(medians, subject, rivals))]
    with ThreadPoolExecutor(len(os.sched_getaffinity(0))) as pool:
        return dict(pool.map(count_row, rows))


def processor():
    with open("/proc/cpuinfo") as file:
        match = re.search(r"model name\s*: (.*)", file.read())
    return match.group(1) if match else platform.machine()


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--quick"]
    quick = "--quick" in sys.argv
    if len(arguments) not in (3, 4):
        fail(__doc__.strip().splitlines()[-1])
    baseline, v3, output, *arm = arguments
    load = os.getloadavg()[0]
    medians = measure(baseline, quick)
    measured = {"processor": processor(), "cores": os.cpu_count(), "load": load, "baseline": medians,
                "v3": measure(v3, quick), "instructions": {}, "arm": {}}
    if not quick:
        measured["instructions"] = count(baseline, medians, callgrind)
        for build in arm:
            measured["arm"] = count(build, medians, emulated, [f"{build}/Benchmarks/emulator"])
    with open(output, "w") as file:
        json.dump(measured, file, indent=1)


if __name__ == "__main__":
    main()
