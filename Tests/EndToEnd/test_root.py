"""Pages whose html element has a box of its own look as they do on the screen, most of them in screen mode."""

import unittest

from pages import BLUE, GOLD, GREEN, RED, css
from test_screen import LETTER, ScreenTestCase
from webarchive import Resource, html_archive

WHITE = (255, 255, 255)


class RootTestCase(ScreenTestCase):
    def assert_drawn(self, styles, body, expected, size=(612, 1500), more=None):
        """The page has this size, and these colours at these places."""
        document = f"<!DOCTYPE html><style>body{{margin:0}}{styles}</style>{body}"
        archive = html_archive(document)
        if more:
            archive.add(more)
        pdf = self.convert(archive).pdf
        self.assert_size(pdf, *size)
        self.assert_pixels(pdf, expected)


def box(styles, colour, content=""):
    return f'<div style="{styles};background:{css(colour)}">{content}</div>'


TALL = '<div style="height:1500px"></div>'


class PositionTests(RootTestCase):
    def test_fixed_boxes_refer_to_the_view_where_the_root_contains_absolute_ones(self):
        self.assert_drawn("html{position:relative}",
                          box("position:fixed;bottom:0;left:0;width:100px;height:40px", RED)
                          + box("position:absolute;bottom:0;left:0;width:100px;height:40px", BLUE) + TALL,
                          {(50, 770): RED, (50, 740): WHITE, (50, 800): WHITE,
                           (50, 1480): BLUE, (50, 1450): WHITE})

    def test_boxes_refer_to_the_view_where_the_root_is_wider(self):
        self.assert_drawn(f"html{{min-width:980px}}body{{background:{css(GOLD)}}}main{{width:100%;height:50px;"
                          f"background:{css(GREEN)}}}",
                          "<main></main>" + box("position:absolute;right:0;top:0;width:40px;height:40px", RED) + TALL,
                          {(600, 20): RED, (560, 20): GREEN, (620, 20): GREEN, (970, 20): GREEN, (970, 60): GOLD},
                          size=(980, 1550))

    def test_boxes_refer_to_the_view_where_the_root_is_higher(self):
        self.assert_drawn(f"html{{height:1500px;background:{css(GOLD)}}}body{{height:50%;background:{css(GREEN)}}}",
                          box("position:absolute;bottom:0;left:0;width:100px;height:40px", RED),
                          {(50, 770): RED, (50, 740): GREEN, (50, 800): GOLD, (50, 1490): GOLD})

    def test_negative_margins_move_the_document_but_not_the_view(self):
        self.assert_drawn(f"html{{margin:-10px -20px}}body{{border:30px solid {css(RED)}}}",
                          box("height:1440px", GREEN)
                          + box("position:absolute;left:0;bottom:0;width:5px;height:40px", BLUE),
                          {(8, 100): RED, (12, 100): GREEN, (300, 18): RED, (300, 22): GREEN,
                           (598, 100): GREEN, (606, 100): RED, (300, 1455): GREEN, (300, 1465): RED,
                           (2, 770): BLUE, (2, 740): RED},
                          size=(632, 1490))

    def test_view_of_a_root_that_is_a_table(self):
        self.assert_drawn("html{display:table;width:100%}",
                          box("height:100vh;width:50vw", GREEN) + box("height:708px", GOLD)
                          + box("position:absolute;bottom:0;right:0;width:40px;height:40px", RED),
                          {(300, 785): GREEN, (312, 785): WHITE, (300, 800): GOLD, (600, 770): RED,
                           (600, 740): WHITE})

    def test_columns_higher_than_a_print_are_scaled(self):
        pdf = self.convert(html_archive(
            "<!DOCTYPE html><html style='writing-mode:vertical-rl'><body style='margin:0'>"
            + box("width:100px;height:1900px", RED) + box("width:100px;height:1920px", GREEN)), mode="print").pdf
        self.assertEqual(pdf.page_count, 1)
        self.assertEqual(pdf.size(), LETTER)
        # Two columns of 100 px at half the size, from the right.
        self.assert_pixels(pdf, {(570, 740): RED, (540, 740): RED, (570, 752): WHITE, (535, 752): GREEN,
                                 (505, 752): GREEN, (495, 400): WHITE})


class BorderTests(RootTestCase):
    GRADIENT = f"linear-gradient({css(GOLD)},{css(GREEN)})"

    def test_border_of_a_high_root(self):
        self.assert_drawn(f"html{{border:solid;border-width:10px 20px 30px 40px;border-color:{css(RED)} {css(BLUE)}}}",
                          '<div style="height:1460px"></div>'
                          + box("position:absolute;left:0;top:0;width:20px;height:20px", GREEN),
                          {(300, 5): RED, (300, 15): WHITE, (602, 1000): BLUE, (580, 1000): WHITE,
                           (300, 1465): WHITE, (300, 1485): RED, (30, 1000): BLUE, (50, 1000): WHITE,
                           (10, 10): GREEN})

    def test_border_of_a_low_root_before_its_gradient(self):
        self.assert_drawn(f"html{{border:10px solid {css(RED)};background:{self.GRADIENT}}}",
                          '<div style="height:200px"></div>',
                          {(300, 5): RED, (300, 14): GOLD, (300, 206): GREEN, (300, 215): RED,
                           (300, 407): GREEN, (300, 413): GOLD, (5, 100): RED, (5, 500): (146, 182, 64)},
                          size=LETTER)

    def test_border_before_the_bodys_gradient(self):
        self.assert_drawn(f"html{{border-top:10px solid {css(RED)}}}body{{background:{self.GRADIENT}}}",
                          '<div style="height:1490px"></div>',
                          {(300, 5): RED, (300, 15): GOLD, (300, 1495): GREEN})


