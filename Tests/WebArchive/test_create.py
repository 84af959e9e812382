"""webarchive create: an archive of a page on disk has what the page uses, in its place, and nothing else."""

import os
import plistlib
import unittest

from creation import CreationTestCase, colours
from images import png, svg
from pages import BLUE, GOLD, GREEN, RED, css

FONT = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf"


def picture(number):
    """A picture of which no two are the same."""
    return png(4, 4, (number, 100, 200))


class EveryReferenceTests(CreationTestCase):
    def setUp(self):
        super().setUp()
        self.files = {}

    def add(self, name, contents):
        self.write(name, contents)
        self.files[self.address(name)] = contents.encode() if isinstance(contents, str) else contents

    def pictures(self, *names):
        for name in names:
            self.add(name, picture(len(self.files)))

    def test_all_that_is_used_and_nothing_else(self):
        self.pictures("img.png", "one.png", "two.png", "wide.png", "imported.png", "printed.png", "dark.png",
                      "poster.png", "scripted.png", "late.png", "input.png", "background.png", "styled.png",
                      "lazy.png", "inner.png", "srcdoc.png", "object.png", "blank.png", "narrow.png")
        self.add("drawing.svg", svg(10, 10, RED))
        self.add("symbols.svg", '<svg xmlns="http://www.w3.org/2000/svg"><symbol id="s"><rect width="9" height="9"/>'
                                "</symbol></svg>")
        self.add("styles/page.css", "@import url(more.css);@font-face{font-family:F;src:url(../font.ttf)}"
                                    "p{font-family:F}"
                                    "@media print{#p{background:url(../printed.png)}}"
                                    "@media (prefers-color-scheme:dark){#p{background:url(../dark.png)}}"
                                    "@media (max-width:500px){#p{border-image:url(../narrow.png)}}")
        self.add("styles/more.css", "#i{background:url(../imported.png)}")
        self.add("styles/paper.css", "p{color:black}")
        with open(FONT, "rb") as font:
            self.add("font.ttf", font.read())
        self.add("script.js", "import './module.js'; const i = new Image(); i.src = 'scripted.png'; document.body.append(i);"
                              "setTimeout(() => { const l = new Image(); l.src = 'late.png'; document.body.append(l); }, 500);"
                              "fetch('data.json');")
        self.add("module.js", "export default 1;")
        self.add("data.json", "{}")
        self.add("frames/one.html", "<!DOCTYPE html><p>FrameOne<img src=../inner.png><iframe src=two.html name=two></iframe>")
        self.add("frames/two.html", "<!DOCTYPE html><p>FrameTwo")
        self.add("object.html", "<!DOCTYPE html><p>ObjectText<img src=object.png>")
        self.add("page.html", """<!DOCTYPE html><title>All</title><link rel=stylesheet href=styles/page.css>
            <link rel=stylesheet href=styles/paper.css media=print>
            <body background=background.png><p id=p>Text</p><p id=i>More</p>
            <img src=img.png><img src=one.png srcset="one.png 1x, two.png 2x">
            <picture><source media="(min-width:1500px)" srcset=wide.png><img src=img.png></picture>
            <video poster=poster.png></video><input type=image src=input.png>
            <div style="background:url(styled.png)">x</div>
            <img src=drawing.svg><svg><use href="symbols.svg#s"/></svg>
            <iframe src=frames/one.html name=one></iframe>
            <iframe srcdoc="<p>SrcdocText<img src=srcdoc.png>"></iframe>
            <object data=object.html></object><iframe id=blank></iframe>
            <script>blank.contentDocument.write('<p>BlankText<img src=blank.png>'); blank.contentDocument.close();</script>
            <script type=module src=script.js></script>
            <div style="height:5000px"></div><img src=lazy.png loading=lazy>""")
        self.write("unused.png", b"unused")
        made = self.create("page.html")
        self.assertEqual(made.errors, "")
        stored = made.archive.all_resources()
        self.assertEqual(sorted(stored), sorted(self.files))
        self.assertEqual([name for name, data in self.files.items() if stored[name] != data], [])
        types = made.archive.types()
        self.assertEqual({types[self.address(name)] for name in ("img.png", "styles/page.css", "font.ttf", "script.js",
                                                                 "data.json", "symbols.svg", "object.html")},
                         {"image/png", "text/css", "font/ttf", "text/javascript", "application/json", "image/svg+xml",
                          "text/html"})
        text = self.convert_made(made).text()
        for word in ("Text", "More", "FrameOne", "FrameTwo", "SrcdocText", "ObjectText", "BlankText"):
            self.assertEqual(text.split().count(word), 1, f"{word} in {text}")


