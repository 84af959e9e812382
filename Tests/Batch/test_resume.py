"""What earlier runs have done is not done again, as far as archives and PDFs are what they were."""

import json
import os
import shutil

import fake_tool
from batch import FAILURE, MISSING, BatchTestCase, sha256


class ResumeTests(BatchTestCase):
    def setUp(self):
        super().setUp()
        self.archives("a", "b/c", b"no\xffutf8")
        self.run_batch("in")
        self.all = ["a.pdf", "b/c.pdf", "no\udcffutf8.pdf"]
        self.assertEqual(self.called(), 3)

    def resume(self, *arguments, calls, converted=None, **options):
        run = self.run_batch("in", *arguments, **options)
        self.assertEqual(self.called(), calls, run.output)
        self.assert_converted(*(converted or self.all))
        return run

    def test_what_is_finished_is_passed_by(self):
        run = self.resume(calls=0)
        self.assertEqual(run.summary, {"total": 3, "converted": 0, "converted before": 3})
        self.assertEqual(len(self.lines_of()), 3)

    def test_times_of_files_say_nothing(self):
        os.utime(self.sources / "a.webarchive", (1, 1))
        os.utime(self.output / "a.pdf", (0, 0))
        self.resume(calls=0)

    def test_archive_that_has_changed_is_converted_again(self):
        before = sha256(self.output / "a.pdf")
        self.archive("a", "convert #")
        os.utime(self.sources / "a.webarchive", (1, 1))
        self.resume(calls=1)
        self.assertNotEqual(sha256(self.output / "a.pdf"), before)
        self.resume(calls=0)

    def test_pdf_that_is_not_what_was_written_is_made_again(self):
        pdf = self.output / "a.pdf"
        contents = pdf.read_bytes()
        for change in (pdf.unlink, lambda: pdf.write_bytes(contents[:-1]), lambda: pdf.write_bytes(b"x" + contents[1:]),
                       lambda: pdf.write_bytes(b"")):
            change()
            self.resume(calls=1)
            self.assertEqual(pdf.read_bytes(), contents)

    def test_renamed_archive_is_not_converted_again(self):
        (self.sources / "b").rename(self.sources / "new")
        run = self.run_batch("in")
        self.assertEqual((self.called(), run.summary), (0, {"total": 3, "converted": 0, "converted before": 3}))
        self.assertEqual((self.output / "b" / "c.pdf").read_bytes(), (self.output / "new" / "c.pdf").read_bytes())
        self.assert_converted("new/c.pdf", *self.all)
        (self.output / "b" / "c.pdf").unlink()
        self.run_batch("in")
        self.assertEqual(self.called(), 0)

    def test_copy_tells_what_is_missing(self):
        self.archive("a", fake_tool.lacks(3, ["image http://site.example/a.png", "style sheet http://site.example/b"]))
        self.resume(calls=1)
        (self.sources / "a.webarchive").rename(self.sources / "new.webarchive")
        self.run_batch("in")
        self.assertEqual(self.called(), 0)
        before, after = (self.records()[name] for name in ("a.pdf", "new.pdf"))
        self.assertEqual((after["missing_count"], after["missing"]), (3, before["missing"]))
        self.assertEqual(len(after["missing"]), 2)

    def test_renamed_archive_whose_pdf_is_not_whole_is_converted(self):
        (self.sources / "b").rename(self.sources / "new")
        (self.output / "b" / "c.pdf").write_text("something else")
        self.run_batch("in")
        self.assertEqual(self.called(), 1)
        self.assertEqual((self.output / "b" / "c.pdf").read_text(), "something else")

    def test_archive_that_takes_another_ones_contents(self):
        shutil.copy(self.sources / "a.webarchive", self.sources / "b" / "c.webarchive")
        # The other one was converted earlier.
        results = self.output / "web2pdf-batch.jsonl"
        lines = [line.replace('"finished":"2', '"finished":"1') if '"a.pdf"' in line else line
                 for line in results.read_text().splitlines()]
        results.write_text("\n".join(lines) + "\n")
        self.resume("--manifest", calls=0)
        self.assertEqual(len(self.lines_of()), 4)
        self.assertIn(sha256(self.output / "b" / "c.pdf") + "  b/c.pdf\n",
                      (self.output / "manifest-sha256.txt").read_bytes().decode(errors="replace"))
        self.resume(calls=0)
        self.assertEqual(len(self.lines_of()), 4)

    def test_other_mode_and_other_wishes_are_another_pdf(self):
        self.resume("-m", "screen", calls=3)
        self.resume("-m", "screen", calls=0)
        self.resume("-m", "print", calls=3)
        self.resume("--xmp", calls=3)
        self.resume("--xmp", "--attach", calls=3)
        self.assertEqual(self.records()["a.pdf"]["wishes"], "xmp,attach")
        self.resume("--attach", "--xmp", calls=0)
        self.resume(calls=3)

    def test_all_anew(self):
        self.resume("--no-resume", calls=3)
        self.assertEqual(len(self.lines_of()), 6)
        self.resume(calls=0)

    def test_source_in_another_place(self):
        shutil.move(self.sources, self.folder / "moved")
        run = self.run_batch("moved")
        self.assertEqual(self.called(), 0)
        self.assertEqual(run.summary["converted before"], 3)

    def test_last_line_that_is_cut_off_is_passed_by(self):
        results = self.output / "web2pdf-batch.jsonl"
        whole = results.read_bytes()
        results.write_bytes(whole[:-1])
        self.resume(calls=0)
        results.write_bytes(whole[:-30])
        self.resume(calls=1)
        lines = results.read_bytes().splitlines()
        self.assertEqual(lines[2], whole[:-30].splitlines()[2])
        self.assertEqual(json.loads(lines[3])["archive"], json.loads(whole.splitlines()[2])["archive"])
        self.assertEqual(len(lines), 4)

    def test_lines_that_are_no_records_are_passed_by(self):
        with open(self.output / "web2pdf-batch.jsonl", "ab") as results:
            results.write(b"\n\n{}\n[]\nnull\n{\"pdf\":7}\n\xff\xfe\0\n" + b"[" * 100000 + b"\n")
            results.write(b"x" * 1000000 + b"\n")
        self.run_batch("in")
        self.assertEqual(self.called(), 0)


