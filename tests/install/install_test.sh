#!/usr/bin/env bash
# Installs the build into a temporary prefix, moves the installed tree
# elsewhere, and runs the examples from there: the drawings and transcripts
# must be those of the build tree's vorhost.
#
# usage: install_test.sh CMAKE BUILD_DIR SOURCE_DIR VORHOST
set -u
cmake=$1 build=$2 source=$3 vorhost=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
unset VORMIS_FILES VORHOST_RESOURCES ACAD

"$cmake" --install "$build" --prefix "$work/first" >"$work/install.log" ||
  fail "cmake --install: $(cat "$work/install.log")"
mv "$work/first" "$work/moved"
tree=$work/moved
for f in bin/vorhost lib/vormis/vormis.arx share/vormis/dcl/VORMIS.DCL share/vormis/dcl/BLK.DCL share/vormis/dcl/VORMIS.HLP \
         share/vormis/resources/BASE.DCL share/vormis/resources/ACAD.LIN share/vormis/resources/NFB--.DXF \
         share/man/man1/vorhost.1 share/doc/vormis/LICENSE share/doc/vormis/README.md share/doc/vormis/docs/data-files.md \
         share/doc/vormis/examples/c/VOR/ELINE.CAT; do
  [ -f "$tree/$f" ] || fail "$f is not installed"
done
"$tree/bin/vorhost" --version | grep -q "^vorhost " || fail "the installed vorhost has no version"

# Runs one example with a vorhost on a fresh copy of a drive; results in $3.
run_example() {
  local program=$1 drive=$2 out=$3 script=$4 name
  name=$(basename "$script" .vor)
  mkdir -p "$out/$name"
  cp -R "$drive/." "$out/$name/"
  (cd "$out/$name" && TZ=UTC "$program" --drive "C=$PWD" --save "$out/$name.dxf" \
     --svg "$out/$name.svg" "$script" >"$out/$name.txt" 2>&1) ||
    fail "$name in $out: $(tail -5 "$out/$name.txt")"
}

# The file browser shows the dates of the copies; they are not compared.
undated() { sed -i -E 's/[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}/<date>/g' "$1"; }

count=0
for script in "$tree"/share/doc/vormis/examples/*.vor; do
  name=$(basename "$script" .vor)
  run_example "$tree/bin/vorhost" "$tree/share/doc/vormis/examples/c" "$work/installed" "$script"
  run_example "$vorhost" "$source/examples/c" "$work/built" "$source/examples/$name.vor"
  for kind in dxf svg txt; do
    undated "$work/installed/$name.$kind" && undated "$work/built/$name.$kind"
    cmp -s "$work/installed/$name.$kind" "$work/built/$name.$kind" ||
      fail "$name.$kind differs between the moved install and the build tree"
  done
  count=$((count + 1))
done
[ "$count" -gt 0 ] || fail "no examples installed"
echo "$count examples drawn alike from a moved install and the build tree"
