#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes Spline_expected.h: values and derivatives of splines by SciPy.

Run it with Debian's python3-scipy from the root of the tree:

    /usr/bin/python3 tests/host/Spline_expected.py > tests/host/Spline_expected.h

Akima curves come from Akima1DInterpolator and natural cubics from CubicSpline
with bc_type="natural". Each is asked at the start of every piece, at both ends of
its inner third and at the last point, for the value and three derivatives.
"""
import random
import numpy as np
from scipy.interpolate import Akima1DInterpolator, CubicSpline


def irregular(count, seed):
    numbers = random.Random(seed)
    xs, x = [], -3.0
    for _ in range(count):
        x += numbers.uniform(0.05, 2.0)
        xs.append(round(x, 3))
    return xs, [round(numbers.uniform(-50.0, 50.0), 3) for _ in xs]


TABLES = {
    "Akima1970": ([float(i) for i in range(11)], [10.0] * 6 + [10.5, 15.0, 50.0, 60.0, 85.0]),
    "ThreePoints": ([0.0, 1.0, 4.0], [2.0, -1.0, 3.0]),
    "FourPoints": ([-2.0, -1.5, 0.25, 7.0], [1.0, 4.0, -2.0, 0.5]),
    "FivePoints": ([0.0, 0.1, 0.4, 1.0, 2.5], [0.0, 1.0, 0.0, -1.0, 0.0]),
    "FlatThenSteep": ([0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0], [0.0, 0.0, 0.0, 0.0, 5.0, 10.0, 15.0]),
    "Irregular": irregular(25, 1970),
    "FarFromZero": ([1e6 + 0.5 * i * i for i in range(8)], [1e4, 1.1e4, 0.9e4, 1.3e4, 1.2e4, 1e4, 0.7e4, 1e4]),
    "SmallUnits": ([1e-9 * i * (1 + 0.125 * i) for i in range(8)], [1e-6 * (i % 3) - 4e-7 * i for i in range(8)]),
}
KINDS = {"Akima": lambda x, y: Akima1DInterpolator(x, y), "Cubic": lambda x, y: CubicSpline(x, y, bc_type="natural")}


def queries(xs):
    for left, right in zip(xs, xs[1:]):
        yield left
        yield left + (right - left) / 3.0
        yield left + 2.0 * (right - left) / 3.0
    yield xs[-1]


def row(numbers):
    return "{" + ", ".join(repr(float(number)) for number in numbers) + "}"


print("// Written by Spline_expected.py with SciPy; not to be edited.")
print("#pragma once\n")
print("#include <vector>\n")
print("namespace mf::test {\n")
print("struct SplineSample {\n    double x;\n    double orders[4];\n};\n")
print("struct SplineTable {\n    const char* name;\n    int kind;\n    std::vector<double> x;")
print("    std::vector<double> y;\n    std::vector<SplineSample> samples;\n};\n")
print("// clang-format off")
print("inline const std::vector<SplineTable> kSplineTables = {")
for name, (xs, ys) in TABLES.items():
    for number, (kind, make) in enumerate(KINDS.items()):
        spline = make(np.array(xs), np.array(ys))
        print(f'    {{"{name}{kind}", {number}, {row(xs)}, {row(ys)}, {{')
        for x in queries(xs):
            print(f"        {{{float(x)!r}, {row(spline(x, order) for order in range(4))}}},")
        print("    }},")
print("};")
print("// clang-format on\n")
print("}  // namespace mf::test")
