"""Print mode: default paper, four margins, the page's width fitted, as many pages as needed."""

import unittest

from pages import BLUE, GOLD, GREEN, RED, boxes, css, media_styles, page, paragraphs
from pdf import near
from tool import ToolTestCase
from webarchive import html_archive

WHITE = (255, 255, 255)


def wide(width, height=400):
    """A box that fills the page's whole width, with a word at its right end."""
    return html_archive(f"<!DOCTYPE html><style>body{{margin:0}}div{{width:{width}px;height:{height}px;"
                        f"background:{css(RED)};text-align:right}}</style><div>RightEnd</div>")


class PrintTestCase(ToolTestCase):
    def print(self, archive, **options):
        return self.convert(archive, mode="print", **options).pdf

    def print_with(self, archive, preferences, **options):
        self.set_preferences({"WebToolExtraLoadingTime": 0, **preferences})
        return self.print(archive, quick=False, **options)

    def assert_edges(self, pdf, left, top, right):
        """The red box reaches from margin to margin and begins at the top margin, to a point."""
        picture = pdf.picture()
        middle = int(top) + 20
        for (x, y), colour in {(left - 2, middle): WHITE, (left + 2, middle): RED, (right - 3, middle): RED,
                               (right + 2, middle): WHITE, (left + 20, top - 2): WHITE,
                               (left + 20, top + 2): RED}.items():
            self.assertTrue(near(picture.pixel(x, y), colour), f"{picture.pixel(x, y)} at {x}, {y}")


class PaperTests(PrintTestCase):
    def test_letter(self):
        self.assertEqual(self.print(page("<p>Text</p>")).size(), (612, 792))

    def test_a4(self):
        width, height = self.print(page("<p>Text</p>"), environment=self.environment(PAPERSIZE="a4")).size()
        self.assertAlmostEqual(width, 595.28, delta=1)
        self.assertAlmostEqual(height, 841.89, delta=1)

    def test_every_page_has_the_size(self):
        pdf = self.print(paragraphs(300))
        self.assertGreater(pdf.page_count, 5)
        self.assertEqual({pdf.size(number) for number in range(1, pdf.page_count + 1)}, {(612, 792)})

    def test_short_page_is_one_page(self):
        self.assertEqual(self.print(page("<p>Text</p>")).page_count, 1)


class MarginTests(PrintTestCase):
    def test_default_margin(self):
        self.assert_edges(self.print(wide(2000)), 36, 36, 576)

    def test_margin_from_the_settings(self):
        self.assert_edges(self.print_with(wide(2000), {"Web2PDFPageMargin": 90}), 90, 90, 522)

    def test_no_margin(self):
        pdf = self.print_with(wide(2000), {"Web2PDFPageMargin": 0})
        picture = pdf.picture()
        for place in ((1, 20), (610, 20), (300, 1)):
            self.assertTrue(near(picture.pixel(*place), RED), f"{picture.pixel(*place)} at {place}")

    def test_margins_hold_on_every_page(self):
        pdf = self.print_with(paragraphs(300), {"Web2PDFPageMargin": 72})
        words = pdf.words()
        self.assertEqual([word.text for word in words], [f"Paragraph{number:04d}" for number in range(300)])
        self.assertGreater(pdf.page_count, 5)
        for word in words:
            self.assertTrue(word.left >= 71 and word.top >= 71 and word.bottom <= 721, word)


class FitTests(PrintTestCase):
    def test_nothing_is_cut_at_the_right(self):
        for width in (800, 1500, 5000, 9000):
            with self.subTest(width):
                pdf = self.print(wide(width), name=f"{width}.pdf")
                self.assertIn("RightEnd", pdf.text())
                self.assert_edges(pdf, 36, 36, 576)
                self.assertEqual(pdf.size(), (612, 792))

    def test_wide_right_to_left_page(self):
        archive = html_archive('<!DOCTYPE html><html dir="rtl"><style>body{margin:0}div{width:2000px;height:400px;'
                               f'background:{css(RED)};text-align:left}}</style><div>LeftEnd</div>')
        pdf = self.print(archive)
        self.assertIn("LeftEnd", pdf.text())
        self.assert_edges(pdf, 36, 36, 576)

    def test_boxes_keep_their_places_when_scaled(self):
        picture = self.print(boxes(1080, 1000)).picture()
        for place, colour in {(46, 46): RED, (566, 46): GREEN, (46, 526): BLUE, (566, 526): GOLD}.items():
            self.assertTrue(near(picture.pixel(*place), colour), f"{picture.pixel(*place)} at {place}")


class StyleTests(PrintTestCase):
    def test_media_style_is_screen(self):
        text = self.print(media_styles()).text()
        self.assertIn("ForTheScreen", text)
        self.assertNotIn("ForThePrinter", text)

    def test_backgrounds_are_printed(self):
        picture = self.print(boxes(400, 400)).picture(dpi=144)
        self.assertTrue(near(picture.pixel(72 + 20, 72 + 20), RED), picture.pixel(92, 92))

    def test_the_pages_own_paper_does_not_count(self):
        archive = page("<p>Text</p>", head="<style>@page{size:300px 200px;margin:100px}</style>")
        self.assertEqual(self.print(archive).size(), (612, 792))

    def test_forced_break_starts_a_page(self):
        pdf = self.print(page('<p style="break-after:page">One</p><p>Two</p>'))
        self.assertEqual([pdf.text(number).split() for number in (1, 2)], [["One"], ["Two"]])


if __name__ == "__main__":
    unittest.main()
