"""Screen mode: pages whose html element has styles of its own look as they do on the screen."""

import unittest

from pages import BLUE, GOLD, GREEN, RED, css
from test_screen import ScreenTestCase
from webarchive import html_archive

WHITE = (255, 255, 255)


class RootTestCase(ScreenTestCase):
    def assert_drawn(self, styles, body, expected, size=(612, 1500)):
        """The page has this size, and these colours at these places."""
        document = f"<!DOCTYPE html><style>body{{margin:0}}{styles}</style>{body}"
        pdf = self.convert(html_archive(document)).pdf
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


if __name__ == "__main__":
    unittest.main()
