"""Engines in other places than the usual one, and the full browser."""

import os
import pathlib
import shutil
import unittest

import confinement
from pages import page
from test_confinement import OPEN_TO_THE_ENGINE, TraceTestCase

FOLDER = pathlib.Path("/usr/lib/chromium")
SHELL = FOLDER / "chromium-headless-shell"
BROWSER = FOLDER / "chromium"
NOT_OF_THE_SHELL = ("chromium", "chrome_crashpad_handler", "libVkLayer_khronos_validation.so")


def link_or_copy(source, target):
    """The engine is too large to be copied where that can be helped."""
    try:
        os.link(source, target)
    except OSError:
        shutil.copy(source, target)


class OtherPlaceTests(TraceTestCase):
    def copied_engine(self, name):
        """A folder with nothing but what belongs to the headless shell, under this name."""
        folder = self.folder / "engine"
        shutil.copytree(FOLDER, folder, copy_function=link_or_copy, ignore=lambda *_: NOT_OF_THE_SHELL)
        folder.chmod(0o755)
        return (folder / SHELL.name).rename(folder / name)

    def test_engine_needs_no_files_but_those_beside_it(self):
        for name in ("headless_shell", "engine of ours"):
            with self.subTest(name):
                copy = self.copied_engine(name)
                tool, calls = self.trace("open,openat,execve", environment=self.environment(WEB2PDF_ENGINE=copy))
                opened = {call.file for call in calls if call.process != tool and call.name.startswith("open")}
                self.assertIn(str(copy.parent / "icudtl.dat"), opened)
                self.assertEqual([file for file in opened if file.startswith(str(FOLDER))], [])
                shutil.rmtree(copy.parent)
                shutil.rmtree(self.folder / "record")

    def test_nothing_is_refused_to_it(self):
        for options in ({}, self.as_nobody()):
            copy = self.copied_engine("headless_shell")
            (self.folder / "out").chmod(0o777)
            run = self.convert(page("<p>Text</p>"), environment=self.environment(WEB2PDF_ENGINE=copy), **options)
            self.assertIn("Text", run.pdf.text())
            self.assertEqual(run.log.notes, [])
            shutil.rmtree(copy.parent)


@unittest.skipUnless(os.access(BROWSER, os.X_OK), "the package chromium is not installed")
class BrowserTests(TraceTestCase):
    def convert_text(self, program=BROWSER, **options):
        (self.folder / "out").chmod(0o777)
        run = self.convert(page("<p>Text</p>"), environment=self.environment(WEB2PDF_ENGINE=program), **options)
        self.assertIn("Text", run.pdf.text())
        return run

    def test_both_modes(self):
        for mode in ("screen", "print"):
            self.assertEqual(self.convert_text(mode=mode).log.notes, [])

    def test_its_command_which_is_a_script(self):
        self.assertEqual(self.convert_text(program="/usr/bin/chromium").log.notes, [])

    def test_of_an_ordinary_user(self):
        self.assertEqual(self.convert_text(**self.as_nobody()).log.notes, [])

    def test_its_profile_is_gone_where_it_has_no_mounts(self):
        # run_tool sees that TMPDIR is empty.
        self.assertIn("no file system of its own for the engine's temporary files",
                      self.convert_text(preexec_fn=confinement.refuse_mounts).log.text)

    def test_without_namespaces(self):
        self.assertIn("the engine's own sandbox can not work here",
                      self.convert_text(preexec_fn=confinement.refuse_namespaces).log.text)

    def test_keeps_to_itself(self):
        tool, calls = self.trace("open,openat,openat2,socket,connect,execve",
                                 environment=self.environment(WEB2PDF_ENGINE=BROWSER))
        calls = [call for call in calls if call.process != tool]
        opened = {call.file for call in calls if call.name.startswith("open") and "O_PATH" not in call.arguments}
        self.assertGreater(len(opened), 50)
        self.assertEqual([file for file in sorted(opened) if not file.startswith(OPEN_TO_THE_ENGINE + ("/dev/shm",))], [])
        self.assertEqual([call for call in calls if call.name == "connect"], [])
        self.assertEqual({call.arguments for call in calls if call.name == "socket"}, {"AF_UNIX, SOCK_STREAM, 0"})


if __name__ == "__main__":
    unittest.main()
