"""Arguments; runs that do nothing, say nothing, or that nobody listens to; the manifest; settings."""

import os
import shutil
import subprocess

import fake_tool
from batch import BAD_USAGE, FAILURE, PROGRAM, BatchTestCase
from test_sources import NAMES

OPTIONS = ("--output", "--mode", "--jobs", "--null", "--base", "--timeout", "--retries", "--retry-failed",
           "--no-resume", "--strict", "--shard", "--dry-run", "--quiet", "--xmp", "--attach", "--text", "--manifest",
           "--tool", "--help", "--version")


class ArgumentTests(BatchTestCase):
    def alone(self, *arguments):
        done = subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True, check=False,
                              timeout=60, cwd=self.folder, env=self.environment())
        self.assert_harmless(done.stderr.decode())
        return done

    def test_help_tells_of_every_option(self):
        for option in ("-h", "--help"):
            done = self.alone(option)
            self.assertEqual((done.returncode, done.stderr), (0, b""))
            for name in OPTIONS:
                self.assertIn(name, done.stdout.decode())

    def test_version(self):
        done = self.alone("--version")
        self.assertEqual(done.returncode, 0)
        self.assertRegex(done.stdout.decode(), r"^web2pdf-batch \d+\.\d+\.\d+\n$")

    def test_wrong_arguments_are_told_and_nothing_is_done(self):
        self.archive("a")
        whole = ("-o", "out", "in")
        for arguments in ((), ("in",), ("-o", "out"), ("-o",), (*whole, "--unknown"), (*whole, "-m", "both"),
                          (*whole, "-j", "0"), (*whole, "-j", "1025"), (*whole, "-j", "x"),
                          (*whole, "-j", "99999999999999999999"), (*whole, "--timeout", "-1"),
                          (*whole, "--retries", "101"), (*whole, "--json"), (*whole, "--\x1b[31m"),
                          ("-o", "out", "\x1b[31m"), ("-o", "out", b"\x9b31m\xff")):
            with self.subTest(arguments):
                done = self.alone(*arguments)
                self.assertEqual((done.returncode, done.stdout), (BAD_USAGE, b""))
                self.assertRegex(done.stderr.decode(), "^web2pdf-batch: .+; --help says more\n$")
        self.assertEqual(list(self.output.iterdir()), [])

    def test_tool_is_found_beside_the_program_before_path(self):
        self.archive("a")
        places = {name: self.folder / name for name in ("beside", "path")}
        for place in places.values():
            place.mkdir()
        program = places["beside"] / "web2pdf-batch"
        shutil.copy(PROGRAM, program)
        environment = self.environment(PATH=f"relative:{places['path']}")

        def call():
            return subprocess.run([program, "--no-resume", "-o", "out", "in"], capture_output=True, check=False,
                                  cwd=self.folder, env=environment, timeout=60)
        done = call()
        self.assertEqual(done.returncode, BAD_USAGE)
        self.assertIn(b"there is no web2pdf beside this program or in PATH", done.stderr)
        for name, place in reversed(places.items()):
            tool = place / "web2pdf"
            tool.write_text(fake_tool.SCRIPT.replace("%PDF", f"%PDF-{name}"))
            tool.chmod(0o755)
            self.assertEqual(call().returncode, 0)
            self.assertIn(name, (self.output / "a.pdf").read_text())


class DryRunTests(BatchTestCase):
    def test_nothing_is_done(self):
        self.archives("a", "b/c", "\x1b[31m")
        run = self.run_batch("in", "-n", output="new/folder")
        self.assertEqual(sorted(run.lines), ["convert   in/a.webarchive -> a.pdf",
                                             "convert   in/b/c.webarchive -> b/c.pdf",
                                             "convert   in/\ufffd[31m.webarchive -> \ufffd[31m.pdf"])
        self.assertEqual(self.called(), 0)
        self.assertFalse((self.folder / "new").exists())

    def test_what_earlier_runs_have_done_is_told(self):
        self.archive("a")
        self.archive("b", fake_tool.fails("NSCocoaErrorDomain", 259))
        self.run_batch("in", status=FAILURE)
        self.called()
        before = {path.name: path.read_bytes() for path in self.output.iterdir()}
        self.archive("c")
        run = self.run_batch("in", "--dry-run")
        self.assertEqual([line.split()[0] for line in run.lines], ["skipped", "failed", "convert"])
        run = self.run_batch("in", "--dry-run", "--retry-failed", "--no-resume")
        self.assertEqual([line.split()[0] for line in run.lines], ["convert"] * 3)
        self.assertEqual(before, {path.name: path.read_bytes() for path in self.output.iterdir()})
        self.assertEqual(self.called(), 0)

    def test_plan_that_cannot_be_told_is_a_failure(self):
        self.archive("a")
        with open("/dev/full", "wb") as full:
            run = self.run_batch("in", "-n", status=FAILURE, stdout=full)
        self.assertEqual(run.errors, "web2pdf-batch: standard output cannot be written\n")


