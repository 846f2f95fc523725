#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes table_bounds.txt: how far tables of a curve are from it, certified by Sollya's supnorm.

    PYTHONPATH=build/dev/python /usr/bin/python3 tests/analysis/make_table_bounds.py > tests/analysis/table_bounds.txt

The points of each table are those of the library. What joins them is made here in exact
fractions: lines, the natural cubic spline, and polynomials of degree 5. Sollya
(https://www.sollya.org) encloses the largest distance between these and the formula. Each case is
a line with form, tolerance, range, formula and the two bounds of the distance, and a line with
the x of the table.
"""

import subprocess
from fractions import Fraction

import mfcurves

# Of functions that are not polynomials, as supnorm requires.
CASES = [
    ("linear", 0.05, 0, 1, "sin(2*pi*x)"),
    ("linear", 0.02, -1, 2, "exp(-x^2)"),
    ("points", 1e-3, -1, 2, "exp(-x^2)"),
    ("points", 1e-3, 0, 3, "x*sin(x)/(1+x^2)"),
    ("xyva", 1e-5, 0, 1, "sin(2*pi*x)"),
    ("xyva", 1e-8, -1, 2, "exp(-x^2)"),
    ("xyva", 1e-6, 0, 2, "exp(-x)*cos(3*x)"),
    ("xyva", 1e-7, 0, 3, "x*sin(x)/(1+x^2)"),
]


def line(y, h):
    return [y[0], (y[1] - y[0]) / h]


def natural_spline(x, y):
    """The natural cubic spline by pieces, each with the coefficients in x - x[i].

    The second derivatives solve a tridiagonal system.
    """
    last = len(x) - 1
    h = [x[i + 1] - x[i] for i in range(last)]
    slope = [(y[i + 1] - y[i]) / h[i] for i in range(last)]
    bend = [Fraction(0)] * (last + 1)
    pivot, right = {}, {}
    for i in range(1, last):
        pivot[i] = 2 * (h[i - 1] + h[i])
        right[i] = 6 * (slope[i] - slope[i - 1])
        if i > 1:
            factor = h[i - 1] / pivot[i - 1]
            pivot[i] -= factor * h[i - 1]
            right[i] -= factor * right[i - 1]
    for i in range(last - 1, 0, -1):
        bend[i] = (right[i] - h[i] * bend[i + 1]) / pivot[i]
    return [[y[i], slope[i] - h[i] * (2 * bend[i] + bend[i + 1]) / 6, bend[i] / 2, (bend[i + 1] - bend[i]) / (6 * h[i])]
            for i in range(last)]


def quintic(y, v, a, h):
    """The polynomial of degree 5 with given value and two derivatives at both ends."""
    rise = (y[1] - y[0] - v[0] * h - a[0] * h**2 / 2) / h**3
    turn = (v[1] - v[0] - a[0] * h) / h**2
    bend = (a[1] - a[0]) / h
    return [y[0], v[0], a[0] / 2, 10 * rise - 4 * turn + bend / 2,
            (-15 * rise + 7 * turn - bend) / h, (6 * rise - 3 * turn + bend / 2) / h**2]


def pieces_of(form, table):
    x, y, d1, d2 = ([Fraction(float(number)) for number in column] for column in table[:4])
    if form == "points":
        return x, natural_spline(x, y)
    pieces = []
    for i in range(len(x) - 1):
        ends, h = slice(i, i + 2), x[i + 1] - x[i]
        pieces.append(line(y[ends], h) if form == "linear" else quintic(y[ends], d1[ends], d2[ends], h))
    return x, pieces


def distance(formula, x, pieces):
    """The certified bounds of the largest distance over all pieces."""
    program = ["prec=200!;", f"f={formula};"]
    for i, coefficients in enumerate(pieces):
        polynomial = "+".join(f"({c.numerator}/{c.denominator})*x^{k}" for k, c in enumerate(coefficients))
        at = f"({x[i].numerator}/{x[i].denominator})"
        length = x[i + 1] - x[i]
        program.append(f"d=supnorm({polynomial},f({at}+x),[0;{length.numerator}/{length.denominator}],absolute,1b-30);")
        program.append('print("bounds",round(inf(d),60,RD),round(sup(d),60,RU));')
    program.append("quit;")
    result = subprocess.run(["sollya"], input="\n".join(program) + "\n", capture_output=True, text=True, check=True)
    found = [text.split()[1:] for text in result.stdout.splitlines() if text.startswith("bounds")]
    assert len(found) == len(pieces), result.stdout
    return max(float(low) for low, _ in found), max(float(high) for _, high in found)


def main():
    for form, tolerance, start, end, formula in CASES:
        curve = mfcurves.expression(formula, (start, end))
        table = curve.to_table(form, tolerance)
        low, high = distance(formula, *pieces_of(form, table))
        print(form, tolerance, start, end, formula, low, high)
        print(*(repr(float(x)) for x in table.x))


if __name__ == "__main__":
    main()
