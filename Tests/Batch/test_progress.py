"""What people see of a run: a bar in a terminal, lines in a log."""

import fcntl
import os
import pty
import re
import struct
import termios
import threading
import time
import unicodedata

import fake_tool
from batch import FAILURE, HARMFUL, BatchTestCase
from test_sources import NAMES

ESCAPES = re.compile(r"\x1b\[(?:K|31m|32m|0m)")
SLOW = "/bin/sleep 0.4; convert"


def columns(text):
    """As many as a terminal gives to a text."""
    def of(sign):
        return 0 if unicodedata.combining(sign) else 2 if unicodedata.east_asian_width(sign) in "WF" else 1
    return sum(map(of, text))


class Terminal:
    """A terminal that notes what it is told."""

    def __init__(self, width):
        self.number, self.program = pty.openpty()
        self.text = b""
        self.resize(width)
        attributes = termios.tcgetattr(self.program)
        attributes[1] &= ~termios.OPOST
        termios.tcsetattr(self.program, termios.TCSANOW, attributes)
        self._reader = threading.Thread(target=self._read)
        self._reader.start()

    def resize(self, width):
        fcntl.ioctl(self.program, termios.TIOCSWINSZ, struct.pack("HHHH", 24, width, 0, 0))

    def _read(self):
        while True:
            try:
                part = os.read(self.number, 65536)
            except OSError:
                return
            if not part:
                return
            self.text += part

    def close(self):
        os.close(self.program)
        self._reader.join(20)
        os.close(self.number)

    @property
    def drawings(self):
        """What stood in the line, one after the other, and what was written above it."""
        return [part for part in self.text.decode().split("\r\x1b[K") if part]


class TerminalTestCase(BatchTestCase):
    def run_in_terminal(self, *arguments, width=80, status=0, meanwhile=None, **variables):
        terminal = Terminal(width)
        try:
            environment = self.environment(**{"TERM": "xterm", **variables})
            child = self.start_batch("in", *arguments, environment=environment, stdout=terminal.program)
            if meanwhile:
                meanwhile(terminal)
            _, errors = child.communicate(timeout=60)
            self.assertEqual((child.returncode, errors), (status, b""))
        finally:
            terminal.close()
        self.assert_nothing_left()
        return terminal


