#!/usr/bin/python3
"""Reads the drawing of labelled runs with ezdxf and checks what a designer
would see: every run on its run type's layer, linetype and colour, and a
label beside each, the diameter sign written as %%c.

usage: check_runs.py FILE.dxf
"""
import sys

import ezdxf

doc = ezdxf.readfile(sys.argv[1])
auditor = doc.audit()
problems = [f"audit: {e.message}" for e in auditor.errors + auditor.fixes]
msp = doc.modelspace()
runs = [e for e in msp if e.dxftype() in ("LINE", "POLYLINE", "ARC")]
texts = [e for e in msp if e.dxftype() == "TEXT"]
want = {"E-POWER": ("ELINE1", 1), "E-LIGHT": ("ELINE2", 2)}
layers = sorted(e.dxf.layer for e in runs)
if layers != ["E-LIGHT", "E-POWER", "E-POWER", "E-POWER"]:
    problems.append(f"run layers {layers}")
for run in runs:
    linetype, color = want.get(run.dxf.layer, (None, None))
    if run.dxf.linetype != linetype or run.dxf.color != color:
        problems.append(f"{run.dxftype()} on {run.dxf.layer}: {run.dxf.linetype}, colour {run.dxf.color}")
labels = sorted(t.dxf.text for t in texts)
if labels != ["2.0x2"] + ["5.5x2,%%c28PVC"] * 3:
    problems.append(f"labels {labels}")
for layer in want:
    if layer not in doc.layers:
        problems.append(f"no layer {layer}")
for problem in problems:
    print(problem)
print(f"{len(runs)} runs, {len(texts)} labels" if not problems else "FAILED")
sys.exit(1 if problems else 0)
