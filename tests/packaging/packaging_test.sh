#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# packaging_test.sh static|shared SOURCE BUILD WORK
#
# Installs the library into a new prefix, checks what was installed, and builds the
# project in consumer/ and the examples from that prefix only: by CMake, and by the
# compiler with the flags of pkg-config. The static library, the tool and the design
# library come from the build tree BUILD; the shared library is built below WORK, which
# keeps its objects for the next run.
set -euo pipefail
kind=$1 source=$2 build=$3 work=$4
here=$source/tests/packaging
prefix=$work/prefix

fail() {
    echo "packaging_test.sh: $*" >&2
    exit 1
}

rm -rf "$prefix" "$work/data" "$work/consumer" "$work/embedded"
mkdir -p "$work"
if [ "$kind" = shared ]; then
    build=$work/build
    cmake -S "$source" -B "$build" -G Ninja -DBUILD_SHARED_LIBS=ON -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=16 \
        -DMFCURVES_TESTS=OFF -DMFCURVES_TOOL=OFF -DMFCURVES_EXAMPLES=OFF >/dev/null
    cmake --build "$build"
fi
cmake --install "$build" --prefix "$prefix" >/dev/null

# Exactly the public headers, the licence, the pages and the design library.
headers=$prefix/include/mfcurves
diff <({ echo mfcurves.h; sed -n 's|^#include "mfcurves/\(.*\)"|\1|p' "$source/mfcurves/mfcurves.h"; } | sort) \
    <(cd "$headers" && find . -type f | sed 's|^\./||' | sort) || fail "the headers installed are not the public ones"
doc=$prefix/share/doc/mfcurves
for file in LICENSE README.md CHANGELOG.md docs/architecture.md; do
    cmp "$source/$file" "$doc/$file"
done
cmp "$source/share/mfcurves/SegmentTypes.txt" "$prefix/share/mfcurves/SegmentTypes.txt"

# One component alone.
cmake --install "$build" --prefix "$work/data" --component data >/dev/null
[ "$(ls "$work/data")" = share ] || fail "the component data holds more than data"

# By CMake.
cmake -S "$here/consumer" -B "$work/consumer" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer"
"$work/consumer/consumer"
for example in "$source"/examples/*.cpp; do
    "$work/consumer/$(basename "$example" .cpp)"
done

# By pkg-config, which finds the prefix where it is now.
pc=$(dirname "$(find "$prefix" -name mfcurves.pc)")
flags() { PKG_CONFIG_PATH=$pc pkg-config "$@" mfcurves; }
version=$(flags --modversion)
grep -q "^#define MFCURVES_VERSION_MAJOR ${version%%.*}\$" "$headers/version.h" || fail "pkg-config says version $version"
# shellcheck disable=SC2046  # flags are words
c++ -std=c++17 "$here/consumer/main.cpp" -DDESIGN_LIBRARY="\"$(flags --variable=designlibrary)\"" \
    -DEXPECTED_VERSION="\"$version\"" $(flags --cflags --libs) -o "$work/with_pkg_config"
LD_LIBRARY_PATH=$(flags --variable=libdir) "$work/with_pkg_config"

# As a part of another project nothing is installed, unless that project asks for it.
cmake -S "$here/embedding" -B "$work/embedded" -G Ninja -DMFCURVES_SOURCE="$source" >/dev/null
cmake --install "$work/embedded" --prefix "$work/embedded/prefix" >/dev/null
[ ! -e "$work/embedded/prefix" ] || fail "a project that holds the library installs it unasked"

if [ "$kind" = shared ]; then
    python3 -B "$here/make_operations.py" "$prefix/include" "$work/operations.cpp"
    # shellcheck disable=SC2046
    c++ -std=c++20 -w "$work/operations.cpp" $(flags --cflags --libs) -o "$work/operations"
    LD_LIBRARY_PATH=$(flags --variable=libdir) LD_BIND_NOW=1 "$work/operations"
    python3 -B "$here/check_exports.py" "$prefix/include" "$(flags --variable=libdir)/libmfcurves.so"
else
    "$prefix/bin/mfcurve" eval --expression 'x^2' 3
fi
