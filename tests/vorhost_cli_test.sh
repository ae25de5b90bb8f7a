#!/usr/bin/env bash
# vorhost as a program: options, exit statuses, scripts from a file or a pipe.
set -u
vorhost=$1
work=$(mktemp -d)
trap 'umount "$work/full" 2>/dev/null; rm -rf "$work"' EXIT
cd "$work"
fail() { echo "FAIL: $*"; exit 1; }

"$vorhost" --help | grep -q "usage: vorhost" || fail "--help"
"$vorhost" --version | grep -qx "vorhost [0-9]*\.[0-9]*\.[0-9]*" || fail "--version: $("$vorhost" --version)"

# A program copied away from its files says where it looked, and does not start.
mkdir -p alone/bin
cp "$(readlink -f "$vorhost")" alone/bin/
echo '(VOR_ELINE)' | env -u VORMIS_FILES -u VORHOST_RESOURCES alone/bin/vorhost - >/dev/null 2>err.txt
[ $? -eq 2 ] || fail "a program without its files must exit 2"
grep -q "no VORMIS.DCL in $work/alone/share/vormis/dcl" err.txt || fail "missing files: $(cat err.txt)"
# With its dialog files named but no module beside it, the same.
echo '(arx)' | VORMIS_FILES="$(dirname "$(readlink -f "$vorhost")")/../share/vormis/dcl" \
  VORHOST_RESOURCES="$(dirname "$(readlink -f "$vorhost")")/../share/vormis/resources" \
  alone/bin/vorhost - >/dev/null 2>err.txt
[ $? -eq 2 ] || fail "a program without its module must exit 2"
grep -q "no vormis.arx in $work/alone/lib/vormis (reinstall, or give --module FILE)" err.txt ||
  fail "missing module: $(cat err.txt)"

# The module given, refused, or none.
printf '(arx)\n#expect-result nil\n(VOR_ELINE)\n#expect-output error: null function\n' > none.vor
"$vorhost" --no-module none.vor >out.txt 2>err.txt || fail "--no-module: $(cat out.txt err.txt)"
"$vorhost" --module "$work/none.arx" none.vor >/dev/null 2>err.txt; [ $? -eq 2 ] || fail "a missing module must exit 2"
grep -q "^vorhost: Cannot load \"$work/none.arx\": " err.txt || fail "missing module: $(cat err.txt)"
cp none.vor text.arx
"$vorhost" --module text.arx none.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "a text file as module must exit 2"
"$vorhost" --module x.arx --no-module none.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "--module with --no-module must exit 2"
"$vorhost" --bogus >/dev/null 2>&1; [ $? -eq 2 ] || fail "an unknown option must exit 2"
"$vorhost" --drive Q >/dev/null 2>&1; [ $? -eq 2 ] || fail "a malformed --drive must exit 2"
"$vorhost" --drive "C=$work/none" x.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "a missing drive folder must exit 2"
"$vorhost" missing.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "a missing script must exit 2"
"$vorhost" "$work" >/dev/null 2>&1; [ $? -eq 2 ] || fail "a folder as script must exit 2"

mkdir gone
(cd gone && rmdir "$work/gone" && "$vorhost" - </dev/null >/dev/null 2>"$work/err.txt"; echo $? >"$work/status")
[ "$(cat status)" = 2 ] || fail "a current directory that is gone must exit 2: $(cat err.txt)"

printf '(setq a 2)\n#expect-result 3\n' > bad.vor
"$vorhost" bad.vor >out.txt 2>err.txt; [ $? -eq 1 ] || fail "a failed expectation must exit 1"
grep -q "^bad.vor:2: expected result 3, got 2" err.txt || fail "failure message: $(cat err.txt)"

# Data files converted in place, with the exit statuses of the program.
printf '(\"E1\" \"\xe7\x85\xa7\xe6\x98\x8e\")\n' > u.cat
cp u.cat u.orig
"$vorhost" --import-text u.cat >/dev/null || fail "--import-text of UTF-8"
printf '(\"E1\" \"\xb7\xd3\xa9\xfa\")\r\n\x1a' | cmp -s - u.cat || fail "--import-text wrote $(od -c u.cat)"
"$vorhost" --import-text u.cat >/dev/null 2>err.txt; [ $? -eq 1 ] || fail "a Big5 file imported again must exit 1"
grep -q "^vorhost: u.cat:1: .*converted already" err.txt || fail "refusal: $(cat err.txt)"
"$vorhost" --export-text u.cat >/dev/null && cmp -s u.cat u.orig || fail "--export-text gives the file back"
"$vorhost" --export-text none.cat >/dev/null 2>&1; [ $? -eq 2 ] || fail "a missing file to convert must exit 2"
"$vorhost" --import-text u.cat x.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "a conversion with a script must exit 2"

mkdir -p d/VOR
out=$(printf '(setq VORMIS "D:/VOR")\n(VOR_ELINE)\ncancel\n#expect-no-output error\n' |
      "$vorhost" --drive "D=$work/d" -) || fail "a script on standard input"
echo "$out" | grep -q '^Command: (setq VORMIS "D:/VOR")$' || fail "transcript: $out"
# --save and --svg write through a symbolic link, refuse a read-only file
# and name files as they were typed.
printf 'LINE\n0,0\n10,10\n\n' > draw.vor
mkdir real
printf 'old' > real/plan.dxf
ln -s real/plan.dxf link.dxf
"$vorhost" --save link.dxf draw.vor >/dev/null 2>err.txt || fail "--save onto a link: $(cat err.txt)"
[ -L link.dxf ] || fail "--save replaced the link itself"
grep -q "^ENTITIES" real/plan.dxf || fail "--save did not write the file the link names"
printf 'old' > ro.dxf
chmod 444 ro.dxf
"$vorhost" --save ro.dxf --svg no/such/plan.svg draw.vor >/dev/null 2>err.txt
[ $? -eq 3 ] || fail "a save that fails must exit 3"
grep -qx "vorhost: Cannot save ro.dxf: the file is read-only." err.txt || fail "read-only: $(cat err.txt)"
grep -qx "vorhost: Cannot save no/such/plan.svg: no such directory." err.txt || fail "no folder: $(cat err.txt)"
[ "$(cat ro.dxf)" = old ] || fail "a read-only file was written"

# On a full disk the old file stays, and nothing else is left.
mkdir full
if mount -t tmpfs -o size=64k tmpfs full 2>/dev/null; then
  printf 'old' > full/plan.dxf
  dd if=/dev/zero of=full/FILLER bs=4k >/dev/null 2>&1
  "$vorhost" --save full/plan.dxf --svg full/plan.svg draw.vor >/dev/null 2>err.txt
  [ $? -eq 3 ] || fail "a save on a full disk must exit 3"
  grep -qx "vorhost: Cannot save full/plan.dxf: the disk is full; the file is left as it was." err.txt ||
    fail "full disk: $(cat err.txt)"
  grep -qx "vorhost: Cannot save full/plan.svg: the disk is full." err.txt || fail "full disk: $(cat err.txt)"
  [ "$(cat full/plan.dxf)" = old ] || fail "the old drawing was lost"
  [ "$(ls full | tr '\n' ' ')" = "FILLER plan.dxf " ] || fail "left on the disk: $(ls full)"
else
  echo "note: cannot mount a small tmpfs here (it needs root); the full-disk save is not tried"
fi
echo "vorhost command line works"
