# SPDX-License-Identifier: MIT
"""Curves as the calls that make them."""

from __future__ import annotations

import inspect
import typing as t

import numpy as np

if t.TYPE_CHECKING:
    from mfcurves import _curve


def call_of(curve: "_curve.Curve") -> t.Tuple[t.Callable[..., "_curve.Curve"], t.Dict[str, t.Any]]:
    """The function that makes a curve of this kind, and its arguments for this curve."""
    from mfcurves import _making  # not at the top: it imports Curve

    state = curve.state()
    common = {"over": curve.over, "drive": state["drive"], "rotary": state["rotary"], "name": state["name"]}
    if state["kind"] == "segments":
        own = {key: state[key] for key in ("rows", "start", "laws", "six_decimals")}
        return _making.segments, {**own, **common}
    if state["kind"] == "points":
        return _making.points, {**{key: state[key] for key in ("x", "y", "interpolation")}, **common}
    return _making.expression, {"text": state["text"], "domain": state["domain"], **common}


def changed_state(curve: "_curve.Curve", changes: t.Dict[str, t.Any]) -> t.Any:
    """The state of a curve that is made with other arguments where `changes` has some."""
    make, arguments = call_of(curve)
    unknown = sorted(set(changes) - set(arguments))
    if unknown:
        raise TypeError(f"{make.__name__}() has no argument {unknown[0]!r}; it has {', '.join(arguments)}")
    changed = make(**{**arguments, **changes}).state()
    changed["data_type"] = None if {"drive", "rotary"} & set(changes) else curve.state()["data_type"]
    return changed


def text_of_call(curve: "_curve.Curve") -> str:
    """What ``repr(curve)`` shows."""
    make, arguments = call_of(curve)
    defaults = {name: item.default for name, item in inspect.signature(make).parameters.items()}
    parts = []
    for name, value in arguments.items():
        if frozen(value) == frozen(defaults[name]) or (name == "laws" and not value):
            continue
        if isinstance(value, np.ndarray):
            value = value.tolist()
        parts.append(repr(value) if name in ("rows", "x", "y", "text") else f"{name}={value!r}")
    rule = "" if curve.outside == "extend" else f".with_outside({curve.outside!r})"
    return f"mf.{make.__name__}({', '.join(parts)}){rule}"


def frozen(value: t.Any) -> t.Any:
    """A hashable form of a value; numbers are compared by their bits."""
    if isinstance(value, dict):
        return tuple((key, frozen(item)) for key, item in value.items())
    if isinstance(value, (list, tuple)):
        return tuple(frozen(item) for item in value)
    if isinstance(value, np.ndarray):
        return value.tobytes()
    return value.hex() if isinstance(value, float) else value
