"""The end of the tool, expected or not: nothing outlives it, nothing is left half-written."""

import concurrent.futures
import os
import subprocess
import unittest

import engine
import processes
from pages import acting, page, paragraphs
from tool import INTERRUPT, KILL, TERMINATE, ToolTestCase, read_result, stop_by

URL_ERRORS = "NSURLErrorDomain"


class StoppedTests(ToolTestCase):
    """The tool is stopped from outside while its engine shows a page."""

    def assert_ends(self, signal_number, archive):
        child = self.start_and_show(archive, 60)
        self.assertGreaterEqual(len(processes.descendants()), 3, "no engine came up")
        status = stop_by(signal_number, child)
        self.assertEqual(processes.wait_until_none(5), {}, "processes outlived the tool")
        self.assertEqual(processes.carrying("WEB2PDF_TEST_RUN", self.marker), {})
        self.assertEqual(os.listdir(self.folder / "out"), [])
        self.assertEqual(os.listdir(self.folder / "tmp"), [])
        processes.reap()
        return status

    def test_killed(self):
        self.assertEqual(self.assert_ends(KILL, page("<p>Text</p>")), -KILL)

    def test_killed_with_a_page_that_never_rests(self):
        self.assertEqual(self.assert_ends(KILL, acting("setTimeout(() => { for (;;); }, 0)")), -KILL)

    def test_terminated(self):
        self.assertEqual(self.assert_ends(TERMINATE, page("<p>Text</p>")), -TERMINATE)

    def test_interrupted(self):
        self.assertEqual(self.assert_ends(INTERRUPT, page("<p>Text</p>")), -INTERRUPT)

    def test_killed_while_the_engine_starts(self):
        path = self.script("engine", engine.NEVER_ANSWERS)
        child = self.start("screen", self.archive_file(page("<p>Text</p>")), self.folder / "out" / "page.pdf", "uid",
                           environment=self.environment(WEB2PDF_ENGINE=path))
        self.assertIsNotNone(processes.wait_for(lambda: len(processes.descendants()) >= 2, 20))
        stop_by(KILL, child)
        self.assertEqual(processes.wait_until_none(5), {}, "processes outlived the tool")
        processes.reap()


class EngineDiesTests(ToolTestCase):
    """The engine ends before the tool has got what it wants from it."""

    def convert_with(self, text, mode="screen", old=None, **environment):
        path = self.folder / "out" / "page.pdf"
        if old is not None:
            path.write_bytes(old)
        return self.convert(page("<p>Text</p>"), mode=mode, expect_success=False,
                            environment=self.environment(WEB2PDF_ENGINE=self.script("engine", text), **environment))

    def test_proxy_alone_changes_nothing(self):
        run = self.convert_with(engine.proxy("Nothing.atAll", "die"))
        self.assert_success(run)
        self.assertIn("Text", run.pdf.text())

    def test_dies_while_the_page_is_delivered(self):
        run = self.convert_with(engine.proxy("Fetch.fulfillRequest", "die"), old=b"old contents")
        self.assert_failure(run, URL_ERRORS, -1005)
        with open(run.output, "rb") as file:
            self.assertEqual(file.read(), b"old contents")

    def test_killed_while_the_page_is_shown(self):
        child = self.start_and_show(page("<p>Text</p>"), 3)
        others = [pid for pid in processes.descendants() if pid != child.pid]
        self.assertGreaterEqual(len(others), 2)
        for pid in others:
            try:
                os.kill(pid, KILL)
            except ProcessLookupError:
                pass
        answer, errors = child.communicate(timeout=60)
        result = read_result(answer)
        self.assertEqual(child.returncode, 0)
        self.assertFalse(result["succeeded"], errors)
        self.assertFalse((self.folder / "out" / "page.pdf").exists())
        self.assert_nothing_left()

    def assert_print_failed(self, text):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                run = self.convert_with(text, mode=mode)
                self.assert_failure(run, "NSCocoaErrorDomain", 512, {"NSFilePath": run.output},
                                    "The file “page.pdf” couldn’t be saved in the folder “out”.")

    def test_dies_while_printing(self):
        self.assert_print_failed(engine.proxy("Page.printToPDF", "die"))

    def test_refuses_to_print(self):
        self.assert_print_failed(engine.proxy("Page.printToPDF", "refuse"))

    def test_old_document_gets_the_attributes_when_nothing_is_rendered(self):
        old = self.convert(paragraphs(3), name="old.pdf").output
        with open(old, "rb") as file:
            run = self.convert_with(engine.proxy("Page.printToPDF", "refuse"), old=file.read())
        self.assert_success(run)
        self.assertIn("Paragraph0002", run.pdf.text())
        self.assertEqual(run.pdf.attribute("Title"), "A page")
        self.assertEqual(run.pdf.attribute("Subject"), "http://site.example/page.html")

    def test_old_file_that_is_no_document_stays_when_nothing_is_rendered(self):
        run = self.convert_with(engine.proxy("Page.printToPDF", "refuse"), old=b"old contents")
        self.assert_answers_success(run)
        with open(run.output, "rb") as file:
            self.assertEqual(file.read(), b"old contents")

    def test_nonsense_instead_of_messages(self):
        run = self.convert_with(engine.ANSWERS_NONSENSE, old=b"old contents", WEB2PDF_ENGINE_START_TIMEOUT=2)
        self.assertEqual(run.result["succeeded"], False)
        self.assertEqual(run.error.domain, URL_ERRORS)


