"""WEB2PDF_DEADLINE: whatever hangs, the run ends in time, with one answer or with none."""

import os
import subprocess
import time
import unittest

import engine
from pages import acting, page
from test_stored_pdf import stored
from tool import TOOL_DOMAIN, ToolTestCase, read_result

URL_ERRORS = "NSURLErrorDomain"
SIMPLE = page("<p>Simple</p>")
# The tool's second after the deadline, and two for a busy machine.
SLACK = 3


def large_pdf(size):
    """A file with a stream that is not compressed again, which takes time to write."""
    objects = [b"<</Type/Catalog/Pages 2 0 R>>", b"<</Type/Pages/Kids[3 0 R]/Count 1>>",
               b"<</Type/Page/Parent 2 0 R/MediaBox[0 0 300 400]/Resources<</XObject<</I 4 0 R>>>>>>",
               b"<</Type/XObject/Subtype/Image/Width 1/Height 1/ColorSpace/DeviceGray/BitsPerComponent 8"
               b"/Filter/DCTDecode/Length %d>>\nstream\n" % size + bytes(size) + b"\nendstream"]
    file, table = b"%PDF-1.4\n", b"0000000000 65535 f \n"
    for number, text in enumerate(objects, 1):
        table += b"%010d 00000 n \n" % len(file)
        file += b"%d 0 obj\n%s\nendobj\n" % (number, text)
    count = len(objects) + 1
    return b"%sxref\n0 %d\n%strailer\n<</Size %d/Root 1 0 R>>\nstartxref\n%d\n%%%%EOF\n" % (
        file, count, table, count, len(file))


class DeadlineTests(ToolTestCase):
    def in_time(self, seconds, *arguments, **environment):
        """Runs the tool, which ends at the deadline."""
        start = time.monotonic()
        run = self.run_tool(*arguments, environment=self.environment(WEB2PDF_DEADLINE=seconds, **environment),
                            timeout=seconds + 20, seconds_to_end=SLACK)
        took = time.monotonic() - start
        self.assertGreaterEqual(took, seconds)
        self.assertLess(took, seconds + SLACK, run.log.text)
        return run

    def assert_timed_out(self, run):
        self.assert_failure(run, URL_ERRORS, -1001, {"NSLocalizedDescription": "The deadline has passed."},
                            "The deadline has passed.")
        self.assertEqual(os.listdir(self.folder / "out"), [])
        self.assertIn("Code=-1001", run.log.messages[-1])

    def convert_in_time(self, seconds, archive, **environment):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        self.assert_timed_out(self.in_time(seconds, "screen", self.archive_file(archive),
                                           self.folder / "out" / "page.pdf", "uid", **environment))

    def test_page_that_never_stops_loading(self):
        self.convert_in_time(3, acting("for (;;);"))

    def test_page_that_never_rests(self):
        self.set_preferences({"WebToolExtraLoadingTime": 600})
        self.assert_timed_out(self.in_time(3.5, "screen", self.archive_file(SIMPLE),
                                           self.folder / "out" / "page.pdf", "uid"))

    def test_engine_that_hangs_at_its_start(self):
        self.convert_in_time(1, SIMPLE, WEB2PDF_ENGINE=self.script("engine", engine.NEVER_ANSWERS))

    def test_huge_property_list(self):
        """Of a million elements and more, which take seconds to read."""
        many = b"<plist version='1.0'><array>" + b"<array/>" * 4_000_000 + b"</array></plist>"
        self.convert_in_time(0.5, many)

    def test_answer_goes_to_the_file(self):
        answer = self.folder / "answer.plist"
        run = self.in_time(1, "screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf", "uid",
                           OutPath=answer, WEB2PDF_ENGINE=self.script("engine", engine.NEVER_ANSWERS))
        self.assertEqual(run.answer, b"")
        self.assertFalse(read_result(answer.read_bytes())["succeeded"])

    def test_run_that_ends_in_time_is_not_disturbed(self):
        run = self.convert(SIMPLE, environment=self.environment(WEB2PDF_DEADLINE=80))
        self.assertIn("Simple", run.pdf.text())

    def test_what_is_no_number_is_no_deadline(self):
        for text in ("soon", "-1", "0", ""):
            with self.subTest(text):
                run = self.run_tool("screen", environment=self.environment(WEB2PDF_DEADLINE=text))
                self.assert_failure(run, TOOL_DOMAIN, 1)
                self.assertEqual(run.log.messages[0], f"WEB2PDF_DEADLINE is no positive number of seconds: {text}")

    def test_nobody_reads_the_answer(self):
        """The pipe is full before the tool writes to it, by its run or at its deadline."""
        for arguments, options in ((["screen"], {}),
                                   (["screen", self.archive_file(SIMPLE), str(self.folder / "out" / "a.pdf"), "uid"],
                                    {"WEB2PDF_ENGINE": self.script("engine", engine.NEVER_ANSWERS)})):
            with self.subTest(arguments):
                reader, writer = os.pipe()
                os.set_blocking(writer, False)
                try:
                    while True:
                        os.write(writer, bytes(4096))
                except BlockingIOError:
                    os.set_blocking(writer, True)
                start = time.monotonic()
                done = subprocess.run([os.environ["WEB2PDF_TOOL"], *arguments], stdin=subprocess.DEVNULL, stdout=writer,
                                      stderr=subprocess.PIPE, timeout=30,
                                      env=self.environment(WEB2PDF_DEADLINE=1, **options))
                self.assertEqual(done.returncode, 0, done.stderr)
                self.assertLess(time.monotonic() - start, 1 + SLACK)
                os.close(writer)
                with open(reader, "rb") as unread:
                    self.assertEqual(unread.read().strip(b"\0"), b"", "a part of an answer")
                self.assert_nothing_left()

    def test_strikes_while_a_large_document_is_written(self):
        """At one moment after the other: the old file stays, or the new one is there as a whole."""
        old = b"old contents"
        size = 60_000_000
        archive = self.archive_file(stored(large_pdf(size)))
        path = self.folder / "out" / "page.pdf"
        endings = set()
        for step in range(1, 9):
            path.write_bytes(old)
            start = time.monotonic()
            run = self.run_tool("screen", archive, path, "uid", output=str(path),
                                environment=self.environment(WEB2PDF_DEADLINE=step / 10), seconds_to_end=SLACK)
            self.assertLess(time.monotonic() - start, step / 10 + SLACK)
            endings.add(run.result["succeeded"])
            self.assertEqual(os.listdir(self.folder / "out"), ["page.pdf"])
            contents = path.read_bytes()
            if run.result["succeeded"] or contents != old:
                self.assertGreater(len(contents), size)
                self.assertTrue(contents.endswith(b"%%EOF\n"))
            if not run.result["succeeded"]:
                self.assertEqual((run.error.domain, run.error.code), (URL_ERRORS, -1001))
        self.assertIn(False, endings, "no deadline struck")


if __name__ == "__main__":
    unittest.main()
