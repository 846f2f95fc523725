# SPDX-License-Identifier: MIT
"""Pictures."""

import math
import re
import xml.etree.ElementTree as ElementTree

from tooltest import DONE, EXPRESSION_DOCUMENT, FAILED, ToolTest, WRONG, run

SVG = "{http://www.w3.org/2000/svg}"


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

    def test_a_pole_does_not_scale_the_axis(self):
        picture = self.plot("--expression", "tan(x)", "--from", "0", "--to", "10")
        texts = self.texts(picture)
        self.assertEqual(texts.count("goes beyond the axis"), 4)
        self.assertFalse([text for text in texts if "e+" in text], "an accident of where tan was computed")
        self.assertEqual(self.count(picture, "path", "line"), 4 * 4)  # three poles

    def test_a_peak_in_a_picture_is_that_of_the_formula(self):
        # Samples would miss it by a percent: the acceleration of two cubics falls from 12 to -12.
        texts = self.texts(self.plot("--row", "1,1,Cubic-Spline-Pair"))
        self.assertTrue(any(re.match("min \u221212   max 12", text) for text in texts), texts)

    def test_impulses_are_arrows(self):
        picture = self.plot("--row", "1,1,Linear", "--row", "2,0,Linear")
        self.assertEqual(self.count(picture, "path", "impulse"), 1)
        self.assertIn("min 0   max 0   1 impulse", self.texts(picture))

    def test_units(self):
        picture = self.plot("--row", "2,10,Cubic", "--over", "angle", "--units", "deg, mm")
        self.assertIn("Velocity  mm/deg", self.texts(picture))
        picture = self.plot("--row", "2,10,Cubic", "--drive", "velocity", "--units", "s, m/s")
        self.assertIn("Jerk  m/s\u00b3", self.texts(picture))
        self.refused(WRONG, "plot", "--row", "2,10,Cubic", "--units", "mm", "-o", "-", says="--units")

    def test_extreme_curves_make_sound_pictures(self):
        for text in ["1e308*sin(x)", "1e-300*x", "7", "0*x", "1e9+1e-9*x", "exp(x^2)"]:
            with self.subTest(text):
                picture = self.plot("--expression", text, "--from", "0", "--to", "100")
                for node in picture.iter(SVG + "path"):
                    self.assertNotRegex(node.get("d"), "nan|inf")

    def test_a_curve_without_finite_values_is_not_drawn(self):
        out = self.folder / "out.svg"
        self.refused(FAILED, "plot", "--expression", "sqrt(-1-x^2)", "--from", "0", "--to", "1", "-o", out,
                     says="no finite value from 0 to 1")
        self.assertFalse(out.exists())

    def test_the_name_of_a_picture_says_its_kind(self):
        curve = ["plot", "--row", "2,10,Cubic", "-o"]
        self.refused(WRONG, *curve, self.folder / "out.jpg", says=[".svg, .png or .pdf", "out.jpg"])
        for name, start in [("out.png", b"\x89PNG"), ("out.pdf", b"%PDF")]:
            out = self.folder / name
            result = run(*curve, out)
            if "without librsvg" not in result.stderr:
                self.assertEqual((result.returncode, result.stderr), (DONE, ""))
                self.assertEqual(out.read_bytes()[:4], start)

    def test_several_curves_in_one_picture(self):
        files = [self.folder / "a.xml", self.folder / "b.xml"]
        for path, law in zip(files, ["Cubic", "Half-Cosine"]):
            self.done("convert", "--row", f"2,10,{law}", "--name", f"With {law}", path)
        picture = self.plot(*files, "--overlay")
        self.assertEqual(self.count(picture, "path", "line"), 2 * 4)
        for name in ["With Cubic", "With Half-Cosine"]:
            self.assertIn(name, self.texts(picture))

    def test_curves_of_one_picture_share_its_axes(self):
        angle, time = self.folder / "angle.xml", self.folder / "time.xml"
        self.done("convert", "--row", "360,10,Cubic", "--over", "angle", angle)
        self.done("convert", "--row", "360,10,Cubic", "--drive", "velocity", time)
        both = ["plot", "--overlay", "-o", self.folder / "both.svg"]
        self.refused(DONE, *both, angle, time, says=f"{time}: Velocity in mm/s over Time is drawn on the axes of {angle}, which are "
                                                    "Displacement in mm over Cycle angle")
        for files in [(angle, time), (time, angle)]:
            self.refused(WRONG, *both, *files, "--rpm", "60", says=f"{time}: --cycle-time and --rpm go with curves over the cycle angle")

    def test_size_theme_and_orders(self):
        picture = self.plot("--row", "2,10,Cubic", "--size", "600x500", "--theme", "dark", "--orders", "2,0")
        self.assertEqual((picture.get("width"), picture.get("height")), ("600", "500"))
        self.assertEqual([text for text in self.texts(picture) if "  " in text and not text.startswith("min")],
                         ["Displacement  mm", "Acceleration  mm/s\u00b2"])
        self.assertEqual(picture.find(SVG + "rect").get("fill"), "#0f172a")
        for option, words in [(["--size", "10x10"], "--size takes a whole number from 300"), (["--size", "600"], "such as 1200x900"),
                              (["--theme", "drak"], "did you mean dark?"), (["--orders", "4"], "--orders takes")]:
            self.refused(WRONG, "plot", "--row", "2,10,Cubic", "-o", "-", *option, says=words)

    def test_extremes_are_marked_with_value_and_x(self):
        self.assertIn("15 at 1", self.texts(self.plot("--row", "2,20,Cubic")))

    def test_seams_and_ends_are_on_the_axis(self):
        texts = self.texts(self.plot("--row", "37.5,1,Cubic", "--row", "111,0,Cubic"))
        self.assertIn("37.5", texts)
        self.assertIn("111", texts)

    def test_laws_of_narrow_rows_have_numbers_and_a_legend(self):
        rows = [f"--row={i},{i % 2},{law}" for i, law in enumerate(["Cubic", "Half-Cosine"] * 20, 1)]
        texts = self.texts(self.plot(*rows))
        self.assertIn("1 Cubic", texts)
        self.assertIn("2 Half-Cosine", texts)
        self.assertGreaterEqual(min(texts.count("1"), texts.count("2")), 20)

    def test_a_picture_says_in_words_what_it_shows(self):
        picture = self.plot("--row", "2,20,Cubic", "--name", "Lift")
        self.assertEqual(picture.find(SVG + "title").text, "Lift")
        self.assertIn("Velocity [mm/s]: least 0 at 0, greatest 15 at 1.", picture.find(SVG + "desc").text)

    def test_each_path_is_written_once(self):
        paths = [path.get("d") for path in self.plot("--row", "2,20,Cubic", "--row", "4,0,Cubic").iter(SVG + "path")]
        self.assertEqual(len(set(paths)), len(paths))
        self.assertEqual(len([path for path in paths if len(path) > 100]), 2)  # acceleration and jerk are straight
        self.assertLess((self.folder / "out.svg").stat().st_size, 20_000)

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
        picture = self.plot("--points", points)
        clips = {f"url(#{clip.get('id')})": clip.find(SVG + "rect") for clip in picture.iter(SVG + "clipPath")}
        for path in picture.iter(SVG + "path"):
            left, right = 84, 892
            if path.get("clip-path"):  # its area extends beyond the frame, but is not visible
                rect = clips[path.get("clip-path")]
                self.assertEqual((float(rect.get("x")), float(rect.get("x")) + float(rect.get("width"))), (left, right))
                left, right = left - 4, right + 4
            for x in re.findall(r"[ML](\S+)", path.get("d")):
                self.assertTrue(left <= float(x) <= right, x)

    def test_a_fast_vibration_is_no_slow_wave(self):
        # With evenly spaced samples, 1601 or 801 of them, 1591 periods look like about nine.
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
