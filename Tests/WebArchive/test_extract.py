"""webarchive extract: the files, and that nothing is written elsewhere."""

import os
import pathlib
import re
import resource

import samples
from program import FAILURE, ProgramTestCase
from webarchive import Archive, Resource, dump, html_archive, labelled, malformed

SAFE_NAME = re.compile(r"[A-Za-z0-9][A-Za-z0-9._-]{0,98}")


class ExtractTestCase(ProgramTestCase):
    def extract(self, archive, *options, **more):
        """The folder with the files."""
        folder = self.folder / "out"
        self.run_program("extract", *options, self.file(archive), folder, **more)
        return folder

    def files(self, archive):
        """The contents by path."""
        folder = self.extract(archive)
        return {str(path.relative_to(folder)): path.read_bytes() for path in folder.rglob("*") if path.is_file()}


class ExtractTests(ExtractTestCase):
    def test_files_have_readable_names(self):
        self.assertEqual(self.files(samples.with_frames()), {
            "index.html": b"<p>Page</p>",
            "files/frame-1.html": b"<p>First</p>", "files/frame-2.html": b"<p>Inner</p>",
            "files/frame-3.html": b"<p>Second</p>",
            "files/a.css": b"p { color: green }", "files/a-2.css": b"p { color: red }",
            "files/resource.css": b"p{}", "files/a-b.png": b"\x89PNG\r\n\x00\xff"})

    def test_references_lead_to_the_files(self):
        page = html_archive("<link rel=stylesheet href='/s/a.css?v=1&amp;w'><img src='../p/b.png'><a href=other.html>",
                            "http://site.example/d/page.html")
        page.add(Resource("http://site.example/s/a.css?v=1&w", "@import 'x/c.css'; p{background:url(../p/b.png)}",
                          "text/css"),
                 Resource("http://site.example/s/x/c.css", "p{background:url(\"//site.example/p/b.png\")}", "text/css"),
                 Resource("http://site.example/p/b.png", b"PNG", "image/png"))
        found = self.files(page)
        self.assertEqual(found["index.html"], b'<link rel=stylesheet href="files/a.css"><img src="files/b.png">'
                                              b'<a href="http://site.example/d/other.html">')
        self.assertEqual(found["files/a.css"], b"@import 'c.css'; p{background:url(b.png)}")
        self.assertEqual(found["files/c.css"], b'p{background:url("b.png")}')

    def test_the_main_page_may_be_anything(self):
        for mime, name, data in (("application/pdf", "index.pdf", b"%PDF-1.4"), ("image/png", "index.png", b"x"),
                                 ("application/xhtml+xml", "index.xhtml", b"<html/>")):
            with self.subTest(mime):
                found = self.files(Archive(Resource("http://site.example/", data, mime)))
                self.assertEqual(found[name], data)
                self.assertIn(f'content="0; url={name}"'.encode(), found["index.html"])
                for path in (self.folder / "out").glob("*.*"):
                    path.unlink()
                (self.folder / "out" / "files").rmdir()

    def test_a_page_that_is_shared_by_its_frames_is_written_for_each(self):
        frame = html_archive("<p>Frame</p>", "http://site.example/f").plist()
        found = self.files(dump({**html_archive("<p>Page</p>").plist(), "WebSubframeArchives": [frame] * 3}))
        self.assertEqual(sorted(found), ["files/frame-1.html", "files/frame-2.html", "files/frame-3.html", "index.html"])

    def test_equal_pictures_are_written_once(self):
        page = html_archive("<img src=a.png><img src=b.png>", "http://site.example/")
        for name in "ab":
            page.add(Resource(f"http://site.example/{name}.png", b"the same bytes", "image/png"))
        found = self.files(page)
        self.assertEqual(found, {"index.html": b'<img src="files/a.png"><img src="files/a.png">',
                                 "files/a.png": b"the same bytes"})

    def test_files_that_are_no_archive_make_no_folder(self):
        for name, data in malformed().items():
            with self.subTest(name):
                self.assert_fails("is no web archive", "extract", self.file(data), self.folder / "out")
                self.assertFalse((self.folder / "out").exists())


