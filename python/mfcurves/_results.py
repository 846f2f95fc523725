# SPDX-License-Identifier: MIT
"""The results of analysing a curve."""

from __future__ import annotations

import typing as t

import numpy as np

if t.TYPE_CHECKING:
    import numpy.typing as npt

Values = t.Tuple[float, float, float, float]


class Break(t.NamedTuple):
    """A place where the value or a derivative jumps.

    ``lowest`` is the lowest order that jumps. ``left`` and ``right`` are the value and
    three derivatives on each side. ``row`` is the row or point that begins there, counted
    from 1; 0 if none does.
    """

    x: float
    lowest: int
    cause: str
    row: int
    left: Values
    right: Values


class Peak(t.NamedTuple):
    """An extreme: its x, its value, the side of x on which it lies, and a bound of its error."""

    x: float
    y: float
    side: str
    error: float


class Summary(t.NamedTuple):
    """One order over the domain.

    ``impulses`` are the places where the next lower order jumps; the extremes leave them
    out. ``guaranteed`` is true when both extremes are proved.
    """

    least: Peak
    greatest: Peak
    rms: float
    mean: float
    impulses: t.Tuple[float, ...]
    guaranteed: bool


class Violation(t.NamedTuple):
    """A stretch where a limit is violated, or a jump that is not allowed.

    For a jump, ``limit``, ``worst`` and ``worst_x`` are None; for an impulse, ``worst`` and
    ``worst_x``.
    """

    order: int
    limit: t.Optional[float]
    start: float
    end: float
    worst: t.Optional[float]
    worst_x: t.Optional[float]


class Check(t.NamedTuple):
    """Whether a curve stays within its limits, and where it does not."""

    ok: bool
    violations: t.Tuple[Violation, ...]


class CamTable(t.NamedTuple):
    """A curve as a table: its rows, and a bound of the error of the table.

    ``d1`` and ``d2`` are empty for forms without them. ``guaranteed`` is true when the bound
    is proved and within the tolerance.
    """

    x: npt.NDArray[np.float64]
    y: npt.NDArray[np.float64]
    d1: npt.NDArray[np.float64]
    d2: npt.NDArray[np.float64]
    bound: float
    guaranteed: bool


def breaks_from(items: t.Iterable[t.Tuple[t.Any, ...]]) -> t.List[Break]:
    return [Break(*item) for item in items]


def summaries_from(items: t.Iterable[t.Tuple[t.Any, ...]]) -> t.List[Summary]:
    return [
        Summary(Peak(*least), Peak(*greatest), rms, mean, tuple(impulses), guaranteed)
        for least, greatest, rms, mean, impulses, guaranteed in items
    ]


def check_from(items: t.Iterable[t.Tuple[t.Any, ...]]) -> Check:
    violations = tuple(Violation(*item) for item in items)
    return Check(not violations, violations)


def ppoly_from(table: CamTable) -> t.Any:
    """The `scipy.interpolate.PPoly` of an ``"xyva"`` table."""
    from scipy.interpolate import BPoly, PPoly  # type: ignore[import]

    pieces = np.flatnonzero(np.diff(table.x) > 0.0)
    knots = np.append(table.x[pieces], table.x[-1])
    given = np.stack([table.y, table.d1, table.d2], axis=1)
    polynomials = [
        PPoly.from_bernstein_basis(BPoly.from_derivatives(table.x[i : i + 2], given[i : i + 2])).c
        for i in pieces
    ]
    return PPoly(np.concatenate(polynomials, axis=1), knots)
