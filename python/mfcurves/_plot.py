# SPDX-License-Identifier: MIT
"""Pictures of curves by matplotlib."""

from __future__ import annotations

import typing as t

import numpy as np

from mfcurves._curve import Curve
from mfcurves._errors import CurveError
from mfcurves._inputs import ORDERS

if t.TYPE_CHECKING:
    import numpy.typing as npt

_SAMPLES = 1001
_NAMES = {
    "displacement": ("displacement", "velocity", "acceleration", "jerk"),
    "velocity": ("velocity", "acceleration", "jerk", "d³"),
    "acceleration": ("acceleration", "jerk", "d²", "d³"),
    "force": ("force", "d¹", "d²", "d³"),
    "torque": ("torque", "d¹", "d²", "d³"),
}


def _samples(curve: Curve) -> npt.NDArray[np.float64]:
    """Samples of x over the domain; each break is included twice, once for each side."""
    first, last = curve.domain
    x = np.linspace(first, last, _SAMPLES)
    inside = [place.x for place in curve.breaks() if first < place.x < last]
    return np.sort(np.concatenate([x[~np.isin(x, inside)], np.repeat(inside, 2)]))


def _line(curve: Curve) -> t.Tuple[npt.NDArray[np.float64], npt.NDArray[np.float64]]:
    x = _samples(curve)
    y = curve.svaj(x)
    second = np.flatnonzero(x[1:] == x[:-1])
    y[:, second] = curve.svaj(x[second], side="left")
    y[:, second + 1] = curve.svaj(x[second + 1], side="right")
    return x, y


def plot(curve: Curve, ax: t.Any, orders: t.Iterable[int]) -> t.Any:
    """Draws orders of a curve, each in its own panel or all into `ax`; returns the axes."""
    import matplotlib.pyplot as plt  # type: ignore[import]

    wanted = list(orders)
    if not wanted or any(order not in ORDERS for order in wanted):
        raise CurveError(f"orders must be some of 0, 1, 2, 3, not {wanted!r}")
    if ax is None:
        figure, panels = plt.subplots(len(wanted), 1, sharex=True, squeeze=False, figsize=(8, 2 * len(wanted)))
        axes: t.List[t.Any] = list(panels[:, 0])
        figure.suptitle(curve.name)
    else:
        axes = [ax] * len(wanted)
    x, y = _line(curve)
    names = _NAMES[curve.drive]
    peaks = curve.peaks()
    seams = [place.x for place in curve.breaks()]
    for order, panel in zip(wanted, axes):
        (line,) = panel.plot(x, y[order], label=names[order])
        for peak in (peaks[order].least, peaks[order].greatest):
            if np.isfinite(peak.y):
                panel.plot(peak.x, peak.y, "o", color=line.get_color(), markersize=4)
        panel.set_ylabel(names[order] if ax is None else "")
    for panel in dict.fromkeys(axes):
        for seam in seams:
            panel.axvline(seam, color="0.8", linewidth=0.8, zorder=0)
    axes[-1].set_xlabel(curve.over)
    if ax is not None:
        ax.legend()
        return ax
    return np.array(axes)