class BackgroundTests(RootTestCase):
    HALVES = Resource("http://site.example/halves.svg",
                      f'<svg xmlns="http://www.w3.org/2000/svg" width="200" height="100"><rect width="100" height="100" '
                      f'fill="{css(RED)}"/><rect x="100" width="100" height="100" fill="{css(BLUE)}"/></svg>'.encode(),
                      "image/svg+xml")

    def test_covering_image_of_a_low_root_with_margins(self):
        self.assert_drawn("html{margin:46px 56px;background:url(halves.svg) 0 0/cover no-repeat}",
                          '<div style="height:500px"></div>',
                          {(60, 50): RED, (550, 540): RED, (560, 300): BLUE, (50, 300): WHITE, (300, 40): WHITE,
                           (300, 550): WHITE}, size=LETTER, more=self.HALVES)

    def test_fixed_image_covers_the_whole_document(self):
        self.assert_drawn("body{background:url(halves.svg) 0 0/cover no-repeat fixed}", TALL,
                          {(5, 5): RED, (5, 1495): RED, (605, 700): RED, (605, 1495): RED},
                          more=self.HALVES)

    def test_fixed_image_of_an_element_stays_with_it(self):
        self.assert_drawn("section{height:100px;background:url(halves.svg) 0 0/100% 100% fixed}",
                          '<div style="height:1400px"></div><section></section>',
                          {(300, 1395): WHITE, (300, 1405): RED, (312, 1495): BLUE}, more=self.HALVES)

    def test_effects_of_the_root_work_on_the_canvas(self):
        inverse = (225, 195, 55)
        for content, size in (("", LETTER), (TALL, (612, 1500))):
            for owner in ("html", "body"):
                with self.subTest(owner, size=size):
                    self.assert_drawn(f"html{{filter:invert(1)}}{owner}{{background:{css(BLUE)}}}",
                                      box("position:absolute;left:0;bottom:0;width:50px;height:50px", WHITE)
                                      + content,
                                      {(600, 5): inverse, (600, size[1] - 5): inverse, (25, 780): (0, 0, 0)},
                                      size=size)


class MotionTests(RootTestCase):
    GROWTH = "@keyframes grow{from{height:0}to{height:1450px}}"

    def test_animation_with_an_end_has_reached_it(self):
        self.assert_drawn(self.GROWTH + "main{animation:grow 1000s both}",
                          "<main></main>" + box("height:50px", RED), {(300, 1440): WHITE, (300, 1475): RED})

    def test_transition_has_reached_its_end(self):
        self.assert_drawn(f"html{{width:300px;height:0;transition:all 1000s;background:{css(GOLD)}}}"
                          f"html.grown{{width:600px;height:1500px}}body{{height:100%;background:{css(GREEN)}}}",
                          "<script>getComputedStyle(document.documentElement).width;"
                          "document.documentElement.className='grown'</script>",
                          {(595, 1495): GREEN, (605, 1495): GOLD})

    def test_endless_animation_stands_still_from_the_measuring_on(self):
        for animated in ("main", "body", "html"):
            with self.subTest(animated):
                pdf = self.convert(html_archive(
                    f"<!DOCTYPE html><style>body{{margin:0}}@keyframes grow{{from{{padding-top:0}}to{{padding-top:3000px}}}}"
                    f"{animated}{{animation:grow .5s linear infinite alternate}}</style><main></main>"
                    + box("height:800px", GREEN) + box("height:20px", RED))).pdf
                height = pdf.size()[1]
                self.assert_pixels(pdf, {(300, height - 10): RED, (300, height - 30): GREEN})


class QuirksTests(ScreenTestCase):
    """Documents without a type, whose percentage heights refer to the view."""

    STYLES = "<style>body{margin:0}</style>"
    TABLE = f'<table height="100%" width="100%" cellspacing=0 style="background:{css(GREEN)}"><tr><td>Cell</table>'

    def test_table_fills_the_view_of_a_longer_print(self):
        # The view is as high as what the margins leave of the paper.
        pdf = self.convert(html_archive(self.STYLES + self.TABLE + box("height:200px", RED)), mode="print").pdf
        self.assertEqual(pdf.page_count, 2)
        self.assert_pixels(pdf, {(300, 400): GREEN, (300, 750): GREEN})
        self.assert_pixels(pdf, {(300, 40): RED, (300, 180): RED, (300, 190): WHITE}, page_number=2)

    def test_table_fills_the_view_of_a_document_that_overflows(self):
        pdf = self.convert(html_archive(self.STYLES + self.TABLE
                                        + box("position:absolute;left:0;top:1480px;width:20px;height:20px", RED))).pdf
        self.assert_size(pdf, 612, 1500)
        self.assert_pixels(pdf, {(300, 785): GREEN, (300, 800): WHITE, (10, 1490): RED})


if __name__ == "__main__":
    unittest.main()
