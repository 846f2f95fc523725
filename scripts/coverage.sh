#!/usr/bin/env bash
# scripts/coverage.sh: line and branch coverage of the library under its tests.
#
# Builds in build/coverage, runs every test that is not about packaging, and
# prints a table a file; build/coverage/uncovered.txt lists what no test reached.
# Branches that only an exception takes are left out.
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
python3 - "$build/coverage.json" > "$build/uncovered.txt" <<'PYTHON'
import json
import sys

for file in json.load(open(sys.argv[1]))["files"]:
    for line in file["lines"]:
        if line.get("gcovr/noncode"):
            continue
        missed = sum(1 for branch in line["branches"] if branch["count"] == 0)
        if line["count"] == 0:
            print(f"{file['file']}:{line['line_number']}: line not run")
        elif missed:
            print(f"{file['file']}:{line['line_number']}: {missed} of {len(line['branches'])} branches not taken")
PYTHON
echo "not covered: $(wc -l < "$build/uncovered.txt") places, listed in $build/uncovered.txt"
