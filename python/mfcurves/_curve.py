# SPDX-License-Identifier: MIT
"""Curves and what makes them."""

from __future__ import annotations

import errno
import os
import warnings
from typing import Any, Callable, Dict, Iterable, List, Literal, NamedTuple, Optional, Sequence, Tuple, Union

import numpy as np
from numpy.typing import ArrayLike, NDArray

from mfcurves import _mfcurves
from mfcurves._errors import CurveError, CurveWarning, Problem
from mfcurves._results import (
    Break,
    CamTable,
    Check,
    Peak,
    Summary,
    breaks_from,
    check_from,
    summaries_from,
)

Side = Literal["plain", "left", "right"]
Outside = Literal["extend", "hold", "repeat", "undefined"]
Drive = Literal["displacement", "velocity", "acceleration", "force", "torque"]
Over = Union[Literal["time", "angle"], str]
Joined = Literal["linear", "cubic", "akima"]

_SIDES = ("plain", "left", "right")
_OUTSIDES = ("extend", "hold", "repeat", "undefined")
_INTERPOLATIONS = ("linear", "cubic", "akima")
_DRIVES = ("displacement", "velocity", "acceleration", "force", "torque")
_ORDERS = (0, 1, 2, 3)


class Row(NamedTuple):
    """One stretch of a curve made of rows: it ends at ``end`` with ``value``, shaped by ``profile``."""

    end: float
    value: float
    profile: str


# --- What comes in ---------------------------------------------------------------------------


def _number(value: Any, name: str) -> float:
    if isinstance(value, (str, bytes)) or not hasattr(value, "__float__"):
        raise TypeError(f"{name} must be a number, not {type(value).__name__}")
    return float(value)


def _text(value: Any, name: str) -> str:
    if not isinstance(value, str):
        raise TypeError(f"{name} must be a str, not {type(value).__name__}")
    if "\0" in value:
        raise CurveError(f"{name} must not contain a zero character")
    return value


def _choice(value: Any, name: str, choices: Sequence[Any]) -> Any:
    if value not in choices:
        expected = ", ".join(repr(choice) for choice in choices[:-1])
        raise CurveError(f"{name} must be {expected} or {choices[-1]!r}, not {value!r}")
    return value


def _choice_of_text(value: Any, name: str, choices: Sequence[str]) -> str:
    return _choice(_text(value, name), name, choices)


def _order(value: Any, name: str = "nu", orders: Sequence[int] = _ORDERS) -> int:
    if isinstance(value, (str, bytes)) or not hasattr(value, "__index__"):
        raise TypeError(f"{name} must be a whole number, not {type(value).__name__}")
    return _choice(int(value), name, orders)


def _numbers(values: Any, name: str) -> np.ndarray:
    """Any array of real numbers as doubles in C order."""
    array = np.asarray(values)
    if array.dtype.kind not in "biuf":
        if array.size == 0:
            return np.zeros(array.shape)
        raise TypeError(f"{name} must hold real numbers, not {array.dtype}")
    return np.require(array, np.float64, "CA")


def _limit(value: Any, name: str) -> Optional[float]:
    """A limit above 0, or None for none."""
    if value is None:
        return None
    limit = _number(value, name)
    if not limit > 0.0:
        raise CurveError(f"{name} must be above 0, not {limit!r}")
    return limit


def _pair(value: Any, name: str) -> Tuple[float, float]:
    try:
        first, second = value
    except (TypeError, ValueError):
        raise TypeError(f"{name} must be a pair of numbers, not {value!r}") from None
    return _number(first, f"{name}[0]"), _number(second, f"{name}[1]")


def _row(row: Any, number: int) -> Row:
    try:
        end, value, profile = row
    except (TypeError, ValueError):
        raise TypeError(f"row {number} must be (end, value, profile), not {row!r}") from None
    return Row(
        _number(end, f"the end of row {number}"),
        _number(value, f"the value of row {number}"),
        _text(profile, f"the profile of row {number}"),
    )


def _rows(rows: Any) -> List[Row]:
    if isinstance(rows, (str, bytes)) or not hasattr(rows, "__iter__"):
        raise TypeError(f"rows must be a list of (end, value, profile), not {type(rows).__name__}")
    return [_row(row, number) for number, row in enumerate(rows, 1)]


