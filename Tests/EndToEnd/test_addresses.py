"""Addresses of the main page: those that the engine cannot be asked for, and what lies beside them."""

import unittest

from images import png
from pages import GREEN, SITE, document, frame_archive
from pdf import near
from tool import ToolTestCase
from webarchive import HTML, Archive, Resource, html_archive

LOCAL = "file:///home/me/"


class MainAddressTests(ToolTestCase):
    def test_addresses_of_every_kind(self):
        for url in (LOCAL + "page.html", "about:blank", "feed-reader://site.example/item/7", "x:y", "", None,
                    "data:text/html,other", "http://site.example:99999/", "javascript:alert(1)", "no address"):
            with self.subTest(url):
                html = document('<p>Shown</p><img src="a.png">')
                run = self.convert(Archive(Resource(url, html, HTML)))
                self.assertIn("Shown", run.pdf.text())
                self.assertEqual(run.pdf.attribute("Title"), "A page")

    def test_page_without_an_address_has_no_subject(self):
        for url in ("", None):
            with self.subTest(url):
                pdf = self.convert(Archive(Resource(url, document("<p>Shown</p>"), HTML)), mode="print").pdf
                self.assertEqual((pdf.attribute("Subject"), pdf.attribute("Author")), ("", ""))


class BesideTests(ToolTestCase):
    """Resources of pages whose address the engine cannot be asked for."""

    def assert_green(self, archive, place=(50, 50)):
        picture = self.convert(archive).pdf.picture()
        self.assertTrue(near(picture.pixel(*place), GREEN), picture.pixel(*place))

    def page(self, url, body, *resources, frames=()):
        html = f"<!DOCTYPE html><style>body{{margin:0}}img{{display:block}}</style>{body}"
        return html_archive(html, url).add(*resources).add_frame(*frames)

    def picture(self, url):
        return Resource(url, png(4, 4, GREEN), "image/png")

    def test_relative_reference(self):
        for url, beside in (("feed-reader://site.example/item/7", "feed-reader://site.example/item/a.png"),
                            (LOCAL + "page.html", LOCAL + "a.png")):
            with self.subTest(url):
                self.assert_green(self.page(url, "<img src='a.png' width=100 height=100>", self.picture(beside)))

    def test_absolute_reference(self):
        for place in (LOCAL, "feed-reader://site.example/item/"):
            with self.subTest(place):
                self.assert_green(self.page(place + "page.html", f"<img src='{place}a.png' width=100 height=100>",
                                            self.picture(place + "a.png")))

    def test_absolute_references_in_texts_whose_types_have_parameters(self):
        body = f'<link rel="stylesheet" href="{LOCAL}s.css"><img src="{LOCAL}a.png" width=100 height=100><div></div>'
        html = f"<!DOCTYPE html><style>body{{margin:0}}img{{display:block}}</style>{body}"
        archive = Archive(Resource(LOCAL + "page.html", html, "text/html; charset=utf-8"))
        archive.add(self.picture(LOCAL + "a.png"), self.picture(LOCAL + "b.png"),
                    Resource(LOCAL + "s.css", f"div{{height:100px;background:url({LOCAL}b.png)}}",
                             "Text/CSS; charset=utf-8"))
        self.assert_green(archive)
        self.assert_green(archive, (50, 150))

    def test_absolute_reference_to_a_local_file_elsewhere(self):
        for reference in ("file:///other/a%20b.png", "file:///other/a b.png", "file://localhost/other/a b.png"):
            with self.subTest(reference):
                self.assert_green(self.page(LOCAL + "page.html", f'<img src="{reference}" width=100 height=100>',
                                            self.picture("file:///other/a%20b.png")))

    def test_absolute_references_in_styles(self):
        inner = f"@import '{LOCAL}two.css';"
        sheets = [Resource(LOCAL + "one.css", inner, "text/css"),
                  Resource(LOCAL + "two.css", f"div{{height:100px;background:url({LOCAL}a.png)}}", "text/css")]
        for body in (f'<link rel="stylesheet" href="{LOCAL}one.css"><div></div>', f"<style>{inner}</style><div></div>",
                     f'<div style="height:100px;background:url({LOCAL}a.png)"></div>'):
            with self.subTest(body):
                self.assert_green(self.page(LOCAL + "page.html", body, self.picture(LOCAL + "a.png"), *sheets))

    def test_absolute_reference_of_a_script_and_in_it(self):
        script = Resource(LOCAL + "s.js", f"document.images[0].src = '{LOCAL}a.png'", "text/javascript")
        self.assert_green(self.page(LOCAL + "page.html",
                                    f'<img width=100 height=100><script src="{LOCAL}s.js"></script>',
                                    self.picture(LOCAL + "a.png"), script))

    def test_absolute_reference_of_a_frame(self):
        for place in (LOCAL, "feed-reader://site.example/item/"):
            with self.subTest(place):
                inner = frame_archive(None, place + "f.html", "Inner",
                                      body=f'<img src="{place}a.png" width=100 height=100>')
                inner.add(self.picture(place + "a.png"))
                run = self.convert(self.page(place + "page.html", f'<iframe src="{place}f.html"></iframe>',
                                             frames=[inner]))
                self.assertIn("Inner", run.pdf.text())

    def test_address_that_is_shown_stays_as_it_is(self):
        body = f'<p>{LOCAL}shown</p><p><a href="{LOCAL}next.html">Link</a></p>'
        pdf = self.convert(self.page(LOCAL + "page.html", body)).pdf
        self.assertIn(LOCAL + "shown", pdf.text())
        self.assertEqual(pdf.links(), [LOCAL + "next.html"])

    def test_web_page_sees_no_local_files(self):
        archive = self.page(SITE + "page.html", '<img src="file:///etc/hostname"><iframe src="file:///etc/passwd">'
                                                '</iframe><p>Shown</p>')
        self.assertEqual(self.convert(archive).pdf.text().split(), ["Shown"])

    def test_local_page_sees_only_stored_files(self):
        archive = self.page(LOCAL + "page.html", '<iframe src="file:///etc/passwd"></iframe><object '
                            'data="file:///etc/passwd" type="text/plain"></object><p id=p>Shown</p><script>'
                            "fetch('file:///etc/passwd').then(r => r.text()).then(t => p.textContent = t)"
                            "</script>")
        self.assertEqual(self.convert(archive).pdf.text().split(), ["Shown"])


if __name__ == "__main__":
    unittest.main()
