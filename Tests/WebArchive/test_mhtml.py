"""MHTML files: read, with their frames in place; written, so that a browser shows them; and back again."""

import base64
import quopri
import unittest

from browser import Browser
from creation import CreationTestCase, StoredArchive, colours
from images import png
from pages import BLUE, GREEN, RED
from pdf import PDF
from webarchive import Archive, Resource

SITE = "http://site.example/"


def message(*parts, newline="\r\n"):
    """An MHTML file of parts: (headers, text in quoted-printable or bytes in base64)."""
    lines = ["From: <Saved>", "MIME-Version: 1.0", 'Content-Type: multipart/related; type="text/html"; boundary="BB"', ""]
    for headers, body in parts:
        is_text = isinstance(body, str)
        coded = quopri.encodestring(body.encode()) if is_text else base64.encodebytes(body)
        lines += ["--BB", *headers, f"Content-Transfer-Encoding: {'quoted-printable' if is_text else 'base64'}", "",
                  *coded.decode().splitlines(), ""]
    return newline.join([*lines, "--BB--", ""]).encode()


class MHTMLCase(CreationTestCase):
    def printed(self, file):
        """The engine's own print of a file."""
        with Browser() as browser:
            print_ = browser.open(file).call("Page.printToPDF", printBackground=True)["data"]
        path = self.folder / "out" / "engine.pdf"
        path.write_bytes(base64.b64decode(print_))
        return PDF(path)

    def mhtml(self, archive_path, name="made.mhtml"):
        path = self.folder / name
        run = self.program("extract", "--mhtml", str(archive_path), str(path))
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        return path


class ReadMHTMLTests(MHTMLCase):
    def test_frames_by_identifier_and_by_address(self):
        self.write("page.mhtml", message(
            (["Content-Type: text/html; charset=utf-8", f"Content-Location: {SITE}page.html"],
             '<!DOCTYPE html><p>Tëxt</p><img src=a.png><iframe src="cid:one@x"></iframe><iframe src=two.html></iframe>'
             '<iframe src="cid:three@x"></iframe>'),
            (["Content-Type: image/png", f"Content-Location: {SITE}a.png"], png(40, 40, RED)),
            (["Content-Type: text/html", f"Content-Location: {SITE}sub/one.html", "Content-ID: <one@x>"],
             "<!DOCTYPE html><p>FrameOne</p><img src=b.png>"),
            (["Content-Type: image/png", f"Content-Location: {SITE}sub/b.png"], png(40, 40, GREEN)),
            (["Content-Type: text/html; charset=Shift_JIS", f"Content-Location: {SITE}two.html"],
             "<!DOCTYPE html><p>日本</p>".encode("shift_jis")),
            (["Content-Type: text/html; charset=utf-8", "Content-ID: <three@x>"],
             "<!DOCTYPE html><p>FrameThree</p>"),
            (["Content-Type: image/png", f"Content-Location: {SITE}unused.png"], png(3, 3, BLUE))))
        made = self.create("page.mhtml")
        self.assertEqual(made.errors, "")
        archive = made.archive
        self.assertEqual((archive.url, archive.encoding, archive.mime), (SITE + "page.html", "utf-8", "text/html"))
        self.assertEqual(archive.urls, [SITE + "a.png", SITE + "unused.png"])
        self.assertEqual([(frame.url, frame.encoding, frame.urls) for frame in archive.frames],
                         [(SITE + "sub/one.html", "UTF-8", [SITE + "sub/b.png"]), (SITE + "two.html", "Shift_JIS", []),
                          ("http://cid.invalid/three@x", "utf-8", [])])
        pdf = self.convert_made(made)
        for word in ("Tëxt", "FrameOne", "日本", "FrameThree"):
            self.assertIn(word, pdf.text())
        self.assertLessEqual({RED, GREEN}, colours(pdf))

    def test_line_ends_of_either_kind(self):
        for newline in ("\r\n", "\n"):
            self.write("page.mht", message((["Content-Type: text/html"], "<!DOCTYPE html><p>Plain</p>"), newline=newline))
            made = self.create("page.mht")
            self.assertEqual(made.archive.url, self.address("page.mht"))
            self.assertIn(b"<p>Plain</p>", made.archive.data)

    def test_missing_parts_are_told(self):
        self.write("page.mhtml", message((["Content-Type: text/html", f"Content-Location: {SITE}"],
                                          "<!DOCTYPE html><img src=a.png><img src=cid:gone>")))
        self.assertEqual(sorted(self.create("page.mhtml").errors.splitlines()),
                         ["webarchive: cid:gone: it is not in the file", f"webarchive: {SITE}a.png: it is not in the file"])
        self.assertFalse(self.create("page.mhtml", "--strict", succeeds=False, name="no.webarchive").path.exists())

    def test_files_that_are_none(self):
        for contents in (b"", b"text", b"\0" * 5000, message(), message((["Content-Type: image/png"], b"x"))):
            self.write("page.mhtml", contents)
            made = self.create("page.mhtml", succeeds=False)
            self.assertEqual(made.errors, "webarchive: page.mhtml: has no page in it\n")
            self.assertFalse(made.path.exists())

    def test_snapshot_of_the_engine(self):
        """Of the engine's own snapshot all parts are there, and the page looks as it did."""
        self.write("f.html", "<!DOCTYPE html><p>InnerText</p><img src=b.png>")
        self.write("a.png", png(40, 40, RED))
        self.write("b.png", png(40, 40, GREEN))
        self.write("page.html", "<!DOCTYPE html><title>T</title><style>p{color:black}</style><p>OuterText</p><img src=a.png>"
                                "<iframe src=f.html></iframe><iframe srcdoc='<p>SrcdocText'></iframe>")
        snapshot = snapshot_of(self.disk / "page.html")
        self.write("page.mhtml", snapshot)
        made = self.create("page.mhtml")
        self.assertEqual(made.errors, "")
        self.assertEqual(made.archive.url, self.address("page.html"))
        self.assertEqual([frame.url for frame in made.archive.frames][:1], [self.address("f.html")])
        self.assertEqual(len(made.archive.frames), 2)
        pdf = self.convert_made(made)
        for word in ("OuterText", "InnerText", "SrcdocText"):
            self.assertEqual(pdf.text().split().count(word), 1, pdf.text())
        self.assertLessEqual({RED, GREEN}, colours(pdf))


