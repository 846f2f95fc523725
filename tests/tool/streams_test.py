# SPDX-License-Identifier: MIT
"""Streams, terminals and the examples of the README."""

import os
import pathlib
import pty
import re
import subprocess
import tempfile
import textwrap
import unittest

from tooltest import DONE, FAILED, PROJECT, TOOL, WRONG, ToolTest, run


class Streams(ToolTest):
    def test_nothing_is_shown_of_progress_away_from_a_terminal(self):
        self.done("table", "--expression", "sin(x)", "--from", "0", "--to", "1", "--samples", "100000")

    def test_a_bar_on_a_terminal_for_long_work(self):
        self.assertBar("table", self.shown_by("table", "--expression", "sin(x)", "--from", "0", "--to", "1",
                                              "--samples", "1000000"))

    def shown_by(self, *arguments):
        """The output of a successful call on a terminal."""
        screen, end = pty.openpty()
        with open(os.devnull, "w") as nowhere:
            tool = subprocess.Popen([TOOL, *arguments], stdout=nowhere, stderr=end)
        os.close(end)
        shown = b""
        try:
            while chunk := os.read(screen, 4096):
                shown += chunk
        except OSError:
            pass  # a terminal reports in this way that its writer has ended
        os.close(screen)
        self.assertEqual(tool.wait(), DONE, shown)
        return shown

    def assertBar(self, label, shown):
        self.assertRegex(shown, rb"\r%s \[#* *\] +\d+ %%" % label.encode())
        self.assertTrue(shown.endswith(b"\r\x1b[K"), shown[-80:])  # and is erased

    def test_an_output_stays_if_no_curve_can_be_read(self):
        output = self.write("table.csv", "old")
        self.refused(FAILED, "table", self.folder / "none.xml", "-o", output, says="none.xml: the file cannot be opened")
        self.assertEqual(output.read_text(), "old")

    def test_an_output_does_not_replace_an_input(self):
        points = self.write("points.svg", "0,0\n1,1\n")
        rows = self.write("rows.csv", "90,10,Cubic\n")
        (self.folder / "same.csv").symlink_to(rows)
        for call in [["table", "--points", points, "-o", points], ["plot", "--points", points, "-o", points],
                     ["export", "--rows", rows, "--as", "csv", "-o", self.folder / "same.csv"],
                     ["convert", "--rows", rows, rows]]:
            with self.subTest(call[0]):
                self.refused(WRONG, *call, says="is the input, which it would replace")
        self.assertEqual((points.read_text(), rows.read_text()), ("0,0\n1,1\n", "90,10,Cubic\n"))

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
        shown = (PROJECT / "README.md").read_text(encoding="utf-8").split("```cpp\n")[1].split("```\n")[0]
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
        lines = (PROJECT / "README.md").read_text(encoding="utf-8").split("    mfcurve plot --row", 1)[1].split("-o cam.svg")[0]
        command = f'"{TOOL}" plot --row {lines} -o -'.replace("\\\n", " ")
        self.assertSamePicture(subprocess.run(command, shell=True, capture_output=True, text=True).stdout)

    def test_the_calls_print_what_is_shown(self):
        text = (PROJECT / "README.md").read_text(encoding="utf-8")
        shown = re.findall(r"^    \$ mfcurve (.*)\n((?:    [^$].*\n)*)", text, re.M)
        self.assertEqual(len(shown), 3)
        for call, output in shown:
            with self.subTest(call), tempfile.TemporaryDirectory() as folder:
                os.symlink(PROJECT / "share", pathlib.Path(folder) / "share")
                result = subprocess.run(f'"{TOOL}" {call}', shell=True, cwd=folder, capture_output=True, text=True)
                self.assertEqual((result.stdout, result.stderr), (textwrap.dedent(output), ""))
