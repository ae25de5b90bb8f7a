#!/usr/bin/env bash
# Sets the machine up, builds, and runs the shipped examples in vorhost on a
# copy of the example drive examples/c, left in out/c (or $VOR_OUT/c).
set -eu
cd "$(dirname "$0")/.."
scripts/setup.sh
# Only the program: the tests and benchmarks are built by scripts/test.sh.
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DVOR_TESTS=OFF -DVOR_BENCH=OFF \
  >/dev/null
cmake --build build -j "$(nproc)" --target vorhost
out=${VOR_OUT:-out}
rm -rf "$out/c"
mkdir -p "$out/c"
cp -R examples/c/. "$out/c/"
for script in examples/*.vor; do
  name=$(basename "$script" .vor)
  echo "== $script"
  (cd "$out/c" && "$OLDPWD/build/vorhost" --drive "C=$PWD" --save "$PWD/$name.dxf" \
     --svg "$PWD/$name.svg" "$OLDPWD/$script")
done
echo "== results in $out/c"
