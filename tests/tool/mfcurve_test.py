# SPDX-License-Identifier: MIT
"""Runs mfcurve as a user would: what it prints, what it says of bad input, and its exit status.

MFCURVE names the program. Expected numbers come from the closed forms that stand beside them.
"""

import json
import math
import os
import pathlib
import pty
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

TOOL = os.environ["MFCURVE"]
PROJECT = pathlib.Path(__file__).resolve().parents[2]
SVG = "{http://www.w3.org/2000/svg}"

# Doubles carry 16 digits; a formula may lose a few of them.
RELATIVE = 1e-13

DONE, FAILED, WRONG = 0, 1, 2

EXPRESSION_DOCUMENT = """<?xml version='1.0' encoding='UTF-8'?><Curve><Version>1</Version>\
<FunctionName>Spring</FunctionName><FunctionType>Expression</FunctionType>\
<MotionObjectType>{object}</MotionObjectType><XYDataType>MfXY_Force</XYDataType>\
<RangeX><MinX>0</MinX><MaxX>4</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>\
<IndepVar>Time</IndepVar><DepVar>ForceTorqueType_Force</DepVar><Cursor></Cursor>\
<Expression>3*time^2</Expression></Curve>"""


def run(*arguments, text="", env=None, cwd=None):
    return subprocess.run([TOOL, *map(str, arguments)], input=text, capture_output=True, text=True, timeout=120,
                          env={**os.environ, **(env or {})}, cwd=cwd)


class ToolTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def done(self, *arguments, **options):
        """The output of a call that goes well and has nothing to complain of."""
        result = run(*arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (DONE, ""), result.stdout)
        return result.stdout

    def refused(self, status, *arguments, says, **options):
        """A call that fails with that status and, among other things, each of these words."""
        result = run(*arguments, **options)
        self.assertEqual(result.returncode, status, result.stdout + result.stderr)
        self.assertTrue(result.stderr.startswith("mfcurve: "), result.stderr)
        for words in [says] if isinstance(says, str) else says:
            self.assertIn(words, result.stderr)
        return result

    def samples(self, *arguments, **options):
        """The numbers of eval, one list a line."""
        return [[float(word) for word in line.split()] for line in self.done(*arguments, **options).splitlines()]

    def assertUnsound(self, words, *arguments, **options):
        """The curve is told of, and so is what is wrong with it."""
        result = run("info", *arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (FAILED, ""))
        self.assertIn("valid          no", result.stdout)
        self.assertIn(words, result.stdout)

    def assertNumbers(self, got, wanted, scale=1.0):
        self.assertEqual(len(got), len(wanted))
        for a, b in zip(got, wanted):
            self.assertLessEqual(abs(a - b), RELATIVE * max(abs(b), scale), f"{got} is not {wanted}")


