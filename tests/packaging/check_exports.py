"""check_exports.py LIBRARY: a shared library shows the exported families alone.

Every symbol that it defines for others must belong to one of the families below,
and each family must be there. Instantiations of standard templates are weak
symbols of the standard library and do not count.
"""

import glob
import re
import subprocess
import sys

FAMILIES = [
    "CGeneralException", "CMemoryException", "CString", "ICalculator",
    "IFunctionDataPoints_c", "IFunctionExpression_c", "IFunctionSegments_c", "IMotionFunctionData_c",
    "IMotionServices_c", "IMotionStudy_c", "ISimSplineData_c", "MotionMEParser", "QelMotionFunctionContext_c",
    "QelSession_c", "mf::host::Context", "mf::host::Services", "mf::host::Spline", "mf::host::Study",
    "mfDataPoints_c", "mfFunctionBase_c", "mfFunctionData_c", "mfFunctionDataPoints_c",
    "mfFunctionExpression_c", "mfFunctionSegments_c", "mfPoint2D_c", "mfProfileKey_c", "mfProfileManager_c",
    "mfSegmentCalculator_c", "mfSegment_c",
]
# What a host may put in place of the platform, and the resource texts.
PLATFORM = [
    "mf::platform::currentResourceModule", "mf::platform::loadResourceModule", "mf::platform::resourceString",
    "mf::platform::setCurrentResourceModule", "mf::platform::setMessageHandler", "mf::platform::setNarrowEncoder",
    "mf::platform::xmlStartCount",
]
# A key shows these three and keeps the rest to the library.
KEY_OPERATIONS = ["~mfProfileKey_c(", "operator==(", "isEmpty("]

OWNER = re.compile(r"^(?:(?:vtable|VTT|typeinfo|typeinfo name) for |(?:non-)?virtual thunk to )?(.*)$")


def symbols(library):
    lines = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    for line in lines:
        _, kind, name = line.split(maxsplit=2)
        name = OWNER.match(name).group(1)
        if not (kind in "WVu" and name.startswith(("std::", "void std::", "guard variable for std::", "__gnu_cxx"))):
            yield name


def family_of(name):
    # Free operators name their family in the arguments.
    signature = re.sub(r"^.*operator[+*]\((?:double, )?", "", name)
    for family in PLATFORM:
        if re.match(rf"{re.escape(family)}(?:\[|\()", name):
            return family
    for family in FAMILIES:
        if re.match(rf"{re.escape(family)}(?:::|\b(?!_))", name) or re.match(rf"{re.escape(family)}\b", signature):
            return family
    return None


def main():
    library = next(path for pattern in sys.argv[1:] for path in glob.glob(pattern))
    shown = sorted(set(symbols(library)))
    wrong = [name for name in shown if family_of(name) is None]
    wrong += [name for name in shown if name.startswith("mfProfileKey_c::")
              and not any(operation in name for operation in KEY_OPERATIONS)]
    missing = [family for family in FAMILIES + PLATFORM if family not in {family_of(name) for name in shown}]
    for name in wrong:
        print(f"shown, but not exported: {name}")
    for family in missing:
        print(f"exported, but not shown: {family}")
    print(f"{len(shown)} symbols of {len(FAMILIES)} families")
    return 1 if wrong or missing else 0


sys.exit(main())
