# SPDX-License-Identifier: MIT
"""Curves from options: expressions, rows and points."""

import math

from tooltest import DONE, FAILED, ToolTest, WRONG, run


class Expressions(ToolTest):
    def test_place_and_expectation(self):
        result = self.refused(WRONG, "eval", "--expression", "sin(2*", "1", says=["character 7", "expected"])
        reason, text, caret = result.stderr.splitlines()
        self.assertEqual(text.strip(), "sin(2*")
        self.assertEqual(caret.index("^"), text.index("sin") + 6)

    def test_each_mistake_has_its_place(self):
        for text, place in [("2 +* 3", 4), ("foo(x)", 1), ("sin(x", 6), ("x y", 3), (" ", 2), ("+", 2),
                            ("atan2(x)", 1), ("2*x)", 4), ("{}", 1)]:
            with self.subTest(text):
                result = self.refused(WRONG, "eval", f"--expression={text}" if text else "--expression= ", "1",
                                      says="--expression, character ")
                self.assertIn("^", result.stderr.splitlines()[-1])

    def test_a_long_text_is_cut_around_the_place(self):
        result = self.refused(WRONG, "eval", "--expression", "x+" * 500 + ")" + "+x" * 500, "1", says="character 1001")
        _, text, caret = result.stderr.splitlines()
        self.assertLess(len(text), 100)
        self.assertEqual(text[caret.index("^")], ")")

    def test_two_variables_are_no_curve(self):
        self.refused(WRONG, "eval", "--expression", "a*x+b", "1", says="--expression: ")

    def test_a_stretch_that_would_do_nothing(self):
        for command in [["eval", "1"], ["info"], ["convert", "-"]]:
            with self.subTest(command):
                self.refused(WRONG, *command, "--row", "2,1,Cubic", "--from", "0", "--to", "1", says="--from and --to go with")
                self.refused(WRONG, *command, "--expression", "x", "--from", "0", says="both --from and --to")
                self.refused(WRONG, *command, "--expression", "x", "--from", "2", "--to", "1", says="from 2 to 1")
                self.done(*command, "--expression", "x", "--from", "0", "--to", "1")

    def test_stretch(self):
        self.refused(WRONG, "table", "--expression", "x", says=["--from", "--to"])
        self.refused(WRONG, "table", "--expression", "x", "--from", "0", says="--to")
        self.refused(WRONG, "table", "--expression", "x", "--from", "2", "--to", "1", says="from 2 to 1")
        self.refused(WRONG, "table", "--expression", "x", "--from", "nan", "--to", "1", says=["--from", "nan"])
        self.refused(WRONG, "table", "--expression", "x", "--from", "0", "--to", "1e999", says=["--to", "1e999"])
        self.refused(WRONG, "table", "--expression", "x", "--from", "0", "--to", "one", says=["--to", "one"])


def polynomial345(u):
    """The 3-4-5 polynomial and its derivatives by u."""
    return [10 * u**3 - 15 * u**4 + 6 * u**5, 30 * u**2 - 60 * u**3 + 30 * u**4, 60 * u - 180 * u**2 + 120 * u**3,
            60 - 360 * u + 360 * u**2]


