# SPDX-License-Identifier: MIT
"""Curves for controllers and other programs: export."""

import json
import re

from laws import gripper_cam
from tooltest import DONE, FAILED, WRONG, ToolTest, run

CAM = ["--row", "90,25,3-4-5-Polynomial", "--row", "150,25,Linear", "--row", "240,0,3-4-5-Polynomial", "--row", "360,0,Linear",
       "--over", "angle"]
# x up to 1, then x + 1.
JUMP = ["--expression", "if({0}-1: {0}, {0}, {0}+1)", "--from", "0", "--to", "2"]
JUMP_OVER_TIME, JUMP_OVER_RESULT = ([word.format(name) for word in JUMP] for name in ["time", "{Slip}"])


def quintic(t, h, y0, v0, a0, y1, v1, a1):
    """The polynomial with value, velocity and acceleration at both ends of a length h, in its Hermite form."""
    u = t / h
    p = 10 * u**3 - 15 * u**4 + 6 * u**5
    return ((1 - p) * y0 + p * y1 + h * v0 * (u - 6 * u**3 + 8 * u**4 - 3 * u**5) + h * v1 * (-4 * u**3 + 7 * u**4 - 3 * u**5)
            + h * h * a0 / 2 * (u**2 - 3 * u**3 + 3 * u**4 - u**5) + h * h * a1 / 2 * (u**3 - 2 * u**4 + u**5))


