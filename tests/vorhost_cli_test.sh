#!/usr/bin/env bash
# vorhost as a program: options, exit statuses, scripts from a file or a pipe.
set -u
vorhost=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
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
"$vorhost" --bogus >/dev/null 2>&1; [ $? -eq 2 ] || fail "an unknown option must exit 2"
"$vorhost" --drive Q >/dev/null 2>&1; [ $? -eq 2 ] || fail "a malformed --drive must exit 2"
"$vorhost" --drive "C=$work/none" x.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "a missing drive folder must exit 2"
"$vorhost" missing.vor >/dev/null 2>&1; [ $? -eq 2 ] || fail "a missing script must exit 2"
"$vorhost" "$work" >/dev/null 2>&1; [ $? -eq 2 ] || fail "a folder as script must exit 2"

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
echo "vorhost command line works"
