#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes factors.txt: peaks of all motion laws to 40 digits, by mpmath.

    /usr/bin/python3 make_factors.py > factors.txt

Each law is its formula between (0, 0) and (1, 1), written here independently, as pieces
(start, end, formula). Derivatives come from SymPy. The extremes of an order on a piece are at
its ends and at the zeros of the next order: sign changes on a grid of 4000 cells, refined
with 40 digits. Columns: name, then each of cv, ca, cj with its first place ("inf" where the
order below jumps inside), the largest |v a|, the RMS of the acceleration.
"""

import mpmath as mp
import sympy as sp

mp.mp.dps = 40
x = sp.symbols("x")
pi = sp.pi
R = sp.Rational


def polynomial(lowest, *coefficients):
    return sum(c * x ** (lowest + i) for i, c in enumerate(coefficients))


def whole(formula):
    return [(R(0), R(1), formula)]


def mirrored(pieces):
    """Pieces up to 1/2, and the same ones turned by 180 degrees about (1/2, 1/2)."""
    turned = [(1 - end, 1 - start, 1 - f.subs(x, 1 - x)) for start, end, f in reversed(pieces)]
    return pieces + turned


HARMONIC = whole((1 - sp.cos(pi * x)) / 2)
QUARTER_COSINE = whole(1 - sp.cos(pi * x / 2))
CUBIC = whole(polynomial(2, 3, -2))

TRAPEZOID = mirrored([
    (R(0), R(1, 8), R(64, 9) * x**3),
    (R(1, 8), R(3, 8), R(1, 72) + (x - R(1, 8)) / 3 + R(8, 3) * (x - R(1, 8)) ** 2),
    (R(3, 8), R(1, 2), R(1, 2) + 2 * (x - R(1, 2)) - R(64, 9) * (x - R(1, 2)) ** 3),
])
MODIFIED_TRAPEZOID = mirrored([
    (R(0), R(1, 8), (2 * x - sp.sin(4 * pi * x) / (2 * pi)) / (2 + pi)),
    (R(1, 8), R(3, 8),
     (R(1, 4) - 1 / (2 * pi) + 2 * (x - R(1, 8)) + 4 * pi * (x - R(1, 8)) ** 2) / (2 + pi)),
    (R(3, 8), R(1, 2), (2 * (1 + pi) * x - pi / 2 + sp.sin(4 * pi * x) / (2 * pi)) / (2 + pi)),
])
MODIFIED_SINE = mirrored([
    (R(0), R(1, 8), (pi * x - sp.sin(4 * pi * x) / 4) / (4 + pi)),
    (R(1, 8), R(1, 2), (2 + pi * x - 9 * sp.sin((4 * pi * x + pi) / 3) / 4) / (4 + pi)),
])

LAWS = {
    "Cubic": CUBIC,
    "Quarter-Sine": whole(sp.sin(pi * x / 2)),
    "Quarter-Cosine": QUARTER_COSINE,
    "Half-Cosine": HARMONIC,
    "3-4-5-Polynomial": whole(polynomial(3, 10, -15, 6)),
    "4-5-6-7-Polynomial": whole(polynomial(4, 35, -84, 70, -20)),
    "5-6-7-8-9-Polynomial": whole(polynomial(5, 126, -420, 540, -315, 70)),
    "Cycloidal": QUARTER_COSINE,
    "Quadratic": whole(x**2),
    "Linear": whole(x),
    "Simple-Harmonic": HARMONIC,
    "2-3-Polynomial": CUBIC,
    "True-Cycloidal": whole(x - sp.sin(2 * pi * x) / (2 * pi)),
    "Parabolic": mirrored([(R(0), R(1, 2), 2 * x**2)]),
    "Cubic-Spline-Pair": mirrored([(R(0), R(1, 2), 4 * x**3)]),
    "Trapezoidal-Acceleration": TRAPEZOID,
    "Modified-Trapezoid": MODIFIED_TRAPEZOID,
    "Modified-Sine": MODIFIED_SINE,
    "Gutman-1-3-Harmonic": whole(x - 15 * sp.sin(2 * pi * x) / (32 * pi) - sp.sin(6 * pi * x) / (96 * pi)),
    "Freudenstein-1-3-Harmonic": whole(x - (27 * sp.sin(2 * pi * x) + sp.sin(6 * pi * x) / 3) / (56 * pi)),
    "Freudenstein-1-3-5-Harmonic": whole(
        x - R(1125, 1192) * (sp.sin(2 * pi * x) + sp.sin(6 * pi * x) / 54 + sp.sin(10 * pi * x) / 1250) / (2 * pi)),
    "8th-Degree-Polynomial": whole(
        R("6.09755") * x**3 - R("20.7804") * x**5 + R("26.73155") * x**6 - R("13.60965") * x**7
        + R("2.56095") * x**8),
    "6-7-8-9-10-11-Polynomial": whole(polynomial(6, 462, -1980, 3465, -3080, 1386, -252)),
    "Double-Harmonic": whole((1 - sp.cos(pi * x)) / 2 - (1 - sp.cos(2 * pi * x)) / 8),
    "Half-Cycloidal-Start": whole(x - sp.sin(pi * x) / pi),
    "Half-Cycloidal-End": whole(x + sp.sin(pi * x) / pi),
}


def jumps(pieces, order):
    for (_, end, left), (_, _, right) in zip(pieces, pieces[1:]):
        step = sp.N((sp.diff(left, x, order) - sp.diff(right, x, order)).subs(x, end), 40)
        if abs(step) > 1e-20:
            return True
    return False


def zeros(f, start, end):
    cells = 4000
    grid = [start + (end - start) * mp.mpf(i) / cells for i in range(cells + 1)]
    values = [f(t) for t in grid]
    for a, b, fa, fb in zip(grid, grid[1:], values, values[1:]):
        if fa == 0:
            yield a
        elif fa * fb < 0:
            yield mp.findroot(f, (a, b), solver="anderson", tol=1e-70)


def largest(pieces, expression):
    """Largest magnitude of expression(formula) and its first place."""
    best, at = mp.mpf(-1), None
    for start, end, formula in pieces:
        e = expression(formula)
        f = sp.lambdify(x, e, "mpmath")
        slope = sp.lambdify(x, sp.diff(e, x), "mpmath")
        start, end = mp.mpf(start.p) / start.q, mp.mpf(end.p) / end.q
        for place in sorted([start, end, *zeros(lambda t: mp.mpf(slope(t)), start, end)]):
            value = abs(mp.mpf(f(place)))
            if value > best * (1 + mp.mpf(10) ** -20):
                best, at = value, place
    return best, at


def main():
    for name, pieces in LAWS.items():
        row = [name]
        for order in (1, 2, 3):
            if jumps(pieces, order - 1):
                row += ["inf", "0.5"]
                continue
            value, at = largest(pieces, lambda f: sp.diff(f, x, order))
            row += [mp.nstr(value, 25), mp.nstr(at, 25)]
        row.append(mp.nstr(largest(pieces, lambda f: sp.diff(f, x) * sp.diff(f, x, 2))[0], 25))
        square = sum(sp.integrate(sp.expand_trig(sp.diff(f, x, 2)) ** 2, (x, a, b)) for a, b, f in pieces)
        row.append(mp.nstr(mp.sqrt(mp.mpf(sp.N(square, 40))), 25))
        print(*row, flush=True)


if __name__ == "__main__":
    main()
