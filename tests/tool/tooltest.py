# SPDX-License-Identifier: MIT
"""Support of the tests that run mfcurve as a user would.

MFCURVE names the program. Expected numbers come from the closed forms that are beside them.
"""

import os
import pathlib
import re
import subprocess
import tempfile
import unittest

TOOL = os.environ["MFCURVE"]
PROJECT = pathlib.Path(__file__).resolve().parents[2]

# Doubles carry 16 digits; a formula may lose a few of them.
RELATIVE = 1e-13

DONE, FAILED, WRONG = 0, 1, 2


class Template:
    """A document of an expression, for a motor, a force or a torque."""

    KINDS = {"Motor": ("MfXY_Disp_LinMotor", "MotorDriveType_Displacment"), "Force": ("MfXY_Force", "ForceTorqueType_Force"),
             "Torque": ("MfXY_Torque", "ForceTorqueType_Torque")}

    def format(self, object):
        data, quantity = self.KINDS.get(object, self.KINDS["Force"])
        return EXPRESSION_TEXT.format(object=object, data=data, quantity=quantity)


EXPRESSION_DOCUMENT = Template()
EXPRESSION_TEXT = """<?xml version='1.0' encoding='UTF-8'?><Curve><Version>1</Version>\
<FunctionName>Spring</FunctionName><FunctionType>Expression</FunctionType>\
<MotionObjectType>{object}</MotionObjectType><XYDataType>{data}</XYDataType>\
<RangeX><MinX>0</MinX><MaxX>4</MaxX></RangeX><RangeY><MinY>0</MinY><MaxY>0</MaxY></RangeY>\
<IndepVar>Time</IndepVar><DepVar>{quantity}</DepVar><Cursor></Cursor>\
<Expression>3*time^2</Expression></Curve>"""

# A motion law over [0, 1] in the language of profiles.
LAW = """SegmentType("{name}", x, x1, y1, x2, y2)
    y = y1 + (y2-y1)*{formula};
    return y;
endSegmentType
"""


def run(*arguments, text="", env=None, cwd=None):
    return subprocess.run([TOOL, *map(str, arguments)], input=text, capture_output=True, text=True, timeout=120,
                          env={**os.environ, **(env or {})}, cwd=cwd)


class ToolTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def write(self, name, text):
        path = self.folder / name
        path.write_text(text, encoding="utf-8")
        return path

    def done(self, *arguments, **options):
        """The output of a call that succeeds without a message."""
        result = run(*arguments, **options)
        self.assertEqual((result.returncode, result.stderr), (DONE, ""), result.stdout)
        return result.stdout

    def refused(self, status, *arguments, says, **options):
        """A call that fails with that status and a message that contains each of these words."""
        result = run(*arguments, **options)
        self.assertEqual(result.returncode, status, result.stdout + result.stderr)
        self.assertRegex(result.stderr, r"^mfcurve: (error|warning): ")
        for words in [says] if isinstance(says, str) else says:
            self.assertIn(words, result.stderr)
        return result

    def samples(self, *arguments, **options):
        """The numbers of eval, one list per line."""
        return [[float(word) for word in line.split()] for line in self.done(*arguments, **options).splitlines()]

    def assertUnsound(self, words, *arguments, **options):
        """Both the curve and its problems are reported."""
        result = run("info", *arguments, **options)
        self.assertEqual(result.returncode, FAILED)
        self.assertIn("valid          no", result.stdout)
        self.assertIn(words, result.stdout + result.stderr)

    def assertNumbers(self, got, wanted, scale=1.0):
        self.assertEqual(len(got), len(wanted))
        for a, b in zip(got, wanted):
            self.assertLessEqual(abs(a - b), RELATIVE * max(abs(b), scale), f"{got} is not {wanted}")


SAMPLES = sorted((PROJECT / "share/mfcurves/curves").glob("*.xml"))


def host_of(document):
    """The motion result that a document needs from its host."""
    name = re.search("<IndepVar>(.*?)</IndepVar>", document)[1]
    return [] if name.startswith("IndependentVariableType_") else ["--result", name]