class CreateTests(CreationTestCase):
    def test_frames_are_nested_and_named(self):
        self.write("page.html", "<!DOCTYPE html><p>Top</p><iframe src=a.html name=first></iframe>"
                                "<iframe src=a.html></iframe><iframe srcdoc='<iframe src=c.html></iframe>'></iframe>")
        self.write("a.html", "<!DOCTYPE html><p>A</p><img src=a.png><iframe src=sub/b.html name='&auml; b'></iframe>")
        self.write("sub/b.html", "<!DOCTYPE html><p>B</p><img src=b.png>")
        self.write("c.html", "<!DOCTYPE html><p>C</p>")
        self.write("a.png", picture(1))
        self.write("sub/b.png", picture(2))
        made = self.create("page.html").archive
        self.assertIsNone(made.name)
        self.assertEqual([(one.url, one.name) for one in made.frames],
                         [(self.address("a.html"), "first"), (self.address("a.html"), None), (self.address("c.html"), None)])
        first = made.frames[0]
        self.assertEqual(first.urls, [self.address("a.png")])
        self.assertEqual([(one.url, one.name) for one in first.frames], [(self.address("sub/b.html"), "ä b")])
        self.assertEqual(first.frames[0].urls, [self.address("sub/b.png")])

    def test_names_of_every_kind(self):
        names = {"a b.png": "a%20b.png", "new\nline.png": "new%0Aline.png", "per%cent.png": "per%25cent.png",
                 "ha#sh.png": "ha%23sh.png", "que?stion.png": "que%3Fstion.png", "ä日.png": "%C3%A4%E6%97%A5.png",
                 "back\\slash.png": "back%5Cslash.png", "a;b=c&d.png": "a;b=c&d.png"}
        files = {os.fsencode(name): address for name, address in names.items()}
        files[b"\xff\xe9.png"] = "%FF%E9.png"
        for number, name in enumerate(files):
            self.write(name, picture(number))
        images = "".join(f'<img src="{address}">' for address in files.values())
        self.write("the #1 page%20?.html", "<!DOCTYPE html>" + images + '<img src="a b.png?query">')
        made = self.create("the #1 page%20?.html")
        self.assertEqual(made.errors, "")
        self.assertEqual(made.archive.url, self.address("the%20%231%20page%2520%3F.html"))
        self.assertEqual(made.archive.urls, [*map(self.address, files.values()), self.address("a%20b.png?query")])
        self.assertEqual([data for _, _, data in made.archive.resources[:-1]], list(map(picture, range(len(files)))))

    def test_encodings_are_those_that_the_page_was_read_in(self):
        text = "日本語の文章です。これは文字コードの宣言がないページです。" * 20
        pages = {"UTF-16LE": ("﻿<!DOCTYPE html><p>" + text).encode("utf-16-le"),
                 "UTF-16BE": ("﻿<!DOCTYPE html><p>" + text).encode("utf-16-be"),
                 "Shift_JIS": ("<!DOCTYPE html><p>" + text).encode("shift_jis"),
                 "EUC-JP": ("<!DOCTYPE html><meta charset=euc-jp><p>" + text).encode("euc-jp"),
                 "UTF-8": ("<!DOCTYPE html><meta charset=utf-8><p>" + text).encode()}
        for encoding, data in pages.items():
            with self.subTest(encoding):
                self.write("page.html", data)
                made = self.create("page.html")
                self.assertEqual((made.archive.encoding, made.archive.data), (encoding, data))
                self.assertIn("文字コードの宣言", self.convert_made(made).text())

    def test_folder_as_browsers_save_it(self):
        self.write("My page.html", '<!DOCTYPE html><p>SavedPage</p><img src="./My%20page_files/a.png">'
                                   '<iframe src="./My page_files/saved_resource.html"></iframe>')
        self.write("My page_files/a.png", picture(1))
        self.write("My page_files/saved_resource.html", "<!DOCTYPE html><p>SavedFrame</p><img src=./a.png>")
        self.write("Other.html", "<p>Other</p>")
        made = self.create(".")
        self.assertEqual(made.archive.url, self.address("My%20page.html"))
        self.assertEqual(sorted(made.archive.all_resources()), sorted(map(self.address, (
            "My%20page.html", "My%20page_files/a.png", "My%20page_files/saved_resource.html"))))
        self.assertIn("SavedFrame", self.convert_made(made).text())

    def test_type_of_a_file_without_an_ending_is_told_by_its_bytes(self):
        self.write("page", "<!DOCTYPE html><p>Page</p><img src=picture>")
        self.write("picture", picture(1))
        made = self.create("page").archive
        self.assertEqual(made.mime, "text/html")
        self.assertEqual(made.resources, [(self.address("picture"), "image/png", picture(1))])

    def test_converted_archive_shows_the_page(self):
        self.write("a.png", png(40, 40, RED))
        self.write("b.png", png(40, 40, GREEN))
        self.write("s.css", f"body{{background:{css(GOLD)}}} div{{width:40px;height:40px;background:url(c.png)}}")
        self.write("c.png", png(40, 40, BLUE))
        self.write("f.html", "<!DOCTYPE html><p>FrameText</p><img src=b.png>")
        self.write("page.html", "<!DOCTYPE html><title>Title</title><link rel=stylesheet href=s.css><p>PageText</p>"
                                "<img src=a.png><div></div><iframe src=f.html></iframe>")
        pdf = self.convert_made(self.create("page.html"))
        self.assertEqual(pdf.attribute("Title"), "Title")
        self.assertIn("PageText", pdf.text())
        self.assertIn("FrameText", pdf.text())
        self.assertLessEqual({RED, GREEN, BLUE, GOLD}, colours(pdf))

    def test_page_stays_when_it_wants_to_go(self):
        self.write("page.html", "<!DOCTYPE html><meta http-equiv=refresh content='0;url=other.html'><p>Stays</p>"
                                "<script>location = 'other.html'</script>")
        self.write("other.html", "<p>Other</p>")
        made = self.create("page.html").archive
        self.assertEqual(made.url, self.address("page.html"))
        self.assertIn(b"Stays", made.data)


