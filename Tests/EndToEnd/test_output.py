"""What is no file is neither read nor written; a write that fails harms no file and is told."""

import os
import random
import resource
import shutil
import socket
import unittest

from mounts import OwnMounts
from pages import page
from test_stored_pdf import stored, two_pages
from tool import ToolTestCase

COCOA = "NSCocoaErrorDomain"
SIMPLE = page("<p>Simple</p>")
SOON = 30    # seconds; opening a pipe without another end would never return


def limit_files(size):
    """For a child process: files cannot grow beyond this."""
    return lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))


class NoFilesTests(ToolTestCase):
    """Pipes, sockets and devices, and links to them."""

    def setUp(self):
        super().setUp()
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        places = self.folder / "places"
        places.mkdir()
        os.mkfifo(places / "pipe")
        listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(listener.close)
        listener.bind(str(places / "socket"))
        (places / "link").symlink_to("pipe")
        self.paths = [str(places / "pipe"), str(places / "socket"), str(places / "link"), "/dev/full", "/dev/stdout"]

    def tearDown(self):
        self.assertEqual(sorted(os.listdir(self.folder / "places")), ["link", "pipe", "socket"])
        super().tearDown()

    def test_as_archive(self):
        for path in [*self.paths, "/dev/null", "/dev/stdin", "/dev/zero"]:
            with self.subTest(path):
                run = self.run_tool("screen", path, self.folder / "out" / "page.pdf", "uid", timeout=SOON)
                self.assert_failure(run, COCOA, 256, {"NSFilePath": path})

    def test_as_output(self):
        archive = self.archive_file(stored(two_pages()))
        for mode in ("screen", "print"):
            for path in self.paths:
                with self.subTest(path, mode=mode):
                    run = self.run_tool(mode, archive, path, "uid", timeout=SOON)
                    self.assert_failure(run, COCOA, 512, {"NSFilePath": path})

    def test_as_out_path(self):
        for path in self.paths:
            with self.subTest(path):
                run = self.run_tool("screen", environment=self.environment(OutPath=path), timeout=SOON)
                self.assertEqual(run.answer, b"")
                self.assertIn(f"Error writing output to {path}: <NSError Domain={COCOA} Code=512", run.log.unnamed)

    def test_as_settings(self):
        shutil.rmtree(self.folder / "config" / "preferences")
        (self.folder / "config" / "preferences").mkdir()
        os.mkfifo(self.folder / "config" / "preferences" / "org.quillvane.Quillvane.plist")
        self.assert_success(self.convert(stored(two_pages()), quick=False, timeout=SOON))

    def test_as_configuration_of_the_paper(self):
        environment = self.environment(PAPERSIZE=None, PAPERCONF=self.paths[0])
        self.assert_success(self.convert(stored(two_pages()), environment=environment, timeout=SOON))


