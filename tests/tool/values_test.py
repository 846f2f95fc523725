# SPDX-License-Identifier: MIT
"""Numbers: eval and table."""

import json
import math
import os

from tooltest import DONE, EXPRESSION_DOCUMENT, FAILED, ToolTest, WRONG, run


class Eval(ToolTest):
    def test_value_and_three_derivatives(self):
        w = 2 * math.pi
        x = 0.125
        wanted = [x, 10 * math.sin(w * x), 10 * w * math.cos(w * x), -10 * w**2 * math.sin(w * x),
                  -10 * w**3 * math.cos(w * x)]
        [got] = self.samples("eval", "--expression", "10*sin(2*pi*x)", "0.125")
        self.assertNumbers(got, wanted)

    def test_the_fewest_digits_that_read_back_the_same(self):
        self.assertEqual(self.done("eval", "--expression", "x/3", "1"),
                         "1 0.3333333333333333 0.3333333333333333 0 0\n")

    def test_zero_has_no_sign(self):
        self.assertEqual(self.done("eval", "--expression", "-x", "0", "-0"), "0 0 -1 0 0\n0 0 -1 0 0\n")

    def test_one_line_an_x_in_the_order_given(self):
        lines = self.samples("eval", "--expression", "x^2", "3", "-2", "-.5", "1e1")
        self.assertEqual(lines, [[3, 9, 6, 2, 0], [-2, 4, -4, 2, 0], [-0.5, 0.25, -1, 2, 0], [10, 100, 20, 2, 0]])

    def test_five_columns_whatever_the_drive(self):
        for drive in ["displacement", "velocity", "acceleration", "force", "torque"]:
            with self.subTest(drive):
                self.assertEqual(self.samples("eval", "--expression", "x^3", "--drive", drive, "2"),
                                 [[2, 8, 12, 12, 6]])

    def test_places_from_a_file(self):
        places = self.write("x.csv", "x;y\n0,5;1\n2,0;1\n")
        self.assertEqual(self.samples("eval", "--expression", "x^2", "1", "--at", places),
                         [[1, 1, 2, 2, 0], [0.5, 0.25, 1, 2, 0], [2, 4, 4, 2, 0]])
        self.assertEqual(self.samples("eval", "--expression", "x^2", "--at", "-", text="3\n"), [[3, 9, 6, 2, 0]])
        self.refused(WRONG, "eval", "--expression", "x", "--at", self.write("bad.csv", "1\nb\n"), says="bad.csv:2: ")

    def test_one_side_of_a_seam(self):
        rows = ["--row", "1,1,Quadratic", "--row", "2,2,Linear", "1"]
        self.assertEqual(self.samples("eval", *rows), [[1, 1, 1, 0, 0]])
        self.assertEqual(self.samples("eval", *rows, "--side", "left"), [[1, 1, 2, 2, 0]])
        self.assertEqual(self.samples("eval", *rows, "--side", "right"), [[1, 1, 1, 0, 0]])

    def test_constants(self):
        self.assertEqual(self.samples("eval", "--expression", "k*x^2+k2", "--let", "k=3", "--let", "k2=-1", "2"), [[2, 11, 12, 6, 0]])
        self.assertEqual(self.samples("eval", "--expression", "K*x^2+k2", "--let", "k=3", "--let", "K2=-1", "2"), [[2, 11, 12, 6, 0]])
        for let, words in [("k", "such as k=12.5"), ("k=two", "--let k takes a finite number"), ("z=1", "has no such name")]:
            self.refused(WRONG, "eval", "--expression", "k*x", "--let", let, "1", says=words)

    def test_derivatives_by_seconds(self):
        # 120 turns a minute are 720 degrees a second.
        row = ["--row", "90,10,Quadratic", "--over", "angle", "45"]
        [[x, y, v, a, j]] = self.samples("eval", *row)
        for speed in [["--rpm", "120"], ["--cycle-time", "0.5"]]:
            [got] = self.samples("eval", *row, *speed)
            self.assertNumbers(got, [x, y, 720 * v, 720**2 * a, 720**3 * j])
        self.refused(WRONG, "eval", "--row", "90,10,Cubic", "45", "--rpm", "120", says="go with curves over the cycle angle")
        self.refused(WRONG, "eval", *row, "--rpm", "0", says="--rpm takes a number above 0")

    def test_json(self):
        [curve] = json.loads(self.done("eval", "--expression", "x^2", "3", "--format", "json"))
        self.assertEqual(curve, {"file": None, "points": [{"x": 3, "value": 9, "d1": 6, "d2": 2, "d3": 0}]})

    def test_a_decimal_comma_in_x(self):
        self.refused(WRONG, "eval", "--expression", "x", "1,5", says="a number with a decimal point")

    def test_no_finite_value(self):
        result = self.refused(FAILED, "eval", "--expression", "1/x", "0", "2", says="x = 0")
        self.assertEqual(result.stdout.splitlines(), ["0 nan nan nan nan", "2 0.5 -0.25 0.25 -0.375"])

    def test_arguments_after_two_dashes_are_not_options(self):
        for call in [["--", "1", "-2"], ["1", "--", "-2"], ["--", "1", "-2.0"]]:
            with self.subTest(call):
                self.assertEqual(self.samples("eval", "--expression", "x^2", *call), [[1, 1, 2, 2, 0], [-2, 4, -4, 2, 0]])
        path = self.folder / "-o.xml"
        self.done("convert", "--row", "2,10,Quadratic", "--", path.name, cwd=self.folder)
        self.assertEqual(self.samples("eval", "1", "--", path.name, cwd=self.folder), [[1, 2.5, 5, 5, 0]])
        self.assertEqual(self.samples("eval", "1", "--", "-", text=path.read_text()), [[1, 2.5, 5, 5, 0]])

    def test_bad_x(self):
        self.refused(WRONG, "eval", "--expression", "x", says="at least one x")
        self.refused(WRONG, "eval", "cam.xml", "45deg", says='at least one x, and "45deg" is not a number')
        self.refused(WRONG, "eval", "--expression", "x", "nan", says="nan")
        self.refused(WRONG, "eval", "--expression", "x", "1e999", says="1e999")

    def test_outside_the_curve(self):
        result = run("eval", "--row", "2,10,Quadratic", "3")
        self.assertEqual(result.returncode, DONE)
        self.assertIn("outside the curve, which runs from 0 to 2", result.stderr)
        self.assertEqual(result.stdout, "3 22.5 15 5 0\n")  # the law continues: 10 (3/2)^2

    def test_numbers_under_a_comma_locale(self):
        comma = {"LOCPATH": os.environ["COMMA_LOCALES"], "LC_ALL": "comma"}
        self.assertEqual(self.done("eval", "--expression", "x/4", "0.5", env=comma), "0.5 0.125 0.25 0 0\n")


