#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes plain_values.txt: texts evaluated as written, and how far that is from the exact value.

    python3 make_plain_values.py > plain_values.txt

Each text is evaluated twice: in doubles, operation by operation in the order of
the text with the C library's functions, and with mpmath at 50 digits from the
same double numbers. A line holds x, the double result, and the exact value less
that result.

The texts are the built-in motion laws with numbers filled in with six decimals,
negative ones with their sign and no parentheses, and random expressions.
"""

import math
import random
import re

import mpmath

mpmath.mp.dps = 50

LAWS = {  # with x1, y1, x2, y2 for the ends of the stretch
    "Cubic": "(y1+(y2-y1)*(3*((x-x1)/(x2-x1))^2-2*((x-x1)/(x2-x1))^3))",
    "Quarter-Sine": "(y1+(y2-y1)*(sin(pi*((x-x1)/(x2-x1))/2)))",
    "Quarter-Cosine": "(y1+(y2-y1)*(1-cos(pi*((x-x1)/(x2-x1))/2)))",
    "Half-Cosine": "((y2+y1)/2-((y2-y1)/2)*(cos(pi*((x-x1)/(x2-x1)))))",
    "3-4-5-Polynomial": "(y1+(y2-y1)*(10*((x-x1)/(x2-x1))^3-15*((x-x1)/(x2-x1))^4+6*((x-x1)/(x2-x1))^5))",
    "4-5-6-7-Polynomial": "(y1+(y2-y1)*(35*((x-x1)/(x2-x1))^4-84*((x-x1)/(x2-x1))^5"
                          "+70*((x-x1)/(x2-x1))^6-20*((x-x1)/(x2-x1))^7))",
    "5-6-7-8-9-Polynomial": "(y1+(y2-y1)*(126*((x-x1)/(x2-x1))^5-420*((x-x1)/(x2-x1))^6"
                            "+540*((x-x1)/(x2-x1))^7-315*((x-x1)/(x2-x1))^8+70*((x-x1)/(x2-x1))^9))",
    "Cycloidal": "(y1+(y2-y1)*(1-cos(pi*((x-x1)/(x2-x1))/2)))",
    "Quadratic": "(y1+(y2-y1)*(((x-x1)/(x2-x1))^2))",
    "Linear": "(y1+(((y2-y1)/(x2-x1))*(x-x1)))",
}
ENDS = [  # x1, y1, x2, y2
    (0.0, 0.0, 1.0, 1.0),
    (0.5, 3.0, 2.25, -5.0),
    (-3.0, -1.5, 7.123457, 12.345679),
    (1000.0, 10.0, 1000.3, 10.25),
    (0.0, -100.0, 0.007, 100.0),
]
LAW_POINTS = 30
RANDOM_TEXTS = 80
RANDOM_POINTS = 40

DOUBLES = {
    "number": float, "pi": math.pi, "sin": math.sin, "cos": math.cos, "tan": math.tan, "atan": math.atan,
    "exp": math.exp, "ln": math.log, "sqrt": math.sqrt, "sinh": math.sinh, "cosh": math.cosh, "tanh": math.tanh,
}
EXACT = {
    "number": lambda text: mpmath.mpf(float(text)), "pi": mpmath.mpf(math.pi), "sin": mpmath.sin, "cos": mpmath.cos,
    "tan": mpmath.tan, "atan": mpmath.atan, "exp": mpmath.exp, "ln": mpmath.ln, "sqrt": mpmath.sqrt,
    "sinh": mpmath.sinh, "cosh": mpmath.cosh, "tanh": mpmath.tanh,
}


def evaluator(text):
    """The text as a Python expression; Python has the same precedences as the engine."""
    with_numbers = re.sub(r"(?<![\w.])\d+(\.\d+)?", r"number('\g<0>')", text)
    return compile(with_numbers.replace("^", "**"), text, "eval")


def law_text(law, ends):
    for name, value in zip(("x1", "y1", "x2", "y2"), ends):
        law = law.replace(name, "%f" % value)
    return law


def random_text(generator, depth):
    if depth == 0:
        return generator.choice(["x", "x", "x", str(generator.randint(1, 9)), "%.2f" % generator.uniform(0.1, 5)])
    kind = generator.random()
    left = random_text(generator, depth - 1)
    if kind < 0.45:
        return "(%s)%s(%s)" % (left, generator.choice("++-**/"), random_text(generator, depth - 1))
    if kind < 0.6:
        return "(%s)^%d" % (left, generator.randint(2, 6))
    if kind < 0.65:
        return "-(%s)" % left
    if kind < 0.75:
        return generator.choice(["ln(1+(%s)^2)", "sqrt(2+(%s)^2)", "exp(-(%s)^2)"]) % left
    return "%s(%s)" % (generator.choice(["sin", "cos", "atan", "tanh", "sin", "cos", "sinh", "cosh"]), left)


def lines(text, xs):
    code = evaluator(text)
    result = []
    for x in xs:
        try:
            plain = eval(code, DOUBLES, {"x": x})
        except (OverflowError, ZeroDivisionError, ValueError):
            continue
        exact = eval(code, EXACT, {"x": mpmath.mpf(x)})
        if not isinstance(plain, float) or not math.isfinite(plain) or not 1e-30 < abs(plain) < 1e30:
            continue
        result.append("%r %r %.6g" % (x, plain, float(exact - plain)))
    return result


def main():
    generator = random.Random(50)
    print("# Made by make_plain_values.py: '= text', then lines of x, the value in doubles, the exact value less that.")
    for law in LAWS.values():
        for ends in ENDS:
            text = law_text(law, ends)
            print("=", text)
            print(*lines(text, [round(generator.uniform(ends[0], ends[2]), 9) for _ in range(LAW_POINTS)]), sep="\n")
    made = 0
    while made < RANDOM_TEXTS:
        text = random_text(generator, generator.randint(2, 4))
        kept = lines(text, [round(generator.uniform(-3, 3), 9) for _ in range(RANDOM_POINTS)])
        if "x" in re.sub("exp", "", text) and len(kept) > RANDOM_POINTS // 2:
            print("=", text)
            print(*kept, sep="\n")
            made += 1


main()
