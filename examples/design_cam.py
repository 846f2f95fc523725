#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Designs a cam and checks its limits: which law for a rise of 25 mm in 90 degrees at 300 rpm?

    examples/design_cam.py [PICTURE]
"""

import sys

import mfcurves as mf

MAX_ACCELERATION = 65_000.0  # mm/s^2
RPM = 300


def cam_of(law):
    rows = [(90, 25, law), (150, 25, "Linear"), (240, 0, law), (360, 0, "Linear")]
    return mf.segments(rows, over="angle", name=f"cam by {law}")


def main():
    best = None
    for law in ("Cubic", "3-4-5-Polynomial", "4-5-6-7-Polynomial", "Half-Cosine"):
        cam = cam_of(law).over_time(rpm=RPM)
        acceleration = cam.peaks()[2].greatest
        check = cam.check(max_acceleration=MAX_ACCELERATION, continuity=2, cyclic=True)
        print(f"{law:20} {acceleration.y:9.1f} mm/s^2 at {acceleration.x * 1e3:6.3f} ms", "ok" if check.ok else "")
        if check.ok and (best is None or acceleration.y < best.peaks()[2].greatest.y):
            best = cam
    if best is None:
        sys.exit("no law keeps the limits")
    print("the best is the", best.name)
    if len(sys.argv) > 1:
        axes = best.plot()
        axes[0].figure.savefig(sys.argv[1])


if __name__ == "__main__":
    main()
