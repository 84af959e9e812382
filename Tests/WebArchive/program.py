"""Runs the program webarchive.

    class SomeTests(ProgramTestCase):
        def test_something(self):
            self.assertEqual(self.run_program("cat", self.file(archive)).output, b"...")
"""

import os
import pathlib
import subprocess
import tempfile
import unittest

PROGRAM = os.environ["WEBARCHIVE"]
SUCCESS, FAILURE, BAD_USAGE = 0, 1, 2


class Run:
    def __init__(self, status, output, errors):
        self.status = status
        self.output = output
        self.errors = errors

    @property
    def text(self):
        return self.output.decode()


class ProgramTestCase(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="webarchive-test-")
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def file(self, archive, name="page.webarchive", xml=False):
        """A file with an archive, or with these bytes."""
        path = self.folder / name
        path.write_bytes(archive if isinstance(archive, bytes) else archive.bytes(xml))
        return path

    def run_program(self, *arguments, status=SUCCESS, timeout=60, **options):
        """Runs the program to its end, which has to be of this status. What it says is harmless to a terminal."""
        done = subprocess.run([PROGRAM, *arguments], stdin=subprocess.DEVNULL, capture_output=True, timeout=timeout,
                              cwd=self.folder, check=False, **options)
        errors = done.stderr.decode()
        self.assertEqual(done.returncode, status, errors)
        self.assertRegex(errors, "^(webarchive: [^\x00-\x1f\x7f-\x9f]+\n)*$")
        if status == SUCCESS:
            self.assertEqual(errors, "")
        return Run(done.returncode, done.stdout, errors)

    def assert_fails(self, text, *arguments):
        """The program ends with a failure, and what it says has this text."""
        run = self.run_program(*arguments, status=FAILURE)
        self.assertEqual(run.output, b"")
        self.assertIn(text, run.errors)
