#!/usr/bin/python3
"""run.py - VOR_ACF measured side by side with a peer and a floor.

    bench/acf_peer/run.py [--files 100] [--circuits 40] [--notes 1000]
                          [--repeat 3] [--build build-rel] [--keep DIR]

Generates the data set (acf_make_data: FILES schedules of CIRCUITS circuits
in C:\\ACF\\, Big5 like a designer's, and C:\\VOR\\FILE_CON.DAT with a note
for each among NOTES lines), then runs, REPEAT times each, and keeps the
median:

- vorhost: the script acf.vor (the browser on C:\\ACF\\, "all", OK, one
  start point per file) with --save, so the whole program is timed: start,
  module load, the browser's listing, drawing through the host's commands,
  the DXF file written and flushed to the disk, exit. Wall and CPU time
  (user and system) of the process, and its peak resident memory, from
  wait4.
- the peer: peer.py, a script of our own on ezdxf that reads the same
  schedules and writes the same entities, timed the same way (the Python
  interpreter's start and ezdxf's import included: they are part of running
  such a script). It does not flush its file to the disk; vorhost does.
- the floor: acf_floor, the least any program must do: find and read the
  schedules, split them into lines and fields, and write vorhost's DXF
  bytes the way vorhost writes them (a temporary file, flushed, renamed).
  The bytes are loaded before its clock starts, as output that costs
  nothing to compute; it times itself, so its process start is left out.
  Making the bytes is the whole of the job it does not do, so "within N
  times the floor" says how much the drawing and formatting cost on top of
  the input and output no program can avoid.

Then it checks that vorhost's and the peer's drawings hold the same
entities (read with ezdxf: types, layers, linetypes, points rounded to
0.001, texts with their styles, heights, rotations and justifications,
block names with their attribute values, polyline vertices with their
widths) and that the floor wrote vorhost's bytes, and prints the times,
the ratios against the goals, and vorhost's peak memory. Exit status 1 when
the drawings differ or a program fails, 0 otherwise (goals not met are
reported, not failed).

Build first: cmake -S . -B build-rel -G Ninja -DCMAKE_BUILD_TYPE=Release
-DVOR_BENCH=ON && cmake --build build-rel
"""
import argparse
import collections
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = os.path.dirname(os.path.abspath(__file__))
SOURCE = os.path.dirname(os.path.dirname(HERE))

# Goals for the set of 100 schedules of 40 circuits.
GOAL_SET = (100, 40)
PEER_FACTOR_GOAL = 20.0
FLOOR_FACTOR_GOAL = 5.0
MEMORY_GOAL_MB = 32.0


class Run:
    """One program run: wall and CPU seconds, peak resident memory."""

    def __init__(self, wall, cpu, peak_kb, out):
        self.wall, self.cpu, self.peak_kb, self.out = wall, cpu, peak_kb, out


def timed(argv, cwd=None):
    """Runs argv to its end; exits when it fails."""
    start = time.perf_counter()
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        proc = subprocess.Popen(argv, cwd=cwd, stdout=out, stderr=err)
        _, status, usage = os.wait4(proc.pid, 0)
        wall = time.perf_counter() - start
        proc.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        text, errors = out.read().decode(errors="replace"), err.read().decode(errors="replace")
    if proc.returncode != 0:
        sys.exit("%s failed (%d): %s%s" % (os.path.basename(argv[0]), proc.returncode, errors, text[-2000:]))
    return Run(wall, usage.ru_utime + usage.ru_stime, usage.ru_maxrss, text)


def median_run(runs):
    return Run(statistics.median(r.wall for r in runs), statistics.median(r.cpu for r in runs),
               max(r.peak_kb for r in runs), runs[-1].out)


# ---- Comparing the drawings ---------------------------------------------------

def r(v):
    return round(float(v), 3) + 0.0  # no -0.0


def point(p):
    return (r(p[0]), r(p[1]), r(p[2]) if len(p) > 2 else 0.0)


