"""Character sets and the resources of a page: pictures, style sheets, fonts."""

import codecs
import os
import pathlib
import subprocess
import unittest

from images import gif, png
from pages import BLUE, CHARACTER_SETS, GOLD, GREEN, RED, SITE, css, in_character_set, page, with_images
from pdf import near
from tool import ToolTestCase
from webarchive import Archive, Resource, labelled

FONT = pathlib.Path("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf")


class EncodingTests(ToolTestCase):
    def assert_shown(self, archive, text, title=True):
        pdf = self.convert(archive).pdf
        self.assertEqual(" ".join(pdf.text().split()), text)
        if title:
            self.assertEqual(pdf.attribute("Title"), text)

    def test_label_alone(self):
        for name, text in CHARACTER_SETS.items():
            with self.subTest(name):
                self.assert_shown(in_character_set(name, label=name), text)

    def test_meta_alone(self):
        for name, text in CHARACTER_SETS.items():
            with self.subTest(name):
                self.assert_shown(in_character_set(name, meta=name), text)

    def test_label_beats_meta(self):
        for name, meta in (("utf-8", "windows-1252"), ("windows-1251", "utf-8"), ("shift_jis", "euc-kr"),
                           ("big5", "gb18030")):
            with self.subTest(name):
                self.assert_shown(in_character_set(name, label=name, meta=meta), CHARACTER_SETS[name])

    def test_mark_beats_both(self):
        self.assert_shown(in_character_set("utf-8", "windows-1252", "shift_jis", codecs.BOM_UTF8),
                          CHARACTER_SETS["utf-8"])

    def test_sixteen_bits_with_a_mark(self):
        html = "<!DOCTYPE html><title>T</title><p>Жизнь 日本</p>"
        data = codecs.BOM_UTF16_LE + html.encode("utf-16-le")
        self.assert_shown(Archive(labelled(SITE, data, "windows-1252")), "Жизнь 日本", title=False)

    def test_unknown_label_is_no_obstacle(self):
        self.assert_shown(in_character_set("utf-8", label="x-unheard-of", meta="utf-8"), CHARACTER_SETS["utf-8"])

    def test_label_of_a_frame_is_its_own(self):
        archive = page("<p>Жизнь</p><iframe src='text.html' width=400></iframe>")
        archive.add_frame(in_character_set("shift_jis", label="shift_jis"))
        text = self.convert(archive).pdf.text()
        self.assertIn("Жизнь", text)
        self.assertIn(CHARACTER_SETS["shift_jis"], text)

    def test_label_of_a_style_sheet(self):
        archive = page('<p class="w"></p>', head='<link rel="stylesheet" href="s.css">')
        sheet = ".w::before{content:'Жизнь'}".encode("cp1251")
        archive.add(labelled(SITE + "s.css", sheet, "windows-1251", "text/css"))
        self.assertIn("Жизнь", self.convert(archive).pdf.text())


