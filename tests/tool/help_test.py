# SPDX-License-Identifier: MIT
"""The help, its examples, and the messages for wrong usage."""

import json
import os
import re
import subprocess

from tooltest import DONE, PROJECT, TOOL, ToolTest, WRONG, run

COMMANDS = ["eval", "table", "plot", "peaks", "breaks", "check", "info", "profiles", "fastest", "convert", "export", "edit"]


class Help(ToolTest):
    def test_every_command_shows_examples(self):
        for command in COMMANDS:
            with self.subTest(command):
                text = self.done(command, "--help")
                self.assertIn("Examples:", text)
                self.assertIn(f"mfcurve {command}", text)

    def test_the_help_of_the_tool_lists_commands_and_statuses(self):
        text = self.done("--help")
        for word in [*COMMANDS, "Exit status"]:
            self.assertIn(word, text)

    def test_every_example_runs(self):
        for name in ["cam.xml", "old.xml"]:
            self.done("convert", "--row", "90,10,Cubic", "--row", "180,0,Cubic", "--over", "angle", self.folder / name)
        self.write("rows.csv", "1,2,Cubic\n")
        self.write("lift.csv", "".join(f"{x},{x * x}\n" for x in range(6)))
        (self.folder / "share").symlink_to(PROJECT / "share")
        (self.folder / "mfcurve").symlink_to(TOOL)
        shown = 0
        for command in [[], *([command] for command in COMMANDS)]:
            for line in re.findall(r"^  mfcurve [a-z]+ (?!  ).*$", self.done(*command, "--help").replace("\\\n", ""), re.M):
                with self.subTest(line.strip()):
                    result = subprocess.run(line, shell=True, cwd=self.folder, capture_output=True, text=True, timeout=120,
                                            env={**os.environ, "PATH": f"{self.folder}:{os.environ['PATH']}"})
                    self.assertEqual((result.returncode, result.stderr), (DONE, ""))
                    shown += 1
        self.assertGreater(shown, 15)

    def test_moves_in_examples_begin_and_end_at_rest(self):
        laws = {law["profile"]: law for law in json.loads(self.done("profiles", "--factors", "--format", "json"))}
        pages = [(PROJECT / page).read_text(encoding="utf-8") for page in ["README.md", "docs/mfcurve.md"]]
        pages += [self.done(*command, "--help") for command in [[], *([command] for command in COMMANDS)]]
        rows = re.findall(r"--row ['\"]([^'\"]*)['\"]", "\n".join(pages))
        self.assertGreater(len(rows), 7)
        for row in rows:
            law = laws[row.split(",")[2].strip()]
            self.assertGreaterEqual(min(law["continuity_start"], law["continuity_inside"], law["continuity_end"]), 1, row)

    def test_version(self):
        self.assertRegex(self.done("--version"), r"^mfcurve \d+\.\d+\.\d+\n$")

    def test_wrong_usage_is_reported(self):
        self.refused(WRONG, says="a command is missing; see mfcurve --help")
        self.refused(WRONG, "draw", says="draw")
        self.refused(WRONG, "eval", "--expresion", "x", says="did you mean --expression?; see mfcurve eval --help")
        self.refused(WRONG, "evl", says="did you mean eval?; see mfcurve --help")
        self.refused(WRONG, "eval", "--no-such-option", says="--no-such-option")
        self.refused(WRONG, "plot", "--expression", "x", says="--output")
        self.refused(WRONG, "eval", "1", says="no curve")
        self.refused(WRONG, "eval", "--expression", "x", "--row", "1,1,Cubic", "1", says="more than one curve")
        self.refused(WRONG, "eval", "--expression", "x", "cam.xml", "1", says="more than one curve")
        self.refused(WRONG, "table", "cam.xml", "--drive", "velocity", says="--drive")
        self.refused(WRONG, "table", "--expression", "x", "--drive", "speed", says="--drive")
        self.refused(WRONG, "eval", "--expression", "x", "--interpolation", "akima", "1", says="--interpolation")
        self.refused(WRONG, "eval", "--expression", "x", "--start", "1", "1", says="--start")


class Manual(ToolTest):
    """docs/mfcurve.md names exactly the commands and options of the help."""

    TEXT = (PROJECT / "docs/mfcurve.md").read_text(encoding="utf-8")

    def sections(self):
        parts = re.split(r"^## (.*)$", self.TEXT, flags=re.M)
        return dict(zip(parts[1::2], parts[2::2]))

    def test_each_command_has_a_section(self):
        sections = self.sections()
        for command in COMMANDS:
            self.assertIn(command, sections)
            self.assertIn(f"`{command}`", self.TEXT)

    def test_the_options_are_those_of_the_help(self):
        sections = self.sections()
        known = set()
        for command in COMMANDS:
            shown = set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", self.done(command, "--help").split("Examples:")[0])) - {"--help"}
            known |= shown
            with self.subTest(command):
                documented = set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", sections[command] + sections["Curves"]))
                self.assertEqual(shown - documented, set())
        self.assertEqual(set(re.findall(r"(?<![\w-])--[a-z][a-z-]*", self.TEXT)) - known, set())
