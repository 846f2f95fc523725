#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/analyze.sh
#
# Installs missing packages and runs clang's analyzer (clang-analyzer-*) on every function
# of the library and the tool. This takes about as long as all other checks of clang-tidy,
# which scripts/test.sh runs.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

install_packages "${build_packages[@]}" "${check_packages[@]}"
quietly cmake --preset tidy
quietly run-clang-tidy -quiet -p build/tidy -j "$jobs" -checks='-*,clang-analyzer-*' "$PWD/(mfcurves|tools)/"
echo "no findings"
