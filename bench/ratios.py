#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints the ratios listed in ratios.csv as a Markdown table, from results of Google Benchmark.

    ratios.py RESULTS.json...

RESULTS are files written with --benchmark_out_format=json and repetitions. A ratio is
that of the medians of processor time, or of real time for benchmarks whose name ends with
/real_time. Next to it is its spread: half the distance of the quartiles of each side, in
percent of the median; the two sides are combined as the root of the sum of squares. A ratio
misses its target when it exceeds it by more than the spread. Lines without a target are for
information. Exit status: 1 when a ratio misses its target, 2 when a listed benchmark did not run.
"""

import csv
import json
import math
import pathlib
import statistics
import sys


def repetitions(paths):
    """Times in nanoseconds of all repetitions of each benchmark."""
    times = {}
    for path in paths:
        for result in json.loads(pathlib.Path(path).read_text())["benchmarks"]:
            if result["run_type"] == "iteration":
                assert result["time_unit"] == "ns", result["name"]
                measured = "real_time" if result["run_name"].endswith("/real_time") else "cpu_time"
                times.setdefault(result["run_name"], []).append(result[measured])
    return times


def spread(times):
    """Half the distance of the quartiles, relative to the median."""
    if len(times) < 2:
        return 0.0
    lower, median, upper = statistics.quantiles(times, n=4, method="inclusive")
    return (upper - lower) / 2 / median


def outcome(ratio, ratio_spread, target):
    if not target:
        return ""
    if ratio <= float(target):
        return "reached"
    return "MISSED" if ratio > float(target) * (1 + ratio_spread) else "within the spread"


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    times = repetitions(sys.argv[1:])
    with open(pathlib.Path(__file__).with_name("ratios.csv"), encoding="utf-8", newline="") as file:
        rows = list(csv.DictReader(file))
    missing = {row[side] for row in rows for side in ("numerator", "denominator")} - times.keys()
    if missing:
        print("did not run:", *sorted(missing), file=sys.stderr)
        sys.exit(2)

    print("| work | of | ns | baseline ns | ratio | spread | target | |")
    print("|---|---|---:|---:|---:|---:|---:|---|")
    missed = False
    for row in rows:
        sides = [times[row["numerator"]], times[row["denominator"]]]
        time, baseline = map(statistics.median, sides)
        ratio_spread = math.hypot(*map(spread, sides))
        result = outcome(time / baseline, ratio_spread, row["target"])
        missed |= result == "MISSED"
        print(f"| {row['work']} | {row['subject']} | {time:.1f} | {baseline:.1f} | {time / baseline:.2f} "
              f"| {100 * ratio_spread:.0f} % | {row['target']} | {result} |")
    sys.exit(1 if missed else 0)


main()
