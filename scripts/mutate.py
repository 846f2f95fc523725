#!/usr/bin/env python3
"""Changes one comparison or constant at a time and sees whether a test notices.

    scripts/mutate.py                     every file of TARGETS
    scripts/mutate.py spline              the targets whose name holds "spline"
    scripts/mutate.py --list              the changes, without trying them

Each change is made in a copy of the tree under build/mutate, the tests of its
target are built and run, and a change that no test notices is printed. A change
in scripts/mutate_equivalent.txt (file, changed line, reason) alters nothing that
a caller can see and is counted apart. The exit status is 1 when a change that
is not listed there went unnoticed.
"""
import argparse
import pathlib
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutate"
EQUIVALENT = ROOT / "scripts" / "mutate_equivalent.txt"

# name: (source files, test programs that must notice)
TARGETS = {
    "segment-editing": (
        ["mfcurves/segments/mfFunctionSegments_editing.cpp"],
        ["mfFunctionSegments_editing_test", "mfFunctionSegments_exhaustive_test"],
    ),
    "segment-values": (
        ["mfcurves/segments/mfFunctionSegments_values.cpp"],
        ["mfFunctionSegments_values_test"],
    ),
    "point-editing": (
        ["mfcurves/functions/mfFunctionDataPoints_editing.cpp"],
        ["mfFunctionDataPoints_editing_test", "mfFunctionDataPoints_oracle_test"],
    ),
    "point-values": (
        ["mfcurves/functions/mfFunctionDataPoints_values.cpp"],
        ["mfFunctionDataPoints_values_test"],
    ),
    "spline": (["mfcurves/host/Spline.cpp"], ["Spline_test"]),
}

COMPARISONS = {"<": ["<="], "<=": ["<"], ">": [">="], ">=": [">"], "==": ["!="], "!=": ["=="]}
COMPARISON = re.compile(r" (<=|>=|==|!=|<|>) ")
NUMBER = re.compile(r"(?<![\w.])(\d+\.\d+|\d+)(?![\w.])")
SECONDS_FOR_TESTS = 120


def without_comment(line):
    return re.split(r"//", line, maxsplit=1)[0]


def changes_of_line(line):
    """Yields each changed form of one source line."""
    code = without_comment(line)
    if not code.strip() or code.lstrip().startswith(("#", "using ", "template")) or "operator" in code:
        return
    for found in COMPARISON.finditer(code):
        for other in COMPARISONS[found.group(1)]:
            yield line[: found.start(1)] + other + line[found.end(1):]
    for found in NUMBER.finditer(code):
        text = found.group(1)
        stepped = repr(float(text) + 1.0) if "." in text else str(int(text) + 1)
        yield line[: found.start(1)] + stepped + line[found.end(1):]


def changes_of_file(path):
    """Yields (line number, changed line) for a source file."""
    for number, line in enumerate((ROOT / path).read_text().splitlines(), 1):
        for changed in changes_of_line(line):
            yield number, changed


def read_equivalent():
    """The listed changes as {(file, changed line): reason}."""
    listed = {}
    if EQUIVALENT.exists():
        for line in EQUIVALENT.read_text().splitlines():
            if line.strip() and not line.startswith("#"):
                path, changed, reason = (part.strip() for part in line.split(" | ", 2))
                listed[path, changed] = reason
    return listed


def copy_tree():
    """Brings the copy to the state of the tree and configures it once."""
    source = COPY / "source"
    source.mkdir(parents=True, exist_ok=True)
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
    subprocess.run(["cmake", "-S", str(source), "-B", str(COPY / "build"), "-G", "Ninja",
                    "-DCMAKE_BUILD_TYPE=Debug", "-DMFCURVES_TOOL=OFF", "-DMFCURVES_EXAMPLES=OFF"],
                   check=True, stdout=subprocess.DEVNULL)
    return source


def build(tests):
    return subprocess.run(["cmake", "--build", str(COPY / "build"), "--target", *tests],
                          stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def passes(tests):
    for test in tests:
        program = next((COPY / "build" / "tests").rglob(test))
        try:
            run = subprocess.run([str(program), "--gtest_brief=1"], timeout=SECONDS_FOR_TESTS,
                                 stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        except subprocess.TimeoutExpired:
            return False
        if run.returncode != 0:
            return False
    return True


def notices(source, path, number, changed, tests):
    """True when a build with that one changed line fails or a test of it does."""
    target = source / path
    original = target.read_text()
    lines = original.splitlines()
    lines[number - 1] = changed
    target.write_text("\n".join(lines) + "\n")
    try:
        return not build(tests) or not passes(tests)
    finally:
        target.write_text(original)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("names", nargs="*", help="parts of target names; all without one")
    parser.add_argument("--list", action="store_true", help="print the changes and stop")
    arguments = parser.parse_args()

    chosen = {name: target for name, target in TARGETS.items()
              if not arguments.names or any(part in name for part in arguments.names)}
    if arguments.list:
        for name, (paths, _) in chosen.items():
            for path in paths:
                for number, changed in changes_of_file(path):
                    print(f"{name}  {path}:{number}: {changed.strip()}")
        return 0

    equivalent = read_equivalent()
    source = copy_tree()
    totals = {"tried": 0, "noticed": 0, "equivalent": 0, "missed": 0}
    for name, (paths, tests) in chosen.items():
        if not build(tests) or not passes(tests):
            sys.exit(f"the tests of {name} do not pass without a change")
        started = time.monotonic()
        for path in paths:
            for number, changed in changes_of_file(path):
                totals["tried"] += 1
                if notices(source, path, number, changed, tests):
                    totals["noticed"] += 1
                elif (path, changed.strip()) in equivalent:
                    totals["equivalent"] += 1
                else:
                    totals["missed"] += 1
                    print(f"missed: {path}:{number}: {changed.strip()}", flush=True)
        print(f"{name}: done in {time.monotonic() - started:.0f} s", flush=True)
    print(", ".join(f"{count} {word}" for word, count in totals.items()))
    return 1 if totals["missed"] else 0


if __name__ == "__main__":
    sys.exit(main())
