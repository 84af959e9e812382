"""Text stays text that can be selected, searched and copied, as two programs read it."""

import re
import unicodedata
import unittest

from pages import page, paragraphs
from tool import ToolTestCase

MODES = ("screen", "print")

# In every one of these scripts a line is drawn in the order in which it is read.
IN_READING_ORDER = {
    "Latin": "The quick brown fox",
    "ligatures": "office fjord flow afflict waffle",
    "accents": "Crème brûlée Žluťoučký Ångström Tiếng Việt",
    "combining accents": unicodedata.normalize("NFD", "Crème brûlée Žluťoučký"),
    "Greek": "Ελληνικά κείμενο",
    "Cyrillic": "Русский текст",
    "Chinese": "中文句子可以搜索",
    "traditional Chinese": "繁體中文句子",
    "Japanese": "日本語の文章をカタカナ",
    "Korean": "한국어 문장을 찾는다",
    "Korean by letters": unicodedata.normalize("NFD", "한국어"),
    "Thai": "ภาษาไทยสวัสดี",
    "Armenian": "Հայերեն",
    "signs": "x² ∑ ∞ ≠ “curly” – — … €",
    "no-break space": "two\N{NO-BREAK SPACE}words",
    "emoji": "Smile 😀 here",
}
FROM_THE_RIGHT = {
    "Arabic": "مرحبا بالعالم العربي",
    "Urdu": "اردو زبان",
    "Hebrew": "שלום עולם טוב",
}
# Here signs change their order when they are drawn, or several characters are one glyph. What was written is
# beside the glyphs, for programs that look for it; mupdf's version in use does not.
REORDERED = {
    "Devanagari": "हिन्दी में लिखा क्षत्रिय",
    "Bengali": "বাংলা ভাষা",
    "Tamil": "தமிழ் மொழி",
    "Khmer": "ភាសាខ្មែរ",
    "joined emoji": "👩‍👩‍👧‍👦 👩🏽‍💻",
    "flags": "🇨🇭 🇯🇵",
    "Persian with joiners": "می‌خواهم",
}
VERTICAL = "縦書きの日本語、テスト。「括弧」"


def simplified(text):
    """Without marks of direction, in composed form, white space as single blanks."""
    text = re.sub("[\u200e\u200f\u202a-\u202e\u2066-\u2069]", "", unicodedata.normalize("NFC", text))
    return " ".join(text.split())


def scripts(texts, attributes=""):
    return "".join(f"<p {attributes}>{text}</p>" for text in texts.values())


class ScriptTests(ToolTestCase):
    def assert_found(self, texts, read):
        for name, text in texts.items():
            with self.subTest(name):
                self.assertIn(simplified(text), simplified(read))

    def test_scripts_in_reading_order(self):
        for mode in MODES:
            pdf = self.convert(page(scripts(IN_READING_ORDER)), mode=mode).pdf
            self.assert_found(IN_READING_ORDER, pdf.text())
            self.assert_found(IN_READING_ORDER, pdf.glyph_text())

    def test_scripts_from_the_right(self):
        """Poppler puts them into reading order; mupdf of Debian 12 gives each line from left to right, that of 13 does
        not."""
        from_the_left = {name: text[::-1] for name, text in FROM_THE_RIGHT.items()}
        for mode in MODES:
            pdf = self.convert(page(scripts(FROM_THE_RIGHT, 'dir="rtl"')), mode=mode).pdf
            self.assert_found(FROM_THE_RIGHT, pdf.text())
            glyphs = pdf.glyph_text()
            self.assert_found(FROM_THE_RIGHT if FROM_THE_RIGHT["Hebrew"] in glyphs else from_the_left, glyphs)

    def test_scripts_that_are_drawn_in_another_order(self):
        for mode in MODES:
            pdf = self.convert(page(scripts(REORDERED)), mode=mode).pdf
            self.assert_found(REORDERED, pdf.text())

    def test_vertical_text(self):
        """Each sign stands by itself; a program that does not look for columns gives them in the order drawn."""
        body = f'<div style="writing-mode:vertical-rl;height:150px">{VERTICAL}</div>'
        for mode in MODES:
            pdf = self.convert(page(body), mode=mode).pdf
            for read in (pdf.text(as_drawn=True), pdf.glyph_text()):
                self.assertEqual("".join(read.split()), VERTICAL)

    def test_words_lie_on_the_page(self):
        everything = {**IN_READING_ORDER, **FROM_THE_RIGHT, **REORDERED}
        for mode in MODES:
            pdf = self.convert(page(scripts(everything)), mode=mode).pdf
            words = pdf.words()
            self.assertGreater(len(words), 50)
            for word in words:
                width, height = pdf.size(word.page)
                self.assertTrue(0 <= word.left < word.right <= width and 0 <= word.top < word.bottom <= height, word)


class FontTests(ToolTestCase):
    def test_fonts_are_embedded_as_far_as_they_are_used(self):
        body = scripts({**IN_READING_ORDER, **FROM_THE_RIGHT, **REORDERED})
        for mode in MODES:
            fonts = self.convert(page(body), mode=mode).pdf.fonts()
            self.assertGreater(len(fonts), 5)
            for font in fonts:
                self.assertTrue(font.embedded and font.has_text, font)
                # Fonts that are made of drawings hold one drawing for each glyph in use.
                self.assertTrue(font.subset or font.kind == "Type 3", font)


class TallPageTests(ToolTestCase):
    """Pages above 14,400 points."""

    def test_every_word_of_50_000_pixels(self):
        pdf = self.convert(paragraphs(1250)).pdf
        self.assertGreater(pdf.size()[1], 49000)
        expected = [f"Paragraph{number:04d}" for number in range(1250)]
        self.assertEqual(pdf.text().split(), expected)
        self.assertEqual(pdf.glyph_text().split(), expected)

    def test_the_last_word_of_50_000_pixels_is_drawn(self):
        pdf = self.convert(paragraphs(1250)).pdf
        last = pdf.words()[-1]
        self.assertGreater(last.top, 49000)
        for picture in (pdf.picture(), pdf.second_picture()):
            self.assertAlmostEqual(picture.height, pdf.size()[1], delta=1)
            rows = [sum(sum(picture.pixel(x, y)) < 300 for x in range(int(last.left), int(last.right)))
                    for y in range(int(last.top), int(last.bottom) + 1)]
            self.assertGreater(sum(rows), 50, rows)


if __name__ == "__main__":
    unittest.main()
