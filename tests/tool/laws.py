# SPDX-License-Identifier: MIT
"""Closed forms of the laws that the tests use."""

import math

# The largest velocity and acceleration for a stroke of 1 in a time of 1.
# 3-4-5: 15/8 in the middle; 10/sqrt(3) where 1 - 6 u + 6 u^2 is 0.
CV_345, CA_345 = 15 / 8, 10 / math.sqrt(3)
# Modified sine: Norton, Cam Design and Manufacturing Handbook: 4 pi/(4 + pi), 4 pi^2/(4 + pi).
CV_SINE, CA_SINE = 4 * math.pi / (4 + math.pi), 4 * math.pi**2 / (4 + math.pi)


def polynomial_345(u):
    """Value and first two derivatives of 10 u^3 - 15 u^4 + 6 u^5."""
    return u**3 * (10 - 15 * u + 6 * u**2), 30 * u**2 * (1 - u) ** 2, 60 * u * (1 - u) * (1 - 2 * u)


def gripper_cam(x):
    """Value and first two derivatives of the cam: 25 up over 90 degrees, dwell to 150, down to 240, dwell."""
    if x < 90:
        s, v, a = polynomial_345(x / 90)
        return 25 * s, 25 * v / 90, 25 * a / 90**2
    if x < 150:
        return 25.0, 0.0, 0.0
    if x < 240:
        s, v, a = polynomial_345((x - 150) / 90)
        return 25 - 25 * s, -25 * v / 90, -25 * a / 90**2
    return 0.0, 0.0, 0.0
