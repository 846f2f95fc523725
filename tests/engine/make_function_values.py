#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes function_values.txt: values and three derivatives of every function that the engine knows.

    python3 make_function_values.py > function_values.txt

The table has each text together with the same function as a SymPy expression.
SymPy differentiates, mpmath evaluates with 60 digits, and the result is rounded
once to a double. A function made of pieces is given as a Python function that
returns the formula of the piece that is valid at the point.

Points at which the problem itself is ill-conditioned (a relative change of x by
one unit would move an order by more than 300) are left out: there the rounding
of x matters more than the engine.
"""

import math
import random

import mpmath
import sympy
from sympy import Rational, acos, asin, atan, atan2, cosh, exp, log, sinh, sqrt, tanh

mpmath.mp.dps = 60
X = sympy.Symbol("x", real=True)
PI = sympy.Float(math.pi, 60)  # `pi` of the engine is the nearest double
DEGREE = PI / 180
POINTS = 10
WORST_CONDITION = 300


def number(value):
    """A double as an exact number of SymPy."""
    return sympy.Float(value, 60)


def at(expression, x):
    return mpmath.mpf(sympy.lambdify(X, expression, "mpmath")(mpmath.mpf(x)))


def pieces(*conditioned):
    """Picks the formula of the first pair (condition(x), formula) that holds."""
    def pick(x):
        return next(formula for condition, formula in conditioned if condition(x))
    return pick


def least(*formulas):
    return lambda x: min(formulas, key=lambda f: at(sympy.sympify(f), x))


def greatest(*formulas):
    return lambda x: max(formulas, key=lambda f: at(sympy.sympify(f), x))


def remainder(a, b):
    """a - b * trunc(a / b), with the sign of the dividend."""
    a, b = sympy.sympify(a), sympy.sympify(b)
    return lambda x: a - b * int(at(a, x) / at(b, x))


def ramp(shape, x0, h0, x1, h1):
    u = (X - x0) / sympy.Rational(x1 - x0)
    return pieces((lambda x: x <= x0, sympy.Integer(h0) + 0 * X), (lambda x: x >= x1, sympy.Integer(h1) + 0 * X),
                  (lambda x: True, h0 + (h1 - h0) * shape(u)))


def step(u):
    return 3 * u**2 - 2 * u**3


def step5(u):
    return 10 * u**3 - 15 * u**4 + 6 * u**5


def havsin(u):
    return (1 - sympy.cos(PI * u)) / 2


def chebyshev(h, *a):
    return sum(aj * sympy.chebyshevt(j, h) for j, aj in enumerate(a))


sin, cos, tan = sympy.sin, sympy.cos, sympy.tan
H = Rational(1, 2)
# text, formula, from, to
TABLE = [
    ("x", X, -9, 9),
    ("-x", -X, -9, 9),
    ("3*x+2", 3 * X + 2, -9, 9),
    ("1/x", 1 / X, 0.1, 9),
    ("(x+1)/(x-2)", (X + 1) / (X - 2), -9, 1.5),
    ("x/(1+x^2)", X / (1 + X**2), -9, 9),
    ("x^2", X**2, -9, 9),
    ("x^3", X**3, -9, 9),
    ("x**4", X**4, -9, 9),
    ("x^5", X**5, -9, 9),
    ("x^7", X**7, -3, 3),
    ("x^11", X**11, -3, 3),
    ("x^20", X**20, -2, 2),
    ("x^100", X**100, 0.5, 2),
    ("x^-1", X**-1, -9, -0.1),
    ("x^-3", X**-3, -9, -0.1),
    ("x^0.5", sqrt(X), 0.1, 9),
    ("x^2.5", X**Rational(5, 2), 0.1, 9),
    ("x^-1.5", X**Rational(-3, 2), 0.1, 9),
    ("2^x", exp(X * log(number(2))), -9, 9),
    ("2^-x", exp(-X * log(number(2))), -9, 9),
    ("x^x", exp(X * log(X)), 0.1, 4),
    ("x^2^0.5", X**number(math.sqrt(2)), 0.1, 4),
    ("(1+x^2)^1.5", (1 + X**2)**Rational(3, 2), -4, 4),
    ("(2+sin(x))^cos(x)", exp(cos(X) * log(2 + sin(X))), -4, 4),
    ("sin(x)", sin(X), -9, 9),
    ("cos(x)", cos(X), -9, 9),
    ("tan(x)", tan(X), -9, 9),
    ("sin(3*x+1)", sin(3 * X + 1), -9, 9),
    ("cos(x^2)", cos(X**2), -3, 3),
    ("tan(x/2)^2", tan(X / 2)**2, -2.5, 2.5),
    ("sin(x)*cos(x)", sin(X) * cos(X), -4, 4),
    ("sin(x)/x", sin(X) / X, 0.5, 9),
    ("sin(90d*x)", sin(90 * DEGREE * X), -2, 2),
    ("rtod*x^2", 180 / PI * X**2, -2, 2),
    ("dtor*x^2", DEGREE * X**2, -2, 2),
    ("sin(pi*x)", sin(PI * X), -2, 2),
    ("asin(x)", asin(X), -0.98, 0.98),
    ("acos(x)", acos(X), -0.98, 0.98),
    ("atan(x)", atan(X), -9, 9),
    ("asin(sin(x)/2)", asin(sin(X) / 2), -4, 4),
    ("atan2(x,1.5)", atan2(X, 1 + H), -9, 9),
    ("atan2(1.5,x)", atan2(1 + H, X), -9, 9),
    ("atan2(x,-1.5)", atan2(X, -1 - H), 0.1, 9),
    ("atan2(-1.5,-x)", atan2(-1 - H, -X), 0.1, 9),
    ("atan2(x^2-2,x)", atan2(X**2 - 2, X), -4, 4),
    ("sinh(x)", sinh(X), -6, 6),
    ("cosh(x)", cosh(X), -6, 6),
    ("tanh(x)", tanh(X), -3, 3),
    ("tanh(x^2-1)", tanh(X**2 - 1), -1.5, 1.5),
    ("exp(x)", exp(X), -9, 9),
    ("exp(-x^2)", exp(-X**2), -3, 3),
    ("ln(x)", log(X), 0.1, 9),
    ("log(x)", log(X), 0.1, 9),
    ("log10(x)", log(X) / log(number(10)), 0.1, 9),
    ("ln(1+x^2)", log(1 + X**2), -4, 4),
    ("log10(2+sin(x))", log(2 + sin(X)) / log(number(10)), -4, 4),
    ("sqrt(x)", sqrt(X), 0.1, 9),
    ("sqrt(1+x^2)", sqrt(1 + X**2), -4, 4),
    ("cbrt(x)", sympy.cbrt(X), 0.1, 9),
    ("cbrt(x)", -sympy.cbrt(-X), -9, -0.1),
    ("cbrt(x^2+1)", sympy.cbrt(X**2 + 1), -4, 4),
    ("abs(x)", X, 0.1, 9),
    ("abs(x)", -X, -9, -0.1),
    ("abs(sin(x))*x", pieces((lambda x: math.sin(x) > 0, X * sin(X)), (lambda x: True, -X * sin(X))), -9, 9),
    ("sign(x)", sympy.Integer(1) + 0 * X, 0.1, 9),
    ("sign(x)*x^3", -X**3, -9, -0.1),
    ("sign(x^2+1,x)", X**2 + 1, 0.1, 9),
    ("sign(x^2+1,x)", -X**2 - 1, -9, -0.1),
    ("sign(x^3,x-20)", -X**3, 0.1, 9),
    ("min(x,1-x^2)", least(X, 1 - X**2), -4, 4),
    ("max(x,1-x^2)", greatest(X, 1 - X**2), -4, 4),
    ("min(x^2,2*x^3,1+x)", least(X**2, 2 * X**3, 1 + X), -4, 4),
    ("max(x^2,2*x^3,1+x,5)", greatest(X**2, 2 * X**3, 1 + X, sympy.Integer(5)), -4, 4),
    ("mod(x^2,1.5)", remainder(X**2, Rational(3, 2)), -4, 4),
    ("mod(-x^3,2)", remainder(-X**3, 2), -4, 4),
    ("mod(7,x)", remainder(7, X), 0.5, 9),
    ("x^3%1.5", remainder(X**3, Rational(3, 2)), -4, 4),
    ("2*x^2%x", remainder(2 * X**2, X), 0.3, 4),
    ("dim(x^2,0.5)", pieces((lambda x: x * x > 0.5, X**2 - H), (lambda x: True, 0 * X)), -2, 2),
    ("dim(0.5,x^2)", pieces((lambda x: x * x < 0.5, H - X**2), (lambda x: True, 0 * X)), -2, 2),
    ("int(x)", lambda x: sympy.Integer(math.trunc(x)), -9, 9),
    ("nint(x)", lambda x: sympy.Integer(math.floor(abs(x) + 0.5) * (1 if x > 0 else -1)), -9, 9),
    ("floor(x)*x^2", lambda x: math.floor(x) * X**2, -9, 9),
    ("ceil(x)*x^3", lambda x: math.ceil(x) * X**3, -9, 9),
    ("hypot(x,2)", sqrt(X**2 + 4), -9, 9),
    ("hypot(x,x^2-1)", sqrt(X**2 + (X**2 - 1)**2), -2, 2),
    ("if(x-1:x^3,2,sin(x))", pieces((lambda x: x < 1, X**3), (lambda x: True, sin(X))), -4, 4),
    ("if(x,x^2,5,x^4)", pieces((lambda x: x < 0, X**2), (lambda x: True, X**4)), -4, 4),
    ("step(x,1,2,4,-3)", ramp(step, 1, 2, 4, -3), -1, 6),
    ("step5(x,1,2,4,-3)", ramp(step5, 1, 2, 4, -3), -1, 6),
    ("havsin(x,1,2,4,-3)", ramp(havsin, 1, 2, 4, -3), -1, 6),
    ("step(x,0,x,2,x^2)", X + (X**2 - X) * step(X / 2), 0.1, 1.9),
    ("step5(x,0,x,2,x^2)", X + (X**2 - X) * step5(X / 2), 0.1, 1.9),
    ("havsin(x,0,sin(x),2,exp(x))", sin(X) + (exp(X) - sin(X)) * havsin(X / 2), 0.1, 1.9),
    ("step(sin(x),-1,2,1,3)", 2 + step((sin(X) + 1) / 2), -1.4, 1.4),
    ("poly(x,1,7)", 7 + 0 * X, -4, 4),
    ("poly(x,1,7,-2)", 7 - 2 * (X - 1), -4, 4),
    ("poly(x,1,7,-2,3,0,5,1)", 7 - 2 * (X - 1) + 3 * (X - 1)**2 + 5 * (X - 1)**4 + (X - 1)**5, -4, 4),
    ("poly(sin(x),0.5,1,2,3,4)", 1 + 2 * (sin(X) - H) + 3 * (sin(X) - H)**2 + 4 * (sin(X) - H)**3, -4, 4),
    ("cheby(x,0.5,3)", 3 + 0 * X, -1, 1),
    ("cheby(x,0.5,3,2)", 3 + 2 * (X - H), -1, 1),
    ("cheby(x,0.5,1,-2,3,-4,5,6)", chebyshev(X - H, 1, -2, 3, -4, 5, 6), -0.9, 1.4),
    ("cheby(x^2,0,1,2,3,4)", chebyshev(X**2, 1, 2, 3, 4), -1, 1),
    ("shf(x,1,2,3,0.5,4)", 2 * sin(3 * (X - 1) - H) + 4, -4, 4),
    ("shf(x,x^2,2,3,0.5,x)", 2 * sin(3 * (X - X**2) - H) + X, -2, 2),
    ("forsin(x,1,2,5)", 5 + 0 * X, -4, 4),
    ("forcos(x,1,2,5)", 5 + 0 * X, -4, 4),
    ("forsin(x,1,2,5,1,-2,3)", 5 + sin(2 * (X - 1)) - 2 * sin(4 * (X - 1)) + 3 * sin(6 * (X - 1)), -4, 4),
    ("forcos(x,1,2,5,1,-2,3)", 5 + cos(2 * (X - 1)) - 2 * cos(4 * (X - 1)) + 3 * cos(6 * (X - 1)), -4, 4),
    ("forsin(x^2,0,x,1,2,3)", 1 + 2 * sin(X**3) + 3 * sin(2 * X**3), -2, 2),
    ("10*sin(2*pi*x)+x^2*exp(-x)/(1+x)", 10 * sin(2 * PI * X) + X**2 * exp(-X) / (1 + X), 0, 9),
    ("exp(sin(x)*ln(2+cos(x)))", exp(sin(X) * log(2 + cos(X))), -4, 4),
    ("sqrt(abs(x))*atan(x^3)", sqrt(X) * atan(X**3), 0.2, 2),
    ("sinh(x)/cosh(x)^3", sinh(X) / cosh(X)**3, -2, 2),
]


def orders(formula, x):
    """Value, three derivatives and, for the condition, the fourth."""
    expression = sympy.sympify(formula(x) if callable(formula) else formula)
    values = []
    for _ in range(5):
        value = at(expression, x)
        values.append(mpmath.mpf(0) if abs(value) < mpmath.mpf(10)**-45 else value)
        expression = sympy.diff(expression, X)
    return values


def well_conditioned(x, values):
    return all(low == 0 and high == 0 or abs(x * high) <= WORST_CONDITION * abs(low)
               for low, high in zip(values, values[1:]))


def main():
    generator = random.Random(20)
    print("# Made by make_function_values.py: '= text', then lines of x, value and three derivatives.")
    for text, formula, start, end in TABLE:
        print("=", text)
        kept = 0
        for _ in range(20 * POINTS):
            x = round(generator.uniform(start, end), 4)
            values = orders(formula, x)
            if well_conditioned(x, values):
                print(repr(x), *(repr(float(v)) for v in values[:4]))
                kept += 1
            if kept == POINTS:
                break
        assert kept == POINTS, text


main()