def _texts(values: Any, name: str) -> List[str]:
    if isinstance(values, (str, bytes)) or not hasattr(values, "__iter__"):
        raise TypeError(f"{name} must be a list of str, not {type(values).__name__}")
    return [_text(os.fspath(value) if isinstance(value, os.PathLike) else value, name) for value in values]


def _path(path: Any) -> str:
    path = os.fspath(path)
    return _text(os.fsdecode(path) if isinstance(path, bytes) else path, "path")


def _check_writable(path: str) -> None:
    """Raises the `OSError` that opening the file for writing would raise, without making it."""
    folder = os.path.dirname(path) or "."
    if os.path.isdir(path):
        raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), path)
    if not os.path.isdir(folder):
        raise FileNotFoundError(errno.ENOENT, os.strerror(errno.ENOENT), path)
    if not os.access(path if os.path.exists(path) else folder, os.W_OK):
        raise PermissionError(errno.EACCES, os.strerror(errno.EACCES), path)


def _warn(problems: Iterable[Tuple[str, str, str]]) -> None:
    for _, place, message in problems:
        warnings.warn(f"{place}: {message}" if place else message, CurveWarning, stacklevel=3)


def _common(name: Any, over: Any, drive: Any, rotary: Any) -> Dict[str, Any]:
    over = _text(over, "over")
    known = over in ("time", "angle")
    return {
        "name": _text(name, "name"),
        "over": over if known else "result",
        "result": "" if known else over,
        "drive": _choice_of_text(drive, "drive", _DRIVES),
        "rotary": bool(rotary),
        "data_type": None,
    }


def _make(state: Dict[str, Any]) -> "Curve":
    return Curve(_mfcurves.CurveCore(state))


# --- Curves ----------------------------------------------------------------------------------


def _values(curve: "Curve", x: Any, nu: Any, side: Any) -> Any:
    """What ``curve(x, nu, side)`` returns for all but a plain float."""
    order = _order(nu)
    side = _choice_of_text(side, "side", _SIDES)
    array = _numbers(x, "x")
    values = curve.values(array, order, side)
    return _shaped_as(x, values)


def _shaped_as(x: Any, values: np.ndarray) -> Any:
    if values.ndim == 0 and not isinstance(x, np.ndarray):
        return float(values)
    if isinstance(x, np.ma.MaskedArray):
        return np.ma.array(values, mask=np.broadcast_to(np.ma.getmaskarray(x), values.shape))
    return values


