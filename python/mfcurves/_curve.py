# SPDX-License-Identifier: MIT
"""Curves and their orders as functions of x."""

from __future__ import annotations

import os
import typing as t

from mfcurves import _mfcurves
from mfcurves._calls import changed_state, frozen, text_of_call
from mfcurves._derivative import Derivative
from mfcurves._errors import CurveError, warn
from mfcurves._inputs import (
    FORMS,
    ORDERS,
    OUTSIDES,
    Row,
    as_ascending,
    as_choice,
    as_cycle_time,
    as_finite,
    as_limit,
    as_order,
    as_path,
    as_tolerance,
    as_truth,
    check_writable,
    raise_file_error,
)
from mfcurves._results import Break, CamTable, Check, Summary, breaks_from, check_from, ppoly_from, summaries_from
from mfcurves._values import all_values

if t.TYPE_CHECKING:
    import numpy as np
    import numpy.typing as npt


class Curve(_mfcurves.CurveCore):
    """A motion function. It is constant, so any number of threads may share it.

    Make one with `segments`, `points`, `expression`, `read` or `parse`. Values and x have
    the units of the data that it is made from; derivatives are by x.

    Examples
    --------
    >>> import mfcurves as mf
    >>> cam = mf.segments([(90, 25, "3-4-5-Polynomial"), (150, 25, "Linear")], over="angle")
    >>> cam(45.0), cam([0, 45, 90]).tolist()
    (12.5, [0.0, 12.5, 25.0])
    >>> cam.domain
    (0.0, 150.0)
    """

    __slots__ = ()  # no other attributes, because curves are shared

    # Using an object without its C++ curve would crash the process, so __new__ makes both.
    def __new__(cls, core: _mfcurves.CurveCore) -> "Curve":
        curve = super().__new__(cls)
        _mfcurves.CurveCore.__init__(curve, core)
        return curve

    def __init__(self, core: _mfcurves.CurveCore) -> None:
        pass  # __new__ has done everything

    def svaj(self, x: npt.ArrayLike, side: t.Literal["plain", "left", "right"] = "plain") -> npt.NDArray[np.float64]:
        """Value, velocity, acceleration and jerk: the value and three derivatives by x.

        Parameters
        ----------
        x : array_like of real numbers, any shape
        side : {"plain", "left", "right"}
            The side from which each x is approached; see `__call__`.

        Returns
        -------
        ndarray of shape ``(4,) + numpy.shape(x)``; NaN where the curve has no finite value.

        Examples
        --------
        >>> import mfcurves as mf
        >>> mf.expression("x^2", domain=(0, 1)).svaj([0.5]).ravel().tolist()
        [0.25, 1.0, 2.0, 0.0]
        """
        return all_values(self, x, side)

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
        return Derivative(self, as_order(nu))

    def with_outside(self, rule: t.Literal["extend", "hold", "repeat", "undefined"]) -> "Curve":
        """The same curve with another rule beyond its ends.

        Parameters
        ----------
        rule : {"extend", "hold", "repeat", "undefined"}
            Continue the formula at the end; keep the value at the end; repeat the curve; NaN.
            Comparison and documents ignore the rule.

        Examples
        --------
        >>> import mfcurves as mf
        >>> mf.points([0, 1], [0, 2]).with_outside("hold")(5.0)
        2.0
        """
        return Curve(self.with_rule(as_choice(rule, "rule", OUTSIDES)))

    @property
    def domain(self) -> t.Tuple[float, float]:
        """The first and the last x."""
        return self.first_x, self.last_x

    @property
    def rows(self) -> t.Tuple[Row, ...]:
        """The rows, in order; empty for points and expressions."""
        return tuple(Row(*row) for row in self.state().get("rows", ()))

    @property
    def name(self) -> str:
        """The name of the curve in documents and pictures."""
        return str(self.state()["name"])

    @property
    def over(self) -> str:
        """The meaning of x: ``"time"``, ``"angle"`` or the name of a motion result."""
        state = self.state()
        return str(state["result"] if state["over"] == "result" else state["over"])

    @property
    def drive(self) -> str:
        """The quantity of the values: ``"displacement"``, ``"velocity"``, ``"acceleration"``,
        ``"force"`` or ``"torque"``."""
        return str(self.state()["drive"])

    @property
    def rotary(self) -> bool:
        """True for degrees, False for millimetres."""
        return bool(self.state()["rotary"])

    def replace(self, **changes: t.Any) -> "Curve":
        """A copy of this curve with some of its arguments changed.

        Parameters
        ----------
        **changes
            Arguments of `segments`, `points` or `expression`, depending on the kind of this curve.

        Examples
        --------
        >>> import mfcurves as mf
        >>> ramp = mf.segments([(1, 10, "Linear")])
        >>> ramp.replace(rows=[(2, 10, "Linear")], name="slow")(1.0)
        5.0
        """
        return Curve(_mfcurves.CurveCore(changed_state(self, changes))).with_outside(self.outside)

    def breaks(self, order: int = 3) -> t.List[Break]:
        """The places where the value or a derivative jumps, ascending.

        Parameters
        ----------
        order : int from 0 to 4
            The highest order to examine.

        Warns
        -----
        CurveWarning
            When it is not proved that these are all, for example because a derivative is
            infinite somewhere.

        Examples
        --------
        >>> import mfcurves as mf
        >>> ramp = mf.segments([(1, 10, "Linear"), (2, 10, "Linear")])
        >>> [(place.x, place.lowest, place.cause) for place in ramp.breaks()]
        [(1.0, 1, 'seam')]
        """
        places = self.find_breaks(as_order(order, "order", (0, 1, 2, 3, 4)))
        if not self.found_all_breaks(order):
            warn([("warning", "", "there may be further breaks: not all of the curve is proved to be smooth")])
        return breaks_from(places)

    def peaks(self) -> t.List[Summary]:
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

    def crossings(self, value: float, nu: int = 0) -> t.List[float]:
        """The x at which an order takes a value, ascending.

        Parameters
        ----------
        value : float
            The value to find, in the unit of that order.
        nu : int from 0 to 3
            The order: 0 is the value, 1 to 3 are the derivatives.

        Warns
        -----
        CurveWarning
            When it is not proved that these are all, for example because the order is
            infinite somewhere.

        Examples
        --------
        >>> import mfcurves as mf
        >>> mf.segments([(2, 10, "3-4-5-Polynomial")]).crossings(5.0)
        [1.0]
        """
        wanted = as_finite(value, "value")
        places = self.find_crossings(as_order(nu), wanted)
        if not self.found_all_crossings(nu, wanted):
            warn([("warning", "", "the order may have this value elsewhere, too: it is not proved everywhere")])
        return places

    def check(
        self,
        max_velocity: t.Optional[float] = None,
        max_acceleration: t.Optional[float] = None,
        max_jerk: t.Optional[float] = None,
        range: t.Optional[t.Tuple[float, float]] = None,
        continuity: t.Optional[int] = None,
        cyclic: bool = False,
    ) -> Check:
        """Whether the curve stays within limits, and where it does not.

        Parameters
        ----------
        max_velocity, max_acceleration, max_jerk : float above 0, optional
            Limits of the absolute value, in the unit of the value by that of x.
        range : (low, high), optional
            The least and the greatest value allowed.
        continuity : int from 0 to 3, optional
            No order up to this one may jump.
        cyclic : bool
            Also check the step from the end to the start; alone it checks continuity 0.

        Warns
        -----
        CurveWarning
            When no violation is found, and it is not proved that there is none, for example
            because the curve has a pole.

        Examples
        --------
        >>> import mfcurves as mf
        >>> cam = mf.segments([(2, 10, "3-4-5-Polynomial")])
        >>> cam.check(max_velocity=10.0).ok, cam.check(max_velocity=9.0).ok
        (True, False)
        """
        limits = {"velocity": max_velocity, "acceleration": max_acceleration, "jerk": max_jerk}
        for derivative, (name, limit) in enumerate(limits.items(), 1):
            if limit is not None and not self.has_motion(derivative):
                raise CurveError(f"max_{name}: a curve of {self.drive} has no {name}")
        items, all_found = self.find_violations(
            as_limit(max_velocity, "max_velocity"),
            as_limit(max_acceleration, "max_acceleration"),
            as_limit(max_jerk, "max_jerk"),
            None if range is None else as_ascending(range, "range"),
            None if continuity is None else as_order(continuity, "continuity"),
            as_truth(cyclic, "cyclic"),
        )
        if not (items or all_found):
            warn([("warning", "", "no violation was found, but it is not proved that there is none")])
        return check_from(items)

    def over_time(self, rpm: t.Optional[float] = None, cycle_time: t.Optional[float] = None) -> "Curve":
        """This angle curve over time, at a constant speed.

        Parameters
        ----------
        rpm : float above 0
            Revolutions of 360 degrees per minute.
        cycle_time : float above 0
            Seconds for 360 degrees, instead of ``rpm``.

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
        return Curve(self.timed(as_cycle_time(rpm, cycle_time) / 360.0))

    def to_table(
        self,
        form: t.Literal["linear", "points", "xyva"],
        tolerance: float,
        d1: t.Optional[float] = None,
        d2: t.Optional[float] = None,
    ) -> CamTable:
        """This curve as a table that stays within a tolerance.

        Parameters
        ----------
        form : {"linear", "points", "xyva"}
            Points joined by lines; points for the natural cubic spline; points with velocity
            and acceleration, joined by polynomials of degree 5.
        tolerance : float above 0
            The largest error of the value, in its unit.
        d1, d2 : float above 0, optional
            The largest errors of the first two derivatives; only for ``"xyva"``.

        Examples
        --------
        >>> import mfcurves as mf
        >>> table = mf.segments([(2, 10, "3-4-5-Polynomial")]).to_table("xyva", 1e-6)
        >>> bool(table.bound <= 1e-6), table.guaranteed
        (True, True)
        """
        limit = as_tolerance(tolerance)
        return CamTable(*self.tabulate(as_choice(form, "form", FORMS), limit, as_limit(d1, "d1"), as_limit(d2, "d2")))

    def to_ppoly(self, tolerance: float) -> t.Any:
        """The ``"xyva"`` table of this curve as a `scipy.interpolate.PPoly`.

        Parameters
        ----------
        tolerance : float above 0
            The largest error of the value, in its unit.

        Warns
        -----
        CurveWarning
            When the error is not proved to be within the tolerance.

        Examples
        --------
        >>> import mfcurves as mf
        >>> pieces = mf.segments([(2, 10, "3-4-5-Polynomial")]).to_ppoly(1e-6)
        >>> round(float(pieces(1.0)), 6)
        5.0
        """
        table = self.to_table("xyva", tolerance)
        if not table.guaranteed:
            warn([("warning", "", f"the table is not proved to keep the tolerance of {tolerance}")])
        return ppoly_from(table)

    def plot(self, ax: t.Any = None, orders: t.Iterable[int] = ORDERS) -> t.Any:
        """Draws this curve with matplotlib: its orders, their extremes and its breaks.

        Parameters
        ----------
        ax : matplotlib axes, optional
            Axes for all orders; without it, each order gets a panel of a new figure.
        orders : list of int from 0 to 3
            The orders to draw.

        Returns
        -------
        The given axes, or an array of the new ones.
        """
        from mfcurves import _plot

        return _plot.plot(self, ax, orders)

    def _repr_svg_(self) -> str:
        return self.picture()

    def to_xml(self) -> str:
        """This curve as a document. Changes by its six digits are reported by a `CurveWarning`.

        Examples
        --------
        >>> import mfcurves as mf
        >>> cam = mf.segments([(90, 25, "Cycloidal")], over="angle")
        >>> mf.parse(cam.to_xml()) == cam.replace(six_decimals=True)
        True
        """
        xml, losses = self.document()
        warn(losses)
        return xml

    def write(self, path: t.Union[str, "os.PathLike[str]"]) -> None:
        """Writes the document of this curve to a file.

        Parameters
        ----------
        path : str or path
            The file to replace. It has either its old or its new content, never a part.

        Raises
        ------
        OSError
            When the file cannot be written; its old content stays.

        Warns
        -----
        CurveWarning
            For each change by the six digits of a document.
        """
        target = as_path(path)
        check_writable(target)
        try:
            self.save(target)
        except CurveError as error:
            raise_file_error(error, target)
        warn(self.document()[1])

    def __eq__(self, other: object) -> t.Any:
        return self.equals(other) if isinstance(other, Curve) else NotImplemented

    def __hash__(self) -> int:
        return hash(frozen(self.state()))

    def __copy__(self) -> "Curve":
        return self

    def __deepcopy__(self, memo: t.Any) -> "Curve":
        return self

    def __reduce__(self) -> t.Tuple[t.Any, ...]:
        return _restored, (self.state(), self.outside)

    def __repr__(self) -> str:
        return text_of_call(self)


def _restored(state: t.Any, outside: t.Any) -> Curve:
    """The curve of a pickle."""
    try:
        return Curve(_mfcurves.CurveCore(state)).with_outside(outside)
    except CurveError:
        raise
    except (KeyError, TypeError, ValueError, RuntimeError) as error:
        raise CurveError(f"the pickled curve is damaged: {error}") from error
