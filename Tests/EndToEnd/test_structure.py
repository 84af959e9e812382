"""Language, structure tree and outline: what readers other than eyes are told of the page."""

import unittest

from pages import SITE, page
from tool import ToolTestCase
from webarchive import HTML, Archive, Resource, html_archive

MODES = ("screen", "print")


def in_language(language, body):
    attribute = f' lang="{language}"' if language else ""
    return html_archive(f"<!DOCTYPE html><html{attribute}><title>T</title>{body}</html>")


class StructureTests(ToolTestCase):
    def test_language_of_the_document(self):
        for mode in MODES:
            with self.subTest(mode):
                pdf = self.convert(in_language("de-CH", "<p>Text</p>"), mode=mode).pdf
                self.assertEqual(pdf.catalog("Lang"), "(de-CH)")

    def test_document_without_a_language(self):
        self.assertEqual(self.convert(in_language(None, "<p>Text</p>")).pdf.catalog("Lang"), "null")

    def test_elements(self):
        body = ("<h1>Head</h1><p>Some <a href='x.html'>link</a> and <em>stress</em>.</p><ul><li>Item</li></ul>"
                "<table><tr><th>Name</th></tr><tr><td>Value</td></tr></table><aside>Beside</aside>")
        for mode in MODES:
            with self.subTest(mode):
                pdf = self.convert(in_language("en", body), mode=mode).pdf
                self.assertEqual(pdf.attribute("Tagged"), "yes")
                kinds = [line.split()[0].rstrip(":") for line in pdf.structure().splitlines()]
                for kind in ("Document", "H1", "P", "Link", "L", "LI", "Table", "TR", "TH", "TD"):
                    self.assertIn(kind, kinds)
                for text in ("Head", "link", "stress", "Item", "Name", "Value", "Beside"):
                    self.assertIn(f'"{text}"', pdf.structure())

    def test_order_is_that_of_the_document(self):
        body = "".join(f'<p style="position:absolute;top:{500 - 100 * n}px">Step{n}</p>' for n in range(5))
        lines = self.convert(in_language("en", body)).pdf.structure().splitlines()
        self.assertEqual([line.strip() for line in lines if "Step" in line], [f'"Step{n}"' for n in range(5)])

    def test_pages_after_the_first(self):
        body = "".join(f'<h2 style="break-before:page">Part{n}</h2>' for n in range(4))
        pdf = self.convert(in_language("en", body), mode="print").pdf
        self.assertEqual(pdf.page_count, 4)
        for number in range(4):
            self.assertEqual(pdf.structure().count(f'"Part{number}"'), 1)


