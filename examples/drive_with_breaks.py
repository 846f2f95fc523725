#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Drives a mass by a short force pulse: scipy.integrate.solve_ivp with and without breaks.

The pulse of 20 ms begins at 0.5 s and gives the mass of 1 kg a velocity of 2 m/s. An integrator
steps over it once its steps have become long. If it stops at each break of the curve, it does not
miss the pulse.
"""

import numpy as np
from scipy.integrate import solve_ivp

import mfcurves as mf

PULSE = mf.segments(
    [(0.5, 0, "Linear"), (0.5, 100, "Linear"), (0.52, 100, "Linear"), (0.52, 0, "Linear"), (2, 0, "Linear")],
    drive="force",
    name="pulse",
)


def motion(time, state):
    return [state[1], PULSE(time)]


def without_breaks():
    return solve_ivp(motion, PULSE.domain, [0.0, 0.0], rtol=1e-9, atol=1e-12).y[1, -1]


def with_breaks():
    stops = [PULSE.domain[0], *(place.x for place in PULSE.breaks(order=0)), PULSE.domain[1]]
    state = [0.0, 0.0]
    for start, end in zip(stops, stops[1:]):
        inside = np.nextafter(end, start)  # at a jump, evaluates the piece on this side

        def side(time, state, inside=inside):
            return motion(min(time, inside), state)

        state = solve_ivp(side, (start, end), state, rtol=1e-9, atol=1e-12).y[:, -1]
    return state[1]


def main():
    print(f"without breaks: {without_breaks():.9f} m/s")
    print(f"with breaks:    {with_breaks():.9f} m/s")
    print("exact:          2.000000000 m/s")


if __name__ == "__main__":
    main()
