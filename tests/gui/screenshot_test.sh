#!/usr/bin/env bash
# vorhost --gui --play SCRIPT --screenshot DIR on a copy of the example
# drive: the script runs to its end in the window, a PNG is written for the
# dialog it opens and for the window at the end, and --save writes the
# drawing as the script left it; the windows of the host's functions are
# written too.
set -eu
vorhost=$1; examples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp -R "$examples/c" "$work/c"
cd "$work/c"
QT_QPA_PLATFORM=offscreen "$vorhost" --gui --drive "C=$work/c" --play "$examples/panels.vor" \
  --screenshot "$work/shots" --save "$work/panels.dxf" 2>"$work/err" || {
  echo "FAIL: vorhost --gui ended with status $?"; cat "$work/err"; exit 1; }
for shot in 01-FILE_CON.png main.png; do
  head -c 8 "$work/shots/$shot" | od -An -c | grep -q 'P   N   G' || { echo "FAIL: no PNG $shot"; exit 1; }
done
[ "$(ls "$work/shots" | wc -l)" -eq 2 ] || { echo "FAIL: shots: $(ls "$work/shots")"; exit 1; }
grep -q "LP-1" "$work/panels.dxf" || { echo "FAIL: the drawing was not saved"; exit 1; }
# The host's own windows open under the script too, each written as it opens.
rm -rf "$work/c" && cp -R "$examples/c" "$work/c"
QT_QPA_PLATFORM=offscreen "$vorhost" --gui --drive "C=$work/c" --play "$examples/windows.vor" \
  --screenshot "$work/windows" >/dev/null 2>"$work/err" || {
  echo "FAIL: vorhost --gui ended with status $?"; cat "$work/err"; exit 1; }
shots=$(cd "$work/windows" && echo *.png)
[ "$shots" = "01-VOR_ELINE_0.png 02-VOR_ELINE_1.png 03-ACAD_COLORDLG.png 04-W1.png 05-W2.png 06-ADS_HELP.png main.png" ] ||
  { echo "FAIL: shots: $shots"; exit 1; }
# Options of the window alone are refused without --gui.
if "$vorhost" --screenshot "$work/x" - </dev/null 2>/dev/null; then echo "FAIL: --screenshot without --gui"; exit 1; fi
echo ok
