# SPDX-License-Identifier: MIT
"""Ten jobs of a cam designer: the files that jobs.sh writes."""

import json
import math
import os
import pathlib
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

from laws import CA_345, CA_SINE, CV_345, CV_SINE, gripper_cam
from tooltest import TOOL

SCRIPT = pathlib.Path(__file__).with_name("jobs.sh")
SPEED = 720.0  # degrees per second, at 120 turns per minute


class Jobs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = pathlib.Path(temporary.name)
        programs = cls.folder / "bin"
        programs.mkdir()
        (programs / "mfcurve").symlink_to(TOOL)
        cls.result = subprocess.run([SCRIPT], cwd=cls.folder, capture_output=True, text=True, timeout=120,
                                    env={**os.environ, "PATH": f"{programs}:{os.environ['PATH']}"})

    def text(self, name):
        return (self.folder / name).read_text(encoding="utf-8")

    def json(self, name):
        return json.loads(self.text(name))

    def numbers(self, name):
        return [[float(word) for word in line.split()] for line in self.text(name).splitlines()]

    def test_every_command_goes_well_and_in_silence(self):
        self.assertEqual((self.result.returncode, self.result.stdout, self.result.stderr), (0, "", ""))

    def test_1_a_cam_that_rises_dwells_returns_and_dwells(self):
        value, velocity, acceleration, _ = self.json("peaks.json")[0]["orders"]
        self.assertEqual((value["min"], value["max"], value["max_x"]), (0, 25, 90))
        self.assertAlmostEqual(velocity["max"], CV_345 * 25 / 90 * SPEED, delta=1e-9)
        self.assertEqual((velocity["max_x"], velocity["max_row"], velocity["unit"]), (45, 1, "mm/s"))
        self.assertAlmostEqual(acceleration["max"], CA_345 * 25 / 90**2 * SPEED**2, delta=1e-8)
        self.assertTrue(all(order["guaranteed"] for order in self.json("peaks.json")[0]["orders"]))
        root = ElementTree.fromstring(self.text("cam.svg"))
        self.assertEqual(root.find("{http://www.w3.org/2000/svg}title").text, "Gripper cam")

    def test_2_measured_points_from_a_spreadsheet(self):
        self.assertEqual([line[:2] for line in self.numbers("measured.txt")], [[0, 0], [0.5, 2.5], [1, 4.25], [1.5, 1]])

    def test_3_a_torque_over_a_motion_result(self):
        half, middle = self.numbers("torque.txt")
        self.assertEqual(half, [5, 2, 0.4, 0, 0])
        self.assertAlmostEqual(middle[1], 2.5, delta=1e-14)  # the half cosine is half way in the middle

    def test_4_a_law_of_ones_own(self):
        law = self.text("laws.txt").split("Soft\n")[1].splitlines()
        self.assertIn("ok       compiles, starts at 0, ends at 1", law[3])
        self.assertEqual(law[2], "    motion   from rest to rest")
        self.assertEqual(self.text("soft.txt"), "ok\n")

    def test_5_one_value_edited(self):
        rows = self.json("higher.json")[0]["rows"]
        self.assertEqual([(row["to"], row["value"]) for row in rows], [(90, 30), (150, 30), (240, 0), (360, 0)])

    def test_6_two_laws_compared(self):
        polynomial, sine = self.json("compared.json")
        for curve, cv, ca in [(polynomial, CV_345, CA_345), (sine, CV_SINE, CA_SINE)]:
            self.assertAlmostEqual(curve["orders"][1]["max"], cv * 25 / 90, delta=1e-9)
            self.assertAlmostEqual(curve["orders"][2]["max"], ca * 25 / 90**2, delta=1e-9)

    def test_7_limits_checked(self):
        [curve] = self.json("violations.json")
        worst = CA_345 * 25 / 90**2 * SPEED**2
        self.assertFalse(curve["ok"])
        # Speeding up and slowing down, on the way out and back.
        wanted = [(worst, 0, 45), (-worst, 45, 90), (-worst, 150, 195), (worst, 195, 240)]
        self.assertEqual(len(curve["violations"]), len(wanted))
        for found, (peak, low, high) in zip(curve["violations"], wanted):
            self.assertAlmostEqual(found["worst"], peak, delta=1e-8)
            self.assertTrue(low < found["from"] < found["worst_x"] < found["to"] < high)
            for end in (found["from"], found["to"]):
                self.assertAlmostEqual(abs(gripper_cam(end)[2]) * SPEED**2, 9000, delta=1e-6)

    def test_8_positions_for_a_controller(self):
        positions = [line[0] for line in self.numbers("positions.txt")]
        self.assertEqual(len(positions), 3600)
        for i, position in enumerate(positions):
            self.assertLessEqual(abs(position - gripper_cam(i / 10)[0]), 0.5e-4 + 1e-12)

    def test_9_four_curves_in_one_picture(self):
        picture = self.text("four.svg")
        for name in ["Gripper cam, cam.xml", "Gripper cam, low.xml", "Slow", "Quick"]:
            self.assertIn(f">{name}</text>", picture)
        self.assertEqual(self.text("pictures.txt"), "cam.svg\nfour.svg\n")

    def test_10_segments_to_points_within_an_error(self):
        [report] = self.json("points.json")
        values = [line[0] for line in self.numbers("points.txt")]
        error = max(abs(value - gripper_cam(i / 10)[0]) for i, value in enumerate(values))
        self.assertLessEqual(error, report["bound"])
        self.assertLessEqual(report["bound"], 0.01)
        self.assertTrue(math.isfinite(error) and report["rows"] < 200)
