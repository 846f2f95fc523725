#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/test.sh
#
# Installs missing packages and runs every check: the layout of the sources; all tests,
# including the saved fuzz inputs, in a debug build with warnings as errors; the Python
# module; clang-tidy on the library and the tool; and, compiled by clang, all tests
# except the packaging again under the address and undefined-behaviour sanitizers.
# A second run builds and checks only what changed. The last line gives the number of
# tests.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

install_packages "${build_packages[@]}" "${check_packages[@]}" "${python_packages[@]}" "${python_test_packages[@]}"

# More than a hundred test programs are linked, so the fastest linker is used.
export LDFLAGS=${LDFLAGS--fuse-ld=lld}

failed=()

# step TITLE COMMAND...: runs one check; later checks run even if it fails.
step() {
    echo "== $1"
    local start=$SECONDS
    if "${@:2}"; then
        echo "   $((SECONDS - start)) s"
    else
        failed+=("$1")
        echo "   FAILED after $((SECONDS - start)) s"
    fi
}

check_format() {
    git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run -Werror
}

build() {
    quietly cmake --preset "$@" && quietly cmake --build "build/$1" -j "$jobs" -- -k 0
}

# Prints nothing about tests that pass; the whole log is in the build folder.
build_and_test() {
    local log=build/$1/ctest.log
    rm -f "$log" "build/$1/Testing/Temporary/LastTest.log"
    build "$@" || return 1
    if ! ctest --test-dir "build/$1" -j "$jobs" --no-tests=error --output-on-failure >"$log" 2>&1; then
        sed -n -e '/\(Passed\|Start\) /!p' "$log"
        return 1
    fi
    tail -n 3 "$log"
}

test_python() {
    scripts/python_test.sh build/dev >build/dev/python.log 2>&1 || { cat build/dev/python.log; return 1; }
    tail -n 1 build/dev/python.log
}

# Prints the cases of all test programs as "N passed, N failed". A program that does not
# list its cases counts as one; a program that stops early counts as one more failure.
count_tests() {
    cat build/{dev,asan}/Testing/Temporary/LastTest.log build/dev/python.log 2>/dev/null | awk '
        function count(word) { return match($0, "[0-9]+" word) ? substr($0, RSTART) + 0 : 0 }
        / Testing: /                  { cases = 1; good = -1 }
        /^\[=+\] [0-9]+ tests? .* ran/ { cases = $2; good = 0 }
        /^\[  PASSED  \] /            { good = $4 }
        /^Ran [0-9]+ tests? in /      { cases = $2 }
        /^Test Passed\./              { passed += cases }
        /^Test Failed\./              { passed += good < 0 ? cases - 1 : good
                                        failed += good < 0 ? 1 : cases - good }
        / passed.* in [0-9.]+s/       { passed += count(" passed"); failed += count(" failed") + count(" error") }
        END                           { print passed + 0 " passed, " failed + 0 " failed" }'
}

step "format of the sources (clang-format)" check_format
step "debug build, warnings as errors, all tests" build_and_test dev
step "the Python module: types, stubs, tests, examples" test_python
step "clang-tidy; the same tests under the address and undefined-behaviour sanitizers" \
    build_and_test asan -DMFCURVES_TIDY=ON

for title in "${failed[@]}"; do
    echo "FAILED: $title"
done
count_tests
[ ${#failed[@]} -eq 0 ]