class Rows(ToolTest):
    RISE = ["--row", "120,40,3-4-5-Polynomial", "--row", "180,40,Cubic", "--row", "330,0,Half-Cosine"]

    def test_rise_dwell_return(self):
        u = 0.25
        rise = [30] + [40 * y / 120**order for order, y in enumerate(polynomial345(u))]
        a, b = math.pi / 150, math.pi * (210 - 180) / 150
        fall = [210, 20 + 20 * math.cos(b), -20 * a * math.sin(b), -20 * a**2 * math.cos(b), 20 * a**3 * math.sin(b)]
        got = self.samples("eval", *self.RISE, "30", "150", "210")
        self.assertNumbers(got[0], rise, scale=1e-3)
        self.assertNumbers(got[1], [150, 40, 0, 0, 0])
        self.assertNumbers(got[2], fall, scale=1e-3)

    def test_start_value_holds_at_the_start(self):
        self.assertEqual(self.samples("eval", "--row", "2,10,Quadratic", "--start", "4", "0", "1"),
                         [[0, 4, 0, 3, 0], [1, 5.5, 3, 3, 0]])

    def test_start_elsewhere(self):
        self.assertEqual(self.samples("eval", "--row", "12,10,Quadratic", "--start", "10, 4", "10", "11"),
                         [[10, 4, 0, 3, 0], [11, 5.5, 3, 3, 0]])

    def test_file(self):
        rows = self.write("rows.csv", "# a lift\nend x, value, profile\n\n10, 4\n12, 10, Quadratic  # up\n"
                                      " 14 ,4, Quadratic\r\n")
        self.assertEqual(self.samples("eval", "--rows", rows, "11", "13"), [[11, 5.5, 3, 3, 0], [13, 8.5, -3, -3, 0]])

    def test_rows_from_standard_input(self):
        self.assertEqual(self.samples("eval", "--rows", "-", "1", text="2,10,Quadratic\n"), [[1, 2.5, 5, 5, 0]])

    def test_names_are_found_in_any_case(self):
        self.assertEqual(self.samples("eval", "--row", "2,10,qUADRATIC", "1"), [[1, 2.5, 5, 5, 0]])

    def test_bad_rows(self):
        for row, words in [("2,10", "2 of 3 fields"), ("2,10,Cubic,4", "4 of 3 fields"), ("2,10,", "the profile is missing"),
                           ("two,10,Cubic", "end x \"two\""), ("2,ten,Cubic", "value \"ten\""),
                           ("nan,10,Cubic", "end x \"nan\""), ("2,inf,Cubic", "value \"inf\""),
                           ("0,10,Cubic", "starts at 0"), ("-1,10,Cubic", "ends at -1"),
                           ("2,10,Cubc", "no profile \"Cubc\"; did you mean Cubic?"),
                           ("2,10,Wobbly", "no profile \"Wobbly\"; there are Cubic, ")]:
            with self.subTest(row):
                self.refused(WRONG, "eval", f"--row={row}", "1", says=[f'--row "{row}"', words])

    def test_numbers_of_rows_count_with_all_their_digits(self):
        # A line of slope v/l through the start, at half of its length.
        for end, value in [(1.0, 2.54e-05), (1.0, 1e-9), (1e-7, 1.0), (1.2e-6, 1.0), (1 / 3, 2 / 3)]:
            with self.subTest((end, value)):
                [got] = self.samples("eval", "--row", f"{end!r},{value!r},Linear", repr(end / 2))
                self.assertNumbers(got, [end / 2, value / 2, value / end, 0, 0], scale=0.0)

    def test_rows_out_of_order(self):
        self.refused(WRONG, "eval", "--row", "5,1,Cubic", "--row", "3,1,Cubic", "1", says=["ends at 3", "starts at 5"])

    def test_bad_lines_of_a_file_are_named(self):
        rows = self.write("rows.csv", "end,value,profile\n1,1,Cubic\n\n2,x,Cubic\n")
        self.refused(WRONG, "eval", "--rows", rows, "1", says=["rows.csv:4", "value \"x\""])
        empty = self.write("empty.csv", "# nothing\n\n")
        self.refused(WRONG, "eval", "--rows", empty, "1", says="there are no rows")
        self.refused(FAILED, "eval", "--rows", self.folder / "none.csv", "1", says=["none.csv", "No such file"])

    def test_a_slip_in_the_first_line_is_no_header(self):
        for text, words in [("9O,1,Cubic\n2,1,Cubic\n", 'rows.csv:1: the end x "9O"'), ("l,10,Cubic\n", 'rows.csv:1: the end x "l"')]:
            with self.subTest(text):
                self.refused(WRONG, "eval", "--rows", self.write("rows.csv", text), "1", says=words)
        self.refused(WRONG, "eval", "--rows", "-", "1", text="1,1,Cubic\n1,1,Cubic\n", says="standard input:2: ")

    def test_files_as_they_come(self):
        for text in ["2;10;Quadratic\n", "end,value,law\nmm,mm,-\n2,10,Quadratic\n", "sep=;\n2,0;10,0;Quadratic\n",
                     '"2,0","10",Quadratic\r', "2 10 Quadratic"]:
            with self.subTest(text):
                self.assertEqual(self.samples("eval", "--rows", self.write("rows.csv", text), "1"), [[1, 2.5, 5, 5, 0]])

    def test_a_byte_order_mark_is_no_header(self):
        for rows in ["2,10,Quadratic\n", "end,value,profile\n2,10,Quadratic\n"]:
            self.assertEqual(self.samples("eval", "--rows", self.write("rows.csv", "\ufeff" + rows), "1"), [[1, 2.5, 5, 5, 0]])

    def test_two_starts(self):
        rows = self.write("rows.csv", "x,y\n10, 4\n12, 10, Quadratic\n")
        self.refused(WRONG, "eval", "--rows", rows, "--start", "10, 4", "11", says=["rows.csv:2: ", "--start"])

    def test_bad_start(self):
        self.refused(WRONG, "eval", "--row", "1,1,Cubic", "--start", "1,2,3", "1", says="--start")
        self.refused(WRONG, "eval", "--row", "1,1,Cubic", "--start", "here", "1", says="--start")


    def test_a_motion_result_may_be_called_almost_angle(self):
        row = ["--row", "90,10,Cubic"]
        self.assertIn("{Angle}", self.done("info", *row, "--over", "Angle", "--result", "Angle"))
        self.refused(DONE, "info", *row, "--over", "Angle",
                     says='warning: --over: "Angle" is the name of a motion result; did you mean angle?')
        self.assertIn("{Slip}", self.done("info", *row, "--over", "Slip"))


