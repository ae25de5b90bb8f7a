#!/usr/bin/env bash
# The layer check passes the real emulator and fails a folder that includes
# one above it, a folder that has no place in the order, and an include of
# the emulator's top.
#   layers_test.sh CHECK ROOT FOLDER...   (the order the build uses)
set -u
check=$1; root=$2; shift 2
"$check" "$root" "$@" || { echo "the emulator itself fails the layer check"; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/emulator/low" "$work/emulator/high"
printf '#include "emulator/low/a.h"\n#include "host/ads.h"\n#include <string>\n' > "$work/emulator/high/b.cpp"
touch "$work/emulator/low/a.h"
"$check" "$work" low high || { echo "a clean fixture was rejected"; exit 1; }
for bad in '#include "emulator/high/b.h"' '#  include <emulator/high/b.h>' '#include "emulator/host.h"' \
            '#include "emulator/other/c.h"'; do
  printf '%s\n' "$bad" > "$work/emulator/low/bad.cpp"
  if "$check" "$work" low high 2>/dev/null; then echo "not rejected: $bad"; exit 1; fi
done
rm "$work/emulator/low/bad.cpp"
mkdir "$work/emulator/stray"
if "$check" "$work" low high 2>/dev/null; then echo "not rejected: a folder with no place"; exit 1; fi
echo "layer check works"
