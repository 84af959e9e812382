"""Screen mode: one page, exactly the laid-out document, one CSS pixel one point."""

import unittest

from pages import BLUE, GOLD, GREEN, RED, boxes, css, media_styles, page, paragraphs
from pdf import near
from tool import ToolTestCase
from webarchive import html_archive

LETTER = (612, 792)
A4 = (595.28, 841.89)


class ScreenTestCase(ToolTestCase):
    def assert_size(self, pdf, width, height, tolerance=0.01):
        self.assertEqual(pdf.page_count, 1)
        for measured, expected in zip(pdf.size(), (width, height)):
            self.assertAlmostEqual(measured, expected, delta=tolerance)
        self.assertEqual(pdf.box()[:2], (0.0, 0.0))

    def assert_pixels(self, pdf, expected, page_number=1):
        picture = pdf.picture(page_number)
        for place, colour in expected.items():
            self.assertTrue(near(picture.pixel(*place), colour),
                            f"{picture.pixel(*place)} instead of {colour} at {place}")


class SizeTests(ScreenTestCase):
    def test_tall_page_is_one_page(self):
        self.assert_size(self.convert(boxes(400, 5000)).pdf, 612, 5000)

    def test_wide_page(self):
        self.assert_size(self.convert(boxes(2000, 300)).pdf, 2000, 792)

    def test_wide_and_tall_page(self):
        self.assert_size(self.convert(boxes(1234, 2345)).pdf, 1234, 2345)

    def test_short_page_fills_the_view(self):
        self.assert_size(self.convert(page("<p>Short</p>")).pdf, *LETTER)

    def test_view_has_the_default_paper_size(self):
        run = self.convert(page("<p>Short</p>"), environment=self.environment(PAPERSIZE="a4"))
        self.assert_size(run.pdf, *A4, tolerance=1)

    def test_page_above_the_common_limit(self):
        pdf = self.convert(boxes(400, 20000)).pdf
        self.assert_size(pdf, 612, 20000)
        self.assertIsNone(pdf.attribute("UserUnit"))

    def test_all_text_of_a_long_page(self):
        words = self.convert(paragraphs(400)).pdf.text().split()
        self.assertEqual(words, [f"Paragraph{number:04d}" for number in range(400)])


class LayoutTests(ScreenTestCase):
    def test_boxes_stand_where_they_were_laid_out(self):
        pdf = self.convert(boxes(700, 1500)).pdf
        self.assert_pixels(pdf, {(20, 20): RED, (680, 20): GREEN, (20, 1480): BLUE, (680, 1480): GOLD,
                                 (370, 770): RED, (200, 200): (255, 255, 255)})

    def test_layout_width_is_the_view(self):
        pdf = self.convert(html_archive(
            "<!DOCTYPE html><style>body{margin:0}div{height:50px;width:50vw;background:" + css(RED) + "}"
            "@media (min-width:613px){div{background:" + css(BLUE) + "}}</style><div></div>")).pdf
        self.assert_pixels(pdf, {(300, 25): RED, (312, 25): (255, 255, 255)})

    def test_view_height_units_keep_the_view(self):
        pdf = self.convert(html_archive(
            "<!DOCTYPE html><style>body{margin:0}.v{height:100vh;background:" + css(RED) + "}"
            ".r{height:1000px;background:" + css(BLUE) + "}</style><div class=v></div><div class=r></div>")).pdf
        self.assert_size(pdf, 612, 1792)
        self.assert_pixels(pdf, {(300, 780): RED, (300, 802): BLUE})

    def test_backgrounds_are_printed(self):
        pdf = self.convert(html_archive("<!DOCTYPE html><style>html{background:" + css(GOLD) + "}</style>"
                                        "<p>Text</p>")).pdf
        self.assert_pixels(pdf, {(5, 5): GOLD, (600, 780): GOLD})

    def test_fixed_box_appears_once(self):
        pdf = self.convert(html_archive(
            "<!DOCTYPE html><style>body{margin:0;height:3000px}div{position:fixed;left:0;top:0;width:50px;"
            "height:50px;background:" + css(GREEN) + "}</style><div>F1X</div>")).pdf
        self.assertEqual(pdf.text().count("F1X"), 1)
        self.assert_pixels(pdf, {(40, 40): GREEN, (25, 817): (255, 255, 255), (25, 1609): (255, 255, 255)})

    def test_media_style_is_screen(self):
        text = self.convert(media_styles()).pdf.text()
        self.assertIn("ForTheScreen", text)
        self.assertNotIn("ForThePrinter", text)

    def test_forced_breaks_do_not_break(self):
        pdf = self.convert(page('<p style="break-after:page">One</p><p style="page-break-before:always">Two</p>')).pdf
        self.assertEqual(pdf.page_count, 1)
        self.assertEqual(pdf.text().split(), ["One", "Two"])

    def test_right_to_left_page(self):
        pdf = self.convert(html_archive(
            '<!DOCTYPE html><html dir="rtl"><style>body{margin:0}div{width:1000px;height:50px;background:'
            + css(RED) + '}</style><div></div><p style="margin:0;height:50px;width:100px;background:'
            + css(BLUE) + '"></p>')).pdf
        self.assert_size(pdf, 1000, 792)
        self.assert_pixels(pdf, {(5, 25): RED, (995, 25): RED, (995, 75): BLUE, (850, 75): (255, 255, 255)})

    def test_page_scrolled_by_its_script_starts_at_the_top(self):
        archive = boxes(400, 3000)
        archive.main.data += b"<script>addEventListener('load',()=>scrollTo(0,2000))</script>"
        self.assert_pixels(self.convert(archive).pdf, {(20, 20): RED, (20, 2980): BLUE})


class ModeTests(ScreenTestCase):
    def test_only_the_exact_word_selects_the_screen(self):
        for mode in ("Screen", "SCREEN", "screen ", "print", ""):
            with self.subTest(mode):
                pdf = self.convert(boxes(400, 3000), mode=mode, name="mode.pdf").pdf
                self.assertEqual(pdf.size(), LETTER)
                self.assertGreater(pdf.page_count, 3)


if __name__ == "__main__":
    unittest.main()
