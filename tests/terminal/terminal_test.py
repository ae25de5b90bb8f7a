#!/usr/bin/python3
"""vorhost played by a person at a pseudo-terminal: keys in, screen out.

Usage: terminal_test.py VORHOST EXAMPLE_DRIVE
"""
import os
import pty
import re
import select
import shutil
import signal
import sys
import tempfile
import time
import unittest

VORHOST = None
SEED = None
UP, LEFT, ESC, CTRL_C, CTRL_D, F1, TAB = "\x1b[A", "\x1b[D", "\x1b", "\x03", "\x04", "\x1bOP", "\t"


class Terminal:
    """One vorhost on a pseudo-terminal, with a fresh C: drive and home."""

    def __init__(self, work, *args):
        self.work = work
        self.drive = os.path.join(work, "c")
        os.makedirs(self.drive, exist_ok=True)
        env = dict(os.environ, TERM="xterm", LANG="C.UTF-8", HOME=work, NO_COLOR="1",
                   VORHOST_HISTORY=os.path.join(work, "history"), TZ="UTC")
        self.pid, self.fd = pty.fork()
        if self.pid == 0:
            os.chdir(self.drive)
            os.execve(VORHOST, [VORHOST, "--drive", "C=" + self.drive, *args], env)
        self.screen = ""
        self.seen = 0  # where the next expect starts looking
        self.status = None

    def send(self, keys, pause=0.15):
        os.write(self.fd, keys.encode())
        time.sleep(pause)  # lets Escape stand alone, as a person's does

    def line(self, text):
        self.send(text + "\r")

    def _read(self, timeout):
        ready, _, _ = select.select([self.fd], [], [], timeout)
        if not ready:
            return False
        try:
            data = os.read(self.fd, 65536)
        except OSError:
            data = b""
        if not data:
            return None
        self.screen += data.decode("utf-8", "replace")
        return True

    def expect(self, pattern, timeout=10):
        """Waits for pattern (a regular expression) after the last match."""
        end = time.time() + timeout
        while True:
            m = re.search(pattern, self.screen[self.seen:])
            if m:
                self.seen += m.end()
                return m
            left = end - time.time()
            if left <= 0 or self._read(left) is None:
                raise AssertionError("not seen: %r\n--- screen since the last match ---\n%s"
                                     % (pattern, self.screen[self.seen:]))

    def wait(self, timeout=10):
        """Waits for the program to end; its exit status."""
        end = time.time() + timeout
        while time.time() < end:
            pid, status = os.waitpid(self.pid, os.WNOHANG)
            if pid:
                self.status = os.waitstatus_to_exitcode(status)
                return self.status
            self._read(0.1)
        raise AssertionError("vorhost did not end\n" + self.screen[self.seen:])

    def alive(self):
        return os.waitpid(self.pid, os.WNOHANG)[0] == 0

    def close(self):
        if self.status is None:
            try:
                os.kill(self.pid, signal.SIGKILL)
                os.waitpid(self.pid, 0)
            except (ProcessLookupError, ChildProcessError):
                pass
        os.close(self.fd)


