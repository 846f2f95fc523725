#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Changes one comparison or constant at a time and checks whether a test notices.

    scripts/mutate.py                     every file of TARGETS
    scripts/mutate.py spline Points.h     the targets and files whose name contains a word
    scripts/mutate.py --list              the changes, without trying them

Each change is made in a copy of the tree under build/mutate, the tests of its
target are built and run, and a change that no test notices is printed. A change
in scripts/mutate_equivalent.txt (file, changed line, reason) has no effect that a
caller can see and is counted separately. Exit status: 1 when a change that is not
listed there was not noticed, or a listed one was noticed.
"""
import argparse
import math
import os
import pathlib
import re
import resource
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutate"
EQUIVALENT = ROOT / "scripts" / "mutate_equivalent.txt"

# name: (source files, test programs that must notice)
TARGETS = {
    "spline": (
        ["mfcurves/host/Spline.cpp", "mfcurves/host/Spline.h", "mfcurves/host/SplinePieces.cpp",
         "mfcurves/host/SplinePieces.h", "mfcurves/host/KnotIndex.cpp", "mfcurves/host/KnotIndex.h"],
        ["Spline_test", "Spline_numbers_test"],
    ),
    "points": (
        ["mfcurves/functions/mfDataPoints.cpp", "mfcurves/functions/mfDataPoints.h"],
        ["mfDataPoints_test"],
    ),
    "point-editing": (
        ["mfcurves/functions/mfFunctionDataPoints_editing.cpp", "mfcurves/functions/mfFunctionDataPoints.h"],
        ["mfFunctionDataPoints_editing_test", "mfFunctionDataPoints_table_test",
         "mfFunctionDataPoints_values_test", "mfFunctionDataPoints_spline_test",
         "mfFunctionDataPoints_memory_test"],
    ),
    "point-values": (
        ["mfcurves/functions/mfFunctionDataPoints_values.cpp"],
        ["mfFunctionDataPoints_values_test", "mfFunctionDataPoints_spline_test"],
    ),
    "segment-editing": (
        ["mfcurves/segments/mfFunctionSegments_editing.cpp", "mfcurves/segments/mfFunctionSegments.h"],
        ["mfFunctionSegments_editing_test", "mfFunctionSegments_table_test",
         "mfFunctionSegments_profiles_test", "mfFunctionSegments_memory_test"],
    ),
    "profile-lookup": (
        ["mfcurves/profiles/mfProfileManager.cpp", "mfcurves/profiles/mfProfileKey.cpp",
         "mfcurves/profiles/mfProfileKey.h"],
        ["mfProfileKey_test", "mfProfileManager_test", "mfProfileManager_assembly_test",
         "mfProfileManager_rebuild_test", "mfProfileManager_memory_test"],
    ),
    "segment-values": (
        ["mfcurves/segments/mfFunctionSegments_values.cpp"],
        ["mfFunctionSegments_values_test", "mfSegmentCalculator_test",
         "mfSegmentCalculator_sampling_test"],
    ),
}

OTHER = {
    "<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "==", "+=": "-=", "-=": "+=",
    "std::min": "std::max", "std::max": "std::min", "true": "false", "false": "true",
    "std::lower_bound": "std::upper_bound", "std::upper_bound": "std::lower_bound",
}
SWAPPED = re.compile(r"(?<= )(<=|>=|==|!=|\+=|-=|<|>)(?= |$)|(?<![\w:])(std::\w+|true|false)(?!\w)")
NUMBER = re.compile(r"(?<![\w.])(\d+\.\d+|\d+)(?![\w.])")

# Headers that all of these files include are compiled once.
PRECOMPILE = """cmake_language(DEFER CALL target_precompile_headers mfcurves PRIVATE
    <algorithm> <array> <bit> <cmath> <map> <memory> <numeric> <string> <unordered_set> <vector>)