class SurroundingsTests(ToolTestCase):
    def test_temporary_folder_closed_to_others(self):
        (self.folder / "tmp").chmod(0o700)
        self.assertIn("Text", self.convert(page("<p>Text</p>")).pdf.text())

    def test_bare_environment(self):
        environment = {"XDG_CONFIG_HOME": str(self.folder / "config"), "WEB2PDF_TEST_RUN": self.marker}
        self.assertIn("Text", self.convert(page("<p>Text</p>"), environment=environment).pdf.text())

    def test_no_home(self):
        environment = self.environment(HOME=self.folder / "missing")
        self.assertIn("Text", self.convert(page("<p>Text</p>"), environment=environment).pdf.text())
        self.assertFalse((self.folder / "missing").exists())

    def test_standard_error_is_closed(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        output = self.folder / "out" / "page.pdf"
        done = subprocess.run(["/bin/sh", "-c", 'exec "$@" 2>&-', "sh", os.environ["WEB2PDF_TOOL"], "screen",
                               self.archive_file(page("<p>Text</p>")), str(output), "uid"],
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, env=self.environment(), timeout=60)
        self.assertEqual(read_result(done.stdout), {"succeeded": True, "path": str(output)})
        self.assert_nothing_left()

    def test_standard_input_and_output_are_closed(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        output, answer = self.folder / "out" / "page.pdf", self.folder / "out" / "answer.plist"
        done = subprocess.run(["/bin/sh", "-c", 'exec "$@" <&- >&-', "sh", os.environ["WEB2PDF_TOOL"], "screen",
                               self.archive_file(page("<p>Text</p>")), str(output), "uid"],
                              stderr=subprocess.PIPE, env=self.environment(OutPath=answer), timeout=60)
        self.assertEqual(done.returncode, 0, done.stderr)
        self.assertEqual(read_result(answer.read_bytes()), {"succeeded": True, "path": str(output)})
        self.assert_nothing_left()

    def test_several_at_once(self):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        archives = [self.archive_file(page(f"<p>Number{number}</p>"), f"{number}.webarchive") for number in range(6)]

        def convert(number):
            output = str(self.folder / "out" / f"{number}.pdf")
            child = self.start("screen", archives[number], output, "uid")
            answer, _ = child.communicate(timeout=90)
            return output, read_result(answer)

        with concurrent.futures.ThreadPoolExecutor(6) as pool:
            for output, result in pool.map(convert, range(6)):
                self.assertEqual(result, {"succeeded": True, "path": output})
        self.assert_nothing_left()


if __name__ == "__main__":
    unittest.main()