class Points(ToolTest):
    POINTS = "x,y\n0,0\n1,1\n2,0\n"

    def test_natural_cubic(self):
        # s(x) = 3x/2 - x^3/2 on [0, 1], by the three equations of the natural cubic.
        points = self.write("points.csv", self.POINTS)
        [got] = self.samples("eval", "--points", points, "--interpolation", "cubic", "0.5")
        self.assertNumbers(got, [0.5, 0.6875, 1.125, -1.5, -3])

    def test_linear_is_the_default(self):
        points = self.write("points.csv", self.POINTS)
        self.assertEqual(self.samples("eval", "--points", points, "0.5", "1.5"),
                         [[0.5, 0.5, 1, 0, 0], [1.5, 0.5, -1, 0, 0]])

    def test_akima_keeps_a_line_straight(self):
        points = self.write("points.csv", "".join(f"{x} {2 * x}\n" for x in range(6)))
        [got] = self.samples("eval", "--points", points, "--interpolation", "akima", "2.5")
        self.assertNumbers(got, [2.5, 5, 2, 0, 0])

    def test_comments_blank_lines_and_standard_input(self):
        text = "# measured\n\ntime, lift\n0, 1 # start\n\n2, 5\n"
        self.assertEqual(self.samples("eval", "--points", "-", "1", text=text), [[1, 3, 2, 0, 0]])

    def test_points_out_of_order_are_sorted_with_a_warning(self):
        points = self.write("points.csv", "0,0\n2,0\n1,1\n")
        result = run("eval", "--points", points, "0.5")
        self.assertEqual((result.returncode, result.stdout), (DONE, "0.5 0.5 1 0 0\n"))
        self.assertEqual(result.stderr, f"mfcurve: warning: {points}:3: "
                                        "x is below that of the previous point; the points are sorted by x\n")

    def test_points_nearly_at_one_x_give_a_warning(self):
        points = self.write("points.csv", "0,0\n1,1\n3,3\n1.0000001,2\n2,2\n")
        result = run("eval", "--points", points, "0.5")
        self.assertEqual((result.returncode, result.stdout), (DONE, "0.5 0.5 1 0 0\n"))
        self.assertIn(f"warning: {points}:4: x is nearly that of line 2; the curve is nearly vertical", result.stderr)
        for text in ["0,0\n1,1\n1.0001,2\n2,2\n", "-1e308,0\n0,0\n1e308,1\n", "1,2\n"]:
            self.assertEqual(run("info", "--points", self.write("apart.csv", text)).stderr, "")

    def test_measurements_as_they_come(self):
        for text, options in [("t;s;lift\ns;mm;mm\n0;0;0,0\n1;9;2,5\n", ["--csv-columns", "t,lift"]),
                              ("made by a scope\n1 2 3\nx y\n0 0\n1 2.5\n", ["--csv-skip", "2"]),
                              ("9;0;0\n9;1;2,5\n", ["--csv-columns", "2,3"])]:
            with self.subTest(text):
                self.assertEqual(self.samples("eval", "--points", self.write("p.csv", text), *options, "0.5"), [[0.5, 1.25, 2.5, 0, 0]])
        (self.folder / "p.csv").write_text("0;0\n1;2,5\n", encoding="utf-16")
        self.assertEqual(self.samples("eval", "--points", self.folder / "p.csv", "0.5"), [[0.5, 1.25, 2.5, 0, 0]])
        self.refused(WRONG, "eval", "--expression", "x", "--csv-skip", "1", "1", says="--csv-columns and --csv-skip go with")

    def test_the_output_of_table_reads_back(self):
        table = self.write("table.csv", self.done("table", "--expression", "x^2", "--from", "0", "--to", "4", "--samples", "5"))
        self.assertEqual(self.samples("eval", "--points", table, "3"), [[3, 9, 7, 0, 0]])

    def test_bad_lines_are_named(self):
        for text, line in [("0,0\n1,one\n", 2), ("0,0\n1\n", 2), ("0,0\nnan,1\n", 2), ("x,y\n0,0\n\n0,1\n", 4),
                           ("0,0\n1,inf\n", 2)]:
            with self.subTest(text):
                points = self.write("points.csv", text)
                self.refused(WRONG, "eval", "--points", points, "0", says=f"points.csv:{line}: ")
        empty = self.write("empty.csv", "x,y\n")
        self.refused(WRONG, "eval", "--points", empty, "0", says="empty.csv: ")
        self.refused(WRONG, "eval", "--points", "-", "0", says="standard input: there are no points")
        self.refused(FAILED, "eval", "--points", self.folder / "none.csv", "0", says="No such file")

    def test_an_order_beyond_the_range_of_numbers_is_nan(self):
        for text in ["0,0\n1e-320,1\n", "-1e308,-1e308\n1e308,1e308\n"]:  # a slope of 1e320, and one over 2e308
            with self.subTest(text):
                points = self.write("points.csv", text)
                result = self.refused(FAILED, "eval", "--points", points, "0", says="no finite value")
                self.assertEqual(result.stdout, "0 nan nan 0 0\n")

    def test_a_long_measurement(self):
        points = self.write("points.csv", "".join(f"{i / 1000},{math.sin(i / 1000):.17g}\n" for i in range(100001)))
        [got] = self.samples("eval", "--points", points, "--interpolation", "cubic", "50.0005")
        self.assertLess(abs(got[1] - math.sin(50.0005)), 1e-12)  # 5/384 h^4
        self.done("plot", "--points", points, "-o", self.folder / "out.svg")
        self.assertLess((self.folder / "out.svg").stat().st_size, 1_000_000)
