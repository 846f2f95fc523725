# SPDX-License-Identifier: MIT
"""Curves that several tests use."""

import pathlib

import numpy as np
import pytest

import mfcurves as mf

SAMPLES = pathlib.Path(__file__).resolve().parents[2] / "share" / "mfcurves" / "curves"


@pytest.fixture
def cam():
    """Rise, dwell, return and dwell over the cycle angle."""
    return mf.segments(
        [
            (90, 25, "3-4-5-Polynomial"),
            (150, 25, "3-4-5-Polynomial"),
            (240, 0, "4-5-6-7-Polynomial"),
            (360, 0, "4-5-6-7-Polynomial"),
        ],
        over="angle",
        name="cam",
    )


@pytest.fixture
def wave():
    return mf.expression("10*sin(2*pi*x)", domain=(0, 1))


@pytest.fixture
def spline():
    x = np.array([0.0, 0.3, 1.0, 1.1, 2.5])
    return mf.points(x, np.cos(x), "cubic")


@pytest.fixture
def samples():
    """The folder of the sample documents."""
    return SAMPLES