class ResourceTests(ToolTestCase):
    def assert_pixels(self, archive, expected):
        picture = self.convert(archive).pdf.picture()
        for place, colour in expected.items():
            self.assertTrue(near(picture.pixel(*place), colour),
                            f"{picture.pixel(*place)} instead of {colour} at {place}")

    def test_present_duplicate_and_missing_pictures(self):
        run = self.convert(with_images())
        picture = run.pdf.picture()
        for x, colour in ((50, GREEN), (150, BLUE), (350, GOLD)):
            self.assertTrue(near(picture.pixel(x, 50), colour), f"{picture.pixel(x, 50)} at {x}")
        self.assertIn("Below the pictures", run.pdf.text())

    def test_picture_formats(self):
        archive = page('<style>body{margin:0}img{display:block;width:100px;height:100px}</style>'
                       '<img src="a.gif"><img src="b.png">')
        archive.add(Resource(SITE + "a.gif", gif(5, 5, RED), "image/gif"),
                    Resource(SITE + "b.png", png(5, 5, BLUE), "image/png"))
        self.assert_pixels(archive, {(50, 50): RED, (50, 150): BLUE})

    def picture_page(self, source, stored, url=SITE + "page.html"):
        archive = page(f'<style>body{{margin:0}}</style><img src="{source}" width=100 height=100>', url)
        return archive.add(Resource(stored, png(5, 5, GREEN), "image/png"))

    def test_address_is_normalised(self):
        for source, stored in (("./x/../a b.png", SITE + "a%20b.png"), ("HTTP://SITE.example:80/a.png", SITE + "a.png"),
                               ("a.png#part", SITE + "a.png"), ("a.png?x=1&amp;y=2", SITE + "a.png?x=1&y=2"),
                               ("ä.png", SITE + "%C3%A4.png")):
            with self.subTest(source):
                self.assert_pixels(self.picture_page(source, stored), {(50, 50): GREEN})

    def test_secure_falls_back_to_plain(self):
        self.assert_pixels(self.picture_page("https://other.example/a.png", "http://other.example/a.png",
                                             "https://site.example/"), {(50, 50): GREEN})

    def test_plain_picture_in_a_secure_page(self):
        self.assert_pixels(self.picture_page("http://other.example/a.png", "http://other.example/a.png",
                                             "https://site.example/"), {(50, 50): GREEN})

    def test_query_counts(self):
        self.assert_pixels(self.picture_page("a.png?x=1", SITE + "a.png?x=2"), {(50, 50): (255, 255, 255)})

    def test_style_sheets_and_what_they_import(self):
        archive = page("<div></div>", head='<link rel="stylesheet" href="one.css">')
        archive.add(Resource(SITE + "one.css", '@import "two.css"; body{margin:0} div{height:50px}', "text/css"),
                    Resource(SITE + "two.css", f"div{{background:{css(RED)}}}", "text/css"))
        self.assert_pixels(archive, {(50, 25): RED})

    def test_pictures_below_the_view_are_loaded(self):
        archive = page('<style>body{margin:0}</style><div style="height:3000px"></div>'
                       '<img src="a.png" loading="lazy" width=100 height=100>')
        archive.add(Resource(SITE + "a.png", png(5, 5, GREEN), "image/png"))
        self.assert_pixels(archive, {(50, 3050): GREEN})

    def font_page(self, stored):
        archive = page('<p style="font-family:Probe,monospace">Letters</p>',
                       head="<style>@font-face{font-family:Probe;src:url(https://fonts.example/probe.ttf)}"
                            "body{font-family:monospace}</style>")
        if stored:
            archive.add(Resource("https://fonts.example/probe.ttf", FONT.read_bytes(), "font/ttf"))
        run = self.convert(archive)
        self.assertIn("Letters", run.pdf.text())
        return subprocess.run(["pdffonts", run.output], capture_output=True, check=True, timeout=60).stdout

    def test_font_from_another_site(self):
        self.assertIn(b"DejaVuSans-Bold", self.font_page(stored=True))
        self.assertNotIn(b"DejaVuSans-Bold", self.font_page(stored=False))

    def test_stored_fetch_answers_the_page(self):
        archive = page("<p id=p>Before</p><script>fetch('data.json').then(r => r.json())"
                       ".then(j => { p.textContent = j.word; });</script>")
        archive.add(Resource(SITE + "data.json", '{"word":"Fetched"}', "application/json"))
        self.assertEqual(self.convert(archive).pdf.text().split(), ["Fetched"])

    def test_modules_run(self):
        archive = page('<p id=p>Before</p><script type="module" src="https://other.example/m.mjs"></script>')
        archive.add(Resource("https://other.example/m.mjs", "document.getElementById('p').textContent='Module';",
                             "text/javascript"))
        self.assertEqual(self.convert(archive).pdf.text().split(), ["Module"])

    def test_large_picture(self):
        archive = page('<style>body{margin:0}</style><img src="a.png" width=100 height=100>')
        padded = png(5, 5, GREEN) + os.urandom(40 << 20)
        self.assert_pixels(archive.add(Resource(SITE + "a.png", padded, "image/png")), {(50, 50): GREEN})

    def test_picture_too_large_for_the_engine_costs_only_itself(self):
        archive = page('<style>body{margin:0}</style><img src="a.png" width=100 height=100>'
                       '<img src="b.png" width=100 height=100>')
        archive.add(Resource(SITE + "a.png", png(5, 5, RED) + bytes(120 << 20), "image/png"),
                    Resource(SITE + "b.png", png(5, 5, GREEN), "image/png"))
        self.assert_pixels(archive, {(150, 50): GREEN})


if __name__ == "__main__":
    unittest.main()
