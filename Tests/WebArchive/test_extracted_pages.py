"""webarchive extract: what the real engine shows of the files, without network."""

import codecs
import pathlib

from browser import Browser
from images import png, svg
from pages import (BLUE, CHARACTER_SETS, GREEN, SITE, blank_frame_with_content, css, frame_archive, frameset,
                   in_character_set, page, three_levels_of_frames)
from test_extract import ExtractTestCase
from webarchive import Archive, Resource, labelled

FONT = pathlib.Path("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf")
OTHER = "https://other.example/"


def picture(address, width=7):
    return Resource(address, png(width, 5, BLUE), "image/png")


class ShowTestCase(ExtractTestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = cls.enterClassContext(Browser())

    def show(self, archive):
        """The page in the engine, which must not have asked the network for anything."""
        page_shown = self.browser.open(self.extract(archive, "--force") / "index.html")
        self.assertEqual([address for address in page_shown.addresses
                          if not address.startswith(("file:", "data:", "about:", "blob:"))], [])
        return page_shown


class ExtractedPageTests(ShowTestCase):
    def assert_images(self, body, *resources, widths=None, head="", url=SITE + "page.html"):
        """Each picture of the body is shown."""
        found = self.show(page(body, url, head=head).add(*resources)).images()
        self.assertEqual(found, widths or [7] * body.count("<img"), body)

    # References

    def test_every_form_of_a_reference(self):
        for reference in ("a/b.png", "./a/b.png", "/d/a/b.png", "//site.example/d/a/b.png", "../d/a/b.png",
                          "http://site.example/d/a/b.png", "HTTP://SITE.EXAMPLE:80/d/a/b.png", " a/b.png\n",
                          "a\\b.png", "a/x/../b.png", "a/b%2Epng", "https://site.example/d/a/b.png", "&#97;/b.png"):
            with self.subTest(reference):
                self.assert_images(f'<img src="{reference}">', picture("http://site.example/d/a/b.png"),
                                   url="http://site.example/d/page.html")

    def test_addresses_with_queries_escapes_and_letters(self):
        for address, reference in ((SITE + "i?a=1&b=2", "i?a=1&amp;b=2"), (SITE + "i?a=1&b=2", "i?a=1&b=2"),
                                   (SITE + "a b.png", "a b.png"), (SITE + "a%20b.png", "a b.png"),
                                   (SITE + "größe.png", "größe.png"), (SITE + "gr%C3%B6%C3%9Fe.png", "größe.png"),
                                   (SITE + "日本.png", "%E6%97%A5%E6%9C%AC.png"), (SITE + "x.png#y", "x.png"),
                                   ("file:///Users/x/a.png", "file:///Users/x/a.png")):
            with self.subTest(reference):
                self.assert_images(f'<img src="{reference}">', picture(address))

    def test_letters_of_other_encodings(self):
        html = f"<!DOCTYPE html><meta charset=utf-8><p>{CHARACTER_SETS['shift_jis']}</p><img src='表.png'>"
        archive = Archive(labelled(SITE, html.encode("shift_jis"), "shift_jis")).add(picture(SITE + "表.png"))
        shown = self.show(archive)
        self.assertEqual((shown.texts(), shown.images()), ([CHARACTER_SETS["shift_jis"]], [7]))

    def test_base_elements(self):
        for base in ("/deep/er/", "http://site.example/deep/er/x", "//site.example/deep/er/?y"):
            with self.subTest(base):
                self.assert_images('<img src="b.png"><img src="../er/b.png">', picture("http://site.example/deep/er/b.png"),
                                   head=f"<base href='{base}' target=_blank>")

    def test_pictures_to_choose_from(self):
        two = picture(SITE + "two.png", 14)
        for body in ('<img src="one.png" srcset="two.png 2x">', '<img srcset="one.png 1x, two.png 2x">',
                     '<img src="one.png" srcset="none.png 1x, two.png 2x" sizes="10px">',
                     '<picture><source srcset="none.avif" type="image/avif"><img src="two.png"></picture>',
                     '<picture><source srcset="none.png, two.png 3x"><img src="one.png"></picture>',
                     '<img src="two.png" srcset="none.png 1x">'):
            with self.subTest(body):
                self.assertNotIn(0, self.show(page(body).add(two)).images())

    def test_pictures_of_styles(self):
        body = ("<p style='background:url(\"b.png\")'>A</p><div class=c>B</div>"
                "<input type=image src=b.png><video poster=b.png></video>"
                "<svg><image id=i href=b.png width=5 height=5 /></svg>")
        shown = self.show(page(body, head="<style>.c{background:image-set('b.png' 1x)}</style>").add(picture(SITE + "b.png")))
        self.assertEqual(sum(address.endswith("/files/b.png") for address in set(shown.addresses)), 1)
        for selector in ("p", ".c"):
            self.assertIn("files/b.png", shown.colour(selector, "backgroundImage"))
        self.assertEqual(shown.evaluate("document.querySelector('input').width"), 7)

    # Sheets and fonts

    def test_sheets_that_import_each_other(self):
        archive = page("<p id=p>Text</p>", head="<link rel=stylesheet href='/css/a.css' integrity='sha256-x'"
                                                " crossorigin=anonymous>")
        archive.add(Resource("http://site.example/css/a.css", "@import 'deep/b.css';", "text/css"),
                    Resource("http://site.example/css/deep/b.css", "@import url(../c.css) screen;", "text/css"),
                    Resource("http://site.example/css/c.css", css(GREEN), "text/css"))
        shown = self.show(archive)
        self.assertEqual(len([address for address in shown.addresses if address.endswith(".css")]), 3)

    def test_fonts_of_archived_sheets(self):
        face = "@font-face{font-family:F;src:url('../f/a.eot?#iefix') format('embedded-opentype')," \
               "url(../f/a.ttf?v=4.7) format('truetype')} p{font-family:F}"
        archive = page("<p>Letters</p>", head=f"<link rel=stylesheet href='{OTHER}css/a.css'>")
        archive.add(Resource(OTHER + "css/a.css", face, "text/css"),
                    Resource(OTHER + "f/a.ttf?v=4.7", FONT.read_bytes(), "application/octet-stream"))
        self.assertEqual(self.show(archive).fonts(), ["F"])

    def test_policies_do_not_keep_files_away(self):
        head = ("<meta http-equiv='Content-Security-Policy' content=\"default-src 'self' http://site.example\">"
                f"<link rel=stylesheet href='{OTHER}a.css'>")
        archive = page("<p>Text</p><img src=b.png>", head=head)
        archive.add(Resource(OTHER + "a.css", "p{color:rgb(1,2,3)}", "text/css"), picture(SITE + "b.png"))
        shown = self.show(archive)
        self.assertEqual((shown.colour("p"), shown.images()), ("rgb(1, 2, 3)", [7]))

    def test_drawings_with_references_of_their_own(self):
        drawing = svg(20, 20, GREEN).replace("</svg>", "<style>@import 'd.css';</style><title/><image href='b.png'/></svg>")
        archive = page("<object data='s/d.svg' type='image/svg+xml'></object>")
        archive.add(Resource(SITE + "s/d.svg", drawing, "image/svg+xml"), picture(SITE + "s/b.png"),
                    Resource(SITE + "s/d.css", "rect{fill:rgb(1,2,3)}", "text/css"))
        shown = self.show(archive)
        self.assertEqual(shown.colour("rect", "fill", shown.frames()[1]), "rgb(1, 2, 3)")

    def test_scripts_are_run(self):
        archive = page("<p id=p>Before</p><script src='s.js' crossorigin integrity='sha256-x'></script>")
        archive.add(Resource(SITE + "s.js", "document.getElementById('p').textContent = 'After größe'",
                             "text/javascript"))
        self.assertEqual(self.show(archive).texts(), ["After größe"])

    # Frames

    def test_frames_by_name_address_and_order(self):
        self.assertEqual(self.show(three_levels_of_frames()).texts(),
                         ["LevelOne", "LevelTwo", "LevelThree"])
        self.assertEqual(self.show(frameset()).texts()[1:], ["LeftHalf", "RightHalf"])

    def test_frames_without_an_address(self):
        self.assertEqual(self.show(blank_frame_with_content()).texts(), ["Around", "FilledByName", "FilledToo"])

    def test_frames_without_an_address_have_the_base_of_their_page(self):
        archive = page('<iframe name="filled"></iframe>', "http://site.example/d/page.html")
        archive.add_frame(frame_archive("filled", "about:blank", "Filled", body="<img src='x/b.png'>"))
        archive.add(picture("http://site.example/d/x/b.png"))
        shown = self.show(archive)
        self.assertEqual((shown.texts()[1], shown.images()), ("Filled", [7]))

    def test_pages_in_attributes(self):
        archive = page('<iframe srcdoc="<p>Inside</p><img src=&quot;b.png&quot;>"></iframe>').add(picture(SITE + "b.png"))
        shown = self.show(archive)
        self.assertEqual((shown.texts(), shown.images()), (["", "Inside"], [7]))

    def test_many_frames(self):
        archive = page("".join(f'<iframe src="f{number}.html"></iframe>' for number in range(40)))
        for number in range(40):
            archive.add_frame(frame_archive(f"<!--frame{number}-->", f"{SITE}f{number}.html", f"Frame{number}",
                                            body="<img src='b.png'>"))
        shown = self.show(archive.add(picture(SITE + "b.png")))
        self.assertEqual(shown.texts()[1:], [f"Frame{number}" for number in range(40)])
        self.assertEqual(shown.images(), [7] * 40)

    def test_frames_have_resources_of_their_own(self):
        frame = Archive(Resource(SITE + "f.html", "<p>Frame</p><img src='b.png'>"), [picture(SITE + "b.png", 9)])
        archive = page("<img src='b.png'><iframe src='f.html'></iframe>").add(picture(SITE + "b.png")).add_frame(frame)
        self.assertEqual(self.show(archive).images(), [7, 9])

    def test_links_between_the_files(self):
        archive = page("<a href='http://site.example/f.html#there'>x</a><iframe src='f.html'></iframe>", "http://site.example/")
        archive.add_frame(frame_archive(None, "http://site.example/f.html", "Frame", body="<a href='/'>back</a>"))
        shown = self.show(archive)
        link = "document.querySelector('a').href"
        self.assertTrue(shown.evaluate(link).endswith("/out/files/frame-1.html#there"))
        self.assertTrue(shown.evaluate(link, shown.frames()[1]).endswith("/out/index.html"))

    # Other main resources

    def test_a_drawing_as_the_page(self):
        shown = self.show(Archive(Resource(SITE + "d.svg", svg(20, 20, GREEN, "Drawn"), "image/svg+xml")))
        self.assertEqual(shown.texts(), ["Drawn"])

    def test_a_text_as_the_page(self):
        for mime in ("text/plain", "text/csv", "application/json", "text/css"):
            with self.subTest(mime):
                self.assertEqual(self.show(Archive(Resource(SITE + "t", "Grüße,<p>", mime))).texts(), ["Grüße,<p>"])


class ExtractedEncodingTests(ShowTestCase):
    def test_labels_and_declarations(self):
        for name, text in CHARACTER_SETS.items():
            for label, meta in ((name, None), (None, name), (name, "utf-8"), (name, "windows-1252"), ("x-unheard-of", name)):
                with self.subTest(f"{name} {label} {meta}"):
                    self.assertEqual(self.show(in_character_set(name, label=label, meta=meta)).texts(), [text])

    def test_sixteen_bits(self):
        html = "<!DOCTYPE html><title>T</title><p>Жизнь 日本</p><img src='b.png'>"
        for data, label in ((codecs.BOM_UTF16_LE + html.encode("utf-16-le"), "windows-1252"),
                            (html.encode("utf-16-le"), "utf-16"), (html.encode("utf-16-be"), "utf-16be")):
            shown = self.show(Archive(labelled(SITE, data, label)).add(picture(SITE + "b.png")))
            self.assertEqual((shown.texts(), shown.images()), (["Жизнь 日本"], [7]))

    def test_sheets_in_encodings_of_their_own(self):
        head = "<meta charset=iso-8859-1><link rel=stylesheet href=a.css>"
        for label, encoding in (("windows-1251", "cp1251"), (None, "utf-8")):
            archive = page("<p>Text</p>", head=head)
            archive.add(labelled(SITE + "a.css", "p::before{content:'Жизнь'}".encode(encoding), label, "text/css"))
            shown = self.show(archive)
            self.assertEqual(shown.evaluate("getComputedStyle(document.querySelector('p'), '::before').content"),
                             '"Жизнь"')