class Help(ToolTest):
    def test_every_command_shows_examples(self):
        for command in ["eval", "table", "plot", "profiles", "info", "convert"]:
            with self.subTest(command):
                text = self.done(command, "--help")
                self.assertIn("Examples:", text)
                self.assertIn(f"mfcurve {command}", text)

    def test_the_tool_tells_of_its_commands_and_statuses(self):
        text = self.done("--help")
        for word in ["eval", "table", "plot", "profiles", "info", "convert", "Exit status"]:
            self.assertIn(word, text)

    def test_every_example_runs(self):
        for name in ["cam.xml", "old.xml"]:
            self.done("convert", "--row", "90,10,Cubic", self.folder / name)
        self.write("rows.csv", "1,2,Cubic\n")
        self.write("lift.csv", "".join(f"{x},{x * x}\n" for x in range(6)))
        (self.folder / "share").symlink_to(PROJECT / "share")
        (self.folder / "mfcurve").symlink_to(TOOL)
        shown = 0
        for command in [[], ["eval"], ["table"], ["plot"], ["profiles"], ["info"], ["convert"]]:
            for line in re.findall(r"^  mfcurve [a-z]+ (?!  ).*$", self.done(*command, "--help").replace("\\\n", ""), re.M):
                with self.subTest(line.strip()):
                    result = subprocess.run(line, shell=True, cwd=self.folder, capture_output=True, text=True, timeout=120,
                                            env={**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}"})
                    self.assertEqual((result.returncode, result.stderr), (DONE, ""))
                    shown += 1
        self.assertGreater(shown, 15)

    def test_version(self):
        self.assertRegex(self.done("--version"), r"^mfcurve \d+\.\d+\.\d+\n$")

    def test_wrong_usage_is_told(self):
        self.refused(WRONG, says="subcommand")
        self.refused(WRONG, "draw", says="draw")
        self.refused(WRONG, "eval", "--no-such-option", says="--no-such-option")
        self.refused(WRONG, "plot", "--expression", "x", says="--output")
        self.refused(WRONG, "eval", "1", says="no curve")
        self.refused(WRONG, "eval", "--expression", "x", "--row", "1,1,Cubic", "1", says="more than one curve")
        self.refused(WRONG, "eval", "--expression", "x", "cam.xml", "1", says="more than one curve")
        self.refused(WRONG, "table", "cam.xml", "--drive", "velocity", says="--drive")
        self.refused(WRONG, "table", "--expression", "x", "--drive", "speed", says="--drive")
        self.refused(WRONG, "eval", "--expression", "x", "--interpolation", "akima", "1", says="--interpolation")
        self.refused(WRONG, "eval", "--expression", "x", "--start", "1", "1", says="--start")


class Expressions(ToolTest):
    def test_place_and_expectation(self):
        result = self.refused(WRONG, "eval", "--expression", "sin(2*", "1", says=["character 7", "expected"])
        reason, text, caret = result.stderr.splitlines()
        self.assertEqual(text.strip(), "sin(2*")
        self.assertEqual(caret.index("^"), text.index("sin") + 6)

    def test_each_mistake_has_its_place(self):
        for text, place in [("2 +* 3", 4), ("foo(x)", 1), ("sin(x", 6), ("x y", 3), ("", 1), ("+", 2),
                            ("atan2(x)", 1), ("2*x)", 4), ("{}", 1)]:
            with self.subTest(text):
                result = self.refused(WRONG, "eval", f"--expression={text}" if text else "--expression= ", "1",
                                      says="the expression is wrong at character")
                self.assertIn("^", result.stderr.splitlines()[-1])

    def test_a_long_text_is_cut_around_the_place(self):
        result = self.refused(WRONG, "eval", "--expression", "x+" * 500 + ")" + "+x" * 500, "1", says="character 1001")
        _, text, caret = result.stderr.splitlines()
        self.assertLess(len(text), 100)
        self.assertEqual(text[caret.index("^")], ")")

    def test_two_variables_are_no_curve(self):
        self.refused(WRONG, "eval", "--expression", "a*x+b", "1", says=["3 variables", "a, x, b"])

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

    def test_no_finite_value(self):
        result = self.refused(FAILED, "eval", "--expression", "1/x", "0", "2", says="x = 0")
        self.assertEqual(result.stdout.splitlines(), ["0 nan nan nan nan", "2 0.5 -0.25 0.25 -0.375"])

    def test_what_stands_behind_two_dashes_is_no_option(self):
        for call in [["--", "1", "-2"], ["1", "--", "-2"], ["--", "1", "-2.0"]]:
            with self.subTest(call):
                self.assertEqual(self.samples("eval", "--expression", "x^2", *call), [[1, 1, 2, 2, 0], [-2, 4, -4, 2, 0]])
        path = self.folder / "-o.xml"
        self.done("convert", "--row", "2,10,Quadratic", "--", path.name, cwd=self.folder)
        self.assertEqual(self.samples("eval", "1", "--", path.name, cwd=self.folder), [[1, 2.5, 5, 5, 0]])
        self.assertEqual(self.samples("eval", "1", "--", "-", text=path.read_text()), [[1, 2.5, 5, 5, 0]])

    def test_bad_x(self):
        self.refused(WRONG, "eval", "--expression", "x", says="at least one x")
        self.refused(WRONG, "eval", "--expression", "x", "nan", says="nan")
        self.refused(WRONG, "eval", "--expression", "x", "1e999", says="1e999")

    def test_outside_the_curve(self):
        result = run("eval", "--row", "2,10,Quadratic", "3")
        self.assertEqual(result.returncode, DONE)
        self.assertIn("outside the curve, which runs from 0 to 2", result.stderr)
        self.assertEqual(result.stdout, "3 22.5 15 5 0\n")  # the law goes on: 10 (3/2)^2

    def test_numbers_under_a_comma_locale(self):
        comma = {"LOCPATH": os.environ["COMMA_LOCALES"], "LC_ALL": "comma"}
        self.assertEqual(self.done("eval", "--expression", "x/4", "0.5", env=comma), "0.5 0.125 0.25 0 0\n")


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
                           ("2,10,Wobbly", "no profile \"Wobbly\"; there are Cubic (Default)")]:
            with self.subTest(row):
                self.refused(WRONG, "eval", f"--row={row}", "1", says=[f'--row "{row}"', words])

    def test_numbers_that_six_decimals_do_not_hold(self):
        for row, words in [("1,0.0000254,Linear", "its value of 2.54e-05 is 2.5e-05"), ("1,1e-9,Linear", "its value of 1e-09 is 0"),
                           ("1e-7,1,Cubic", "its length of 1e-07 is 0"), ("1.0005e-3,1,Cubic", None), ("1,1e-300,Linear", "is 0"),
                           ("1.2e-6,1,Cubic", "its length of 1.2e-06 is 1e-06"), ("0.3333333333333333,0.6666666666666666,Cubic", None)]:
            with self.subTest(row):
                if words is None:
                    self.done("eval", "--row", row, "0")
                else:
                    self.refused(WRONG, "eval", "--row", row, "0", says=[f'--row "{row}": ', words, "six decimals"])
        self.refused(WRONG, "eval", "--row", "1,0,Linear", "--start", "2e-7", "0", says="the start: its value of 2e-07 is 0")
        self.done("eval", "--row", "1,0.1234567,Linear", "--start", "0.1234567", "0")
        # What rounding leaves of 0 is none of it in a curve that rises by 25.
        self.done("eval", "--row", "1,25,Cubic", "--row", "2,6.1e-17,Cubic", "--row", "3,0,Cubic", "1")

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
                self.assertEqual((result.returncode, result.stderr), (DONE, f"mfcurve: {words}\n"))
                self.done(*command, "--row", "2,10,Quadratic", "--from", "0.5", "--to", "2")
                self.done(*command, "--expression", "x", "--from", "0.5", "--to", "3")

    def test_json(self):
        rows = json.loads(self.table("--expression", "x^3", "--samples", "3", "--format", "json"))
        self.assertEqual(rows[2], {"x": 2, "value": 8, "d1": 12, "d2": 12, "d3": 6})
        self.assertEqual(len(rows), 3)

    def test_a_gap_in_json_and_csv(self):
        stretch = ["--from", "-1", "--to", "1", "--samples", "3"]
        result = self.refused(FAILED, "table", "--expression", "1/x", *stretch, "--format", "json",
                              says="1 of the samples, first at x = 0")
        self.assertEqual(json.loads(result.stdout)[1], {"x": 0, "value": None, "d1": None, "d2": None, "d3": None})
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
        sections = json.loads(self.done("table", first, second, "--samples", "1", "--format", "json"))
        self.assertEqual(sections, {str(path): [{"x": 0, "value": 0, "d1": 0}] for path in [first, second]})