"""

# A million edits take as long as a hundred of these programs.
TEST_OPTIONS = ["--gtest_brief=1", "--gtest_fail_fast", "--gtest_filter=-*Million*"]
LEAST_SECONDS_FOR_TEST = 10  # a change may make a loop endless,
LARGEST_TEST = 4 << 30       # or a vector grow without end


def stepped(number):
    """The number plus one; for a fraction, the next double."""
    if "." not in number:
        return str(int(number) + 1)
    value = float(number)
    return repr(value + 1.0 if value.is_integer() else math.nextafter(value, math.inf))


def changes_of_line(line):
    """Yields each changed form of one source line."""
    code = re.split(r"//", line, maxsplit=1)[0]
    if code.lstrip().startswith(("#", "using ", "template")):
        return
    for found in SWAPPED.finditer(code):
        if found.group() in OTHER:
            yield line[: found.start()] + OTHER[found.group()] + line[found.end():]
    for found in NUMBER.finditer(code):
        yield line[: found.start()] + stepped(found.group()) + line[found.end():]


def changes_of_file(path):
    """Yields (line number, changed line) for a source file."""
    for number, line in enumerate((ROOT / path).read_text().splitlines(), 1):
        for changed in changes_of_line(line):
            yield number, changed


def read_equivalent(paths):
    """The listed changes of these files as {(file, changed line): reason}."""
    listed = {}
    for line in EQUIVALENT.read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            path, changed, reason = (part.strip() for part in line.split(" | ", 2))
            if path in paths:
                listed[path, changed] = reason
    return listed


def copy_tree():
    """Brings the copy to the state of the tree and configures it."""
    source = COPY / "source"
    names = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                           capture_output=True, text=True).stdout.splitlines()
    for name in names:
        old, new = source / name, ROOT / name
        if not new.is_file():
            continue
        if not old.exists() or old.read_bytes() != new.read_bytes():
            old.parent.mkdir(parents=True, exist_ok=True)
            shutil.copyfile(new, old)
            shutil.copymode(new, old)
    precompile = COPY / "precompile.cmake"
    precompile.write_text(PRECOMPILE)
    options = ["-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_FLAGS=-O0 -D_GLIBCXX_ASSERTIONS",
               "-DCMAKE_CXX_COMPILER_LAUNCHER=", "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST",
               f"-DCMAKE_PROJECT_mfcurves_INCLUDE={precompile}", "-DMFCURVES_TOOL=OFF", "-DMFCURVES_EXAMPLES=OFF"]
    if shutil.which("ld.lld"):
        options.append("-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld")
    subprocess.run(["cmake", "-S", str(source), "-B", str(COPY / "build"), "-G", "Ninja", *options],
                   check=True, stdout=subprocess.DEVNULL)
    return source


def build(tests):
    return subprocess.run(["cmake", "--build", str(COPY / "build"), "-j1", "--target", *tests],
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def bound_test():
    resource.setrlimit(resource.RLIMIT_AS, (LARGEST_TEST, LARGEST_TEST))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


def passes(test, seconds=None):
    """True when the test program succeeds within that time."""
    program = next(path for path in (COPY / "build" / "tests").rglob(test) if os.access(path, os.X_OK))
    try:
        return subprocess.run([str(program), *TEST_OPTIONS], timeout=seconds,
                              preexec_fn=bound_test, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def times_of(tests):
    """How long each test may take: much longer than it does without a change."""
    limits = {}
    for test in tests:
        started = time.monotonic()
        if not passes(test):
            sys.exit(f"{test} fails without a change")
        limits[test] = LEAST_SECONDS_FOR_TEST + 5 * (time.monotonic() - started)
    return limits


def outcome(target, number, changed, limits):
    """The outcome of a build with that one changed line."""
    original = target.read_text()
    lines = original.splitlines()
    lines[number - 1] = changed
    target.write_text("\n".join(lines) + "\n")
    try:
        if not build(limits):
            return "not compiled"
        return "unnoticed" if all(passes(test, limits[test]) for test in limits) else "noticed"
    finally:
        target.write_text(original)


def try_target(name, paths, tests, source):
    """Tries every change of these files; returns how many had which outcome."""
    equivalent = read_equivalent(paths)
    noticed = set(equivalent)
    totals = dict.fromkeys(("tried", "noticed", "not compiled", "equivalent", "missed"), 0)
    if not build(tests):
        sys.exit(f"the tests of {name} do not build")
    started = time.monotonic()
    limits = times_of(tests)
    for path in paths:
        for number, changed in changes_of_file(path):
            result = outcome(source / path, number, changed, limits)
            if result == "unnoticed":
                key = (path, changed.strip())
                result = "equivalent" if key in equivalent else "missed"
                noticed.discard(key)
                if result == "missed":
                    print(f"missed: {path}:{number}: {changed.strip()}", flush=True)
            totals["tried"] += 1
            totals[result] += 1
    for path, changed in sorted(noticed):
        totals["missed"] += 1
        print(f"listed as equivalent, but noticed or gone: {path}: {changed}")
    print(f"{name}: {show(totals)} ({time.monotonic() - started:.0f} s)", flush=True)
    return totals


def show(totals):
    return ", ".join(f"{count} {word}" for word, count in totals.items())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("names", nargs="*", help="parts of target or file names; all without one")
    parser.add_argument("--list", action="store_true", help="print the changes and stop")
    arguments = parser.parse_args()

    chosen = {}
    for name, (paths, tests) in TARGETS.items():
        wanted = [path for path in paths
                  if not arguments.names or any(part in name or part in path for part in arguments.names)]
        if wanted:
            chosen[name] = (wanted, tests)
    if arguments.list:
        for name, (paths, _) in chosen.items():
            for path in paths:
                for number, changed in changes_of_file(path):
                    print(f"{name}  {path}:{number}: {changed.strip()}")
        return 0

    source = copy_tree()
    results = [try_target(name, paths, tests, source) for name, (paths, tests) in chosen.items()]
    totals = {word: sum(result[word] for result in results) for word in results[0]} if results else {}
    print(f"all: {show(totals)}")
    return 1 if totals.get("missed") else 0


if __name__ == "__main__":
    sys.exit(main())