class OutlineTests(ToolTestCase):
    HEADINGS = (("h1", "First"), ("h2", "Below it"), ("h3", "Deep"), ("h2", "Back up"), ("h1", "Second"),
                ("h3", "Level left out"), ("h2", "Überschrift 漢字"), ("h6", "Last"))
    # In a list of headings a level that is left out adds no step.
    LEVELS = (1, 2, 3, 2, 1, 2, 2, 3)

    def headings(self):
        return page("".join(f'<{tag} style="margin:0 0 400px;height:40px">{text}</{tag}>'
                            for tag, text in self.HEADINGS))

    def test_titles_and_nesting(self):
        for mode in MODES:
            with self.subTest(mode):
                outline = self.convert(self.headings(), mode=mode).pdf.outline()
                self.assertEqual([(entry.level, entry.title) for entry in outline],
                                 [(level, text) for level, (_, text) in zip(self.LEVELS, self.HEADINGS)])

    def test_entries_lead_to_their_headings(self):
        for mode in MODES:
            with self.subTest(mode):
                pdf = self.convert(self.headings(), mode=mode).pdf
                words = pdf.words()
                for entry, (_, text) in zip(pdf.outline(), self.HEADINGS):
                    word = next(word for word in words if word.text == text.split()[0])
                    self.assertEqual(entry.page, word.page, text)
                    self.assertLessEqual(abs(entry.left - word.left), 8, (entry, word))
                    # At the heading's top, or at the top of a page that begins with it.
                    self.assertTrue(-8 <= word.top - entry.top <= (16 if entry.top else 36), (entry, word))

    def test_entries_of_a_page_that_is_shrunk(self):
        body = ('<div style="width:12000px;height:10px"></div><p style="margin-bottom:19000px">Text</p>'
                '<h1 style="font-size:200px;line-height:300px">Low</h1>')
        pdf = self.convert(page(body), mode="print").pdf
        [entry], [word] = pdf.outline(), [word for word in pdf.words() if word.text == "Low"]
        self.assertEqual(entry.page, word.page)
        self.assertLessEqual(abs(entry.top - word.top), 8, (entry, word))

    def test_heading_at_the_start_of_a_page(self):
        """Its letters reach above the line, so that the engine draws it on the page before, too."""
        body = ('<style>*{margin:0}h1{font-size:40px;line-height:20px}</style><p style="height:940px">Text</p>'
                "<h1>Ändern<br>Öffnen</h1>")
        pdf = self.convert(page(body, head="<style>body{margin:0!important}</style>"), mode="print").pdf
        self.assertEqual([(entry.title, entry.page) for entry in pdf.outline()], [("Ändern Öffnen", 2)])

    def test_titles_of_broken_headings(self):
        long = "A heading that is so long that it needs several lines on the page, whatever the mode may be"
        body = f'<h1>{long}</h1><h2>One<br>Two</h2><h2 style="width:1em">漢字漢字</h2><h2>co&shy;operate</h2>'
        for mode in MODES:
            with self.subTest(mode):
                titles = [entry.title for entry in self.convert(page(body), mode=mode).pdf.outline()]
                self.assertEqual(titles, [long, "One Two", "漢字漢字", "co\xadoperate"])

    def test_what_is_no_heading_or_not_seen(self):
        body = '<p>Text</p><h2 style="display:none">Hidden</h2><div role="heading" aria-level="2">Announced</div><h3></h3>'
        self.assertEqual([entry.title for entry in self.convert(page(body)).pdf.outline()], ["Announced"])

    def test_page_without_headings(self):
        self.assertEqual(self.convert(page("<p>Text</p>")).pdf.outline(), [])


def frame(url, body, frames=()):
    return Archive(Resource(url, f"<!DOCTYPE html><style>body{{margin:8px}}</style>{body}", HTML), frames=frames)