class Plot(ToolTest):
    def plot(self, *arguments):
        picture = self.folder / "out.svg"
        self.assertEqual(self.done("plot", *arguments, "-o", picture), f"{picture}\n")
        return ElementTree.parse(picture).getroot()

    def texts(self, picture):
        return ["".join(text.itertext()) for text in picture.iter(SVG + "text")]

    def count(self, picture, tag, style):
        return sum(node.get("class") == style for node in picture.iter(SVG + tag))

    def test_diagrams_of_each_drive(self):
        for drive, titles in [("displacement", ["Displacement  mm", "Velocity  mm/s", "Acceleration  mm/s\u00b2",
                                                "Jerk  mm/s\u00b3"]),
                              ("velocity", ["Velocity  mm/s", "Acceleration  mm/s\u00b2", "Jerk  mm/s\u00b3"]),
                              ("acceleration", ["Acceleration  mm/s\u00b2", "Jerk  mm/s\u00b3"]),
                              ("force", ["Force  N", "Rate of force  N/s"]),
                              ("torque", ["Torque  N\u00b7m", "Rate of torque  N\u00b7m/s"])]:
            with self.subTest(drive):
                picture = self.plot("--expression", "time^3", "--from", "0", "--to", "1", "--drive", drive)
                texts = self.texts(picture)
                self.assertEqual([text for text in texts if "  " in text and not text.startswith("min")], titles)
                self.assertIn("Time [s]", texts)
                self.assertEqual(self.count(picture, "path", "line"), len(titles))

    def test_seams_and_profiles(self):
        picture = self.plot("--row", "120,40,Cubic", "--row", "180,40,Cubic", "--row", "360,0,Half-Cosine", "--over",
                            "angle", "--name", "A <cam> & \"more\"")
        texts = self.texts(picture)
        self.assertEqual(self.count(picture, "line", "seam"), 2 * 4)
        for text in ["A <cam> & \"more\"", "Cycle angle [deg]", "Half-Cosine", "90", "360", "min 0   max 40"]:
            self.assertIn(text, texts)

    def test_a_constant_stretch_has_a_name_of_its_own(self):
        rows = ["--row", "1,2,Cubic", "--row", "2,2,Cubic"]
        self.assertIn("Dwell", self.texts(self.plot(*rows)))
        self.assertIn("Constant", self.texts(self.plot(*rows, "--drive", "velocity")))

    def test_a_jump_at_a_seam_is_upright(self):
        picture = self.plot("--row", "1,1,Quadratic", "--row", "2,1,Cubic")
        velocity = [node.get("d") for node in picture.iter(SVG + "path") if node.get("class") == "line"][1]
        points = [tuple(map(float, point.split())) for point in velocity[1:].split("L")]
        middle = (points[0][0] + points[-1][0]) / 2
        self.assertEqual(len({y for x, y in points if abs(x - middle) < 0.01}), 2)

    def test_points_are_markers(self):
        points = self.write("points.csv", "x,y\n0,0\n1,2\n3,1\n")
        picture = self.plot("--points", points, "--interpolation", "cubic")
        self.assertEqual(self.count(picture, "circle", "knot"), 3)

    def test_a_pole_is_a_gap(self):
        picture = self.plot("--expression", "1/(x-0.5)", "--from", "0", "--to", "1")
        self.assertEqual(self.count(picture, "path", "line"), 2 * 4)

    def test_units(self):
        picture = self.plot("--row", "2,10,Cubic", "--over", "angle", "--units", "deg, mm")
        self.assertIn("Velocity  mm/deg", self.texts(picture))
        picture = self.plot("--row", "2,10,Cubic", "--drive", "velocity", "--units", "s, m/s")
        self.assertIn("Jerk  m/s\u00b3", self.texts(picture))
        self.refused(WRONG, "plot", "--row", "2,10,Cubic", "--units", "mm", "-o", "-", says="--units")

    def test_extreme_curves_make_sound_pictures(self):
        for text in ["1e308*sin(x)", "1e-300*x", "7", "0*x", "1e9+1e-9*x", "exp(x^2)", "sqrt(-1-x^2)"]:
            with self.subTest(text):
                picture = self.plot("--expression", text, "--from", "0", "--to", "100")
                for node in picture.iter(SVG + "path"):
                    self.assertNotRegex(node.get("d"), "nan|inf")

    def test_no_label_leaves_the_picture(self):
        for text, start, end in [("-98765.4321+1e-5*sin(x)", 0, 10), ("1+1e-11*sin(x)", 0, 10), ("sin(x)", 1700000000, 1700000010),
                                 ("sin(x)", 1700000000, 1700000000.018), ("sin(x)", 0, 1)]:
            with self.subTest(text):
                picture = self.plot("--expression", text, "--from", start, "--to", end)
                for label in picture.iter(SVG + "text"):
                    size = re.search(r"font-size:([\d.]+)px", label.get("style") or "font-size:12px")
                    if label.get("class") or not size:
                        continue
                    width = 0.55 * float(size[1]) * len(label.text)  # a digit is that wide in Helvetica
                    x = float(label.get("x"))
                    left = {"end": x - width, "middle": x - width / 2}[label.get("text-anchor")]
                    self.assertGreaterEqual(left, 0, label.text)
                    self.assertLessEqual(left + width, float(picture.get("width")), label.text)

    def test_a_long_title_is_cut(self):
        [title] = [text for text in self.texts(self.plot("--row", "1,1,Cubic", "--name", "\u00e4" * 200)) if "\u00e4" in text]
        self.assertEqual(title, "\u00e4" * 71 + "\u2026")
        self.assertIn("\u00e4" * 72, self.texts(self.plot("--row", "1,1,Cubic", "--name", "\u00e4" * 72)))

    def test_a_line_beyond_the_axis_stays_in_the_frame(self):
        points = self.write("points.csv", "-1e308,0\n0,1\n1e308,0\n")
        for path in self.plot("--points", points).iter(SVG + "path"):
            for x in re.findall(r"[ML](\S+)", path.get("d")):
                self.assertTrue(84 <= float(x) <= 892, x)

    def test_a_fast_vibration_is_no_slow_wave(self):
        # Of 1591 periods evenly spaced samples show about nine, 1601 of them as well as 801.
        for count in [1591, 1601, 795, 801, 3201]:
            with self.subTest(count):
                picture = self.plot("--expression", f"sin({2 * math.pi * count}*x)", "--from", "0", "--to", "1")
                line = next(node.get("d") for node in picture.iter(SVG + "path") if node.get("class") == "line")
                heights = [float(point.split()[1]) for point in line[1:].split("L")]
                middle = (min(heights) + max(heights)) / 2
                crossings = sum((a < middle) != (b < middle) for a, b in zip(heights, heights[1:]))
                self.assertGreater(crossings, 400)
                self.assertGreater(max(heights) - min(heights), 60)

    def test_a_long_table_makes_a_small_picture(self):
        rows = "".join(f"{i},{i % 2},Cubic\n" for i in range(1, 2001))
        self.plot("--rows", self.write("rows.csv", rows))
        self.assertLess((self.folder / "out.svg").stat().st_size, 3_000_000)

    def test_standard_output(self):
        text = self.done("plot", "--expression", "x", "--from", "0", "--to", "1", "-o", "-")
        self.assertEqual(ElementTree.fromstring(text).tag, SVG + "svg")

    def test_unwritable(self):
        curve = ["plot", "--expression", "x", "--from", "0", "--to", "1", "-o"]
        self.refused(FAILED, *curve, self.folder / "none" / "out.svg", says=["cannot write", "No such file"])
        self.refused(FAILED, *curve, self.folder, says="it is a folder")

    def test_several_documents_go_into_a_folder(self):
        names = ["a", "b"]
        files = [self.write(name + ".xml", EXPRESSION_DOCUMENT.format(object="Force")) for name in names]
        self.done("plot", *files, "-o", self.folder)
        for name in names:
            ElementTree.parse(self.folder / (name + ".svg"))
        self.refused(WRONG, "plot", *files, "-o", self.folder / "one.svg", says="folder")

    def test_no_picture_takes_the_place_of_another(self):
        (self.folder / "left").mkdir()
        files = [self.write(name, EXPRESSION_DOCUMENT.format(object="Force")) for name in ["left/cam.xml", "cam.xml"]]
        self.refused(WRONG, "plot", *files, "-o", self.folder, says=["left/cam.xml and ", "would both be called cam.svg"])
        self.assertFalse((self.folder / "cam.svg").exists())


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
        self.assertEqual(result.stderr, f"mfcurve: warning: {points}:3: x is below that of the point before it; the points are sorted by x\n")

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


