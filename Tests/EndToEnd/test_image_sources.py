"""Images that are chosen among several: a page is mostly saved at another density or width than the tool's, and
then the archive holds another one than the engine asks for."""

import unittest

from images import png
from pages import BLUE, GREEN, RED, SITE, frame_archive, page
from pdf import near
from tool import ToolTestCase
from webarchive import Resource

WHITE = (255, 255, 255)
STYLE = "<style>body{margin:0}img{display:block}</style>"


def picture(name, colour=GREEN, size=100):
    return Resource(SITE + name, png(size, size, colour), "image/png")


class ImageSourceTests(ToolTestCase):
    def assert_image(self, html, *resources, colour=GREEN, width=100, mode="screen"):
        """The image is there in its natural size and nothing counts as missing."""
        run = self.convert(page(STYLE + html).add(*resources), mode=mode)
        picture = run.pdf.picture()
        at = 5 if mode == "screen" else 41
        self.assertTrue(near(picture.pixel(at, at), colour), picture.pixel(at, at))
        if mode == "screen" and width:
            self.assertTrue(near(picture.pixel(width - 3, 5), colour), picture.pixel(width - 3, 5))
            self.assertTrue(near(picture.pixel(width + 3, 5), WHITE), picture.pixel(width + 3, 5))
        self.assertEqual(run.log.notes, [])

    def test_density_one_is_taken_when_it_is_stored(self):
        self.assert_image('<img srcset="1.png, 2.png 2x">', picture("1.png"), picture("2.png", RED, 200))

    def test_double_density_alone_has_the_size_of_the_single_one(self):
        for mode in ("screen", "print"):
            with self.subTest(mode):
                self.assert_image('<img src="1.png" srcset="1.png 1x, 2.png 2x, 3.png 3x">',
                                  picture("2.png", GREEN, 200), mode=mode)

    def test_source_attribute_is_taken_when_nothing_else_is_stored(self):
        self.assert_image('<img src="0.png" srcset="1.png 1x, 2.png 2x">', picture("0.png"))

    def test_stored_width_is_taken(self):
        self.assert_image('<img sizes="100px" srcset="s.png 100w, m.png 800w, l.png 1600w">',
                          picture("l.png", GREEN, 1600))

    def test_best_of_the_stored_ones_is_taken(self):
        self.assert_image('<img sizes="100px" srcset="s.png 100w, m.png 400w, l.png 1600w">',
                          picture("l.png", RED, 1600), picture("m.png", GREEN, 400))

    def test_picture_element(self):
        self.assert_image('<picture><source media="(max-width:900px)" srcset="narrow.png">'
                          '<source media="(min-width:901px)" srcset="wide.png 1x, wide2.png 2x">'
                          '<img src="plain.png"></picture>', picture("wide2.png", GREEN, 200))

    def test_picture_element_whose_plain_image_is_stored(self):
        self.assert_image('<picture><source type="image/png" srcset="a.png, b.png 2x"><img src="plain.png"></picture>',
                          picture("plain.png"))

    def test_addresses_with_commas_and_blanks(self):
        self.assert_image('<img srcset=" x,y.png 1x ,\n  c,d.png   2x ,">', picture("c,d.png", GREEN, 200))

    def test_relative_to_the_base(self):
        self.assert_image('<base href="/deep/er/"><img srcset="1.png, ../2.png 2x">',
                          picture("deep/2.png", GREEN, 200))

    def test_in_a_frame(self):
        archive = page(STYLE + '<iframe src="f.html" style="border:0;display:block"></iframe>')
        inner = frame_archive(None, SITE + "f.html", "", body=
                              '<img srcset="1.png, 2.png 2x" style="position:absolute;left:0;top:0">')
        run = self.convert(archive.add_frame(inner.add(picture("2.png", GREEN, 200))))
        self.assertTrue(near(run.pdf.picture().pixel(50, 50), GREEN))

    def test_in_a_shadow_tree(self):
        self.assert_image("<div id=d></div><script>d.attachShadow({mode: 'open'}).innerHTML ="
                          "'<img srcset=\"1.png, 2.png 2x\">'</script>", picture("2.png", GREEN, 200), width=None)

    def test_below_the_view(self):
        archive = page(STYLE + '<div style="height:3000px"></div><img loading="lazy" srcset="1.png, 2.png 2x">')
        run = self.convert(archive.add(picture("2.png", GREEN, 200)))
        self.assertTrue(near(run.pdf.picture().pixel(50, 3050), GREEN))
        self.assertEqual(run.pdf.size()[1], 3100)

    def test_what_the_page_makes_of_a_failure_comes_first(self):
        archive = page(STYLE + "<img srcset='1.png, 2.png 2x' onerror=\"this.removeAttribute('srcset');"
                               "this.src = 's.png'\">")
        run = self.convert(archive.add(picture("s.png"), picture("2.png", RED, 200)))
        self.assertTrue(near(run.pdf.picture().pixel(50, 50), GREEN))

    def test_hostile_numbers_of_images(self):
        body = "".join(f'<img srcset="{number}.png, data:image/png;base64,{"A" * 3000} 2x">' for number in range(3000))
        run = self.convert(page(STYLE + '<img srcset="1.png, 2.png 2x">' + body).add(picture("2.png", GREEN, 200)))
        self.assertTrue(near(run.pdf.picture().pixel(50, 50), GREEN))

    def test_none_stored_is_missing(self):
        run = self.convert(page('<img src="0.png" srcset="1.png, 2.png 2x"><p>Text</p>'))
        self.assertIn("Text", run.pdf.text())
        self.assertEqual(run.log.notes, ["the archive does not hold 1 resource that the page asked for: "
                                         f"image {SITE}1.png"])

    def test_image_set_of_a_style_sheet(self):
        self.assert_image('<div style="width:100px;height:100px;background:image-set(url(1.png) 1x, url(2.png) 2x)">'
                          "</div>", picture("1.png"), picture("2.png", BLUE, 200))


if __name__ == "__main__":
    unittest.main()
