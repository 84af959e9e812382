"""Where a print ends: with the last sheet that shows something other than the page's own background."""

from entry import SITE, page, paragraphs
from images import png
from webarchive import Resource

SPACE = "<div style='height:2500px'></div>"
# The first sheet holds 960 px, the others as much.
TWO = "<p>first</p><div style='height:1200px'></div><p>second</p>"
TILE = Resource(SITE + "tile.png", png(20, 20, (200, 220, 255)), "image/png")


def empty(name, trouble, body, sheets=1, **expected):
    return page(name, trouble, body, sheets=sheets, **expected)


PAGES = [
    empty("space", "Nothing but space at the end", "<p>first</p>" + SPACE),
    empty("space-after-two", "Nothing but space at the end of the second sheet", TWO + SPACE, sheets=2),
    empty("colour", "A coloured page", "<p>first</p>" + SPACE, style="html{background:#eef}"),
    empty("body-colour", "A coloured body", "<p>first</p>" + SPACE, style="body{background:#eef}"),
    empty("gradient", "A gradient behind all of the page", "<p>first</p>" + SPACE,
          style="html{background:linear-gradient(#eef,#fee)}"),
    empty("tiles", "A tiled background", "<p>first</p>" + SPACE, style="body{background:url(tile.png)}", resources=[TILE]),
    empty("cover", "A picture that covers the page", "<p>first</p>" + SPACE,
          style="html{background:url(tile.png) 0 0/cover fixed}", resources=[TILE],
          modes=("print",)),
    empty("faded", "A page with an opacity", "<p>first</p>" + SPACE, style="html{background:#eef;opacity:.9}"),
    empty("invisible", "Invisible text at the end", "<p>first</p>" + SPACE + "<p style='visibility:hidden'>unseen</p>",
          words=["first"], absent=["unseen"]),
    empty("view-and-a-little", "A page of the view's height with a margin", "<main>first</main>",
          style="body{margin:8px 0}main{min-height:100vh}"),
    empty("wide-space", "Space at the end of a page that is printed smaller", "<p style='width:3000px'>first</p>"
          "<div style='height:9000px'></div>"),
    empty("nothing", "A page without anything", "", words=[]),
    empty("line", "A line at the end is something", "<p>first</p><div style='height:1500px'></div><hr>", sheets=2),
    empty("picture", "A picture at the end is something",
          "<p>first</p><div style='height:1500px'></div><img src=tile.png width=40 height=40>", sheets=2, resources=[TILE]),
    empty("box", "A box in another colour is something",
          "<p>first</p><div style='height:1500px'></div><div style='height:30px;background:#c33'></div>", sheets=2),
    empty("right-to-left", "Space at the end of a page from the right", "<p>first</p>" + SPACE, style="html{direction:rtl}"),
    empty("between", "Empty sheets between others stay", "<p>first</p>" + SPACE + "<p>second</p>" + paragraphs(2), sheets=3),
]