class AddressTests(CreationTestCase):
    def setUp(self):
        super().setUp()
        self.write("page.html", '<!DOCTYPE html><img src=files/a.png><img src="/x/files/b.png">'
                                '<img src="http://site.example/x/files/c.png"><img src="//other.example/d.png">')
        for name in "abc":
            self.write(f"files/{name}.png", picture(ord(name)))

    def test_stored_under_the_address_that_is_given(self):
        made = self.create("page.html", "--url", "HTTP://Site.example:80/x/page.html?q")
        self.assertEqual(made.archive.url, "http://site.example/x/page.html?q")
        self.assertEqual(made.archive.urls, [f"http://site.example/x/files/{name}.png" for name in "abc"])
        self.assertEqual(made.errors, "webarchive: http://other.example/d.png: it is not on this disk\n")

    def test_addresses_of_other_kinds_are_refused(self):
        for address in ("about:blank", "page.html", "javascript:1", "http://", ""):
            with self.subTest(address):
                made = self.create("page.html", "--url", address, succeeds=False)
                self.assertFalse(made.path.exists())


class RefusalTests(CreationTestCase):
    def setUp(self):
        super().setUp()
        (self.folder / "secret.png").write_bytes(b"SECRET")
        self.write("sub/in.png", picture(1))
        self.write("top.png", picture(2))
        for name, target in {"out.png": "../../secret.png", "passwd.png": "/etc/passwd", "up": "../..",
                             "fine.png": "in.png"}.items():
            os.symlink(target, self.disk / "sub" / name)
        references = ("in.png", "fine.png", "out.png", "passwd.png", "up/secret.png", "../top.png", "../../secret.png",
                      "..%2f..%2fsecret.png", "%2e%2e/top.png", "file:///etc/passwd", "missing.png",
                      "http://127.0.0.1:9/net.png")
        self.write("sub/page.html", "<!DOCTYPE html>" + "".join(f'<img src="{one}">' for one in references))

    def test_nothing_outside_of_the_folder(self):
        made = self.create("sub/page.html")
        self.assertEqual(made.archive.urls, [self.address("sub/in.png"), self.address("sub/fine.png")])
        self.assertNotIn(b"SECRET", made.path.read_bytes())
        self.assertEqual(sorted(made.errors.splitlines()), sorted(f"webarchive: {line}" for line in (
            "out.png: it leads out of the folder",
            "passwd.png: it leads out of the folder",
            "up/secret.png: it leads out of the folder",
            f"{self.address('top.png')}: it is out of the folder",
            f"{self.folder.as_uri()}/secret.png: it is out of the folder",
            f"{self.address('sub/..%2f..%2fsecret.png')}: its name cannot be a file's",
            "file:///etc/passwd: it is out of the folder",
            "missing.png: there is no such file",
            "http://127.0.0.1:9/net.png: it is not on this disk")))

    def test_wider_root(self):
        made = self.create("sub/page.html", "--root", ".")
        self.assertEqual(made.archive.urls, [self.address(name) for name in ("sub/in.png", "sub/fine.png", "top.png")])

    def test_strict_writes_nothing(self):
        made = self.create("sub/page.html", "--strict", succeeds=False)
        self.assertFalse(made.path.exists())
        self.assertIn("missing.png: there is no such file", made.errors)

    def test_strict_is_content_with_a_whole_page(self):
        self.write("whole.html", "<!DOCTYPE html><img src=top.png>")
        self.assertEqual(self.create("whole.html", "--strict").archive.urls, [self.address("top.png")])


