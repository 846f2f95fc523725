# SPDX-License-Identifier: MIT
"""Runs the examples and checks their output.

EXAMPLES names the folder of the built programs. The numbers come from the closed forms
that are written beside them, in exact fractions where these have any.
"""

import os
import pathlib
import re
import subprocess
import unittest
from fractions import Fraction

FOLDER = pathlib.Path(os.environ["EXAMPLES"])
PROJECT = pathlib.Path(__file__).resolve().parents[2]


def lines_of(example):
    result = subprocess.run([str(FOLDER / example)], capture_output=True, text=True, check=True)
    assert result.stderr == "", result.stderr
    return result.stdout.splitlines()


def numbers(line):
    return [float(text) for text in re.findall(r"-?\d+\.?\d*(?:e-?\d+)?", line.split(":", 1)[1])]


def derivatives(coefficients, u, stroke, length):
    """Value and three derivatives of stroke * polynomial(x / length) at x = u * length."""
    result = []
    for order in range(4):
        value = sum(c * Fraction(u) ** power for power, c in enumerate(coefficients))
        result.append(float(stroke * value / Fraction(length) ** order))
        coefficients = [power * c for power, c in enumerate(coefficients)][1:]
    return result


POLYNOMIAL_345 = [0, 0, 0, 10, -15, 6]  # Norton, Cam Design and Manufacturing Handbook
POLYNOMIAL_4567 = [0, 0, 0, 0, 35, -84, 70, -20]
CUBIC = [0, 0, 3, -2]


class BreaksTest(unittest.TestCase):
    def test_an_integrator_steps_over_the_pulse_unless_it_stops_at_breaks(self):
        lines = {line.split()[0] + " " + line.split()[1]: line for line in lines_of("breaks")[1:]}
        without = float(lines["without breaks"].split()[2])
        with_breaks = float(lines["with breaks"].split()[2])
        self.assertEqual(without, 0.0)  # 50 N for 20 ms on 1 kg are missed completely
        self.assertAlmostEqual(with_breaks, 50 * 0.02, delta=1e-6)


class Examples(unittest.TestCase):
    def assertNear(self, printed, expected):
        self.assertEqual(len(printed), len(expected))
        for a, b in zip(printed, expected):
            self.assertLessEqual(abs(a - b), 5e-6 * max(1.0, abs(b)), (printed, expected))

    def test_rise_dwell_return(self):
        rise, dwell, fall = lines_of("rise_dwell_return")
        self.assertNear(numbers(rise), derivatives(POLYNOMIAL_345, Fraction(1, 3), 25, 90))
        self.assertNear(numbers(dwell), [25, 0, 0, 0])
        down = derivatives(POLYNOMIAL_4567, Fraction(1, 3), -25, 90)
        self.assertNear(numbers(fall), [25 + down[0], *down[1:]])

    def test_points(self):
        # The natural cubic through (0, 0), (1, 1), (2, 0) is 3/2 x - 1/2 x^3 up to 1, mirrored beyond.
        left = [0, Fraction(3, 2), 0, Fraction(-1, 2)]
        half = derivatives(left, Fraction(1, 2), 1, 1)
        top = derivatives(left, 1, 1, 1)
        between, left_side, right_side, extended, held, repeated, array = lines_of("points")
        self.assertNear(numbers(between), half)
        self.assertNear(numbers(left_side), top)
        self.assertNear(numbers(right_side), [*top[:3], -top[3]])
        self.assertNear(numbers(extended), [-1.5, -1.5, 0, 0])  # the slope at 2, one beyond it
        self.assertNear(numbers(held), [0, 0, 0, 0])
        self.assertNear(numbers(repeated), half)
        self.assertNear(numbers(array), [derivatives(left, Fraction(k, 4), 1, 1)[0] for k in (1, 2, 3)])

    def test_threads(self):
        # 3-4-5: the slope is 30 u^2 (1 - u)^2, greatest in the middle and symmetric about it.
        outer = derivatives(POLYNOMIAL_345, Fraction(1, 4), 100, 2)[1]
        inner = derivatives(POLYNOMIAL_345, Fraction(1, 2), 100, 2)[1]
        printed = [numbers(line)[0] for line in lines_of("threads")]
        self.assertNear(printed, [outer, inner, inner, outer])

    def test_editing(self):
        half = derivatives(CUBIC, Fraction(1, 2), 1, 1)[0]  # of the stroke, up and down
        first, stroke, longer, frozen = [numbers(line.replace(", and half way down", "")
                                                 .replace(", edited:", ""))
                                         for line in lines_of("editing")]
        self.assertNear(first, [10 * half])
        self.assertNear(stroke, [20 * half, 20 * half])
        self.assertNear(longer, [20 * half, 20 * half])
        self.assertNear(frozen, [20 * half, 30 * half])

    def test_own_services(self):
        points, expression, outstanding = [numbers(line) for line in lines_of("own_services")]
        self.assertNear(points, [1, 5])  # steps
        self.assertNear(expression, [250 * 2.0 / 1000])
        self.assertNear(outstanding, [0])

    def test_errors(self):
        printed = [line for line in lines_of("errors") if line.startswith(("error", "warning"))]
        places = [line.split(": ")[1] for line in printed]
        # The end of the text, the second row, the third point, the whole document, the file.
        self.assertEqual(places, ["character 8", "row 2", "point 3", "", "missing.xml"])
        for word, line in zip(["`)`", '"Cycloidal"', "above 2", "version 2", "opened"], printed):
            self.assertIn(word, line)

    def test_simulator_loop(self):
        # The same scheme: the midpoint rule for a mass of 2 on a spring of 200 and a damper of 20.
        def support(time):
            u = min(max(time - 0.5, 0.0), 1.0)
            return 25 * u**3 * (10 - 15 * u + 6 * u * u), 25 * 30 * u * u * (1 - u) ** 2

        def acceleration(time, y, v):
            at = support(time)
            return (200 * (at[0] - y) + 20 * (at[1] - v)) / 2

        y = v = 0.0
        expected = []
        for i in range(4000):
            time = i * 1e-3
            if i % 500 == 0:
                expected.append([time, support(time)[0], y])
            half_y, half_v = y + 0.5e-3 * v, v + 0.5e-3 * acceleration(time, y, v)
            y, v = y + 1e-3 * half_v, v + 1e-3 * acceleration(time + 0.5e-3, half_y, half_v)
        printed = [[float(text) for text in line.split()] for line in lines_of("simulator_loop")[1:]]
        self.assertEqual(len(printed), len(expected))
        for row, wanted in zip(printed, expected):
            for a, b in zip(row, wanted):
                self.assertLessEqual(abs(a - b), 0.51e-4)  # four decimals are printed


class Pages(unittest.TestCase):
    def test_quotes_in_the_pages_are_parts_of_examples(self):
        """Each block of C++ in docs/embedding.md is a part of an example, apart from blanks at the ends of lines."""
        examples = [path.read_text() for path in (PROJECT / "examples").glob("*.cpp")]
        flat = ["\n".join(line.strip() for line in text.splitlines()) for text in examples]
        blocks = (PROJECT / "docs/embedding.md").read_text().split("```cpp\n")[1:]
        self.assertGreater(len(blocks), 3)
        for block in blocks:
            quoted = "\n".join(line.strip() for line in block.split("```")[0].splitlines())
            self.assertTrue(any(quoted in text for text in flat), block)


if __name__ == "__main__":
    unittest.main()
