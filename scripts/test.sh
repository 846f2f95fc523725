#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/test.sh
#
# Installs what is missing and runs every check: the layout of the sources, all
# tests in a debug build with warnings as errors (the saved fuzz inputs are among
# them), all but the packaging again under the address and undefined-behaviour
# sanitizers, and clang-tidy over the library and the tool. A second run builds
# and checks only what changed. The last line counts the tests.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

install_packages "${build_packages[@]}" "${check_packages[@]}"

# More than a hundred test programs are linked: the quickest linker does.
export LDFLAGS=${LDFLAGS--fuse-ld=lld}

failed=()

# step TITLE COMMAND...: runs one check; the later ones run even when it fails.
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
    quietly cmake --preset "$1" && quietly cmake --build "build/$1" -j "$jobs" -- -k 0
}

# Says nothing of the tests that pass; the whole log stays in the build folder.
build_and_test() {
    local log=build/$1/ctest.log
    rm -f "$log"
    build "$1" || return 1
    if ! ctest --test-dir "build/$1" -j "$jobs" --no-tests=error --output-on-failure >"$log" 2>&1; then
        sed -n -e '/\(Passed\|Start\) /!p' "$log"
        return 1
    fi
    tail -n 3 "$log"
}

# Prints the sum of the test runs as "N passed, N failed".
count_tests() {
    cat build/dev/ctest.log build/asan/ctest.log 2>/dev/null |
        sed -n 's/.*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)/\1 \2/p' |
        { total=0 wrong=0
          while read -r failures tests; do total=$((total + tests)) wrong=$((wrong + failures)); done
          echo "$((total - wrong)) passed, $wrong failed"; }
}

step "format of the sources (clang-format)" check_format
step "debug build, warnings as errors, all tests" build_and_test dev
step "the same tests under the address and undefined-behaviour sanitizers" build_and_test asan
step "clang-tidy over the library and the tool" build tidy

for title in "${failed[@]}"; do
    echo "FAILED: $title"
done
count_tests
[ ${#failed[@]} -eq 0 ]
