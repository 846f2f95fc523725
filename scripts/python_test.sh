#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/python_test.sh [BUILD]
#
# Installs missing packages, builds the Python module in the build folder BUILD (default
# build/dev), and checks it there: its types (mypy), its stubs (stubtest), and its tests
# with the examples of docstrings and of docs/python.md (pytest). A BUILD with a CMake
# cache keeps its settings; a new one gets the preset dev.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
if [ $# -gt 1 ] || [ "${1-}" = --help ]; then
    takes_no_arguments "$@"
fi
build=${1-build/dev}

install_packages "${build_packages[@]}" "${python_packages[@]}" "${python_test_packages[@]}"
echo "== building the Python module in $build"
if [ -e "$build/CMakeCache.txt" ]; then
    quietly cmake -S . -B "$build" -DMFCURVES_PYTHON=ON
else
    quietly cmake --preset dev -B "$build" -DMFCURVES_PYTHON=ON
fi
quietly cmake --build "$build" --target mfcurves_python mfcurve -j "$jobs"

export PYTHONPATH=$PWD/$build/python PYTHONDONTWRITEBYTECODE=1 MFCURVES_BUILD=$PWD/$build
echo "== types and stubs"
/usr/bin/python3 -m mypy python/mfcurves
(cd build && /usr/bin/python3 -m mypy.stubtest mfcurves) # away from mfcurves/, which is no package
echo "== tests"
/usr/bin/python3 -m pytest -q
