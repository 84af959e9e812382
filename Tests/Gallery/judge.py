"""Compares a page's PDF with what the witness saw and with what the gallery says must hold."""

import collections
import functools
import io
import json
import re

from PIL import Image, ImageChops, ImageFilter

from pdf import near

# A pixel differs when, after the blur, one of its channels is off by more than this.
LEVELS = 40
# Per cent of the pixels that another reader may draw differently.
READERS_ALLOWANCE = 0.1
BLUR = 2
PAPER = (612, 792)
VIEWS = {"screen": (612, 792), "print": (720, 960)}
MARGIN = 36
# Words: how far a place may be off, in points. Glyphs are drawn on whole pixels on the screen.
WORD_TOLERANCE = 1.5
LINE_TOLERANCE = 4


class Sight:
    """What the witness wrote down."""

    def __init__(self, folder):
        self.folder = folder
        with open(folder / "page.json", encoding="utf-8") as file:
            self.page = json.load(file)

    @property
    def size(self):
        return (self.page["width"], self.page["height"])

    @property
    def left(self):
        """How far the document reaches to the left of the view."""
        return -self.page["left"]

    def words(self):
        """The words that are on the page once: text mapped to left, top, right, bottom from the document's top left."""
        times = collections.Counter(word[0] for word in self.page["words"])
        return {text: (left + self.left, top, right + self.left, bottom)
                for text, left, top, right, bottom in self.page["words"] if times[text] == 1}

    def picture(self):
        """The whole document; None where it is too large for one."""
        return self._picture("page.png", self.size[0])

    @property
    def view(self):
        return (self.page["viewWidth"], self.page["viewHeight"])

    def view_picture(self):
        """What a reader sees of the page before any of it is changed."""
        return self._picture("view.png", self.view[0])

    def _picture(self, name, width):
        file = self.folder / name
        if not file.exists():
            return None
        with Image.open(file) as picture:
            # One pixel of the page each, whatever the view's density.
            return picture.convert("RGB").reduce(max(1, round(picture.width / width)))


def rendered(draw, size, number=1):
    """A page of the PDF as a picture of the size given. It is drawn twice as large first: poppler fills every
    pixel that a gradient touches, and so would move its edges by a whole pixel."""
    with Image.open(io.BytesIO(draw(number, scale_to=(2 * size[0], 2 * size[1])))) as picture:
        return picture.convert("RGB").reduce(2)


def difference(one, other):
    """Where two pictures of one size differ, as a picture of black and white, and how much in per cent."""
    blurred = [picture.filter(ImageFilter.BoxBlur(BLUR)) for picture in (one, other)]
    channels = ImageChops.difference(*blurred).split()
    largest = ImageChops.lighter(ImageChops.lighter(channels[0], channels[1]), channels[2])
    mask = largest.point(lambda level: 255 if level > LEVELS else 0)
    return mask, 100 * mask.histogram()[255] / (mask.width * mask.height)


def squeezed(text):
    return re.sub(r"\s+", "", text)


class Verdict:
    """What was found for one page in one mode."""

    def __init__(self, mode):
        self.mode = mode
        self.problems = []
        self.sheets = 0
        self.size = (0, 0)
        self.lost = []
        self.outside = []
        self.moved = []
        self.differing = None   # per cent; None where pictures are not compared
        self.readers = {}       # for each other reader: per cent of the first page that it draws differently
        self.pictures = {}

    def expect(self, holds, problem):
        if not holds:
            self.problems.append(problem)

    def record(self):
        return {"mode": self.mode, "sheets": self.sheets, "size": self.size, "lost": self.lost,
                "outside": self.outside, "moved": self.moved, "differing": self.differing, "readers": self.readers,
                "problems": self.problems}


def judge(page, mode, pdf, sight, illustrated=True, third_reader=None):
    """The verdict; where it is not to be illustrated, without the pictures that nothing is told by. The third reader
    draws the first page in a size, beside poppler and MuPDF."""
    verdict = Verdict(mode)
    verdict.sheets = pdf.page_count
    verdict.size = pdf.size(1)
    words = pdf.words()
    verdict.expect(sight.view == VIEWS[mode], f"the view was {sight.view}")
    _judge_words(verdict, page, pdf)
    if mode == "screen":
        drawn = _judge_screen(verdict, page, pdf, words, sight)
    else:
        drawn = _judge_print(verdict, page, pdf, words, sight, illustrated)
    if drawn:
        _compare_readers(verdict, page, pdf, drawn, third_reader)
    if verdict.lost:
        verdict.problems.append(f"words lost: {verdict.lost[:10]}")
    if verdict.outside:
        verdict.problems.append(f"words outside: {verdict.outside[:10]}")
    if verdict.moved:
        verdict.problems.append(f"words moved: {verdict.moved[:5]}")
    return verdict


def _judge_words(verdict, page, pdf):
    text = squeezed(pdf.text())
    verdict.lost = [word for word in page.words if squeezed(word) not in text]
    for word in page.absent:
        verdict.expect(squeezed(word) not in text, f"{word!r} is in the PDF")


