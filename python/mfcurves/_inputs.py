# SPDX-License-Identifier: MIT
"""Checks of arguments. Each function returns the argument in one form, or raises an error that says why not."""

from __future__ import annotations

import errno
import math
import os
import typing as t

import numpy as np

from mfcurves._errors import CurveError

# Only for annotations: importing it takes almost as long as importing NumPy.
if t.TYPE_CHECKING:
    import numpy.typing as npt

SIDES = ("plain", "left", "right")
OUTSIDES = ("extend", "hold", "repeat", "undefined")
INTERPOLATIONS = ("linear", "cubic", "akima")
FORMS = ("linear", "points", "xyva")
DRIVES = ("displacement", "velocity", "acceleration", "force", "torque")
ORDERS = (0, 1, 2, 3)

One = t.TypeVar("One")


class Row(t.NamedTuple):
    """One stretch of a curve made of rows: it ends at ``end`` with ``value``, shaped by ``profile``."""

    end: float
    value: float
    profile: str


def as_number(value: t.Any, name: str) -> float:
    if isinstance(value, (str, bytes)) or np.iscomplexobj(value) or not hasattr(value, "__float__"):
        raise TypeError(f"{name} must be a real number, not {type(value).__name__}")
    try:
        return float(value)
    except OverflowError:
        raise CurveError(f"{name} is too large for a number") from None


def as_finite(value: t.Any, name: str) -> float:
    number = as_number(value, name)
    if not math.isfinite(number):
        raise CurveError(f"{name} must be finite, not {number!r}")
    return number


def as_truth(value: t.Any, name: str) -> bool:
    if not isinstance(value, (bool, np.bool_)):
        raise TypeError(f"{name} must be True or False, not {value!r}")
    return bool(value)


def as_text(value: t.Any, name: str) -> str:
    if not isinstance(value, str):
        raise TypeError(f"{name} must be a str, not {type(value).__name__}")
    if "\0" in value:
        raise CurveError(f"{name} must not contain a zero character")
    try:
        value.encode()
    except UnicodeEncodeError as error:
        raise CurveError(f"{name} must be Unicode text, and its character {error.start + 1} is half of one") from None
    return value


def one_of(value: t.Any, name: str, choices: t.Sequence[One]) -> One:
    for choice in choices:
        if value == choice:
            return choice
    expected = ", ".join(repr(choice) for choice in choices[:-1])
    raise CurveError(f"{name} must be {expected} or {choices[-1]!r}, not {value!r}")


def as_choice(value: t.Any, name: str, choices: t.Sequence[One]) -> One:
    return one_of(as_text(value, name), name, choices)


def as_order(value: t.Any, name: str = "nu", orders: t.Sequence[int] = ORDERS) -> int:
    if isinstance(value, (str, bytes)) or not hasattr(value, "__index__"):
        raise TypeError(f"{name} must be a whole number, not {type(value).__name__}")
    return one_of(int(value), name, orders)


def as_array(values: t.Any, name: str) -> npt.NDArray[np.float64]:
    """Any array of real numbers as doubles in C order."""
    array = np.asarray(values)
    if array.dtype.kind == "O":  # such as fractions, and whole numbers of more than 64 bits
        try:
            array = np.array([as_number(value, name) for value in array.flat]).reshape(array.shape)
        except CurveError as error:
            raise TypeError(str(error)) from None
    if array.dtype.kind not in "biuf":
        if array.size == 0:
            return np.zeros(array.shape)
        raise TypeError(f"{name} must hold real numbers, not {array.dtype}")
    return np.require(array, np.float64, ["C", "A"])


def as_limit(value: t.Any, name: str) -> t.Optional[float]:
    """A limit above 0, or None for no limit."""
    if value is None:
        return None
    limit = as_number(value, name)
    if not limit > 0.0:
        raise CurveError(f"{name} must be above 0, not {limit!r}")
    return limit


def as_tolerance(tolerance: t.Any) -> float:
    limit = as_limit(tolerance, "tolerance")
    if limit is None:
        raise TypeError("tolerance must be a number, not None")
    return limit


def as_cycle_time(rpm: t.Any, cycle_time: t.Any) -> float:
    """Seconds for 360 degrees, from the one of the two that is not None."""
    rpm_limit, seconds = as_limit(rpm, "rpm"), as_limit(cycle_time, "cycle_time")
    if rpm_limit is not None:
        seconds = 60.0 / rpm_limit
    assert seconds is not None
    return seconds


def as_pair(value: t.Any, name: str) -> t.Tuple[float, float]:
    try:
        first, second = value
    except (TypeError, ValueError):
        raise TypeError(f"{name} must be a pair of numbers, not {value!r}") from None
    return as_number(first, f"{name}[0]"), as_number(second, f"{name}[1]")


def as_ascending(value: t.Any, name: str) -> t.Tuple[float, float]:
    low, high = as_pair(value, name)
    if not low <= high:
        raise CurveError(f"{name} must be (low, high), not {value!r}")
    return low, high


def as_row(row: t.Any, number: int) -> Row:
    try:
        end, value, profile = row
    except (TypeError, ValueError):
        raise TypeError(f"row {number} must be (end, value, profile), not {row!r}") from None
    return Row(
        as_number(end, f"the end of row {number}"),
        as_number(value, f"the value of row {number}"),
        as_text(profile, f"the profile of row {number}"),
    )


def as_rows(rows: t.Any) -> t.List[Row]:
    if isinstance(rows, (str, bytes)) or not hasattr(rows, "__iter__"):
        raise TypeError(f"rows must be a list of (end, value, profile), not {type(rows).__name__}")
    return [as_row(row, number) for number, row in enumerate(rows, 1)]


def as_texts(values: t.Any, name: str) -> t.List[str]:
    if isinstance(values, (str, bytes)) or not hasattr(values, "__iter__"):
        raise TypeError(f"{name} must be a list of str, not {type(values).__name__}")
    return [as_text(os.fspath(value) if isinstance(value, os.PathLike) else value, name) for value in values]


def as_path(path: t.Any) -> str:
    path = os.fspath(path)
    return as_text(os.fsdecode(path) if isinstance(path, bytes) else path, "path")


def check_writable(path: str) -> None:
    """Raises the `OSError` that opening the file for writing would raise, without creating the file."""
    folder = os.path.dirname(path) or "."
    if os.path.isdir(path):
        raise IsADirectoryError(errno.EISDIR, os.strerror(errno.EISDIR), path)
    if not os.path.isdir(folder):
        raise FileNotFoundError(errno.ENOENT, os.strerror(errno.ENOENT), path)
    if not os.access(path if os.path.exists(path) else folder, os.W_OK):
        raise PermissionError(errno.EACCES, os.strerror(errno.EACCES), path)


def raise_file_error(error: CurveError, path: str) -> t.NoReturn:
    """Raises the `OSError` of a file that could not be written, although `check_writable` allows it.

    The problem ends with the system's reason. The folder exists, so a missing file is one that the
    file system did not let us create.
    """
    for code in errno.errorcode:
        if str(error).endswith(": " + os.strerror(code)):
            reason = errno.EACCES if code == errno.ENOENT else code
            raise OSError(reason, os.strerror(reason), path) from error
    raise error
