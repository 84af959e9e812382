"""Makes the pages that are measured. The same arguments give the same bytes; what is random comes from a seed."""

import io
import random

from PIL import Image

from images import noise
from workload.fonts import font
from workload.page import Page

WORDS = ("archive", "of", "a", "page", "that", "somebody", "saved", "long", "ago", "and", "wants", "to", "read",
         "again", "with", "its", "pictures", "in", "their", "places", "where", "they", "were", "then")
STYLE = "body{margin:20px;font:16px/20px 'DejaVu Sans',sans-serif}p{margin:0}iframe{border:0}"
LINE = 20    # px; the height of a line


def document(body, head=""):
    return (f"<!DOCTYPE html><html lang=en><head><meta charset=utf-8><title>A page</title><style>{STYLE}</style>{head}"
            f"</head><body>{body}</body></html>")


def words(count, start=0):
    return " ".join(WORDS[(start * 7 + number) % len(WORDS)] for number in range(count))


def small():
    return Page(document(f"<h1>Small</h1><p>{words(80)}</p><p>{words(60, 1)}</p>"))


def pictures(count, side, jpeg=False):
    """So many pictures of random pixels, side × side; with jpeg every other one is a JPEG of about the same size."""
    width = min(side, 100)
    files = {}
    for number in range(count):
        if jpeg and number % 2:
            files[f"{number}.jpg"] = (_jpeg(round(side * 1.015), number), "image/jpeg")
        else:
            files[f"{number}.png"] = (noise(side, side, number), "image/png")
    body = "".join(f'<img src="{name}" width={width} height={width}>' for name in files)
    return Page(document(body), files)


def _jpeg(side, seed):
    pixels = random.Random(seed).randbytes(side * side * 3)
    file = io.BytesIO()
    # Without halved colours and at this quality, noise keeps three bytes a pixel.
    Image.frombytes("RGB", (side, side), pixels).save(file, "JPEG", quality=97, subsampling=0)
    return file.getvalue()


def unseen(megabytes):
    """A small page whose archive holds as many files that it does not mention."""
    page = small()
    page.resources = {f"{number}.bin": (random.Random(number).randbytes(1_000_000), "application/octet-stream")
                      for number in range(megabytes)}
    return page


def tall(height):
    """Lines of text, as many as fill the height in px."""
    return Page(document("".join(f"<p>{number} {words(6, number)}</p>" for number in range(height // LINE - 2))))


def sheets(count):
    """A page that is printed on so many sheets of paper."""
    return Page(document("".join(f"<p style='break-after:page'>{number} {words(40, number)}</p>"
                                 for number in range(count))))


def paragraphs(items, length=20):
    return "".join(f"<p>{' '.join(items[at:at + length])}</p>" for at in range(0, len(items), length))


def elements_in_lines(count):
    """A text, each word of which is an element."""
    return Page(document(paragraphs([f"<span>{WORDS[number % len(WORDS)]}</span>" for number in range(count)])))


def elements(count):
    """Cards of ten elements each, in a grid of four columns."""
    card = ("<section><header><b>{0}</b><i>{1}</i></header><p><span>{1}</span> <em>{0}</em></p><ul><li>{1}</li><li>{0}"
            "</li></ul></section>")
    style = "<style>main{display:grid;grid-template-columns:repeat(4,1fr)}</style>"
    body = "".join(card.format(number, WORDS[number % len(WORDS)]) for number in range(count // 10))
    return Page(document(f"<main>{body}</main>", style))


def frames(count):
    inner = {f"frame{number}.html": document(f"<p>Frame {number}</p>") for number in range(count)}
    return Page(document("".join(f'<iframe src="{name}" width=180 height=60></iframe>' for name in inner)), {}, inner)


def links(count):
    return Page(document(paragraphs([f'<a href="http://other.example/{number}">{WORDS[number % len(WORDS)]}</a>'
                                     for number in range(count)])))


def headings(count):
    return Page(document("".join(f"<h{1 + number % 3} style='font-size:16px;margin:0'>{number} {words(3, number)}"
                                 f"</h{1 + number % 3}>" for number in range(count))))


def fonts(count):
    """A line of text in each of so many fonts, which are files of their own."""
    files = {f"{number}.ttf": (font(number), "font/ttf") for number in range(count)}
    faces = "".join(f"@font-face{{font-family:f{number};src:url({number}.ttf)}}" for number in range(count))
    lines = "".join(f"<p style='font-family:f{number}'>{words(8, number)}</p>" for number in range(count))
    return Page(document(lines, f"<style>{faces}</style>"), files)
