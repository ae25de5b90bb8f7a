#!/usr/bin/env bash
# Builds the Debian package with CPack and checks it: its listing holds the
# program, the module, the dialog and help files, the host's resources, the
# manual page and the licence; it declares a CJK font; and the program
# unpacked from it draws the example panels, with the module unpacked
# beside it, as the build tree's does.
#
# usage: package_test.sh CPACK BUILD_DIR SOURCE_DIR VORHOST
set -u
cpack=$1 build=$2 source=$3 vorhost=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAIL: $*"; exit 1; }
unset VORMIS_FILES VORHOST_RESOURCES ACAD

"$cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$work" >"$work/cpack.log" 2>&1 ||
  fail "cpack: $(tail -20 "$work/cpack.log")"
deb=$(ls "$work"/vormis_*.deb 2>/dev/null | head -1)
[ -n "$deb" ] || fail "no package written: $(tail -20 "$work/cpack.log")"

dpkg-deb -c "$deb" | awk '{print $NF}' >"$work/listing"
for f in ./usr/bin/vorhost ./usr/lib/vormis/vormis.arx ./usr/share/vormis/dcl/VORMIS.DCL ./usr/share/vormis/dcl/BLK.DCL \
         ./usr/share/vormis/dcl/VORMIS.HLP ./usr/share/vormis/resources/BASE.DCL \
         ./usr/share/vormis/resources/ACAD.LIN './usr/share/vormis/resources/$RECT.DXF' \
         ./usr/share/man/man1/vorhost.1 ./usr/share/doc/vormis/copyright \
         ./usr/share/doc/vormis/examples/panels.vor; do
  grep -qxF "$f" "$work/listing" || fail "$f is not in the package"
done
depends=$(dpkg-deb -f "$deb" Depends)
echo "$depends" | grep -q "fonts-wqy-microhei" || fail "no CJK font among the dependencies: $depends"
echo "$depends" | grep -q "libc6" || fail "no C library among the dependencies: $depends"
[ "$(dpkg-deb -f "$deb" Version)" = "$("$vorhost" --version | awk '{print $2}')" ] ||
  fail "the package's version is not the program's"

# The unpacked tree is an installed tree in another place.
dpkg-deb -x "$deb" "$work/root"
docs=$work/root/usr/share/doc/vormis
draw_panels() {
  local program=$1 out=$2
  mkdir -p "$out/c"
  cp -R "$docs/examples/c/." "$out/c/"
  (cd "$out/c" && TZ=UTC "$program" --drive "C=$PWD" --save "$out/panels.dxf" \
     --svg "$out/panels.svg" "$docs/examples/panels.vor" >"$out/transcript" 2>&1) ||
    fail "panels.vor with $program: $(tail -5 "$out/transcript")"
}
draw_panels "$work/root/usr/bin/vorhost" "$work/from_package"
draw_panels "$vorhost" "$work/from_build"
# The font the package brings is one the drawings ask for.
grep -q "font-family=\"[^\"]*'WenQuanYi Micro Hei'" "$work/from_package/panels.svg" ||
  fail "the SVG does not name the font the package depends on"
# The file browser shows the dates of the copies; they are not compared.
sed -i -E 's/[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9][0-9] [0-9:]{8} [0-9]{4}/<date>/g' \
  "$work/from_package/transcript" "$work/from_build/transcript"
for f in panels.dxf panels.svg transcript; do
  cmp -s "$work/from_package/$f" "$work/from_build/$f" ||
    fail "$f differs between the package and the build tree"
done
echo "$(basename "$deb"): $(wc -l <"$work/listing") entries, depends on $depends"
