"""What is measured: rows, which are compared with other programs, and curves, which show how costs grow."""

import dataclasses
import typing

from workload import generators


@dataclasses.dataclass
class Row:
    title: str
    make: typing.Callable    # returns a page
    mode: str = "screen"
    beyond: dict = dataclasses.field(default_factory=dict)    # programs that make something else of it, and what


ROWS = {
    "small": Row("small page", generators.small),
    "resources-100": Row("100 pictures of 30 KB", lambda: generators.pictures(100, 100)),
    "tall": Row("5,000 px tall", lambda: generators.tall(5_000)),
    "frames": Row("300 frames", lambda: generators.frames(300), beyond={"weasyprint": "shows no frames"}),
    "lines": Row("20,000 elements in lines", lambda: generators.elements_in_lines(20_000)),
    "elements": Row("100,000 elements", lambda: generators.elements(100_000)),
    "pictures": Row("50 pictures of 1 MB", lambda: generators.pictures(50, 590, jpeg=True)),
    "unseen": Row("200 MB of which nothing is shown", lambda: generators.unseen(200)),
    "resources-5000": Row("5,000 pictures of 1 KB", lambda: generators.pictures(5_000, 20)),
    "tall-print": Row("200,000 px tall, as a print", lambda: generators.tall(200_000), "print"),
}


@dataclasses.dataclass
class Curve:
    title: str
    sizes: tuple    # about even steps on a logarithmic scale
    make: typing.Callable    # returns the page of a size
    mode: str = "screen"


CURVES = {
    "resources": Curve("pictures of 1 KB", (10, 50, 250, 1_100, 5_000), lambda size: generators.pictures(size, 20)),
    "bytes": Curve("MB of pictures", (1, 5, 22, 105, 500), lambda size: generators.pictures(size, 580, jpeg=True)),
    "frames": Curve("frames", (1, 4, 17, 70, 300), generators.frames),
    "height": Curve("height in px", (800, 4_000, 20_000, 100_000, 500_000), generators.tall),
    "sheets": Curve("sheets of paper", (1, 7, 45, 300, 2_000), generators.sheets, "print"),
    "elements": Curve("elements", (1_000, 4_000, 14_000, 53_000, 200_000), generators.elements),
    "links": Curve("links", (10, 60, 400, 2_500, 15_000), generators.links),
    "headings": Curve("headings", (10, 60, 400, 2_500, 15_000), generators.headings),
    "fonts": Curve("fonts", (1, 4, 14, 53, 200), generators.fonts),
}
