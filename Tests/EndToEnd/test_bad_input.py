"""Input that cannot be converted: each kind ends with its defined error and nothing is touched."""

import os
import unittest

from pages import frameset, page, three_levels_of_frames
import engine
from keyedarchive import read_error
from tool import ToolTestCase, read_result
from webarchive import Resource, dump, html_archive, malformed

COCOA = "NSCocoaErrorDomain"
URL_ERRORS = "NSURLErrorDomain"
SIMPLE = page("<p>Simple</p>")
# The page comes when a load that is not waited for has long been taken for finished.
ANSWERS_LATE = """
import time

delays = [1.5]

def take_note(call):
    if call.get("method") == "Fetch.fulfillRequest" and delays:
        time.sleep(delays.pop())
    return True
"""


class BadInputTestCase(ToolTestCase):
    """Every failing run finds an old file at the output path and must leave it as it was."""

    def fail_with(self, arguments_path, mode="screen", **options):
        output = self.folder / "out" / "page.pdf"
        output.write_bytes(b"old contents")
        before = os.stat(output)
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        run = self.run_tool(mode, arguments_path, output, "uid", output=str(output), **options)
        after = os.stat(output)
        self.assertEqual(output.read_bytes(), b"old contents")
        self.assertEqual((before.st_ino, before.st_mtime_ns), (after.st_ino, after.st_mtime_ns))
        return run


class ArchiveFileTests(BadInputTestCase):
    def test_missing(self):
        path = str(self.folder / "missing.webarchive")
        self.assert_failure(
            self.fail_with(path), COCOA, 260, {"NSFilePath": path},
            "The file “missing.webarchive” couldn’t be opened because there is no such file.")

    def test_unreadable(self):
        path = self.archive_file(SIMPLE)
        os.chmod(path, 0)
        self.assert_failure(
            self.fail_with(path, **self.as_nobody()), COCOA, 257, {"NSFilePath": path},
            "The file “page.webarchive” couldn’t be opened because you don’t have permission to view it.")

    def test_directory(self):
        (self.folder / "folder.webarchive").mkdir()
        path = str(self.folder / "folder.webarchive")
        self.assert_failure(self.fail_with(path), COCOA, 256, {"NSFilePath": path})

    def test_empty_path(self):
        run = self.fail_with("")
        self.assertFalse(run.result["succeeded"])
        self.assertEqual(run.error.domain, COCOA)

    def test_cut_short_while_the_page_is_shown(self):
        """The picture is asked for when it is no longer there."""
        archive = page("<p>Text</p><script>setTimeout(() => { const image = new Image(); image.src = 'late.png'; "
                       "document.body.append(image); }, 4000)</script>")
        archive.add(Resource("http://site.example/late.png", bytes(4 << 20), "image/png"))
        child = self.start_and_show(archive, 6)
        os.truncate(self.folder / "page.webarchive", 300_000)
        answer, errors = child.communicate(timeout=60)
        self.assertEqual(child.returncode, 0, errors)
        error = read_error(read_result(answer)["errorData"])
        self.assertEqual((error.domain, error.code), (COCOA, 256), errors)
        self.assertEqual(error.user_info, {"NSFilePath": str(self.folder / "page.webarchive")})
        self.assert_nothing_left()

    def assert_no_archive(self, data):
        path = self.archive_file(data)
        self.assert_failure(
            self.fail_with(path), COCOA, 259, {"NSFilePath": path},
            "The file “page.webarchive” couldn’t be opened because it isn’t in the correct format.")


def _add_malformed_tests():
    """One test for each rule, so that each is told by its name."""
    for name, data in malformed().items():
        def test(self, data=data):
            self.assert_no_archive(data)
        setattr(ArchiveFileTests, "test_" + name.replace(" ", "_").replace("-", "_"), test)


_add_malformed_tests()


