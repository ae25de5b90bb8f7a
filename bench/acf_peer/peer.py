#!/usr/bin/python3
"""peer.py - panel diagrams drawn from the schedules by a Python script on
ezdxf, the peer that vorhost's VOR_ACF is measured against:

    peer.py SCHEDULE_DIR POINTS RESOURCES OUT.dxf

It reads every *.ACF of SCHEDULE_DIR in name order (the order in which the
browser lists them and "all" chooses them), takes one start point a line
from POINTS ("x,y"), and writes one R12 drawing in Big5 holding, for each
schedule, the entities that VOR_ACF has the host make: the feeder and bus
polylines of width 5, the breakers and devices as block references with
their attribute values, the branch lines, the load symbols, the texts in
their styles, heights, rotations and justifications, and the DASHED panel
box. Its blocks and the DASHED linetype come from the host's resources
(the same drawing files and ACAD.LIN that vorhost reads).

It is written the way a competent script would be: straight from the
schedule to the entities, each field read once, no intermediate drawing.
The entities are built here from the schedule's fields by the drawing's
rules, not copied from vorhost's output; run.py compares the two files.
"""
import os
import sys

import ezdxf
from ezdxf.addons import Importer
from ezdxf.enums import TextEntityAlignment

T = 25.0                      # panel text height
PITCH = 250.0                 # between branches
BREAKER_GAP = 100.0           # main breaker below the start point
BUS_DEPTH = 400.0
BOX_LEFT, BOX_RIGHT, BOX_BELOW, BOX_ABOVE = 150.0, 250.0, 315.0, 350.0
BRANCH = 1000.0
BREAKER_AT, BREAKER_END, DEVICE_AT, DEVICE_END = 100.0, 200.0, 227.5, 287.5
SHUNT_AT, SECOND_AT, SECOND_END = 424.35, 462.5, 562.5
LABEL_AT, SYMBOL_TEXT_1, SYMBOL_TEXT_2, DESCRIPTION_AT = 680.0, 1030.0, 1090.0, 1180.0
COLUMN_HEIGHT, COLUMN_GAP = 50.0, 20.0
LINE_SPACING = 5.0 / 3.0      # the host's TEXT under the previous one
BLOCKS = ("NFB--", "MS--", "Y3--", "SP--", "$RECT", "$CIRCLE")
BREAKER_TAGS = ("AF", "AT", "P", "IC")  # the prompt order of NFB--

LEFT = TextEntityAlignment.LEFT
RIGHT = TextEntityAlignment.RIGHT
MIDDLE = TextEntityAlignment.MIDDLE
BOTTOM_CENTER = TextEntityAlignment.BOTTOM_CENTER


# ---- Schedules --------------------------------------------------------------

def read_schedule(path):
    """The kept lines of a schedule as bytes: text mode (CR LF, 0x1A ends
    the file), lines of at most 255 bytes, lines without a word dropped."""
    with open(path, "rb") as f:
        data = f.read()
    end = data.find(b"\x1a")
    if end >= 0:
        data = data[:end]
    lines = []
    for raw in data.split(b"\n"):
        if raw.endswith(b"\r"):
            raw = raw[:-1]
        for at in range(0, max(len(raw), 1), 255):
            piece = raw[at:at + 255]
            if piece.split():
                lines.append(piece)
    return lines


def field(line, index):
    """Field index of a line: trimmed of spaces, the file's diameter byte
    0xED written as the host's %%c. (No field of a schedule comes near the
    255 bytes at which the module cuts.)"""
    at = 0
    for _ in range(index):
        at = line.find(b";", at)
        if at < 0:
            return b""
        at += 1
    return line[at:at + 255].split(b";", 1)[0].strip(b" ").replace(b"\xed", b"%%c")


def size_text(size):
    space = size.find(b" ")
    if space < 0:
        return size
    return b"%%o" + size[:space] + b"%%o" if size[space + 1:] == b"mm" else size[:space]


def cable_label(size, count, earth, conduit, suffix):
    parts = b""
    if size:
        parts = size_text(size)
        if count != b"1":
            parts += b"x" + count
    if earth:
        parts += (b",E" if parts else b"E") + size_text(earth)
    if conduit:
        parts += (b",%%c" if parts else b"%%c") + conduit + suffix
    return b"(" + parts + b")" if parts else b""


