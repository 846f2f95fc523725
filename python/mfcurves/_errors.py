# SPDX-License-Identifier: MIT
"""What a curve that cannot be made says, and what a document says oddly."""

from __future__ import annotations

import warnings
import typing as t


class Problem(t.NamedTuple):
    """One thing that is wrong or odd.

    Attributes
    ----------
    level : {"error", "warning"}
    place : str
        Where: ``"cam.xml:12"``, ``"row 3"``, ``"point 3"``, ``"character 7"``, counted from
        1; empty where it is about the whole.
    message : str
        What was expected and what was found.
    """

    level: str
    place: str
    message: str


class CurveError(ValueError):
    """A curve cannot be made, read, evaluated as asked, or written.

    ``problems`` is a tuple of `Problem`, at least one; the text of the error has a line
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
    """A document says something oddly: the curve is not quite what its text suggests."""


def warn(problems: t.Iterable[t.Tuple[str, str, str]]) -> None:
    for _, place, message in problems:
        warnings.warn(f"{place}: {message}" if place else message, CurveWarning, stacklevel=3)
