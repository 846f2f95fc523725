# SPDX-License-Identifier: MIT
"""What the questions about a curve return."""

from __future__ import annotations

from typing import Any, Iterable, List, NamedTuple, Optional, Tuple

import numpy as np

Values = Tuple[float, float, float, float]


class Break(NamedTuple):
    """A place where the value or a derivative jumps.

    ``lowest`` is the lowest order that jumps; ``left`` and ``right`` are the value and
    three derivatives on either side; ``row`` counts from 1, 0 for a place that no row or
    point begins at.
    """

    x: float
    lowest: int
    cause: str
    row: int
    left: Values
    right: Values


class Peak(NamedTuple):
    """An extreme: the place, the value, the side of x it lies on, and a bound of its error."""

    x: float
    y: float
    side: str
    error: float


class Summary(NamedTuple):
    """What one order does over the range.

    ``impulses`` are the places where the order below jumps; the extremes are those beside
    them. ``guaranteed`` says that both extremes are proved.
    """

    least: Peak
    greatest: Peak
    rms: float
    mean: float
    impulses: Tuple[float, ...]
    guaranteed: bool


class Violation(NamedTuple):
    """A stretch where a limit is broken, or a jump where there should be none.

    ``limit``, ``worst`` and ``worst_x`` are None for a jump, the last two for an impulse.
    """

    order: int
    limit: Optional[float]
    start: float
    end: float
    worst: Optional[float]
    worst_x: Optional[float]


class Check(NamedTuple):
    """Whether a curve keeps its limits, and where it does not."""

    ok: bool
    violations: Tuple[Violation, ...]


class CamTable(NamedTuple):
    """A curve as a table: its rows, and the proved bound of what the table changes.

    ``d1`` and ``d2`` are empty for forms without them.
    """

    x: np.ndarray
    y: np.ndarray
    d1: np.ndarray
    d2: np.ndarray
    bound: float
    guaranteed: bool


def breaks_from(items: Iterable[Tuple[Any, ...]]) -> List[Break]:
    return [Break(*item) for item in items]


def summaries_from(items: Iterable[Tuple[Any, ...]]) -> List[Summary]:
    return [
        Summary(Peak(*least), Peak(*greatest), rms, mean, tuple(impulses), guaranteed)
        for least, greatest, rms, mean, impulses, guaranteed in items
    ]


def check_from(items: Iterable[Tuple[Any, ...]]) -> Check:
    violations = tuple(Violation(*item) for item in items)
    return Check(not violations, violations)
