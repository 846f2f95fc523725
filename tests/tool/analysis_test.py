# SPDX-License-Identifier: MIT
"""The analysis of curves: peaks, breaks, check, fastest and the factors of laws."""

import json
import math

from tooltest import DONE, FAILED, LAW, WRONG, ToolTest, run


class Peaks(ToolTest):
    def orders(self, *arguments):
        [curve] = json.loads(self.done("peaks", *arguments, "--format", "json"))
        return curve["orders"]

    def test_extremes_are_those_of_the_formula_and_not_of_samples(self):
        # sin of 1001 periods takes 1 and -1; 1001 samples of it would all be 0.
        value = self.orders("--expression", "sin(2*pi*1001*x)", "--from", "0", "--to", "1")[0]
        self.assertAlmostEqual(value["min"], -1, delta=1e-12)
        self.assertAlmostEqual(value["max"], 1, delta=1e-12)

    def test_each_order_with_x_and_row(self):
        # Of y = 10 (3 u^2 - 2 u^3), u = x/2: velocity 7.5 at 1, acceleration 15 and -15, jerk -15.
        value, velocity, acceleration, jerk = self.orders("--row", "2,10,Cubic", "--row", "3,10,Linear")
        self.assertEqual((value["max"], value["max_x"], value["max_row"]), (10, 2, 1))
        self.assertEqual((velocity["max"], velocity["max_x"], velocity["max_row"], velocity["unit"]), (7.5, 1, 1, "mm/s"))
        self.assertEqual((acceleration["min"], acceleration["min_x"], acceleration["max"], acceleration["max_x"]), (-15, 2, 15, 0))
        self.assertEqual((jerk["min"], jerk["impulses"]), (-15, [2]))
        self.assertTrue(value["guaranteed"])

    def test_the_row_of_points_is_the_last_point_up_to_x(self):
        points = self.write("points.csv", "0,0\n1,3\n2,1\n3,2\n")
        value, velocity = self.orders("--points", points)[:2]
        self.assertEqual((value["min_row"], value["max_row"]), (1, 2))
        self.assertEqual((velocity["min"], velocity["min_x"], velocity["min_row"]), (-2, 1, 2))

    def test_rms_and_mean(self):
        value = self.orders("--expression", "x^2", "--from", "0", "--to", "3")[0]
        self.assertAlmostEqual(value["rms"], math.sqrt(81 / 5), delta=1e-9)
        self.assertAlmostEqual(value["mean"], 3, delta=1e-9)

    def test_a_peak_with_a_large_error_is_not_proved(self):
        # The place of the jump is a zero of the fifth power, which rounding hides.
        value = self.orders("--expression", "if(x^5-1.5*x^4+0.9*x^3-0.27*x^2+0.0405*x-0.00243: 0, 5, 1)", "--from", "0", "--to", "1")[0]
        self.assertFalse(value["guaranteed"])

    def test_derivatives_by_seconds(self):
        # 60 turns a minute are 360 degrees a second.
        velocity = self.orders("--row", "360,10,Linear", "--over", "angle", "--rpm", "60")[1]
        self.assertEqual((velocity["max"], velocity["unit"]), (10, "mm/s"))

    def test_curves_side_by_side(self):
        for name, law in [("a.xml", "Cubic"), ("b.xml", "Half-Cosine")]:
            self.done("convert", "--row", f"2,10,{law}", self.folder / name)
        text = self.done("peaks", self.folder / "a.xml", self.folder / "b.xml")
        self.assertEqual(text.count("Velocity"), 2)
        self.assertEqual(text.count("a.xml"), 4)


class Proof(ToolTest):
    POLE = ["--expression", "1/x", "--from", "-1", "--to", "1"]

    def test_both_sides_of_a_pole_are_violations(self):
        [curve] = json.loads(run("check", *self.POLE, "--range", "-5,5", "--format", "json").stdout)
        self.assertEqual([violation["limit"] for violation in curve["violations"]], [-5, 5])
        self.assertAlmostEqual(curve["violations"][0]["from"], -0.2)
        self.assertAlmostEqual(curve["violations"][1]["to"], 0.2)

    def test_a_warning_says_what_is_not_proved(self):
        self.refused(DONE, "check", *self.POLE, "--continuity", "0", says="warning: no violation was found, but it is not proved")
        self.done("check", "--expression", "sin(x)", "--from", "0", "--to", "9", "--continuity", "2", "--range", "-2,2")