class FailureTests(BatchTestCase):
    def test_what_has_failed_is_tried_again_only_when_that_is_asked_for(self):
        self.archive("good")
        self.archive("bad", fake_tool.until(3, fake_tool.fails("NSCocoaErrorDomain", 259)))
        self.run_batch("in", status=FAILURE)
        self.assertEqual(self.called(), 2)
        run = self.run_batch("in", status=FAILURE)
        self.assertEqual(self.called(), 0)
        self.assertIn("failed    in/bad.webarchive (before): It failed.", run.output)
        self.assertIn("1 failed before, which --retry-failed tries again", run.lines[-1])
        self.run_batch("in", "--retry-failed", status=FAILURE)
        self.assertEqual(self.called(), 1)
        self.run_batch("in", "--retry-failed")
        self.assert_converted("bad.pdf", "good.pdf")
        self.run_batch("in")
        self.assertEqual(self.called(), 2 - 1)

    def test_archive_that_has_changed_since_it_failed_is_tried(self):
        self.archive("a", fake_tool.fails("NSCocoaErrorDomain", 259))
        self.run_batch("in", status=FAILURE)
        self.archive("a")
        self.run_batch("in")
        self.assert_converted("a.pdf")

    def test_failure_after_a_success_leaves_the_old_pdf_and_is_a_failure(self):
        self.archive("a")
        self.run_batch("in", "--manifest")
        old = (self.output / "a.pdf").read_bytes()
        self.archive("a", "write; " + fake_tool.fails("NSCocoaErrorDomain", 259))
        for _ in range(2):
            self.run_batch("in", "--manifest", status=FAILURE)
            self.assert_failed("a.pdf", 259, "NSCocoaErrorDomain")
            self.assertEqual((self.output / "a.pdf").read_bytes(), old)
            self.assertEqual((self.output / "manifest-sha256.txt").read_bytes(), b"")

    def test_missing_resources(self):
        self.archive("a", fake_tool.lacks(1))
        self.archive("b", fake_tool.lacks(12, ["image http://site.example/a.png", "style sheet http://site.example/b",
                                               "and more"]))
        self.run_batch("in")
        self.assert_converted("a.pdf", "b.pdf")
        records = self.records()
        self.assertEqual(records["a.pdf"]["missing"], [{"kind": "image", "address": "http://site.example/a.png"}])
        self.assertEqual((records["b.pdf"]["missing_count"], records["b.pdf"]["missing"]),
                         (12, [{"kind": "image", "address": "http://site.example/a.png"},
                               {"kind": "style sheet", "address": "http://site.example/b"}]))

    def test_strict(self):
        self.archive("a", fake_tool.lacks(1))
        self.archive("b")
        self.run_batch("in", "--strict", status=FAILURE)
        self.assert_converted("b.pdf")
        record = self.assert_failed("a.pdf", MISSING)
        self.assertIn("image http://site.example/a.png", record["error"])
        self.assertEqual(record["missing_count"], 1)
        self.run_batch("in", "--strict", status=FAILURE)
        self.assertEqual(self.called(), 2)
        self.run_batch("in")
        self.assert_converted("a.pdf", "b.pdf")
        self.run_batch("in", "--strict", status=FAILURE)
        self.assert_failed("a.pdf", MISSING)
        self.assertEqual(self.called(), 2)