def is_big5_pair(text, i):
    return (i + 1 < len(text) and 0x81 <= text[i] <= 0xFE and
            (0x40 <= text[i + 1] <= 0x7E or 0xA1 <= text[i + 1] <= 0xFE))


def cells(text):
    """Characters of a vertical text, as the host measures its box: a Big5
    character or an ASCII one is a cell, %%c and %%nnn one, %%o and %%u none."""
    n = i = 0
    while i < len(text):
        if text[i:i + 2] == b"%%" and i + 2 < len(text):
            c = text[i + 2:i + 3]
            if c in (b"o", b"O", b"u", b"U"):
                i += 3
                continue
            j = i + 2
            while j < len(text) and j < i + 5 and text[j:j + 1].isdigit():
                j += 1
            i = j if j > i + 2 else i + 3
            n += 1
            continue
        i += 2 if is_big5_pair(text, i) else 1
        n += 1
    return n


# ---- The drawing ------------------------------------------------------------

class Panels:
    def __init__(self, resources):
        self.doc = ezdxf.new("R12", setup=False)
        self.doc.encoding = "cp950"  # written as $DWGCODEPAGE ANSI_950
        self.doc.header["$LTSCALE"] = 100.0  # the box's dashes
        self.doc.styles.new("ROMANSAEH", dxfattribs={"font": "ROMANS", "bigfont": "AE"})
        self.doc.styles.new("ROMANSAEV", dxfattribs={"font": "ROMANS", "bigfont": "AE", "flags": 4})
        self.doc.linetypes.new("DASHED", dxfattribs=dashed(os.path.join(resources, "ACAD.LIN")))
        for name in BLOCKS:
            source = ezdxf.readfile(os.path.join(resources, name + ".DXF"))
            block = self.doc.blocks.new(name, base_point=source.header.get("$INSBASE", (0, 0, 0)))
            importer = Importer(source, self.doc)
            importer.import_entities(source.modelspace(), block)
            importer.finalize()
        self.msp = self.doc.modelspace()

    def text(self, p, height, rotation, text, style="ROMANSAEH", align=LEFT):
        if not text:  # the host's TEXT writes nothing for an empty answer
            return None
        t = self.msp.add_text(text.decode("cp950"),
                              dxfattribs={"height": height, "rotation": rotation, "style": style})
        return t.set_placement(p, align=align)

    def pline(self, a, b):
        self.msp.add_polyline2d([(a[0], a[1], 5, 5, 0), (b[0], b[1], 5, 5, 0)], format="xyseb")

    def line(self, a, b, linetype=None):
        self.msp.add_line(a, b, dxfattribs={"linetype": linetype} if linetype else {})

    def insert(self, name, p, values=()):
        ref = self.msp.add_blockref(name, p, dxfattribs={"xscale": 1, "yscale": 1, "rotation": 0})
        if values:
            tags = BREAKER_TAGS if name == "NFB--" else ("LABEL",)
            ref.add_auto_attribs({tag: v.decode("cp950") for tag, v in zip(tags, values)})

    def column_text(self, x, y, z, text):
        """The circuit's description, reading down: ASCII runs horizontal,
        Big5 runs (with the spaces around them) vertical."""
        q = [x, y, z]

        def run(start, end, vertical, last):
            if start != 0:
                q[1] -= COLUMN_GAP
            part = text[start:end]
            if not vertical:
                q[1] -= COLUMN_HEIGHT
                self.text(tuple(q), COLUMN_HEIGHT, 0, part, align=BOTTOM_CENTER)
                return
            self.text(tuple(q), COLUMN_HEIGHT, 270, part, style="ROMANSAEV")
            if not last:
                q[1] -= COLUMN_HEIGHT * cells(part)

        if not text:
            return
        mode, start, i, n = None, None, 0, len(text)
        while i < n:
            if text[i] >= 0x80:
                if mode == "h":
                    e = i
                    while e > start and text[e - 1] == 0x20:
                        e -= 1
                    if e > start:
                        run(start, e, False, False)
                    start = e if e < i else None
                mode = "v"
                if start is None:
                    start = i
                i += 2
                continue
            if mode == "v":
                if text[i] == 0x20:
                    i += 1
                    continue
                run(start, i, True, False)
                start = None
            mode = "h"
            if start is None:
                start = i
            i += 1
        run(start, n, mode == "v", True)

    def circuit(self, line, x, bus, z):
        at = lambda depth: (x, bus - depth, z)  # noqa: E731
        breaker = [field(line, k) for k in (3, 4, 5, 6)]
        self.line(at(0), at(BREAKER_AT))
        self.insert("NFB--", at(BREAKER_AT), breaker)
        device, second = field(line, 12)[:1], field(line, 14)[:1] == b"Y"
        run_end = SECOND_AT if second else BRANCH
        if device in (b"M", b"Y"):
            self.line(at(BREAKER_END), at(DEVICE_AT))
            self.insert("MS--" if device == b"M" else "Y3--", at(DEVICE_AT), [field(line, 13)])
            self.line(at(DEVICE_END), at(run_end))
        else:
            self.line(at(BREAKER_END), at(run_end))
        if second:
            self.insert("NFB--", at(SECOND_AT), breaker)
            self.insert("SP--", at(SHUNT_AT), [field(line, 15)])
            self.line(at(SECOND_END), at(BRANCH))
        symbol = field(line, 16)[:1]
        if symbol in (b"R", b"C"):
            self.insert("$RECT" if symbol == b"R" else "$CIRCLE", at(BRANCH))
            self.text(at(SYMBOL_TEXT_1), T, 0, field(line, 18), align=MIDDLE)
            self.text(at(SYMBOL_TEXT_2), T, 0, field(line, 19), align=MIDDLE)
        label = cable_label(field(line, 7), field(line, 8), field(line, 11), field(line, 10), field(line, 9))
        self.text((x + T, bus - LABEL_AT, z), T, -90, label)
        self.column_text(x, bus - DESCRIPTION_AT, z, field(line, 0))

    def panel(self, lines, px, py, z=0.0):
        header, totals, circuits = lines[0], lines[-1], lines[1:-1]
        width = PITCH * (len(circuits) - 1)
        left, right, bus = px - width / 2, px + width / 2, py - BUS_DEPTH
        self.text((px + T, py, z), T, 0, field(header, 1))
        self.pline((px, py), (px, py - BREAKER_GAP))
        self.insert("NFB--", (px, py - BREAKER_GAP, z), [field(totals, k) for k in (3, 4, 5, 6)])
        self.pline((px, py - 2 * BREAKER_GAP), (px, bus))
        if width > 0:
            self.pline((left, bus), (right, bus))
        corners = [(left - BOX_LEFT, bus - BOX_BELOW, z), (right + BOX_RIGHT, bus - BOX_BELOW, z),
                   (right + BOX_RIGHT, bus + BOX_ABOVE, z), (left - BOX_LEFT, bus + BOX_ABOVE, z)]
        for k in range(4):
            self.line(corners[k], corners[(k + 1) % 4], "DASHED")
        top = bus + BOX_ABOVE - 1.5 * T
        self.text((left - BOX_LEFT + T, top, z), T, 0, b"Total:" + field(totals, 1) + b"VA")
        self.text((left - BOX_LEFT + T, top - T * LINE_SPACING, z), T, 0, b"IC:" + field(totals, 6))
        corner = field(header, 0)
        self.text((right + BOX_RIGHT - T, top, z), T, 0, corner[6:], align=RIGHT)
        for k, line in enumerate(circuits):
            self.circuit(line, left + PITCH * k, bus, z)