class Curve(_mfcurves.CurveCore):
    """A motion function: constant, and shared by as many threads as you like.

    Make one with `segments`, `points`, `expression`, `read` or `parse`. The units are
    those of what it is made from; derivatives are by x.

    Examples
    --------
    >>> import mfcurves as mf
    >>> cam = mf.segments([(90, 25, "3-4-5-Polynomial"), (150, 25, "Linear")], over="angle")
    >>> cam(45.0), cam([0, 45, 90]).tolist()
    (12.5, [0.0, 12.5, 25.0])
    >>> cam.domain
    (0.0, 150.0)
    """

    def svaj(self, x: ArrayLike, side: Side = "plain") -> NDArray[np.float64]:
        """Value, velocity, acceleration and jerk: the value and three derivatives by x.

        Parameters
        ----------
        x : array_like of real numbers, any shape
        side : {"plain", "left", "right"}
            From which side each x is approached; see `__call__`.

        Returns
        -------
        ndarray of shape ``(4,) + numpy.shape(x)``; NaN where there is no finite value.

        Examples
        --------
        >>> import mfcurves as mf
        >>> mf.expression("x^2", domain=(0, 1)).svaj([0.5]).ravel().tolist()
        [0.25, 1.0, 2.0, 0.0]
        """
        values = self.all_values(_numbers(x, "x"), _choice_of_text(side, "side", _SIDES))
        if isinstance(x, np.ma.MaskedArray):
            return np.ma.array(values, mask=np.broadcast_to(np.ma.getmaskarray(x), values.shape))
        return values

    def derivative(self, nu: int = 1) -> "Derivative":
        """One order of this curve as a function of x.

        Parameters
        ----------
        nu : int from 0 to 3

        Examples
        --------
        >>> import mfcurves as mf
        >>> velocity = mf.expression("x^3", domain=(0, 1)).derivative()
        >>> velocity(2.0), velocity.derivative()(2.0)
        (12.0, 12.0)
        """
        return Derivative(self, _order(nu))

    def with_outside(self, rule: Outside) -> "Curve":
        """The same curve under another rule beyond its ends.

        Parameters
        ----------
        rule : {"extend", "hold", "repeat", "undefined"}
            The end's formula goes on; the end's value is kept; the curve begins anew; NaN.
            Equality and documents do not see the rule.

        Examples
        --------
        >>> import mfcurves as mf
        >>> mf.points([0, 1], [0, 2]).with_outside("hold")(5.0)
        2.0
        """
        return Curve(self.with_rule(_choice_of_text(rule, "rule", _OUTSIDES)))

    @property
    def domain(self) -> Tuple[float, float]:
        """The first and the last x."""
        return self.first_x, self.last_x

    @property
    def rows(self) -> Tuple[Row, ...]:
        """The rows, in order; empty for points and expressions."""
        return tuple(Row(*row) for row in self.state().get("rows", ()))

    @property
    def name(self) -> str:
        """The name of the curve in documents and pictures."""
        return self.state()["name"]

    @property
    def over(self) -> str:
        """What x is: ``"time"``, ``"angle"`` or the name of a motion result."""
        state = self.state()
        return state["result"] if state["over"] == "result" else state["over"]

    @property
    def drive(self) -> str:
        """What the values are: ``"displacement"``, ``"velocity"``, ``"acceleration"``, ``"force"``
        or ``"torque"``."""
        return self.state()["drive"]

    @property
    def rotary(self) -> bool:
        """True for degrees, False for millimetres."""
        return self.state()["rotary"]

    def replace(self, **changes: Any) -> "Curve":
        """A curve with some of the arguments that made this one changed.

        Parameters
        ----------
        **changes
            Arguments of `segments`, `points` or `expression`, whichever kind this curve is.

        Examples
        --------
        >>> import mfcurves as mf
        >>> ramp = mf.segments([(1, 10, "Linear")])
        >>> ramp.replace(rows=[(2, 10, "Linear")], name="slow")(1.0)
        5.0
        """
        make, arguments = self._arguments()
        unknown = sorted(set(changes) - set(arguments))
        if unknown:
            raise TypeError(f"{make.__name__}() has no argument {unknown[0]!r}; it has {', '.join(arguments)}")
        state = self.state()
        changed = make(**{**arguments, **changes}).state()
        changed["data_type"] = None if {"drive", "rotary"} & set(changes) else state["data_type"]
        return _make(changed).with_outside(self.outside)

    def _arguments(self) -> Tuple[Callable[..., "Curve"], Dict[str, Any]]:
        """The function that makes such a curve, and its arguments for this one."""
        state = self.state()
        common = {"over": self.over, "drive": state["drive"], "rotary": state["rotary"], "name": state["name"]}
        if state["kind"] == "segments":
            own = {key: state[key] for key in ("rows", "start", "laws", "six_decimals")}
            return segments, {**own, **common}
        if state["kind"] == "points":
            return points, {**{key: state[key] for key in ("x", "y", "interpolation")}, **common}
        return expression, {"text": state["text"], "domain": state["domain"], **common}

    def breaks(self, order: int = 3) -> List[Break]:
        """The places where the value or a derivative jumps, ascending.

        Parameters
        ----------
        order : int from 0 to 4
            The highest order whose jumps count.

        Examples
        --------
        >>> import mfcurves as mf
        >>> ramp = mf.segments([(1, 10, "Linear"), (2, 10, "Linear")])
        >>> [(place.x, place.lowest, place.cause) for place in ramp.breaks()]
        [(1.0, 1, 'seam')]
        """
        return breaks_from(self.find_breaks(_order(order, "order", (0, 1, 2, 3, 4))))

    def peaks(self) -> List[Summary]:
        """Extremes, root mean square and mean of the value and each derivative.

        Returns
        -------
        list of four Summary, by order

        Examples
        --------
        >>> import mfcurves as mf
        >>> velocity = mf.segments([(2, 10, "3-4-5-Polynomial")]).peaks()[1]
        >>> velocity.greatest.x, velocity.greatest.y, velocity.guaranteed
        (1.0, 9.375, True)
        """
        return summaries_from(self.summarize())

    def crossings(self, value: float, nu: int = 0) -> List[float]:
        """Where an order takes a value, ascending.

        Parameters
        ----------
        value : float
        nu : int from 0 to 3

        Examples
        --------
        >>> import mfcurves as mf
        >>> mf.segments([(2, 10, "3-4-5-Polynomial")]).crossings(5.0)
        [1.0]
        """
        return self.find_crossings(_order(nu), _number(value, "value"))

    def check(
        self,
        max_velocity: Optional[float] = None,
        max_acceleration: Optional[float] = None,
        max_jerk: Optional[float] = None,
        range: Optional[Tuple[float, float]] = None,
        continuity: Optional[int] = None,
        cyclic: bool = False,
    ) -> Check:
        """Whether the curve keeps limits, and where it does not.

        Parameters
        ----------
        max_velocity, max_acceleration, max_jerk : float above 0, optional
            In the units of the curve by x.
        range : (low, high), optional
            For the values.
        continuity : int from 0 to 3, optional
            No order up to this one may jump.
        cyclic : bool
            Whether the end meets the start, too; alone it asks for continuity 0 there.

        Examples
        --------
        >>> import mfcurves as mf
        >>> cam = mf.segments([(2, 10, "3-4-5-Polynomial")])
        >>> cam.check(max_velocity=10.0).ok, cam.check(max_velocity=9.0).ok
        (True, False)
        """
        return check_from(
            self.find_violations(
                _limit(max_velocity, "max_velocity"),
                _limit(max_acceleration, "max_acceleration"),
                _limit(max_jerk, "max_jerk"),
                None if range is None else _pair(range, "range"),
                None if continuity is None else _order(continuity, "continuity"),
                bool(cyclic),
            )
        )

    def over_time(self, rpm: Optional[float] = None, cycle_time: Optional[float] = None) -> "Curve":
        """This angle curve over time, at a constant speed.

        Parameters
        ----------
        rpm : float above 0
            Revolutions of 360 degrees in a minute.
        cycle_time : float above 0
            Seconds for 360 degrees, in place of ``rpm``.

        Examples
        --------
        >>> import mfcurves as mf
        >>> cam = mf.segments([(180, 10, "3-4-5-Polynomial"), (360, 0, "3-4-5-Polynomial")], over="angle")
        >>> cam.over_time(rpm=60)(0.5)
        10.0
        """
        if (rpm is None) == (cycle_time is None):
            raise TypeError("over_time() takes either rpm or cycle_time")
        if self.over != "angle":
            raise CurveError(f"only a curve over the angle has a speed, not one over {self.over!r}")
        rpm_limit, seconds = _limit(rpm, "rpm"), _limit(cycle_time, "cycle_time")
        if rpm_limit is not None:
            seconds = 60.0 / rpm_limit
        assert seconds is not None
        return Curve(self.timed(seconds / 360.0))

    def to_table(
        self, form: Literal["linear", "points", "xyva"], tolerance: float, d1: Optional[float] = None, d2: Optional[float] = None
    ) -> CamTable:
        """This curve as a table that keeps within a tolerance.

        Parameters
        ----------
        form : {"linear", "points", "xyva"}
            Points joined by lines; points for the natural cubic spline; points with velocity
            and acceleration, joined by polynomials of degree 5.
        tolerance : float above 0
            For the value.
        d1, d2 : float above 0, optional
            For the first two derivatives; for ``"xyva"`` alone.

        Examples
        --------
        >>> import mfcurves as mf
        >>> table = mf.segments([(2, 10, "3-4-5-Polynomial")]).to_table("xyva", 1e-6)
        >>> bool(table.bound <= 1e-6), table.guaranteed
        (True, True)
        """
        form = _choice_of_text(form, "form", ("linear", "points", "xyva"))
        limit = _limit(tolerance, "tolerance")
        if limit is None:
            raise TypeError("tolerance must be a number, not None")
        return CamTable(*self.tabulate(form, limit, _limit(d1, "d1"), _limit(d2, "d2")))

    def to_ppoly(self, tolerance: float) -> Any:
        """The ``"xyva"`` table of this curve as a `scipy.interpolate.PPoly`.

        Parameters
        ----------
        tolerance : float above 0
            For the value.

        Examples
        --------
        >>> import mfcurves as mf
        >>> pieces = mf.segments([(2, 10, "3-4-5-Polynomial")]).to_ppoly(1e-6)
        >>> round(float(pieces(1.0)), 6)
        5.0
        """
        from scipy.interpolate import BPoly, PPoly

        table = self.to_table("xyva", tolerance)
        pieces = np.flatnonzero(np.diff(table.x) > 0.0)
        knots = np.append(table.x[pieces], table.x[-1])
        given = np.stack([table.y, table.d1, table.d2], axis=1)
        polynomials = [
            PPoly.from_bernstein_basis(BPoly.from_derivatives(table.x[i : i + 2], given[i : i + 2])).c
            for i in pieces
        ]
        return PPoly(np.concatenate(polynomials, axis=1), knots)

    def plot(self, ax: Any = None, orders: Iterable[int] = _ORDERS) -> Any:
        """Draws this curve with matplotlib: its orders, their extremes, and where it breaks.

        Parameters
        ----------
        ax : matplotlib axes, optional
            For all orders together; without it each has a panel of a new figure.
        orders : list of int from 0 to 3

        Returns
        -------
        The given axes, or an array of the new ones.
        """
        from mfcurves import _plot

        return _plot.plot(self, ax, orders)

    def _repr_svg_(self) -> str:
        return self.picture()

    def to_xml(self) -> str:
        """This curve as a document. What its six digits change is a `CurveWarning`.

        Examples
        --------
        >>> import mfcurves as mf
        >>> cam = mf.segments([(90, 25, "Cycloidal")], over="angle")
        >>> mf.parse(cam.to_xml()) == cam.replace(six_decimals=True)
        True
        """
        xml, losses = self.document()
        _warn(losses)
        return xml

    def write(self, path: Union[str, "os.PathLike[str]"]) -> None:
        """Writes the document of this curve to a file.

        Parameters
        ----------
        path : str or path
            The file holds its old content or the new, never a part. `OSError` or
            `CurveError` when it cannot be written.
        """
        _check_writable(_path(path))
        self.save(_path(path))

    def __eq__(self, other: object) -> Any:
        return self.equals(other) if isinstance(other, Curve) else NotImplemented

    def __hash__(self) -> int:
        return hash(_frozen(self.state()))

    def __copy__(self) -> "Curve":
        return self

    def __deepcopy__(self, memo: Any) -> "Curve":
        return self

    def __reduce__(self) -> Tuple[Any, ...]:
        return _restored, (self.state(), self.outside)

    def __repr__(self) -> str:
        make, arguments = self._arguments()
        defaults = _DEFAULTS[make.__name__]
        parts = []
        for name, value in arguments.items():
            if name in defaults and _frozen(value) == _frozen(defaults[name]):
                continue
            if isinstance(value, np.ndarray):
                value = value.tolist()
            parts.append(repr(value) if name in ("rows", "x", "y", "text") else f"{name}={value!r}")
        rule = "" if self.outside == "extend" else f".with_outside({self.outside!r})"
        return f"mf.{make.__name__}({', '.join(parts)}){rule}"


