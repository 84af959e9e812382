"""Pages that were saved from a dense screen, and hold the pictures for that only."""

from entry import SITE, document, page
from images import png
from webarchive import Archive, HTML, Resource

RED, GREEN, BLUE = (220, 30, 40), (20, 160, 70), (30, 60, 200)
PLAIN = "body{margin:0}img,iframe{display:block;border:0}.p{width:100px;height:100px;background-size:100px 100px}"


def picture(name, colour=GREEN, density=2):
    return Resource(SITE + name, png(100 * density, 100 * density, colour), "image/png")


def dense(name, trouble, body, resources, colour=GREEN, **more):
    """A page whose upper left 100 by 100 pixels must have a colour, below which the text begins."""
    return page(name, trouble, body + "<p style='border-bottom:1px solid'>caption", style=PLAIN + more.pop("style", ""),
                resources=resources, pixels=[(50, 50, colour), (98, 98, colour)],
                sheet_pixels=[(1, 60, 60, colour)], words=["caption"], **more)


BOX = "<div class=p></div>"
SET = ".p{background-image:image-set(url(1.png) 1x, url(2.png) 2x)}"
QUERY = ".p{background-image:url(1.png)}@media (min-resolution: 2dppx){.p{background-image:url(2.png)}}"

PAGES = [
    dense("image-set", "An image set, stored for twice the density", BOX, [picture("2.png")], style=SET),
    dense("image-set-linked", "Such a set in a linked sheet, with a type and an old name", BOX,
          [picture("2.png"), Resource(SITE + "a.css", ".p{background-image:-webkit-image-set(url('1.png') 1x, url('2.png') "
                                      "type('image/png') 2x)}", "text/css")], head="<link rel=stylesheet href=a.css>"),
    dense("image-set-inline", "Such a set in an element's own style",
          "<div class=p style='background-image:image-set(url(1.png) 1x, url(2.png) 2x)'></div>", [picture("2.png")]),
    dense("image-set-content", "Such a set that is a box's content", "<div class=p></div>", [picture("2.png")],
          style=".p::before{content:image-set(url(1.png) 1x, url(2.png) 2x);display:block;width:100px;height:100px}"),
    dense("image-set-shadow", "Such a set in a shadow tree",
          f"<div><template shadowrootmode=open><style>{PLAIN}{SET}</style>{BOX}</template></div>", [picture("2.png")]),
    page("image-set-frame", "Such a set in a frame", "<iframe src=f.html width=300 height=200></iframe>", style=PLAIN,
         words=["inner"], pixels=[(50, 50, GREEN)], sheet_pixels=[(1, 60, 60, GREEN)],
         frames=[Archive(Resource(SITE + "f.html", document(BOX + "<p>inner", style=PLAIN + SET), HTML), [picture("2.png")])]),
    dense("image-set-triple", "A set that was stored for three times the density", BOX, [picture("3.png", density=3)],
          style=".p{background-image:image-set(url(1.png) 1x, url(2.png) 2x, url(3.png) 3x)}"),
    dense("min-resolution", "A media query about the resolution", BOX, [picture("2.png")], style=QUERY),
    dense("min-device-pixel-ratio", "Such a query of an old kind", BOX, [picture("2.png")],
          style=".p{background-image:url(1.png)}@media (-webkit-min-device-pixel-ratio: 1.5){.p{background-image:url(2.png)}}"),
    dense("tall", "Such a query on a page that is taller than the view", BOX + "<div style='height:3000px'></div>",
          [picture("2.png")], style=QUERY),
    dense("srcset", "An image with densities", "<img src=1.png srcset='1.png 1x, 2.png 2x'>", [picture("2.png")]),
    dense("source-media", "A picture whose sources ask for the resolution",
          "<picture><source srcset=2.png media='(min-resolution: 2dppx)'><img src=1.png width=100></picture>", [picture("2.png")]),
    dense("mixed", "Sets and images at once, and one that is not stored at all",
          BOX + "<img srcset='1.png 1x, 2.png 2x'><img src=gone.png width=10 height=10 alt=''>",
          [picture("2.png")], style=SET),
    dense("single", "A page from a plain screen, with a picture that is not stored at all, and one that is not used", BOX
          + "<img src=gone.png width=10 height=10 alt=''>", [picture("1.png", density=1), picture("unused.png", RED)], style=SET),
    dense("single-media", "Such a page with a media query", BOX + "<img src=gone.png width=10 height=10 alt=''>",
          [picture("1.png", density=1), picture("unused.png", RED)], style=QUERY),
    dense("both", "Both densities are stored", BOX + "<img src=gone.png width=10 height=10 alt=''>",
          [picture("1.png", density=1), picture("2.png", RED)], style=SET),
]
