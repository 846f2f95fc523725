#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes stationary.txt: where derivatives of expressions are 0, and the order below it there.

    /usr/bin/python3 make_stationary.py > stationary.txt

mpmath computes with 40 digits: the signs of the derivative on a fine grid, then the root between
two of them. Each line is an order, a range, a formula, and pairs of x and the value of that order.
"""

import mpmath

mpmath.mp.dps = 40
GRID = 4000

CASES = [
    ("x*sin(x)/(1+x^2)", 0.3, 12),
    ("exp(-x/5)*cos(3*x)", 0, 8),
    ("sin(x)+sin(2*x)/2+sin(3*x)/3", 0.1, 6.1),
    ("log(1+x^2)*cos(x)", -5, 4.9),
    ("x^5-3*x^3+x", -2, 1.9),
    ("tanh(4*x)-x", -1, 0.9),
    ("sqrt(1+x^2)*sin(x^2)", 0.1, 3),
]


def python_text(formula):
    return formula.replace("^", "**")


def roots_of(function, start, end):
    start, end = mpmath.mpf(start), mpmath.mpf(end)
    grid = [start + (end - start) * i / GRID for i in range(GRID + 1)]
    values = [function(x) for x in grid]
    for a, b, at_a, at_b in zip(grid, grid[1:], values, values[1:]):
        assert at_a != 0, "the grid hits a root"
        if at_a * at_b < 0:
            yield mpmath.findroot(function, (a, b), solver="anderson", tol=1e-70)


def main():
    names = {name: getattr(mpmath, name) for name in ("sin", "cos", "exp", "log", "tanh", "sqrt")}
    for formula, start, end in CASES:
        def value(x, formula=formula):
            return eval(python_text(formula), names, {"x": x})  # pylint: disable=eval-used

        for order in (0, 1, 2):
            roots = list(roots_of(lambda x: mpmath.diff(value, x, order + 1), start, end))
            numbers = [n for x in roots for n in (x, mpmath.diff(value, x, order))]
            print(order, start, end, formula, *(mpmath.nstr(n, 25) for n in numbers))


if __name__ == "__main__":
    main()