class Documents(ToolTest):
    def test_each_motion_object(self):
        for motion_object in ["Motor", "Force", "Torque"]:
            with self.subTest(motion_object):
                document = EXPRESSION_DOCUMENT.format(object=motion_object)
                path = self.write("curve.xml", document)
                wanted = [[2, 12, 12, 6, 0]]
                self.assertEqual(self.samples("eval", path, "2"), wanted)
                self.assertEqual(self.samples("eval", "-", "2", text=document), wanted)

    def test_one_section_a_document(self):
        path = self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force"))
        self.assertEqual(self.done("eval", path, path, "1", "2").splitlines(),
                         [f"# {path}", "1 3 6 6 0", "2 12 12 6 0"] * 2)

    def test_one_bad_document_keeps_no_other_from_its_turn(self):
        path = self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force"))
        missing = self.folder / "none.xml"
        result = self.refused(FAILED, "eval", missing, path, "1", says="none.xml")
        self.assertEqual(result.stdout.splitlines(), [f"# {path}", "1 3 6 6 0"])

    def test_a_document_takes_no_law_of_the_one_before(self):
        first, second = self.folder / "first.xml", self.folder / "second.xml"
        self.done("convert", "--row", "1,1,Cubic", first)
        document = first.read_text()
        first.write_text(document.replace("3*xbar^2-2*xbar^3", "xbar^2"))
        second.write_text(re.sub("<ProfileDefinitions>.*</ProfileDefinitions>", "", document))
        alone = self.refused(FAILED, "eval", second, "0.5", says="which the document does not define")
        together = self.refused(FAILED, "eval", first, second, "0.5", says="which the document does not define")
        self.assertEqual(together.stdout, f"# {first}\n0.5 0.25 1 2 0\n")
        self.assertEqual(together.stderr, alone.stderr)

    def test_why_a_document_cannot_be_used(self):
        document = EXPRESSION_DOCUMENT.format(object="Force")
        for text, words in [
                ("", ["line 1"]), ("not XML", ["line 1"]), (document[:-5], ["line 1"]),
                (document.replace("<Version>1<", "<Version>2<"), ["version 2"]),
                (document.replace("FunctionName", "Name"), ["FunctionName"]),
                (document.replace(">Expression<", ">Formula<"), ["FunctionType", "Formula"]),
                ("<!DOCTYPE Curve>" + document.split("?>")[1], ["document type"])]:
            with self.subTest(words):
                path = self.write("curve.xml", text)
                self.refused(FAILED, "eval", path, "1", says=["curve.xml: ", *words])
                self.refused(FAILED, "info", "-", says=["standard input: "], text=text)

    def test_an_unknown_motion_object(self):
        # A file has to fit a motor, a force or a torque; a text may say nothing of it.
        document = EXPRESSION_DOCUMENT.format(object="Heat")
        self.refused(FAILED, "eval", self.write("curve.xml", document), "1", says=["MotionObjectType", "Heat"])
        self.assertUnsound("neither a motor nor a force nor a torque", "-", text=document)

    def test_a_motion_result_has_to_exist(self):
        rows = ["--row", "2,10,Cubic"]
        path = self.folder / "curve.xml"
        self.done("convert", *rows, path)
        path.write_text(path.read_text().replace("IndependentVariableType_Time", "Spring length"))
        self.refused(FAILED, "eval", path, "1", says="Spring length")
        self.assertEqual(self.samples("eval", path, "--result", "Spring length", "1"), [[1, 5, 7.5, 0, -15]])


SAMPLES = sorted((PROJECT / "share/mfcurves/curves").glob("*.xml"))


