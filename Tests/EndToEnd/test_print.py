"""Print mode: default paper, four margins, the page's width fitted, as many pages as needed."""

import collections
import re
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
        """The red box reaches from margin to margin and begins at the top margin, to half a point."""
        picture = pdf.picture(dpi=288)
        inside = top + 20
        for (x, y), colour in {(left - 0.5, inside): WHITE, (left + 0.5, inside): RED, (right - 0.75, inside): RED,
                               (right + 0.5, inside): WHITE, (left + 20, top - 0.5): WHITE,
                               (left + 20, top + 0.5): RED}.items():
            colour_there = picture.pixel(x * 4, y * 4)
            self.assertTrue(near(colour_there, colour), f"{colour_there} at {x}, {y}")


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
        for width in (800, 1500, 5000, 9000, 10000, 20000):
            with self.subTest(width):
                pdf = self.print(wide(width, width // 5), name=f"{width}.pdf")
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


class FixedBoxTests(PrintTestCase):
    """Boxes that are fixed to the view appear once, where they are in the view, and cover no later page."""

    def print_with_box(self, style, root="", text="F1X"):
        paragraphs = "".join(f'<p style="height:40px">Paragraph{number:04d}</p>' for number in range(80))
        return self.print(html_archive(
            f"<!DOCTYPE html><style>html{{{root}}}body{{margin:0}}p{{margin:0 0 0 300px}}"
            f"#box{{position:fixed;background:{css(RED)};{style}}}</style><div id=box>{text}</div>{paragraphs}"))

    def assert_once(self, pdf, left, top, right, bottom):
        """The box reaches over these points of the first page and is nowhere else."""
        self.assertEqual([word.page for word in pdf.words() if word.text == "F1X"], [1])
        for number in range(1, pdf.page_count + 1):
            picture = pdf.picture(number)
            red = [(x, y) for y in range(1, picture.height, 4) for x in range(1, picture.width, 4)
                   if near(picture.pixel(x, y), RED)]
            if number > 1:
                self.assertEqual(red, [], f"page {number}")
                continue
            for edge, expected in ((min(x for x, _ in red), left), (min(y for _, y in red), top),
                                   (max(x for x, _ in red), right), (max(y for _, y in red), bottom)):
                self.assertAlmostEqual(edge, expected, delta=4)
        self.assertGreater(pdf.page_count, 3)
        self.assertEqual([word.text for word in pdf.words() if word.text != "F1X"],
                         [f"Paragraph{number:04d}" for number in range(80)])

    def test_bars_and_overlays(self):
        for style, edges in {"top:0;left:0;right:0;height:40px": (36, 36, 576, 66),
                             "bottom:0;left:0;right:0;height:40px": (36, 726, 576, 756),
                             "top:0;bottom:0;left:0;width:200px": (36, 36, 186, 756),
                             "top:0;left:0;width:200px;height:100vh": (36, 36, 186, 756),
                             "inset:0": (36, 36, 576, 756)}.items():
            with self.subTest(style):
                self.assert_once(self.print_with_box(style), *edges)

    def test_roots_with_a_box_of_their_own(self):
        for root in ("height:100%", "min-height:100%", "padding:10px;margin:5px;border-left:3px solid"):
            with self.subTest(root):
                left = 36 + (2.25 if "border" in root else 0)
                pdf = self.print_with_box("bottom:0;left:0;right:0;height:40px", root)
                self.assert_once(pdf, left, 726, 576, 756)

    def test_box_of_a_short_page(self):
        pdf = self.print(html_archive(f"<!DOCTYPE html><style>#box{{position:fixed;bottom:0;left:0;width:80px;height:40px;"
                                      f"background:{css(RED)}}}</style><div id=box></div><p>Text</p>"))
        self.assertEqual(pdf.page_count, 1)
        self.assertTrue(near(pdf.picture().pixel(60, 750), RED))

    def test_modal_dialog(self):
        body = ("<style>::backdrop{background:black}dialog{padding:0;border:0;width:200px;height:100px;background:"
                + css(RED) + "}</style>" + "".join(f"<p>Paragraph{number:04d}</p>" for number in range(100))
                + "<dialog>D1X</dialog><script>document.querySelector('dialog').showModal()</script>")
        pdf = self.print(page(body))
        self.assertGreater(pdf.page_count, 3)
        self.assertEqual([word.page for word in pdf.words() if word.text == "D1X"], [1])
        # In the middle of the view: 720 by 960 px.
        for (x, y), colour in {(306, 396): RED, (306, 365): RED, (306, 355): WHITE, (235, 396): RED,
                               (225, 396): WHITE, (600, 780): WHITE}.items():
            self.assertTrue(near(pdf.picture().pixel(x, y), colour), (x, y, pdf.picture().pixel(x, y)))

    def test_sticky_header(self):
        body = ('<h1>Title</h1><div style="position:sticky;top:0;height:40px">S1X</div>'
                + "".join(f"<p>Paragraph{number:04d}</p>" for number in range(100)))
        pdf = self.print(page(body))
        self.assertGreater(pdf.page_count, 3)
        words = [word for word in pdf.words() if word.text in ("Title", "S1X", "Paragraph0000")]
        self.assertEqual([word.text for word in sorted(words, key=lambda word: (word.page, word.top))],
                         ["Title", "S1X", "Paragraph0000"])

    def test_background_still_runs_over_the_whole_document(self):
        body = f"<style>body{{background:linear-gradient({css(RED)},{css(BLUE)})}}</style><p style='height:2000px'>Text</p>End"
        pdf = self.print(page(body))
        self.assertEqual(pdf.page_count, 3)
        red, blue = pdf.picture(1).pixel(300, 40), pdf.picture(3).pixel(300, 60)
        self.assertTrue(near(red, RED, 25) and near(blue, BLUE, 25), (red, blue))


class LongDocumentTests(PrintTestCase):
    """Several hundred sheets, which are printed in parts."""

    SECTIONS = 1350

    def long(self, style=""):
        """Three sections on a sheet, a chapter for each hundred, and links to and fro."""
        def section(number):
            chapter = f"<h1>Chapter {number // 100}</h1>" if number % 100 == 0 else ""
            goal = (number * 7 + 300) % self.SECTIONS
            return (f"{chapter}<section><h2 id=s{number}>Section {number}</h2><p>Word{number:04d} "
                    f"<a href=#s{goal}>to {goal}</a></section>")
        return page("<style>h1,h2,p{margin:0;font:20px/60px serif}h1{line-height:0}section{height:310px}" + style + "</style>"
                    + "".join(map(section, range(self.SECTIONS))))

    def pages_of_sections(self, pdf):
        pages = {word.text: word.page for word in pdf.words() if word.text.startswith("Word")}
        self.assertEqual(list(pages), [f"Word{number:04d}" for number in range(self.SECTIONS)])
        return list(pages.values())

    def test_sheets_follow_each_other(self):
        pages = self.pages_of_sections(self.print(self.long()))
        self.assertEqual(pages, sorted(pages))
        self.assertEqual(set(pages), set(range(1, pages[-1] + 1)), "empty sheets")
        # Where a part ends, a sheet is left that is not full.
        short = [page for page, count in collections.Counter(pages).items() if count < 3]
        self.assertEqual(len(short), 3, short)

    def test_breaks_make_a_sheet_of_each_section(self):
        for style in ("section{break-after:page}", "section{break-before:page}"):
            with self.subTest(style):
                short = "section{height:50px!important}h1{display:none}"
                pages = self.pages_of_sections(self.print(self.long(short + style)))
                self.assertEqual(pages, list(range(1, self.SECTIONS + 1)))

    def test_links_lead_to_their_sections(self):
        pdf = self.print(self.long())
        goals = pdf.destinations()
        self.assertEqual([goals[f"s{number}"][0] for number in range(self.SECTIONS)], self.pages_of_sections(pdf))
        tops = {word.text: word.top for word in pdf.words() if word.text.startswith("Word")}
        for number in range(self.SECTIONS):
            # The line above the word's.
            self.assertAlmostEqual(goals[f"s{number}"][1], tops[f"Word{number:04d}"] - 45, delta=25)

    def test_outline_and_structure_are_those_of_the_whole(self):
        pdf = self.print(self.long())
        outline = pdf.outline()
        self.assertEqual([entry.title for entry in outline if entry.level == 1],
                         [f"Chapter {number}" for number in range(self.SECTIONS // 100 + 1)])
        below = [entry for entry in outline if entry.level == 2]
        self.assertEqual([entry.title for entry in below], [f"Section {number}" for number in range(self.SECTIONS)])
        self.assertEqual([entry.page for entry in below], self.pages_of_sections(pdf))
        structure = pdf.structure()
        self.assertEqual(structure.count("Document"), 1)
        self.assertEqual([line.strip() for line in structure.splitlines() if '"Section' in line],
                         [f'"Section {number}"' for number in range(self.SECTIONS)])

    def test_counters_count_through(self):
        pdf = self.print(self.long("body{counter-reset:n}h2{counter-increment:n}h2::before{content:'N' counter(n) ' '}"))
        numbers = [int(word.text[1:]) for word in pdf.words() if re.fullmatch(r"N\d+", word.text)]
        self.assertEqual(numbers, list(range(1, self.SECTIONS + 1)))


if __name__ == "__main__":
    unittest.main()
