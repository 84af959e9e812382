"""The results: one JSON object a line, which tells all there is to tell."""

import os

import fake_tool
from batch import FAILURE, BatchTestCase, sha256
from test_sources import NAMES


class ResultsTests(BatchTestCase):
    def test_record_of_a_conversion(self):
        archive = self.archive("a")
        self.run_batch("in", "-m", "screen", "--attach")
        record, = self.lines_of()
        self.assertGreaterEqual(record.pop("milliseconds"), 0)
        self.assertRegex(record.pop("finished"), r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ$")
        self.assertEqual(record, {
            "archive": "in/a.webarchive", "sha256": sha256(archive), "mode": "screen", "wishes": "attach",
            "outcome": "converted", "pdf": "a.pdf", "pdf_sha256": sha256(self.output / "a.pdf"),
            "pdf_size": (self.output / "a.pdf").stat().st_size, "pages": None, "attempts": 1, "missing_count": 0,
            "missing": []})

    def test_record_of_a_failure(self):
        archive = self.archive("a", fake_tool.fails("NSCocoaErrorDomain", 259, "It is “none”."))
        self.run_batch("in", status=FAILURE)
        record, = self.lines_of()
        del record["milliseconds"], record["finished"]
        self.assertEqual(record, {
            "archive": "in/a.webarchive", "sha256": sha256(archive), "mode": "print", "wishes": "", "outcome": "failed",
            "error_domain": "NSCocoaErrorDomain", "error_code": 259, "error": "It is “none”.", "pdf": "a.pdf",
            "pdf_sha256": "", "pdf_size": 0, "pages": None, "attempts": 1, "missing_count": 0, "missing": []})

    def test_names_come_back(self):
        self.archives(*NAMES)
        self.run_batch("in")
        told = {(self.path_in(record, "archive"), self.path_in(record, "pdf")) for record in self.lines_of()}
        names = [os.fsdecode(os.fsencode(name)) for name in NAMES]
        self.assertEqual(told, {("in/" + name + ".webarchive", name + ".pdf") for name in names})
        with_bytes = [record["pdf"] for record in self.lines_of() if "pdf_bytes" in record]
        self.assertEqual(sorted(with_bytes), ["no\ufffd\ufffdutf8.pdf"])

    def test_results_hold_nothing_that_harms_a_terminal(self):
        self.archives(*NAMES)
        self.archive("bad", fake_tool.fails("D", 1, "\u202e \x9b \u2028"))
        self.run_batch("in", status=FAILURE)
        self.assertRegex((self.output / "web2pdf-batch.jsonl").read_bytes(), rb"\A([ -~]+\n)*\Z")

    def test_lines_are_appended_as_the_archives_are_done(self):
        self.archive("a")
        self.archive("b", "while [ ! -e go ]; do /bin/sleep 0.05; done; convert")
        child = self.start_batch("in", "-j", 1)
        self.wait_for(lambda: self.called_so_far() == 2)
        self.assertEqual([record["pdf"] for record in self.lines_of()], ["a.pdf"])
        (self.folder / "go").touch()
        self.end_of(child)
        self.assertEqual([record["pdf"] for record in self.lines_of()], ["a.pdf", "b.pdf"])

    def called_so_far(self):
        return len(self.calls.read_text().splitlines()) if self.calls.exists() else 0

    def test_more_attempts_take_more_time(self):
        self.archive("a", fake_tool.until(3, "/bin/sleep 0.5; exit 1"))
        self.run_batch("in")
        record, = self.lines_of()
        self.assertEqual(record["attempts"], 3)
        self.assertGreaterEqual(record["milliseconds"], 1000)
