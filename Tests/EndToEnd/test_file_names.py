"""Files and folders whose names are no UTF-8, wherever the tool is given one."""

import os
import plistlib
import shutil
import unittest

from pages import page
from pdf import PDF
from tool import SETTINGS_DOMAIN, ToolTestCase

SIMPLE = page("<p>Simple</p>")
# As the file system has them: caf in Latin-1, and bytes that no encoding allows.
CAFE = os.fsdecode(b"caf\xe9")
BYTES = os.fsdecode(b"\xff\xc0\xed\xa0\x80")
# The answer has one replacement character for each byte that is no UTF-8, the log has its escape.
SHOWN = "caf\ufffd"
LOGGED = "caf\\udce9"


class UndecodableNamesTests(ToolTestCase):
    def setUp(self):
        super().setUp()
        self.set_preferences({"WebToolExtraLoadingTime": 0})

    def folder_of(self, name):
        folder = self.folder / name
        folder.mkdir()
        folder.chmod(0o755)
        return folder

    def test_archive_and_pdf(self):
        for mode in ("screen", "print"):
            for name in (CAFE, BYTES):
                with self.subTest(mode, name=name):
                    output = self.folder / "out" / f"{name}-{mode}.pdf"
                    run = self.run_tool(mode, self.archive_file(SIMPLE, f"{name}.webarchive"), output, "uid")
                    replaced = os.fsencode(output).decode(errors="replace")
                    self.assertEqual(run.result.keys(), {"succeeded", "path"}, run.log.text)
                    self.assertRegex(run.result["path"], r"/out/[^/]*\ufffd[^/]*\.pdf$")
                    self.assertEqual(run.result["path"].replace("\ufffd", ""), replaced.replace("\ufffd", ""))
                    pdf = PDF(str(output))
                    pdf.assert_valid()
                    self.assertIn("Simple", pdf.text())
                    self.assertEqual(pdf.attribute("Creator"), "Quillvane")
                    self.assertEqual(os.listdir(self.folder / "out"), [output.name])
                    output.unlink()

    def test_relative_to_a_folder(self):
        here = self.folder_of(CAFE)
        archive = self.archive_file(SIMPLE)
        run = self.run_tool("print", archive, f"{CAFE}/page.pdf", "uid")
        self.assertEqual(run.result, {"succeeded": True, "path": f"{SHOWN}/page.pdf"})
        self.assertEqual(os.listdir(here), ["page.pdf"])

    def test_missing_archive(self):
        run = self.run_tool("screen", self.folder / CAFE, self.folder / "out" / "page.pdf", "uid")
        self.assert_failure(run, "NSCocoaErrorDomain", 260, {"NSFilePath": str(self.folder / SHOWN)},
                            f"The file “{SHOWN}” couldn’t be opened because there is no such file.")
        self.assertIn(f'UTF-8 error: [LogWeb2PDF] finish with error: Error Domain=NSCocoaErrorDomain Code=260 '
                      f'"(null)" UserInfo={{NSFilePath={self.folder / LOGGED},', run.log.text)

    def test_the_name_with_replacement_characters_is_another(self):
        self.archive_file(SIMPLE, SHOWN)
        run = self.run_tool("screen", self.folder / CAFE, self.folder / "out" / "page.pdf", "uid")
        self.assert_failure(run, "NSCocoaErrorDomain", 260)

    def test_out_path(self):
        path = self.folder / "out" / f"{CAFE}.plist"
        run = self.run_tool("screen", environment=self.environment(OutPath=path))
        self.assertEqual(run.answer, b"")
        self.assertEqual(os.listdir(self.folder / "out"), [path.name])
        self.assertEqual(plistlib.loads(path.read_bytes())["errorString"], "wrong number of arguments")

    def test_out_path_that_cannot_be_written(self):
        path = self.folder / CAFE / "answer.plist"
        run = self.run_tool("screen", environment=self.environment(OutPath=path))
        self.assertIn(f"Error writing output to {self.folder / LOGGED / 'answer.plist'}: <NSError", run.log.text)

    def test_settings(self):
        home = self.folder_of(CAFE)
        for place, variables in (
                (home / "own", {"XDG_CONFIG_HOME": home / "own"}),
                (home / "shared", {"XDG_CONFIG_DIRS": home / "shared"}),
                (home / ".config", {"HOME": home, "XDG_CONFIG_HOME": None})):
            with self.subTest(place.name):
                self.set_preferences({"WebToolExtraLoadingTime": 0, "Web2PDFPageMargin": 100}, root=place)
                output = self.folder / "out" / "page.pdf"
                run = self.run_tool("print", self.archive_file(SIMPLE), output, "uid",
                                    environment=self.environment(**variables))
                self.assertEqual(run.log.notes, [])
                self.assertGreaterEqual(PDF(str(output)).words()[0].left, 100)
                shutil.rmtree(place)

    def test_settings_that_cannot_be_read(self):
        home = self.folder_of(CAFE)
        (home / "preferences" / f"{SETTINGS_DOMAIN}.plist").mkdir(parents=True)
        run = self.run_tool("screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf", "uid",
                            environment=self.environment(XDG_CONFIG_HOME=home, XDG_CONFIG_DIRS=self.folder / "config"))
        self.assertTrue(run.result["succeeded"])
        self.assertEqual(len(run.log.notes), 1, run.log.text)
        self.assertIn(f"{SHOWN}/preferences/{SETTINGS_DOMAIN}.plist cannot be read", run.log.notes[0])

    def test_paper(self):
        (self.folder / CAFE).write_text("a5\n", encoding="utf-8")
        output = self.folder / "out" / "page.pdf"
        self.run_tool("print", self.archive_file(SIMPLE), output, "uid",
                      environment=self.environment(PAPERSIZE=None, PAPERCONF=self.folder / CAFE))
        self.assertEqual([round(length) for length in PDF(str(output)).size()], [420, 595])

    def test_engine(self):
        path = self.script(CAFE, "#!/bin/sh\nexit 1\n")
        run = self.run_tool("screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf", "uid",
                            environment=self.environment(WEB2PDF_ENGINE=path))
        self.assert_failure(run, "NSURLErrorDomain", -1005)
        run = self.run_tool("screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf", "uid",
                            environment=self.environment(WEB2PDF_ENGINE=path + CAFE))
        error = self.assert_failure(run, "NSCocoaErrorDomain", 4)
        self.assertIn(SHOWN + SHOWN, error.user_info["NSLocalizedDescription"])


if __name__ == "__main__":
    unittest.main()
