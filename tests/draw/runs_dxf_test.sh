#!/usr/bin/env bash
# Labelled runs saved as DXF and read back by an independent reader.
set -eu
tests=$1; here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
VOR_RUNS_DXF="$work/runs.dxf" "$tests" --gtest_filter='RunDrawingTest.SavesADrawingOfLabelledRuns' >/dev/null
/usr/bin/python3 "$here/check_runs.py" "$work/runs.dxf"