class Samples(ToolTest):
    def test_there_are_samples(self):
        self.assertGreaterEqual(len(SAMPLES), 8)

    def test_each_command_takes_each_sample(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                host = self.host(path)
                self.assertIn("valid          yes", self.done("info", path, *host))
                lines = self.done("table", path, *host, "--samples", "50").splitlines()
                self.assertEqual(len(lines), 51)
                self.assertNotIn("nan", "".join(lines))
                self.samples("eval", path, lines[1].split(",")[0], lines[-1].split(",")[0], *host)
                ElementTree.fromstring(self.done("plot", path, *host, "-o", "-"))
                # A profile that came with a document bears the stem of its file name, so
                # the second document is the first one that can come back the same.
                documents = [path]
                for generation in range(3):
                    (self.folder / str(generation)).mkdir(exist_ok=True)
                    documents.append(self.folder / str(generation) / "written.xml")
                    self.done("convert", documents[-2], documents[-1], *host)
                self.assertEqual(documents[2].read_bytes(), documents[3].read_bytes())

    def host(self, path):
        return host_of(path.read_text(encoding="utf-8"))


def host_of(document):
    """The motion result that a document asks of its host."""
    name = re.search("<IndepVar>(.*?)</IndepVar>", document)[1]
    return [] if name.startswith("IndependentVariableType_") else ["--result", name]


def text_of(name, text):
    """Gives the last element of that name another text."""
    return lambda document: re.sub(f"(.*<{name}>)[^<]*", lambda found: found[1] + text, document, count=1, flags=re.S)


def without(name):
    """Renames the elements of that name."""
    return lambda document: re.sub(f"(</?){name}([ />])", r"\1Other\2", document)


# What is done to a document, and which words tell of it. A change that leaves the document as it is has nothing
# to break there.
BREAKAGES = {
    **{f"no {name}": (without(name), [f'The element "{name}" within "Curve" is missing.']) for name in [
        "FunctionName", "FunctionType", "MotionObjectType", "XYDataType", "IndepVar", "DepVar", "Cursor",
        "Interpolation", "SegmentCount", "PointCount", "Expression"]},
    **{f"no {name}": (without(name), [f'The element "{name}" within "Range{name[-1]}" within "Curve" is missing.'])
       for name in ["MinX", "MaxX", "MinY", "MaxY"]},
    "no rows": (without("Segment"), ["it has no row behind the start"]),
    "no points": (without("Point"), ["it has no points"]),
    "an end with a letter": (text_of("EndX", "9O"), ["row ", '"EndX" is "9O", which is not a finite number']),
    "no value": (text_of("Value", ""), ["row ", '"Value" is "", which is not a finite number; it reads as 0']),
    "a value with a comma": (text_of("Value", "1,5"), ["row ", '"Value" is "1,5"', "it reads as 1"]),
    "a value too large": (text_of("Value", "1e999"), ["row ", '"Value" is "1e999"', "it reads as INF"]),
    "a start apart": (text_of("StartX", "0.5"), ["row ", "starts at 0.5, where the previous row does not end"]),
    "an end before the start": (text_of("EndX", "-1"), ["it ends before it starts"]),
    "an unknown profile": (text_of("Profile", "Wobbly"), ["row ", '"Profile" is "Wobbly"', "Cubic (Default)"]),
    "no profile": (text_of("Profile", ""), ["row ", '"Profile" is ""', "Cubic (Default)"]),
    "no law": (text_of("ProfileFunction", "y=x"), ["definition ", "is left out: "]),
    "an x in words": (text_of("x", "one"), ["point ", '"x" is "one", which is not a finite number']),
    "a y of words": (text_of("y", "nan"), ["point ", '"y" is "nan", which is not a finite number']),
    "an x before the others": (text_of("x", "-1e6"), ["point ", "which is not above the previous point's"]),
    "an unknown interpolation": (text_of("Interpolation", "Spline"), ['"Interpolation" is "Spline"', "_Akima"]),
    "a wrong expression": (text_of("Expression", "2*(x"), ["wrong at character 5", "2*(x\n        ^"]),
    "an empty expression": (text_of("Expression", ""), ["wrong at character 1"]),
    "an unknown quantity": (text_of("DepVar", "Speed"), ['"DepVar" is "Speed"', "MotorDriveType_Velocity"]),
    "no quantity": (text_of("DepVar", ""), ["it does not say what it drives"]),
    "an unknown kind": (text_of("FunctionType", "Formula"), ['"FunctionType" is "Formula"', '"Segments"']),
    "an unknown object": (text_of("MotionObjectType", "Heat"), ["motor", "force", "torque"]),
    "another version": (text_of("Version", "2"), ["version 2, and only version 1 is read"]),
    "a version in words": (text_of("Version", "one"), ["version 0, and only version 1 is read"]),
    "a cut tag": (lambda document: document[:document.rindex("</Cur") + 5], ["(line 2, column "]),
    "half of it": (lambda document: document[:len(document) // 2], ["(line 2, column "]),
    "nothing": (lambda document: "", ["Document is empty (line 1, column 1)"]),
    "an unknown entity": (text_of("FunctionName", "&cam;"), ["'cam' not defined (line 2, column "]),
}


class Broken(ToolTest):
    """Copies of the samples with one thing wrong: every command tells what, and answers nothing from it."""

    def test_every_copy_is_explained(self):
        for path in SAMPLES:
            whole = path.read_text(encoding="utf-8")
            for name, (change, words) in BREAKAGES.items():
                broken = change(whole)
                if broken == whole:
                    continue
                with self.subTest(sample=path.name, breakage=name):
                    result = run("info", self.write("broken.xml", broken), *host_of(whole))
                    self.assertEqual(result.returncode, FAILED)
                    for part in words:
                        self.assertIn(part.lower(), (result.stdout + result.stderr).lower())

    def test_no_command_answers(self):
        commands = [["eval", "0.5"], ["table", "--format", "json"], ["plot", "-o", "-"], ["convert"]]
        applied = set()
        for sample in ["friction-torque", "measured-velocity", "crank-stroke"]:
            whole = (SAMPLES[0].parent / f"{sample}.xml").read_text(encoding="utf-8")
            for name, (change, words) in BREAKAGES.items():
                broken = change(whole)
                if broken == whole:
                    continue
                applied.add(name)
                path = self.write("broken.xml", broken)
                for command, file, place in [(commands[len(applied) % 4], path, path), (["eval", "1"], "-", "standard input")]:
                    with self.subTest(sample=sample, breakage=name, command=command[0]):
                        out = ["-"] if command == ["convert"] else []
                        result = self.refused(FAILED, *command, file, *out, *host_of(whole), says=f"{place}: ", text=broken)
                        self.assertEqual(result.stdout, "")
        self.assertEqual(applied, set(BREAKAGES))

    def test_a_motion_result_that_the_host_lacks(self):
        for path in SAMPLES:
            whole = path.read_text(encoding="utf-8")
            if "<Expression>" not in whole:  # an expression says it itself
                with self.subTest(path.name):
                    copy = self.write("broken.xml", text_of("IndepVar", "Nothing")(whole))
                    self.refused(FAILED, "eval", copy, "1", "--result", "Something", says=["Nothing", "motion result"])

    def test_bytes_that_are_not_of_the_encoding(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                copy = self.folder / "broken.xml"
                copy.write_bytes(path.read_bytes().replace(b"<FunctionName>", b"<FunctionName>\xe4"))
                self.refused(FAILED, "info", copy, says=["broken.xml: ", "not proper UTF-8", "(line 2, column "])
                copy.write_bytes(path.read_bytes().replace(b"'UTF-8'", b"'Klingon'"))
                self.refused(FAILED, "info", copy, says=["broken.xml: ", "encoding Klingon", "(line 1, column "])

    def test_what_is_no_file(self):
        self.refused(FAILED, "info", self.folder, says=[f"{self.folder}: ", "Is a directory"])
        self.refused(FAILED, "info", self.folder / "none.xml", says=["none.xml: ", "No such file or directory"])
        self.refused(FAILED, "info", "", says="No such file or directory")
        locked = self.write("locked.xml", SAMPLES[0].read_text(encoding="utf-8"))
        locked.chmod(0)
        if not os.access(locked, os.R_OK):  # as it is for root
            self.refused(FAILED, "info", locked, says=["locked.xml: ", "Permission denied"])

    def test_a_pipe(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                pipe = self.folder / path.stem
                os.mkfifo(pipe)
                writer = subprocess.Popen(f'cat "{path}" > "{pipe}"', shell=True)
                self.assertIn("valid          yes", self.done("info", pipe, *host_of(path.read_text(encoding="utf-8"))))
                writer.wait()

    def test_a_broken_document_among_others(self):
        good = SAMPLES[0].parent / "rise-dwell-return-cam.xml"
        bad = self.write("bad.xml", text_of("Value", "high")(good.read_text(encoding="utf-8")))
        result = self.refused(FAILED, "eval", bad, good, "45", says=[f"{bad}: ", '"high"'])
        self.assertEqual(result.stdout.splitlines()[0], f"# {good}")
        result = self.refused(FAILED, "table", bad, "--format", "json", says=f"{bad}: ")
        self.assertEqual(result.stdout, "")
        result = run("eval", good, good, "400")
        self.assertEqual(result.stderr, f"mfcurve: {good}: x = 400 lies outside the curve, which runs from 0 to 360\n" * 2)


class Profiles(ToolTest):
    def library(self, text):
        self.write("SegmentTypes.txt", text)
        return self.folder

    LAW = """SegmentType("{name}", x, x1, y1, x2, y2)
    y = y1 + (y2-y1)*{formula};
    return y;
endSegmentType
"""

    def test_the_built_in_table(self):
        lines = self.done("profiles").splitlines()
        self.assertEqual(lines[:3], ["Cubic (Default)", "    source   built-in table",
                                     "    formula  xbar=(x-x1)/(x2-x1); ybar=3*xbar^2-2*xbar^3; y=y1+(y2-y1)*ybar"])
        self.assertEqual(len(lines), 3 * 10)

    def test_the_built_in_laws_pass_their_check(self):
        text = self.done("profiles", "--check")
        self.assertEqual(text.count("    ok       compiles, starts at 0, ends at 1"), 10)
        # 4-5-6-7: all three derivatives vanish at both ends.
        law = text.split("4-5-6-7-Polynomial (Default)")[1].splitlines()[3]
        self.assertIn("at the start: d1 d2 d3, at the end: d1 d2 d3", law)

    def test_the_shipped_laws_pass_their_check(self):
        text = self.done("profiles", "--library", PROJECT / "share/mfcurves", "--check")
        self.assertNotIn("FAILED", text)
        self.assertIn(str(PROJECT / "share/mfcurves"), text)

    def test_a_law_of_ones_own(self):
        library = self.library(self.LAW.format(name="Lift", formula="((x-x1)/(x2-x1))^4"))
        text = self.done("profiles", "--library", f"/nowhere;{library}", "--check")
        self.assertIn("Lift (User)", text)
        self.assertIn("vanish at the start: d1 d2 d3, at the end: none", text)
        self.assertEqual(self.samples("eval", "--library", library, "--row", "2,32,Lift", "1"), [[1, 2, 8, 24, 48]])

    def test_laws_of_one_name_are_told_apart(self):
        library = self.library(self.LAW.format(name="Lift", formula="((x-x1)/(x2-x1))^4") +
                               self.LAW.format(name="Lift", formula="((x-x1)/(x2-x1))^5"))
        text = self.done("profiles", "--library", library)
        self.assertLess(text.index("^4"), text.index("Lift (User)<1>"))
        self.assertGreater(text.index("^5"), text.index("Lift (User)<1>"))

    def test_laws_that_fail_their_check(self):
        for formula, words in [("2*(x-x1)/(x2-x1)", "ends at 2 and not at 1"), ("cos((x-x1)/(x2-x1))", "starts at 1"),
                               ("sin(", "the expression is wrong at character"),
                               ("z*(x-x1)/(x2-x1)", "`z`"), ("z", "`z`")]:
            with self.subTest(formula):
                library = self.library(self.LAW.format(name="Lift", formula=formula))
                result = run("profiles", "--library", library, "--check")
                self.assertEqual(result.returncode, FAILED)
                self.assertIn("    FAILED   ", result.stdout)
                self.assertIn(words, result.stdout)

    def test_a_row_of_a_law_that_does_not_compile(self):
        for formula in ["sin(", "z"]:
            with self.subTest(formula):
                library = self.library(self.LAW.format(name="Lift", formula=formula))
                self.refused(WRONG, "eval", "--library", library, "--row", "2,32,Lift", "1",
                             says=["--row", "Lift", "the expression is wrong at character"])

    def test_a_file_that_does_not_parse(self):
        library = self.library(self.LAW.format(name="Lift", formula="x") + "\nSegmentType(Broken)\nendSegmentType\n")
        for command in [["profiles"], ["eval", "--row", "2,32,Lift", "1"]]:
            self.refused(FAILED, *command, "--library", library, says="SegmentTypes.txt:6: ")

    def test_a_library_without_a_file(self):
        self.refused(FAILED, "profiles", "--library", self.folder, says="has a SegmentTypes.txt")


class Info(ToolTest):
    def test_rows_and_seams(self):
        # At x = 1 the velocity falls from 2 to 0 and the acceleration from 2 to 6 (2 - 1) / 1^2.
        text = self.done("info", "--row", "1,1,Quadratic", "--row", "2,2,Cubic", "--over", "angle", "--name", "Lift")
        lines = {line[:15].strip(): line[15:].split() for line in text.splitlines() if line[:1] != " "}
        self.assertEqual(lines["name"], ["Lift"])
        self.assertEqual(lines["kind"][0], "segments,")
        self.assertEqual(lines["variable"], ["Cycle", "angle"])
        self.assertEqual(lines["domain"], ["0", "to", "2"])
        self.assertEqual(lines["valid"], ["yes"])
        self.assertEqual(text.splitlines()[-1].split(), ["1", "0", "-2", "4", "-12"])

    def test_a_row_of_no_length_is_a_jump(self):
        path = self.folder / "curve.xml"
        self.done("convert", "--row", "1,1,Linear", "--row", "2,3,Linear", path)
        jump = "<Segment><a>1</a><b>1</b><c>5</c><d>Linear (Default)</d></Segment>"
        path.write_text(path.read_text().replace('<Segment ID="3">', jump + '<Segment ID="3">'))
        self.assertEqual([line.split() for line in self.done("info", path).splitlines()[-2:]],
                         [["1", "4", "-1", "0", "0"], ["1", "0", "-2", "0", "0"]])

    def test_rounding_is_no_jump(self):
        # The jerk of a 3-4-5 polynomial is 60 h / l^3 at its ends, that of a 4-5-6-7 polynomial 0.
        text = self.done("info", PROJECT / "share/mfcurves/curves/rise-dwell-return-cam.xml")
        jerk = f"{60 * 25 / 90**3:.6g}"
        self.assertEqual([line.split() for line in text.splitlines()[-3:]],
                         [["90", "0", "0", "0", f"-{jerk}"], ["150", "0", "0", "0", "0"], ["240", "0", "0", "0", "0"]])

    def test_points_and_expressions(self):
        points = self.write("points.csv", "0,0\n1,1\n2,0\n")
        self.assertIn("3 points joined akima", self.done("info", "--points", points, "--interpolation", "akima"))
        text = self.done("info", self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force")))
        self.assertIn("expression     3*time^2", text)
        self.assertIn("domain         0 to 4", text)

    def test_what_is_wrong_with_a_curve(self):
        document = EXPRESSION_DOCUMENT.format(object="Force").replace("3*time^2", "3*time^")
        self.assertUnsound("the expression is wrong at character 8", self.write("curve.xml", document))

    def test_a_range_that_ends_before_it_starts(self):
        document = EXPRESSION_DOCUMENT.format(object="Force").replace("<MaxX>4<", "<MaxX>-4<")
        self.assertUnsound("its range ends before it starts", "-", text=document)

    def test_a_value_that_six_decimals_do_not_hold(self):
        path = self.folder / "curve.xml"
        self.done("convert", "--row", "2,10,Cubic", path)
        path.write_text(path.read_text().replace("<Value>10.000000<", "<Value>0.0000254<"))
        self.assertUnsound("row 1: its value of 2.54e-05 is 2.5e-05 in its law", path)
        self.refused(FAILED, "eval", path, "1", says="six decimals")

    def test_a_law_that_does_not_compile(self):
        path = self.folder / "curve.xml"
        self.done("convert", "--row", "2,10,Quadratic", path)
        path.write_text(path.read_text().replace("returny;", "return(y;"))
        self.assertUnsound("row 1: its law does not compile; the expression is wrong at character", path)

    def test_sections(self):
        path = self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force"))
        self.assertEqual(self.done("info", path, path).splitlines().count(str(path)), 2)


class Convert(ToolTest):
    def test_each_kind_comes_back_the_same(self):
        points = self.write("points.csv", "0,0\n1,1\n2,0.5\n")
        stretch = ["--from", "0", "--to", "2"]
        for curve in [["--row", "1,4,Cubic", "--row", "2,0,Half-Cosine"], ["--points", points, "--interpolation", "akima"],
                      ["--expression", "3*time^2", *stretch]]:
            for drive in ["displacement", "velocity", "acceleration", "force", "torque"]:
                with self.subTest(curve=curve, drive=drive):
                    first = self.folder / "first.xml"
                    self.done("convert", *curve, "--drive", drive, "--name", "A curve", first)
                    second = self.done("convert", first, "-")
                    self.assertEqual(first.read_text(), second)
                    self.assertEqual(self.done("table", first), self.done("table", *curve, "--drive", drive))

    def test_standard_streams(self):
        document = self.done("convert", "--row", "1,4,Cubic", "-")
        self.assertEqual(self.done("convert", "-", "-", text=document), document)

    def test_refusals(self):
        self.refused(WRONG, "convert", says="convert takes IN and OUT")
        self.refused(WRONG, "convert", "a", "b", "c", says="convert takes IN and OUT")
        self.refused(FAILED, "convert", self.folder / "none.xml", "-", says="none.xml")
        self.refused(FAILED, "convert", "--row", "1,4,Cubic", self.folder / "none" / "out.xml", says="cannot write")

    def test_points_that_six_digits_do_not_tell_apart(self):
        points = self.write("points.csv", "1000.001,0\n1000.002,1\n")
        out = self.folder / "out.xml"
        self.refused(FAILED, "convert", "--points", points, out, says=[f"{out}: ", 'point 2: its x is 1000'])
        self.assertFalse(out.exists())

    def test_a_curve_that_six_digits_make_another(self):
        for text, words in [("123456.4,0\n123457.6,1\n", "its value at x = 123456.4 would be 0.2 and not 0"),
                            ("0,123456.001\n1,123456.002\n", "its value at x = 0 would be 123456 and not 123456.001"),
                            ("0,123456.789\n1,123456.789\n", None), ("0,0.12345678\n1.2345678,9.8765432\n", None)]:
            with self.subTest(text):
                call = ["convert", "--points", self.write("points.csv", text), "-"]
                if words is None:
                    self.done(*call)
                else:
                    self.refused(FAILED, *call, says=["another curve", words])
        self.refused(FAILED, "convert", "--expression", "x", "--from", "1234567", "--to", "1234568", "-",
                     says="its range would run from 1.23457e+06 to 1.23457e+06")
        self.done("convert", "--expression", "x", "--from", "0.12345678", "--to", "1.2345678", "-")

    def test_a_failure_leaves_the_old_file(self):
        old = self.write("old.xml", "old")
        self.refused(FAILED, "convert", self.folder / "none.xml", old, says="none.xml")
        self.assertEqual(old.read_text(), "old")


class Streams(ToolTest):
    def test_nothing_is_shown_of_progress_away_from_a_terminal(self):
        self.done("table", "--expression", "sin(x)", "--from", "0", "--to", "1", "--samples", "100000")

    def test_a_bar_on_a_terminal_for_long_work(self):
        self.assertBar("table", self.shown_by("table", "--expression", "sin(x)", "--from", "0", "--to", "1",
                                              "--samples", "1000000"))

    def test_a_bar_for_one_large_document(self):
        head, body = (PROJECT / "share/mfcurves/curves/friction-torque.xml").read_text(encoding="utf-8").split("<Segments>")
        profile = re.findall("<Profile>(.*?)</Profile>", body)[-1]
        for rows in [20_000, 100_000, 500_000]:
            text = "".join(f"<Segment><a>{max(i - 1, 0)}</a><b>{i}</b><c>{i % 7}</c><d>{profile}</d></Segment>"
                           for i in range(rows))
            path = self.write("long.xml", f"{head}<Segments>{text}</Segments>{body.split('</Segments>')[1]}")
            shown = self.shown_by("eval", path, "0.5", "--result", "Slip Speed")
            if shown:  # else this is a fast machine, and no long work
                break
        self.assertBar("reading", shown)

    def shown_by(self, *arguments):
        """What a call that goes well shows on a terminal."""
        screen, end = pty.openpty()
        with open(os.devnull, "w") as nowhere:
            tool = subprocess.Popen([TOOL, *arguments], stdout=nowhere, stderr=end)
        os.close(end)
        shown = b""
        try:
            while chunk := os.read(screen, 4096):
                shown += chunk
        except OSError:
            pass  # which is how a terminal says that nobody writes to it any more
        os.close(screen)
        self.assertEqual(tool.wait(), DONE, shown)
        return shown

    def assertBar(self, label, shown):
        self.assertRegex(shown, rb"\r%s \[#* *\] +\d+ %%" % label.encode())
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown[-80:])  # and is wiped away

    @unittest.skipUnless(os.path.exists("/dev/full"), "this system has no full device")
    def test_a_full_device(self):
        for command in [["eval", "--expression", "x", "1"], ["--help"], ["eval", "--help"], ["--version"],
                        ["table", "--expression", "x", "--from", "0", "--to", "1", "--samples", "100000"],
                        ["plot", "--expression", "x", "--from", "0", "--to", "1", "-o", "-"]]:
            with self.subTest(command[0]), open("/dev/full", "w") as full:
                result = subprocess.run([TOOL, *command], stdout=full, stderr=subprocess.PIPE, text=True)
                self.assertEqual(result.returncode, FAILED)
                self.assertIn("cannot write standard output: No space left", result.stderr)


class Readme(unittest.TestCase):
    def test_the_code_is_that_of_the_example(self):
        example = (PROJECT / "examples/rise_dwell_return.cpp").read_text()
        body = example.split("    // README begins\n")[1].split("    // README ends\n")[0]
        code = "".join(line[4:] if line.strip() else line for line in body.splitlines(keepends=True))
        shown = (PROJECT / "README.md").read_text().split("```cpp\n")[1].split("```\n")[0]
        self.assertEqual(shown, code)

    def assertSamePicture(self, drawn):
        """The picture of the README, up to the hundredth of a pixel that coordinates are rounded to."""
        number = re.compile(r"-?\d+(?:\.\d+)?")
        shown = (PROJECT / "docs/rise-dwell-return.svg").read_text(encoding="utf-8")
        self.assertEqual(number.sub("#", drawn), number.sub("#", shown))
        for a, b in zip(number.findall(drawn), number.findall(shown)):
            self.assertLess(abs(float(a) - float(b)), 0.015)

    def test_the_picture_is_that_of_the_sample(self):
        sample = PROJECT / "share/mfcurves/curves/rise-dwell-return-cam.xml"
        self.assertSamePicture(run("plot", sample, "-o", "-").stdout)

    def test_the_rows_make_the_same_picture(self):
        lines = (PROJECT / "README.md").read_text().split("    mfcurve plot --row", 1)[1].split("-o cam.svg")[0]
        command = f'"{TOOL}" plot --row {lines} -o -'.replace("\\\n", " ")
        self.assertSamePicture(subprocess.run(command, shell=True, capture_output=True, text=True).stdout)

    def test_the_calls_print_what_stands_there(self):
        lines = (PROJECT / "README.md").read_text().splitlines()
        shown = 0
        for call, answer in zip(lines, lines[1:]):
            if call.startswith("    $ mfcurve eval "):
                command = call.split("mfcurve", 1)[1]
                result = subprocess.run(f'"{TOOL}"{command}', shell=True, capture_output=True, text=True)
                self.assertEqual(result.stdout.splitlines(), [answer.strip()])
                shown += 1
        self.assertGreater(shown, 0)


if __name__ == "__main__":
    unittest.main()
