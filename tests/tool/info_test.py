# SPDX-License-Identifier: MIT
"""The output of info, and documents that are written."""

import json

from tooltest import LAW, DONE, EXPRESSION_DOCUMENT, FAILED, PROJECT, ToolTest, WRONG, run


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
        self.assertEqual(text.splitlines()[-2].split(), ["1", "0", "-2", "4", "-12"])
        # From the end back to the start the value falls from 2 to 0, the acceleration rises from -6 to 2.
        self.assertEqual(text.splitlines()[-1].split(), ["end", "to", "start", "2", "-2", "0", "8", "12"])

    def test_a_row_that_misses_its_value(self):
        self.write("SegmentTypes.txt", LAW.format(name="Half", formula="(x-x1)/(x2-x1)/2"))
        text = self.done("info", "--library", self.folder, "--row", "1,4,Half")
        self.assertIn("misses         row 1: its law ends at 2 and not at 4", text)

    def test_a_cam_that_ends_elsewhere_than_it_starts(self):
        text = self.done("info", "--row", "360,10,Cubic", "--over", "angle")
        self.assertEqual(text.splitlines()[-1].split()[:5], ["end", "to", "start", "360", "-10"])
        self.assertNotIn("end to start", self.done("info", "--row", "360,10,Cubic"))  # time does not repeat

    def test_json(self):
        path = self.folder / "cam.xml"
        self.done("convert", "--row", "90,10,Linear", "--over", "angle", "--name", "Cam", path)
        [cam] = json.loads(self.done("info", path, "--format", "json"))
        self.assertEqual((cam["file"], cam["name"], cam["kind"], cam["valid"], cam["from"], cam["to"]),
                         (str(path), "Cam", "segments", True, 0, 90))
        self.assertEqual(cam["seams"], [{"x": 90, "jump": [-10, 0, 0, 0], "cycle_end": True}])

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
        self.assertEqual([line.split() for line in text.splitlines()[-4:-1]],
                         [["90", "0", "0", "0", f"-{jerk}"], ["150", "0", "0", "0", "0"], ["240", "0", "0", "0", "0"]])

    def test_points_and_expressions(self):
        points = self.write("points.csv", "0,0\n1,1\n2,0\n")
        self.assertIn("3 points joined akima", self.done("info", "--points", points, "--interpolation", "akima"))
        text = self.done("info", self.write("curve.xml", EXPRESSION_DOCUMENT.format(object="Force")))
        self.assertIn("expression     3*time^2", text)
        self.assertIn("domain         0 to 4", text)

    def test_what_is_wrong_with_a_curve(self):
        document = EXPRESSION_DOCUMENT.format(object="Force").replace("3*time^2", "3*time^")
        self.assertUnsound("character 8: ", self.write("curve.xml", document))

    def test_a_range_that_ends_before_it_starts(self):
        document = EXPRESSION_DOCUMENT.format(object="Force").replace("<MaxX>4<", "<MaxX>-4<")
        self.assertUnsound("the range ", "-", text=document)

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
        self.assertUnsound("row 1: the law ", path)

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

    def test_points_that_six_digits_cannot_distinguish(self):
        points = self.write("points.csv", "1000.001,0\n1000.002,1\n")
        out = self.folder / "out.xml"
        self.refused(FAILED, "convert", "--points", points, out, says=f"{out}: the document would be another curve")
        self.assertFalse(out.exists())

    def test_a_curve_that_six_digits_make_another(self):
        for text, words in [("123456.4,0\n123457.6,1\n", "its range would run from 123456 to 123458"),
                            ("0,123456.001\n1,123456.002\n", "its value at x = 1 would be 123456 and not 123456.002")]:
            with self.subTest(text):
                self.refused(FAILED, "convert", "--points", self.write("points.csv", text), "-", says=["another curve", words])
        self.refused(FAILED, "convert", "--expression", "x", "--from", "1234567", "--to", "1234568", "-",
                     says="its range would run from 1.23457e+06 to 1.23457e+06")

    def test_numbers_that_six_digits_change_are_reported_with_the_change_of_the_curve(self):
        for curve in [["--points", self.write("a.csv", "0,123456.789\n1,123456.789\n")],
                      ["--points", self.write("b.csv", "0,0.12345678\n1.2345678,9.8765432\n")]]:
            with self.subTest(curve):
                result = run("convert", *curve, "-")
                self.assertEqual(result.returncode, DONE)
                self.assertRegex(result.stderr, r"^mfcurve: warning: standard output: six digits change .* moves by up to \S+ at x = ")

    def test_a_range_that_six_digits_change_is_reported(self):
        result = run("convert", "--expression", "x", "--from", "0.12345678", "--to", "1.2345678", "-")
        self.assertEqual(result.returncode, DONE)
        self.assertEqual(result.stderr,
                         "mfcurve: warning: standard output: six digits change numbers of the curve; "
                         "the first: the range's start 0.12345678 becomes 0.123457\n")

    def test_out_is_missing(self):
        self.refused(WRONG, "convert", "cam.xml", says=["OUT is missing", "see mfcurve convert --help"])

    def test_a_failure_leaves_the_old_file(self):
        old = self.write("old.xml", "old")
        self.refused(FAILED, "convert", self.folder / "none.xml", old, says="none.xml")
        self.assertEqual(old.read_text(), "old")