class OutputFolderTests(ExtractTestCase):
    def test_a_folder_with_files_is_refused(self):
        path, out = self.file(html_archive("<p>New</p>")), self.folder / "out"
        out.mkdir()
        (out / "mine").write_text("mine", encoding="utf-8")
        self.assert_fails("is not empty", "extract", path, out)
        self.assertEqual(os.listdir(out), ["mine"])
        self.run_program("extract", "--force", path, out)
        self.assertEqual((out / "mine").read_text(encoding="utf-8"), "mine")
        self.assertEqual((out / "index.html").read_text(encoding="utf-8"), "<p>New</p>")

    def test_force_replaces_files_and_follows_no_link(self):
        page = html_archive("<p>New</p>").add(Resource("http://site.example/a.png", b"new", "image/png"))
        out, victim = self.extract(page), self.folder / "victim"
        victim.write_text("unharmed", encoding="utf-8")
        for name in ("index.html", "files/a.png"):
            (out / name).unlink()
            (out / name).symlink_to(victim)
        self.extract(page, "--force")
        self.assertEqual(victim.read_text(encoding="utf-8"), "unharmed")
        self.assertEqual((out / "files" / "a.png").read_bytes(), b"new")
        self.assertFalse((out / "index.html").is_symlink())

    def test_a_link_in_the_place_of_the_folder_for_files_is_refused(self):
        out, elsewhere = self.folder / "out", self.folder / "elsewhere"
        out.mkdir()
        elsewhere.mkdir()
        (out / "files").symlink_to(elsewhere)
        page = html_archive("<p>New</p>").add(Resource("http://site.example/a.png", b"new", "image/png"))
        self.assert_fails("files cannot be opened as a folder", "extract", "--force", self.file(page), out)
        self.assertEqual(os.listdir(elsewhere), [])

    def test_write_errors_are_told(self):
        page = html_archive("<p>x</p>").add(Resource("http://site.example/a.png", bytes(100_000), "image/png"))
        path = self.file(page)
        self.assert_fails("cannot be made", "extract", path, self.folder / "none" / "out")
        self.assert_fails("cannot be opened as a folder", "extract", path, path)
        run = self.run_program("extract", path, self.folder / "out", status=FAILURE,
                               preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_FSIZE, (50_000, 50_000)))
        self.assertIn("a.png cannot be written: File too large", run.errors)

    def test_names_of_any_bytes(self):
        out = os.fsencode(self.folder) + b"/a\xff\n\x1b[2J b"
        self.run_program("extract", self.file(html_archive("<p>x</p>")), out)
        self.assertEqual(pathlib.Path(os.fsdecode(out), "index.html").read_bytes(), b"<p>x</p>")
        self.assert_fails("is not empty", "extract", self.file(html_archive("<p>x</p>")), out)


class HostileArchiveTests(ExtractTestCase):
    def assert_safe(self, found):
        for path in found:
            inner = path.removeprefix("files/")
            self.assertTrue(SAFE_NAME.fullmatch(inner), path)
        names = [path.lower() for path in found]
        self.assertEqual(len(set(names)), len(names))

    def test_addresses_lead_to_no_other_folder(self):
        page = html_archive("<p>x</p>")
        for number, address in enumerate((
                "http://h/../../../../etc/passwd", "http://h/%2e%2e%2f%2e%2e%2fx", "http://h/..", "http://h/.",
                "file:///etc/passwd", "/etc/passwd", "../../x", "http://h/a%00b", "http://h/a\x00b", "\\..\\..\\x",
                "http://h/" + "n" * 300, "http://h/" + "ä" * 300, "http://h/.bashrc", "http://h/-rf", "http://h/a\nb",
                f"http://h/{samples.ESCAPES}", "http://h/x.a%2F..%2F..%2Fb", "http://h/index.html", "http://h/files",
                "http://h/FRAME-1.HTML", "http://h/con", "javascript:alert(1)", "http://h/x.sh;y", "http://h/A",
                "http://h/a")):
            page.add(Resource(address, b"%d" % number, "application/octet-stream"))
        found = self.files(page)
        self.assert_safe(found)
        self.assertEqual(sorted(data for data in found.values() if data.isdigit()),
                         sorted(b"%d" % number for number in range(25)))
        self.assertEqual(sorted(os.listdir(self.folder)), ["out", "page.webarchive"])

    def test_texts_that_would_do_something_to_a_terminal(self):
        self.assert_safe(self.files(samples.hostile_texts()))

    def test_as_many_resources_as_an_archive_may_have(self):
        folder = self.extract(samples.many_resources(250_000), timeout=120)
        self.assertEqual(os.listdir(folder / "files"), ["x.txt"])

    def test_many_resources_of_one_name(self):
        page = html_archive("<p>x</p>")
        for number in range(20_000):
            page.add(Resource(f"http://h/{number}/x", b"%d" % number, "image/png"))
        self.assertEqual(len(self.files(page)), 20_001)

    def test_deeply_nested_frames(self):
        found = self.files(samples.nested(70))
        self.assertEqual(len(found), 65)
        self.assertIn(b'src="frame-64.html"', found["files/frame-63.html"])

    def test_shared_bytes_do_not_fill_the_disk(self):
        """10,000 frames that share a page of 1 MB would be 10 GB."""
        frame = html_archive("x" * 1_000_000, "http://site.example/f").plist()
        root = {**html_archive("<p>Page</p>").plist(), "WebSubframeArchives": [frame] * 10_000}
        self.assert_fails("many times as large", "extract", self.file(dump(root)), self.folder / "out")
        size = sum(path.stat().st_size for path in (self.folder / "out").rglob("*"))
        self.assertLess(size, 100 << 20)

    def test_frames_that_are_asked_for_in_vain(self):
        page = html_archive("<iframe src=x name=y></iframe>" * 100_000, "http://site.example/")
        for number in range(2000):
            page.add_frame(Archive(Resource(f"http://h/{number}", "x", frame_name=f"other{number}")))
        self.assertEqual(len(self.files(page)), 2001)

    def test_labels_that_are_no_encodings(self):
        for label in ("no such", "x" * 5000, "../../x", "utf-7", "utf-16"):
            with self.subTest(label):
                self.run_program("extract", "--force", self.file(Archive(labelled("http://h/", b"<p>\xff</p>", label))),
                                 self.folder / "out")
