# SPDX-License-Identifier: MIT
"""Bad calls: the exit status and the whole message of each, as listed in badCalls.txt.

    MFCURVE=PROGRAM python3 badCalls_test.py        writes the file again; read it before you commit it
"""

import pathlib
import shlex
import subprocess
import sys
import tempfile
import unittest

from tooltest import LAW, PROJECT, TOOL, run

GOLDEN = pathlib.Path(__file__).with_name("badCalls.txt")

FILES = {
    "points.csv": "0,0\n1,1\n2,0\n",
    "word.csv": "0,0\n1,one\n",
    "three.csv": "0,0,0\n1,1,1\n",
    "twice.csv": "0,0\n0,1\n",
    "marks.csv": "0.5;1\n1,5;2\n",
    "slip.csv": "l,10\n2,3\n",
    "quote.csv": '0,0\n"1,1\n',
    "named.csv": "time,lift,force\n0,0,0\n1,1,1\n",
    "empty.csv": "# nothing\n",
    "rows.csv": "end,value,profile\n90,10,Cubic\n80,10,Cubic\n",
    "noprofile.csv": "90,10,Cubic\n180,10\n",
    "start.csv": "10,0\n90,10,Cubic\n",
    "text.xml": "not a document\n",
    "x.csv": "0\none\n",
    "laws/SegmentTypes.txt": LAW.format(name="Open", formula="sin("),
    "broken/SegmentTypes.txt": "SegmentType(Broken)\nendSegmentType\n",
}


def prepare(folder):
    for name, text in FILES.items():
        (folder / name).parent.mkdir(exist_ok=True)
        (folder / name).write_text(text, encoding="utf-8")
    (folder / "latin.csv").write_bytes(b"x,\xfc\n0,0\n")
    (folder / "out").mkdir()
    subprocess.run([TOOL, "convert", "--row", "90,10,Cubic", "--row", "180,10,Cubic", "--over", "angle", "cam.xml"], cwd=folder, check=True)
    (folder / "torque.xml").write_bytes((PROJECT / "share/mfcurves/curves/friction-torque.xml").read_bytes())


def blocks(text):
    """(call, status, message) of each block: "$ CALL", then "STATUS", then the lines of the message."""
    for block in text.strip().split("\n\n"):
        call, status, *message = block.split("\n")
        yield call.removeprefix("$ mfcurve "), int(status), "\n".join(message) + "\n"


def outcome(folder, call):
    result = run(*shlex.split(call), cwd=folder)
    return result.returncode, result.stderr


class BadCalls(unittest.TestCase):
    def test_each_call(self):
        cases = list(blocks(GOLDEN.read_text(encoding="utf-8")))
        self.assertGreaterEqual(len(cases), 150)
        with tempfile.TemporaryDirectory() as name:
            folder = pathlib.Path(name)
            prepare(folder)
            for call, status, message in cases:
                with self.subTest(call):
                    self.assertEqual(outcome(folder, call), (status, message))


def rewrite():
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        prepare(folder)
        calls = [call for call, _, _ in blocks(GOLDEN.read_text(encoding="utf-8"))]
        results = [(call, *outcome(folder, call)) for call in calls]
    GOLDEN.write_text("\n\n".join(f"$ mfcurve {call}\n{status}\n{message}".rstrip("\n") for call, status, message in results) + "\n",
                      encoding="utf-8")


if __name__ == "__main__":
    sys.exit(rewrite())
