# SPDX-License-Identifier: MIT
"""Motion laws: the known ones, their factors, and the fastest ones for a move."""

from __future__ import annotations

import typing as t

from mfcurves import _mfcurves
from mfcurves._errors import CurveError
from mfcurves._inputs import as_limit, as_number


class Law(t.NamedTuple):
    """A motion law and its factors.

    For a stroke H in a time T the largest velocity is ``cv`` H/T, the largest acceleration
    ``ca`` H/T^2, the largest jerk ``cj`` H/T^3. No order from 0 to ``continuity`` jumps
    inside the law, or between the law and rest at its ends.
    """

    name: str
    formula: str
    cv: float
    ca: float
    cj: float
    continuity: int


class Move(t.NamedTuple):
    """The shortest duration of a move with a law, in seconds, and the limit that determines it."""

    profile: str
    duration: float
    limited_by: str


def laws() -> t.List[Law]:
    """The motion laws that rows can name without a library: built in and shipped.

    Examples
    --------
    >>> import mfcurves as mf
    >>> {law.name: law.cv for law in mf.laws()}["3-4-5-Polynomial"]
    1.875
    """
    return [Law(*law) for law in _mfcurves.laws()]


def fastest(
    stroke: float,
    max_velocity: t.Optional[float] = None,
    max_acceleration: t.Optional[float] = None,
    max_jerk: t.Optional[float] = None,
) -> t.List[Move]:
    """The laws that make a move from rest to rest, the fastest first.

    Parameters
    ----------
    stroke : float
        Not 0; the sign does not matter.
    max_velocity, max_acceleration, max_jerk : float above 0, optional
        At least one, in the unit of the stroke and seconds.

    Returns
    -------
    list of Move
        Only laws without an impulse in a limited order, inside and at their ends.

    Examples
    --------
    >>> import mfcurves as mf
    >>> moves = mf.fastest(0.2, max_velocity=1.0)
    >>> moves[0].duration <= moves[-1].duration
    True
    """
    stroke = as_number(stroke, "stroke")
    limits = [
        as_limit(max_velocity, "max_velocity"),
        as_limit(max_acceleration, "max_acceleration"),
        as_limit(max_jerk, "max_jerk"),
    ]
    if all(limit is None for limit in limits):
        raise CurveError("at least one of max_velocity, max_acceleration and max_jerk is needed")
    if not abs(stroke) > 0.0 or stroke in (float("inf"), -float("inf")):
        raise CurveError(f"stroke must be finite and not 0, not {stroke!r}")
    return [Move(*move) for move in _mfcurves.fastest(stroke, *limits)]