def snapshot_of(page):
    """The MHTML file that the engine makes of a page."""
    with Browser() as browser:
        return browser.open(page).call("Page.captureSnapshot", format="mhtml")["data"].encode()


class WriteMHTMLTests(MHTMLCase):
    def archive(self, site):
        everything = bytes(range(256)) * 50
        page = ('<!DOCTYPE html><meta charset=utf-8><p>OuterTëxt</p><link rel=stylesheet href=s.css><img src=a.png>'
                '<iframe src="sub/f.html" name=one></iframe>')
        archive = Archive(Resource(site + "page.html", page))
        archive.add(Resource(site + "a.png", png(40, 40, RED), "image/png"),
                    Resource(site + "s.css", "p{color:black}", "text/css", "utf-8"),
                    Resource(site + "data.bin", everything, "application/octet-stream"))
        frame = Archive(Resource(site + "sub/f.html", "<!DOCTYPE html><p>InnerText</p><img src=b.png>"
                                 "<iframe src=g.html></iframe>", frame_name="one"))
        frame.add(Resource(site + "sub/b.png", png(40, 40, GREEN), "image/png"))
        frame.add_frame(Archive(Resource(site + "sub/g.html", "<!DOCTYPE html><p>DeepText</p>".encode("utf-16"),
                                         encoding="UTF-16")))
        frame.frames[0].main.encoding = "UTF-16"
        return archive.add_frame(frame)

    def test_browser_shows_text_and_pictures(self):
        for site in (SITE, "file:///nowhere/"):
            with self.subTest(site):
                path = self.mhtml(self.archive_file(self.archive(site)))
                pdf = self.printed(path)
                for word in ("OuterTëxt", "InnerText", "DeepText"):
                    self.assertIn(word, pdf.text())
                self.assertLessEqual({RED, GREEN}, colours(pdf))

    def test_back_again_it_is_the_same(self):
        for site in (SITE, "file:///nowhere/"):
            with self.subTest(site):
                before = StoredArchive(self.archive(site).plist())
                made = self.create(str(self.mhtml(self.archive_file(self.archive(site)))))
                self.assertEqual(made.errors, "")
                self.assertEqual(made.archive.all_resources(), before.all_resources())
                self.assertEqual(made.archive.types(), before.types())
                self.assertEqual(made.archive.frames[0].name, "one")
                self.assertEqual(made.archive.frames[0].urls, before.frames[0].urls)
                self.assertEqual(made.archive.frames[0].frames[0].encoding, "UTF-16")

    def test_failures_write_nothing(self):
        for file, contents in (("text.webarchive", b"text"), ("missing.webarchive", None)):
            if contents is not None:
                (self.folder / file).write_bytes(contents)
            run = self.program("extract", "--mhtml", str(self.folder / file), str(self.folder / "no.mhtml"))
            self.assertEqual(run.returncode, 1)
            self.assertFalse((self.folder / "no.mhtml").exists())


if __name__ == "__main__":
    unittest.main()
