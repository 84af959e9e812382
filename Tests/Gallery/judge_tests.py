"""The judge of the gallery, judged: each kind of fault is noticed."""

import io
import json
import pathlib
import tempfile
import unittest

from PIL import Image, ImageDraw

from entry import page
from judge import Sight, difference, judge
from pdf import Word

SIZE = (612, 800)


def drawing(shift=0, colour=(200, 40, 40)):
    picture = Image.new("RGB", SIZE, "white")
    ImageDraw.Draw(picture).rectangle((100, 100 + shift, 300, 300 + shift), fill=colour)
    return picture


class FakePDF:
    def __init__(self, picture=None, words=None, size=SIZE, pages=1, second=None):
        self.picture = picture or drawing()
        self.second = second or self.picture
        self.found = words if words is not None else [Word("first", 1, 20, 20, 60, 38), Word("last", 1, 20, 700, 60, 718)]
        self.measure, self.page_count = size, pages

    def size(self, number):
        return self.measure

    def words(self):
        return self.found

    def text(self):
        return " ".join(word.text for word in self.found)

    def ppm(self, number, scale_to):
        return self.drawn(self.picture, scale_to)

    def second_ppm(self, number, scale_to):
        return self.drawn(self.second, scale_to)

    @staticmethod
    def drawn(picture, scale_to):
        file = io.BytesIO()
        picture.resize(scale_to).save(file, "PPM")
        return file.getvalue()


class JudgeTests(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        seen = {"viewWidth": 612, "viewHeight": 792, "width": SIZE[0], "height": SIZE[1], "left": 0,
                "words": [["first", 20, 20, 60, 38], ["last", 20, 700, 60, 718]]}
        (pathlib.Path(folder.name) / "page.json").write_text(json.dumps(seen), encoding="utf-8")
        drawing().save(pathlib.Path(folder.name) / "page.png")
        drawing().crop((0, 0, 612, 792)).save(pathlib.Path(folder.name) / "view.png")
        self.folder = pathlib.Path(folder.name)
        self.sight = Sight(self.folder)

    def problems(self, pdf, mode="screen", third=None, **expected):
        return judge(page("x", "", "<p>first</p><p>last</p>", **expected), mode, pdf, self.sight,
                     third_reader=third).problems

    def assert_noticed(self, pdf, what, mode="screen", third=None, **expected):
        problems = self.problems(pdf, mode, third, **expected)
        self.assertTrue(any(what in problem for problem in problems), problems)

    def test_a_true_copy_has_no_fault(self):
        self.assertEqual(self.problems(FakePDF()), [])

    def test_moved_and_recoloured_boxes_are_noticed(self):
        self.assert_noticed(FakePDF(drawing(shift=4)), "pixels differ")
        self.assert_noticed(FakePDF(drawing(colour=(120, 40, 40))), "pixels differ")

    def test_another_view_is_noticed(self):
        self.assert_noticed(FakePDF(), "the view was (612, 792)", "print")
        Image.new("RGB", (612, 792), "white").save(self.folder / "view.png")
        self.assert_noticed(FakePDF(), "of the view's pixels differ")
        self.assertEqual(self.problems(FakePDF(), view_differs="another picture"), [])

    def test_soft_edges_are_no_difference(self):
        self.assertEqual(difference(drawing(), drawing().resize((1224, 1600)).reduce(2))[1], 0)

    def test_the_share_that_differs_is_that_of_the_page(self):
        other = drawing()
        ImageDraw.Draw(other).rectangle((400, 400, 499, 499), fill="black")
        self.assertAlmostEqual(difference(drawing(), other)[1], 100 * 100 * 100 / (612 * 800), delta=0.2)

    def test_readers_that_draw_differently_are_noticed(self):
        for mode in ("screen", "print"):
            self.assert_noticed(FakePDF(second=drawing(shift=4)), "MuPDF draws", mode)
            self.assert_noticed(FakePDF(), "pdf.js draws", mode, lambda size: Image.new("RGB", size, "white"))
        self.assertEqual(self.problems(FakePDF(), third=lambda size: drawing()), [])

    def test_readers_may_differ_as_much_as_is_said(self):
        self.assertEqual(self.problems(FakePDF(second=drawing(shift=4)), readers_differ={"MuPDF": 2}), [])
        self.assert_noticed(FakePDF(second=drawing(shift=40)), "MuPDF draws", readers_differ={"MuPDF": 2})

    def test_lost_words_are_noticed(self):
        self.assert_noticed(FakePDF(words=[Word("first", 1, 20, 20, 60, 38)]), "words lost: ['last']")

    def test_unwanted_words_are_noticed(self):
        self.assert_noticed(FakePDF(), "'last' is in the PDF", absent=["last"])

    def test_moved_words_are_noticed(self):
        first = Word("first", 1, 20, 20, 60, 38)
        self.assert_noticed(FakePDF(words=[first, Word("last", 1, 24, 700, 64, 718)]), "last +4.0 across")
        self.assert_noticed(FakePDF(words=[first, Word("last", 1, 20, 690, 60, 708)]), "last -10.0 down")

    def test_words_beyond_the_page_are_noticed(self):
        words = [Word("first", 1, 20, 20, 60, 38), Word("last", 1, 590, 700, 630, 718)]
        self.assert_noticed(FakePDF(words=words), "words outside: ['last']")

    def test_words_in_the_margin_of_a_sheet_are_noticed(self):
        words = [Word("first", 1, 20, 51, 50, 65), Word("last", 1, 51, 561, 81, 575)]
        self.assert_noticed(FakePDF(words=words, size=(612, 792)), "words outside: ['first']", "print")

    def test_sizes_and_numbers_of_pages_are_noticed(self):
        self.assert_noticed(FakePDF(pages=2), "2 pages")
        self.assert_noticed(FakePDF(size=(612, 799)), "document")
        self.assert_noticed(FakePDF(), "instead of", size=(612, 900))
        self.assert_noticed(FakePDF(size=(595, 842)), "page 1 is", "print")

    def test_wrong_pixels_are_noticed(self):
        self.assertEqual(self.problems(FakePDF(), pixels=[(200, 200, (200, 40, 40))]), [])
        self.assert_noticed(FakePDF(), "pixel 200,200", pixels=[(200, 200, (40, 40, 200))])


if __name__ == "__main__":
    unittest.main()
