#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Sweeps a cam over laws, strokes, angles and speeds, and finds which variants are feasible.

    examples/sweep.py --variants 100000 --output sweep.csv

writes sweep.csv, with a row for each variant, and sweep.png, with the share of feasible variants
over stroke and speed, and prints what a variant costs and how much faster the workers are together
than one of them alone. The work runs on dask.distributed: in processes of this machine, or on the
cluster whose scheduler is at --scheduler. If a worker dies, its batches are computed again, so
nothing is lost. --workers 0 does the same work in this process.
"""

import argparse
import csv
import os
import pathlib
import sys
import time

import mfcurves as mf

BATCH = 250  # variants per task: about a tenth of a second of work
MAX_ACCELERATION = 20.0e3  # mm/s^2
MAX_JERK = 20.0e6  # mm/s^3
COLUMNS = ["law", "stroke", "angle", "speed", "feasible", "velocity", "acceleration", "jerk", "guaranteed"]

# A rise and a return of `angle` degrees each, with dwells.
CAM = mf.segments([(120, 20, "3-4-5-Polynomial"), (360, 0, "3-4-5-Polynomial")], over="angle", name="variant")


def laws():
    """The laws that begin and end at rest."""
    return sorted({law.name for law in mf.laws() if law.continuity >= 1})


def variants(count):
    """Law, stroke in mm, angle in degrees and speed in rpm of each variant.

    The numbers fill their ranges evenly however many there are: the sequence R3 of
    Roberts, which adds powers of the plastic constant of three dimensions.
    """
    ratio = 1.2207440846057596
    names = laws()
    for i in range(count):
        stroke, angle, speed = ((0.5 + (i + 1) / ratio**k) % 1.0 for k in (1, 2, 3))
        yield names[i % len(names)], 5.0 + 35.0 * stroke, 40.0 + 110.0 * angle, 60.0 + 540.0 * speed


def variant_of(cam, law, stroke, angle):
    rows = [(angle, stroke, law), (180.0, stroke, "Linear"), (180.0 + angle, 0.0, law), (360.0, 0.0, "Linear")]
    return cam.replace(rows=rows)


def judged(cam, law, stroke, angle, speed):
    """The row of one variant."""
    orders = variant_of(cam, law, stroke, angle).over_time(rpm=speed).peaks()
    velocity, acceleration, jerk = (max(-order.least.y, order.greatest.y) for order in orders[1:])
    feasible = (
        acceleration <= MAX_ACCELERATION and jerk <= MAX_JERK and not any(order.impulses for order in orders[:3])
    )
    guaranteed = all(order.guaranteed for order in orders)
    return [law, stroke, angle, speed, feasible, velocity, acceleration, jerk, guaranteed]


def judged_batch(cam, batch):
    """The rows of a batch, and the processor time that they took."""
    start = time.process_time()
    rows = [judged(cam, *variant) for variant in batch]
    return rows, time.process_time() - start


def batches(count):
    batch = []
    for variant in variants(count):
        batch.append(variant)
        if len(batch) == BATCH:
            yield batch
            batch = []
    if batch:
        yield batch


def show_progress(done, total):
    if sys.stderr.isatty():
        filled = 40 * done // total
        end = "\n" if done == total else ""
        print(f"\r[{'#' * filled}{' ' * (40 - filled)}] {done}/{total} batches", end=end, file=sys.stderr, flush=True)


def swept_here(count):
    work = list(batches(count))
    results = []
    for done, batch in enumerate(work, 1):
        results.append(judged_batch(CAM, batch))
        show_progress(done, len(work))
    return joined(results)


def joined(results):
    """All rows in order, and the processor time of all batches."""
    return [row for rows, _ in results for row in rows], sum(seconds for _, seconds in results)


def swept_by(client, count):
    """The same by the workers of a cluster."""
    from dask.distributed import as_completed

    work = list(batches(count))
    # The batch is an argument of its task, so that any worker can repeat it.
    futures = [client.submit(judged_batch, CAM, batch, pure=False, retries=5) for batch in work]
    number = {future.key: i for i, future in enumerate(futures)}
    results = [None] * len(work)
    for done, (future, result) in enumerate(as_completed(futures, with_results=True), 1):
        results[number[future.key]] = result
        show_progress(done, len(work))
    return joined(results)


def swept(count, workers, scheduler):
    if workers == 0:
        return swept_here(count)
    import dask
    from dask.distributed import Client, LocalCluster

    # The death of a worker is not the fault of its batch, so the batch is repeated.
    dask.config.set({"distributed.scheduler.allowed-failures": 100})
    if scheduler is not None:
        with Client(scheduler) as client:
            client.upload_file(os.path.abspath(__file__))
            return swept_by(client, count)
    with LocalCluster(
        n_workers=workers, threads_per_worker=1, dashboard_address=None
    ) as cluster, Client(cluster) as client:
        return swept_by(client, count)


def write_rows(rows, path):
    with open(path, "w", newline="", encoding="utf-8") as file:
        writer = csv.writer(file, lineterminator="\n")
        writer.writerow(COLUMNS)
        writer.writerows(rows)


def draw_region(rows, path):
    import matplotlib

    matplotlib.use("Agg")
    import matplotlib.pyplot as plt
    import numpy as np

    stroke, speed, feasible = (np.array([row[i] for row in rows], float) for i in (1, 3, 4))
    edges = (np.linspace(5, 40, 36), np.linspace(60, 600, 37))
    total, _, _ = np.histogram2d(stroke, speed, edges)
    good, _, _ = np.histogram2d(stroke, speed, edges, weights=feasible)
    share = np.divide(good, total, out=np.full_like(good, np.nan), where=total > 0)
    figure, panel = plt.subplots(figsize=(7, 5))
    mesh = panel.pcolormesh(*edges, share.T, cmap="viridis", vmin=0, vmax=1)
    figure.colorbar(mesh, label="share of feasible laws and angles")
    panel.set_xlabel("stroke in mm")
    panel.set_ylabel("speed in rpm")
    panel.set_title(f"{int(feasible.sum())} of {len(rows)} variants are feasible")
    figure.savefig(path, dpi=120)
    plt.close(figure)


def whole(lowest):
    def parsed(text):
        number = int(text)
        if number < lowest:
            raise argparse.ArgumentTypeError(f"must be {lowest} or more")
        return number

    parsed.__name__ = "whole number"
    return parsed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--variants", type=whole(1), default=100_000, metavar="N")
    parser.add_argument("--output", type=pathlib.Path, default=pathlib.Path("sweep.csv"), metavar="FILE")
    parser.add_argument("--workers", type=whole(0), default=os.cpu_count(), metavar="N")
    parser.add_argument("--scheduler", metavar="ADDRESS", help="of a running cluster, such as tcp://host:8786")
    options = parser.parse_args()
    if options.output.suffix == ".png":
        parser.error("--output names the CSV file; the picture goes beside it")
    if not options.output.absolute().parent.is_dir():
        parser.error(f"--output: there is no folder {options.output.parent}")

    start = time.perf_counter()
    rows, work = swept(options.variants, options.workers, options.scheduler)
    elapsed = time.perf_counter() - start
    write_rows(rows, options.output)
    picture = options.output.with_suffix(".png")
    draw_region(rows, picture)
    feasible = sum(row[4] for row in rows)
    print(f"{feasible} of {len(rows)} variants are feasible; {options.output} and {picture} are written")
    print(f"{1e3 * work / len(rows):.2f} ms of work per variant, {elapsed:.1f} s in all, speed-up {work / elapsed:.2f}")


if __name__ == "__main__":
    main()