def _frozen(value: Any) -> Any:
    """A value that can be hashed: equal for equal ones, with numbers by their bits."""
    if isinstance(value, dict):
        return tuple((key, _frozen(item)) for key, item in value.items())
    if isinstance(value, (list, tuple)):
        return tuple(_frozen(item) for item in value)
    if isinstance(value, np.ndarray):
        return value.tobytes()
    return value.hex() if isinstance(value, float) else value


class Derivative:
    """One order of a curve as a function of x; what `Curve.derivative` returns."""

    __slots__ = ("curve", "nu")

    def __init__(self, curve: Curve, nu: int) -> None:
        self.curve = curve
        self.nu = nu

    def __call__(self, x: Any, nu: int = 0, side: str = "plain") -> Any:
        """The derivative at x, or one of its own derivatives."""
        return self.curve(x, _order(self.nu + _order(nu), "the sum of orders"), side)

    def derivative(self, nu: int = 1) -> "Derivative":
        """A derivative of this derivative; order 3 of the curve is the highest."""
        return Derivative(self.curve, _order(self.nu + _order(nu), "the sum of orders"))

    @property
    def domain(self) -> Tuple[float, float]:
        """The first and the last x."""
        return self.curve.domain

    def __eq__(self, other: object) -> Any:
        if not isinstance(other, Derivative):
            return NotImplemented
        return (self.curve, self.nu) == (other.curve, other.nu)

    def __hash__(self) -> int:
        return hash((self.curve, self.nu))

    def __repr__(self) -> str:
        return f"{self.curve!r}.derivative({self.nu})"