class BarTests(TerminalTestCase):
    def test_bar_tells_how_far_the_run_is(self):
        for number in range(6):
            self.archive(f"page{number}", SLOW)
        terminal = self.run_in_terminal("-j", 1, width=120)
        texts = [ESCAPES.sub("", drawing) for drawing in terminal.drawings]
        counts = [int(match.group(1)) for text in texts if (match := re.search(r"(\d+) of 6", text))]
        self.assertEqual(counts, sorted(counts))
        self.assertGreaterEqual(set(counts), {0, 2, 4})
        middle = next(text for text in texts if "3 of 6" in text)
        self.assertRegex(middle, r"^█{10}░{10}  50 % · 3 of 6 · \d\.\d/s · \d s left · in/page3\.webarchive$")
        self.assertRegex(texts[-1], r"^6 archives: 6 converted; \d s, \d\.\d a second\n$")
        self.assertIn("\x1b[32m█", terminal.text.decode())

    def test_failures_stand_above_the_bar(self):
        self.archive("a", fake_tool.fails("NSCocoaErrorDomain", 259))
        self.archive("b", SLOW)
        terminal = self.run_in_terminal("-j", 1, width=120, status=FAILURE)
        above = [drawing for drawing in terminal.drawings[:-1] if drawing.endswith("\n")]
        self.assertEqual(above, ["\x1b[31mfailed    in/a.webarchive: It failed. (NSCocoaErrorDomain 259)\x1b[0m\n"])
        self.assertTrue(any(" · \x1b[31m1 failed\x1b[0m · " in drawing for drawing in terminal.drawings))
        self.assertRegex(terminal.drawings[-1], "^2 archives: 1 converted, 1 failed; ")

    def assert_within(self, drawings, width):
        for drawing in drawings:
            if not drawing.endswith("\n"):
                self.assertLess(columns(ESCAPES.sub("", drawing)), max(width, 2), drawing)

    def test_width_of_the_terminal_is_kept(self):
        self.archive("日本" * 40, SLOW)
        self.archive("e\u0301" * 60 + "\u0300" * 20, SLOW)
        for width in (1, 2, 5, 21, 40, 79, 80, 200, 1000):
            with self.subTest(width):
                terminal = self.run_in_terminal("--no-resume", width=width)
                self.assert_within(terminal.drawings, width)
                self.assertRegex(terminal.drawings[-1], "^2 archives: 2 converted; ")

    def test_terminal_that_does_not_know_its_width(self):
        self.archive("n" * 200, SLOW)
        self.assert_within(self.run_in_terminal(width=0).drawings, 80)

    def test_width_that_changes(self):
        self.archive("n" * 200, "/bin/sleep 1.5; convert")
        cut = []

        def narrow(terminal):
            time.sleep(0.7)
            terminal.resize(30)
            time.sleep(0.3)
            cut.append(len(terminal.text))
        terminal = self.run_in_terminal(width=100, meanwhile=narrow)
        before, after = terminal.text[:cut[0]].decode(errors="replace"), terminal.text[cut[0]:].decode(errors="replace")
        self.assertTrue(any(columns(ESCAPES.sub("", part)) > 60 for part in before.split("\r\x1b[K")))
        drawings = after.split("\r\x1b[K")[1:]
        self.assertGreater(len(drawings), 2)
        self.assert_within(drawings, 30)

    def test_names_bring_no_escape_sequences(self):
        for name in NAMES:
            self.archive(name, "/bin/sleep 0.12; convert")
            self.archive(b"bad " + os.fsencode(name)[:200], fake_tool.fails("D\x9bm", 1, "\u202e\x9b31m\u2066"))
        terminal = self.run_in_terminal("-j", 1, width=200, status=FAILURE)
        self.assertIn(" · in/\ufffdturned.webarchive", terminal.text.decode())
        rest = ESCAPES.sub("", terminal.text.decode())
        for line in re.split("[\r\n]", rest):
            self.assertNotRegex(line, HARMFUL)

    def test_colours_are_not_for_everybody(self):
        self.archive("a", SLOW)
        self.archive("b", fake_tool.fails("D", 1))
        text = self.run_in_terminal(status=FAILURE, NO_COLOR="1").text
        self.assertIn(b"\x1b[K", text)
        self.assertNotIn(b"\x1b", text.replace(b"\x1b[K", b""))
        self.assertIn(b"\x1b[31m", self.run_in_terminal("--no-resume", status=FAILURE, NO_COLOR="").text)

    def test_terminal_that_cannot_move_its_cursor_gets_a_log(self):
        self.archive("a")
        for term in ("dumb", "", None):
            with self.subTest(term):
                text = self.run_in_terminal("--no-resume", TERM=term).text.decode()
                self.assertNotIn("\x1b", text)
                self.assertRegex(text, r"^\[1/1\] converted in/a\.webarchive ")

    def test_locale_without_unicode_gets_a_bar_without_it(self):
        self.archive("a", SLOW)
        text = self.run_in_terminal(LANG="C", LC_ALL="C", width=100).text
        self.assertRegex(text, rb"\.{20}   0 % - 0 of 1 - in/a\.webarchive")
        self.assertTrue(text.isascii())

    def test_quiet_in_a_terminal(self):
        self.archive("a", SLOW)
        self.assertEqual(self.run_in_terminal("-q").text, b"")

    def test_interruption_leaves_a_clean_line(self):
        self.archive("a", fake_tool.HANGS)
        self.archive("b", fake_tool.HANGS)
        terminal = Terminal(80)
        try:
            child = self.start_batch("in", "-j", 1, environment=self.environment(TERM="xterm"), stdout=terminal.program)
            self.wait_for(lambda: b"0 of 2" in terminal.text)
            child.terminate()
            child.wait(20)
        finally:
            terminal.close()
        self.assertEqual(child.returncode, 130)
        self.assertRegex(terminal.drawings[-1], "^2 archives: 0 converted, 2 left; . s\n$")


class LogTests(BatchTestCase):
    def test_line_for_each_archive_with_its_number(self):
        for number in range(9):
            self.archive(f"page{number}")
        self.archive("bad", fake_tool.fails("NSCocoaErrorDomain", 259))
        self.archive("poor", fake_tool.lacks(3))
        run = self.run_batch("in", "-j", 3, status=FAILURE)
        self.assertEqual(len(run.lines), 12)
        for number, line in enumerate(run.lines[:-1], 1):
            self.assertRegex(line, rf"^\[{number:2}/11\] (converted|failed   ) in/(page\d|bad|poor)\.webarchive[: ]")
        self.assertIn(", 3 missing)", run.output)
        again = self.run_batch("in", status=FAILURE)
        self.assertIn("skipped   in/page0.webarchive (converted before)", again.output)

    def test_lines_come_as_the_archives_are_done(self):
        self.archive("a")
        self.archive("b", "while [ ! -e go ]; do /bin/sleep 0.05; done; convert")
        child = self.start_batch("in", "-j", 1)
        self.assertRegex(child.stdout.readline(), rb"^\[1/2\] converted in/a\.webarchive ")
        (self.folder / "go").touch()
        self.end_of(child)

    def test_names_are_harmless(self):
        self.archives(*NAMES)
        run = self.run_batch("in")
        self.assertEqual(len(run.lines), len(NAMES) + 1)
