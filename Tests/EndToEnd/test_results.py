"""The command line, the result dictionary and where it goes."""

import os
import plistlib
import subprocess
import unittest

from pages import page
from tool import TOOL_DOMAIN, ToolTestCase
from webarchive import html_archive

SIMPLE = page("<p>Simple</p>")


class ArgumentsTests(ToolTestCase):
    def assert_refused(self, *arguments):
        run = self.run_tool(*arguments)
        self.assert_failure(run, TOOL_DOMAIN, 1, {"NSLocalizedDescription": "wrong number of arguments"},
                            "wrong number of arguments")
        self.assertEqual(os.listdir(self.folder / "out"), [])
        self.assertEqual(len(run.log.messages), 1, run.log.text)
        self.assertTrue(run.log.messages[0].startswith("finish with error: "), run.log.text)

    def test_none(self):
        self.assert_refused()

    def test_one(self):
        self.assert_refused("screen")

    def test_one_too_few(self):
        self.assert_refused("screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf")

    def test_one_too_many(self):
        self.assert_refused("screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf", "uid", "more")

    def test_empty_arguments_count(self):
        run = self.convert(SIMPLE, mode="", uid="")
        self.assertIn("Simple", run.pdf.text())

    def test_relative_paths(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        self.archive_file(SIMPLE)
        run = self.run_tool("screen", "page.webarchive", "out/relative.pdf", "uid")
        self.assertEqual(run.result, {"succeeded": True, "path": "out/relative.pdf"})
        self.assertTrue((self.folder / "out" / "relative.pdf").is_file())

    def test_names_beyond_ascii(self):
        run = self.convert(SIMPLE, name="Grüße 日本 %20 (1).pdf")
        self.assertIn("Simple", run.pdf.text())


class AnswerTests(ToolTestCase):
    def test_success_has_two_keys_and_is_xml(self):
        run = self.convert(SIMPLE)
        self.assertIn(b'<plist version="1.0">', run.answer)
        self.assertEqual(run.result, {"succeeded": True, "path": str(self.folder / "out" / "page.pdf")})

    def test_success_is_logged_with_nil(self):
        self.assertEqual(self.convert(SIMPLE).log.messages[-1], "finish with error: (null)")

    def test_failure_is_logged(self):
        run = self.run_tool("screen")
        self.assertIn(TOOL_DOMAIN, run.log.messages[-1])
        self.assertIn("wrong number of arguments", run.log.messages[-1])

    def test_same_archive_in_xml(self):
        self.assertIn("Simple", self.convert(SIMPLE, xml=True).pdf.text())

    def test_standard_output_that_takes_nothing(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        with open("/dev/full", "wb") as full:
            child = subprocess.run([os.environ["WEB2PDF_TOOL"], "screen", self.archive_file(SIMPLE),
                                    str(self.folder / "out" / "page.pdf"), "uid"], stdout=full,
                                   stdin=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                   env=self.environment(), timeout=60)
        self.assertEqual(child.returncode, 0, child.stderr)
        self.assert_nothing_left()
        self.assertTrue((self.folder / "out" / "page.pdf").is_file())

    def test_reader_of_standard_output_has_gone(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        child = self.start("screen", self.archive_file(SIMPLE), self.folder / "out" / "page.pdf", "uid")
        child.stdout.close()
        errors = child.stderr.read()
        self.assertEqual(child.wait(timeout=60), 0, errors)
        self.assert_nothing_left()


class OutPathTests(ToolTestCase):
    def with_out_path(self, path, **options):
        return self.convert(SIMPLE, expect_success=False, environment=self.environment(OutPath=path), **options)

    def test_answer_goes_to_the_file_alone(self):
        path = self.folder / "out" / "answer.plist"
        run = self.with_out_path(path)
        self.assertEqual(run.answer, b"")
        with open(path, "rb") as file:
            self.assertEqual(plistlib.load(file, fmt=plistlib.FMT_XML), {"succeeded": True, "path": run.output})

    def test_old_answer_is_replaced_as_a_whole(self):
        path = self.folder / "out" / "answer.plist"
        path.write_bytes(b"x" * 100000)
        keeper = self.folder / "old"
        os.link(path, keeper)
        self.with_out_path(path)
        self.assertTrue(plistlib.loads(path.read_bytes())["succeeded"])
        self.assertEqual(keeper.read_bytes(), b"x" * 100000)

    def test_failure_goes_there_too(self):
        path = self.folder / "out" / "answer.plist"
        run = self.run_tool("screen", environment=self.environment(OutPath=path))
        self.assertEqual(run.answer, b"")
        self.assertEqual(plistlib.loads(path.read_bytes())["errorString"], "wrong number of arguments")

    def assert_unwritable(self, path):
        run = self.with_out_path(path)
        self.assertEqual(run.answer, b"")
        self.assertTrue(os.path.isfile(run.output))
        self.assertIn(f"Error writing output to {path}: <NSError Domain=", run.log.unnamed)
        self.assertEqual(run.log.unnamed.count("Error writing output"), 1)

    def test_missing_folder(self):
        self.assert_unwritable(self.folder / "nowhere" / "answer.plist")
        self.assertFalse((self.folder / "nowhere").exists())

    def test_directory(self):
        (self.folder / "taken").mkdir()
        (self.folder / "taken" / "inside").write_text("kept", encoding="utf-8")
        self.assert_unwritable(self.folder / "taken")
        self.assertEqual(os.listdir(self.folder / "taken"), ["inside"])

    def test_empty_value_is_a_path_nobody_can_write(self):
        run = self.with_out_path("")
        self.assertEqual(run.answer, b"")
        self.assertIn("Error writing output to : <NSError Domain=", run.log.unnamed)


class PermissionTests(ToolTestCase):
    def test_umask_decides(self):
        for mask, mode in ((0o022, 0o644), (0o077, 0o600), (0o002, 0o664)):
            with self.subTest(oct(mask)):
                run = self.convert(SIMPLE, name=f"{mask}.pdf", umask=mask)
                self.assertEqual(oct(os.stat(run.output).st_mode & 0o7777), oct(mode))

    def test_old_file_is_replaced_as_a_whole(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                path = self.folder / "out" / f"{mode}.pdf"
                path.write_bytes(b"old contents")
                keeper = self.folder / f"old-{mode}"
                os.link(path, keeper)
                run = self.convert(SIMPLE, mode=mode, name=f"{mode}.pdf")
                self.assertIn("Simple", run.pdf.text())
                self.assertEqual(keeper.read_bytes(), b"old contents")

    def test_as_an_ordinary_user(self):
        (self.folder / "out").chmod(0o777)
        run = self.convert(html_archive("<p>Ordinary</p>"), **self.as_nobody())
        self.assertIn("Ordinary", run.pdf.text())


if __name__ == "__main__":
    unittest.main()