class Table(ToolTest):
    def table(self, *arguments):
        return self.done("table", "--from", "0", "--to", "2", *arguments)

    def test_derivatives_that_the_drive_has(self):
        for drive, header in [("displacement", "x,value,d1,d2,d3"), ("velocity", "x,value,d1,d2"),
                              ("acceleration", "x,value,d1"), ("force", "x,value,d1"), ("torque", "x,value,d1")]:
            with self.subTest(drive):
                lines = self.table("--expression", "x^3", "--drive", drive, "--samples", "3").splitlines()
                columns = header.count(",") + 1
                wanted = [[x, x**3, 3 * x**2, 6 * x, 6][:columns] for x in [0, 1, 2]]
                self.assertEqual(lines[0], header)
                self.assertEqual([[float(n) for n in line.split(",")] for line in lines[1:]], wanted)

    def test_both_ends_exact(self):
        lines = self.done("table", "--expression", "x", "--from", "0.1", "--to", "0.7", "--samples", "8").splitlines()
        self.assertEqual(len(lines), 9)
        self.assertEqual((float(lines[1].split(",")[0]), float(lines[-1].split(",")[0])), (0.1, 0.7))

    def test_one_sample(self):
        self.assertEqual(self.table("--expression", "x", "--samples", "1"), "x,value,d1,d2,d3\n0,0,1,0,0\n")

    def test_as_many_samples_as_usual(self):
        self.assertEqual(len(self.table("--expression", "x").splitlines()), 102)

    def test_the_stretch_of_the_curve_is_the_default(self):
        lines = self.done("table", "--row", "4,1,Cubic", "--samples", "2").splitlines()
        self.assertEqual([line.split(",")[0] for line in lines[1:]], ["0", "4"])

    def test_a_stretch_beyond_the_curve(self):
        words = "the stretch from 0.5 to 3 goes beyond the curve, which runs from 0 to 2"
        for command in [["table", "--samples", "2"], ["plot", "-o", "-"]]:
            with self.subTest(command):
                result = run(*command, "--row", "2,10,Quadratic", "--from", "0.5", "--to", "3")
                self.assertEqual((result.returncode, result.stderr), (DONE, f"mfcurve: warning: {words}\n"))
                self.done(*command, "--row", "2,10,Quadratic", "--from", "0.5", "--to", "2")
                self.done(*command, "--expression", "x", "--from", "0.5", "--to", "3")

    def test_json(self):
        [curve] = json.loads(self.table("--expression", "x^3", "--samples", "3", "--format", "json"))
        self.assertIsNone(curve["file"])
        rows = curve["samples"]
        self.assertEqual(rows[2], {"x": 2, "value": 8, "d1": 12, "d2": 12, "d3": 6})
        self.assertEqual(len(rows), 3)

    def test_a_gap_in_json_and_csv(self):
        stretch = ["--from", "-1", "--to", "1", "--samples", "3"]
        result = self.refused(FAILED, "table", "--expression", "1/x", *stretch, "--format", "json",
                              says="1 of the samples, first at x = 0")
        self.assertEqual(json.loads(result.stdout)[0]["samples"][1], {"x": 0, "value": None, "d1": None, "d2": None, "d3": None})
        result = self.refused(FAILED, "table", "--expression", "1/x", *stretch, says="first at x = 0")
        self.assertEqual(result.stdout.splitlines()[2], "0,nan,nan,nan,nan")

    def test_bad_counts_and_formats(self):
        for count in ["0", "-1", "1.5", "many", "99999999999999999999", "1000000000"]:
            with self.subTest(count):
                self.refused(WRONG, "table", "--expression", "x", "--from", "0", "--to", "1", f"--samples={count}",
                             says=["--samples", count])
        self.refused(WRONG, "table", "--expression", "x", "--format", "xml", says="--format")

    def test_sections(self):
        first = self.write("a.xml", EXPRESSION_DOCUMENT.format(object="Force"))
        second = self.write("b.xml", EXPRESSION_DOCUMENT.format(object="Torque"))
        lines = self.done("table", first, second, "--samples", "2").splitlines()
        self.assertEqual(lines, [f"# {first}", "x,value,d1", "0,0,0", "4,48,24"] +
                         [f"# {second}", "x,value,d1", "0,0,0", "4,48,24"])
        sections = json.loads(self.done("table", first, second, first, "--samples", "1", "--format", "json"))
        self.assertEqual(sections, [{"file": str(path), "samples": [{"x": 0, "value": 0, "d1": 0}]} for path in [first, second, first]])

    def test_steps_are_the_nearest_doubles_of_decimals(self):
        lines = self.done("table", "--row", "360,10,Cubic", "--over", "angle", "--step", "0.1", "--open-end").splitlines()[1:]
        self.assertEqual([line.split(",")[0] for line in lines], [repr(i / 10).removesuffix(".0") for i in range(3600)])
        lines = self.done("table", "--row", "1,10,Cubic", "--step", "0.3").splitlines()[1:]
        self.assertEqual([line.split(",")[0] for line in lines], ["0", "0.3", "0.6", "0.9"])
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--step", "1e-9", says=["--step", "is the most"])
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--step", "0", says="--step takes a number above 0")
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--step", "1", "--samples", "3", says="exclude each other")

    def test_an_open_end_is_left_out(self):
        lines = self.done("table", "--row", "360,1,Linear", "--samples", "3600", "--open-end", "--columns", "x", "--no-header").splitlines()
        self.assertEqual(lines, [repr(i / 10).removesuffix(".0") for i in range(3600)])

    def test_layout_for_a_controller(self):
        out = self.folder / "out.csv"
        self.done("table", "--row", "2,10,Quadratic", "--samples", "3", "--columns", "value,x", "--fixed", "2", "--decimal", "comma",
                  "--delimiter", ";", "-o", out)
        self.assertEqual(out.read_text(), "value;x\n0,00;0,00\n2,50;1,00\n10,00;2,00\n")
        self.assertEqual(self.done("table", "--expression", "0-x", "--from", "0", "--to", "0", "--samples", "1", "--delimiter", "tab",
                                   "--no-header", "--fixed", "1"), "0.0\t0.0\t-1.0\t0.0\t0.0\n")
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--decimal", "comma", says="two different characters")
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--columns", "x,valu", says="did you mean value?")
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--delimiter", "ab", says="--delimiter takes one character or tab")
        self.refused(WRONG, "table", "--row", "1,1,Cubic", "--fixed", "18", says="--fixed takes a whole number from 0 to 17")

