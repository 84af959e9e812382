"""Engines that fail at each stage of a conversion: the tool answers, in time, and nothing is left.

Each row is a stage, a fault and what must come of it: an error's domain and code, or None for a success.
"""

import concurrent.futures
import time
import unittest

import faults
from pages import SITE, page
from tool import ToolTestCase, read_result
from keyedarchive import read_error

LOST = ("NSURLErrorDomain", -1005)
LATE = ("NSURLErrorDomain", -1001)
UNPRINTED = ("NSCocoaErrorDomain", 512)
STAGES = tuple(faults.STAGES)
DRAWING = ("wait", "measure", "style", "print")     # what fails once the page has loaded is a failed print
AT_ONCE = 10    # seconds that a conversion may take on a machine that has much else to do, and its fault
PATIENCE = 30   # of the tool with an engine that does not answer, in seconds


class FaultsTestCase(ToolTestCase):
    def assert_outcomes(self, rows, seconds, **environment):
        """Several conversions at a time, since most of them wait."""
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        archive = self.archive_file(page(f"<p>Text<img src={SITE}missing.png>"))

        def convert(number):
            stage, fault, _ = rows[number]
            name = f"{number}-engine"
            output = self.folder / "out" / f"{number}.pdf"
            start = time.monotonic()
            child = self.start("screen", archive, output, "uid", environment=self.environment(
                WEB2PDF_ENGINE=self.script(name, faults.at(stage, fault)), **environment))
            answer, log = child.communicate(timeout=seconds + 60)
            return child.returncode, answer, log.decode(), time.monotonic() - start

        with concurrent.futures.ThreadPoolExecutor(4) as pool:
            ended = list(pool.map(convert, range(len(rows))))
        for (stage, fault, expected), (status, answer, log, took) in zip(rows, ended):
            with self.subTest(stage, fault=fault.strip()):
                self.assertEqual(status, 0, log)
                result = read_result(answer)
                error = None if result["succeeded"] else read_error(result["errorData"])
                outcome = error and (error.domain, error.code)
                self.assertIn(outcome, expected if isinstance(expected, set) else {expected}, log)
                self.assertLess(took, seconds, log)
        self.assert_nothing_left()

    def rows(self, fault, expected, **others):
        return [(stage, fault, others.get(stage, expected)) for stage in STAGES]

    def lost_at_each_stage(self, fault, **others):
        return self.rows(fault, LOST, **{**dict.fromkeys(DRAWING, UNPRINTED), **others})


class EngineEndsTests(FaultsTestCase):
    """-1005 until the page has loaded."""

    def test_dies(self):
        self.assert_outcomes(self.lost_at_each_stage(faults.DIES), 4 * AT_ONCE)

    def test_exits(self):
        self.assert_outcomes(self.lost_at_each_stage(faults.EXITS), 4 * AT_ONCE)

    def test_closes_its_connection(self):
        self.assert_outcomes(self.lost_at_each_stage(faults.CLOSES), 4 * AT_ONCE)

    def test_breaks_off_within_a_message(self):
        self.assert_outcomes(self.lost_at_each_stage(faults.TRUNCATED), 4 * AT_ONCE)


class EngineHangsTests(FaultsTestCase):
    """A browser process that does not answer. What the page has to answer may be given up before."""

    def test_hangs(self):
        self.assert_outcomes(self.lost_at_each_stage(faults.HANGS, start=LATE, attach=LATE, title=UNPRINTED),
                             PATIENCE + 4 * AT_ONCE, WEB2PDF_ENGINE_START_TIMEOUT=5)

    def test_talks_without_end(self):
        rows = [("document", faults.ENDLESS_FLOOD, LOST), ("print", faults.ENDLESS_FLOOD, UNPRINTED)]
        self.assert_outcomes(rows, PATIENCE + 6 * AT_ONCE)


class EngineTalksNonsenseTests(FaultsTestCase):
    """What is no message, or none that was asked for, does not count."""

    def test_garbage(self):
        self.assert_outcomes(self.rows(faults.GARBAGE, None), 4 * AT_ONCE)

    def test_answers_that_nobody_asked_for(self):
        self.assert_outcomes(self.rows(faults.STRANGERS, None), 4 * AT_ONCE)

    def test_everything_three_times(self):
        self.assert_outcomes(self.rows(faults.REPEATED, None), 4 * AT_ONCE)

    def test_pairs_in_the_wrong_order(self):
        self.assert_outcomes(self.rows(faults.REORDERED, {None, LOST, UNPRINTED}), PATIENCE + 4 * AT_ONCE)

    def test_flood_of_events(self):
        self.assert_outcomes(self.rows(faults.FLOOD, None), 6 * AT_ONCE)

    def test_wrong_types(self):
        # Not while the page loads: events that say nothing are those of a page that never ends to load.
        rows = [("start", faults.WRONG_TYPES, LATE), ("attach", faults.WRONG_TYPES, {LATE, LOST})]
        rows += [(stage, faults.WRONG_TYPES, {None, UNPRINTED})
                 for stage in ("title", "wait", "measure", "style", "print")]
        self.assert_outcomes(rows, PATIENCE + 4 * AT_ONCE, WEB2PDF_ENGINE_START_TIMEOUT=5)

    def test_message_without_end(self):
        self.assert_outcomes([("document", faults.OVERSIZED, LOST)], 6 * AT_ONCE)


class BadPDFTests(FaultsTestCase):
    """What comes in the place of the PDF."""

    def test_no_pdf(self):
        rows = [("print", faults.answers(result), UNPRINTED) for result in (
            "{}", "[]", "None", "'text'", "{'data': 1}", "{'data': None}", "{'data': '!!!'}", "{'data': 'AAA'}",
            "{'data': ''}", "{'data': 'bm8gUERG'}", "{'data': 'JVBERi0xLjQK'}", "{'data': 'A' * (64 << 20)}")]
        self.assert_outcomes(rows, 4 * AT_ONCE)


if __name__ == "__main__":
    unittest.main()
