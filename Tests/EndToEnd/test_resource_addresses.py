"""Resources whose address is written in one way in the page and in another one in the archive."""

import html
import unicodedata
import unittest

from images import png
from pages import GREEN, RED, SITE, page
from pdf import near
from tool import ToolTestCase
from webarchive import Resource

COMPOSED = "Grüße-é.png"
DECOMPOSED = unicodedata.normalize("NFD", COMPOSED)


def picture(url, colour=GREEN):
    return Resource(url, png(5, 5, colour), "image/png")


class AddressTests(ToolTestCase):
    def assert_found(self, cases, url=SITE + "dir/page.html"):
        """One page with an image for each case (address in the page, stored address)."""
        style = "<style>body{margin:0}img{display:block;width:20px;height:20px}</style>"
        body = "".join(f'<img src="{html.escape(source)}">' for source, _ in cases)
        run = self.convert(page(style + body, url).add(*(picture(stored) for _, stored in cases)))
        pixels = run.pdf.picture()
        lost = [case for number, case in enumerate(cases) if not near(pixels.pixel(10, 20 * number + 10), GREEN)]
        self.assertEqual(lost, [])
        self.assertEqual(run.log.notes, [])

    def test_letters_beyond_ascii(self):
        self.assert_found([("1-ä.png", SITE + "dir/1-%C3%A4.png"), ("2-%C3%A4.png", SITE + "dir/2-ä.png"),
                           ("3-ä.png", SITE + "dir/3-ä.png"), ("4-%c3%a4.png", SITE + "dir/4-%C3%A4.png"),
                           ("5-ä.png?ö=ü", SITE + "dir/5-ä.png?ö=ü"), ("6-日本.png", SITE + "dir/6-%E6%97%A5%E6%9C%AC.png"),
                           ("7.png?q=ä", SITE + "dir/7.png?q=%c3%a4")])

    def test_normal_forms(self):
        self.assert_found([("1" + COMPOSED, SITE + "dir/1" + DECOMPOSED), ("2" + DECOMPOSED, SITE + "dir/2" + COMPOSED)])

    def test_hosts(self):
        self.assert_found([("http://bücher.example/a.png", "http://xn--bcher-kva.example/a.png"),
                           ("http://xn--bcher-kva.example/b.png", "http://bücher.example/b.png"),
                           ("http://BÜCHER.example/c.png", "http://bücher.example/c.png"),
                           ("http://Site.EXAMPLE:80/d.png", SITE + "d.png"),
                           ("//other.example/e.png", "http://other.example/e.png")])

    def test_escapes(self):
        self.assert_found([("1%7ea.png", SITE + "dir/1~a.png"), ("2~a.png", SITE + "dir/2%7Ea.png"),
                           ("3a b.png", SITE + "dir/3a%20b.png"), ("4a%20b.png", SITE + "dir/4a b.png"),
                           ("5a|b[c].png?d|e[f]", SITE + "dir/5a|b[c].png?d|e[f]"),
                           ("6a|b.png?c|d", SITE + "dir/6a%7Cb.png?c%7Cd"), ("7a%5Bb%5D.png", SITE + "dir/7a[b].png"),
                           ("8a+b.png", SITE + "dir/8a+b.png"), ("9a%2bb.png", SITE + "dir/9a+b.png"),
                           ("10a'b.png?c'd", SITE + "dir/10a'b.png?c'd"), ("11a%41.png", SITE + "dir/11aA.png"),
                           ("12(a),b;c=d@e!.png", SITE + "dir/12%28a%29%2Cb%3Bc%3Dd%40e%21.png"),
                           ("13%.png", SITE + "dir/13%.png"), ("14^{}`\\<>.png", SITE + "dir/14^{}`/<>.png")])

    def test_fragments(self):
        self.assert_found([("1.png#part", SITE + "dir/1.png"), ("2.png", SITE + "dir/2.png#part"),
                           ("3.png#one", SITE + "dir/3.png#two"), ("4.png?#", SITE + "dir/4.png?")])

    def test_dots(self):
        self.assert_found([("./1.png", SITE + "dir/1.png"), ("../2.png", SITE + "2.png"),
                           ("x/../3.png", SITE + "dir/3.png"), ("4.png", SITE + "dir/x/../4.png"),
                           ("%2e%2e/5.png", SITE + "5.png")])

    def test_secure_and_plain(self):
        self.assert_found([("https://other.example/1.png", "http://other.example/1.png"),
                           ("http://other.example/2.png", "https://other.example/2.png"),
                           ("//other.example/3.png", "https://other.example/3.png"),
                           ("https://bücher.example/4-ä.png#x", "http://xn--bcher-kva.example/4-%c3%a4.png")])

    def test_secure_page(self):
        self.assert_found([("http://other.example/1.png", "http://other.example/1.png"),
                           ("//other.example/2.png", "http://other.example/2.png"),
                           ("3.png", "https://site.example/dir/3.png")], "https://site.example/dir/page.html")

    def test_exact_address_comes_before_one_that_means_the_same(self):
        for order in (1, -1):
            with self.subTest(order):
                stored = [picture(SITE + "a%20b.png", GREEN), picture(SITE + "a%2520b.png", RED),
                          picture(SITE + "A%20b.png", RED)][::order]
                run = self.convert(page("<style>body{margin:0}</style><img src='a b.png' width=20 height=20>")
                                   .add(*stored))
                self.assertTrue(near(run.pdf.picture().pixel(10, 10), GREEN))

    def test_case_and_query_count(self):
        body = "<style>body{margin:0}</style><img src='a.png'><img src='b.png?x=1'>"
        run = self.convert(page(body).add(picture(SITE + "A.png"), picture(SITE + "b.png?x=2")))
        self.assertEqual(len(run.log.notes), 1)


if __name__ == "__main__":
    unittest.main()
