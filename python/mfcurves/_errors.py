# SPDX-License-Identifier: MIT
"""The error of a curve that cannot be made, and the warning for a document with differences."""

from __future__ import annotations

import warnings
import typing as t


class Problem(t.NamedTuple):
    """One problem of a curve or its document.

    Attributes
    ----------
    level : {"error", "warning"}
    place : str
        Such as ``"cam.xml:12"``, ``"row 3"``, ``"point 3"`` or ``"character 7"``, counted
        from 1; empty for a problem of the whole curve.
    message : str
        What was expected and what was found.
    """

    level: str
    place: str
    message: str


class CurveError(ValueError):
    """Raised when a curve cannot be made, read, evaluated as requested, or written.

    ``problems`` is a tuple of at least one `Problem`. The text of the error has one line
    for each.

    Examples
    --------
    >>> import mfcurves as mf
    >>> try:
    ...     mf.expression("10*sin(x", domain=(0, 1))
    ... except mf.CurveError as error:
    ...     print(error.problems[0].place)
    character 9
    """

    def __init__(self, message: str, problems: t.Iterable[t.Tuple[str, str, str]] = ()) -> None:
        found = tuple(Problem(*problem) for problem in problems) or (Problem("error", "", message),)
        super().__init__(message, found)
        self.problems: t.Tuple[Problem, ...] = found

    def __str__(self) -> str:
        return str(self.args[0])


class CurveWarning(UserWarning):
    """Warns that a curve differs from what its document says."""


def warn(problems: t.Iterable[t.Tuple[str, str, str]]) -> None:
    for _, place, message in problems:
        warnings.warn(f"{place}: {message}" if place else message, CurveWarning, stacklevel=3)
