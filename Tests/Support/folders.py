"""A folder for each test, and every process that the test starts within its reach."""

import os
import pathlib
import shutil
import tempfile
import unittest

import processes


class FolderTestCase(unittest.TestCase):
    """The folder may be entered by other users, and is gone at the end."""

    @classmethod
    def setUpClass(cls):
        processes.adopt_orphans()
        os.umask(0o022)

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="web2pdf-test-"))
        self.folder.chmod(0o755)
        self.addCleanup(shutil.rmtree, self.folder)