class LenientReadingTests(ToolTestCase):
    """What is wrong below the level of the archive itself costs only the part that is wrong."""

    def test_malformed_subresources_are_dropped(self):
        root = SIMPLE.plist()
        root["WebSubresources"] = [{}, {"WebResourceURL": "http://site.example/a.png"},
                                   {"WebResourceData": "text", "WebResourceURL": "http://site.example/b.png"},
                                   {"WebResourceData": b"x", "WebResourceURL": 5}]
        self.assertIn("Simple", self.convert(dump(root)).pdf.text())

    def test_invalid_sub_frame_is_skipped(self):
        root = three_levels_of_frames().plist()
        root["WebSubframeArchives"].insert(0, {"WebMainResource": {"WebResourceURL": "http://site.example/"}})
        text = self.convert(dump(root)).pdf.text()
        for word in ("LevelOne", "LevelTwo", "LevelThree"):
            self.assertIn(word, text)

    def test_empty_main_resource(self):
        run = self.convert(html_archive(""))
        self.assertEqual(run.pdf.page_count, 1)

    def test_archives_nested_without_end(self):
        root = SIMPLE.plist()
        for _ in range(200):
            root = {**SIMPLE.plist(), "WebSubframeArchives": [root]}
        self.assertIn("Simple", self.convert(dump(root)).pdf.text())

    def test_unknown_keys(self):
        root = SIMPLE.plist()
        root["Something"] = {"else": [1, 2, 3]}
        root["WebMainResource"]["WebResourceResponse"] = b"no keyed archive"
        self.assertIn("Simple", self.convert(dump(root)).pdf.text())


