# SPDX-License-Identifier: MIT
"""Motion functions: curves with a value and three exact derivatives.

>>> import mfcurves as mf
>>> cam = mf.segments([(90, 25, "3-4-5-Polynomial"), (150, 25, "Linear")], over="angle")
>>> cam(45.0)
12.5
"""

from mfcurves._curve import Curve
from mfcurves._derivative import Derivative
from mfcurves._errors import CurveError, CurveWarning, Problem
from mfcurves._inputs import Row
from mfcurves._laws import Law, Move, fastest, laws
from mfcurves._making import expression, parse, points, read, segments
from mfcurves._mfcurves import __version__
from mfcurves._results import Break, CamTable, Check, Peak, Summary, Violation

__all__ = [
    "Break",
    "CamTable",
    "Check",
    "Curve",
    "CurveError",
    "CurveWarning",
    "Derivative",
    "Law",
    "Move",
    "Peak",
    "Problem",
    "Row",
    "Summary",
    "Violation",
    "__version__",
    "expression",
    "fastest",
    "laws",
    "parse",
    "points",
    "read",
    "segments",
]

# Public classes show the name of the package, not of the private module.
for _name in __all__:
    if isinstance(globals()[_name], type):
        globals()[_name].__module__ = __name__
del _name
