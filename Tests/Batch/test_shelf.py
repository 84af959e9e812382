"""A shelf of archives with the real engine: every kind of failure, an interruption, and what is told in the end."""

import os
import subprocess

import pages
from batch import BATCH_DOMAIN, ENDED, FAILURE, FILE, INTERRUPTED, MISSING, BatchTestCase
from pdf import PDF
from webarchive import Archive, Resource, malformed

URLS, COCOA = "NSURLErrorDomain", "NSCocoaErrorDomain"
# Some tools are killed in their first attempt, with the engine under way.
UNSTEADY = r'''#!/bin/sh
case $4 in [0-3]*)
    if [ ! -e "$CALLS.$4" ]; then
        : >"$CALLS.$4"
        "$REAL" "$@" &
        /bin/sleep 0.2
        kill -9 $$
    fi ;;
esac
exec "$REAL" "$@"
'''
GOOD = 27


class ShelfTests(BatchTestCase):
    real = True

    def setUp(self):
        super().setUp()
        self.unsteady = self.script("unsteady", UNSTEADY)
        self.good = {}
        for number in range(GOOD):
            name = f"shelf{number % 3}/page{number:02}"
            self.archive(name, pages.page(f"<p>Word{number:02}</p>"))
            self.good[name + ".pdf"] = f"Word{number:02}"
        self.bad = {}

    def add_failures(self):
        for name, data in list(malformed().items())[::5]:
            (self.sources / f"{name}.webarchive").write_bytes(data)
            self.bad[name + ".pdf"] = (COCOA, 259)
        (self.sources / "dangling.webarchive").symlink_to("nowhere")
        self.bad["dangling.pdf"] = (COCOA, 260)
        self.archive("endless", pages.page("<script>for (;;);</script>"))
        self.bad["endless.pdf"] = (URLS, -1001)
        self.archive("place", pages.page("<p>Place</p>"))
        (self.output / "place.pdf").mkdir()
        self.bad["place.pdf"] = (BATCH_DOMAIN, FILE)
        for number in range(2):
            self.archive(f"lacking{number}", pages.page(f'<img src="gone{number}.png">'))
            self.bad[f"lacking{number}.pdf"] = (BATCH_DOMAIN, MISSING)

    def add_stored_pdfs(self):
        self.run_batch("in/shelf0/page00.webarchive", output="first")
        plain, closed = self.folder / "first" / "page00.pdf", self.folder / "closed.pdf"
        subprocess.run(["qpdf", "--encrypt", "user", "owner", "256", "--", plain, closed], check=True)
        for name, path in (("plain", plain), ("closed", closed)):
            self.archive(name, Archive(Resource(f"http://site.example/{name}.pdf", path.read_bytes(), "application/pdf",
                                                None)))
        return closed.read_bytes()

    def test_shelf(self):
        self.add_failures()
        closed = self.add_stored_pdfs()
        environment = self.environment(REAL=os.environ["WEB2PDF_TOOL"])
        options = {"tool": self.unsteady, "environment": environment}
        arguments = ("in", "-j", 4, "--timeout", 5, "--strict", "--manifest")
        total = len(self.good) + len(self.bad) + 2
        self.assertGreaterEqual(total, 38)

        child = self.start_batch(*arguments, **options)
        self.wait_for(lambda: (self.output / "web2pdf-batch.jsonl").exists() and len(self.lines_of()) >= 8)
        child.terminate()
        first = self.end_of(child, INTERRUPTED, timeout=20).summary
        finished = first["converted"] + first.get("failed", 0)
        self.assertEqual((first["total"], finished + first["left"]), (total, total))

        second = self.run_batch(*arguments, **options, status=FAILURE).summary
        self.assertEqual(second["converted before"], first["converted"])
        # What cannot be read has no hash by which to know it again: it is tried each time.
        again = first.get("failed", 0) - second.get("failed before", 0)
        self.assertIn(again, (0, 1))
        self.assertEqual(second["converted"] + second["failed"], first["left"] + again)
        self.assertEqual(second.get("failed before", 0) + second["failed"], len(self.bad))

        records = self.records()
        self.assertEqual((len(records), len(self.lines_of())), (total, total + again))
        self.assertEqual({pdf for pdf, record in records.items() if record["outcome"] == "failed"}, set(self.bad))
        for pdf, (domain, code) in self.bad.items():
            record = records[pdf]
            self.assertEqual((record["error_domain"], record["error_code"]), (domain, code), pdf)
            self.assertFalse((self.output / pdf).is_file())
        for pdf, word in self.good.items():
            path = self.output / pdf
            self.assertEqual((PDF(str(path)).text().split(), records[pdf]["pages"]), ([word], 1))
        self.assertEqual((self.output / "closed.pdf").read_bytes(), closed)
        self.assertTrue(any(record["attempts"] == 2 for record in records.values()))
        self.assertNotIn(ENDED, [record.get("error_code") for record in records.values()])
        subprocess.run(["sha256sum", "--check", "--quiet", "manifest-sha256.txt"], cwd=self.output, check=True)