class FramesetTests(BadInputTestCase):
    FRAMES_TEXT = "The operation couldn’t be completed. (qvweb2pdf.frames error 0.)"

    def test_frameset_is_refused(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                path = self.archive_file(frameset())
                run = self.fail_with(path, mode=mode)
                self.assert_failure(run, "qvweb2pdf.frames", 0, {"NSFilePath": path}, self.FRAMES_TEXT)

    def test_frameset_without_stored_frames_is_refused(self):
        archive = frameset()
        archive.frames.clear()
        path = self.archive_file(archive)
        self.assert_failure(self.fail_with(path), "qvweb2pdf.frames", 0, {"NSFilePath": path}, self.FRAMES_TEXT)

    def test_frameset_at_an_address_that_is_not_waited_for_is_refused(self):
        for url in ("about:blank", "about:srcdoc", "about:blank#part"):
            with self.subTest(url):
                path = self.archive_file(frameset(url))
                run = self.fail_with(path, environment=self.environment(
                    WEB2PDF_ENGINE=self.script("engine", engine.between(ANSWERS_LATE))))
                self.assert_failure(run, "qvweb2pdf.frames", 0, {"NSFilePath": path})

    def test_frameset_is_refused_whatever_its_scripts_do(self):
        for place, endless in (
                ("frameset", "setTimeout(() => { for (;;); }, 10)"), ("frame", "setInterval(() => { for (;;); }, 10)"),
                ("frameset", "setTimeout(() => { for (;;) alert(1); }, 10)"),
                ("frame", "const more = () => Promise.resolve().then(more); setTimeout(more, 10)")):
            with self.subTest(endless, place=place):
                archive = frameset()
                resource = (archive if place == "frameset" else archive.frames[0]).main
                script = f"<head><script>top.addEventListener('load', () => {{ {endless} }})</script>"
                resource.data = resource.data.replace(b"<head>", script.encode())
                path = self.archive_file(archive)
                run = self.fail_with(path, timeout=30)
                self.assert_failure(run, "qvweb2pdf.frames", 0, {"NSFilePath": path})

    def test_engine_that_does_not_say_what_holds_the_frames(self):
        silent = engine.between('def take_note(call):\n    return call.get("method") != "DOM.getFrameOwner"\n')
        path = self.archive_file(page("<p>Simple</p>" + "<iframe sandbox></iframe>" * 30))
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        output = str(self.folder / "out" / "page.pdf")
        run = self.run_tool("screen", path, output, "uid", output=output, timeout=60,
                            environment=self.environment(WEB2PDF_ENGINE=self.script("engine", silent)))
        self.assert_success(run)

    def test_frameset_in_an_inline_frame_is_no_frameset_page(self):
        archive = page('<p>Outer</p><iframe src="frames.html" width=500 height=200></iframe>')
        run = self.convert(archive.add_frame(frameset()))
        for word in ("Outer", "LeftHalf", "RightHalf"):
            self.assertIn(word, run.pdf.text())


class OutputTests(ToolTestCase):
    def assert_not_saved(self, path, mode="screen", **options):
        self.set_preferences({"WebToolExtraLoadingTime": 0})
        run = self.run_tool(mode, self.archive_file(SIMPLE), path, "uid", **options)
        name, folder = os.path.basename(path), os.path.basename(os.path.dirname(path))
        self.assert_failure(run, COCOA, 512, {"NSFilePath": str(path)},
                            f"The file “{name}” couldn’t be saved in the folder “{folder}”.")

    def both_modes(self, path, **options):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                self.assert_not_saved(str(path), mode, **options)

    def test_directory_at_the_path(self):
        taken = self.folder / "out" / "taken.pdf"
        taken.mkdir()
        (taken / "inside").write_text("kept", encoding="utf-8")
        self.both_modes(taken)
        self.assertEqual(os.listdir(taken), ["inside"])

    def test_missing_folder(self):
        self.both_modes(self.folder / "nowhere" / "page.pdf")
        self.assertFalse((self.folder / "nowhere").exists())

    def test_file_in_place_of_the_folder(self):
        (self.folder / "plain").write_text("kept", encoding="utf-8")
        self.both_modes(self.folder / "plain" / "page.pdf")
        self.assertEqual((self.folder / "plain").read_text(encoding="utf-8"), "kept")

    def test_empty_path(self):
        self.both_modes("")

    def test_folder_that_takes_no_files(self):
        self.both_modes("/proc/page.pdf")

    def test_device_at_the_path_is_no_result(self):
        self.both_modes("/dev/full/page.pdf")

    def test_unwritable_folder(self):
        (self.folder / "out").chmod(0o555)
        self.both_modes(self.folder / "out" / "page.pdf", **self.as_nobody())


class EngineTests(BadInputTestCase):
    def with_engine(self, path, **more):
        return self.fail_with(self.archive_file(SIMPLE),
                              environment=self.environment(WEB2PDF_ENGINE=path, **more))

    def assert_says_what_to_install(self, run):
        self.assert_failure(run, COCOA, 4)
        self.assertIn("chromium-headless-shell", run.result["errorString"])

    def test_not_installed(self):
        self.assert_says_what_to_install(self.with_engine(self.folder / "missing"))

    def test_not_executable(self):
        path = self.script("engine", engine.DIES_AT_ONCE)
        os.chmod(path, 0o644)
        self.assert_says_what_to_install(self.with_engine(path))

    def test_dies_while_starting(self):
        self.assert_failure(self.with_engine(self.script("engine", engine.DIES_AT_ONCE)), URL_ERRORS, -1005)

    def test_never_answers(self):
        run = self.with_engine(self.script("engine", engine.NEVER_ANSWERS), WEB2PDF_ENGINE_START_TIMEOUT=2)
        self.assert_failure(run, URL_ERRORS, -1001)

    def test_page_at_an_address_that_is_not_waited_for(self):
        for url in ("about:blank", "about:srcdoc"):
            for text, code in ((engine.DIES_AT_ONCE, -1005), (engine.NEVER_ANSWERS, -1001),
                               (engine.proxy("Fetch.fulfillRequest", "die"), -1005)):
                with self.subTest(url, text=text[:40]):
                    run = self.fail_with(self.archive_file(page("<p>Text</p>", url)), environment=self.environment(
                        WEB2PDF_ENGINE=self.script("engine", text), WEB2PDF_ENGINE_START_TIMEOUT=2))
                    self.assert_failure(run, URL_ERRORS, code)

    def test_bad_archive_beats_missing_engine(self):
        path = self.archive_file(b"nothing")
        run = self.fail_with(path, environment=self.environment(WEB2PDF_ENGINE=self.folder / "missing"))
        self.assert_failure(run, COCOA, 259, {"NSFilePath": path})


if __name__ == "__main__":
    unittest.main()
