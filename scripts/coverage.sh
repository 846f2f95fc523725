#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/coverage.sh: line and branch coverage of the library under its tests.
#
# Builds in build/coverage with clang, runs every test except those of packaging, and
# prints a line for each file. build/coverage/uncovered.txt lists the lines that no
# test reached and the conditions that were never true or never false, except those in
# scripts/coverage_explained.txt. Exit status 1: the list is not empty.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

for tool in clang++ llvm-profdata llvm-cov; do
    has_command "$tool" || fail "$tool is missing; apt-get install clang llvm"
done

build=build/coverage
# Clang's counts do not depend on the optimisation, and some tests are too slow without it.
quietly cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O1 \
    -DCMAKE_CXX_COMPILER=clang++ -DMFCURVES_COVERAGE=ON
quietly cmake --build "$build" -j "$jobs"
rm -rf "$build/profiles"
LLVM_PROFILE_FILE=$PWD/$build/profiles/mfcurve-%4m.profraw \
    ctest --test-dir "$build" --output-on-failure -j "$jobs" -LE packaging >"$build/ctest.log" ||
    { sed -e '/ Passed \|Start /d' "$build/ctest.log"; exit 1; }

llvm-profdata merge -sparse "$build"/profiles/*.profraw -o "$build/tests.profdata"
# Some test programs contain no code of the library.
# llvm-cov reports functions that a program only declares as mismatched; the program that
# runs them has their counts.
mapfile -t programs < <(find "$build/tests" -type f -name '*_test*' -perm -u+x -exec grep -l __llvm_covmap {} +)
llvm-cov export -instr-profile="$build/tests.profdata" "${programs[0]}" "${programs[@]/#/-object=}" mfcurves >"$build/coverage.json"
python3 scripts/coverage.py "$build/coverage.json" scripts/coverage_explained.txt "$build/uncovered.txt"
