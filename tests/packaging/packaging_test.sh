#!/usr/bin/env bash
# packaging_test.sh static|shared SOURCE BUILD WORK
#
# Installs the library into a fresh prefix, builds the project in consumer/ and
# the examples with nothing but that prefix, and runs them. The static library,
# the tool and the design library come from the build tree BUILD; the shared
# library is built below WORK, which keeps its objects for the next run.
set -euo pipefail
kind=$1 source=$2 build=$3 work=$4
prefix=$work/prefix

rm -rf "$prefix" "$work/consumer"
mkdir -p "$work"
if [ "$kind" = shared ]; then
    build=$work/build
    cmake -S "$source" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=ON \
        -DMFCURVES_TESTS=OFF -DMFCURVES_TOOL=OFF -DMFCURVES_EXAMPLES=OFF >/dev/null
    cmake --build "$build"
fi
cmake --install "$build" --prefix "$prefix" >/dev/null

cmake -S "$source/tests/packaging/consumer" -B "$work/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer"
"$work/consumer/consumer"
"$work/consumer/rise_dwell_return"
"$work/consumer/simulator_loop"

if [ "$kind" = shared ]; then
    python3 "$source/tests/packaging/check_exports.py" "$prefix"/lib*/libmfcurves.so "$prefix"/lib/*/libmfcurves.so
else
    "$prefix/bin/mfcurve" eval --expression 'x^2' 3
fi
