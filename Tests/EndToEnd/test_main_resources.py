"""Main resources that are no HTML: text, data, pictures, films."""

import unittest

from images import bmp, gif, ico, png, svg, webp
from pages import BLUE, GREEN, SITE, main_resource, page
from pdf import near
from tool import ToolTestCase
from video import mp4, wave
from webarchive import Resource

WHITE = (255, 255, 255)
FILM = mp4(8, 6, 105, 100, 70)
FILM_COLOUR = (11, 162, 47)


class TextTests(ToolTestCase):
    def assert_text(self, archive, *words):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                pdf = self.convert(archive, mode=mode).pdf
                for word in words:
                    self.assertIn(word, pdf.text())
                if mode == "screen":
                    self.assertEqual(pdf.page_count, 1)

    def test_plain_text(self):
        self.assert_text(main_resource(SITE + "a.txt", "PlainText <b>not bold</b>", "text/plain"),
                         "PlainText", "<b>not bold</b>")

    def test_text_with_control_characters(self):
        for character in ("\x00", "\x1a", "\x7f\x01"):
            with self.subTest(repr(character)):
                self.assert_text(main_resource(SITE + "a.txt", f"Before{character}\nAfter", "text/plain"),
                                 "Before", "After")

    def test_long_text(self):
        lines = [f"Line{number:04d}" for number in range(400)]
        self.assert_text(main_resource(SITE + "a.txt", "\n".join(lines), "text/plain"), *lines)

    def test_kinds_of_text(self):
        for mime in ("text/css", "text/csv", "application/json", "text/javascript", "text/markdown", "text/vcard",
                     "text/tab-separated-values", "application/ld+json", "application/x-yaml", "message/rfc822"):
            with self.subTest(mime):
                run = self.convert(main_resource(SITE + "a.bin", "body { one: <two> }", mime))
                self.assertEqual(run.pdf.text().split("\n")[0], "body { one: <two> }")

    def test_text_in_its_character_set(self):
        self.assert_text(main_resource(SITE + "a.csv", "Жизнь,прекрасна", "text/csv", "windows-1251"),
                         "Жизнь,прекрасна")

    def test_data_in_elements(self):
        for mime in ("text/xml", "application/xml", "application/rss+xml", "application/atom+xml"):
            with self.subTest(mime):
                self.assert_text(main_resource(SITE + "a.xml", "<?xml version='1.0'?><r><a>DataText</a></r>", mime),
                                 "DataText")

    def test_xhtml(self):
        html = ('<?xml version="1.0"?><html xmlns="http://www.w3.org/1999/xhtml"><head><title>X</title></head>'
                "<body><p>StrictText</p></body></html>")
        self.assert_text(main_resource(SITE + "a.xhtml", html, "application/xhtml+xml"), "StrictText")

    def test_drawing(self):
        self.assert_text(main_resource(SITE + "a.svg", svg(300, 100, GREEN, "Drawn"), "image/svg+xml"), "Drawn")


class PictureTests(ToolTestCase):
    def assert_natural(self, data, mime, width, height, colour=GREEN):
        """In its natural size at the page's start, with nothing around it."""
        run = self.convert(main_resource(SITE + "a.img", data, mime, None))
        self.assertEqual(run.pdf.page_count, 1)
        self.assertEqual(run.pdf.size(), (max(612, width), max(792, height)))
        pixels = run.pdf.picture()
        self.assertTrue(near(pixels.pixel(2, 2), colour), pixels.pixel(2, 2))
        self.assertTrue(near(pixels.pixel(width - 3, height - 3), colour), pixels.pixel(width - 3, height - 3))
        for place in ((width + 3, 3), (3, height + 3)):
            if place[0] < 612 and place[1] < 792:
                self.assertTrue(near(pixels.pixel(*place), WHITE), f"{pixels.pixel(*place)} at {place}")

    def test_formats(self):
        for name, make, mime in (("png", png, "image/png"), ("bmp", bmp, "image/bmp"), ("webp", webp, "image/webp"),
                                 ("gif", gif, "image/gif"), ("ico", ico, "image/x-icon"),
                                 ("type in capitals", png, "IMAGE/PNG")):
            with self.subTest(name):
                self.assert_natural(make(60, 40, GREEN), mime, 60, 40)

    def test_larger_than_the_view(self):
        self.assert_natural(png(1500, 300, GREEN), "image/png", 1500, 300)
        self.assert_natural(png(300, 2000, GREEN), "image/png", 300, 2000)

    def test_larger_than_the_view_in_print(self):
        pdf = self.convert(main_resource(SITE + "a.png", png(1440, 300, GREEN), "image/png", None), mode="print").pdf
        self.assertEqual(pdf.page_count, 1)
        pixels = pdf.picture()
        for place, colour in (((40, 40), GREEN), ((570, 145), GREEN), ((580, 40), WHITE), ((40, 155), WHITE)):
            self.assertTrue(near(pixels.pixel(*place), colour), f"{pixels.pixel(*place)} at {place}")

    def test_what_is_no_picture(self):
        for data in (b"", b"no picture", png(60, 40, GREEN)[:40]):
            with self.subTest(data[:10]):
                self.assertEqual(self.convert(main_resource(SITE + "a.png", data, "image/png", None)).pdf.page_count, 1)


class FilmTests(ToolTestCase):
    def test_first_picture_in_natural_size(self):
        for mode, place, outside in (("screen", (5, 5), (135, 5)), ("print", (41, 41), (200, 41))):
            with self.subTest(mode):
                pdf = self.convert(main_resource(SITE + "a.mp4", FILM, "video/mp4", None), mode=mode).pdf
                self.assertEqual(pdf.page_count, 1)
                pixels = pdf.picture()
                self.assertTrue(near(pixels.pixel(*place), FILM_COLOUR), pixels.pixel(*place))
                self.assertTrue(near(pixels.pixel(*outside), WHITE), pixels.pixel(*outside))

    def test_in_a_page(self):
        for attributes, colour in (("", FILM_COLOUR), ("autoplay muted loop", FILM_COLOUR), ('poster="p.png"', BLUE)):
            with self.subTest(attributes):
                archive = page('<style>body{margin:0}video{display:block}</style>'
                               f'<video src="a.mp4" {attributes}></video>')
                archive.add(Resource(SITE + "a.mp4", FILM, "video/mp4"),
                            Resource(SITE + "p.png", png(128, 96, BLUE), "image/png"))
                pixel = self.convert(archive).pdf.picture().pixel(64, 48)
                self.assertTrue(near(pixel, colour), pixel)

    def test_sound_and_what_cannot_be_played(self):
        for data, mime in ((wave(), "audio/wav"), (bytes(2000), "video/mp4"), (b"", "video/webm"),
                           (FILM[:300], "video/mp4"), (b"none", "audio/mpeg")):
            with self.subTest(f"{mime} {len(data)}"):
                run = self.convert(main_resource(SITE + "a.bin", data, mime, None))
                self.assertEqual(run.pdf.page_count, 1)
                self.assertTrue(near(run.pdf.picture().pixel(600, 780), WHITE))


if __name__ == "__main__":
    unittest.main()
