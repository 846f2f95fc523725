#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that includes point down the floors of docs/architecture.md.

    check_includes.py ROOT      checks the tree, prints each violation, exits 1 on any

The library's files stand on floors. A file includes its own folder and lower
floors, the standard library, and nothing else: headers of the operating system
(the locale among them) are for platform/ alone, those of the XML library for
platform/ and documents/, those of the formatting library for drawing/. Headers of the tests and tools are not for the library.
"""

import pathlib
import re
import sys

FLOORS = {
    "platform": 0,
    "interfaces": 1,
    "engine": 2,
    "functions": 3,
    "profiles": 3,
    "segments": 4,
    "motion": 5,
    "documents": 6,
    "host": 7,
    "curve": 8,
    "analysis": 9,
    "drawing": 10,
    "": 11,  # mfcurves.h, which includes the whole public surface
}

# Of motion/, two leaves stand with interfaces/, and either may include the other.
LOW_LEAVES = {"motion/mfEnumerations.h", "motion/mfTextConverter.h", "motion/mfTextConverter.cpp"}

STANDARD = set("""
algorithm any array atomic barrier bit bitset cassert cctype cerrno cfenv cfloat charconv chrono cinttypes
climits cmath compare complex concepts condition_variable coroutine csetjmp csignal cstdarg cstddef cstdint
cstdio cstdlib cstring ctime cuchar cwchar deque exception execution filesystem format forward_list fstream
functional future initializer_list iomanip ios iosfwd iostream istream iterator latch limits list map memory
memory_resource mutex new numbers numeric optional ostream queue random ranges ratio regex scoped_allocator
semaphore set shared_mutex source_location span sstream stack stdexcept stop_token streambuf string
string_view system_error thread tuple type_traits typeindex typeinfo unordered_map unordered_set utility
valarray variant vector version
""".split())

# What the tool and the examples use besides the library: the parser of the command line,
# text formatting, pictures as PNG and PDF, and whether a terminal is looked at.
TOOL_HEADERS = ("CLI/", "fmt/", "cairo", "librsvg/", "unistd.h")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def folder_and_floor(path):
    """Folder and floor of a file, its path given below mfcurves/."""
    if path in LOW_LEAVES:
        return "interfaces", FLOORS["interfaces"]
    folder = path.split("/")[0] if "/" in path else ""
    return folder, FLOORS.get(folder)


def judge_library_include(path, bracket, name):
    folder, floor = folder_and_floor(path)
    if floor is None:
        return f"the folder {folder} stands on no floor"
    if bracket == "<":
        if name in STANDARD or folder == "platform":
            return None
        if name.startswith("libxml/") and folder == "documents":
            return None
        if name.startswith("fmt/") and folder == "drawing":
            return None
        return f"<{name}> is no header of the standard library"
    if not name.startswith("mfcurves/"):
        return f'"{name}" is not written from the root, or is not of the library'
    other, other_floor = folder_and_floor(name.removeprefix("mfcurves/"))
    if other_floor is None:
        return f"the folder {other} stands on no floor"
    if other_floor > floor:
        return f"{name} stands on floor {other_floor}, this file on {floor}"
    if other_floor == floor and other != folder:
        return f"{other} and {folder} stand side by side and do not include each other"
    return None


def public_headers(root):
    """What mfcurves.h brings, and itself."""
    umbrella = root / "mfcurves/mfcurves.h"
    text = umbrella.read_text(encoding="utf-8") if umbrella.exists() else ""
    return {"mfcurves/mfcurves.h", *re.findall(r'^#include "([^"]+)"', text, re.MULTILINE)}


def judge_tool_include(bracket, name, public):
    if bracket == '"' and name.startswith("mfcurves/") and name not in public:
        return f"{name} is not public"
    if bracket == "<" and name not in STANDARD and not name.startswith(TOOL_HEADERS):
        return f"<{name}> is no header of the standard library"
    return None


def sources_below(folder):
    return sorted(p for p in folder.rglob("*") if p.suffix in {".h", ".cpp"})


def violations(root):
    found = []
    public = public_headers(root)
    for top, judge in (("mfcurves", judge_library_include), ("tools", None), ("examples", None)):
        for source in sources_below(root / top):
            path = source.relative_to(root / top).as_posix()
            for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                wrong = judge(path, *match.groups()) if judge else judge_tool_include(*match.groups(), public)
                if wrong:
                    found.append(f"{top}/{path}:{number}: {wrong}")
    return found


def main():
    found = violations(pathlib.Path(sys.argv[1]))
    print("\n".join(found))
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
