# SPDX-License-Identifier: MIT
"""One order of a curve as a function of its own."""

from __future__ import annotations

import typing as t

from mfcurves._inputs import as_order

if t.TYPE_CHECKING:
    from mfcurves import _curve


class Derivative:
    """One order of a curve as a function of x; what `Curve.derivative` returns."""

    __slots__ = ("curve", "nu")

    def __init__(self, curve: "_curve.Curve", nu: int) -> None:
        self.curve = curve
        self.nu = nu

    def __call__(self, x: t.Any, nu: int = 0, side: t.Literal["plain", "left", "right"] = "plain") -> t.Any:
        """The derivative at x, or one of its own derivatives."""
        return self.curve(x, as_order(self.nu + as_order(nu), "the sum of orders"), side)

    def derivative(self, nu: int = 1) -> "Derivative":
        """A derivative of this derivative, up to order 3 of the curve."""
        return Derivative(self.curve, as_order(self.nu + as_order(nu), "the sum of orders"))

    @property
    def domain(self) -> t.Tuple[float, float]:
        """The first and the last x."""
        return self.curve.domain

    def __eq__(self, other: object) -> t.Any:
        if not isinstance(other, Derivative):
            return NotImplemented
        return (self.curve, self.nu) == (other.curve, other.nu)

    def __hash__(self) -> int:
        return hash((self.curve, self.nu))

    def __reduce__(self) -> t.Tuple[t.Any, ...]:
        return Derivative, (self.curve, self.nu)

    def __repr__(self) -> str:
        return f"{self.curve!r}.derivative({self.nu})"
