"""Prints what the tests reached of each file and lists what they did not.

    scripts/coverage.py COVERAGE.json EXPLAINED.txt UNCOVERED.txt

COVERAGE.json is what `llvm-cov export` writes. A line of EXPLAINED.txt is
`file | text of the line | reason`. The exit status is 1 when UNCOVERED.txt is
not empty.
"""
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent


def read_explained(path):
    places = {}
    for line in pathlib.Path(path).read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            file, text, reason = (part.strip() for part in line.rsplit(" | ", 2))
            places[file, text] = reason
    return places


def lines_not_run(file):
    """Lines that begin in a region whose count is 0."""
    missed = set()
    segments = file["segments"]
    for (line, _, count, has_count, _, is_gap), after in zip(segments, segments[1:]):
        if has_count and not is_gap and count == 0:
            missed.update(range(line, max(line + 1, after[0])))
    return missed


def conditions_half_taken(file):
    """Line numbers of conditions, each with what it never was. Several programs
    and several forms of a template count as one."""
    taken = {}
    for branch in file["branches"]:
        where, true, false = tuple(branch[:4]), branch[4], branch[5]
        before = taken.get(where, (0, 0))
        taken[where] = (before[0] + true, before[1] + false)
    sides = 2 * len(taken)
    missed = [(where[0], "true" if true == 0 else "false")
              for where, (true, false) in taken.items() if (true == 0) != (false == 0)]
    missed += [(where[0], "asked") for where, counts in taken.items() if counts == (0, 0)]
    reached = sum((true > 0) + (false > 0) for true, false in taken.values())
    return missed, reached, sides


def main():
    coverage, explained_path, uncovered_path = sys.argv[1:]
    explained = read_explained(explained_path)
    used = set()
    uncovered = []
    totals = [0, 0, 0, 0]
    for file in json.load(open(coverage))["data"][0]["files"]:
        name = str(pathlib.Path(file["filename"]).relative_to(ROOT))
        source = (ROOT / name).read_text().splitlines()
        not_run = lines_not_run(file)
        half, reached, sides = conditions_half_taken(file)
        lines = file["summary"]["lines"]
        for i, number in enumerate((lines["covered"], lines["count"], reached, sides)):
            totals[i] += number
        print(f"{name}: lines {lines['covered']}/{lines['count']}, branches {reached}/{sides}")
        places = [(number, "not run") for number in not_run]
        places += [(number, "never " + side) for number, side in half if number not in not_run]
        for number, what in sorted(places):
            text = source[number - 1].strip()
            if text in ("", "{", "}", "};"):
                continue
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