def entity_key(e):
    """What must agree between the two drawings, for one entity."""
    t = e.dxftype()
    common = (t, e.dxf.layer, e.dxf.get("linetype", "BYLAYER").upper())
    if t == "LINE":
        return common + (point(e.dxf.start), point(e.dxf.end))
    if t == "POLYLINE":
        sw, ew = e.dxf.get("default_start_width", 0), e.dxf.get("default_end_width", 0)
        return common + (e.is_closed, tuple(
            (point(v.dxf.location), r(v.dxf.get("start_width", sw)), r(v.dxf.get("end_width", ew)),
             r(v.dxf.get("bulge", 0))) for v in e.vertices))
    if t == "TEXT":
        h, v = e.dxf.get("halign", 0), e.dxf.get("valign", 0)
        # The point the text was given: the alignment point when justified
        # (the insertion point then follows from the font, the host's).
        at = e.dxf.align_point if (h or v) else e.dxf.insert
        return common + (e.dxf.text, e.dxf.style.upper(), r(e.dxf.height), r(e.dxf.rotation % 360), h, v,
                         point(at))
    if t == "INSERT":
        return common + (e.dxf.name, point(e.dxf.insert), r(e.dxf.get("xscale", 1)), r(e.dxf.get("yscale", 1)),
                         r(e.dxf.get("rotation", 0)), tuple((a.dxf.tag, a.dxf.text) for a in e.attribs))
    return common + (str(e.dxf.handle),)  # anything else never matches


def drawing_settings(doc, keys):
    """What the texts' styles and the dashes depend on: the definitions of
    the styles the texts use, and LTSCALE."""
    used = sorted({k[4] for k in keys if k[0] == "TEXT"})
    styles = []
    for name in used:
        s = doc.styles.get(name)
        styles.append((name, s.dxf.font.upper(), s.dxf.get("bigfont", "").upper(), s.dxf.flags,
                       r(s.dxf.height), r(s.dxf.width)) if s else (name, None))
    return styles, r(doc.header.get("$LTSCALE", 1))


def compare(ours_path, peer_path):
    """None when the drawings hold the same entities in the same order, else
    a description of the first differences."""
    import ezdxf  # only here: the timing runs do not pay for it
    ours_doc, peer_doc = ezdxf.readfile(ours_path), ezdxf.readfile(peer_path)
    ours = [entity_key(e) for e in ours_doc.modelspace()]
    peer = [entity_key(e) for e in peer_doc.modelspace()]
    settings = [drawing_settings(ours_doc, ours), drawing_settings(peer_doc, ours)]
    if ours == peer and settings[0] == settings[1]:
        return None, len(ours), collections.Counter(k[0] for k in ours)
    lines = ["vorhost has %d entities, the peer %d" % (len(ours), len(peer))]
    if settings[0] != settings[1]:
        lines.append("the settings differ:\n  vorhost %r\n  peer    %r" % tuple(settings))
    for k, (a, b) in enumerate(zip(ours, peer)):
        if a != b:
            lines.append("first difference at entity %d:\n  vorhost %r\n  peer    %r" % (k, a, b))
            break
    missing = collections.Counter(ours) - collections.Counter(peer)
    extra = collections.Counter(peer) - collections.Counter(ours)
    for what, diff in (("only in vorhost's", missing), ("only in the peer's", extra)):
        for key, n in list(diff.items())[:5]:
            lines.append("%s (%d): %r" % (what, n, key))
    return "\n".join(lines), len(ours), None


# ---- The report -------------------------------------------------------------------

def row(name, run, cpu_note=""):
    return "  %-8s wall %8.3f s   cpu %8.3f s%s" % (name, run.wall, run.cpu, cpu_note)


def goal(text, ok):
    return "  %-58s %s" % (text, "met" if ok else "NOT met")