class TerminalTest(unittest.TestCase):
    def setUp(self):
        self.work = tempfile.mkdtemp(prefix="vorhost-terminal-")
        self.terms = []

    def tearDown(self):
        for t in self.terms:
            t.close()
        shutil.rmtree(self.work, ignore_errors=True)

    def start(self, *args, seed=False):
        if seed:
            shutil.copytree(SEED, os.path.join(self.work, "c"), dirs_exist_ok=True)
        t = Terminal(self.work, *args)
        self.terms.append(t)
        t.expect(r"vorhost \S+")
        t.expect("Command: ")
        return t

    # ---- the command line -------------------------------------------------

    def test_history_recalls_and_lasts(self):
        t = self.start()
        t.line("(+ 40 2)")
        t.expect(r"\n42")
        t.send(UP)
        t.line("")
        t.expect(r"\n42")
        t.send(CTRL_D)
        self.assertEqual(t.wait(), 0)
        with open(os.path.join(self.work, "history")) as f:
            self.assertIn("(+ 40 2)", f.read().splitlines())
        # The next session recalls the line of the last.
        t = self.start()
        t.send(UP)
        t.line("")
        t.expect(r"\n42")

    def test_tab_completes_a_command_and_escape_cancels_it(self):
        t = self.start()
        t.send("LIN" + TAB)
        t.line("")
        t.expect("From point: ")
        t.send(ESC)
        t.expect(r"\*Cancel\*")
        t.expect("Command: ")
        # Ctrl-C cancels too, and does not end the program.
        t.line("LINE")
        t.expect("From point: ")
        t.send(CTRL_C)
        t.expect(r"\*Cancel\*")
        # Ctrl-D inside a line deletes the character under the cursor.
        t.send("(+ 1 2X")
        t.send(LEFT)
        t.send(CTRL_D)
        t.line(")")
        t.expect(r"\n3\r?\n")
        self.assertTrue(t.alive())

    def test_help_and_a_line_big5_cannot_hold(self):
        t = self.start()
        t.send(F1)
        t.expect("Commands:")
        t.expect("QUIT")
        t.expect(r"\(VOR_ELINE\)")
        t.line("?")
        t.expect("Functions of the host:")
        t.line('(W1 "x" "Note")')
        t.expect("Note <x>: ")
        t.line("\U0001F600")
        t.expect("Big5 cannot hold")
        t.line("ok")
        t.expect(r'"ok"')

    def test_quit_asks_to_save_and_saves_on_yes(self):
        t = self.start()
        t.line("LINE")
        t.line("0,0")
        t.line("10,0")
        t.line("")
        t.line("")  # Enter at Command: draws another line
        t.expect("Command: \r?\nFrom point: ")
        t.line("0,5")
        t.line("10,5")
        t.line("")
        t.line("QUIT")
        t.expect(r"Save changes to C:\\DRAWING\.DXF\? <Y>: ")
        t.send(ESC)  # back to work
        t.expect("Command: ")
        t.line("EXIT")
        t.expect("Save changes to")
        t.line("y")
        self.assertEqual(t.wait(), 0)
        with open(os.path.join(self.work, "c", "DRAWING.DXF"), encoding="cp950") as f:
            self.assertEqual(f.read().count("\nLINE\n"), 2)

    def test_ctrl_d_quits_a_saved_drawing_without_asking(self):
        out = os.path.join(self.work, "out.dxf")
        t = self.start("--save", out)
        t.line("LINE")
        t.line("0,0")
        t.line("10,0")
        t.send(CTRL_D)  # in a command: cancels it
        t.expect(r"\*Cancel\*")
        t.line("QSAVE")
        t.expect("Saved " + re.escape(out))
        t.send(CTRL_D)
        self.assertEqual(t.wait(), 0)
        self.assertNotIn("Save changes", t.screen)

    def test_live_svg_follows_each_command(self):
        svg = os.path.join(self.work, "live.svg")
        t = self.start("--live", svg)
        with open(svg) as f:
            before = f.read()
        t.line("LINE")
        t.line("0,0")
        t.line("100,50")
        t.line("")
        t.expect("Command: ")
        t.line("(+ 1 1)")  # a line later, the file has surely been written
        t.expect(r"\n2")
        with open(svg) as f:
            self.assertNotEqual(before, f.read())

    # ---- dialogs ----------------------------------------------------------

    def test_dialog_missteps_are_explained_and_escape_cancels(self):
        t = self.start()
        t.line('(dcl_preview "VORMIS.DCL" "NUMBER_TOOL")')
        t.expect(r"\+= .*NUMBER_TOOL")
        t.expect("NUMBER_TOOL> ")
        t.line("slect edit 1")
        t.expect("not a dialog event")
        t.line("press nothing")
        t.expect('has no tile "nothing"')
        t.send(F1)
        t.expect(r"Tiles of NUMBER_TOOL")
        t.expect(r"\[2p\] \[entity\]")  # disabled, in brackets
        t.send("type ed" + TAB)
        t.line("12")
        t.expect(r"\[12 *\]\(edit\)")
        t.send(ESC)
        t.expect(r"\[Dialog NUMBER_TOOL closed: 0\]")
        t.expect("Command: ")
        self.assertTrue(t.alive())

    def test_run_types_dialog_drawn_with_chosen_row_and_disabled_tiles(self):
        t = self.start(seed=True)
        t.line('(setq VORMIS "C:/VOR")')
        t.send("(VOR_EL" + TAB)  # the module's function
        t.line(")")
        t.expect(r"\+= 管線定義 \(VOR_ELINE_0\)")
        t.expect(r"代號 +線型")           # the list's column headers
        t.expect(r"\n\|     0 E1 ")         # its rows, on the tab stops
        t.expect(r"-\[刪除\]\(del\)")
        t.line("press del")
        t.expect("is disabled")
        t.line("select eline 1")
        t.expect(r"\n\| >   1 ")
        t.line("cancel")
        t.expect(r"closed: 0")
        self.assertTrue(t.alive())


if __name__ == "__main__":
    VORHOST, SEED = os.path.abspath(sys.argv[1]), os.path.abspath(sys.argv[2])
    unittest.main(argv=sys.argv[:1] + sys.argv[3:], verbosity=1)
