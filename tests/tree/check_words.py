#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that texts use the usual English word.

    check_words.py ROOT [--list]       counts lines with a word to avoid, exits 1 above MOST

Some uses are right ("the answer is 42", "he stands behind it"), so a few lines may keep
such a word. --list prints every line that has one.
"""

import pathlib
import re
import sys

MOST = 60
PLACES = ["README.md", "CONTRIBUTING.md", "CHANGELOG.md", "docs", "mfcurves", "tools", "examples", "python",
          "adapters", "scripts", "bench", "fuzz", "cmake", "CMakeLists.txt"]
TEXTS = {".h", ".cpp", ".in", ".md", ".py", ".pyi", ".sh", ".txt", ".cmake", ".dox"}

# What to avoid, and the usual word.
USUAL = {
    r"answers?|answered|answering": "returns",
    r"stands?(?!-)|stood|standing": "is, appears, is available",
    r"behind": "after",
    r"tells?|told|telling": "says, reports, is documented",
    r"(?:is|are|was|were|be|been) had|(?:is|are) at hand|at hand": "is known, is available",
    r"bears?|bearing": "has",
    r"hangs? on|puts? down|takes? over": "depends on, stores, replaces",
    r"(?:is|are) (?-i:none)|is no (?:number|name|text|document|digit)": "is not one",
    r"a look at|by way of|beyond what": "reading, through, more than",
    r"(?:one|two) (?:lines?|rows?|functions?|calls?|files?|folders?|threads?|entry|class|value|name|number|point"
    r"|sample|column|pass|word|record|curve|test|program) an? [a-z]+": "one per",
}
AVOIDED = re.compile(r"\b(?:%s)\b" % "|".join(USUAL), re.IGNORECASE)


def texts_of(root):
    for place in PLACES:
        for path in [root / place, *sorted((root / place).rglob("*"))]:
            inside = path.relative_to(root).parts
            if path.is_file() and path.suffix in TEXTS and "build" not in inside and "corpus" not in inside:
                yield path


def lines_with_avoided_words(root):
    found = []
    for path in texts_of(root):
        for number, line in enumerate(path.read_text(encoding="utf-8", errors="replace").splitlines(), 1):
            if AVOIDED.search(line):
                found.append(f"{path.relative_to(root)}:{number}: {line.strip()}")
    return found


def main():
    found = lines_with_avoided_words(pathlib.Path(sys.argv[1]))
    if "--list" in sys.argv or len(found) > MOST:
        print("\n".join(found))
        print(f"{len(found)} lines with a word to avoid, at most {MOST} may stay:")
        for avoided, usual in USUAL.items():
            print(f"    {avoided}  ->  {usual}")
    return 1 if len(found) > MOST else 0


if __name__ == "__main__":
    sys.exit(main())
