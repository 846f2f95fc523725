#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that mfcurves/mfcurves.h includes the whole public surface.

    check_umbrella.py ROOT      prints each header that is missing or of too much, exits 1 on any

A header that exports something is public. A public header includes public ones
alone, so that what is installed is complete and shows nothing internal.
"""

import pathlib
import re
import sys

UMBRELLA = "mfcurves/mfcurves.h"


def included_by(path):
    return set(re.findall(r'^#include "([^"]+)"', path.read_text(encoding="utf-8"), re.MULTILINE))


def violations(root):
    public = included_by(root / UMBRELLA)
    exporting = {
        header.relative_to(root).as_posix()
        for header in (root / "mfcurves").rglob("*.h")
        if "MFCURVES_API" in header.read_text(encoding="utf-8")
    }
    return [f"{name} exports something and is not included" for name in sorted(exporting - public)] + [
        f"{name} is public and includes {other}, which is not"
        for name in sorted(public)
        for other in sorted(included_by(root / name) - public)
    ]


def main():
    found = violations(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
