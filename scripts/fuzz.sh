#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/fuzz.sh MINUTES [NAME...]
#
# Builds the fuzz targets (clang, libFuzzer, address and undefined-behaviour
# sanitizers) and runs each NAME, or all of fuzz/*_fuzz.cpp if none is given, for
# its share of MINUTES. Inputs that reach new code are stored in
# build/fuzz/corpus/NAME and used again by the next run; failing inputs are stored
# in build/fuzz/findings/NAME. Exit status 1: a target has failed.
set -euo pipefail
cd "$(dirname "$0")/.."

if ! [[ ${1:-} =~ ^[0-9]+$ ]] || [ "$1" -eq 0 ]; then
    sed -n '3,/^set /s/^# \{0,1\}//p' "$0" >&2
    exit 2
fi
minutes=$1
shift
names=("$@")
if [ ${#names[@]} -eq 0 ]; then
    for source in fuzz/*_fuzz.cpp; do
        name=$(basename "$source" _fuzz.cpp)
        names+=("$name")
    done
fi
for name in "${names[@]}"; do
    if [ ! -f "fuzz/${name}_fuzz.cpp" ]; then
        echo "fuzz.sh: no target $name: fuzz/${name}_fuzz.cpp does not exist" >&2
        exit 2
    fi
done

cmake --preset fuzz
cmake --build build/fuzz --target "${names[@]/%/_fuzz}"

seconds=$((minutes * 60 / ${#names[@]}))
if [ "$seconds" -eq 0 ]; then
    seconds=1
fi
failed=()
for name in "${names[@]}"; do
    corpus=build/fuzz/corpus/$name
    findings=build/fuzz/findings/$name
    mkdir -p "$corpus" "$findings"
    options=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
        -artifact_prefix="$findings/")
    if [ -f "fuzz/$name.dict" ]; then
        options+=(-dict="fuzz/$name.dict")
    fi
    echo "== $name: $seconds seconds"
    if ! "build/fuzz/fuzz/${name}_fuzz" "${options[@]}" "$corpus" "fuzz/corpus/$name"; then
        failed+=("$name")
    fi
done

if [ ${#failed[@]} -ne 0 ]; then
    echo "findings of ${failed[*]}: see build/fuzz/findings" >&2
    exit 1
fi
echo "no findings"
