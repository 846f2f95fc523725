#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/python.sh
#
# Installs missing packages, builds the Python module, and installs it into the virtual
# environment build/venv, which can also use the packages of the system.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh
takes_no_arguments "$@"

install_packages "${build_packages[@]}" "${python_packages[@]}"
[ -x build/venv/bin/python ] || /usr/bin/python3 -m venv --system-site-packages build/venv
echo "== building the module and installing it into build/venv"
quietly build/venv/bin/pip install --no-build-isolation --no-deps --disable-pip-version-check .
build/venv/bin/python -c 'import mfcurves; print("mfcurves", mfcurves.__version__, "is in build/venv")'
