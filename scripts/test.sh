#!/usr/bin/env bash
# Sets the machine up, then builds and runs every test twice: a normal build,
# and one under AddressSanitizer and UndefinedBehaviorSanitizer.
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVOR_TESTS=ON -DVOR_BENCH=ON
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs"
cmake -S . -B build-san -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVOR_SANITIZE=ON -DVOR_BENCH=OFF
cmake --build build-san -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build-san --output-on-failure -j "$jobs"
