#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/bench.sh [REPETITIONS]
#
# Builds the benchmarks (preset `bench`), runs them with interleaved repetitions, and
# prints the ratios of the medians with their targets, then those of the tool
# (bench/tool.py). The results are in build/bench/results. Exit status 1: a ratio
# misses its target by more than the spread of its repetitions, or a ratio of the
# tool misses its limit.
set -euo pipefail
cd "$(dirname "$0")/.."
repetitions=${1:-15}

cmake --preset bench
cmake --build build/bench
results=build/bench/results
mkdir -p "$results"
rm -f "$results"/*.json
for source in bench/*_bench.cpp; do
    name=$(basename "$source" .cpp)
    build/bench/bench/"$name" --benchmark_repetitions="$repetitions" --benchmark_min_time=0.05 \
        --benchmark_enable_random_interleaving=true \
        --benchmark_out="$results/$name.json" --benchmark_out_format=json >/dev/null
done

echo
grep -m1 'model name' /proc/cpuinfo || true
grep -m1 CMAKE_CXX_COMPILER: build/bench/CMakeCache.txt
echo
status=0
bench/ratios.py "$results"/*.json || status=$?
echo
bench/tool.py build/bench "$repetitions" || status=$?
exit "$status"
