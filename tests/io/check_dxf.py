#!/usr/bin/python3
"""Checks a DXF file the host wrote with an independent reader (ezdxf).

usage: check_dxf.py FILE.dxf [--expect FILE.json] [--svg FILE.svg]
                    [--attdefs TAG,TAG,...] [--extent-y LOW,HIGH]

Always: the file opens, is R12 with code page ANSI_950, and ezdxf's audit
reports no error and no fix (it reports undefined linetypes, styles and
blocks as fixes). Then, as asked:
  --expect    the tables, blocks and entities ezdxf reads match the JSON
              that the host wrote from the drawing it saved (make_sample);
  --svg       the picture is well-formed XML;
  --attdefs   the attribute definitions in model space, in order;
  --extent-y  $EXTMIN and $EXTMAX span these y values (a symbol hanging
              from its insertion point).
Prints every difference and exits 1 if there is any.
"""
import argparse
import json
import sys
import xml.etree.ElementTree as ElementTree

import ezdxf

TOLERANCE = 1e-6


def close(got, want):
    """Equal, reals within TOLERANCE, lists element by element."""
    if isinstance(want, (list, tuple)):
        return (isinstance(got, (list, tuple)) and len(got) == len(want)
                and all(close(g, w) for g, w in zip(got, want)))
    numbers = (int, float)
    if isinstance(want, float) and isinstance(got, numbers) and not isinstance(got, bool):
        return abs(got - want) <= TOLERANCE * max(1.0, abs(want))
    return got == want


class Checker:
    def __init__(self):
        self.problems = []

    def same(self, what, got, want):
        if not close(got, want):
            self.problems.append(f"{what}: got {got!r}, want {want!r}")
        return close(got, want)


def check_file(doc, auditor, check):
    check.same("$ACADVER", doc.dxfversion, "AC1009")
    check.same("$DWGCODEPAGE", doc.header.get("$DWGCODEPAGE"), "ANSI_950")
    check.same("encoding", doc.encoding, "cp950")
    for error in auditor.errors:
        check.problems.append(f"audit error: {error.code} {error.message}")
    for fix in auditor.fixes:
        check.problems.append(f"audit fix: {fix.code} {fix.message}")


def check_tables(doc, want, check):
    for name, layer in want["layers"].items():
        got = doc.layers.get(name)
        if check.same(f"layer {name} exists", got is not None, True):
            check.same(f"layer {name} colour", got.dxf.color, layer["color"])
            check.same(f"layer {name} linetype", got.dxf.linetype, layer["linetype"])
            check.same(f"layer {name} flags", got.dxf.flags, layer["flags"])
    for name, pattern in want["linetypes"].items():
        got = doc.linetypes.get(name)
        if check.same(f"linetype {name} exists", got is not None, True):
            lengths = [tag.value for tag in got.pattern_tags.tags if tag.code == 49]
            check.same(f"linetype {name} pattern", lengths, pattern)
    for name, style in want["styles"].items():
        got = doc.styles.get(name)
        if check.same(f"style {name} exists", got is not None, True):
            for key in ("font", "bigfont", "flags", "height", "width"):
                check.same(f"style {name} {key}", got.dxf.get(key), style[key])


def attdefs_of(entities):
    return [[e.dxf.tag, e.dxf.prompt, e.dxf.text] for e in entities if e.dxftype() == "ATTDEF"]


def check_blocks(doc, want, check):
    for name, block in want["blocks"].items():
        got = doc.blocks.get(name)
        if not check.same(f"block {name} exists", got is not None, True):
            continue
        check.same(f"block {name} flags", got.block.dxf.flags, block["flags"])
        check.same(f"block {name} types", [e.dxftype() for e in got], block["types"])
        check.same(f"block {name} attdefs", attdefs_of(got), block["attdefs"])


def entity_facts(e):
    facts = {
        "type": e.dxftype(),
        "handle": e.dxf.handle,
        "layer": e.dxf.layer,
        "linetype": e.dxf.get("linetype", "BYLAYER"),
        "color": e.dxf.get("color", 256),
    }
    kind = e.dxftype()
    if kind in ("TEXT", "ATTDEF"):
        facts.update(text=e.dxf.text, style=e.dxf.get("style", "STANDARD"),
                     rotation=e.dxf.get("rotation", 0.0))
    elif kind == "INSERT":
        facts.update(block=e.dxf.name, attribs=[[a.dxf.tag, a.dxf.text] for a in e.attribs])
    elif kind == "POLYLINE":
        facts.update(vertices=[[v.dxf.start_width, v.dxf.end_width, v.dxf.bulge]
                               for v in e.vertices])
    elif kind == "LWPOLYLINE":
        facts.update(vertices=[[p[2], p[3], p[4]] for p in e.get_points()])
    elif kind == "ARC":
        facts.update(angles=[e.dxf.start_angle, e.dxf.end_angle])
    return facts


def check_entities(doc, want, check):
    got = [entity_facts(e) for e in doc.modelspace()]
    check.same("model space entity count", len(got), len(want))
    for index, (g, w) in enumerate(zip(got, want)):
        for key, value in w.items():
            check.same(f"entity {index} ({w['type']}) {key}", g.get(key), value)


def check_svg(path, check):
    try:
        ElementTree.parse(path)
    except ElementTree.ParseError as error:
        check.problems.append(f"{path}: not well-formed XML: {error}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("dxf")
    parser.add_argument("--expect")
    parser.add_argument("--svg")
    parser.add_argument("--attdefs")
    parser.add_argument("--extent-y")
    args = parser.parse_args()

    check = Checker()
    doc = ezdxf.readfile(args.dxf)
    check_file(doc, doc.audit(), check)
    if args.expect:
        with open(args.expect, encoding="utf-8") as f:
            want = json.load(f)
        check_tables(doc, want, check)
        check_blocks(doc, want, check)
        check_entities(doc, want["entities"], check)
    if args.svg:
        check_svg(args.svg, check)
    if args.attdefs is not None:
        tags = [row[0] for row in attdefs_of(doc.modelspace())]
        check.same("attribute tags", tags, [t for t in args.attdefs.split(",") if t])
    if args.extent_y:
        low, high = (float(v) for v in args.extent_y.split(","))
        check.same("$EXTMIN y", doc.header["$EXTMIN"][1], low)
        check.same("$EXTMAX y", doc.header["$EXTMAX"][1], high)
        check.same("$INSBASE", tuple(doc.header["$INSBASE"]), (0.0, 0.0, 0.0))

    for problem in check.problems:
        print(f"{args.dxf}: {problem}")
    if check.problems:
        return 1
    print(f"{args.dxf}: ok")
    return 0


if __name__ == "__main__":
    sys.exit(main())
