#!/usr/bin/env bash
# The seam check passes the real module and fails a module file that
# reaches into the emulator, by a relative path or through angle brackets.
set -u
check=$1; root=$2
dirs=(host util linetool cable draw panel numtool browser layer)
"$check" "$root" "${dirs[@]}" || { echo "the module itself fails the seam check"; exit 1; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/host" "$work/util" "$work/emulator"
touch "$work/host/ads.h" "$work/emulator/host.h"
printf '#include "ads.h"\n#include "../host/ads.h"\n' > "$work/util/good.cpp"
"$check" "$work" host util || { echo "a clean fixture was rejected"; exit 1; }
for bad in '#include "../emulator/host.h"' '#  include <emulator/host.h>' '#include "missing.h"'; do
  printf '%s\n' "$bad" > "$work/util/bad.cpp"
  if "$check" "$work" host util 2>/dev/null; then echo "not rejected: $bad"; exit 1; fi
done
echo "seam check works"