def main():
    ap = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    ap.add_argument("--files", type=int, default=100)
    ap.add_argument("--circuits", type=int, default=40)
    ap.add_argument("--notes", type=int, default=1000)
    ap.add_argument("--repeat", type=int, default=3)
    ap.add_argument("--build", default=os.path.join(SOURCE, "build-rel"))
    ap.add_argument("--keep", help="write the data and drawings here and keep them")
    args = ap.parse_args()

    build = os.path.abspath(args.build)
    vorhost = os.path.join(build, "bin", "vorhost")
    make_data = os.path.join(build, "bench", "acf_make_data")
    floor = os.path.join(build, "bench", "acf_floor")
    for program in (vorhost, make_data, floor):
        if not os.access(program, os.X_OK):
            sys.exit("run.py: no %s; build with -DVOR_BENCH=ON (see --help)" % program)

    work = args.keep or tempfile.mkdtemp(prefix="vor_acf_peer_")
    try:
        os.makedirs(work, exist_ok=True)
        subprocess.run([make_data, work, str(args.files), str(args.circuits), str(args.notes)], check=True)
        drive, acf = os.path.join(work, "c"), os.path.join(work, "c", "ACF")
        ours_dxf, peer_dxf, floor_dxf = (os.path.join(work, n) for n in ("vorhost.dxf", "peer.dxf", "floor.dxf"))

        ours = median_run([timed([vorhost, "--drive", "C=" + drive, "--save", ours_dxf, "acf.vor"], cwd=work)
                           for _ in range(args.repeat)])
        peer = median_run([timed([sys.executable, os.path.join(HERE, "peer.py"), acf,
                                  os.path.join(work, "points.txt"), os.path.join(SOURCE, "resources"), peer_dxf])
                           for _ in range(args.repeat)])
        floors = []
        for _ in range(args.repeat):
            words = timed([floor, acf, ours_dxf, floor_dxf]).out.split()
            floors.append(Run(float(words[1]), float(words[3]), 0, ""))
        low = median_run(floors)

        difference, entities, kinds = compare(ours_dxf, peer_dxf)
        with open(ours_dxf, "rb") as a, open(floor_dxf, "rb") as b:
            same_bytes = a.read() == b.read()

        size_mb = os.path.getsize(ours_dxf) / 1e6
        print("VOR_ACF over %d schedules of %d circuits (%d entities, DXF %.1f MB), median of %d runs"
              % (args.files, args.circuits, entities, size_mb, args.repeat))
        if kinds:
            print("  " + ", ".join("%s %d" % kv for kv in sorted(kinds.items())))
        print(row("vorhost", ours, "   peak %.1f MB" % (ours.peak_kb / 1024)))
        print(row("peer", peer, "   (ezdxf %s)" % ezdxf_version()))
        print(row("floor", low))
        print("  peer / vorhost:  wall %6.1f   cpu %6.1f" % (peer.wall / ours.wall, peer.cpu / ours.cpu))
        print("  vorhost / floor: wall %6.1f   cpu %6.1f" % (ours.wall / low.wall, ours.cpu / max(low.cpu, 1e-9)))
        if (args.files, args.circuits) == GOAL_SET:
            print(goal("at least %g times faster than the peer (cpu)" % PEER_FACTOR_GOAL,
                       peer.cpu / ours.cpu >= PEER_FACTOR_GOAL))
            print(goal("within %g times the floor (wall)" % FLOOR_FACTOR_GOAL,
                       ours.wall <= FLOOR_FACTOR_GOAL * low.wall))
            print(goal("peak memory at most %g MB" % MEMORY_GOAL_MB, ours.peak_kb / 1024 <= MEMORY_GOAL_MB))
        else:
            print("  (the goals are set for %d schedules of %d circuits)" % GOAL_SET)
        status = 0
        if difference:
            print("The drawings differ:\n" + difference)
            status = 1
        else:
            print("The drawings hold the same entities.")
        if not same_bytes:
            print("The floor did not write vorhost's bytes.")
            status = 1
        return status
    finally:
        if not args.keep:
            shutil.rmtree(work, ignore_errors=True)


def ezdxf_version():
    import ezdxf
    return ezdxf.__version__


if __name__ == "__main__":
    sys.exit(main())
