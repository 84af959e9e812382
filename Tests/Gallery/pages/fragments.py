"""What is drawn around a box that is broken into sheets: nothing may lie over its lines."""

import colorsys

from entry import blocks, page

# Each block is 96 px high, which are 72 points: a sheet holds ten.
BANDS = blocks(30, 96)


def colour(number):
    return tuple(round(255 * part) for part in colorsys.hls_to_rgb(number * 37 % 360 / 360, 0.6, 0.6))


# Three points below the first band's start on each sheet.
FIRST_BANDS = [(sheet, 300, 39, colour(10 * (sheet - 1))) for sheet in (1, 2, 3)]


def banded(name, trouble, style, body=BANDS, **expected):
    return page(name, trouble, body, style="body{margin:0}" + style, modes=("print",),
                words=[f"block{number}" for number in range(30)], **expected)


PAGES = [
    banded("outlined-body", "A body with an outline larger than a sheet", "body{outline:1300px solid #fff}", sheets=3,
           sheet_pixels=FIRST_BANDS),
    banded("outlined-root", "A root with an outline larger than a sheet", "html{outline:1300px solid #fff}", sheets=3,
           sheet_pixels=FIRST_BANDS),
    banded("outlined-box", "A box with an outline", "main{outline:20px solid #fff}", f"<main>{BANDS}</main>", sheets=3,
           sheet_pixels=FIRST_BANDS),
    banded("outlined-inside", "A box with an outline on its inside", "main{outline:20px solid #fff;outline-offset:-20px}",
           f"<main>{BANDS}</main>", sheets=3, sheet_pixels=FIRST_BANDS[1:]),
    banded("picture-border", "A border that is a picture", "main{border:10px solid;border-image:linear-gradient(#fff,#fff) 10}",
           f"<main>{BANDS}</main>", shifts_words="the border has room on each sheet",
           sheet_pixels=[(1, 300, 45, colour(0)), (2, 300, 45, colour(9)), (3, 300, 45, colour(19))]),
]
