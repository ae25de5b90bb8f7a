#!/usr/bin/env bash
# Sets the machine up, then builds and runs every test twice: a normal build,
# and one under AddressSanitizer and UndefinedBehaviorSanitizer; then builds
# the fuzz targets with clang's libFuzzer and runs them for a minute in all
# (docs/fuzzing.md tells how to run them longer).
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh
jobs=$(nproc)
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVOR_TESTS=ON -DVOR_BENCH=ON -DVOR_WINDOW=ON
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs"
cmake -S . -B build-san -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVOR_SANITIZE=ON -DVOR_BENCH=OFF
cmake --build build-san -j "$jobs"
ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
  ctest --test-dir build-san --output-on-failure -j "$jobs"
cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVOR_FUZZ=ON \
      -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++
cmake --build build-fuzz -j "$jobs"
tools/run-fuzz build-fuzz 60
