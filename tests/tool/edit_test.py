# SPDX-License-Identifier: MIT
"""Documents changed from the shell."""

import json

from tooltest import DONE, FAILED, WRONG, ToolTest, run


class Edit(ToolTest):
    def setUp(self):
        super().setUp()
        self.cam = self.folder / "cam.xml"
        self.done("convert", "--row", "90,25,Cubic", "--row", "150,25,Cubic", "--row", "240,0,Half-Cosine", "--over", "angle", self.cam)

    def rows(self, path):
        [cam] = json.loads(self.done("info", path, "--format", "json"))
        return [(row["from"], row["to"], row["value"], row["profile"].split(" (")[0]) for row in cam["rows"]]

    def edited(self, *edits, moved=""):
        out = self.folder / "out.xml"
        self.assertEqual(self.done("edit", self.cam, out, *edits), moved)
        return self.rows(out)

    def test_a_value_and_a_profile(self):
        self.assertEqual(self.edited("--set", "1.value=30", "--set", "3.profile=3-4-5-Polynomial"),
                         [(0, 90, 30, "Cubic"), (90, 150, 25, "Cubic"), (150, 240, 0, "3-4-5-Polynomial")])

    def test_a_number_with_more_than_six_decimals_is_named(self):
        out = self.folder / "out.xml"
        edit = self.refused(DONE, "edit", self.cam, out, "--set", "1.value=1.23456789",
                            says="six digits change numbers of the curve; the first: row 1: value 1.23456789 becomes 1.234568")
        self.assertEqual((edit.stdout, self.rows(out)[0][2]), ("", 1.234568))

    def test_the_next_row_starts_where_an_end_moves_to(self):
        self.assertEqual(self.edited("--set", "2.end=120", moved="row 3: start 150 to 120\n"),
                         [(0, 90, 25, "Cubic"), (90, 120, 25, "Cubic"), (120, 240, 0, "Half-Cosine")])

    def test_an_inserted_row_has_its_number(self):
        self.assertEqual(self.edited("--insert", "2:120,30,Modified-Sine", moved="row 3: start 90 to 120\n"),
                         [(0, 90, 25, "Cubic"), (90, 120, 30, "Modified-Sine"), (120, 150, 25, "Cubic"), (150, 240, 0, "Half-Cosine")])

    def test_one_after_the_last_appends(self):
        self.assertEqual(self.edited("--insert", "4:360,0,Linear")[-1], (240, 360, 0, "Linear"))

    def test_a_deleted_row_leaves_its_place_to_the_next(self):
        self.assertEqual(self.edited("--delete", "2", moved="row 2: start 150 to 90\n"),
                         [(0, 90, 25, "Cubic"), (90, 240, 0, "Half-Cosine")])

    def test_edits_apply_in_the_order_written(self):
        self.assertEqual(self.edited("--delete", "1", "--set", "1.value=5", "--insert", "1:10,1,Linear",
                                     moved="row 2: start 90 to 10\n"),
                         [(0, 10, 1, "Linear"), (10, 150, 5, "Cubic"), (150, 240, 0, "Half-Cosine")])

    def test_out_may_be_in(self):
        self.done("edit", self.cam, self.cam, "--set", "0.value=1")
        self.assertEqual(self.done("eval", self.cam, "0").split()[1], "1")

    def test_points(self):
        points = self.write("p.csv", "0,0\n1,1\n2,4\n")
        self.done("convert", "--points", points, self.folder / "p.xml")
        self.done("edit", self.folder / "p.xml", self.folder / "p.xml", "--set", "2.y=2", "--insert", "4:3,9", "--delete", "1")
        self.assertEqual(self.done("eval", self.folder / "p.xml", "1.5", "2.5"), "1.5 3 2 0 0\n2.5 6.5 5 0 0\n")
        self.refused(WRONG, "edit", self.folder / "p.xml", "-", "--set", "1.x=2", says="point 2 would have x 2, which is not above")

    def test_bad_edits(self):
        before = self.cam.read_bytes()
        for edit, words in [(["--set", "2.end=90"], "row 2 would run from 90 to 90 and have no length"),
                            (["--set", "2.end=300"], "row 3 would run from 300 to 240"),
                            (["--set", "9.end=3"], "there is no row 9 here; 0 to 3"),
                            (["--set", "1.hight=3"], "there is no field \"hight\""), (["--set", "1.value"], "ROW.FIELD=VALUE is expected"),
                            (["--set", "1.value=ten"], "\"ten\" is not a finite number"),
                            (["--set", "1.profile=Cubc"], "did you mean Cubic?"),
                            (["--insert", "2:120,30"], "ROW:END,VALUE,PROFILE is expected"),
                            (["--delete", "0"], "there is no row 0 here; 1 to 3"),
                            (["--insert", "9:400,0,Linear"], "1 to 4 are expected")]:
            with self.subTest(edit):
                self.refused(WRONG, "edit", self.cam, self.cam, *edit, says=["mfcurve: error: --", words])
        self.refused(WRONG, "edit", self.cam, "-", says="edit needs something to change")
        self.refused(WRONG, "edit", self.cam, "--set", "1.value=2", says="edit takes IN and OUT")
        self.refused(FAILED, "edit", self.folder / "none.xml", "-", "--set", "1.value=2", says="none.xml")
        self.assertEqual(self.cam.read_bytes(), before)
        self.done("convert", "--expression", "x", "--from", "0", "--to", "1", self.folder / "e.xml")
        self.refused(WRONG, "edit", self.folder / "e.xml", "-", "--set", "1.value=2", says="an expression has no rows or points")
        self.assertEqual(run("edit", self.cam, "-", "--set", "1.value=26").returncode, DONE)
