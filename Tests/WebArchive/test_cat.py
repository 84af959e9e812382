"""webarchive cat: the bytes of one resource."""

import samples
from program import ProgramTestCase
from webarchive import html_archive, malformed


class CatTests(ProgramTestCase):
    def cat(self, archive, *arguments):
        return self.run_program("cat", self.file(archive), *arguments).output

    def test_the_main_resource_without_an_address(self):
        self.assertEqual(self.cat(samples.with_frames()), b"<p>Page</p>")

    def test_bytes_are_unchanged(self):
        data = bytes(range(256)) * 5000 + b"\r\n\n"
        page = html_archive("x").add(samples.Resource("http://site.example/b", data, "a/b"))
        self.assertEqual(self.cat(page, "http://site.example/b"), data)

    def test_by_index(self):
        for index, text in ((0, b"<p>Page</p>"), (5, b"p { color: red }"), (6, b"<p>Inner</p>"),
                            (7, b"<p>Second</p>")):
            self.assertEqual(self.cat(samples.with_frames(), str(index)), text)

    def test_by_address(self):
        archive = samples.with_frames()
        self.assertEqual(self.cat(archive, "http://site.example/second.html"), b"<p>Second</p>")
        self.assertEqual(self.cat(archive, "data:text/css,p%7B%7D"), b"p{}")
        for spelling in ("http://site.example/a b.png", "http://site.example/a%20b.png"):
            self.assertEqual(self.cat(archive, spelling), b"\x89PNG\r\n\x00\xff")

    def test_in_a_frame(self):
        archive = samples.with_frames()
        self.assertEqual(self.cat(archive, "--frame", "1"), b"<p>First</p>")
        self.assertEqual(self.cat(archive, "--frame", "1.1"), b"<p>Inner</p>")
        self.assertEqual(self.cat(archive, "--frame", "1", "http://site.example/a.css"), b"p { color: red }")
        self.assertEqual(self.cat(archive, "--frame", "", "http://site.example/a.css"), b"p { color: green }")

    def test_what_is_not_there(self):
        path = self.file(samples.with_frames())
        for arguments in (("8",), ("99999999999999999999999",), ("http://site.example/none",), ("",),
                          ("--frame", "3"), ("--frame", "2", "http://site.example/a.css"), ("--frame", "1", "0"),
                          ("1x",)):
            with self.subTest(arguments):
                self.assert_fails("no such resource", "cat", path, *arguments)

    def test_ambiguous_addresses_are_refused_by_their_indexes(self):
        self.assert_fails("2 resources with this address; choose by index: 1 2", "cat",
                          self.file(samples.with_duplicates()), "http://site.example/twice")
        self.assert_fails("choose by index: 1 5\n", "cat", self.file(samples.with_frames()),
                          "http://site.example/a.css")
        self.assert_fails("9 10 ...\n", "cat", self.file(samples.many_resources(250_000)), "http://site.example/x")
        self.assertEqual(self.cat(samples.with_duplicates(), "2"), b"two")

    def test_files_that_are_no_archive_are_refused(self):
        for name, data in malformed().items():
            with self.subTest(name):
                self.assert_fails("is no web archive", "cat", self.file(data))
