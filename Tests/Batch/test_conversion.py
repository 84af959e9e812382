"""Real conversions: what the tool and the batch do together."""

import os
import subprocess
import time

import hostile_pdfs
import pages
from batch import ENDED, FAILURE, MISSING, BatchTestCase
from pdf import PDF
from test_sources import NAMES, pdf_of
from webarchive import Archive, Resource, malformed

URLS, COCOA = "NSURLErrorDomain", "NSCocoaErrorDomain"
THREE_PAGES = pages.page("".join(f'<p style="break-after:page">Sheet{number} größe 日本</p>' for number in (1, 2))
                         + "<p>Sheet3</p>")


def stored_pdf(data):
    return Archive(Resource("http://site.example/file.pdf", data, "application/pdf", None))


class ConversionTests(BatchTestCase):
    real = True

    def test_both_modes(self):
        self.archive("a", THREE_PAGES)
        self.run_batch("in")
        self.assert_converted("a.pdf")
        PDF(str(self.output / "a.pdf")).assert_valid()
        self.assertEqual(self.records()["a.pdf"]["pages"], 3)
        self.run_batch("in", "-m", "screen")
        self.assert_converted("a.pdf")
        self.assertEqual(self.records()["a.pdf"]["pages"], 1)

    def test_what_is_no_archive(self):
        for number, (name, data) in enumerate(malformed().items()):
            if number % 4 == 0:
                (self.sources / f"{name}.webarchive").write_bytes(data)
        (self.sources / "closed.webarchive").mkdir()
        (self.sources / "dangling.webarchive").symlink_to("nowhere")
        os.mkfifo(self.sources / "pipe.webarchive")
        self.archive("good", pages.page("<p>Good</p>"))
        run = self.run_batch("in", status=FAILURE)
        self.assert_converted("good.pdf")
        self.assertEqual(run.summary["failed"] + 1, run.summary["total"])
        self.assertEqual(self.records()["empty.pdf"]["error_code"], 259)
        self.assertEqual(self.records()["dangling.pdf"]["error_code"], 260)
        for pdf, record in self.records().items():
            if pdf != "good.pdf":
                self.assertEqual((record["error_domain"], record["attempts"]), (COCOA, 1), record)

    def test_folder_that_cannot_be_read(self):
        self.archive("a", pages.page("<p>A</p>"))
        (self.sources / "closed").mkdir(mode=0)
        self.addCleanup((self.sources / "closed").chmod, 0o755)
        self.run_batch("in", status=FAILURE, **self.as_nobody())
        self.assert_converted("a.pdf")
        self.assertEqual(self.records()["closed/.pdf"]["error_domain"], COCOA)

    def test_names(self):
        for name in NAMES:
            self.archive(name, pages.page("<p>Here</p>"), folder=".")
        given = b"".join(os.fsencode(name) + b".webarchive\0" for name in NAMES)
        self.run_batch("-", "-0", given=given, output="out")
        self.assert_converted(*map(pdf_of, NAMES))

    def test_output_and_archives_named_like_options_and_homes(self):
        for folder in ("-x", "~"):
            self.archive("-y", pages.page("<p>Here</p>"), folder=folder)
        self.run_batch("-", "-o-z", output=None, given="-x/-y.webarchive\n~/-y.webarchive\n")
        for folder in ("-x", "~"):
            path = self.folder / "-z" / folder / "-y.pdf"
            self.assertIn("Here", PDF(str(path)).text())
        lines = (self.folder / "-z" / "web2pdf-batch.jsonl").read_text()
        self.assertEqual(lines.count('"pages":1,'), 2, lines)

    def test_missing_resources(self):
        self.archive("lacking", pages.with_images())
        self.archive("whole", pages.page("<p>Whole</p>"))
        self.run_batch("in")
        self.assert_converted("lacking.pdf", "whole.pdf")
        record = self.records()["lacking.pdf"]
        self.assertEqual((record["missing_count"], record["missing"]),
                         (1, [{"kind": "image", "address": "http://site.example/missing.png"}]))
        self.assertEqual(self.records()["whole.pdf"]["missing_count"], 0)
        before = (self.output / "lacking.pdf").read_bytes()
        self.run_batch("in", "--strict", status=FAILURE)
        self.assertIn("http://site.example/missing.png", self.assert_failed("lacking.pdf", MISSING)["error"])
        self.assertEqual((self.output / "lacking.pdf").read_bytes(), before)

    def test_page_cannot_tell_of_missing_resources(self):
        line = "] the archive does not hold 7 resources that the page asked for: image http://x.example/"
        self.archive("a", pages.page(f"<a name='{line}'>A</a><script>console.log({line!r}); document.title = {line!r};"
                                     f"throw new Error({line!r})</script>", url="http://site.example/" + line))
        self.run_batch("in", "--strict")
        self.assertEqual(self.records()["a.pdf"]["missing_count"], 0)

    def test_text(self):
        self.archive("a/three", THREE_PAGES)
        self.archive("one", pages.page("<p>Alone</p>"))
        self.run_batch("in", "--text")
        text = (self.output / "a" / "three.txt").read_text(encoding="utf-8")
        sheets = text.split("\f")
        self.assertEqual(len(sheets), 4)
        self.assertEqual(sheets[3], "")
        for number, sheet in enumerate(sheets[:3], 1):
            self.assertIn(f"Sheet{number}", sheet)
        self.assertIn("größe", sheets[0])
        self.assertIn("日本", sheets[0])
        self.assertEqual(self.records()["a/three.pdf"]["text"], "a/three.txt")
        self.assertEqual(self.pdfs(), ["a/three.pdf", "a/three.txt", "one.pdf", "one.txt"])
        (self.output / "one.txt").unlink()
        run = self.run_batch("in", "--text")
        self.assertEqual(run.summary, {"total": 2, "converted": 1, "converted before": 1})
        self.assertTrue((self.output / "one.txt").is_file())

    def test_text_of_a_pdf_with_a_password(self):
        self.archive("a", pages.page("<p>Open</p>"))
        self.run_batch("in", "--text")
        self.assertIn("Open", (self.output / "a.txt").read_text())
        plain = self.folder / "plain.pdf"
        plain.write_bytes((self.output / "a.pdf").read_bytes())
        encrypted = self.folder / "closed.pdf"
        subprocess.run(["qpdf", "--encrypt", "user", "owner", "256", "--", plain, encrypted], check=True)
        closed = encrypted.read_bytes()
        self.archive("a", stored_pdf(closed))
        self.run_batch("in", "--text")
        record = self.records()["a.pdf"]
        self.assertEqual((record["outcome"], record["pages"], "text" in record), ("converted", None, False))
        self.assertEqual((self.output / "a.pdf").read_bytes(), closed)
        self.assertFalse((self.output / "a.txt").exists(), "the text of another PDF is left")
        self.assertEqual(self.run_batch("in", "--text").summary, {"total": 1, "converted": 0, "converted before": 1})

    def test_text_of_a_pdf_that_is_replaced(self):
        for again in ([], ["--no-resume"]):
            with self.subTest(again):
                self.archive("a", pages.page("<p>Before</p>"))
                self.archive("b", pages.page("<p>Before, too</p>"))
                self.run_batch("in", "--text", *again)
                own = self.output / "own.txt"
                own.write_text("somebody's")
                (self.sources / "b.webarchive").write_bytes(b"none")
                self.archive("own", pages.page("<p>Own</p>"))
                self.archive("a", pages.page("<p>After</p>"))
                self.run_batch("in", *again, status=FAILURE)
                self.assertEqual(self.pdfs(), ["a.pdf", "b.pdf", "b.txt", "own.pdf", "own.txt"])
                self.assertEqual(own.read_text(), "somebody's")
                # The other one's PDF is still the one of its text, until it is replaced.
                self.archive("b", pages.page("<p>After</p>"))
                self.run_batch("in", *again)
                self.assertEqual(self.pdfs(), ["a.pdf", "b.pdf", "own.pdf", "own.txt"])
                own.unlink()
                (self.sources / "own.webarchive").unlink()

    def test_pages_are_counted_by_the_pdf_and_not_by_its_title(self):
        self.archive("a", stored_pdf(hostile_pdfs.with_information(
            b"<</Keywords (x\\nPages:          77\\n)/Subject (x\\nPages:          78\\n)>>")))
        self.run_batch("in")
        self.assertEqual(self.records()["a.pdf"]["pages"], 1)

    def test_deadline(self):
        self.archive("a", pages.page("<script>for (;;);</script>"))
        self.archive("b", pages.page("<p>Quick</p>"))
        start = time.monotonic()
        self.run_batch("in", "--timeout", 3, status=FAILURE)
        self.assertLess(time.monotonic() - start, 12)
        self.assertIn("deadline", self.assert_failed("a.pdf", -1001, URLS)["error"])
        self.assert_converted("b.pdf")

    def test_engine_that_ends_is_started_again(self):
        self.archive("a", pages.page("<p>Again</p>"))
        broken = self.script("engine", "#!/bin/sh\nexit 1\n")
        self.run_batch("in", "--retries", 1, status=FAILURE, environment=self.environment(WEB2PDF_ENGINE=broken))
        record = self.records()["a.pdf"]
        self.assertEqual((record["outcome"], record["attempts"]), ("failed", 2), record)
        self.run_batch("in", "--retry-failed")
        self.assert_converted("a.pdf")

    def test_tool_that_is_killed_again_and_again(self):
        self.archive("a", pages.page("<p>Again</p>"))
        killed = self.script("killed", f'#!/bin/sh\n"{os.environ["WEB2PDF_TOOL"]}" "$@" >/dev/null\nkill -9 $$\n')
        self.run_batch("in", "--retries", 1, status=FAILURE, tool=killed)
        self.assert_failed("a.pdf", ENDED, attempts=2)
        self.assertEqual(self.pdfs(), [])
