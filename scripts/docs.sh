#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/docs.sh [FOLDER]
#
# Makes the reference of the public headers, with its main page and the examples, in
# FOLDER (default build/docs). A public entity without a comment is an error, and so is
# a comment that Doxygen cannot read.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
if [ $# -gt 1 ] || [ "${1-}" = --help ]; then
    takes_no_arguments "$@"
fi
folder=${1-build/docs}

install_packages doxygen

headers=$(sed -n 's/^#include "\(.*\)"/\1/p' mfcurves/mfcurves.h | tr '\n' ' ')
version=$(sed -n 's/^#define MFCURVES_VERSION_[MP][A-Z]* \([0-9]*\)$/\1/p' mfcurves/version.h | paste -sd.)
mkdir -p "$folder"
{
    cat docs/Doxyfile
    echo "INPUT += $headers"
    echo "PROJECT_NUMBER = $version"
    echo "OUTPUT_DIRECTORY = $folder"
} | doxygen -
echo "The reference is $folder/html/index.html."
