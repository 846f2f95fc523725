# SPDX-License-Identifier: MIT
"""Prints how much of each file the tests reached, and lists what they did not reach.

    scripts/coverage.py COVERAGE.json EXPLAINED.txt UNCOVERED.txt

COVERAGE.json is what `llvm-cov export` writes. A stretch of code that nothing ran is
one place, named by the line on which it begins, and so is a side of a condition that
was never taken. A line of EXPLAINED.txt is `file | text of the line | reason`. The
exit status is 1 when UNCOVERED.txt is not empty.
"""
import collections
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CODE = 0  # a kind of region; the others are gaps, expansions and skipped text


def read_explained(path):
    places = {}
    for line in pathlib.Path(path).read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            file, text, reason = (part.strip() for part in line.rsplit(" | ", 2))
            places[file, text] = reason
    return places


def regions_not_run(functions):
    """By file, the regions of code whose count is 0, as pairs of begin and end, except those
    directly inside another such region. Regions that begin at one place are added up: they
    are the instances of a template, and one may run what another does not."""
    runs = collections.defaultdict(collections.Counter)
    ends = collections.defaultdict(dict)
    for function in functions:
        for line, column, end_line, end_column, count, file, _, kind in function["regions"]:
            if kind != CODE:
                continue
            name, begin, end = function["filenames"][file], (line, column), (end_line, end_column)
            runs[name][begin] += count
            ends[name][begin] = max(end, ends[name].get(begin, end))
    missed = collections.defaultdict(list)
    for name, counts in runs.items():
        around = []
        for begin in sorted(counts):
            while around and ends[name][around[-1]] <= begin:
                around.pop()
            if counts[begin] == 0 and not (around and counts[around[-1]] == 0):
                missed[name].append((begin, ends[name][begin]))
            around.append(begin)
    return missed


def conditions_half_taken(branches, not_run):
    """Line numbers of conditions, each with the value that it never had. The counts of
    all programs and all instances of a template are added up."""
    taken = {}
    for branch in branches:
        where, true, false = tuple(branch[:4]), branch[4], branch[5]
        before = taken.get(where, (0, 0))
        taken[where] = (before[0] + true, before[1] + false)
    # If code runs and its condition has no count, the compiler evaluated the condition.
    taken = {where: counts for where, counts in taken.items()
             if counts != (0, 0) or any(begin <= where[:2] < end for begin, end in not_run)}
    missed = [(where[0], "true" if true == 0 else "false")
              for where, (true, false) in taken.items() if (true == 0) != (false == 0)]
    reached = sum((true > 0) + (false > 0) for true, false in taken.values())
    return missed, reached, 2 * len(taken)


def line_that_names(region, source):
    """The line on which the region begins; for the body of a function, the line of its head."""
    line = region[0][0]
    return line - 1 if source[line - 1].strip() == "{" else line


def main():
    coverage, explained_path, uncovered_path = sys.argv[1:]
    explained = read_explained(explained_path)
    used = set()
    uncovered = []
    totals = [0, 0, 0, 0]
    data = json.load(open(coverage))["data"][0]
    missed = regions_not_run(data["functions"])
    for file in data["files"]:
        name = str(pathlib.Path(file["filename"]).relative_to(ROOT))
        source = (ROOT / name).read_text().splitlines()
        not_run = missed[file["filename"]]
        half, reached, sides = conditions_half_taken(file["branches"], not_run)
        lines = file["summary"]["lines"]
        for i, number in enumerate((lines["covered"], lines["count"], reached, sides)):
            totals[i] += number
        print(f"{name}: lines {lines['covered']}/{lines['count']}, branches {reached}/{sides}")
        places = [(line_that_names(region, source), "not run") for region in not_run]
        places += [(number, "never " + side) for number, side in half]
        for number, what in sorted(places):
            text = source[number - 1].strip()
            if (name, text) in explained:
                used.add((name, text))
            else:
                uncovered.append(f"{name}:{number}: {what}: {text}")
    uncovered += [f"{name}: explained and reached: {text}" for name, text in explained if (name, text) not in used]
    pathlib.Path(uncovered_path).write_text("".join(line + "\n" for line in uncovered))
    print(f"lines {totals[0]} of {totals[1]}, branches {totals[2]} of {totals[3]}, explained {len(used)}")
    print(f"neither covered nor explained: {len(uncovered)} places, listed in {uncovered_path}")
    return 1 if uncovered else 0


if __name__ == "__main__":
    sys.exit(main())