class FrameTests(ToolTestCase):
    """The engine leaves headings and anchors of sub-frames out."""

    OTHER = "http://other.example/"

    def framed(self):
        body = ("<h1>First</h1><p style='height:500px'>Text</p><h2>Before</h2>"
                "<iframe scrolling=no src=same.html width=400 height=300 style='margin-left:60px'></iframe><h3>Between</h3>"
                f"<iframe scrolling=no src={self.OTHER}page.html width=500 height=700></iframe><h1>Last</h1>")
        same = frame(SITE + "same.html", "<p>Text</p><h2 style='margin-left:50px'>Same<br>origin</h2>"
                     "<h3>Deeper</h3><h2 style='display:none'>Hidden</h2><h2 style='visibility:hidden'>Unseen</h2>"
                     "<div style='height:900px'></div><h2>Below</h2>")
        other = frame(self.OTHER + "page.html", "<h2>Other</h2><iframe scrolling=no srcdoc='<h4>Stored inside</h4>'></iframe>"
                      "<iframe scrolling=no src=deep.html width=300 height=200 style='display:block;margin-top:200px'></iframe><h2>End</h2>",
                      [frame(self.OTHER + "deep.html", "<h5>Nested</h5><div style='height:300px'></div><h6>Cut</h6>")])
        return page(body).add_frame(same, other)

    def test_headings_of_frames_are_in_the_outline(self):
        for mode in MODES:
            with self.subTest(mode):
                outline = self.convert(self.framed(), mode=mode).pdf.outline()
                self.assertEqual([(entry.level, entry.title) for entry in outline],
                                 [(1, "First"), (2, "Before"), (2, "Same origin"), (3, "Deeper"), (3, "Between"), (2, "Other"),
                                  (3, "Stored inside"), (4, "Nested"), (2, "End"), (1, "Last")])

    def test_they_lead_to_their_places(self):
        for mode in MODES:
            with self.subTest(mode):
                pdf = self.convert(self.framed(), mode=mode).pdf
                self.assert_lead_to_words(pdf)

    def assert_lead_to_words(self, pdf):
        words = {word.text: word for word in pdf.words()}
        for entry in pdf.outline():
            word = words[entry.title.split()[0]]
            self.assertEqual(entry.page, word.page, entry)
            self.assertLessEqual(abs(entry.left - word.left), 8, (entry, word))
            # At the heading's top, or at the top of a page that begins with it.
            self.assertTrue(-8 <= word.top - entry.top <= (16 if entry.top else 36), (entry, word))

    def test_frame_that_is_cut_by_the_ends_of_pages(self):
        inner = "".join(f"<h2 style='margin:0;height:400px'>Part{n}</h2>" for n in range(8))
        archive = page("<p>Text</p><iframe scrolling=no src=long.html width=500 height=3300></iframe>").add_frame(
            frame(SITE + "long.html", inner))
        for mode in MODES:
            with self.subTest(mode):
                pdf = self.convert(archive, mode=mode).pdf
                self.assertEqual([entry.title for entry in pdf.outline()], [f"Part{n}" for n in range(8)])
                self.assert_lead_to_words(pdf)

    def test_frames_of_a_page_that_is_shrunk(self):
        archive = page('<div style="width:12000px;height:10px"></div><iframe scrolling=no src=a.html width=3000 height=2000></iframe>'
                       ).add_frame(frame(SITE + "a.html", "<h1 style='font-size:200px;margin:800px 0 0 500px'>Large</h1>"))
        pdf = self.convert(archive, mode="print").pdf
        self.assert_lead_to_words(pdf)
        self.assertEqual(len(pdf.outline()), 1)

    def test_frames_that_are_not_seen_add_nothing(self):
        body = ("<h1>Seen</h1><iframe scrolling=no src=a.html style='display:none'></iframe><iframe scrolling=no src=a.html style='visibility:hidden'></iframe>"
                "<iframe scrolling=no src=a.html width=0 height=0></iframe>")
        pdf = self.convert(page(body).add_frame(*[frame(SITE + "a.html", "<h2>Hidden</h2>")] * 3)).pdf
        self.assertEqual([entry.title for entry in pdf.outline()], ["Seen"])

    def test_links_within_a_frame(self):
        inner = ("<a href='#down'>there</a> <a href='#far'>beyond</a><div style='height:150px'></div><p id=down>Target</p>"
                 "<div style='height:900px'></div><p id=far>Unseen")
        body = "<a href='#down'>outer</a><div style='height:250px'></div><p id=down>Own</p><iframe scrolling=no src=a.html width=300 height=300></iframe>"
        for mode in MODES:
            with self.subTest(mode):
                pdf = self.convert(page(body).add_frame(frame(SITE + "a.html", inner)), mode=mode).pdf
                words = {word.text: word for word in pdf.words()}
                places = pdf.link_places()
                self.assertEqual(len(places), 3)
                for link, target in (("there", "Target"), ("beyond", "there"), ("outer", "Own")):
                    [(number, top)] = [place for area, place in places if area.covers(words[link])]
                    self.assertEqual(number, words[target].page)
                    self.assertLessEqual(abs(top - words[target].top), 16, link)


if __name__ == "__main__":
    unittest.main()