class Breaks(ToolTest):
    def breaks(self, *arguments):
        [curve] = json.loads(self.done("breaks", *arguments, "--format", "json"))
        return curve["breaks"]

    def test_a_seam(self):
        [seam] = self.breaks("--row", "1,1,Quadratic", "--row", "2,2,Cubic")
        self.assertEqual((seam["x"], seam["lowest"], seam["cause"], seam["row"]), (1, 1, "seam", 2))
        self.assertEqual((seam["left"], seam["right"]), ([1, 2, 2, 0], [1, 0, 6, -12]))

    def test_a_kink_inside_a_formula(self):
        [kink] = self.breaks("--expression", "abs(x-1)", "--from", "0", "--to", "3")
        self.assertEqual((kink["lowest"], kink["cause"]), (1, "kink"))
        self.assertAlmostEqual(kink["x"], 1, delta=1e-12)

    def test_a_warning_says_that_there_may_be_more(self):
        self.refused(DONE, "breaks", "--expression", "floor(x)", "--from", "0", "--to", "2100", says="there may be further breaks")

    def test_the_end_of_a_cycle(self):
        row = ["--row", "360,10,Linear", "--over", "angle"]
        self.assertEqual(self.breaks(*row), [])
        [end] = self.breaks(*row, "--cyclic")
        self.assertEqual((end["x"], end["lowest"], end["cause"]), (360, 0, "cycle end"))

    def test_orders_that_count(self):
        rows = ["--row", "1,1,3-4-5-Polynomial", "--row", "2,1,Linear"]  # only the jerk jumps
        self.assertEqual([b["lowest"] for b in self.breaks(*rows)], [3])
        self.assertEqual(self.breaks(*rows, "--order", "2"), [])
        self.refused(WRONG, "breaks", *rows, "--order", "5", says="--order takes a whole number from 0 to 4")


class Check(ToolTest):
    CUBIC = ["--row", "2,10,Cubic"]  # velocity 7.5 at 1

    def violations(self, status, *arguments):
        result = run("check", *arguments, "--format", "json")
        self.assertEqual((result.returncode, result.stderr), (status, ""))
        [curve] = json.loads(result.stdout)
        self.assertEqual(curve["ok"], status == DONE)
        return curve["violations"]

    def test_a_limit_that_is_kept(self):
        self.assertEqual(self.violations(DONE, *self.CUBIC, "--max-velocity", "7.5000001"), [])
        self.assertEqual(self.done("check", *self.CUBIC, "--range", "0,10"), "ok\n")

    def test_the_stretch_that_breaks_a_limit(self):
        # 7.5 (2 x - x^2) > 5.625 from 1/2 to 3/2.
        [found] = self.violations(FAILED, *self.CUBIC, "--max-velocity", "5.625")
        self.assertEqual((found["order"], found["limit"], found["worst"], found["worst_x"]), (1, 5.625, 7.5, 1))
        self.assertAlmostEqual(found["from"], 0.5, delta=1e-9)
        self.assertAlmostEqual(found["to"], 1.5, delta=1e-9)

    def test_an_impulse_breaks_every_limit(self):
        rows = ["--row", "1,1,Linear", "--row", "2,1,Linear"]
        [found] = self.violations(FAILED, *rows, "--max-acceleration", "1e12")
        self.assertEqual((found["order"], found["from"], found["to"], found["worst"]), (2, 1, 1, None))

    def test_continuity(self):
        rows = ["--row", "1,1,Linear", "--row", "2,1,Linear"]
        self.assertEqual(self.violations(DONE, *rows, "--continuity", "0"), [])
        [found] = self.violations(FAILED, *rows, "--continuity", "2")
        self.assertEqual(found, {"order": 1, "limit": None, "from": 1, "to": 1, "worst": None, "worst_x": None})

    def test_a_cycle_that_does_not_close(self):
        rows = ["--row", "360,10,Cubic", "--over", "angle"]
        [found] = self.violations(FAILED, *rows, "--cyclic")
        self.assertEqual((found["order"], found["from"]), (0, 360))
        self.assertEqual(self.violations(DONE, "--row", "180,10,Cubic", "--row", "360,0,Cubic", "--over", "angle", "--cyclic"), [])

    def test_a_jump_above_the_jerk_has_no_name(self):
        # The modified sine is made of sines that agree up to the jerk.
        result = run("check", "--row", "90,25,Modified-Sine", "--continuity", "4")
        self.assertEqual(result.returncode, FAILED)
        self.assertRegex(result.stdout, r"(?m)^order 4 jumps at 11.25$")

    def test_a_cycle_is_checked_beside_other_demands(self):
        [found] = self.violations(FAILED, "--row", "90,25,Cubic", "--over", "angle", "--cyclic", "--range", "0,25")
        self.assertEqual((found["order"], found["from"], found["limit"]), (0, 90, None))

    def test_derivatives(self):
        self.assertEqual(self.violations(DONE, *self.CUBIC, "--derivatives"), [])

    def test_limits_by_seconds(self):
        # 7.5/180 mm/deg at 360 deg/s are 15 mm/s.
        rows = ["--row", "360,10,Cubic", "--over", "angle", "--rpm", "60", "--max-velocity"]
        self.assertEqual(self.violations(DONE, *rows, "15.000001"), [])
        [found] = self.violations(FAILED, *rows, "14")
        self.assertAlmostEqual(found["worst"], 15, delta=1e-9)

    def test_bad_demands(self):
        for arguments, words in [([], "check needs something to check"), (["--max-velocity", "-1"], "is not below 0"),
                                 (["--range", "1"], "--range takes"), (["--range", "2,1"], "least value first"),
                                 (["--continuity", "9"], "--continuity takes")]:
            self.refused(WRONG, "check", *self.CUBIC, *arguments, says=[words, "see mfcurve check --help"])
        self.refused(WRONG, "check", *self.CUBIC, "--drive", "force", "--max-velocity", "1", says="the curve has no velocity")