class Export(ToolTest):
    def export(self, form, *arguments):
        """The text of an export, its number of rows and its bound."""
        out = self.folder / f"out.{form}"
        [report] = json.loads(self.done("export", *arguments, "-o", out, "--as", form, "--format", "json"))
        self.assertEqual((report["file"], report["output"], report["as"]), (None, str(out), form))
        return out.read_text(encoding="utf-8"), report["rows"], report["bound"]

    def test_samples_are_those_of_table(self):
        text, rows, bound = self.export("csv", *CAM, "--step", "0.5", "--open-end", "--rpm", "60")
        self.assertEqual((rows, bound), (720, None))
        self.assertEqual(text, self.done("table", *CAM, "--step", "0.5", "--open-end", "--rpm", "60"))

    def test_quintics_keep_the_tolerance(self):
        text, rows, bound = self.export("xyva", *CAM, "--tolerance", "1e-3")
        lines = text.splitlines()
        self.assertEqual(lines[0], "x,y,v,a")
        table = [tuple(map(float, line.split(","))) for line in lines[1:]]
        self.assertEqual((len(table), table[0][0], table[-1][0]), (rows, 0, 360))
        self.assertLessEqual(bound, 1e-3)
        self.assertLess(rows, 40)
        for (x0, *start), (x1, *end) in zip(table, table[1:]):
            for part in range(1, 10):
                t = part / 10 * (x1 - x0)
                error = quintic(t, x1 - x0, *start, *end) - gripper_cam(x0 + t)[0]
                self.assertLessEqual(abs(error), bound + 1e-12)

    def test_velocities_by_seconds(self):
        # 60 turns a minute are 360 degrees a second.
        by_degrees = self.export("xyva", *CAM, "--tolerance", "1e-3")[0].splitlines()[1:]
        by_seconds = self.export("xyva", *CAM, "--tolerance", "1e-3", "--rpm", "60")[0].splitlines()[1:]
        self.assertEqual(len(by_degrees), len(by_seconds))
        for slow, fast in zip(by_degrees, by_seconds):
            x, y, v, a = map(float, slow.split(","))
            self.assertNumbers(list(map(float, fast.split(","))), [x, y, 360 * v, 360**2 * a])

    def test_a_modelica_table_keeps_the_tolerance_linearly(self):
        text, rows, bound = self.export("modelica", *CAM, "--tolerance", "0.01")
        head, name, *lines = text.splitlines()
        self.assertEqual((head, name), ("#1", f"double curve({rows},2)"))
        table = [tuple(map(float, line.split())) for line in lines]
        self.assertEqual(len(table), rows)
        self.assertLessEqual(bound, 0.01)
        for (x0, y0), (x1, y1) in zip(table, table[1:]):
            for part in range(1, 10):
                error = y0 + part / 10 * (y1 - y0) - gripper_cam(x0 + part / 10 * (x1 - x0))[0]
                self.assertLessEqual(abs(error), bound + 1e-12)

    def test_points_keep_the_tolerance_with_the_digits_of_a_document(self):
        expression = ["--expression", "20*sin(x)", "--from", "0", "--to", "6.283185307179586"]
        text, rows, bound = self.export("points", *expression, "--tolerance", "0.002")
        document = self.folder / "out.points"
        self.assertEqual(len(re.findall("<ValueX>|<X>", text)) % rows if rows else 1, 0)
        self.assertIn(f"{rows} points joined cubic", self.done("info", document))
        xs = [i / 100 for i in range(629)]
        points = self.samples("eval", document, *xs[:-1])
        curve = self.samples("eval", *expression, *xs[:-1])
        for p, c in zip(points, curve):
            self.assertLessEqual(abs(p[1] - c[1]), bound)
        self.assertLessEqual(bound, 0.002)

    def test_six_digits_that_cannot_keep_the_tolerance(self):
        out = self.folder / "out.xml"
        self.refused(FAILED, "export", "--expression", "1000+sin(x)", "--from", "0", "--to", "6", "-o", out, "--as", "points",
                     "--tolerance", "1e-5", says="the six digits of a document cannot keep 1e-05: the points would be up to")
        self.assertFalse(out.exists())

    def test_points_cannot_follow_a_jump(self):
        self.refused(FAILED, "export", *JUMP_OVER_TIME, "-o", "-", "--as", "points", "--tolerance", "0.1",
                     says="points cannot follow the jump of the value at x = 1")

    def test_a_jump_is_two_rows_of_one_x(self):
        table = self.done("export", *JUMP_OVER_TIME, "-o", "-", "--as", "modelica", "--tolerance", "0.1")
        self.assertEqual(table, "#1\ndouble curve(4,2)\n0 0\n1 1\n1 2\n2 3\n")

    def test_a_modelica_table_over_a_motion_result_cannot_jump(self):
        self.refused(FAILED, "export", *JUMP_OVER_RESULT, "-o", "-", "--as", "modelica", "--tolerance", "0.1",
                     says="only a table over time can follow the jump of the value at x = 1")

    def test_nothing_is_written_without_a_proof(self):
        out = self.folder / "out.csv"
        self.refused(FAILED, "export", "--expression", "1/x", "--from", "0", "--to", "1", "-o", out, "--as", "xyva", "--tolerance",
                     "0.1", says="no table is proved to keep 0.1")
        self.assertFalse(out.exists())

    def test_the_report(self):
        out = self.folder / "out.csv"
        text = self.done("export", *CAM, "-o", out, "--as", "xyva", "--tolerance", "0.1")
        self.assertRegex(text, rf"^{out}: \d+ rows, proved within [0-9.e-]+ of the curve\n$")
        self.assertEqual(self.done("export", *CAM, "-o", out, "--as", "csv"), f"{out}: 101 rows\n")

    def test_a_value_that_is_not_finite(self):
        result = run("export", "--expression", "1/x", "--from", "0", "--to", "1", "-o", "-", "--as", "csv", "--samples", "3")
        self.assertEqual(result.returncode, FAILED)
        self.assertIn("at 1 of the samples, first at x = 0; it divides by x, which is 0 there", result.stderr)
        self.assertIn("\n0.5,2,", result.stdout)

    def test_wrong_usage(self):
        for arguments, words in [
                (["--as", "xyva"], "--as xyva needs --tolerance"), (["--as", "csv", "--tolerance", "1"], "csv takes --step or --samples"),
                (["--as", "points", "--tolerance", "1", "--step", "1"], "--samples, --step and --open-end go with --as csv"),
                (["--as", "modelica", "--tolerance", "1", "--rpm", "60"], "--cycle-time and --rpm go with --as csv and xyva"),
                (["--as", "xyva", "--tolerance", "0"], "--tolerance takes a number above 0"),
                (["--as", "xvya", "--tolerance", "1"], "did you mean xyva?"),
                (["--as", "csv", "--format", "json"], "--format json goes with an output file")]:
            self.refused(WRONG, "export", *CAM, "-o", "-", *arguments, says=[words, "see mfcurve export --help"])
        self.refused(WRONG, "export", *CAM, "--as", "csv", says=["--output", "see mfcurve export --help"])
        self.assertEqual(run("export", "--help").returncode, DONE)