def _restored(state: Any, outside: Any) -> Curve:
    """The curve of a pickle."""
    try:
        return Curve(_mfcurves.CurveCore(state)).with_outside(outside)
    except CurveError:
        raise
    except (KeyError, TypeError, ValueError, RuntimeError) as error:
        raise CurveError(f"the pickled curve is damaged: {error}") from error


_NOTHING: Dict[str, Any] = {"over": "time", "drive": "displacement", "rotary": False, "name": ""}
# What the arguments of the functions below are when they are not given.
_DEFAULTS: Dict[str, Dict[str, Any]] = {
    "segments": {"start": (0.0, 0.0), "laws": {}, "six_decimals": False, **_NOTHING},
    "points": {"interpolation": "linear", **_NOTHING},
    "expression": _NOTHING,
}


# --- What makes curves -----------------------------------------------------------------------


def segments(
    rows: Iterable[Tuple[float, float, str]],
    start: Tuple[float, float] = (0.0, 0.0),
    over: Over = "time",
    drive: Drive = "displacement",
    rotary: bool = False,
    name: str = "",
    laws: Optional[Dict[str, str]] = None,
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
        What x is: ``"time"`` in seconds, ``"angle"`` in degrees, or the name of a motion result.
    drive : {"displacement", "velocity", "acceleration", "force", "torque"}
    rotary : bool
        Degrees in place of millimetres.
    name : str
    laws : dict from name to text, optional
        Motion laws in the profile language.
    six_decimals : bool
        Whether numbers enter the laws with six decimals, as those of documents do.

    Raises
    ------
    CurveError
        With a problem for each row that is wrong.

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
        rows=_rows(rows),
        start=_pair(start, "start"),
        laws={_text(key, "the name of a law"): _text(text, "a law") for key, text in (laws or {}).items()},
        six_decimals=bool(six_decimals),
    )
    return _make(state)


