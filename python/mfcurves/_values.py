# SPDX-License-Identifier: MIT
"""Values of curves, in the shape of the x that they are for."""

from __future__ import annotations

import typing as t

import numpy as np

from mfcurves import _mfcurves
from mfcurves._inputs import SIDES, as_array, as_choice, as_order

if t.TYPE_CHECKING:
    import numpy.typing as npt


def values(curve: _mfcurves.CurveCore, x: t.Any, nu: t.Any = 0, side: t.Any = "plain") -> t.Any:
    """What ``curve(x, nu, side)`` returns for all but a plain float."""
    order = as_order(nu)
    side = as_choice(side, "side", SIDES)
    array = as_array(x, "x")
    return _shaped_as(x, curve.values(array, order, side))


def all_values(curve: _mfcurves.CurveCore, x: t.Any, side: t.Any) -> npt.NDArray[np.float64]:
    """The value and three derivatives of a curve, along the first axis."""
    return _masked_as(x, curve.all_values(as_array(x, "x"), as_choice(side, "side", SIDES)))


def _shaped_as(x: t.Any, values: npt.NDArray[np.float64]) -> t.Any:
    """A float for a number x; otherwise an array, masked as x is."""
    if values.ndim == 0 and not isinstance(x, np.ndarray):
        return float(values)
    return _masked_as(x, values)


def _masked_as(x: t.Any, values: npt.NDArray[np.float64]) -> npt.NDArray[np.float64]:
    """The values, with the mask of x if it has one."""
    if not isinstance(x, np.ma.MaskedArray):
        return values
    masked: npt.NDArray[np.float64] = np.ma.array(values, mask=np.broadcast_to(np.ma.getmaskarray(x), values.shape))
    return masked
