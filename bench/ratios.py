#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints the ratios of ratios.csv, as a Markdown table, from results of Google Benchmark.

    ratios.py RESULTS.json...

RESULTS are files written with --benchmark_out_format=json and repetitions; the
medians count. A line without a target only tells. Exit status: 1 when a ratio
misses its target, 2 when a benchmark of the list did not run.
"""

import csv
import json
import pathlib
import sys


def medians(paths):
    """Median time in nanoseconds of each benchmark."""
    times = {}
    for path in paths:
        for result in json.loads(pathlib.Path(path).read_text())["benchmarks"]:
            if result.get("aggregate_name") == "median":
                assert result["time_unit"] == "ns", result["name"]
                times[result["run_name"]] = result["cpu_time"]
    return times


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    times = medians(sys.argv[1:])
    with open(pathlib.Path(__file__).with_name("ratios.csv"), encoding="utf-8", newline="") as file:
        rows = list(csv.DictReader(file))
    missing = {row[side] for row in rows for side in ("numerator", "denominator")} - times.keys()
    if missing:
        print("did not run:", *sorted(missing), file=sys.stderr)
        sys.exit(2)

    print("| work | of | ns | baseline ns | ratio | target | |")
    print("|---|---|---:|---:|---:|---:|---|")
    missed = False
    for row in rows:
        time, baseline = times[row["numerator"]], times[row["denominator"]]
        ratio = time / baseline
        outcome = ""
        if row["target"]:
            outcome = "reached" if ratio <= float(row["target"]) else "MISSED"
        missed |= outcome == "MISSED"
        print(f"| {row['work']} | {row['subject']} | {time:.1f} | {baseline:.1f} | {ratio:.2f} "
              f"| {row['target']} | {outcome} |")
    sys.exit(1 if missed else 0)


main()
