"""The tool in containers that bubblewrap makes, which gives no capability."""

import subprocess
import unittest

from pages import page
from tool import ToolTestCase, tool_path

CONTAINER = ("bwrap", "--unshare-all", "--uid", "65532", "--gid", "65532", "--die-with-parent", "--ro-bind", "/", "/",
             "--dev", "/dev", "--proc", "/proc")


def obstacle():
    """Why there are no such containers here; nothing where there are."""
    try:
        tried = subprocess.run([*CONTAINER, "true"], capture_output=True, text=True, timeout=30, check=False)
    except FileNotFoundError:
        return "the package bubblewrap is not installed"
    return tried.stderr if tried.returncode else None


class BubblewrapTests(ToolTestCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        if reason := obstacle():
            raise unittest.SkipTest(reason)

    def convert_inside(self, *options, **environment):
        command = " ".join([*CONTAINER, "--bind", str(self.folder), str(self.folder), *options, tool_path()])
        # The container's own first process may end after the one that was waited for.
        return self.convert(page("<p>Text</p>"), executable=self.script("web2pdf", f'#!/bin/sh\nexec {command} "$@"\n'),
                            environment=self.environment(**environment), seconds_to_end=5)

    def test_nothing_that_counts_is_refused(self):
        run = self.convert_inside(WEB2PDF_REQUIRE_SANDBOX=1)
        self.assertIn("Text", run.pdf.text())
        # Where root starts bubblewrap, that masks parts of /proc.
        self.assertEqual([note for note in run.log.notes if not note.startswith("no list of processes")], [])

    def test_where_there_are_no_more_user_namespaces(self):
        run = self.convert_inside("--unshare-user", "--disable-userns")
        self.assertIn("Text", run.pdf.text())
        self.assertIn("no namespaces of its own for the engine", run.log.text)
        self.assertIn("the engine's own sandbox can not work here", run.log.text)


if __name__ == "__main__":
    unittest.main()