def _compare_readers(verdict, page, pdf, drawn, third_reader):
    """Every reader draws the same, whatever that is."""
    others = {"MuPDF": rendered(pdf.second_ppm, drawn.size)}
    if third_reader:
        others["pdf.js"] = third_reader(drawn.size)
    for name, picture in others.items():
        mask, share = difference(drawn, picture)
        verdict.readers[name] = share
        allowed = page.readers_differ.get(name, READERS_ALLOWANCE)
        verdict.expect(share <= allowed, f"{name} draws {share:.3f} % of the pixels differently")
        if share > READERS_ALLOWANCE:
            verdict.pictures |= {f"by {name}": picture, f"difference of {name}": mask}


def _judge_screen(verdict, page, pdf, words, sight):
    width, height = sight.size
    verdict.expect(pdf.page_count == 1, f"{pdf.page_count} pages")
    verdict.expect(max(abs(verdict.size[0] - width), abs(verdict.size[1] - height)) < 0.01,
                   f"page {verdict.size}, document {sight.size}")
    if page.size:
        verdict.expect(sight.size == page.size, f"document {sight.size} instead of {page.size}")
    _find_outside(verdict, words, (0, 0, width, height), 1)
    _find_moved(verdict, page, words, sight, 1, (0, 0))
    seen = sight.picture()
    if seen is None:
        return None
    drawn = rendered(pdf.ppm, seen.size)
    mask, share = difference(seen, drawn)
    verdict.pictures = {"seen": seen, "drawn": drawn, "difference": mask}
    for x, y, colour in page.pixels:
        verdict.expect(near(drawn.getpixel((x, y)), colour), f"pixel {x},{y} is {drawn.getpixel((x, y))}")
        verdict.expect(near(seen.getpixel((x, y)), colour), f"pixel {x},{y} was {seen.getpixel((x, y))}")
    if not page.pictures_differ:
        verdict.differing = share
        verdict.expect(share <= page.allowance, f"{share:.3f} % of the pixels differ")
        _compare_view(verdict, page, sight, drawn)
    return drawn


def _compare_view(verdict, page, sight, drawn):
    """The start of the document is what a reader saw in the view."""
    seen = sight.view_picture()
    if page.view_differs or not seen:
        return
    left = round(sight.left)
    _, share = difference(seen, drawn.crop((left, 0, left + seen.width, seen.height)))
    verdict.expect(share <= page.allowance, f"{share:.3f} % of the view's pixels differ")


def _judge_print(verdict, page, pdf, words, sight, illustrated):
    for number in range(1, pdf.page_count + 1):
        size = pdf.size(number)
        verdict.expect(max(abs(size[0] - PAPER[0]), abs(size[1] - PAPER[1])) < 0.01, f"page {number} is {size}")
    if page.sheets:
        verdict.expect(pdf.page_count == page.sheets, f"{pdf.page_count} sheets instead of {page.sheets}")
    _find_outside(verdict, words, (MARGIN, MARGIN, PAPER[0] - MARGIN, PAPER[1] - MARGIN), 0.5)
    scale = min(0.75, (PAPER[0] - 2 * MARGIN) / sight.size[0])
    if not page.shifts_words:
        _find_moved(verdict, page, words, sight, scale, (MARGIN, MARGIN))
    sheet = functools.cache(lambda number: rendered(pdf.ppm, PAPER, number))
    if illustrated:
        sheets = [sheet(number) for number in range(1, min(pdf.page_count, 4) + 1)]
        verdict.pictures = {"seen": sight.picture(), "sheets": sheets}
    for number, x, y, colour in page.sheet_pixels:
        found = sheet(number).getpixel((x, y))
        verdict.expect(near(found, colour), f"page {number}, pixel {x},{y} is {found}")
    return sheet(1)


def _find_outside(verdict, words, area, tolerance):
    left, top, right, bottom = area
    for word in words:
        # Boxes of words are as high as their font, which may reach beyond the line; their middle does not.
        middle = (word.top + word.bottom) / 2
        if (word.left < left - tolerance or word.right > right + tolerance
                or not top - tolerance <= middle <= bottom + tolerance):
            verdict.outside.append(word.text)


def _find_moved(verdict, page, words, sight, scale, start):
    """Words that are on the screen and in the PDF once, and not at the same place. In print mode pages are
    broken, so that only the place from the left is known, and on the first page no word may be above its own."""
    times = collections.Counter(word.text for word in words)
    drawn = {word.text: word for word in words if times[word.text] == 1}
    for text, (left, top, right, bottom) in sight.words().items():
        word = drawn.get(text)
        if word is None:
            continue
        x, middle = start[0] + left * scale, start[1] + (top + bottom) / 2 * scale
        off = word.left - x
        if abs(off) > WORD_TOLERANCE or abs(word.right - start[0] - right * scale) > 2 * WORD_TOLERANCE:
            verdict.moved.append(f"{text} {off:+.1f} across")
        down = (word.top + word.bottom) / 2 - middle
        if verdict.mode == "screen" and abs(down) > LINE_TOLERANCE:
            verdict.moved.append(f"{text} {down:+.1f} down")
        if verdict.mode == "print" and word.page == 1 and not -LINE_TOLERANCE <= down <= PAPER[1] / 2:
            verdict.moved.append(f"{text} {down:+.1f} down on the first sheet")
