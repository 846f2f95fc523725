#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the Python module with SciPy's CubicSpline, and prints the ratios as a Markdown table.

    PYTHONPATH=build/bench/python bench/python_bench.py [REPETITIONS]

The two sides of a ratio run alternately, in the same process, on the same numbers; CubicSpline has
as many pieces as the curve has rows. A ratio is that of the medians. Next to it is half the
distance of the quartiles of the ratios of single turns, in percent. Times are processor time,
except for two threads and for the import, which are measured in real time and need a machine that
runs nothing else. Exit status: 1 when a ratio misses its target by more than that spread.
"""

import statistics
import subprocess
import sys
import threading
import time

import numpy as np
from scipy.interpolate import CubicSpline

import mfcurves as mf

POINTS = 1_000_000
CAM = mf.segments(
    [
        (90, 25, "3-4-5-Polynomial"),
        (150, 25, "3-4-5-Polynomial"),
        (240, 0, "4-5-6-7-Polynomial"),
        (360, 0, "4-5-6-7-Polynomial"),
    ],
    over="angle",
)
SPLINE = CubicSpline([0, 90, 150, 240, 360], [0, 25, 25, 0, 0])
ASCENDING = np.linspace(0.0, 360.0, POINTS)
MIXED = np.random.default_rng(1).permutation(ASCENDING)


def four_orders(spline, x):
    return [spline(x, nu) for nu in range(4)]


def many(work, count=2000):
    def run():
        for _ in range(count):
            work()

    return run


def on_threads(count):
    """Each thread computes the same number of points."""

    def run():
        threads = [threading.Thread(target=lambda: CAM.svaj(ASCENDING)) for _ in range(count)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    return run


def importing(modules):
    def run():
        subprocess.run([sys.executable, "-c", f"import {modules}"], check=True)

    return run


# work, of, ours, theirs, target, clock
RATIOS = [
    ("value / SciPy", "1,000,000 ascending x", lambda: CAM(ASCENDING), lambda: SPLINE(ASCENDING), 0.5),
    (
        "four orders / four calls of SciPy",
        "1,000,000 ascending x",
        lambda: CAM.svaj(ASCENDING),
        lambda: four_orders(SPLINE, ASCENDING),
        0.5,
    ),
    ("value, x in no order / ascending", "1,000,000 x", lambda: CAM(MIXED), lambda: CAM(ASCENDING), 2.0),
    (
        "four orders, x in no order / ascending",
        "1,000,000 x",
        lambda: CAM.svaj(MIXED),
        lambda: CAM.svaj(ASCENDING),
        2.0,
    ),
    ("`cam(x)` / SciPy", "one number", many(lambda: CAM(45.5)), many(lambda: SPLINE(45.5)), 0.1),
    ("`cam(x, 1)` / SciPy", "one number", many(lambda: CAM(45.5, 1)), many(lambda: SPLINE(45.5, 1)), 0.1),
]
CLOCKED = [
    ("twice the points on two threads / once on one", "1,000,000 x", on_threads(2), on_threads(1), 2.0 / 1.7),
]


def spent(work, clock):
    start = clock()
    work()
    return clock() - start


def measured(ours, theirs, repetitions, clock):
    """Median times of both sides, and half the distance of the quartiles of their ratios."""
    times = [(spent(ours, clock), spent(theirs, clock)) for _ in range(repetitions)]
    lower, ratio, upper = statistics.quantiles([a / b for a, b in times], n=4, method="inclusive")
    return *(statistics.median(side) for side in zip(*times)), (upper - lower) / 2 / ratio


def shown(seconds):
    return f"{seconds * 1e3:.2f} ms"


def main():
    repetitions = int(sys.argv[1]) if len(sys.argv) > 1 else 15
    missed = False
    print("| work | of | time | baseline | ratio | spread | target | |")
    print("|---|---|---:|---:|---:|---:|---:|---|")
    for ratios, clock in ((RATIOS, time.process_time), (CLOCKED, time.perf_counter)):
        for work, subject, ours, theirs, target in ratios:
            time_, baseline, spread = measured(ours, theirs, repetitions, clock)
            ratio = time_ / baseline
            is_missed = ratio > target * (1.0 + spread)
            outcome = "MISSED" if is_missed else "reached" if ratio <= target else "within the spread"
            missed |= is_missed
            print(
                f"| {work} | {subject} | {shown(time_)} | {shown(baseline)} | {ratio:.3g} "
                f"| {100 * spread:.0f} % | {target:.3g} | {outcome} |"
            )
    ours, theirs, spread = measured(importing("mfcurves"), importing("numpy"), repetitions, time.perf_counter)
    outcome = "reached" if ours - theirs <= 0.03 else "MISSED" if (1.0 - spread) * ours - theirs > 0.03 else "within the spread"
    missed |= outcome == "MISSED"
    print(
        f"| import, with Python's start / NumPy's | | {shown(ours)} | {shown(theirs)} | + {shown(ours - theirs)} "
        f"| {100 * spread:.0f} % | + 30 ms | {outcome} |"
    )
    sys.exit(1 if missed else 0)


main()
