#!/usr/bin/env python3
"""Checks that mfcurves/mfcurves.h includes the whole public surface.

    check_umbrella.py ROOT      prints each header that is missing or of too much, exits 1 on any

Public is a header that exports something, and one that is named after one of the
library's own classes or enumerations, exported or not.
"""

import pathlib
import re
import sys


def is_public(header):
    return header.name.startswith("mf") or "MFCURVES_API" in header.read_text(encoding="utf-8")


def violations(root):
    library = root / "mfcurves"
    umbrella = library / "mfcurves.h"
    public = {
        header.relative_to(root).as_posix()
        for header in library.rglob("*.h")
        if header != umbrella and is_public(header)
    }
    included = set(re.findall(r'^#include "([^"]+)"', umbrella.read_text(encoding="utf-8"), re.MULTILINE))
    return [f"{name} is public and not included" for name in sorted(public - included)] + [
        f"{name} is included and not public" for name in sorted(included - public)
    ]


def main():
    found = violations(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
