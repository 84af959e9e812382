"""What becomes of files that are at a PDF's place, and of folders and disks that cannot be written."""

import os

import fake_tool
from batch import FAILURE, FILE, BatchTestCase, sha256
from mounts import OwnMounts

FAILS = fake_tool.fails("NSCocoaErrorDomain", 259)


class PlaceTests(BatchTestCase):
    def test_old_file_is_replaced_by_success_only(self):
        for name, contents in (("good", fake_tool.CONVERTS), ("bad", FAILS), ("dead", fake_tool.DIES),
                               ("mute", fake_tool.WRITES_NO_PDF)):
            self.archive(name, contents)
            (self.output / (name + ".pdf")).write_text("old")
        run = self.run_batch("in", "--retries", 0, status=FAILURE)
        self.assertEqual(run.summary, {"total": 4, "converted": 1, "failed": 3})
        for name in ("bad", "dead", "mute"):
            self.assertEqual((self.output / (name + ".pdf")).read_text(), "old")
            self.assertEqual(self.records()[name + ".pdf"]["outcome"], "failed")
        record = self.records()["good.pdf"]
        self.assertEqual(record["pdf_sha256"], sha256(self.output / "good.pdf"))
        self.assertNotEqual((self.output / "good.pdf").read_text(), "old")

    def test_old_file_is_there_until_the_new_one_is(self):
        self.archive("a", 'read -r OLD <"$OLD_PDF"; [ "$OLD" = old ] && convert')
        (self.output / "a.pdf").write_text("old\n")
        self.run_batch("in", "--retries", 0, environment=self.environment(OLD_PDF=self.output / "a.pdf"))
        self.assert_converted("a.pdf")

    def test_links_are_replaced_and_what_they_name_is_not(self):
        other = self.folder / "other"
        other.write_text("mine")
        self.archives("linked", "dangling")
        (self.output / "linked.pdf").symlink_to(other)
        (self.output / "dangling.pdf").symlink_to("nowhere")
        self.run_batch("in")
        self.assertEqual(other.read_text(), "mine")
        self.assertFalse((self.output / "linked.pdf").is_symlink())
        self.assert_converted("linked.pdf", "dangling.pdf")

    def test_folder_in_the_place_of_a_pdf_stays(self):
        self.archives("a", "b")
        (self.output / "a.pdf").mkdir()
        for contents in ((), ("file",)):
            for name in contents:
                (self.output / "a.pdf" / name).write_text("mine")
            self.run_batch("in", "--retry-failed", status=FAILURE)
            self.assert_failed("a.pdf", FILE)
            self.assertTrue((self.output / "a.pdf").is_dir())

    def test_file_in_the_place_of_a_folder_stays(self):
        self.archives("a/b", "c")
        (self.output / "a").write_text("mine")
        self.run_batch("in", status=FAILURE)
        self.assert_failed("a/b.pdf", FILE, attempts=0)
        self.assertEqual((self.output / "a").read_text(), "mine")

    def test_pdf_whose_name_would_be_too_long(self):
        (self.sources / ("n" * 252)).write_text(fake_tool.CONVERTS)
        self.run_batch("in/" + "n" * 252, status=FAILURE)
        self.assert_failed("n" * 252 + ".pdf", FILE)

    def test_what_a_killed_run_has_left_goes_when_the_pdf_is_made(self):
        self.archive("a", 'for FILE in "${PDF%/*}"/.*; do [ -f "$FILE" ] && exit 1; done; convert')
        self.run_batch("in")
        self.archive("a", 'printf %s "$PDF" >"$CALLS.name"; convert')
        self.run_batch("in")
        left = self.folder / self.calls.with_suffix(".name").read_text()
        self.archive("a")
        for kind in ("file", "folder"):
            with self.subTest(kind):
                if kind == "folder":
                    left.mkdir()
                else:
                    left.write_text("left")
                self.run_batch("in", "--no-resume")
                self.assertFalse(left.exists())