def points(
    x: ArrayLike,
    y: ArrayLike,
    interpolation: Joined = "linear",
    over: Over = "time",
    drive: Drive = "displacement",
    rotary: bool = False,
    name: str = "",
) -> Curve:
    """A curve through points.

    Parameters
    ----------
    x, y : array_like of real numbers, one-dimensional, of equal length, at least one
        ``x`` strictly ascending.
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
    state.update(kind="points", interpolation=_choice_of_text(interpolation, "interpolation", _INTERPOLATIONS))
    for key, values in (("x", x), ("y", y)):
        array = _numbers(values, key)
        if array.ndim != 1:
            raise CurveError(f"{key} must have one dimension, not {array.ndim}")
        if np.ma.is_masked(values):
            raise CurveError(f"{key} must have no masked numbers")
        state[key] = array
    return _make(state)


def expression(
    text: str,
    domain: Tuple[float, float],
    over: Over = "time",
    drive: Drive = "displacement",
    rotary: bool = False,
    name: str = "",
) -> Curve:
    """A curve given by an expression of one variable.

    Parameters
    ----------
    text : str
        Such as ``"10*sin(2*pi*x)"``. The variable may have any name.
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
    state.update(kind="expression", text=_text(text, "text"), domain=_pair(domain, "domain"))
    return _make(state)


def read(
    path: Union[str, "os.PathLike[str]"], results: Iterable[str] = (), library: Iterable[Any] = ()
) -> Curve:
    """The curve of a document.

    Parameters
    ----------
    path : str or path
    results : list of str
        Names of motion results that the curve may run over.
    library : list of str or path
        Folders with a ``SegmentTypes.txt``, whose motion laws rows may name.

    Warns
    -----
    CurveWarning
        For what the document says oddly.

    Raises
    ------
    CurveError
        When the document is not a curve.
    OSError
        When the file cannot be read; `FileNotFoundError` when there is none.
    """
    with open(path, "rb"):
        pass  # what keeps a file from being read is Python's own error
    core = _mfcurves.read(_path(path), _texts(library, "library"), _texts(results, "results"))
    _warn(core.found_odd())
    return Curve(core)


def parse(text: str, results: Iterable[str] = (), library: Iterable[Any] = ()) -> Curve:
    """The curve of the text of a document; see `read`.

    Examples
    --------
    >>> import mfcurves as mf
    >>> mf.parse("<Curve/>")
    Traceback (most recent call last):
        ...
    mfcurves.CurveError: ...
    """
    core = _mfcurves.parse(_text(text, "text"), _texts(library, "library"), _texts(results, "results"))
    _warn(core.found_odd())
    return Curve(core)
