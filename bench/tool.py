#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the tool and prints a Markdown table.

    tool.py BUILD [REPETITIONS]

BUILD is a build of the preset `bench`. A table of 1,000,000 samples is compared with a bare loop that formats
the same numbers with std::to_chars and writes them (table_loop.cpp), by the processor time of the whole tool
against that of the loop alone, repetitions interleaved, median over median. The other lines only inform. Exit
status: 1 when a ratio misses its limit.
"""

import os
import pathlib
import resource
import statistics
import subprocess
import sys
import tempfile

SAMPLES = "1000000"
POINTS = 100_000
CAM = pathlib.Path(__file__).resolve().parents[1] / "share/mfcurves/curves/rise-dwell-return-cam.xml"
EXPRESSION = "10*sin(2*pi*x)+x^2*exp(-x)/(1+x)"


def processor_time(command):
    """Milliseconds of a program from start to end, and its standard error."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    with open(os.devnull, "wb") as nowhere:
        said = subprocess.run(command, stdout=nowhere, stderr=subprocess.PIPE, check=True, text=True).stderr
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return 1000 * (after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime), said


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    build, repetitions = pathlib.Path(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) == 3 else 9
    tool, loop = build / "tools/mfcurve/mfcurve", build / "bench/table_loop"
    with tempfile.TemporaryDirectory() as name:
        points = pathlib.Path(name, "points.csv")
        points.write_text("".join(f"{i / 100},{(i * 7919 % 1009) / 10}\n" for i in range(POINTS)), encoding="ascii")
        described = ["--points", points, "--interpolation", "akima"]
        cases = [
            ("table of 1,000,000 samples, cam", ["table", CAM, "--samples", SAMPLES], [loop, SAMPLES, CAM], 1.2),
            ("table of 1,000,000 samples, expression",
             ["table", "--expression", EXPRESSION, "--from", "0", "--to", "10", "--samples", SAMPLES],
             [loop, SAMPLES, EXPRESSION], 1.4),
            ("plot of 100,000 points", ["plot", *described, "-o", "-"], None, None),
            ("peaks of 100,000 points", ["peaks", *described], None, None),
            ("start (--version)", ["--version"], None, None),
        ]
        times = {case[0]: ([], []) for case in cases}
        for _ in range(repetitions):
            for label, arguments, baseline, _ in cases:
                times[label][0].append(processor_time([tool, *arguments])[0])
                if baseline:
                    times[label][1].append(float(processor_time(baseline)[1]))
    print("| work | ms | baseline ms | ratio | limit | |\n|---|---:|---:|---:|---:|---|")
    missed = False
    for label, _, baseline, limit in cases:
        ours = statistics.median(times[label][0])
        if not baseline:
            print(f"| {label} | {ours:.1f} | | | | |")
            continue
        bare = statistics.median(times[label][1])
        missed |= ours > limit * bare
        print(f"| {label} | {ours:.1f} | {bare:.1f} | {ours / bare:.2f} | {limit} | {'MISSED' if ours > limit * bare else 'reached'} |")
    sys.exit(missed)


if __name__ == "__main__":
    main()