class FailureTests(CreationTestCase):
    def setUp(self):
        super().setUp()
        self.write("page.html", "<!DOCTYPE html><p>Page</p>")

    def fails(self, *arguments, **more):
        """Nothing is written, and what was there stays."""
        path = self.folder / "made.webarchive"
        path.write_bytes(b"before")
        made = self.create(*arguments, succeeds=False, **more)
        self.assertEqual(path.read_bytes(), b"before")
        return made.errors

    def test_no_such_page(self):
        self.assertIn("no such file", self.fails("missing.html"))

    def test_folder_without_a_page(self):
        (self.disk / "empty").mkdir()
        self.assertEqual(self.fails("empty"), "webarchive: empty has no page\n")

    def test_file_that_is_no_page(self):
        self.write("program.bin", bytes(range(256)))
        self.assertEqual(self.fails("program.bin"),
                         "webarchive: the page cannot be loaded: it is of a kind that is not shown\n")

    def test_no_engine(self):
        errors = self.fails("page.html", environment=self.environment(WEB2PDF_ENGINE="/bin/false"))
        self.assertIn("the page cannot be loaded", errors)

    def test_place_that_cannot_be_written(self):
        run = self.program("create", "page.html", str(self.folder / "missing" / "made.webarchive"))
        self.assertEqual((run.returncode, run.stdout), (1, b""))
        self.assertIn(b"No such file or directory", run.stderr)

    def test_the_page_is_not_replaced(self):
        run = self.program("create", "page.html", "./page.html")
        self.assertEqual(run.returncode, 1)
        self.assertEqual((self.disk / "page.html").read_bytes(), b"<!DOCTYPE html><p>Page</p>")

    def test_existing_archive_is_replaced(self):
        (self.folder / "made.webarchive").write_bytes(b"before")
        self.assertEqual(self.create("page.html").archive.url, self.address("page.html"))

    def test_xml(self):
        made = self.create("page.html", "--xml")
        self.assertTrue(made.path.read_bytes().startswith(b"<?xml"))
        self.assertEqual(plistlib.loads(made.path.read_bytes())["WebMainResource"]["WebResourceData"],
                         b"<!DOCTYPE html><p>Page</p>")


if __name__ == "__main__":
    unittest.main()