def dashed(lin_path):
    """DASHED as ACAD.LIN defines it, for the LTYPE table."""
    with open(lin_path, encoding="latin-1") as f:
        lines = f.read().splitlines()
    for k, line in enumerate(lines):
        if line.upper().startswith("*DASHED,"):
            dashes = [float(v) for v in lines[k + 1].split(",")[1:]]
            return {"description": line.split(",", 1)[1],
                    "pattern": [sum(abs(d) for d in dashes)] + dashes}
    raise SystemExit("peer.py: no DASHED in " + lin_path)


def main(argv):
    if len(argv) != 5:
        sys.stderr.write("usage: peer.py SCHEDULE_DIR POINTS RESOURCES OUT.dxf\n")
        return 2
    schedule_dir, points_path, resources, out = argv[1:]
    names = sorted((n for n in os.listdir(schedule_dir) if n.upper().endswith(".ACF")),
                   key=lambda n: n.encode())
    with open(points_path) as f:
        points = [tuple(float(v) for v in line.split(",")) for line in f if line.strip()]
    panels = Panels(resources)
    for name, (x, y) in zip(names, points):
        lines = read_schedule(os.path.join(schedule_dir, name))
        if len(lines) >= 3:
            panels.panel(lines, x, y)
    panels.doc.saveas(out)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
