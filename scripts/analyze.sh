#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/analyze.sh
#
# Installs what is missing and lets clang's analyzer walk the paths of every function of
# the library and the tool (clang-analyzer-*). This takes about as long as clang-tidy's
# other checks together, which scripts/test.sh runs.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

install_packages "${build_packages[@]}" "${check_packages[@]}"
quietly cmake --preset tidy
quietly run-clang-tidy -quiet -p build/tidy -j "$jobs" -checks='-*,clang-analyzer-*' "$PWD/(mfcurves|tools)/"
echo "no findings"
