#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes splines.txt: properties of curves through points, by SciPy's piecewise polynomials.

    /usr/bin/python3 make_splines.py > splines.txt

Natural cubic splines are SciPy's CubicSpline with bc_type "natural", Akima's its
Akima1DInterpolator. A curve is a line `curve KIND COUNT`, then one `point X Y` for each point.
For each order there is a line `order K LEAST GREATEST RMS MEAN` and, for orders 0 and 1, one
`stationary K COUNT X...`: the zeros of the next order, from PPoly.roots. A jump across 0 is not a
zero. RMS and mean are the exact integrals of the polynomials and of their squares.
"""

import random

import numpy as np
from numpy.polynomial import Polynomial
from scipy.interpolate import Akima1DInterpolator, CubicSpline, PPoly


def spline(kind, x, y):
    if kind == "cubic":
        return CubicSpline(x, y, bc_type="natural")
    return Akima1DInterpolator(x, y)


def pieces(function):
    """Start, length and the polynomial in the distance from the start."""
    for i, start in enumerate(function.x[:-1]):
        yield start, function.x[i + 1] - start, Polynomial(function.c[::-1, i])


def places_of_zeros(function):
    """Zeros inside the range; a zero at a knot belongs to both pieces and counts once."""
    roots = [r for r in function.roots(discontinuity=False, extrapolate=False) if np.isfinite(r)]
    places = []
    for root in sorted(roots):
        if not places or root - places[-1] > 1e-9:
            places.append(root)
    return places


def extremes(function, next_order):
    values = []
    for start, length, polynomial in pieces(function):
        values += [polynomial(0.0), polynomial(length)]
    if next_order is not None:
        values += list(function(np.array(places_of_zeros(next_order))))
    return min(values), max(values)


def integrals(function):
    total = square = 0.0
    for _, length, polynomial in pieces(function):
        total += polynomial.integ()(length)
        square += (polynomial**2).integ()(length)
    length = function.x[-1] - function.x[0]
    return np.sqrt(square / length), total / length


def show(kind, x, y):
    print("curve", kind, len(x))
    for point in zip(x, y):
        print("point", *map(repr, point))
    orders = [PPoly(spline(kind, x, y).c, np.array(x))]
    for _ in range(3):
        orders.append(orders[-1].derivative())
    for k, order in enumerate(orders):
        next_order = orders[k + 1] if k < 2 else None
        numbers = *extremes(order, next_order), *integrals(order)
        print("order", k, *(repr(float(number)) for number in numbers))
    for k in (0, 1):
        places = places_of_zeros(orders[k + 1])
        if kind == "cubic" and k == 1:
            # The ends of a natural spline are zeros by definition, which rounding may hide.
            places = [x[0], *(p for p in places if x[0] + 1e-9 < p < x[-1] - 1e-9), x[-1]]
        print("stationary", k, len(places), *(repr(float(place)) for place in places))


def main():
    show("cubic", [-1.0, 0.0, 1.0], [0.0, 1.0, 0.0])
    show("cubic", [0.0, 1.0, 3.0, 4.0], [0.0, 2.0, -1.0, 0.0])
    numbers = random.Random(7)
    for count in (5, 8, 13, 40):
        x = [round(numbers.uniform(-5.0, 5.0), 3)]
        for _ in range(count - 1):
            x.append(round(x[-1] + numbers.uniform(0.1, 3.0), 3))
        y = [round(numbers.uniform(-10.0, 10.0), 3) for _ in x]
        for kind in ("cubic", "akima"):
            show(kind, x, y)


if __name__ == "__main__":
    main()