class Laws(ToolTest):
    def test_factors(self):
        laws = {law["profile"]: law for law in json.loads(self.done("profiles", "--factors", "--format", "json"))}
        # Closed forms: 3-4-5 has Cv 15/8, Ca 10/sqrt(3), Cj 60; half cosine pi/2, pi^2/2, pi^3/2 inside.
        polynomial = laws["3-4-5-Polynomial"]
        for key, wanted in [("cv", 15 / 8), ("ca", 10 / math.sqrt(3)), ("cj", 60)]:
            self.assertAlmostEqual(polynomial[key], wanted, delta=1e-9)
        self.assertEqual((polynomial["continuity_start"], polynomial["continuity_end"]), (2, 2))
        self.assertAlmostEqual(laws["Half-Cosine"]["ca"], math.pi**2 / 2, delta=1e-9)
        self.assertEqual(laws["Half-Cosine"]["continuity_start"], 1)
        self.assertIn("Modified-Sine", laws)

    def test_a_law_with_a_jump_inside_fails_its_check(self):
        u = "(x-x1)/(x2-x1)"
        self.write("SegmentTypes.txt", LAW.format(name="Jumps", formula=f"if({u}-0.5: {u}/2, {u}/2, {u})"))
        result = run("profiles", "--library", self.folder, "--check")
        self.assertEqual(result.returncode, FAILED)
        self.assertRegex(result.stdout, r"FAILED   compiles, .*; it jumps at 0.5")

    def test_a_law_without_finite_derivatives_at_its_end_fails_its_check(self):
        self.write("SegmentTypes.txt", LAW.format(name="Root", formula="sqrt((x-x1)/(x2-x1))"))
        result = run("profiles", "--library", self.folder, "--check")
        self.assertEqual(result.returncode, FAILED)
        self.assertIn("an end has a derivative that is not finite", result.stdout)


class Fastest(ToolTest):
    def moves(self, *arguments):
        return json.loads(self.done("fastest", *arguments, "--format", "json"))

    def test_the_shortest_time_of_a_law(self):
        moves = {move["profile"]: move for move in self.moves("--stroke", "-25", "--max-velocity", "100", "--max-acceleration", "1e9")}
        self.assertAlmostEqual(moves["3-4-5-Polynomial"]["duration"], 15 / 8 * 25 / 100, delta=1e-9)
        self.assertEqual(moves["3-4-5-Polynomial"]["limited_by"], "velocity")
        moves = {move["profile"]: move for move in self.moves("--stroke", "25", "--max-acceleration", "1000")}
        self.assertAlmostEqual(moves["3-4-5-Polynomial"]["duration"], math.sqrt(10 / math.sqrt(3) * 25 / 1000), delta=1e-9)

    def test_laws_with_an_impulse_are_left_out(self):
        for limit, out, kept in [("--max-jerk", "Half-Cosine", "3-4-5-Polynomial"), ("--max-acceleration", "Linear", "Half-Cosine")]:
            names = [move["profile"] for move in self.moves("--stroke", "1", limit, "1")]
            self.assertNotIn(out, names)
            self.assertIn(kept, names)

    def test_a_law_of_ones_own_counts(self):
        self.write("SegmentTypes.txt", LAW.format(name="Slow", formula="((x-x1)/(x2-x1))^2*(3-2*(x-x1)/(x2-x1))"))
        moves = {move["profile"]: move for move in self.moves("--library", self.folder, "--stroke", "1", "--max-velocity", "1")}
        self.assertAlmostEqual(moves["Slow"]["duration"], 1.5, delta=1e-9)
        self.assertNotIn("Linear", moves)  # not at rest at its ends

    def test_moves_are_ranked(self):
        durations = [move["duration"] for move in self.moves("--stroke", "1", "--max-velocity", "1", "--max-jerk", "5")]
        self.assertEqual(durations, sorted(durations))
        self.assertGreater(len(durations), 5)

    def test_no_move_is_an_empty_list(self):
        self.assertEqual(self.moves("--stroke", "1e300", "--max-jerk", "1e-300"), [])

    def test_bad_limits(self):
        for arguments, words in [(["--stroke", "1"], "fastest needs a limit"), (["--max-jerk", "1"], "--stroke"),
                                 (["--stroke", "0", "--max-jerk", "1"], "--stroke takes a number that is not 0"),
                                 (["--stroke", "1", "--max-jerk", "0"], "--max-jerk takes a number above 0")]:
            self.refused(WRONG, "fastest", *arguments, says=[words, "see mfcurve fastest --help"])
