# SPDX-License-Identifier: MIT
"""The laws that rows can name."""


from tooltest import LAW, DONE, FAILED, PROJECT, ToolTest, WRONG, run


class Profiles(ToolTest):
    def library(self, text):
        self.write("SegmentTypes.txt", text)
        return self.folder

    def test_the_built_in_table(self):
        lines = self.done("profiles").splitlines()
        self.assertEqual(lines[:3], ["Cubic", "    source   built-in",
                                     "    formula  xbar=(x-x1)/(x2-x1); ybar=3*xbar^2-2*xbar^3; y=y1+(y2-y1)*ybar"])
        self.assertEqual(sum(line == "    source   built-in" for line in lines), 10)
        self.assertIn("Modified-Sine", lines)  # the shipped laws need no --library

    def test_how_laws_begin_and_end(self):
        laws = self.done("profiles").split("    motion   ")
        motion = {before.splitlines()[-3]: after.splitlines()[0] for before, after in zip(laws, laws[1:])}
        self.assertEqual(motion["3-4-5-Polynomial"], "from rest to rest")
        self.assertEqual(motion["Half-Cosine"], "from rest with an acceleration to rest with an acceleration")
        self.assertEqual(motion["Cycloidal"], "from rest with an acceleration to a velocity")  # a quarter cosine
        self.assertEqual(motion["Linear"], "from a velocity to a velocity")
        self.assertEqual(motion["Parabolic"],
                         "from rest with an acceleration to rest with an acceleration; the acceleration jumps inside")
        library = self.library(LAW.format(name="Open", formula="sin("))
        self.assertIn("    motion   does not compile: ", self.done("profiles", "--library", library))

    def test_the_built_in_laws_pass_their_check(self):
        text = self.done("profiles", "--check")
        self.assertEqual(text.count("    ok       compiles, starts at 0, ends at 1"), text.count("    source "))
        # 4-5-6-7: all three derivatives vanish at both ends.
        law = text.split("4-5-6-7-Polynomial\n")[1].splitlines()[3]
        self.assertIn("at the start: d1 d2 d3, at the end: d1 d2 d3", law)

    def test_the_shipped_laws_pass_their_check(self):
        text = self.done("profiles", "--library", PROJECT / "share/mfcurves", "--check")
        self.assertNotIn("FAILED", text)
        self.assertIn(str(PROJECT / "share/mfcurves"), text)

    def test_a_law_of_ones_own(self):
        library = self.library(LAW.format(name="Lift", formula="((x-x1)/(x2-x1))^4"))
        result = run("profiles", "--library", f"/nowhere; {library}", "--check")
        self.assertEqual((result.returncode, result.stderr),
                         (DONE, "mfcurve: warning: --library: /nowhere has no SegmentTypes.txt; it is passed over\n"))
        text = result.stdout
        self.assertIn(f"Lift\n    source   {library}", text)
        self.assertIn("vanish at the start: d1 d2 d3, at the end: none", text)
        self.assertEqual(self.samples("eval", "--library", library, "--row", "2,32,Lift", "1"), [[1, 2, 8, 24, 48]])

    def test_the_first_law_of_a_name_counts(self):
        first, second = self.folder / "first", self.folder / "second"
        for folder, power in [(first, 4), (second, 5)]:
            folder.mkdir()
            (folder / "SegmentTypes.txt").write_text(LAW.format(name="Lift", formula=f"((x-x1)/(x2-x1))^{power}"))
        for library, wanted in [(f"{first};{second}", [[1, 2, 8, 24, 48]]), (f"{second};{first}", [[1, 1, 5, 20, 60]])]:
            self.assertEqual(self.samples("eval", "--library", library, "--row", "2,32,Lift", "1"), wanted)

    def test_laws_that_fail_their_check(self):
        for formula, words in [("2*(x-x1)/(x2-x1)", "ends at 2 and not at 1"), ("cos((x-x1)/(x2-x1))", "starts at 1"),
                               ("sin(", "does not compile"),
                               ("z*(x-x1)/(x2-x1)", "`z`"), ("z", "`z`")]:
            with self.subTest(formula):
                library = self.library(LAW.format(name="Lift", formula=formula))
                result = run("profiles", "--library", library, "--check")
                self.assertEqual(result.returncode, FAILED)
                self.assertIn("    FAILED   ", result.stdout)
                self.assertIn(words, result.stdout)

    def test_a_row_of_a_law_that_does_not_compile(self):
        for formula in ["sin(", "z"]:
            with self.subTest(formula):
                library = self.library(LAW.format(name="Lift", formula=formula))
                self.refused(WRONG, "eval", "--library", library, "--row", "2,32,Lift", "1",
                             says=["--row", "Lift", "does not compile"])

    def test_a_file_that_does_not_parse(self):
        library = self.library(LAW.format(name="Lift", formula="x") + "\nSegmentType(Broken)\nendSegmentType\n")
        for command in [["profiles"], ["eval", "--row", "2,32,Lift", "1"]]:
            self.refused(FAILED, *command, "--library", library, says="SegmentTypes.txt:6: ")

    def test_a_library_without_a_file(self):
        self.refused(FAILED, "profiles", "--library", self.folder, says="has a SegmentTypes.txt")
