"""What a page of the gallery is: an archive with one trouble in it, and what must hold for its PDF.

    PAGES = [
        page("fixed-bar", "A bar at the view's bottom slides to the document's end",
             '<div id=bar>Cookies</div>' + paragraphs(30), style="#bar{position:fixed;bottom:0}",
             print_words_once=["Cookies"]),
    ]

Lengths are CSS pixels from the document's top left, which in screen mode are the PDF's points.
"""

import html.parser
from dataclasses import dataclass, field

from webarchive import Archive, html_archive

SITE = "http://site.example/"
BASE = "body{margin:20px;font:16px/24px 'DejaVu Sans',sans-serif}"


@dataclass
class Page:
    name: str
    trouble: str
    archive: Archive
    words: list          # each is in the PDF, in both modes
    absent: list = field(default_factory=list)     # none of them is
    size: tuple = None   # screen mode: the page's size, where the document says what it must be
    pixels: list = field(default_factory=list)     # screen mode: (x, y, colour)
    sheets: int = None   # print mode: the number of pages
    sheet_pixels: list = field(default_factory=list)   # print mode: (page, x, y, colour), points from the top left
    pictures_differ: str = ""   # why the picture cannot be compared
    view_differs: str = ""      # screen mode: why the view cannot be compared, though the whole page can
    allowance: float = 0.1      # screen mode: per cent of the pixels that may differ; more needs a reason
    allowance_reason: str = ""
    readers_differ: dict = field(default_factory=dict)  # per cent that another reader may draw differently, by its name
    readers_reason: str = ""
    shifts_words: str = ""      # print mode: why words are not where the screen's layout has them
    modes: tuple = ("screen", "print")


def document(body, title="", style=BASE, head="", root=""):
    """A page in standards mode; root gives the attributes of its html element."""
    start = "" if body.startswith("<body") else "<body>"
    return (f"<!DOCTYPE html><html{' ' + root if root else ''}><head><meta charset=utf-8><title>{title}</title>"
            f"<style>{style}</style>{head}</head>{start}{body}")


def page(name, trouble, body="", *, style="", head="", root="", html=None, url=SITE + "page.html", resources=(),
         frames=(), archive=None, words=None, **expected):
    """A page of the gallery. Words are those of the page's text unless they are given."""
    if html is None:
        html = document(body, name, BASE + style, head, root)
    if archive is None:
        archive = html_archive(html, url).add(*resources).add_frame(*frames)
    absent = expected.get("absent", [])
    if words is None:
        words = [word for word in visible_words(html) if word not in absent]
    return Page(name, trouble, archive, words, **expected)


class _Text(html.parser.HTMLParser):
    HIDDEN = ("script", "style", "title", "template", "noscript", "iframe", "option", "textarea")

    def __init__(self):
        super().__init__()
        self.hidden = 0
        self.words = []

    def handle_starttag(self, tag, attrs):
        self.hidden += tag in self.HIDDEN

    def handle_endtag(self, tag):
        self.hidden -= tag in self.HIDDEN

    def handle_data(self, data):
        if self.hidden == 0:
            self.words += data.split()


def visible_words(html):
    """The words of a page's text, each once."""
    reader = _Text()
    reader.feed(html)
    return list(dict.fromkeys(reader.words))


# What most pages are filled with

def paragraphs(count, length=14):
    """Numbered paragraphs whose words are all different, so that a lost or moved one is noticed."""
    return "".join("<p>" + " ".join(f"p{number}w{word}" for word in range(length)) + "</p>"
                   for number in range(count))


def blocks(count, height=100):
    """Bands of different colours, each with its number."""
    return "".join(f'<div style="height:{height}px;background:hsl({number * 37 % 360},60%,60%)">block{number}</div>'
                   for number in range(count))
