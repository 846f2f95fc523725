#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/demo.sh
#
# Installs missing packages, builds the tool and the Python module in build/release, and
# shows the main uses on a sample curve: prints the content of the document, the value and
# three derivatives, draws the picture of the README into build/, and evaluates the curve
# in Python. The variable UNDER can name a program that runs the tool, such as
# "valgrind --error-exitcode=1".
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

install_packages "${build_packages[@]}" "${python_packages[@]}"
echo "== building build/release"
quietly cmake --preset release -DMFCURVES_PYTHON=ON
quietly cmake --build build/release -j "$jobs" --target mfcurve mfcurves_python

sample=share/mfcurves/curves/rise-dwell-return-cam.xml
picture=build/rise-dwell-return.svg
under=${UNDER-}

# Prints a command as typed in a shell, and runs it.
show() {
    local word line="\$ mfcurve"
    for word in "$@"; do
        case $word in
            *[!A-Za-z0-9_./-]*) line+=" '$word'" ;;
            *) line+=" $word" ;;
        esac
    done
    echo
    echo "$line"
    $under build/release/tools/mfcurve/mfcurve "$@"
}

show info "$sample"
show eval "$sample" 0 30 60 90 120 150 210 255 300 360
show plot "$sample" -o "$picture"
show eval --expression "10*sin(2*pi*x)" 0.125
echo
echo "\$ python3"
PYTHONPATH=build/release/python /usr/bin/python3 - "$sample" <<'END'
import sys

import mfcurves as mf

cam = mf.read(sys.argv[1])
print(">>> mf.read(%r).svaj([30, 60])" % sys.argv[1])
print(cam.svaj([30, 60]))
END
echo
echo "The picture is $picture; build/release/tools/mfcurve/mfcurve --help shows more."