class FailedWritesTests(ToolTestCase):
    """The limits are too low for an engine, which stored PDFs do not need."""

    def test_limit_for_files(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                run = self.convert(stored(two_pages()), mode=mode, expect_success=False,
                                   preexec_fn=limit_files(1000))
                self.assert_failure(run, COCOA, 512, {"NSFilePath": run.output})
                self.assertEqual(os.listdir(self.folder / "out"), [])

    def test_limit_leaves_the_old_file(self):
        path = self.folder / "out" / "page.pdf"
        path.write_bytes(b"old contents")
        run = self.convert(stored(two_pages()), expect_success=False, preexec_fn=limit_files(1000))
        self.assert_answers_success(run)
        self.assertEqual(path.read_bytes(), b"old contents")

    def test_limit_that_only_the_attributes_exceed(self):
        incompressible = random.Random(1).randbytes(5000).hex()
        archive = stored(two_pages(), url="https://www.site.example/" + incompressible)
        run = self.convert(archive, preexec_fn=limit_files(len(two_pages()) + 1000))
        with open(run.output, "rb") as file:
            self.assertEqual(file.read(), two_pages())
        self.assertEqual(os.listdir(self.folder / "out"), ["page.pdf"])

    def test_limit_for_the_answer(self):
        answer = self.folder / "out" / "answer.plist"
        answer.write_bytes(b"old answer")
        run = self.run_tool("screen", environment=self.environment(OutPath=answer), preexec_fn=limit_files(100))
        self.assertEqual(answer.read_bytes(), b"old answer")
        self.assertEqual(os.listdir(self.folder / "out"), ["answer.plist"])
        self.assertEqual(run.log.unnamed.count("Error writing output"), 1, run.log.text)

    def test_folder_that_vanishes(self):
        child = self.start_and_show(SIMPLE, 1)
        (self.folder / "out").rmdir()
        answer, errors = child.communicate(timeout=60)
        (self.folder / "out").mkdir()
        self.assertEqual(child.returncode, 0)
        self.assertIn(b"<false/>", answer, errors)
        self.assert_nothing_left()

    def test_links_that_lead_nowhere(self):
        (self.folder / "out" / "circle.pdf").symlink_to("circle.pdf")
        (self.folder / "out" / "nowhere.pdf").symlink_to("missing/file.pdf")
        for name in ("circle.pdf", "nowhere.pdf"):
            with self.subTest(name):
                run = self.convert(stored(two_pages()), name=name, expect_success=False)
                self.assert_failure(run, COCOA, 512, {"NSFilePath": run.output})
                self.assertTrue(os.path.islink(run.output))

    def test_link_to_a_file_that_is_yet_to_be_made(self):
        (self.folder / "out" / "link.pdf").symlink_to("target.pdf")
        run = self.convert(stored(two_pages()), name="link.pdf")
        self.assertIn("FirstPage", run.pdf.text())
        self.assertTrue(os.path.islink(run.output))


class DiskTests(ToolTestCase):
    """Disks that are full or cannot be written to."""

    def setUp(self):
        super().setUp()
        self.set_preferences({"WebToolExtraLoadingTime": 0})

    def mount(self, name, options):
        for folder in ("out", "tmp"):
            (self.folder / folder).chmod(0o777)
        mounts = OwnMounts({self.folder / name: f"mode=0777,{options}"})
        self.addCleanup(mounts.end)
        self.helpers = (*self.helpers, mounts.process)
        return mounts

    def full_disk(self, name):
        mounts = self.mount(name, "size=16k")
        with self.assertRaises(OSError):
            mounts.seen(self.folder / name / "filling").write_bytes(bytes(20_000))
        return mounts

    def test_full_disk(self):
        for archive in (SIMPLE, stored(two_pages())):
            mounts = self.full_disk("out")
            run = self.convert(archive, expect_success=False, preexec_fn=mounts.join)
            self.assert_failure(run, COCOA, 512, {"NSFilePath": run.output})
            self.assertEqual(os.listdir(mounts.seen(self.folder / "out")), ["filling"])

    def test_full_disk_leaves_the_old_file(self):
        mounts = self.full_disk("out")
        old = mounts.seen(self.folder / "out" / "filling")
        old.rename(old.with_name("page.pdf"))
        before = old.with_name("page.pdf").read_bytes()
        self.convert(SIMPLE, expect_success=False, preexec_fn=mounts.join)
        self.assertEqual(os.listdir(old.parent), ["page.pdf"])
        self.assertEqual(old.with_name("page.pdf").read_bytes(), before)

    def test_full_disk_for_the_answer(self):
        mounts = self.full_disk("out")
        answer = self.folder / "out" / "answer.plist"
        run = self.run_tool("screen", environment=self.environment(OutPath=answer), preexec_fn=mounts.join)
        self.assertIn(f"Error writing output to {answer}: <NSError Domain={COCOA} Code=640", run.log.unnamed)
        self.assertEqual(os.listdir(mounts.seen(self.folder / "out")), ["filling"])

    def test_full_disk_for_temporary_files(self):
        mounts = self.full_disk("tmp")
        run = self.convert(SIMPLE, preexec_fn=mounts.join)
        self.assertIn("Simple", run.pdf.text())

    def test_disk_that_is_read_only(self):
        mounts = self.mount("out", "size=1m")
        mounts.seen(self.folder / "out" / "page.pdf").write_bytes(b"old contents")
        mounts.make_read_only(self.folder / "out")
        self.convert(SIMPLE, expect_success=False, preexec_fn=mounts.join)
        run = self.convert(SIMPLE, name="new.pdf", expect_success=False, preexec_fn=mounts.join)
        self.assert_failure(run, COCOA, 512, {"NSFilePath": run.output})
        self.assertEqual(mounts.seen(self.folder / "out" / "page.pdf").read_bytes(), b"old contents")


if __name__ == "__main__":
    unittest.main()
