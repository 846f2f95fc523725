#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that every source says under which licence it stands.

    check_licence.py ROOT [--add]      prints each source without the line, exits 1 on any

With --add the line is written into those sources: on top, or after the line that names
the interpreter.
"""

import pathlib
import sys

LINE = "SPDX-License-Identifier: MIT"
FOLDERS = ["adapters", "bench", "cmake", "examples", "fuzz", "mfcurves", "python", "scripts", "tests", "tools"]
MARKS = {".h": "//", ".cpp": "//", ".py": "#", ".pyi": "#", ".sh": "#", ".cmake": "#"}


def mark_of(path):
    """How a comment begins in that file; nothing for what is not a source."""
    return "#" if path.name == "CMakeLists.txt" else MARKS.get(path.suffix)


def sources_of(root):
    yield root / "CMakeLists.txt"
    for folder in FOLDERS:
        for path in sorted((root / folder).rglob("*")):
            if mark_of(path) and path.is_file() and "build" not in path.relative_to(root).parts:
                yield path


def says_licence(path):
    lines = path.read_text(encoding="utf-8").splitlines()[:2]
    return f"{mark_of(path)} {LINE}" in lines


def add_to(path):
    text = path.read_text(encoding="utf-8")
    first, rest = text.split("\n", 1) if text.startswith("#!") else (None, text)
    top = first + "\n" if first else ""
    gap = "" if rest.startswith(("#pragma", "# ", "#\n", '"""')) else "\n"
    path.write_text(f"{top}{mark_of(path)} {LINE}\n{gap}{rest}", encoding="utf-8")


def main():
    root = pathlib.Path(sys.argv[1])
    lacking = [path for path in sources_of(root) if not says_licence(path)]
    if "--add" in sys.argv:
        for path in lacking:
            add_to(path)
        return 0
    for path in lacking:
        print(f"{path.relative_to(root)} lacks the line {LINE}")
    return 1 if lacking else 0


if __name__ == "__main__":
    sys.exit(main())
