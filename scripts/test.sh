#!/usr/bin/env bash
# Installs what is missing, builds the program and its tests three times (plain,
# with AddressSanitizer and UndefinedBehaviorSanitizer, and Release with the
# benchmarks) and runs every test each time.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-deps.sh

# The character tables are generated; they must match their generator.
python3 tools/gen_jis_table.py --check
# The store generator keeps its promises (same seed, same bytes; valid records).
python3 tools/test_make_store.py
jobs=$(nproc 2>/dev/null || echo 2)

cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCONV_WERROR=ON
cmake --build build -j "$jobs"
(cd build && ctest --output-on-failure -j "$jobs")

cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DCONV_SANITIZE=ON -DCONV_WERROR=ON
cmake --build build-asan -j "$jobs"
(cd build-asan && ASAN_OPTIONS=detect_leaks=1 ctest --output-on-failure -j "$jobs")

# What packagers and the benchmarks build: Release, tests included, warnings fatal.
cmake -S . -B build-release -DCMAKE_BUILD_TYPE=Release -DCONV_WERROR=ON -DCONV_BENCH=ON
cmake --build build-release -j "$jobs"
(cd build-release && ctest --output-on-failure -j "$jobs")
echo "all tests passed"
