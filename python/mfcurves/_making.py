# SPDX-License-Identifier: MIT
"""The functions that make curves."""

from __future__ import annotations

import os
import typing as t

import numpy as np

from mfcurves import _mfcurves
from mfcurves._curve import Curve
from mfcurves._errors import CurveError, warn
from mfcurves._inputs import (
    DRIVES,
    INTERPOLATIONS,
    as_array,
    as_choice,
    as_pair,
    as_path,
    as_rows,
    as_text,
    as_texts,
    as_truth,
)

if t.TYPE_CHECKING:
    import numpy.typing as npt


def _common(name: t.Any, over: t.Any, drive: t.Any, rotary: t.Any) -> t.Dict[str, t.Any]:
    over = as_text(over, "over")
    known = over in ("time", "angle")
    return {
        "name": as_text(name, "name"),
        "over": over if known else "result",
        "result": "" if known else over,
        "drive": as_choice(drive, "drive", DRIVES),
        "rotary": as_truth(rotary, "rotary"),
        "data_type": None,
    }


def _make(state: t.Dict[str, t.Any]) -> Curve:
    return Curve(_mfcurves.CurveCore(state))


def segments(
    rows: t.Iterable[t.Tuple[float, float, str]],
    start: t.Tuple[float, float] = (0.0, 0.0),
    over: t.Union[t.Literal["time", "angle"], str] = "time",
    drive: t.Literal["displacement", "velocity", "acceleration", "force", "torque"] = "displacement",
    rotary: bool = False,
    name: str = "",
    laws: t.Optional[t.Dict[str, str]] = None,
    six_decimals: bool = False,
) -> Curve:
    """A curve made of rows, each shaped by a motion law.

    Parameters
    ----------
    rows : list of (end, value, profile)
        Each row starts where the previous one ends. ``profile`` is the name of a motion
        law: one of ``laws``, built in or shipped; `mfcurves.laws` lists them.
    start : (x, value)
        Where the first row starts.
    over : str
        The meaning of x: ``"time"`` in seconds, ``"angle"`` in degrees, or the name of a motion
        result.
    drive : {"displacement", "velocity", "acceleration", "force", "torque"}
        The quantity of the values.
    rotary : bool
        Whether values are in degrees instead of millimetres.
    name : str
        The name of the curve in documents and pictures.
    laws : dict from name to text, optional
        Motion laws in the profile language.
    six_decimals : bool
        Whether numbers in the laws are rounded to six decimals, as they are for documents.

    Raises
    ------
    CurveError
        With a problem for each wrong row.

    Examples
    --------
    >>> import mfcurves as mf
    >>> cam = mf.segments([(0.2, 0.05, "3-4-5-Polynomial"), (0.3, 0.05, "Linear")])
    >>> cam(0.1), cam(0.25, 1)
    (0.025, 0.0)
    """
    if laws is not None and not isinstance(laws, dict):
        raise TypeError(f"laws must be a dict from name to text, not {type(laws).__name__}")
    state = _common(name, over, drive, rotary)
    state.update(
        kind="segments",
        rows=as_rows(rows),
        start=as_pair(start, "start"),
        laws={as_text(key, "the name of a law"): as_text(text, "a law") for key, text in (laws or {}).items()},
        six_decimals=as_truth(six_decimals, "six_decimals"),
    )
    return _make(state)


def points(
    x: npt.ArrayLike,
    y: npt.ArrayLike,
    interpolation: t.Literal["linear", "cubic", "akima"] = "linear",
    over: t.Union[t.Literal["time", "angle"], str] = "time",
    drive: t.Literal["displacement", "velocity", "acceleration", "force", "torque"] = "displacement",
    rotary: bool = False,
    name: str = "",
) -> Curve:
    """A curve through points.

    Parameters
    ----------
    x, y : array_like of real numbers, one-dimensional, of equal length, at least one number
        ``x`` must be strictly ascending.
    interpolation : {"linear", "cubic", "akima"}
        Straight lines, the natural cubic spline, or Akima's.
    over, drive, rotary, name
        See `segments`.

    Examples
    --------
    >>> import mfcurves as mf
    >>> mf.points([0, 1, 2], [0, 1, 0], "cubic")(0.5)
    0.6875
    """
    state = _common(name, over, drive, rotary)
    state.update(kind="points", interpolation=as_choice(interpolation, "interpolation", INTERPOLATIONS))
    for key, values in (("x", x), ("y", y)):
        array = as_array(values, key)
        if array.ndim != 1:
            raise CurveError(f"{key} must have one dimension, not {array.ndim}")
        if np.ma.is_masked(values):
            raise CurveError(f"{key} must have no masked numbers")
        state[key] = array
    return _make(state)


def expression(
    text: str,
    domain: t.Tuple[float, float],
    over: t.Union[t.Literal["time", "angle"], str] = "time",
    drive: t.Literal["displacement", "velocity", "acceleration", "force", "torque"] = "displacement",
    rotary: bool = False,
    name: str = "",
) -> Curve:
    """A curve given by an expression of one variable.

    Parameters
    ----------
    text : str
        For example ``"10*sin(2*pi*x)"``. The variable may have any name.
    domain : (from, to)
        The range of x.
    over, drive, rotary, name
        See `segments`.

    Examples
    --------
    >>> import mfcurves as mf
    >>> mf.expression("10*sin(2*pi*x)", domain=(0, 1))(0.25)
    10.0
    """
    state = _common(name, over, drive, rotary)
    state.update(kind="expression", text=as_text(text, "text"), domain=as_pair(domain, "domain"))
    return _make(state)


def read(
    path: t.Union[str, "os.PathLike[str]"], results: t.Iterable[str] = (), library: t.Iterable[t.Any] = ()
) -> Curve:
    """The curve of a document.

    Parameters
    ----------
    path : str or path
        The file of the document.
    results : list of str
        Names of motion results that x may be.
    library : list of str or path
        Folders with a ``SegmentTypes.txt``, whose motion laws rows may name.

    Warns
    -----
    CurveWarning
        When the curve differs from what the document says.

    Raises
    ------
    CurveError
        When the document does not describe a curve.
    OSError
        When the file cannot be read; `FileNotFoundError` when it does not exist.
    """
    source = as_path(path)
    with open(source, "rb"):
        pass  # raises Python's own error when the file cannot be read
    core = _mfcurves.read(source, as_texts(library, "library"), as_texts(results, "results"))
    warn(core.found_odd())
    return Curve(core)


def parse(text: str, results: t.Iterable[str] = (), library: t.Iterable[t.Any] = ()) -> Curve:
    """The curve of a document given as text; see `read`.

    Examples
    --------
    >>> import mfcurves as mf
    >>> mf.parse("<Curve/>")
    Traceback (most recent call last):
        ...
    mfcurves.CurveError: ...
    """
    core = _mfcurves.parse(as_text(text, "text"), as_texts(library, "library"), as_texts(results, "results"))
    warn(core.found_odd())
    return Curve(core)