class OutputFolderTests(BatchTestCase):
    def assert_fails(self, text, *arguments, **options):
        run = self.run_batch(*arguments, status=FAILURE, **options)
        self.assertIn(text, run.errors)
        self.assertEqual((run.output, self.called()), ("", 0))

    def test_folder_is_made_with_all_above_it(self):
        self.archive("a")
        self.run_batch("in", output="new/and/newer/")
        self.assertTrue((self.folder / "new" / "and" / "newer" / "a.pdf").is_file())

    def test_folder_of_any_name(self):
        self.archive("a", "[ -f \"$ARCHIVE\" ] && convert")
        for name in (b"-x", b"[x,y]", b"a b", b"no\xffutf8", b"line\nbreak", b"\x1b[31m", b"~"):
            with self.subTest(name):
                self.run_batch("in", output=b"./" + name if name == b"-x" else name)
                self.assertTrue(os.path.isfile(os.path.join(os.fsencode(self.folder), name, b"a.pdf")))
        self.run_batch("in", "-o-y", output=None)
        self.assertTrue((self.folder / "-y" / "a.pdf").is_file())

    def test_folder_that_cannot_be_made(self):
        self.archive("a")
        (self.folder / "file").write_text("mine")
        (self.folder / "dangling").symlink_to("nowhere/at/all")
        self.assert_fails("Not a directory", "in", output="file/x")
        self.assert_fails("file", "in", output="file")
        self.assert_fails("dangling", "in", output="dangling")
        self.assert_fails("too long", "in", output="x" * 300)
        self.assert_fails("Permission denied", "in", output="closed", **self.as_nobody())
        self.assertFalse((self.folder / "closed").exists())

    def test_folder_that_cannot_be_written(self):
        self.archive("a")
        options = self.as_nobody()
        self.output.chmod(0o555)
        self.assert_fails("out/web2pdf-batch.jsonl: Permission denied", "in", **options)

    def test_no_name_is_no_folder(self):
        self.archive("a")
        self.assert_refused("-o", "in", output="")
        self.assert_refused("-o", "in", output=None)
        self.assert_refused("--base", "in", "--base", "")
        self.assert_refused("--tool", "in", "--tool", "")

    def test_results_that_are_no_file(self):
        self.archive("a")
        results = self.output / "web2pdf-batch.jsonl"
        results.mkdir()
        self.assert_fails("web2pdf-batch.jsonl", "in")
        results.rmdir()
        os.mkfifo(results)
        self.assert_fails("web2pdf-batch.jsonl is no regular file", "in")

    def test_two_runs_at_once_are_kept_apart(self):
        self.archive("a", "while [ ! -e go ]; do /bin/sleep 0.05; done; convert")
        first = self.start_batch("in")
        self.wait_for(self.calls.exists)
        second = self.start_batch("in")
        _, errors = second.communicate(timeout=20)
        self.assertEqual((second.returncode, errors),
                         (FAILURE, b"web2pdf-batch: another run is writing out/web2pdf-batch.jsonl\n"))
        (self.folder / "go").touch()
        self.end_of(first)
        self.assertEqual(self.called(), 1)
        self.run_batch("in")


class FullDiskTests(BatchTestCase):
    def setUp(self):
        super().setUp()
        self.mounts = OwnMounts({self.output: "size=64k"})
        self.addCleanup(self.mounts.end)
        self.helpers = (self.mounts.process,)
        self.output = self.mounts.seen(self.output)

    def join(self):
        self.mounts.join()
        os.chdir(self.folder)

    def test_pdf_that_does_not_fit_fails(self):
        refusal = fake_tool.fails("NSCocoaErrorDomain", 640)
        self.archive("a", f'/usr/bin/head -c 200000 /dev/zero >"$PDF" || {{ {refusal}; exit; }}; succeed')
        self.archive("b")
        (self.output / "a.pdf").write_text("old")
        self.run_batch("in", "-j", 1, preexec_fn=self.join, status=FAILURE)
        self.assert_failed("a.pdf", 640, "NSCocoaErrorDomain")
        self.assertEqual((self.output / "a.pdf").read_text(), "old")
        self.assertEqual(self.records()["b.pdf"]["outcome"], "converted")

    def test_results_that_do_not_fit_end_the_run(self):
        for number in range(40):
            self.archive(f"{number:02}")
        self.archive("00", fake_tool.HANGS)
        run = self.run_batch("in", "-j", 2, preexec_fn=self.join, status=FAILURE, timeout=60)
        self.assertIn("web2pdf-batch.jsonl: No space left on device", run.errors)
        self.assertLess(self.called(), 40)
        known = {pdf for pdf, record in self.records().items() if record["outcome"] == "converted"}
        self.assertGreater(len(known), 1)
        self.archive("00")
        for number in range(8, 40):
            (self.sources / f"{number:02}.webarchive").unlink()
            (self.output / f"{number:02}.pdf").unlink(missing_ok=True)
        for pdf in known:
            (self.output / pdf).unlink(missing_ok=True)
        self.run_batch("in", "--retry-failed", preexec_fn=self.join)
        self.assertEqual({f"{number:02}.pdf" for number in range(8)} - set(self.pdfs()), set())
