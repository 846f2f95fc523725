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
    "mf::platform::ResourceModule", "mf::platform::currentResourceModule", "mf::platform::loadResourceModule",
    "mf::platform::resourceString",
    "mf::platform::setCurrentResourceModule", "mf::platform::setMessageHandler", "mf::platform::setNarrowEncoder",
    "mf::platform::xmlStartCount",
]
# A key shows these three and keeps the rest to the library.
KEY_OPERATIONS = ["~mfProfileKey_c(", "operator==(", "isEmpty("]

PREFIX = re.compile(r"^(?:(?:vtable|VTT|typeinfo|typeinfo name|guard variable) for |(?:non-)?virtual thunk to )")
TEMPLATE_ARGUMENTS = re.compile(r"<[^<>]*>")


def symbols(library):
    """Every symbol with its kind, without what the compiler puts before an owner."""
    lines = subprocess.run(["nm", "-DC", "--defined-only", library], check=True, capture_output=True,
                           text=True).stdout.splitlines()
    for line in lines:
        _, kind, name = line.split(maxsplit=2)
        yield kind, PREFIX.sub("", name)


def qualified_name(symbol):
    """A symbol without arguments, template arguments and the type that it returns."""
    while TEMPLATE_ARGUMENTS.search(symbol):
        symbol = TEMPLATE_ARGUMENTS.sub("", symbol)
    return re.sub(r"\[abi:\w+\]", "", symbol).split("(")[0].split(" ")[-1]


def is_standard(kind, symbol):
    return kind in "WVu" and qualified_name(symbol).startswith(("std::", "__gnu_cxx::"))


def family_of(symbol):
    name = qualified_name(symbol)
    for family in FAMILIES + PLATFORM:
        if name == family or name.startswith(family + "::"):
            return family
    # A free operator belongs to the family among its arguments.
    if name.startswith("operator"):
        return next((family for family in FAMILIES if re.search(rf"\b{family}\b", symbol)), None)
    return None


def main():
    library = next(path for pattern in sys.argv[1:] for path in glob.glob(pattern))
    shown = sorted({symbol for kind, symbol in symbols(library) if not is_standard(kind, symbol)})
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
