#!/usr/bin/env bash
# scripts/coverage.sh: line and branch coverage of the library under its tests.
#
# Builds in build/coverage, runs every test that is not about packaging, and
# prints a table a file; build/coverage/uncovered.txt lists what no test reached,
# and what scripts/coverage_explained.txt gives no reason for. Exits with 1 when
# there is any. Branches that only an exception takes are left out.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v gcovr > /dev/null || {
    echo "coverage.sh: gcovr is missing; install it with: apt-get install gcovr" >&2
    exit 1
}

build=build/coverage
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DMFCURVES_WERROR=ON -DMFCURVES_COVERAGE=ON > /dev/null
cmake --build "$build"
find "$build" -name '*.gcda' -delete
ctest --test-dir "$build" --output-on-failure -j2 -LE packaging

measure=(gcovr --root . --filter mfcurves/ --exclude-throw-branches --exclude-unreachable-branches
    --object-directory "$build" "$build/mfcurves")
"${measure[@]}" --print-summary
"${measure[@]}" --branches > "$build/branches.txt"
"${measure[@]}" --json "$build/coverage.json"
python3 - "$build/coverage.json" scripts/coverage_explained.txt > "$build/uncovered.txt" <<'PYTHON'
import json
import sys

# A line of the list is: file | text of the line | reason
explained = {}
for line in open(sys.argv[2]):
    if line.strip() and not line.startswith("#"):
        file, text, reason = (part.strip() for part in line.rsplit(" | ", 2))
        explained[file, text] = False

for file in json.load(open(sys.argv[1]))["files"]:
    source = open(file["file"]).read().split("\n")
    for line in file["lines"]:
        if line.get("gcovr/noncode"):
            continue
        missed = sum(1 for branch in line["branches"] if branch["count"] == 0)
        if line["count"] != 0 and not missed:
            continue
        place = file["file"], source[line["line_number"] - 1].strip()
        if place in explained:
            explained[place] = True
            continue
        what = "line not run" if line["count"] == 0 else f"{missed} of {len(line['branches'])} branches not taken"
        print(f"{file['file']}:{line['line_number']}: {what}: {place[1]}")
for (file, text), needed in explained.items():
    if not needed:
        print(f"{file}: explained and not missing: {text}")
print(f"explained: {sum(explained.values())} lines", file=sys.stderr)
PYTHON
echo "not covered and not explained: $(wc -l < "$build/uncovered.txt") places, listed in $build/uncovered.txt"
[ ! -s "$build/uncovered.txt" ]