class SilenceTests(BatchTestCase):
    def setUp(self):
        super().setUp()
        self.archives("a", "b")
        self.archive("bad", fake_tool.fails("NSCocoaErrorDomain", 259))

    def test_quiet(self):
        for option in ("-q", "--quiet"):
            run = self.run_batch("in", option, status=FAILURE)
            self.assertEqual((run.output, run.errors), ("", ""))
        self.assert_converted("a.pdf", "b.pdf")

    def test_closed_pipe_does_not_stop_the_run(self):
        read, write = os.pipe()
        os.close(read)
        self.run_batch("in", status=FAILURE, stdout=write, stderr=write)
        os.close(write)
        self.assert_converted("a.pdf", "b.pdf")

    def test_full_disk_for_the_log_does_not_stop_the_run(self):
        with open("/dev/full", "wb") as full:
            self.run_batch("in", status=FAILURE, stdout=full)
        self.assert_converted("a.pdf", "b.pdf")

    def test_closed_streams_do_not_stop_the_run(self):
        """No other file gets their numbers, into which the log would be written."""
        def close():
            for number in (0, 1, 2):
                os.close(number)
        self.archives(*(str(number) for number in range(20)))
        self.run_batch("in", "--retries", 0, "-j", 3, status=FAILURE, preexec_fn=close)
        self.assert_converted("a.pdf", "b.pdf", *(f"{number}.pdf" for number in range(20)))
        self.assertEqual(len(self.lines_of()), 23)


class ManifestTests(BatchTestCase):
    def check(self, name="manifest-sha256.txt"):
        done = subprocess.run(["sha256sum", "--check", "--strict", name], cwd=self.output, capture_output=True,
                              check=False, env=self.environment())
        return done.returncode, done.stdout.count(b": OK\n"), done.stderr.decode(errors="replace")

    def test_sha256sum_checks_it(self):
        names = [*NAMES, "carriage\rreturn", "back\\slash\nand break", "one/two"]
        self.archives(*names)
        self.archive("bad", fake_tool.fails("NSCocoaErrorDomain", 259))
        self.run_batch("in", "--manifest", status=FAILURE)
        self.assertEqual(self.check(), (0, len(names), ""))
        (self.output / "one" / "two.pdf").write_text("something else")
        self.assertEqual(self.check()[:2], (1, len(names) - 1))
        self.run_batch("in", "--manifest", status=FAILURE)
        self.assertEqual(self.check(), (0, len(names), ""))

    def test_order_is_that_of_the_paths(self):
        self.archives("b", "a", "c/a")
        self.run_batch("in", "--manifest", "-j", 3)
        text = (self.output / "manifest-sha256.txt").read_text()
        self.assertEqual([line.partition("  ")[2] for line in text.splitlines()], ["a.pdf", "b.pdf", "c/a.pdf"])

    def test_each_shard_has_its_own(self):
        self.archives(*(str(number) for number in range(12)))
        counts = []
        for index in range(3):
            self.run_batch("in", "--manifest", "--shard", f"{index}/3")
            status, count, errors = self.check(f"manifest-sha256.{index}-of-3.txt")
            self.assertEqual((status, errors), (0, ""))
            counts.append(count)
        self.assertEqual(sum(counts), 12)

    def test_manifest_that_cannot_be_written_is_a_failure(self):
        self.archive("a")
        (self.output / "manifest-sha256.txt").mkdir()
        run = self.run_batch("in", "--manifest", status=FAILURE)
        self.assertIn("manifest-sha256.txt: Is a directory", run.errors)


class SettingsTests(BatchTestCase):
    def test_wishes_may_be_settings(self):
        self.archive("a", '[ "$WEB2PDF_XMP$WEB2PDF_ATTACH_ARCHIVE" = 11 ] && convert')
        self.set_preferences({"Web2PDFWritesXMP": True, "Web2PDFAttachesArchive": True,
                              "Web2PDFBatchWritesManifest": True})
        self.run_batch("in", "--retries", 0)
        self.assertEqual(self.records()["a.pdf"]["wishes"], "xmp,attach")
        self.assertTrue((self.output / "manifest-sha256.txt").is_file())
        self.archive("a")
        self.set_preferences({"Web2PDFWritesXMP": "nonsense", "Web2PDFAttachesArchive": [True]})
        self.run_batch("in")
        self.assertEqual(self.records()["a.pdf"]["wishes"], "")
        self.assertEqual(self.pdfs(), ["a.pdf"])
